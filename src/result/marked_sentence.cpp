#include "result/marked_sentence.hpp"

#include "result/assembly.hpp"
#include "result/mrph_access.hpp"
#include "result/tagged_input.hpp"

#include <iterator>
#include <memory>
#include <string_view>
#include <utility>

namespace TAVO {
namespace {

/// Appends the records of one dictionary that match. Among neighbouring
/// homographs of one id only the first that matches is a candidate, as in the
/// search of plain text.
void addMatching(std::vector<unsigned char const*>& records, RecordChain chain, std::string_view form,
                 TagInfo const& info, AnalyzerContext const& context) {
    std::uint16_t handled = 0;
    for (; chain; chain = chain.next()) {
        std::uint16_t const pid = chain.record().pid();
        if (pid == handled || pid == 0 || pid > context.connTable->idCount()) continue;
        Mrph const m =
            MrphAccess::fromRecord(form.data(), static_cast<unsigned int>(form.size()), chain.head(), &context);
        bool const matches = MrphAccess::match(m, info);
        if (matches) records.push_back(chain.head());
        handled = matches ? pid : std::uint16_t{0};
    }
}

}  // namespace

bool takeMarks(Sentence& sentence, AnalyzerContext const& context) {
    SentenceMarks marks;
    if (context.settings.mode(Mode::TaggedInput) == 1) {
        std::optional<TaggedText> tagged = parseTaggedText(sentence.text, context.pos, context.comments);
        if (!tagged) return false;
        if (tagged->text != sentence.text) {
            sentence.ownedText = std::make_unique<std::string>(std::move(tagged->text));
            sentence.text = *sentence.ownedText;
        }
        marks = std::move(tagged->marks);
    } else {
        marks = commentMarks(sentence.text, context.comments);
    }
    if (!marks.barriers.empty() || sentence.ownedText)
        sentence.marks = std::make_unique<SentenceMarks>(std::move(marks));
    return true;
}

LatticeConstraints constraintsOf(Sentence const& sentence, AnalyzerContext& context) {
    LatticeConstraints constraints;
    constraints.barriers = sentence.marks->barriers;
    for (TaggedWord const& word : sentence.marks->words) {
        std::string_view const form = sentence.text.substr(word.begin, word.end - word.begin);
        std::size_t const first = constraints.records.size();
        for (DicEntry const& entry : context.dics.entries()) {
            DicTrie const* const trie = entry.dic->trie();
            if (trie == nullptr) continue;
            addMatching(constraints.records, trie->exactMatch(asBytes(form.data()), form.size()), form, word.info,
                        context);
        }
        if (constraints.records.size() == first)
            constraints.records.push_back(context.madeRecords.record(word.info.pid));
        constraints.spans.push_back({word.begin, word.end, first, constraints.records.size() - first});
    }
    return constraints;
}

namespace {

/// The entries of a list of marks, taken in the order of their positions.
template <class Mark>
class Taker {
public:
    Taker(std::vector<Mark> const& marks, std::uint32_t Mark::*position)
        : at_(marks.begin()), end_(marks.end()), position_(position) {}

    /// The next mark when it stands at @p position, else null. Asked for
    /// ascending positions.
    Mark const* take(std::uint32_t position) noexcept {
        while (at_ != end_ && (*at_).*position_ < position) ++at_;
        return at_ != end_ && (*at_).*position_ == position ? &*at_++ : nullptr;
    }

private:
    typename std::vector<Mark>::const_iterator at_, end_;
    std::uint32_t Mark::*position_;
};

class Assembler {
public:
    Assembler(std::vector<Mrph>& out, AnalyzerContext const& context, Sentence const& sentence)
        : out_(out),
          context_(context),
          marks_(*sentence.marks),
          text_(sentence.text.data()),
          divideWords_(context.settings.mode(Mode::DivideWord) == 1),
          joiner_(context.reduce, out),
          barrier_(marks_.barriers.begin()),
          words_(marks_.words, &TaggedWord::begin),
          multiwords_(marks_.multiwords, &Multiword::begin),
          boundaries_(marks_.boundaries, &BoundaryInfo::position),
          annotations_(marks_.annotations, &Annotation::position) {}

    void add(LatticeNode const* node) {
        finishRunAtBarrier();
        addAnnotations();
        if (multiword_ == nullptr) multiword_ = multiwords_.take(position_);
        Mrph m = makeMrph(text_ + position_, node, context_);
        if (TaggedWord const* const word = words_.take(position_)) MrphAccess::setTagInfo(m, word->info);
        if (BoundaryInfo const* const boundary = boundaries_.take(position_)) MrphAccess::setBoundaryInfo(m, *boundary);
        position_ += node->length;
        if (multiword_ == nullptr) {
            deliver(std::move(m));
            return;
        }
        members_.push_back(std::move(m));
        if (position_ == multiword_->end) closeMultiword();
    }

    void finish() {
        finishRunAtBarrier();
        addAnnotations();
        joiner_.finish();
    }

private:
    void finishRunAtBarrier() {
        while (barrier_ != marks_.barriers.end() && *barrier_ < position_) ++barrier_;
        if (barrier_ != marks_.barriers.end() && *barrier_ == position_) joiner_.finish();
    }

    /// The annotations at this place; those inside a multiword wait for its end.
    void addAnnotations() {
        while (Annotation const* const annotation = annotations_.take(position_)) {
            if (annotation->excluded) continue;
            auto const length = static_cast<unsigned int>(annotation->text.size());
            Mrph m = MrphAccess::fromRecord(annotation->text.data(), length, kAnnotationRecord.data(), &context_);
            MrphAccess::setTagInfo(m, annotation->info);
            if (multiword_ != nullptr)
                waiting_.push_back(std::move(m));
            else
                joiner_.appendAlone(std::move(m));
        }
    }

    void closeMultiword() {
        Mrph whole =
            members_.size() == 1 ? std::move(members_.front()) : MrphAccess::join(std::move(members_), 0, true);
        if (!multiword_->additionalInfo.empty())
            MrphAccess::confirmCover(whole).additionalInfo = multiword_->additionalInfo;
        deliver(std::move(whole));
        members_.clear();
        for (Mrph& annotation : waiting_) joiner_.appendAlone(std::move(annotation));
        waiting_.clear();
        multiword_ = nullptr;
    }

    void deliver(Mrph&& m) { deliverMrph(out_, std::move(m), joiner_, divideWords_); }

    std::vector<Mrph>& out_;
    AnalyzerContext const& context_;
    SentenceMarks const& marks_;
    char const* text_;
    bool divideWords_;
    std::uint32_t position_ = 0;
    RunJoiner joiner_;
    std::vector<std::uint32_t>::const_iterator barrier_;
    Taker<TaggedWord> words_;
    Taker<Multiword> multiwords_;
    Taker<BoundaryInfo> boundaries_;
    Taker<Annotation> annotations_;
    Multiword const* multiword_ = nullptr;  // the open one
    std::vector<Mrph> members_;             // its morphemes so far
    std::vector<Mrph> waiting_;             // annotations inside it
};

}  // namespace

void getMarkedMrphArray(std::vector<Mrph>& out, std::vector<LatticeNode const*> const& path,
                        AnalyzerContext const& context, Sentence const& sentence) {
    out.clear();
    out.reserve(path.size() + sentence.marks->annotations.size());
    Assembler assembler(out, context, sentence);
    for (LatticeNode const* node : path) assembler.add(node);
    assembler.finish();
}

}  // namespace TAVO
