// Applying an init file: each key through its setter, in a fixed order.
#include "config/init_file.hpp"
#include "core/impl.hpp"

#include <charconv>
#include <climits>
#include <cstdlib>
#include <exception>
#include <string_view>
#include <utility>

namespace TAVO {
namespace {

/// The last value of @p key, null when the file has none.
std::string const* lastValue(InitValues const& values, std::string_view key) {
    auto const found = values.find(key);
    return found == values.end() ? nullptr : &found->second.back();
}

bool isDigit(char c) noexcept { return c >= '0' && c <= '9'; }

/// The leading decimal digits of @p text; the largest int when they do not fit,
/// which no mode accepts.
int leadingNumber(std::string const& text) {
    int value = 0;
    auto const result = std::from_chars(text.data(), text.data() + text.size(), value);
    return result.ec == std::errc::result_out_of_range ? INT_MAX : value;
}

/// Mode and filler of a combine setting.
std::pair<int, std::string> combineValue(std::string const& text) {
    if (text == "begin") return {static_cast<int>(Combine::First), ""};
    if (text == "end") return {static_cast<int>(Combine::Last), ""};
    return {static_cast<int>(Combine::Join), text};
}

/// The folder of the default dictionary and connection table.
std::string defaultFolder() {
    char const* const variable = std::getenv("TAVO_PATH");
    std::string folder = variable == nullptr || *variable == '\0' ? "." : variable;
    if (folder.back() == '/' || folder.back() == '\\') folder.pop_back();
    return folder;
}

void applyCombines(Tavo& tavo, Settings& settings, InitValues const& values) {
    if (std::string const* const value = lastValue(values, "ProsodicInfoCombine")) {
        auto [mode, filler] = combineValue(*value);
        tavo.setProsodicInfoCombineMode(mode, std::move(filler));
    }
    auto const ext = values.find("ExtCombine");
    if (ext == values.end()) return;
    settings.extCombine.clear();
    settings.extFiller.clear();
    for (std::string const& value : ext->second) {
        std::size_t const colon = value.find(':');
        if (colon == std::string::npos) continue;
        auto [mode, filler] = combineValue(value.substr(colon + 1));
        tavo.setExtCombineMode(leadingNumber(value), mode, std::move(filler));
    }
}

void applyStrings(Settings& settings, InitValues const& values) {
    if (std::string const* const value = lastValue(values, "OutputFormat")) settings.outputFormat = *value;
    if (std::string const* const value = lastValue(values, "EOS")) settings.eos = decodeEscapes(*value);
    if (std::string const* const value = lastValue(values, "NullString")) settings.nullString = decodeEscapes(*value);
}

using PathSetter = void (Tavo::*)(char const*);
constexpr std::pair<char const*, PathSetter> kPathKeys[] = {
    {"CommentRule", &Tavo::setCommentRulePath},       {"ReduceRule", &Tavo::setReduceRulePath},
    {"ConvertRule", &Tavo::setConvertRulePath},       {"PublicPartOfSP", &Tavo::setPublicPartOfSPPath},
    {"NumberPartOfSP", &Tavo::setNumberPartOfSPPath}, {"MajorPartOfSP", &Tavo::setMajorPartOfSPPath},
};

}  // namespace

void Tavo::Impl::applyInitFile(Tavo& tavo, std::string const& path) {
    InitValues const values = readInitFile(path);
    // The order of the steps is part of the contract: modes before the
    // dictionaries that they steer, dictionaries before the rules, and the
    // connection table last, so that it resolves every name.
    for (ModeInfo const& info : kModes) {
        applyMode(values, info, path);
        if (info.mode != Mode::DeleteCRLF) continue;
        if (auto const delimiters = values.find("Delimiter"); delimiters != values.end())
            context.settings.delimiters = delimiters->second;
    }
    applyStrings(context.settings, values);
    if (values.contains("ExtCombine")) hasResult = false;
    applyCombines(tavo, context.settings, values);

    bool const memoryMapped = context.settings.mode(Mode::MemoryMapped) == 1;
    auto const dics = values.find("Dic");
    if (dics == values.end())
        tavo.addDicPath((defaultFolder() + "/SysDic").c_str(), memoryMapped);
    else
        for (std::string const& dic : dics->second) tavo.addDicPath(dic.c_str(), memoryMapped);
    for (auto const& [key, setter] : kPathKeys)
        if (std::string const* const value = lastValue(values, key)) (tavo.*setter)(value->c_str());
    std::string const* const table = lastValue(values, "ConnTable");
    tavo.setConnTablePath(table == nullptr ? (defaultFolder() + "/ConnTable").c_str() : table->c_str());
}

void Tavo::Impl::applyMode(InitValues const& values, ModeInfo const& info, std::string const& path) {
    std::string const* const value = lastValue(values, info.key);
    if (value == nullptr) return;
    if (!isDigit(value->front())) throw unknown_setting("");
    try {
        setMode(info.mode, leadingNumber(*value));
    } catch (std::exception const&) {
        throw unknown_setting(path + ": " + info.key + "=" + *value);
    }
}

}  // namespace TAVO
