#include "cli/init_check.hpp"

#include "cli/encoding.hpp"
#include "cli/utf8.hpp"

#include "config/init_file.hpp"
#include "config/settings.hpp"
#include "dic/file_access.hpp"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <map>
#include <string_view>

namespace tool {

namespace {

using TAVO::InitLine;

constexpr std::string_view kRepeated[] = {"Delimiter", "ExtCombine", "Dic"};
constexpr std::string_view kTexts[] = {"OutputFormat", "EOS", "NullString", "ProsodicInfoCombine"};
constexpr std::string_view kPaths[] = {"CommentRule",   "ReduceRule", "PublicPartOfSP", "NumberPartOfSP",
                                       "MajorPartOfSP", "ConnTable",  "EndFormRule",    "CooccurrenceRule"};
constexpr std::string_view kKeptOnly[] = {"ConvertRule"};

template <std::size_t N>
bool isIn(std::string_view const (&keys)[N], std::string_view key) {
    return std::find(std::begin(keys), std::end(keys), key) != std::end(keys);
}

std::vector<std::string_view> allKeys() {
    std::vector<std::string_view> keys;
    keys.reserve(std::size(TAVO::kModes));
    for (TAVO::ModeInfo const& mode : TAVO::kModes) keys.emplace_back(mode.key);
    keys.insert(keys.end(), std::begin(kTexts), std::end(kTexts));
    keys.insert(keys.end(), std::begin(kRepeated), std::end(kRepeated));
    keys.insert(keys.end(), std::begin(kPaths), std::end(kPaths));
    keys.insert(keys.end(), std::begin(kKeptOnly), std::end(kKeptOnly));
    return keys;
}

/// How many letters must be changed, added or left out to make @p b of @p a; case does not count.
std::size_t editDistance(std::string_view a, std::string_view b) {
    auto const small = [](char c) { return std::tolower(static_cast<unsigned char>(c)); };
    std::vector<std::size_t> row(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j) row[j] = j;
    for (std::size_t i = 1; i <= a.size(); ++i) {
        std::size_t diagonal = row[0]++;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            std::size_t const changed = diagonal + (small(a[i - 1]) != small(b[j - 1]) ? 1 : 0);
            diagonal = row[j];
            row[j] = std::min({changed, row[j] + 1, row[j - 1] + 1});
        }
    }
    return row[b.size()];
}

/// The key that was meant, or all of them.
std::string advice(std::string_view unknown) {
    std::string all;
    for (std::string_view const key : allKeys()) {
        if (editDistance(unknown, key) <= key.size() / 3) return "did you mean " + std::string(key) + "?";
        all.append(all.empty() ? "the keys are " : ", ").append(key);
    }
    return all;
}

bool isUtf8(std::string_view text) {
    while (!text.empty()) {
        Utf8Char const c = decodeUtf8(text);
        if (!c.valid) return false;
        text.remove_prefix(c.bytes);
    }
    return true;
}

bool isAscii(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

std::string shown(std::string const& text) { return isUtf8(text) ? text : sjisToUtf8(text); }

class Checker {
public:
    explicit Checker(std::string const& path) : path_(path), read_(TAVO::readInitLines(path)) {}

    InitFindings check() {
        bool knowsAny = false;
        for (InitLine const& line : read_.lines) last_[line.value.empty() ? "" : line.key] = line.number;
        for (InitLine const& line : read_.lines) knowsAny = checkLine(line) || knowsAny;
        bool const isBinary = std::any_of(read_.lines.begin(), read_.lines.end(), [](InitLine const& line) {
            return (line.key + line.value).find('\0') != std::string::npos;
        });
        if (isBinary || (!knowsAny && !read_.lines.empty()))
            return {{path_ + ":" + std::to_string(read_.lines.front().number) +
                     ": no init file: lines of KEY=VALUE are expected, such as ConnTable=PATH"},
                    {}};
        return std::move(found_);
    }

private:
    void error(InitLine const& line, std::string const& text) { found_.errors.push_back(at(line) + text); }
    void warn(InitLine const& line, std::string const& text) { found_.warnings.push_back(at(line) + text); }
    std::string at(InitLine const& line) const { return path_ + ":" + std::to_string(line.number) + ": "; }

    /// True when the key is known.
    bool checkLine(InitLine const& line) {
        if (line.wasCut) warn(line, "longer than 4095 bytes; the rest counts as a line of its own");
        auto const keys = allKeys();
        bool const isKnown = std::find(keys.begin(), keys.end(), line.key) != keys.end();
        if (!isKnown && !line.key.empty() && !line.value.empty()) {
            warn(line, shown(line.key) + ": no such key, ignored; " + advice(line.key));
        } else if (line.key.empty() || line.value.empty()) {
            warn(line, (isKnown ? line.key + " has no value" : "not of the form KEY=VALUE") + ", ignored");
        } else if (last_[line.key] == line.number || isIn(kRepeated, line.key)) {
            checkValue(line);
        }
        return isKnown;
    }

    void checkValue(InitLine const& line) {
        for (TAVO::ModeInfo const& mode : TAVO::kModes)
            if (line.key == mode.key) return checkNumber(line, mode.maximum);
        if (TAVO::isTextKey(line.key)) checkText(line);
        if (line.key == "ExtCombine") checkField(line);
        if (line.key == "Dic" || isIn(kPaths, line.key)) checkPath(line);
    }

    void checkNumber(InitLine const& line, int maximum) {
        int number = 0;
        char const* const end = line.value.data() + line.value.size();
        auto const [behind, code] = std::from_chars(line.value.data(), end, number);
        std::string allowed = "0 or 1";
        if (maximum > 1) allowed = "0 to " + std::to_string(maximum);
        if (line.value[0] == '-' || code != std::errc() || number > maximum)
            error(line, line.key + "=" + shown(line.value) + ": allowed is " + allowed);
        else if (behind != end)
            warn(line, line.key + "=" + shown(line.value) + ": taken as " + std::to_string(number) + "; allowed is " +
                           allowed);
    }

    void checkText(InitLine const& line) {
        std::string sjis;
        if (!read_.isUtf8) {
            if (!isAscii(line.value) && isUtf8(line.value))
                warn(line,
                     line.key + " looks like UTF-8 but is taken as Shift_JIS; begin the file with \"; coding: utf-8\"");
        } else if (auto const bad = appendUtf8AsSjis(sjis, line.value)) {
            std::string const rest = line.value.substr(*bad);
            Utf8Char const c = decodeUtf8(rest);
            error(line, line.key + ": " +
                            (c.valid ? "\"" + rest.substr(0, c.bytes) + "\" is not in code page 932" : "not UTF-8") +
                            "; allowed is text in UTF-8 whose characters code page 932 has");
        }
    }

    void checkField(InitLine const& line) {
        std::size_t const colon = line.value.find(':');
        bool const isNumber =
            colon != std::string::npos && colon != 0 && line.value.find_first_not_of("0123456789") == colon;
        if (!isNumber)
            warn(line, "ExtCombine=" + shown(line.value) + ": allowed is N:begin, N:end or N:TEXT, N a field's number");
    }

    void checkPath(InitLine const& line) {
        bool const isDic = line.key == "Dic";
        std::string const file = isDic ? line.value.substr(0, line.value.find(',')) : line.value;
        bool const mayBeNone = std::any_of(std::begin(TAVO::kTableCompanions), std::end(TAVO::kTableCompanions),
                                           [&](auto const& companion) { return companion.key == line.key; });
        if (TAVO::FileLength(file.c_str()) >= 0 || (mayBeNone && file == TAVO::kNoFile)) return;
        error(line, line.key + ": cannot open " + file + "; allowed is a file" +
                        (isDic       ? ", or two (compiled,source)"
                         : mayBeNone ? ", or none"
                                     : ""));
    }

    std::string path_;
    TAVO::InitLines read_;
    std::map<std::string, std::size_t> last_;  // by key, the line that counts
    InitFindings found_;
};

}  // namespace

InitFindings checkInitFile(std::string const& path) { return Checker(path).check(); }

}  // namespace tool
