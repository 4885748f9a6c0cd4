// Joining morphemes into one, and dividing one into its parts.
#include "result/mrph_access.hpp"

#include <algorithm>
#include <span>

namespace TAVO {
namespace {

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

/// Combines the extension fields of the next member into those so far.
void combineExt(std::vector<std::string>& fields, Mrph const& member, Settings const& settings, bool isFirst) {
    std::vector<char const*> more;
    member.getExt(more);
    if (fields.size() < more.size()) fields.resize(more.size());
    for (std::size_t i = 0; i < fields.size(); ++i) {
        char const* const value = i < more.size() ? more[i] : "";
        if (isFirst) {
            fields[i] = value;
            continue;
        }
        auto const index = static_cast<int>(i);
        auto const mode = settings.extCombine.find(index);
        auto const filler = settings.extFiller.find(index);
        fields[i] = combine(fields[i], value,
                            mode != settings.extCombine.end() ? mode->second : static_cast<int>(Combine::Join),
                            filler != settings.extFiller.end() ? filler->second : std::string());
    }
}

void addMissing(std::vector<unsigned short>& list, std::vector<unsigned short> const& more) {
    for (unsigned short const value : more) {
        if (std::find(list.begin(), list.end(), value) == list.end()) list.push_back(value);
    }
}

/// What joining does with a text that some members lack.
enum class Missing { Empty, DropsAll };

/// The members' texts as one, parts separated. A text that is missing beside
/// others counts as empty parts, so that parts stay in their places.
template <class Text>
std::string joinParts(std::span<Mrph const> members, Missing missing, Text&& textOf) {
    std::string joined;
    bool any = false;
    for (Mrph const& member : members) {
        std::string text = textOf(member);
        if (text.empty() && missing == Missing::DropsAll) return {};
        any = any || !text.empty();
        if (text.empty()) text.assign(MrphAccess::partCount(member) - 1, '/');
        if (&member != members.data()) joined.push_back('/');
        joined += text;
    }
    return any ? joined : std::string();
}

/// The texts, lists and fields of a morpheme joined from @p members, whose readings are joined as @p missing says.
void joinValues(MrphCover& cover, std::span<Mrph const> members, Missing missing) {
    static Settings const kDefaults;
    Mrph const& first = members.front();
    AnalyzerContext const* const owner = MrphAccess::owner(first);
    Settings const& settings = owner != nullptr ? owner->settings : kDefaults;
    auto const anyHas = [&](std::string MrphCover::*own) {
        return std::any_of(members.begin(), members.end(), [&](Mrph const& m) { return has(m, own); });
    };
    if (std::any_of(members.begin(), members.end(), [](Mrph const& m) { return *MrphAccess::stdFormPtr(m) != '\0'; }))
        cover.stdForm = joinParts(members, Missing::Empty, stdFormInParts);
    cover.readPron = joinParts(members, missing, [](Mrph const& m) { return m.getReadPron(false); });
    if (anyHas(&MrphCover::read))
        cover.read = joinParts(members, missing, [](Mrph const& m) { return m.getRead(false); });
    if (anyHas(&MrphCover::pron))
        cover.pron = joinParts(members, missing, [](Mrph const& m) { return m.getPron(false); });
    if (anyHas(&MrphCover::lvRead))
        cover.lvRead = joinParts(members, missing, [](Mrph const& m) { return m.getLVRead(false); });
    cover.grammarType = first.getGrammarType();  // marks of the boundary before the first member
    cover.prosodicType = first.getProsodicType();
    for (Mrph const& member : members) {
        bool const isFirst = &member == &first;
        cover.group = combine(cover.group, member.getGroup(), static_cast<int>(Combine::Join), ":");
        cover.prosodicInfo = isFirst ? member.getProsodicInfo()
                                     : combine(cover.prosodicInfo, member.getProsodicInfo(),
                                               settings.prosodicInfoCombine, settings.prosodicInfoFiller);
        combineExt(cover.ext, member, settings, isFirst);
        std::vector<unsigned short> category1, category2, category3;
        member.getCategory(category1, category2, category3);
        addMissing(cover.category1, category1);
        addMissing(cover.category2, category2);
        addMissing(cover.category3, category3);
    }
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
    return cover;
}

}  // namespace

std::unique_ptr<MrphCover> MrphAccess::joinedCover(std::span<Mrph const> members, unsigned short pid, bool keepGaps) {
    auto cover = std::make_unique<MrphCover>();
    cover->replacesRecord = true;
    cover->pid = pid != 0 ? pid : members.front().getPid();
    cover->cost = 0;
    for (Mrph const& member : members) cover->cost += member.getCost();
    // Most runs are of letters and unknown words, whose records hold no value to join.
    if (!std::all_of(members.begin(), members.end(), isBare))
        joinValues(*cover, members, keepGaps ? Missing::Empty : Missing::DropsAll);
    return cover;
}

void MrphAccess::append(Mrph& m, Mrph const& next, unsigned short pid) {
    Mrph const members[] = {m, next};
    std::unique_ptr<MrphCover> cover = joinedCover(members, pid, true);
    if (m.cover_ && !m.cover_->subMrphs.empty()) {
        cover->subMrphs = std::move(m.cover_->subMrphs);
        cover->additionalInfo = std::move(m.cover_->additionalInfo);
    } else {
        cover->subMrphs.push_back(members[0]);
    }
    cover->subMrphs.push_back(members[1]);
    setMembers(m, std::move(cover), std::span(members).subspan(1));
}

Mrph MrphAccess::join(std::vector<Mrph>&& members, unsigned short pid, bool keepGaps) {
    Mrph joined(members.front());
    std::unique_ptr<MrphCover> cover = joinedCover(members, pid, keepGaps);
    std::span<Mrph const> const rest = std::span<Mrph const>(members).subspan(1);
    cover->subMrphs = std::move(members);  // the elements stay where rest points
    setMembers(joined, std::move(cover), rest);
    return joined;
}

void MrphAccess::setMembers(Mrph& m, std::unique_ptr<MrphCover> cover, std::span<Mrph const> rest) {
    bool adjoins = m.form_ == m.rawForm_;
    std::size_t adjoining = m.formLength_;
    for (Mrph const& next : rest) {
        adjoins = adjoins && m.form_ + adjoining == next.form_;
        adjoining += next.formLength_;
    }
    std::string joinedForm;
    // A form that is no span of the sentence is kept by the morpheme.
    if (!adjoins) {
        joinedForm = form(m);
        for (Mrph const& next : rest) joinedForm.append(form(next));
    }
    for (Mrph const& next : rest) {
        if (m.rawForm_ + m.rawFormLength_ == next.rawForm_) m.rawFormLength_ += next.rawFormLength_;
        m.partCount_ += next.partCount_;
        m.formLength_ += next.formLength_;
    }
    m.cover_ = std::move(cover);
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
        MrphCover& cover = confirmCover(part) = partCover(m, i, sub);
        if (localIndex == 0) {
            part.node_ = sub.node_;
            cover.grammarType = sub.getGrammarType();  // of the boundary, which lies before the first part
            cover.prosodicType = sub.getProsodicType();
        }
        if (!inSentence) {
            part.rawFormLength_ = m.rawFormLength_;
            setForm(part, std::string(span));
        }
        out.push_back(std::move(part));
    }
}

}  // namespace TAVO
