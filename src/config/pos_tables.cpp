#include "config/pos_tables.hpp"

#include "base/sjis.hpp"
#include "base/text.hpp"
#include "config/line_file.hpp"
#include "dic/conn_table.hpp"

#include <tavo/error.hpp>

#include <atomic>

namespace TAVO {
namespace {

constexpr char const* kNumberDefaults[] = {"Number",      "Rank",  "Figure", "Period",
                                           "InterNumber", "Comma", "Dash",   "Colon"};

// Shift_JIS bytes; in order: noun, verb stem, adjective stem, adverbial word,
// adnominal word, conjunction, independent word, full stop, auxiliary noun.
constexpr char const* kMajorDefaults[] = {
    "\x96\xBC\x8E\x8C",
    "\x93\xAE\x8E\x8C\x8C\xEA\x8A\xB2",
    "\x8C\x60\x97\x65\x8E\x8C\x8C\xEA\x8A\xB2",
    "\x98\x41\x97\x70\x8E\x8C",
    "\x98\x41\x91\xCC\x8E\x8C",
    "\x90\xDA\x91\xB1\x8E\x8C",
    "\x93\xC6\x97\xA7\x8E\x8C",
    "\x8B\xE5\x93\x5F",
    "\x95\xE2\x8F\x95\x96\xBC\x8E\x8C",
    "Undef",
    "Katakana",
    "Kanji",
    "Alphabet",
};

/// Calls add(stripped line, line number) for every line that is no comment.
template <class Add>
void readList(std::string const& path, std::string_view const* text, Add&& add) {
    LineFile file(path, text);
    for (unsigned number = 1; file.next(); ++number) {
        if (isCommentLine(file.line())) continue;
        std::string_view const line = strip(file.line());
        if (!line.empty()) add(line, number);
    }
}

/// Public patterns split at every ":" and keep "-" as the mark of a negation.
PosName splitPublicPattern(std::string_view line) {
    PosName pattern;
    std::size_t end = findMark(line, ":");
    pattern.head = line.substr(0, end);
    while (end != std::string_view::npos) {
        std::size_t const begin = end + 1;
        end = findMark(line, ":", begin);
        std::string_view const feature = line.substr(begin, end == std::string_view::npos ? end : end - begin);
        if (!feature.empty()) pattern.features.push_back(feature);
    }
    return pattern;
}

void addPattern(PatternList& list, std::string_view text) {
    PosName name;
    splitPosName(text, name);
    list.add(name);
}

// Names that differ only behind the "-" or "/" that ends what counts of them stand
// side by side; so one in seven is split up.

/// @p counted, which is all of a name that is split up in @p name, and the mark
/// behind it in @p text; empty when @p text does not go on so.
std::string_view withMark(std::string_view text, std::string_view counted, PosName const& name) {
    if (counted.empty() || text.size() <= counted.size() || !text.starts_with(counted)) return {};
    std::string_view const last = name.features.empty() ? name.head : name.features.back();
    std::size_t const lastStart = last.empty() ? 0 : static_cast<std::size_t>(last.data() - counted.data());
    if (findMark(text, ":-/", lastStart) != counted.size() || text[counted.size()] == ':') return {};
    return text.substr(0, counted.size() + 1);
}

template <std::size_t N>
void setDefaults(PatternList& list, char const* const (&names)[N]) {
    list.clear();
    for (char const* name : names) addPattern(list, name);
}

}  // namespace

void PosTables::setNumberPartOfSPPath(char const* path, std::string_view const* text) {
    setList(number_, numberPath_, path, text);
}
void PosTables::setMajorPartOfSPPath(char const* path) { setList(major_, majorPath_, path); }

void PosTables::setList(PatternList& list, std::string& storedPath, char const* path, std::string_view const* text) {
    // The argument may be the very string that is cleared.
    std::string const kept = path == nullptr ? "" : path;
    storedPath.clear();
    list.clear();
    if (path == nullptr) return;
    readList(kept, text, [&](std::string_view line, unsigned) { addPattern(list, line); });
    storedPath = kept;
    setPartOfSPType();
}

void PosTables::setPublicPartOfSPPath(char const* path) {
    std::string const kept = path == nullptr ? "" : path;
    publicPath_.clear();
    public_.clear();
    if (path == nullptr) return;
    readList(kept, nullptr, [&](std::string_view line, unsigned number) {
        PosName const pattern = splitPublicPattern(line);
        if (pattern.head.empty()) throw illegal_format(kept + ":" + std::to_string(number));
        public_.add(pattern);
    });
    publicPath_ = kept;
}

void PosTables::setPartOfSP(ConnTable const* table) {
    table_ = table;
    if (table != nullptr) {
        if (numberPath_.empty()) setDefaults(number_, kNumberDefaults);
        if (majorPath_.empty()) setDefaults(major_, kMajorDefaults);
    }
    setPartOfSPType();
}

void PosTables::setPartOfSPType() {
    static std::atomic<std::uint64_t> lastRevision{0};
    revision_ = ++lastRevision;
    std::size_t const count = table_ == nullptr ? 0 : table_->idCount() + std::size_t{1};
    types_.assign(count, 0);
    conjugation_.assign(count, 0);
    PosName name;
    std::string_view counted;  // the part of the name before that counts
    std::string_view marked;   // that and the mark behind it; empty without one
    for (std::uint32_t pid = 0; pid < count; ++pid) {
        std::string_view const text = table_->getName(pid);
        if (marked.empty()) marked = withMark(text, counted, name);
        if (pid != 0 && (text == counted || (!marked.empty() && text.starts_with(marked)))) {
            types_[pid] = types_[pid - 1];
            continue;
        }
        std::size_t const end = splitPosName(text, name);
        counted = text.substr(0, end);
        marked = text.substr(0, end == text.size() ? 0 : end + 1);
        types_[pid] = typeOf(name);
    }
}

std::uint8_t PosTables::typeOf(PosName const& name) const {
    unsigned type = 0;
    if (major_.matches(name)) type |= kMajorPos;
    if (number_.matches(name)) type |= kNumberPos;
    auto const addClass = [&](std::string_view word) {
        if (word.empty() || isLeadByte(word.front())) return;  // the class words are ASCII
        for (auto const& [known, bit] : kPosClassWords)
            if (word == known) type |= bit;
    };
    addClass(name.head);
    for (std::string_view const feature : name.features) addClass(feature);
    return static_cast<std::uint8_t>(type);
}

char const* PosTables::name(std::uint32_t pid) const noexcept { return table_ == nullptr ? "" : table_->getName(pid); }

std::uint16_t PosTables::getPid(std::string const& name) const {
    // The name of id 0 is empty, and so is the answer for it.
    return table_ == nullptr ? std::uint16_t{0} : table_->getId(name);
}

std::uint16_t PosTables::getPidMax() const noexcept { return table_ == nullptr ? std::uint16_t{0} : table_->idCount(); }

std::vector<std::string> PosTables::listedNames() const {
    std::vector<std::string> names;
    for (std::uint32_t pid = 1; pid <= getPidMax(); ++pid) names.emplace_back(name(pid));
    return names;
}

}  // namespace TAVO
