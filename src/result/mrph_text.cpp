// The texts of the whole morpheme, as strings and into buffers.
#include "base/sjis.hpp"
#include "dic/read_pron.hpp"
#include "result/given_text.hpp"
#include "result/mrph_access.hpp"
#include "result/part_text.hpp"

#include <algorithm>
#include <cstring>
#include <stdexcept>

namespace TAVO {
namespace {

// The output convert modes but for 0.
constexpr int kGivenAndConverted = 1, kConverted = 2, kConvertToGivenText = 3;

/// Copies @p text from @p start on as all buffer forms do. @p error is the text
/// of the exception for a null buffer and for a negative size or start.
unsigned int copyOut(std::string_view text, char* buf, int size, int start, char const* error) {
    if (buf == nullptr || size < 0 || start < 0) throw std::invalid_argument(error);
    if (size == 0) return 0;
    auto const from = std::min(static_cast<std::size_t>(start), text.size());
    auto const count = std::min(text.size() - from, static_cast<std::size_t>(size) - 1);
    std::memcpy(buf, text.data() + from, count);
    buf[count] = '\0';
    return static_cast<unsigned int>(count);
}

int outputConvert(AnalyzerContext const* owner) noexcept {
    return owner != nullptr ? owner->settings.mode(Mode::OutputConvert) : 0;
}

/// A stored text without "-" and, when plain, without "/".
std::string withoutMarks(std::string text, bool plain, MrphCover const* cover) {
    bool const dropsSlashes = plain && (cover == nullptr || !cover->keepsSlashes);
    dropMarks(text, dropsSlashes ? "-/" : "-");
    return text;
}

std::string_view convertedForm(Mrph const& m) { return MrphAccess::converted(m, MrphAccess::form(m)); }

/// True when the list of public parts of speech lets output conversion change the form.
bool mayConvert(Mrph const& m) {
    PatternList const& list = MrphAccess::owner(m)->pos.publicList();
    if (list.empty()) return true;
    PosName name;
    splitPosName(m.getPartOfSP(), name);
    return list.matches(name);
}

std::string const* coverValue(MrphCover const* cover, std::string MrphCover::*own) noexcept {
    return cover != nullptr && !(cover->*own).empty() ? &(cover->*own) : nullptr;
}

}  // namespace

std::string Mrph::getForm(bool plain) const {
    int const mode = outputConvert(owner_);
    if (mode == kConvertToGivenText) {
        if (auto const given = givenSpan(*this, MrphAccess::rawForm(*this)))
            return std::string(owner_->input.substr(given->begin, given->end - given->begin));
    }
    if ((mode == kGivenAndConverted && !plain) || mode == kConverted) {
        std::string_view const converted = convertedForm(*this);
        if (mode == kConverted && mayConvert(*this)) return std::string(converted);
        if (converted != MrphAccess::form(*this) && mayConvert(*this))
            return std::string(form_, formLength_).append("(").append(converted).append(")");
    }
    return std::string(form_, formLength_);
}

unsigned int Mrph::getForm(char* buf, int size, int start, bool plain) const {
    constexpr char const* kError = "INVALID_ARGUMENT: Mrph::getForm()";
    if (plain && outputConvert(owner_) == 0) return copyOut(MrphAccess::form(*this), buf, size, start, kError);
    return copyOut(getForm(plain), buf, size, start, kError);
}

unsigned int Mrph::getFormLength() const { return formLength_; }

char const* Mrph::getFormWithoutNullEnd(unsigned int& length) const {
    length = formLength_;
    return form_;
}

unsigned int Mrph::getRawForm(char* buf, int size, int start) const {
    return copyOut(MrphAccess::rawForm(*this), buf, size, start, "INVALID_ARGUMENT: Mrph::getRawForm()");
}

std::string Mrph::getStdForm(bool plain) const {
    char const* const stdForm = MrphAccess::stdFormPtr(*this);
    return *stdForm == '\0'
               ? std::string(convertedForm(*this))
               : withoutMarks(stdForm, plain,
                              coverValue(cover_.get(), &MrphCover::stdForm) != nullptr ? cover_.get() : nullptr);
}

unsigned int Mrph::getStdForm(char* buf, int size, int start, bool plain) const {
    return copyOut(getStdForm(plain), buf, size, start, "INVALID_ARGUMENT: Mrph::getStdForm()");
}

std::string Mrph::getRead(bool plain) const {
    if (std::string const* own = coverValue(cover_.get(), &MrphCover::read))
        return withoutMarks(*own, plain, cover_.get());
    return extractRead(MrphAccess::readPronPtr(*this), plain);
}

unsigned int Mrph::getRead(char* buf, int size, bool plain) const {
    return copyOut(getRead(plain), buf, size, 0, "INVALID_ARGUMENT: Mrph::getRead()");
}

std::string Mrph::getPron(bool plain) const {
    std::string const* own = coverValue(cover_.get(), &MrphCover::pron);
    return withoutMarks(own != nullptr ? *own : extractPron(MrphAccess::readPronPtr(*this)), plain,
                        own != nullptr ? cover_.get() : nullptr);
}

unsigned int Mrph::getPron(char* buf, int size, bool plain) const {
    return copyOut(getPron(plain), buf, size, 0, "INVALID_ARGUMENT: Mrph::getPron()");
}

std::string Mrph::getReadPron(bool plain) const {
    std::string text = MrphAccess::readPronPtr(*this);
    if (plain) dropMarks(text, "/");
    return text;
}

unsigned int Mrph::getReadPron(char* buf, int size, bool plain) const {
    return copyOut(getReadPron(plain), buf, size, 0, "INVALID_ARGUMENT: Mrph::getReadPron()");
}

std::string Mrph::getLVRead(bool plain) const {
    if (std::string const* own = coverValue(cover_.get(), &MrphCover::lvRead))
        return withoutMarks(*own, plain, cover_.get());
    return getRead(plain);
}

unsigned int Mrph::getLVRead(char* buf, int size, bool plain) const {
    return copyOut(getLVRead(plain), buf, size, 0, "INVALID_ARGUMENT: Mrph::getLVRead()");
}

namespace {

using EndKind = EndFormRules::Kind;

/// True when the end form of joined morphemes is that of the first one: a phrase has a name of its own, to which no
/// rules belong, and its other members would stand where the ending is looked for.
bool endsAsFirst(Mrph const& m) {
    MrphCover const* const cover = MrphAccess::cover(m);
    AnalyzerContext const* const owner = MrphAccess::owner(m);
    return cover != nullptr && !cover->subMrphs.empty() && owner != nullptr && !owner->endForms.empty() &&
           (!cover->className.empty() || m.getPid() > owner->pos.getPidMax());
}

/// What the rules make of @p text; @p otherwise where no rule fits.
std::string ended(Mrph const& m, EndKind kind, std::string_view text, std::string otherwise) {
    auto end = MrphAccess::endText(m, m.getPid(), kind, text);
    return end ? *std::move(end) : std::move(otherwise);
}

}  // namespace

std::string_view MrphAccess::converted(Mrph const& m, std::string_view span) {
    // A form of the morpheme's own was not analysed.
    bool const isRaw = m.form_ == m.rawForm_ && m.formLength_ == m.rawFormLength_;
    return m.owner_ != nullptr && isRaw ? m.owner_->convertedText(span) : span;
}

std::optional<std::string> MrphAccess::endText(Mrph const& m, unsigned short pid, EndKind kind, std::string_view text) {
    if (m.owner_ == nullptr || m.owner_->endForms.empty()) return {};
    return m.owner_->endForms.apply(m.owner_->pos.name(pid), kind, text);
}

// Rules know the forms of the dictionaries, so the end form of a converted word is that of its converted form.
std::string Mrph::getEndForm(bool plain) const {
    if (endsAsFirst(*this)) return getPartEndForm(0);
    return ended(*this, EndKind::Form, convertedForm(*this), getForm(plain));
}

std::string Mrph::getEndStdForm(bool plain) const {
    if (endsAsFirst(*this)) return getPartEndStdForm(0);
    bool const hasOwn = *MrphAccess::stdFormPtr(*this) != '\0';
    std::string const stdForm = getStdForm(plain);
    return ended(*this, hasOwn ? EndKind::Standard : EndKind::Form, stdForm, stdForm);
}

std::string Mrph::getEndRead(bool plain) const {
    if (endsAsFirst(*this)) return getPartEndRead(0);
    std::string const read = getRead(plain);
    return ended(*this, EndKind::Reading, read, read);
}

std::string Mrph::getEndPron(bool plain) const {
    if (endsAsFirst(*this)) return getPartEndPron(0);
    std::string const pron = getPron(plain);
    return ended(*this, EndKind::Pron, pron, pron);
}

std::string Mrph::getEndLVRead(bool plain) const {
    if (endsAsFirst(*this)) return getPartEndLVRead(0);
    std::string const read = getLVRead(plain);
    return ended(*this, EndKind::Reading, read, read);
}

}  // namespace TAVO
