#include "dic/record_source.hpp"

#include "base/sjis.hpp"
#include "base/text.hpp"

#include <vector>

namespace TAVO {
namespace {

constexpr std::string_view kSeparators = "-/";
constexpr std::string_view kMarks = "\\,-/";

/// @p text with an escape before each of @p marks, but for the first
/// @p plainSeparators separators.
std::string escape(std::string_view text, std::string_view marks, std::size_t plainSeparators = 0) {
    std::string escaped;
    for (std::size_t pos = 0; pos < text.size();) {
        std::size_t const width = charWidth(text, pos);
        bool const isMark = width == 1 && marks.find(text[pos]) != std::string_view::npos;
        bool const isSeparator = width == 1 && kSeparators.find(text[pos]) != std::string_view::npos;
        if (isSeparator && plainSeparators > 0) {
            --plainSeparators;
        } else if (isMark) {
            escaped += '\\';
        }
        escaped += text.substr(pos, width);
        pos += width;
    }
    return escaped;
}

/// For fields in which only a compound's separators count: a stored separator
/// more than a compound may have was escaped in the source.
std::string escapeReading(std::string_view text, unsigned partCount) {
    return partCount > 1 ? escape(text, kMarks, partCount - 1) : escape(text, "\\,");
}

std::string formField(std::string_view form, MrphDic record) {
    std::string field = record.partCount() > 1 ? record.partForm() : escape(form, kMarks);
    // At the start of a line these would make it a comment.
    if (isCommentLine(field)) field.insert(field.begin(), '\\');
    return field;
}

std::string partOfSpField(MrphDic record, Dic const& dic) {
    std::string field = escape(dic.getPartOfSPName(record.pid()), kMarks);
    unsigned const parts = record.partCount();
    bool allOwn = true;
    for (unsigned i = 0; i < parts; ++i) allOwn = allOwn && record.partPid(i) == record.pid();
    // Parts without names of their own have the word's.
    if (allOwn) return field;
    for (unsigned i = 0; i < parts; ++i)
        field.append("-").append(escape(dic.getPartOfSPName(record.partPid(i)), kMarks));
    return field;
}

std::string categoryField(MrphDic record, unsigned list) {
    std::string field;
    for (unsigned short const value : record.category(list)) {
        if (!field.empty()) field += ':';
        field += std::to_string(value);
    }
    // A lone "0" would be read as no list.
    if (field == "0") field = "00";
    return field;
}

}  // namespace

std::string formatSourceLine(std::string_view form, MrphDic record, Dic const& dic) {
    unsigned const parts = record.partCount();
    std::vector<std::string> fields{formField(form, record),
                                    partOfSpField(record, dic),
                                    std::to_string(record.cost()),
                                    escapeReading(record.readPron(), parts),
                                    escapeReading(record.stdForm(), parts),
                                    escape(record.wordCooc(), "\\,"),
                                    escape(record.groupCooc(), "\\,"),
                                    escape(record.group(), "\\,"),
                                    categoryField(record, 1),
                                    categoryField(record, 2),
                                    categoryField(record, 3),
                                    escape(record.prosodicInfo(), "\\,")};
    std::vector<char const*> const ext = record.ext();
    for (char const* const text : ext) fields.push_back(escape(text, "\\,"));
    // Every Ext field counts, even an empty one.
    while (ext.empty() && fields.back().empty()) fields.pop_back();
    std::string line = fields.front();
    for (std::size_t i = 1; i < fields.size(); ++i) line.append(",").append(fields[i]);
    return line;
}

}  // namespace TAVO
