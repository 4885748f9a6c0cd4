// The library's own doorway to the inside of a morpheme.
#ifndef TAVO_RESULT_MRPH_ACCESS_HPP
#define TAVO_RESULT_MRPH_ACCESS_HPP

#include "dic/mrph_dic.hpp"
#include "result/context.hpp"
#include "result/mrph_cover.hpp"

#include <tavo/mrph.hpp>

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace TAVO {

struct MrphAccess {
    // Making. Texts are not copied; records may be null, owners too.

    static Mrph fromRecord(char const* text, unsigned int length, unsigned char const* record,
                           AnalyzerContext const* owner) {
        return Mrph(text, length, record, owner);
    }
    /// @p text is the first byte of the node's span of the sentence.
    static Mrph fromNode(char const* text, LatticeNode const* node, AnalyzerContext const* owner) {
        return Mrph(text, node, owner);
    }
    /// The same for a node of a converted text, whose word has @p length bytes in the sentence.
    static Mrph fromConverted(char const* text, std::size_t length, LatticeNode const* node,
                              AnalyzerContext const* owner) {
        Mrph m(text, node, owner);
        m.formLength_ = m.rawFormLength_ = static_cast<std::uint32_t>(length);
        return m;
    }
    static bool hasEmptyPart(Mrph const& m) {
        for (int i = 0; i < m.getPartCount(); ++i)
            if (partForm(m, i).empty()) return true;
        return false;
    }
    /// Makes a morpheme one without parts.
    static void forgetParts(Mrph& m) {
        confirmCover(m).subMrphs.clear();
        m.partCount_ = 1;
    }
    /// A copy of @p m on another record.
    static Mrph withRecord(Mrph const& m, unsigned char const* record) { return Mrph(m, record); }

    // Looking inside.

    static unsigned char const* record(Mrph const& m) noexcept { return m.dic_; }
    static LatticeNode const* node(Mrph const& m) noexcept { return m.node_; }
    static AnalyzerContext const* owner(Mrph const& m) noexcept { return m.owner_; }
    /// Null until an override was stored.
    static MrphCover const* cover(Mrph const& m) noexcept { return m.cover_.get(); }
    static std::string_view form(Mrph const& m) noexcept { return {m.form_, m.formLength_}; }
    /// The span of the analysed text that the morpheme covers.
    static std::string_view rawForm(Mrph const& m) noexcept { return {m.rawForm_, m.rawFormLength_}; }
    /// Index of its sentence where that has a text of its own; else the text that was given holds the span.
    static std::size_t sentence(Mrph const& m) noexcept { return m.sentence_; }
    static void setSentence(Mrph& m, std::size_t index) noexcept { m.sentence_ = static_cast<std::uint32_t>(index); }
    static unsigned int partCount(Mrph const& m) noexcept { return m.partCount_; }
    /// True when the morpheme is in no dictionary, or one character of an unknown word.
    static bool isUnknown(Mrph const& m) { return m.getPid() == ConnTable::kUnknownId || m.isUndef(); }
    /// Index of the record's dictionary in the analyser's list; -1 unless known.
    static int dicIndex(Mrph const& m) noexcept { return m.dicIndex_; }
    static void setDicIndex(Mrph& m, int index) noexcept { m.dicIndex_ = index; }

    // Values the way accessors see them: the cover's when given, else the record's.

    using RecordText = char const* (MrphDic::*)() const noexcept;
    static char const* text(Mrph const& m, std::string MrphCover::*own, RecordText field) noexcept;
    /// A value that only a cover can hold.
    static char const* coverText(Mrph const& m, std::string MrphCover::*own) noexcept {
        return m.cover_ ? ((*m.cover_).*own).c_str() : "";
    }
    static char const* readPronPtr(Mrph const& m) noexcept { return text(m, &MrphCover::readPron, &MrphDic::readPron); }
    static char const* stdFormPtr(Mrph const& m) noexcept { return text(m, &MrphCover::stdForm, &MrphDic::stdForm); }
    /// What @p span of the morpheme's form was analysed as.
    static std::string_view converted(Mrph const& m, std::string_view span);
    /// What the rules of end forms make of @p text, a text of @p m or of its part of speech @p pid; nothing when none
    /// fits.
    static std::optional<std::string> endText(Mrph const& m, unsigned short pid, EndFormRules::Kind kind,
                                              std::string_view text);

    // The cover.

    /// True when a cover with content exists.
    static bool hasCover(Mrph const& m) noexcept { return m.cover_ && m.cover_->hasContent(); }
    /// The cover, made when missing. Not to be called from two threads at once.
    static MrphCover& confirmCover(Mrph const& m);
    /// Replaces the surface form; the covered span of the sentence stays.
    static void setForm(Mrph& m, std::string form);

    // Parts.

    /// The morpheme that answers for part @p index, and the index inside it: @p m
    /// itself unless it was joined from others. Throws logic_error
    /// "LOGIC_ERROR: Mrph::getPartMrph()" when the joined morphemes run out.
    static Mrph const& getPartMrph(Mrph const& m, int index, int& localIndex);
    /// The same down to a morpheme that was not joined.
    static Mrph const& leaf(Mrph const& m, int index, int& localIndex);
    /// The span of part @p index in the form.
    static std::string_view partForm(Mrph const& m, int index);

    // Joining and splitting.

    /// Extends @p m over @p next; both live on inside @p m, so that part indexes
    /// keep addressing them. @p pid becomes the part of speech, 0 keeps m's own.
    static void append(Mrph& m, Mrph const& next, unsigned short pid);
    /// One morpheme over all @p members (at least one), which live on inside it.
    /// Its reading is theirs joined; one that has none leaves the whole without
    /// reading, unless @p keepGaps lets its parts be empty.
    static Mrph join(std::vector<Mrph>&& members, unsigned short pid, bool keepGaps = false);
    /// Replaces @p out by one morpheme per part.
    static void divide(Mrph const& m, std::vector<Mrph>& out);
    static void divideAndPush(Mrph const& m, std::vector<Mrph>& out);

    // Attributes of tagged words, comments and boundaries.

    /// True when the morpheme's own values agree with the given attributes that a
    /// dictionary can hold (all but additional information and LVRead). Texts
    /// agree with or without their part separators.
    static bool match(Mrph const& m, TagInfo const& info);
    /// Stores the given attributes; texts only where they differ from what the
    /// morpheme answers.
    static void setTagInfo(Mrph& m, TagInfo const& info);
    static void setBoundaryInfo(Mrph& m, BoundaryInfo const& info);

    /// Stores a copy with the analyser, which frees it with its input; null
    /// without analyser.
    static Mrph const* storeAlt(Mrph const& m);

private:
    /// True when all that can be asked of the morpheme's record is part of speech and cost.
    static bool isBare(Mrph const& m) noexcept { return !m.cover_ && (m.dic_ == nullptr || MrphDic(m.dic_).isBare()); }
    /// The cover of a morpheme joined from @p members, without them and without form.
    static std::unique_ptr<MrphCover> joinedCover(std::span<Mrph const> members, unsigned short pid, bool keepGaps);
    /// Lengthens @p m over @p rest and gives it @p cover.
    static void setMembers(Mrph& m, std::unique_ptr<MrphCover> cover, std::span<Mrph const> rest);
};

}  // namespace TAVO

#endif
