// The state behind the analyser's interface.
#ifndef TAVO_CORE_IMPL_HPP
#define TAVO_CORE_IMPL_HPP

#include "config/init_file.hpp"
#include "convert/converter.hpp"
#include "core/cooccurrence.hpp"
#include "result/comment_rules.hpp"
#include "result/context.hpp"
#include "result/reduce_rules.hpp"
#include "split/sentence_splitter.hpp"

#include <tavo/tavo.hpp>

#include <string>
#include <string_view>
#include <vector>

namespace TAVO {

struct TAVO_HIDDEN Tavo::Impl {
    explicit Impl(std::uint32_t nodeCapacity) : context(nodeCapacity) {}

    /// Takes over settings, rule tables and attachments of @p other.
    void copyFrom(Impl const& other);
    /// Sets an integer mode; the results of the last analysis are dropped first.
    void setMode(Mode mode, int value);

    /// Uses @p table and the dictionaries that fit it, which belong to the caller, in place of those attached.
    void attach(ConnTable const& table, std::vector<Dic const*> const& dics);

    // Stages of an analysis.
    int analyzeText(std::string_view text, bool nBest);
    /// The same with a text that nobody else keeps.
    int analyzeOwn(std::string&& text, bool nBest);
    /// True when line breaks inside sentences are taken out.
    bool deletesLineBreaks() const;
    /// True when sentences are searched one at a time, since more is asked for than best paths of texts as given.
    bool searchesAlone(bool nBest) const;
    void analyzeLine(std::string_view piece, bool nBest);
    /// Searches all sentences, which have neither markup nor line breaks to take out.
    void analyzeTogether();
    /// True when a text may hold tags or comments.
    bool mayHaveMarkup() const;
    /// Finds what delimiters must not cut; empty when nothing is.
    SpanFinder uncutSpanFinder() const;
    /// Takes tags and comments out of the sentence; false when its markup is malformed.
    bool readMarkup(Sentence& sentence);
    /// Sets what is searched in the place of the sentence's text.
    void convert(Sentence& sentence) const;
    /// Searches a sentence alone.
    void buildLattice(Sentence& sentence, bool nBest);
    /// Makes the edges of a sentence of which only the best path was searched, where a mode lets more be asked for.
    void addEdges(Sentence& sentence);
    /// The @p n best paths of a sentence with edges.
    std::vector<Cooccurrence::Ranked> rankedPaths(std::size_t index, int n);
    void setBeginCost(Sentence& sentence, bool forced) const;
    void setErrorSentence(std::size_t index);
    /// True when the cooccurrence mode may change the order of a sentence's paths.
    bool actsOn(Sentence const& sentence) const;
    /// Takes the path whose words fit together best, in the cooccurrence mode.
    void reconsider(std::size_t index);
    /// Turns a path of @p found into morphemes.
    void assemble(std::vector<Mrph>& out, std::vector<LatticeNode const*> const& path, Sentence const& found);
    /// Frees the results and everything they point at.
    void dropInput() noexcept;

    /// Throws tavo_not_ready without connection table or dictionary, or when a dictionary lost its file.
    void requireReady() const;
    /// The sentence, or null when the last input had none at all; throws
    /// range_error with @p what for a bad index.
    Sentence const* sentence(int index, char const* what) const;
    /// The same once there is an analysis; else throws tavo_not_ready.
    Sentence const* analysed(int index, char const* what) const;

    /// The forms of a sentence's morphemes, one behind the other.
    std::string joinedForms(Sentence const& found);
    /// Applies those keys of an init file at @p path that name no files, in their fixed order.
    void applySettings(Tavo& tavo, InitValues const& values, std::string const& path);
    /// Applies the keys of an init file at @p path in their fixed order. What they do not name lies in @p folder.
    void applyInitFile(Tavo& tavo, InitValues const& values, std::string const& path, std::string const& folder);
    void applyMode(InitValues const& values, ModeInfo const& info, std::string const& path);

    AnalyzerContext context;
    ReduceRules reduce;
    CommentRules comments;
    ConvertRules convertRules;
    Converter converter;
    Cooccurrence cooccurrence;
    std::string ownText;  // the last text that was given away; results may point into it
    bool hasResult = false;
    // The error state may be set by const operations.
    mutable int errorCode = 0;
    mutable std::string errorWhat;
    std::vector<unsigned int> errorSentences;
};

/// The library's own doorway to the inside of an analyser.
struct TavoAccess {
    using Impl = Tavo::Impl;
    static Impl& impl(Tavo& tavo) noexcept { return *tavo.impl_; }
    static Impl const& impl(Tavo const& tavo) noexcept { return *tavo.impl_; }
};

}  // namespace TAVO

#endif
