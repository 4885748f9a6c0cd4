// Applying an init file: each key through its setter, in a fixed order.
#include "config/init_file.hpp"
#include "core/impl.hpp"

#include <algorithm>
#include <charconv>
#include <climits>
#include <exception>
#include <iterator>
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

struct FileKey {
    char const* key;
    void (Tavo::*set)(char const*);
    char const* (Tavo::*get)() const;
};
constexpr FileKey kFileKeys[] = {
    {"CommentRule", &Tavo::setCommentRulePath, &Tavo::getCommentRulePath},
    {"ReduceRule", &Tavo::setReduceRulePath, &Tavo::getReduceRulePath},
    {"ConvertRule", &Tavo::setConvertRulePath, &Tavo::getConvertRulePath},
    {"PublicPartOfSP", &Tavo::setPublicPartOfSPPath, &Tavo::getPublicPartOfSPPath},
    {"NumberPartOfSP", &Tavo::setNumberPartOfSPPath, &Tavo::getNumberPartOfSPPath},
    {"MajorPartOfSP", &Tavo::setMajorPartOfSPPath, &Tavo::getMajorPartOfSPPath},
    {"EndFormRule", &Tavo::setEndFormRulePath, &Tavo::getEndFormRulePath},
    {"CooccurrenceRule", &Tavo::setCooccurrenceRulePath, &Tavo::getCooccurrenceRulePath},
};

bool hasCompanion(std::string_view key) {
    return std::any_of(std::begin(kTableCompanions), std::end(kTableCompanions),
                       [key](TableCompanion const& companion) { return companion.key == key; });
}

/// Files that the init file names; those that belong to its connection table are taken
/// from beside that unless others were set before, but not from beside another table.
void applyPaths(Tavo& tavo, InitValues const& values, std::string const& table) {
    std::string const tableBefore = tavo.getConnTablePath();
    for (auto const& [key, set, get] : kFileKeys) {
        std::string const* const named = lastValue(values, key);
        bool const isCompanion = hasCompanion(key);
        if (named != nullptr) {
            (tavo.*set)(isCompanion && *named == kNoFile ? nullptr : named->c_str());
        } else if (std::string const before = (tavo.*get)();
                   isCompanion && (before.empty() || before == tableCompanion(tableBefore, key))) {
            std::string const beside = tableCompanion(table, key);
            if (beside != before) (tavo.*set)(beside.empty() ? nullptr : beside.c_str());
        }
    }
}

}  // namespace

void Tavo::Impl::applySettings(Tavo& tavo, InitValues const& values, std::string const& path) {
    for (ModeInfo const& info : kModes) {
        applyMode(values, info, path);
        if (info.mode != Mode::DeleteCRLF) continue;
        if (auto const delimiters = values.find("Delimiter"); delimiters != values.end())
            context.settings.delimiters = delimiters->second;
    }
    applyStrings(context.settings, values);
    if (values.contains("ExtCombine")) hasResult = false;
    applyCombines(tavo, context.settings, values);
}

void Tavo::Impl::applyInitFile(Tavo& tavo, InitValues const& values, std::string const& path,
                               std::string const& folder) {
    // The order of the steps is part of the contract: modes before the
    // dictionaries that they steer, dictionaries before the rules, and the
    // connection table last, so that it resolves every name.
    applySettings(tavo, values, path);
    bool const memoryMapped = context.settings.mode(Mode::MemoryMapped) == 1;
    auto const dics = values.find("Dic");
    if (dics == values.end())
        tavo.addDicPath((folder + "/SysDic").c_str(), memoryMapped);
    else
        for (std::string const& dic : dics->second) tavo.addDicPath(dic.c_str(), memoryMapped);
    std::string const* const named = lastValue(values, "ConnTable");
    std::string const table = named != nullptr ? *named : folder + "/ConnTable";
    applyPaths(tavo, values, table);
    tavo.setConnTablePath(table.c_str());
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
