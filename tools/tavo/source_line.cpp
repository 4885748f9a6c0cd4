#include "source_line.hpp"

#include "base/sjis.hpp"

#include <limits>
#include <vector>

namespace tool {

namespace {

constexpr std::size_t kAll = std::numeric_limits<std::size_t>::max();
constexpr std::string_view kSeparators = "-/";

/// Escapes commas and backslashes, and all separators but the first @p kept.
std::string escape(std::string_view text, std::size_t kept) {
    std::string out;
    for (std::size_t at = 0; at < text.size();) {
        std::size_t const width = TAVO::charWidth(text, at);
        bool const separator = width == 1 && kSeparators.find(text[at]) != std::string_view::npos;
        if (separator ? kept == 0 : width == 1 && (text[at] == ',' || text[at] == '\\')) out += '\\';
        if (separator && kept > 0) --kept;
        out += text.substr(at, width);
        at += width;
    }
    return out;
}

std::string formField(std::string_view form, TAVO::MrphDic record) {
    std::string field = record.partForm();  // as the source wrote it
    if (field.empty()) field = escape(form, 0);
    // Else the line would be a comment.
    if (field.front() == ';' || field.front() == '#') field.insert(0, 1, '\\');
    return field;
}

std::string partOfSpeechField(TAVO::MrphDic record, NameOf const& nameOf) {
    std::string field = escape(nameOf(record.pid()), 0);
    bool partsDiffer = false;
    for (unsigned i = 0; i < record.partCount(); ++i) partsDiffer = partsDiffer || record.partPid(i) != record.pid();
    // Without names of their own the parts have the word's.
    for (unsigned i = 0; partsDiffer && i < record.partCount(); ++i) {
        field += '-';
        field += escape(nameOf(record.partPid(i)), 0);
    }
    return field;
}

std::string categoryField(TAVO::MrphDic record, unsigned list) {
    std::string field;
    for (unsigned short const number : record.category(list)) {
        if (!field.empty()) field += ':';
        field += std::to_string(number);
    }
    return field;
}

}  // namespace

std::string sourceLine(std::string_view form, TAVO::MrphDic record, NameOf const& nameOf) {
    // A simple word may have any separators in its reading; a compound has one
    // between its parts, and whatever is more was escaped.
    std::size_t const separators = record.partCount() > 1 ? record.partCount() - 1 : kAll;
    std::vector<std::string> fields = {formField(form, record),
                                       partOfSpeechField(record, nameOf),
                                       std::to_string(record.cost()),
                                       escape(record.readPron(), separators),
                                       escape(record.stdForm(), separators),
                                       escape(record.wordCooc(), kAll),
                                       escape(record.groupCooc(), kAll),
                                       escape(record.group(), kAll),
                                       categoryField(record, 1),
                                       categoryField(record, 2),
                                       categoryField(record, 3),
                                       escape(record.prosodicInfo(), kAll)};
    std::vector<char const*> const ext = record.ext();
    if (ext.empty()) {
        while (fields.back().empty()) fields.pop_back();
    }
    for (char const* text : ext) fields.push_back(escape(text, kAll));

    std::string line = fields.front();
    for (std::size_t i = 1; i < fields.size(); ++i) {
        line += ',';
        line += fields[i];
    }
    return line;
}

}  // namespace tool
