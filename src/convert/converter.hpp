// Input conversion: what is analysed instead of the given text.
#ifndef TAVO_CONVERT_CONVERTER_HPP
#define TAVO_CONVERT_CONVERTER_HPP

#include "config/settings.hpp"
#include "convert/conversion.hpp"
#include "convert/convert_rules.hpp"

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace TAVO {

class DicSet;

/// Bound to the settings and dictionaries of one analyser: letters, digits and kanji are turned into the forms that
/// the dictionaries have.
class Converter {
public:
    /// Cheap when nothing changed.
    void bind(Settings const& settings, ConvertRules const& rules, DicSet const& dics);
    /// False when texts are analysed as they are given.
    bool isOn() const noexcept { return isOn_; }
    /// What becomes of @p text; null when nothing changes. No change crosses a place of @p cuts (ascending).
    std::unique_ptr<Conversion> convert(std::string_view text, std::span<std::uint32_t const> cuts = {}) const;

private:
    /// What the converter was made for.
    struct Made {
        int level = 0;
        bool foldsCase = false;
        std::uint64_t rules = 0;
        std::vector<std::uint64_t> dics;
        bool operator==(Made const&) const = default;
    };
    class Writer;

    void makeTables(DicSet const& dics);
    void mark(std::string_view text, std::uint8_t flag);
    void convertPiece(Writer& writer, std::string_view text, std::size_t begin, std::size_t end) const;
    std::size_t convertAt(Writer& writer, std::string_view text, std::size_t at, std::string_view previous) const;
    bool isInWord(std::string_view text, std::size_t at, std::size_t next) const;
    bool hasWordWith(std::string_view text, std::size_t at) const;
    /// Letters in the case that a word has.
    void foldLetters(std::string_view text, std::span<std::uint32_t const> cuts,
                     std::unique_ptr<Conversion>& conversion) const;

    Made made_;
    bool isOn_ = false;
    ConvertRules const* rules_ = nullptr;
    DicSet const* dics_ = nullptr;
    std::vector<std::uint8_t> flags_;                            // by character; 0: it stays
    std::vector<std::uint16_t> singles_;                         // by character: index of what becomes of it
    std::vector<std::string> texts_;                             // by index
    std::vector<std::uint16_t> voiced_, halfVoiced_, unvoiced_;  // by character; 0: none
};

}  // namespace TAVO

#endif
