#include "config/settings.hpp"

#include <stdexcept>

namespace TAVO {

std::array<ModeInfo, kModeCount> const kModes{{
    {Mode::MemoryMapped, "MemoryMapped", 1, 1},
    {Mode::Cooccurrence, "Cooccurrence", 1, 0},
    {Mode::TaggedInput, "TaggedInput", 1, 0},
    {Mode::DeleteSlash, "DeleteSlash", 1, 1},
    {Mode::InputConvert, "InputConvert", 2, 0},
    {Mode::OutputConvert, "OutputConvert", 3, 0},
    {Mode::DivideWord, "DivideWord", 1, 0},
    {Mode::DelimitCRLF, "DelimitCRLF", 1, 0},
    {Mode::DeleteCRLF, "DeleteCRLF", 1, 0},
    {Mode::AlphabetCapitalize, "AlphabetCapitalize", 1, 0},
    {Mode::Alternative, "Alternative", 1, 0},
    {Mode::ReduceUndef, "ReduceUndef", 1, 1},
    {Mode::ReduceChar, "ReduceChar", 1, 1},
    {Mode::ReduceNumber, "ReduceNumber", 1, 1},
}};

Settings::Settings() {
    for (ModeInfo const& info : kModes) modes[static_cast<std::size_t>(info.mode)] = info.defaultValue;
}

void Settings::setMode(Mode m, int value) {
    ModeInfo const& info = kModes[static_cast<std::size_t>(m)];
    if (value < 0 || value > info.maximum)
        throw std::invalid_argument(std::string("INVALID_ARGUMENT: Tavo::set") + info.key + "Mode()");
    modes[static_cast<std::size_t>(m)] = value;
}

}  // namespace TAVO
