#include "dic/source_record.hpp"

#include "base/sjis.hpp"

#include <charconv>
#include <iostream>
#include <limits>
#include <system_error>

namespace TAVO {

/// One field: as written, and with its escapes resolved. The separators are
/// positions in the resolved text.
struct SourceRecord::Field {
    std::string_view written;
    std::string text;
    std::vector<std::size_t> separators;
};

namespace {

bool refuse(std::string& error, std::string_view text) {
    error = text;
    return false;
}

enum class Number { Fine, Malformed, TooLarge };

/// A whole text of decimal digits.
Number parseNumber(std::string_view text, unsigned maximum, unsigned& value) {
    if (text.empty() || text.find_first_not_of("0123456789") != std::string_view::npos) return Number::Malformed;
    auto const result = std::from_chars(text.data(), text.data() + text.size(), value);
    return result.ec != std::errc{} || value > maximum ? Number::TooLarge : Number::Fine;
}

/// @p text cut at the separators, which are left out.
std::vector<std::string> segments(std::string const& text, std::vector<std::size_t> const& separators) {
    std::vector<std::string> parts;
    std::size_t begin = 0;
    for (std::size_t const separator : separators) {
        parts.push_back(text.substr(begin, separator - begin));
        begin = separator + 1;
    }
    parts.push_back(text.substr(begin));
    return parts;
}

bool printed(bool accepted, std::string const& error) {
    if (!accepted) std::cerr << error << '\n';
    return accepted;
}

}  // namespace

bool SourceRecord::parse(std::string_view line) {
    std::string error;
    return printed(parse(line, error), error);
}

bool SourceRecord::serialize(std::string& out, NameTable const& names) const {
    std::string error;
    return printed(serialize(out, names, error), error);
}

bool SourceRecord::parse(std::string_view line, std::string& error) {
    *this = SourceRecord();
    // Compiled strings end at a NUL, so one inside a field would shift all
    // fields behind it.
    if (line.find('\0') != std::string_view::npos) return refuse(error, "Error: NUL Character in Line");
    Field field;
    unsigned fields = 0;
    std::size_t pos = 0;
    for (bool more = true; more; ++fields) {
        std::size_t const begin = pos;
        field.text.clear();
        field.separators.clear();
        while (pos < line.size() && line[pos] != ',') {
            if (line[pos] == '\\') {
                if (++pos == line.size()) break;
            } else if (line[pos] == '-' || line[pos] == '/') {
                field.separators.push_back(field.text.size());
            }
            std::size_t const width = charWidth(line, pos);
            field.text += line.substr(pos, width);
            pos += width;
        }
        field.written = line.substr(begin, pos - begin);
        more = pos < line.size();
        if (!setField(fields, field, error)) return false;
        ++pos;
    }
    return fields >= 2 || refuse(error, "Error: Too Less Fields");
}

bool SourceRecord::setField(unsigned index, Field const& field, std::string& error) {
    switch (index) {
        case 0:
            return setForm(field, error);
        case 1:
            return setPartOfSP(field, error);
        case 2:
            return setCost(field, error);
        case 3:
            return setReadPron(field, error);
        case 4:
            return setStdForm(field, error);
        case 5:
            setCooc(field, wordCooc);
            return true;
        case 6:
            setCooc(field, groupCooc);
            return true;
        case 7:
            group = field.text;
            return true;
        case 8:
        case 9:
        case 10:
            return setCategory(field, categories[index - 8], error);
        case 11:
            prosodicInfo = field.text;
            return true;
        default:
            ext.push_back(field.text);
            return true;
    }
}

bool SourceRecord::setForm(Field const& field, std::string& error) {
    if (field.written.empty()) return refuse(error, "Error: No Word");
    std::vector<std::string> const parts = segments(field.text, field.separators);
    for (std::string const& part : parts) {
        if (part.empty() && parts.size() > 1) return refuse(error, "Error: Illegal Separator");
    }
    if (parts.size() > kMaxParts) return refuse(error, "Error: Too Much Part");
    partCount = static_cast<unsigned>(parts.size());
    if (partCount > 1) partForm = field.written;
    for (std::string const& part : parts) form += part;
    // A lone escape character at the end of the line.
    if (form.empty()) return refuse(error, "Error: Word Disappeared");
    return true;
}

bool SourceRecord::setPartOfSP(Field const& field, std::string& error) {
    if (field.text.empty()) return refuse(error, "Error: No PartOfSP");
    std::vector<std::string> names = segments(field.text, field.separators);
    for (std::string const& name : names) {
        if (name.empty()) return refuse(error, "Error: No Part PartOfSP");
    }
    partOfSP = std::move(names.front());
    names.erase(names.begin());
    partNames = std::move(names);
    if (!partNames.empty() && partNames.size() != partCount) {
        return refuse(error, "Error: Missmatch the number of PartOfSPs");  // callers compare this text
    }
    return true;
}

bool SourceRecord::setCost(Field const& field, std::string& error) {
    unsigned value = 0;
    switch (parseNumber(field.text, std::numeric_limits<std::uint8_t>::max(), value)) {
        case Number::Malformed:
            return refuse(error, "Error: Illegal Mrph Cost: [" + field.text + "]");
        case Number::TooLarge:
            return refuse(error, "Error: Overflaw Mrph Cost: [" + field.text + "]");  // callers compare this text
        case Number::Fine:
            break;
    }
    cost = static_cast<std::uint8_t>(value);
    return true;
}

bool SourceRecord::setReadPron(Field const& field, std::string& error) {
    readPron = field.text;
    if (!readPron.empty() && !partForm.empty() && field.separators.size() != partCount - 1) {
        return refuse(error, "Error: Missmatch Word and Read");  // callers compare this text
    }
    return true;
}

bool SourceRecord::setStdForm(Field const& field, std::string& error) {
    stdForm = field.text;
    if (!stdForm.empty() && !partForm.empty() && field.separators.size() > partCount - 1) {
        return refuse(error, "Error: Missmatch Word and StdForm");  // callers compare this text
    }
    return true;
}

void SourceRecord::setCooc(Field const& field, std::string& text) {
    text = field.text;
    bool const both = !text.empty() && text.front() == '@';
    leftMark = leftMark || both || findMark(text, "L") != std::string_view::npos;
    rightMark = rightMark || both || findMark(text, "R") != std::string_view::npos;
}

bool SourceRecord::setCategory(Field const& field, std::vector<std::uint16_t>& values, std::string& error) {
    std::string_view rest = field.text;
    if (rest == "0") return true;  // a list without numbers, as Mrph::source writes it
    while (!field.text.empty()) {
        std::size_t const colon = findMark(rest, ":");
        unsigned value = 0;
        if (parseNumber(rest.substr(0, colon), std::numeric_limits<std::uint16_t>::max(), value) != Number::Fine) {
            return refuse(error, "Error: Illegal Category Number");
        }
        values.push_back(static_cast<std::uint16_t>(value));
        if (colon == std::string_view::npos) break;
        rest.remove_prefix(colon + 1);
    }
    return true;
}

void SourceRecord::print(std::ostream& out) const {
    out << "Form\t" << form << "\nPartOfSP\t" << partOfSP << "\nPartCount\t" << partCount << '\n';
    if (!partForm.empty()) {
        out << "PartForm\t" << partForm << '\n';
        for (std::string const& name : partNames) out << name << '\n';
    }
    out << "Cost\t" << static_cast<unsigned>(cost) << "\nReadPron\t" << readPron << "\nStdForm\t" << stdForm
        << "\nWordCooc\t" << wordCooc << "\nGroupCooc\t" << groupCooc << "\nGroup\t" << group << '\n';
    for (std::size_t list = 0; list < categories.size(); ++list) {
        for (std::size_t i = 0; i < categories[list].size(); ++i) {
            out << "Cat" << list + 1 << ',' << i + 1 << '\t' << categories[list][i] << '\n';
        }
    }
    out << "ProsodicInfo\t" << prosodicInfo << '\n';
    for (std::size_t i = 0; i < ext.size(); ++i) out << "Ext" << i + 1 << '\t' << ext[i] << '\n';
}

}  // namespace TAVO
