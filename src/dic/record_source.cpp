#include "dic/record_source.hpp"

#include "base/sjis.hpp"
#include "base/text.hpp"

#include <vector>

namespace TAVO {

std::string escapeSource(std::string_view text, std::string_view marks, std::size_t plainSeparators) {
    constexpr std::string_view kSeparators = "-/";
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

std::string escapeSourceReading(std::string_view text, unsigned partCount) {
    return partCount > 1 ? escapeSource(text, kFormMarks, partCount - 1) : escapeSource(text, kTextMarks);
}

namespace {

std::string formField(std::string_view form, MrphDic record) {
    std::string field = record.partCount() > 1 ? record.partForm() : escapeSource(form, kFormMarks);
    // At the start of a line these would make it a comment.
    if (isCommentLine(field)) field.insert(field.begin(), '\\');
    return field;
}

std::string partOfSpField(MrphDic record, Dic const& dic) {
    std::string field = escapeSource(dic.getPartOfSPName(record.pid()), kFormMarks);
    unsigned const parts = record.partCount();
    bool allOwn = true;
    for (unsigned i = 0; i < parts; ++i) allOwn = allOwn && record.partPid(i) == record.pid();
    // Parts without names of their own have the word's.
    if (allOwn) return field;
    for (unsigned i = 0; i < parts; ++i)
        field.append("-").append(escapeSource(dic.getPartOfSPName(record.partPid(i)), kFormMarks));
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
                                    escapeSourceReading(record.readPron(), parts),
                                    escapeSourceReading(record.stdForm(), parts),
                                    escapeSource(record.wordCooc(), kTextMarks),
                                    escapeSource(record.groupCooc(), kTextMarks),
                                    escapeSource(record.group(), kTextMarks),
                                    categoryField(record, 1),
                                    categoryField(record, 2),
                                    categoryField(record, 3),
                                    escapeSource(record.prosodicInfo(), kTextMarks)};
    std::vector<char const*> const ext = record.ext();
    for (char const* const text : ext) fields.push_back(escapeSource(text, kTextMarks));
    // Every Ext field counts, even an empty one.
    while (ext.empty() && fields.back().empty()) fields.pop_back();
    std::string line = fields.front();
    for (std::size_t i = 1; i < fields.size(); ++i) line.append(",").append(fields[i]);
    return line;
}

}  // namespace TAVO
