// Joining morphemes into one, and dividing one into its parts.
#include "result/mrph_access.hpp"

#include <algorithm>

namespace TAVO {
namespace {

/// Two texts that carry part separators as one. A text that is missing beside
/// one that is there counts as empty parts, so that parts stay in their places.
std::string joinParts(std::string first, unsigned firstParts, std::string second, unsigned secondParts) {
    if (first.empty() && second.empty()) return {};
    if (first.empty()) first.assign(firstParts - 1, '/');
    if (second.empty()) second.assign(secondParts - 1, '/');
    return first + "/" + second;
}

bool has(Mrph const& m, std::string MrphCover::*own) {
    MrphCover const* cover = MrphAccess::cover(m);
    return cover != nullptr && !(cover->*own).empty();
}

/// The standard form with part separators, made from the part forms when the
/// morpheme has no standard form of its own.
std::string stdFormInParts(Mrph const& m) {
    if (*MrphAccess::stdFormPtr(m) != '\0') return MrphAccess::stdFormPtr(m);
    std::string text;
    for (int i = 0; i < m.getPartCount(); ++i) {
        if (i > 0) text.push_back('/');
        text.append(MrphAccess::partForm(m, i));
    }
    return text;
}

/// The value of a joined morpheme. A missing value takes no filler.
std::string combine(std::string const& first, std::string const& last, int mode, std::string const& filler) {
    switch (static_cast<Combine>(mode)) {
        case Combine::First:
            return first;
        case Combine::Last:
            return last;
        case Combine::Join:
            break;
    }
    return first.empty() || last.empty() ? first + last : first + filler + last;
}

std::vector<std::string> combineExt(Mrph const& first, Mrph const& last, Settings const& settings) {
    std::vector<char const*> firstFields, lastFields;
    first.getExt(firstFields);
    last.getExt(lastFields);
    std::vector<std::string> fields(std::max(firstFields.size(), lastFields.size()));
    for (std::size_t i = 0; i < fields.size(); ++i) {
        auto const index = static_cast<int>(i);
        auto const mode = settings.extCombine.find(index);
        auto const filler = settings.extFiller.find(index);
        fields[i] = combine(i < firstFields.size() ? firstFields[i] : "", i < lastFields.size() ? lastFields[i] : "",
                            mode != settings.extCombine.end() ? mode->second : static_cast<int>(Combine::Join),
                            filler != settings.extFiller.end() ? filler->second : std::string());
    }
    return fields;
}

void addMissing(std::vector<unsigned short>& list, std::vector<unsigned short> const& more) {
    for (unsigned short const value : more) {
        if (std::find(list.begin(), list.end(), value) == list.end()) list.push_back(value);
    }
}

/// Everything of a joined morpheme but its members and its form.
MrphCover joinedCover(Mrph const& first, Mrph const& last, unsigned short pid, AnalyzerContext const* owner) {
    static Settings const kDefaults;
    Settings const& settings = owner != nullptr ? owner->settings : kDefaults;
    unsigned const firstParts = MrphAccess::partCount(first);
    unsigned const lastParts = MrphAccess::partCount(last);
    MrphCover cover;
    cover.replacesRecord = true;
    cover.pid = pid != 0 ? pid : first.getPid();
    cover.cost = first.getCost() + last.getCost();
    if (*MrphAccess::stdFormPtr(first) != '\0' || *MrphAccess::stdFormPtr(last) != '\0')
        cover.stdForm = stdFormInParts(first) + "/" + stdFormInParts(last);
    cover.readPron = joinParts(first.getReadPron(false), firstParts, last.getReadPron(false), lastParts);
    if (has(first, &MrphCover::read) || has(last, &MrphCover::read))
        cover.read = joinParts(first.getRead(false), firstParts, last.getRead(false), lastParts);
    if (has(first, &MrphCover::pron) || has(last, &MrphCover::pron))
        cover.pron = joinParts(first.getPron(false), firstParts, last.getPron(false), lastParts);
    if (has(first, &MrphCover::lvRead) || has(last, &MrphCover::lvRead))
        cover.lvRead = joinParts(first.getLVRead(false), firstParts, last.getLVRead(false), lastParts);
    cover.group = combine(first.getGroup(), last.getGroup(), static_cast<int>(Combine::Join), ":");
    cover.prosodicInfo = combine(first.getProsodicInfo(), last.getProsodicInfo(), settings.prosodicInfoCombine,
                                 settings.prosodicInfoFiller);
    cover.ext = combineExt(first, last, settings);
    cover.grammarType = first.getGrammarType();  // marks of the boundary before the first member
    cover.prosodicType = first.getProsodicType();
    first.getCategory(cover.category1, cover.category2, cover.category3);
    std::vector<unsigned short> category1, category2, category3;
    last.getCategory(category1, category2, category3);
    addMissing(cover.category1, category1);
    addMissing(cover.category2, category2);
    addMissing(cover.category3, category3);
    return cover;
}

/// Part @p index of @p m as values of a morpheme of its own.
MrphCover partCover(Mrph const& m, int index, Mrph const& sub) {
    MrphCover cover;
    cover.replacesRecord = true;
    cover.pid = m.getPartPid(index);
    cover.cost = sub.getCost();
    if (*MrphAccess::stdFormPtr(sub) != '\0') cover.stdForm = m.getPartStdForm(index);
    cover.readPron = m.getPartReadPron(index);
    if (has(sub, &MrphCover::read)) cover.read = m.getPartRead(index);
    if (has(sub, &MrphCover::pron)) cover.pron = m.getPartPron(index);
    if (has(sub, &MrphCover::lvRead)) cover.lvRead = m.getPartLVRead(index);
    cover.group = sub.getGroup();
    sub.getCategory(cover.category1, cover.category2, cover.category3);
    std::vector<char const*> ext;
    sub.getExt(ext);
    cover.ext.assign(ext.begin(), ext.end());
    cover.additionalInfo = sub.getAdditionalInfo();
    cover.prosodicInfo = sub.getProsodicInfo();
    cover.grammarType = sub.getGrammarType();
    cover.prosodicType = sub.getProsodicType();
    return cover;
}

}  // namespace

void MrphAccess::append(Mrph& m, Mrph const& next, unsigned short pid) {
    Mrph last(next);  // next may be m itself
    MrphCover cover = joinedCover(m, last, pid, m.owner_);
    bool const wasJoined = m.cover_ && !m.cover_->subMrphs.empty();
    if (wasJoined) {
        cover.subMrphs = std::move(m.cover_->subMrphs);
        cover.additionalInfo = std::move(m.cover_->additionalInfo);
    } else {
        cover.subMrphs.push_back(m);
    }
    std::string joinedForm;
    bool const adjoins = m.form_ + m.formLength_ == last.form_ && m.form_ == m.rawForm_;
    if (!adjoins) joinedForm = std::string(form(m)).append(form(last));
    if (m.rawForm_ + m.rawFormLength_ == last.rawForm_) m.rawFormLength_ += last.rawFormLength_;
    m.partCount_ += last.partCount_;
    m.formLength_ += last.formLength_;
    cover.subMrphs.push_back(std::move(last));
    m.cover_ = std::make_unique<MrphCover>(std::move(cover));
    if (!adjoins) setForm(m, std::move(joinedForm));
}

void MrphAccess::divide(Mrph const& m, std::vector<Mrph>& out) {
    std::vector<Mrph> parts;
    divideAndPush(m, parts);
    out = std::move(parts);
}

void MrphAccess::divideAndPush(Mrph const& m, std::vector<Mrph>& out) {
    if (m.partCount_ < 2) {
        out.push_back(m);
        return;
    }
    bool const inSentence = m.form_ == m.rawForm_;
    std::size_t offset = 0;
    for (int i = 0; i < m.getPartCount(); ++i) {
        int localIndex = 0;
        Mrph const& sub = leaf(m, i, localIndex);
        std::string_view const span = partForm(m, i);
        char const* const text = inSentence ? m.form_ + offset : m.rawForm_;
        offset += span.size();
        Mrph part = fromRecord(text, static_cast<unsigned int>(span.size()), sub.dic_, m.owner_);
        part.partCount_ = 1;
        part.dicIndex_ = sub.dicIndex_;
        if (localIndex == 0) {
            part.candidateIndex_ = sub.candidateIndex_;
            part.candidateCount_ = sub.candidateCount_;
        }
        confirmCover(part) = partCover(m, i, sub);
        if (!inSentence) {
            part.rawFormLength_ = m.rawFormLength_;
            setForm(part, std::string(span));
        }
        out.push_back(std::move(part));
    }
}

}  // namespace TAVO
