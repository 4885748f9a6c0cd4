#include "config/pos_name.hpp"

#include "base/sjis.hpp"
#include "base/text.hpp"

#include <algorithm>
#include <iterator>

namespace TAVO {
namespace {

bool satisfies(std::set<std::string> const& pattern, PosName const& name) {
    if (pattern.empty()) return true;
    // A name without features satisfies no pattern that has some, not even one
    // of negative features only.
    if (name.features.empty()) return false;
    return std::all_of(pattern.begin(), pattern.end(), [&](std::string const& feature) {
        if (feature.empty()) return true;
        if (feature.front() == '-') return !name.hasFeature(std::string_view(feature).substr(1));
        return name.hasFeature(feature);
    });
}

/// Features that an imported lexicon has beside those of its source.
constexpr std::string_view kInternalFeatures[] = {"Undef",    "Inside", "Katakana", "Kana", "Kanji",
                                                  "Alphabet", "Number", "Symbol",   "Roman"};

}  // namespace

std::string_view withoutClass(std::string_view name) noexcept {
    // Neither "-" nor a digit can be the second byte of a character.
    std::size_t const lastOther = name.find_last_not_of("0123456789");
    bool const hasClass =
        lastOther != std::string_view::npos && lastOther > 0 && lastOther + 1 < name.size() && name[lastOther] == '-';
    return hasClass ? name.substr(0, lastOther) : name;
}

std::string displayPosName(std::string_view name) {
    name = withoutClass(name);
    PosName parts;
    std::size_t const end = splitPosName(name, parts);
    std::string shown(parts.head);
    for (std::string_view const feature : parts.features) {
        if (std::find(std::begin(kInternalFeatures), std::end(kInternalFeatures), feature) ==
            std::end(kInternalFeatures))
            shown.append(":").append(feature);
    }
    shown += name.substr(end);
    return shown == "Undef" ? kUnknownWordName : shown;
}

bool PosName::hasFeature(std::string_view word) const noexcept {
    return std::find(features.begin(), features.end(), word) != features.end();
}

std::size_t splitPosName(std::string_view name, PosName& out) {
    constexpr std::string_view kSeparators = ":-/";
    out.features.clear();
    std::size_t end = findMark(name, kSeparators);
    out.head = name.substr(0, end);
    while (end != std::string_view::npos && name[end] == ':') {
        std::size_t const begin = end + 1;
        end = findMark(name, kSeparators, begin);
        out.features.push_back(strip(name.substr(begin, end == std::string_view::npos ? end : end - begin)));
    }
    return std::min(end, name.size());
}

void PatternList::add(PosName const& pattern) {
    patterns_.emplace(std::string(pattern.head),
                      std::set<std::string>(pattern.features.begin(), pattern.features.end()));
}

bool PatternList::matches(PosName const& name) const {
    auto const [first, last] = patterns_.equal_range(name.head);
    return std::any_of(first, last, [&](auto const& pattern) { return satisfies(pattern.second, name); });
}

}  // namespace TAVO
