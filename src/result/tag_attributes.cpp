#include "result/tag_attributes.hpp"

#include "base/sjis.hpp"
#include "dic/conn_table.hpp"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace TAVO {
namespace {

constexpr std::pair<std::string_view, char> kEntities[] = {
    {"&lt;", '<'}, {"&gt;", '>'}, {"&amp;", '&'}, {"&apos;", '\''}, {"&quot;", '"'},
};

constexpr std::pair<std::string_view, std::string TagInfo::*> kTextAttributes[] = {
    {"StdForm", &TagInfo::stdForm},
    {"ReadPron", &TagInfo::readPron},
    {"Read", &TagInfo::read},
    {"Pron", &TagInfo::pron},
    {"LVRead", &TagInfo::lvRead},
    {"Group", &TagInfo::group},
    {"AdditionalInfo", &TagInfo::additionalInfo},
    {"ProsodicInfo", &TagInfo::prosodicInfo},
};

constexpr std::pair<std::string_view, std::vector<unsigned short> TagInfo::*> kCategoryAttributes[] = {
    {"Category1", &TagInfo::category1},
    {"Category2", &TagInfo::category2},
    {"Category3", &TagInfo::category3},
};

constexpr std::string_view kPartOfSP = "PartOfSP";
constexpr std::string_view kData = "Data";

/// First position from @p pos on that holds none of @p skipped, all one-byte marks.
std::size_t skip(std::string_view line, std::size_t pos, std::string_view skipped) noexcept {
    return std::min(line.find_first_not_of(skipped, pos), line.size());
}

/// The numbers in @p text; whatever stands between digits separates them. A
/// number that is no category is left out.
std::vector<unsigned short> categories(std::string_view text) {
    constexpr std::string_view kDigits = "0123456789";
    std::vector<unsigned short> numbers;
    for (std::size_t pos = text.find_first_of(kDigits); pos != npos; pos = text.find_first_of(kDigits, pos)) {
        unsigned long number = 0;
        for (; pos < text.size() && kDigits.find(text[pos]) != npos; ++pos)
            number = std::min(number * 10 + static_cast<unsigned long>(text[pos] - '0'), 65536UL);
        if (number < 65536) numbers.push_back(static_cast<unsigned short>(number));
    }
    return numbers;
}

}  // namespace

std::size_t getKeyValue(std::string_view line, std::size_t pos, std::size_t end, std::string& key, std::string& value) {
    key.clear();
    value.clear();
    pos = skip(line, pos, " \t/");
    if (pos == line.size()) return npos;
    std::size_t const keyEnd = std::min(findMark(line, " \t=/>", pos), line.size());
    key = line.substr(pos, keyEnd - pos);
    // What stands at ">" before the tag's end is no key; it is stepped over.
    std::size_t const behindKey = keyEnd == pos && keyEnd < end && line[keyEnd] == '>' ? keyEnd + 1 : keyEnd;
    pos = skip(line, behindKey, " \t");
    if (pos >= std::min(end, line.size()) || line[pos] != '=') return pos;
    pos = skip(line, pos + 1, " \t");
    bool const quoted = pos < end && line[pos] == '"';
    if (quoted) ++pos;
    std::size_t const valueEnd = std::min(findMark(line.substr(0, end), quoted ? "\"" : " \t/>\"", pos), end);
    value = decodeEntities(line.substr(pos, valueEnd - pos));
    return quoted && valueEnd < end ? valueEnd + 1 : valueEnd;
}

std::string decodeEntities(std::string_view text, std::vector<Entity>* entities) {
    std::string decoded;
    std::size_t pos = 0;
    for (std::size_t mark = findMark(text, "&"); mark != npos; mark = findMark(text, "&", mark)) {
        auto const* const entity = std::find_if(std::begin(kEntities), std::end(kEntities), [&](auto const& known) {
            return text.substr(mark).starts_with(known.first);
        });
        if (entity == std::end(kEntities)) {
            ++mark;
            continue;
        }
        decoded.append(text, pos, mark - pos);
        pos = mark + entity->first.size();
        if (entities != nullptr) entities->push_back({mark, pos, decoded.size()});
        decoded.push_back(entity->second);
        mark = pos;
    }
    return decoded.append(text.substr(pos));
}

std::string encodeEntities(std::string_view text) {
    std::string encoded;
    for (std::size_t pos = 0; pos < text.size();) {
        std::size_t const width = charWidth(text, pos);
        auto const* const entity = std::find_if(std::begin(kEntities), std::end(kEntities), [&](auto const& known) {
            return width == 1 && text[pos] == known.second;
        });
        encoded.append(entity == std::end(kEntities) ? text.substr(pos, width) : entity->first);
        pos += width;
    }
    return encoded;
}

bool isAttribute(std::string_view key) noexcept {
    auto const isKey = [key](auto const& attribute) { return attribute.first == key; };
    return key == kPartOfSP || key.starts_with(kData) ||
           std::any_of(std::begin(kTextAttributes), std::end(kTextAttributes), isKey) ||
           std::any_of(std::begin(kCategoryAttributes), std::end(kCategoryAttributes), isKey);
}

bool setAttribute(TagInfo& info, std::string_view key, std::string value) {
    for (auto const& [name, field] : kTextAttributes) {
        if (key != name) continue;
        info.*field = std::move(value);
        return true;
    }
    for (auto const& [name, field] : kCategoryAttributes) {
        if (key != name) continue;
        info.*field = categories(value);
        return true;
    }
    if (!key.starts_with(kData)) return false;
    long const number = std::strtol(std::string(key.substr(kData.size())).c_str(), nullptr, 10);
    if (number < 0 || number > static_cast<long>(kMaxExtField)) return false;
    info.ext[static_cast<unsigned>(number)] = std::move(value);
    return true;
}

std::uint16_t attributePid(PosTables const& pos, std::string const& name) {
    if (name.empty()) return 0;
    std::uint16_t const pid = pos.getPid(name);
    return pid != 0 ? pid : ConnTable::kUnknownId;
}

}  // namespace TAVO
