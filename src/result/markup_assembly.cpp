#include "result/markup_assembly.hpp"

#include "result/converted_words.hpp"

#include "result/mrph_access.hpp"
#include "result/mrph_delivery.hpp"

#include <utility>

namespace TAVO {
namespace {

/// The entries of a list of markup, taken in the order of their positions.
template <class Entry>
class Taker {
public:
    Taker(std::vector<Entry> const& entries, std::uint32_t Entry::*position)
        : at_(entries.begin()), end_(entries.end()), position_(position) {}

    /// The next entry when it stands at @p position, else null. Asked for
    /// ascending positions.
    Entry const* take(std::uint32_t position) noexcept {
        while (at_ != end_ && (*at_).*position_ < position) ++at_;
        return at_ != end_ && (*at_).*position_ == position ? &*at_++ : nullptr;
    }

private:
    typename std::vector<Entry>::const_iterator at_, end_;
    std::uint32_t Entry::*position_;
};

class Assembler {
public:
    Assembler(std::vector<Mrph>& out, AnalyzerContext const& context, ReduceRules const& reduce,
              Sentence const& sentence)
        : out_(out),
          context_(context),
          markup_(*sentence.markup),
          text_(sentence.text.data()),
          divideWords_(context.settings.mode(Mode::DivideWord) == 1),
          joiner_(reduce, out),
          barrier_(markup_.barriers.begin()),
          words_(markup_.words, &TaggedWord::begin),
          multiwords_(markup_.multiwords, &Multiword::begin),
          boundaries_(markup_.boundaries, &BoundaryInfo::position),
          annotations_(markup_.annotations, &Annotation::position) {}

    void add(LatticeNode const* node) {
        add(MrphAccess::fromNode(text_ + position_, node, &context_), position_ + node->length);
    }
    /// Adds the word that ends at @p end of the text.
    void add(Mrph&& m, std::size_t end) {
        finishRunAtBarrier();
        addAnnotations();
        if (multiword_ == nullptr) multiword_ = multiwords_.take(position_);
        if (TaggedWord const* const word = words_.take(position_)) MrphAccess::setTagInfo(m, word->info);
        if (BoundaryInfo const* const boundary = boundaries_.take(position_)) MrphAccess::setBoundaryInfo(m, *boundary);
        position_ = static_cast<std::uint32_t>(end);
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
        while (barrier_ != markup_.barriers.end() && *barrier_ < position_) ++barrier_;
        if (barrier_ != markup_.barriers.end() && *barrier_ == position_) joiner_.finish();
    }

    /// The annotations at this position; those inside a multiword wait for its end.
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
    SentenceMarkup const& markup_;
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

void getMarkedUpMrphArray(std::vector<Mrph>& out, std::span<LatticeNode const* const> path,
                          AnalyzerContext const& context, ReduceRules const& reduce, Sentence const& sentence) {
    out.clear();
    out.reserve(path.size() + sentence.markup->annotations.size());
    Assembler assembler(out, context, reduce, sentence);
    if (sentence.conversion) {
        eachConvertedWord(path, context, sentence,
                          [&](Mrph&& m, std::size_t end) { assembler.add(std::move(m), end); });
        path = {};
    }
    for (LatticeNode const* node : path) assembler.add(node);
    assembler.finish();
    if (context.settings.mode(Mode::DivideWord) != 1) reduce.phrases().join(out);
}

}  // namespace TAVO
