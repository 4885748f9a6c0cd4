#include "result/format.hpp"

#include "result/mrph_access.hpp"

#include <charconv>
#include <ostream>
#include <stdexcept>

namespace TAVO {
namespace {

void appendNumber(std::string& out, int value) {
    char digits[16];
    out.append(digits, std::to_chars(digits, digits + sizeof digits, value).ptr);
}

void appendList(std::string& out, std::vector<unsigned short> const& numbers) {
    out.push_back('[');
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        if (i > 0) out.push_back(',');
        appendNumber(out, numbers[i]);
    }
    out.push_back(']');
}

void appendCategory(std::string& out, Mrph const& m) {
    std::vector<unsigned short> category1, category2, category3;
    m.getCategory(category1, category2, category3);
    appendList(out, category1);
    appendList(out, category2);
    appendList(out, category3);
}

void appendExt(std::string& out, Mrph const& m, int field) {
    std::vector<char const*> fields;
    m.getExt(fields);
    if (field != Directive::kAllFields) {
        if (static_cast<std::size_t>(field) < fields.size()) out += fields[static_cast<std::size_t>(field)];
        return;
    }
    for (std::size_t i = 0; i < fields.size(); ++i) {
        if (i > 0) out.push_back(',');
        out += fields[i];
    }
}

/// The head of a part-of-speech name.
std::string_view majorClass(std::string_view name) {
    return name.substr(0, std::min(findMark(name, ":-/"), name.size()));
}

/// The values that a part takes from the whole morpheme it belongs to.
void appendSharedValue(std::string& out, Directive const& directive, Mrph const& m) {
    switch (directive.letter) {
        case 'c':
            appendNumber(out, m.getCost());
            break;
        case 'C':
            appendCategory(out, m);
            break;
        case 'D':
            appendExt(out, m, directive.field);
            break;
        case 'g':
            out += m.getGroup();
            break;
        case 'a':
            out += m.getAdditionalInfo();
            break;
        case 'b':
            out += m.getGrammarType();
            break;
        case 'A':
            out += m.getProsodicInfo();
            break;
        case 'B':
            out += m.getProsodicType();
            break;
        case 'x':
            out += m.getWordCooc();
            break;
        case 'X':
            out += m.getGroupCooc();
            break;
        default:
            break;
    }
}

void appendForm(std::string& out, Mrph const& m, bool plain) {
    AnalyzerContext const* owner = MrphAccess::owner(m);
    bool const asAnalysed = owner == nullptr || owner->settings.mode(Mode::OutputConvert) == 0;
    if (asAnalysed) {
        out += MrphAccess::form(m);
    } else {
        out += m.getForm(plain);
    }
}

void appendValue(std::string& out, Directive const& directive, Mrph const& m) {
    switch (directive.letter) {
        case 'w':
            appendForm(out, m, true);
            break;
        case 'W':
            appendForm(out, m, false);
            break;
        case 'h':
            out += m.getPartOfSP();
            break;
        case 'H':
            out += majorClass(m.getPartOfSP());
            break;
        case 'k':
            out += m.getRead(true);
            break;
        case 'K':
            out += m.getRead(false);
            break;
        case 'p':
            out += m.getPron(true);
            break;
        case 'P':
            out += m.getPron(false);
            break;
        case 's':
            out += m.getStdForm(true);
            break;
        case 'S':
            out += m.getStdForm(false);
            break;
        case 'l':
            out += m.getLVRead(true);
            break;
        case 'L':
            out += m.getLVRead(false);
            break;
        case 'e':
            out += m.getEndForm(true);
            break;
        case 'E':
            out += m.getEndForm(false);
            break;
        default:
            appendSharedValue(out, directive, m);
            break;
    }
}

void appendPartValue(std::string& out, Directive const& directive, Mrph const& m, int part) {
    switch (directive.letter) {
        case 'w':
        case 'W':
            out += MrphAccess::partForm(m, part);
            break;
        case 'h':
            out += m.getPartOfSP(part);
            break;
        case 'H':
            out += majorClass(m.getPartOfSP(part));
            break;
        case 'k':
        case 'K':
            out += m.getPartRead(part);
            break;
        case 'p':
        case 'P':
            out += m.getPartPron(part);
            break;
        case 's':
        case 'S':
            out += m.getPartStdForm(part);
            break;
        case 'l':
        case 'L':
            out += m.getPartLVRead(part);
            break;
        case 'e':
        case 'E':
            out += m.getPartEndForm(part);
            break;
        case 'c':
            appendNumber(out, m.getPartCost(part));
            break;
        case 'x':
            out += m.getPartWordCooc(part);
            break;
        case 'X':
            out += m.getPartGroupCooc(part);
            break;
        default: {
            int localIndex = 0;
            appendSharedValue(out, directive, MrphAccess::getPartMrph(m, part, localIndex));
        }
    }
}

/// Completes the value that was appended at @p start.
void finishValue(std::string& out, std::size_t start, int width, std::string_view nullString) {
    if (out.size() == start) out += nullString;
    std::size_t const length = out.size() - start;
    if (length >= static_cast<std::size_t>(width)) return;
    bool const holdsNul = out.find('\0', start) != std::string::npos;
    if (!holdsNul) out.append(static_cast<std::size_t>(width) - length, ' ');
}

}  // namespace

void writeValue(std::string& out, Directive const& directive, Mrph const& m, std::string_view nullString) {
    std::size_t const start = out.size();
    appendValue(out, directive, m);
    finishValue(out, start, directive.width, nullString);
}

void writePartValue(std::string& out, Directive const& directive, Mrph const& m, int part,
                    std::string_view nullString) {
    std::size_t const start = out.size();
    appendPartValue(out, directive, m, part);
    finishValue(out, start, directive.width, nullString);
}

CompiledFormat::CompiledFormat(std::string format) : format_(std::move(format)) {
    auto const literal = [this](std::string_view bytes) {
        if (pieces_.empty() || pieces_.back().hasDirective) pieces_.emplace_back();
        pieces_.back().literal += bytes;
    };
    auto const value = [this](Directive const& directive) {
        if (pieces_.empty() || pieces_.back().hasDirective) pieces_.emplace_back();
        pieces_.back().directive = directive;
        pieces_.back().hasDirective = true;
    };
    scanFormat(format_.c_str(), literal, value);
}

void CompiledFormat::write(std::string& out, Mrph const& m, std::string_view nullString) const {
    for (Piece const& piece : pieces_) {
        out += piece.literal;
        if (piece.hasDirective) writeValue(out, piece.directive, m, nullString);
    }
}

std::string Mrph::format(char const* fmt, char const* nullString) const {
    if (fmt == nullptr || nullString == nullptr) throw std::invalid_argument("INVALID_ARGUMENT: Mrph::format()");
    std::string out;
    scanFormat(
        fmt, [&out](std::string_view bytes) { out += bytes; },
        [&](Directive const& directive) { writeValue(out, directive, *this, nullString); });
    return out;
}

std::string Mrph::format(int part, char const* fmt, char const* nullString) const {
    if (part < 0 || part >= getPartCount()) throw std::range_error("RANGE_ERROR: Mrph::format()");
    if (fmt == nullptr || nullString == nullptr) throw std::invalid_argument("INVALID_ARGUMENT: Mrph::format()");
    std::string out;
    scanFormat(
        fmt, [&out](std::string_view bytes) { out += bytes; },
        [&](Directive const& directive) { writePartValue(out, directive, *this, part, nullString); });
    return out;
}

std::ostream& Mrph::output(std::ostream& os, char const* fmt, char const* nullString, bool byPart) const {
    if (!byPart || getPartCount() < 2) return os << format(fmt, nullString);
    for (int part = 0; part < getPartCount(); ++part) output(os, part, fmt, nullString);
    return os;
}

std::ostream& Mrph::output(std::ostream& os, int part, char const* fmt, char const* nullString) const {
    if (part < 0 || part >= getPartCount()) throw std::range_error("RANGE_ERROR: Mrph::output()");
    return os << format(part, fmt, nullString);
}

}  // namespace TAVO
