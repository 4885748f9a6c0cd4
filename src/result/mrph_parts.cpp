// Accessors of one part of a morpheme, and of all parts in order.
#include "base/sjis.hpp"
#include "dic/read_pron.hpp"
#include "result/given_text.hpp"
#include "result/mrph_access.hpp"
#include "result/part_text.hpp"

#include <algorithm>
#include <stdexcept>

namespace TAVO {

Mrph const& MrphAccess::getPartMrph(Mrph const& m, int index, int& localIndex) {
    localIndex = index;
    if (m.partCount_ < 2 || !m.cover_ || m.cover_->subMrphs.empty()) return m;
    for (Mrph const& sub : m.cover_->subMrphs) {
        if (localIndex < sub.getPartCount()) return sub;
        localIndex -= sub.getPartCount();
    }
    throw std::logic_error("LOGIC_ERROR: Mrph::getPartMrph()");
}

Mrph const& MrphAccess::leaf(Mrph const& m, int index, int& localIndex) {
    Mrph const* at = &m;
    localIndex = index;
    for (;;) {
        Mrph const& sub = getPartMrph(*at, localIndex, localIndex);
        if (&sub == at) return sub;
        at = &sub;
    }
}

namespace {

void requirePart(Mrph const& m, int index, char const* error) {
    if (index < 0 || index >= m.getPartCount()) throw std::range_error(error);
}

/// Asks the morpheme that answers for part @p index: answer(leaf, localIndex).
template <class Answer>
auto ofPart(Mrph const& m, int index, char const* error, Answer answer) {
    requirePart(m, index, error);
    int localIndex = 0;
    Mrph const& leaf = MrphAccess::leaf(m, index, localIndex);
    return answer(leaf, localIndex);
}

/// The same for a value that all parts of a morpheme share.
template <class Value>
Value ofPart(Mrph const& m, int index, char const* error, Value (Mrph::*shared)() const) {
    return ofPart(m, index, error, [shared](Mrph const& leaf, int) { return (leaf.*shared)(); });
}

template <class Value>
void fillParts(Mrph const& m, std::vector<Value>& values, Value (Mrph::*part)(int) const) {
    values.clear();
    values.reserve(static_cast<std::size_t>(m.getPartCount()));
    for (int i = 0; i < m.getPartCount(); ++i) values.push_back((m.*part)(i));
}

unsigned partCount(Mrph const& m) { return MrphAccess::partCount(m); }

/// Where the record's part forms put part @p index of the form. The last part
/// reaches to the end of the form, and no part beyond it.
std::string_view leafForm(Mrph const& m, int index) {
    std::string_view form = MrphAccess::form(m);
    if (partCount(m) < 2) return form;
    AnalyzerContext const* const owner = MrphAccess::owner(m);
    Sentence const* const sentence =
        owner != nullptr && form.data() == MrphAccess::rawForm(m).data() ? owner->sentenceOf(form.data()) : nullptr;
    Conversion const* const conversion = sentence != nullptr ? sentence->conversion.get() : nullptr;
    std::size_t const start = conversion != nullptr ? AnalyzerContext::searchPlace(*sentence, form.data()) : 0;
    char const* const formEnd = form.data() + form.size();
    std::string_view written = MrphDic(MrphAccess::record(m)).partForm();
    std::size_t converted = 0;  // bytes of the converted text up to the part's end
    for (unsigned i = 0;; ++i) {
        bool const isLast = i + 1 == partCount(m);
        std::size_t length = isLast ? form.size() : takePartLength(written);
        if (conversion != nullptr && !isLast) {
            converted += length;
            char const* const partEnd = sentence->text.data() + conversion->toGiven(start + converted);
            length = static_cast<std::size_t>(std::min(partEnd, formEnd) - form.data());
        }
        length = std::min(form.size(), length);
        if (i == static_cast<unsigned>(index)) return form.substr(0, length);
        form.remove_prefix(length);
    }
}

/// Part @p index of a text that is separated like the reading: "-" is a mark
/// inside it, unless the text has the number of parts only with "-" as separator.
std::string separatedPart(std::string_view text, int index, unsigned count) {
    std::string_view const marks = count > 1 ? separatorsFor(text, count) : "/";
    std::string part(segment(text, marks, static_cast<unsigned>(index), count));
    dropMarks(part, "-/");
    return part;
}

/// The same for a text of the morpheme's own.
std::string ownPart(Mrph const& m, std::string const& own, int index) {
    if (partCount(m) > 1 || !MrphAccess::cover(m)->keepsSlashes) return separatedPart(own, index, partCount(m));
    std::string part = own;
    dropMarks(part, "-");
    return part;
}

std::string leafReadPron(Mrph const& m, int index) {
    return readPronPart(MrphAccess::readPronPtr(m), static_cast<unsigned>(index), partCount(m));
}

/// A cover's own text of that kind, else null.
std::string const* ownText(Mrph const& m, std::string MrphCover::*own) {
    MrphCover const* cover = MrphAccess::cover(m);
    return cover != nullptr && !(cover->*own).empty() ? &(cover->*own) : nullptr;
}

std::string leafRead(Mrph const& m, int index) {
    if (std::string const* own = ownText(m, &MrphCover::read)) return ownPart(m, *own, index);
    return extractRead(leafReadPron(m, index).c_str(), true);
}

std::string leafPron(Mrph const& m, int index) {
    if (std::string const* own = ownText(m, &MrphCover::pron)) return ownPart(m, *own, index);
    std::string pron = extractPron(leafReadPron(m, index).c_str());
    dropMarks(pron, "/");
    return pron;
}

std::string leafLVRead(Mrph const& m, int index) {
    if (std::string const* own = ownText(m, &MrphCover::lvRead)) return ownPart(m, *own, index);
    return leafRead(m, index);
}

/// A standard form that is not cut into as many parts cannot be spread over
/// them; each part then has its own form as standard form.
bool hasStdForm(Mrph const& m) {
    std::string_view const stdForm = MrphAccess::stdFormPtr(m);
    bool const spread = countMarks(stdForm, separatorsFor(stdForm, partCount(m))) + 1 == partCount(m);
    return !stdForm.empty() && (partCount(m) < 2 || spread);
}

std::string leafStdForm(Mrph const& m, int index) {
    if (!hasStdForm(m)) return std::string(leafForm(m, index));
    return separatedPart(MrphAccess::stdFormPtr(m), index, partCount(m));
}

unsigned short leafPid(Mrph const& m, int index) {
    return partCount(m) < 2 ? m.getPid() : MrphDic(MrphAccess::record(m)).partPid(static_cast<unsigned>(index));
}

/// The end form of a part's text, which @p text(leaf, index) gives; that text itself where no rule fits.
template <class Text>
std::string partEnd(Mrph const& m, int index, char const* error, EndFormRules::Kind kind, Text text) {
    return ofPart(m, index, error, [&](Mrph const& leaf, int local) {
        std::string plain(text(leaf, local));
        bool const isForm = kind == EndFormRules::Kind::Form;
        auto end = MrphAccess::endText(leaf, leafPid(leaf, local), kind,
                                       isForm ? MrphAccess::converted(leaf, leafForm(leaf, local)) : plain);
        return end ? *std::move(end) : std::move(plain);
    });
}

}  // namespace

std::string_view MrphAccess::partForm(Mrph const& m, int index) {
    return ofPart(m, index, "RANGE_ERROR: Mrph::getPartFormNoConvert()", leafForm);
}

namespace {

/// Where part @p index stands in the given text. A part whose form is no span of the text stands where its whole does.
TextSpan partGivenSpan(Mrph const& m, int index, char const* rangeError, char const* noText) {
    TextSpan const span = ofPart(m, index, rangeError, [&](Mrph const& leaf, int local) {
        std::string_view const raw = MrphAccess::rawForm(leaf);
        bool const inText = MrphAccess::form(leaf).data() == raw.data();
        return requireGivenSpan(m, inText ? leafForm(leaf, local) : raw, noText);
    });
    return span;
}

}  // namespace

std::size_t Mrph::getPartGivenBegin(int index) const {
    return partGivenSpan(*this, index, "RANGE_ERROR: Mrph::getPartGivenBegin()",
                         "LOGIC_ERROR: Mrph::getPartGivenBegin()")
        .begin;
}
void Mrph::getPartGivenBegin(std::vector<std::size_t>& begins) const {
    fillParts(*this, begins, &Mrph::getPartGivenBegin);
}

std::size_t Mrph::getPartGivenEnd(int index) const {
    return partGivenSpan(*this, index, "RANGE_ERROR: Mrph::getPartGivenEnd()", "LOGIC_ERROR: Mrph::getPartGivenEnd()")
        .end;
}
void Mrph::getPartGivenEnd(std::vector<std::size_t>& ends) const { fillParts(*this, ends, &Mrph::getPartGivenEnd); }

int Mrph::getPartLength(int index) const {
    return static_cast<int>(ofPart(*this, index, "RANGE_ERROR: Mrph::getPartLength()", leafForm).size());
}
void Mrph::getPartLength(std::vector<int>& lengths) const { fillParts(*this, lengths, &Mrph::getPartLength); }

int Mrph::getPartFormLength(int index) const {
    return static_cast<int>(ofPart(*this, index, "RANGE_ERROR: Mrph::getPartFormLength()", leafForm).size());
}
void Mrph::getPartFormLength(std::vector<int>& lengths) const { fillParts(*this, lengths, &Mrph::getPartFormLength); }

std::string Mrph::getPartForm(int index) const { return std::string(MrphAccess::partForm(*this, index)); }
void Mrph::getPartForm(std::vector<std::string>& forms) const { fillParts(*this, forms, &Mrph::getPartForm); }

std::string Mrph::getPartStdForm(int index) const {
    return ofPart(*this, index, "RANGE_ERROR: Mrph::getPartStdForm()", leafStdForm);
}
void Mrph::getPartStdForm(std::vector<std::string>& forms) const { fillParts(*this, forms, &Mrph::getPartStdForm); }

std::string Mrph::getPartRead(int index) const {
    return ofPart(*this, index, "RANGE_ERROR: Mrph::getPartRead()", leafRead);
}
void Mrph::getPartRead(std::vector<std::string>& readings) const { fillParts(*this, readings, &Mrph::getPartRead); }

std::string Mrph::getPartPron(int index) const {
    return ofPart(*this, index, "RANGE_ERROR: Mrph::getPartPron()", leafPron);
}
void Mrph::getPartPron(std::vector<std::string>& pronunciations) const {
    fillParts(*this, pronunciations, &Mrph::getPartPron);
}

std::string Mrph::getPartReadPron(int index) const {
    return ofPart(*this, index, "RANGE_ERROR: Mrph::getPartReadPron()", leafReadPron);
}
void Mrph::getPartReadPron(std::vector<std::string>& readProns) const {
    fillParts(*this, readProns, &Mrph::getPartReadPron);
}

std::string Mrph::getPartLVRead(int index) const {
    return ofPart(*this, index, "RANGE_ERROR: Mrph::getPartLVRead()", leafLVRead);
}
void Mrph::getPartLVRead(std::vector<std::string>& readings) const { fillParts(*this, readings, &Mrph::getPartLVRead); }

std::string Mrph::getPartEndForm(int index) const {
    return partEnd(*this, index, "RANGE_ERROR: Mrph::getPartEndForm()", EndFormRules::Kind::Form, leafForm);
}
void Mrph::getPartEndForm(std::vector<std::string>& forms) const { fillParts(*this, forms, &Mrph::getPartEndForm); }

std::string Mrph::getPartEndStdForm(int index) const {
    constexpr char kError[] = "RANGE_ERROR: Mrph::getPartEndStdForm()";
    bool const hasOwn = ofPart(*this, index, kError, [](Mrph const& leaf, int) { return hasStdForm(leaf); });
    return partEnd(*this, index, kError, hasOwn ? EndFormRules::Kind::Standard : EndFormRules::Kind::Form, leafStdForm);
}
void Mrph::getPartEndStdForm(std::vector<std::string>& forms) const {
    fillParts(*this, forms, &Mrph::getPartEndStdForm);
}

std::string Mrph::getPartEndRead(int index) const {
    return partEnd(*this, index, "RANGE_ERROR: Mrph::getPartEndRead()", EndFormRules::Kind::Reading, leafRead);
}
void Mrph::getPartEndRead(std::vector<std::string>& readings) const {
    fillParts(*this, readings, &Mrph::getPartEndRead);
}

std::string Mrph::getPartEndPron(int index) const {
    return partEnd(*this, index, "RANGE_ERROR: Mrph::getPartEndPron()", EndFormRules::Kind::Pron, leafPron);
}
void Mrph::getPartEndPron(std::vector<std::string>& pronunciations) const {
    fillParts(*this, pronunciations, &Mrph::getPartEndPron);
}

std::string Mrph::getPartEndLVRead(int index) const {
    return partEnd(*this, index, "RANGE_ERROR: Mrph::getPartEndLVRead()", EndFormRules::Kind::Reading, leafLVRead);
}
void Mrph::getPartEndLVRead(std::vector<std::string>& readings) const {
    fillParts(*this, readings, &Mrph::getPartEndLVRead);
}

unsigned short Mrph::getPartPid(int index) const {
    return ofPart(*this, index, "RANGE_ERROR: Mrph::getPartPid()", leafPid);
}
void Mrph::getPartPid(std::vector<unsigned short>& pids) const { fillParts(*this, pids, &Mrph::getPartPid); }

char const* Mrph::getPartOfSP(int index) const {
    unsigned short const pid = ofPart(*this, index, "RANGE_ERROR: Mrph::getPartOfSP()", leafPid);
    return owner_ != nullptr ? owner_->pos.name(pid) : "";
}
std::string Mrph::getDisplayPartOfSP(int index) const {
    unsigned short const pid = ofPart(*this, index, "RANGE_ERROR: Mrph::getDisplayPartOfSP()", leafPid);
    return owner_ != nullptr ? displayPosName(owner_->pos.name(pid)) : std::string();
}
void Mrph::getPartOfSP(std::vector<char const*>& names) const { fillParts(*this, names, &Mrph::getPartOfSP); }

int Mrph::getPartCost(int index) const {
    return ofPart(*this, index, "RANGE_ERROR: Mrph::getPartCost()", &Mrph::getCost);
}
void Mrph::getPartCost(std::vector<int>& costs) const { fillParts(*this, costs, &Mrph::getPartCost); }

char const* Mrph::getPartWordCooc(int index) const {
    return ofPart(*this, index, "RANGE_ERROR: Mrph::getPartWordCooc()", &Mrph::getWordCooc);
}
void Mrph::getPartWordCooc(std::vector<char const*>& ids) const { fillParts(*this, ids, &Mrph::getPartWordCooc); }

char const* Mrph::getPartGroupCooc(int index) const {
    return ofPart(*this, index, "RANGE_ERROR: Mrph::getPartGroupCooc()", &Mrph::getGroupCooc);
}
void Mrph::getPartGroupCooc(std::vector<char const*>& ids) const { fillParts(*this, ids, &Mrph::getPartGroupCooc); }

char const* Mrph::getPartGroup(int index) const {
    return ofPart(*this, index, "RANGE_ERROR: Mrph::getPartGroup()", &Mrph::getGroup);
}
void Mrph::getPartGroup(std::vector<char const*>& groups) const { fillParts(*this, groups, &Mrph::getPartGroup); }

void Mrph::getPartCategory(int index, std::vector<unsigned short>& category1, std::vector<unsigned short>& category2,
                           std::vector<unsigned short>& category3) const {
    ofPart(*this, index, "RANGE_ERROR: Mrph::getPartCategory()",
           [&](Mrph const& leaf, int) { leaf.getCategory(category1, category2, category3); });
}

void Mrph::getPartCategoryCount(int index, unsigned char& count1, unsigned char& count2, unsigned char& count3) const {
    ofPart(*this, index, "RANGE_ERROR: Mrph::getPartCategoryCount()",
           [&](Mrph const& leaf, int) { leaf.getCategoryCount(count1, count2, count3); });
}

char const* Mrph::getPartProsodicInfo(int index) const {
    return ofPart(*this, index, "RANGE_ERROR: Mrph::getPartProsodicInfo()", &Mrph::getProsodicInfo);
}
void Mrph::getPartProsodicInfo(std::vector<char const*>& infos) const {
    fillParts(*this, infos, &Mrph::getPartProsodicInfo);
}

char const* Mrph::getPartAdditionalInfo(int index) const {
    return ofPart(*this, index, "RANGE_ERROR: Mrph::getPartAdditionalInfo()", &Mrph::getAdditionalInfo);
}
void Mrph::getPartAdditionalInfo(std::vector<char const*>& infos) const {
    fillParts(*this, infos, &Mrph::getPartAdditionalInfo);
}

char const* Mrph::getPartProsodicType(int index) const {
    return ofPart(*this, index, "RANGE_ERROR: Mrph::getPartProsodicType()", &Mrph::getProsodicType);
}
void Mrph::getPartProsodicType(std::vector<char const*>& types) const {
    fillParts(*this, types, &Mrph::getPartProsodicType);
}

char const* Mrph::getPartGrammarType(int index) const {
    return ofPart(*this, index, "RANGE_ERROR: Mrph::getPartGrammarType()", &Mrph::getGrammarType);
}
void Mrph::getPartGrammarType(std::vector<char const*>& types) const {
    fillParts(*this, types, &Mrph::getPartGrammarType);
}

int Mrph::getPartExtCount(int index) const {
    return ofPart(*this, index, "RANGE_ERROR: Mrph::getPartExtCount()", &Mrph::getExtCount);
}

char const* Mrph::getPartExt(int index, int field) const {
    std::vector<char const*> fields;
    getPartExt(index, fields);
    if (field < 0 || static_cast<std::size_t>(field) >= fields.size())
        throw std::range_error("RANGE_ERROR: Mrph::getPartExt()");
    return fields[static_cast<std::size_t>(field)];
}

void Mrph::getPartExt(int index, std::vector<char const*>& fields) const {
    ofPart(*this, index, "RANGE_ERROR: Mrph::getPartExt()", [&fields](Mrph const& leaf, int) { leaf.getExt(fields); });
}

}  // namespace TAVO
