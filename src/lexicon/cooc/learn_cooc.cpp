// Cooccurrence ids out of a text.
#include "lexicon/cooc/cooc_counts.hpp"
#include "lexicon/lexicon_files.hpp"
#include "lexicon/new_file.hpp"
#include "lexicon/stage.hpp"
#include "lexicon/user_text.hpp"

#include "base/sjis.hpp"
#include "core/impl.hpp"
#include "dic/record_source.hpp"
#include "engine/cooc/cooc_histories.hpp"
#include "split/sentence_markup.hpp"
#include "text/lexicon_version.hpp"
#include "text/line_text.hpp"

#include <algorithm>
#include <filesystem>

namespace TAVO {
namespace words {
namespace {

/// Hands the words of a text to @p counts, sentence by sentence.
class CorpusReader {
public:
    CorpusReader(Tavo const& lexicon, bool tagged, CoocCounts& counts) : analyser_(lexicon), counts_(counts) {
        analyser_.setCooccurrenceMode(0);
        analyser_.setTaggedInputMode(tagged ? 1 : 0);
    }

    void addLine(std::string_view line) {
        line_.assignUtf8(line);
        analyser_.analyze(line_.sjis().data(), static_cast<int>(line_.sjis().size()));
        for (Sentence const& sentence : TavoAccess::impl(analyser_).context.sentences) addSentence(sentence);
    }

private:
    void addSentence(Sentence const& sentence) {
        std::vector<std::uint32_t> const numbers = characterNumbers(sentence.searchText());
        std::vector<CountedWord> found;
        std::vector<std::string> surfaces;
        std::size_t at = 0;
        for (LatticeNode const* const node : bestPath(sentence)) {
            std::size_t const end = at + node->length;
            if (isInDictionary(node->record)) {
                found.push_back({node->record, static_cast<std::int32_t>(numbers[at]),
                                 static_cast<std::int32_t>(numbers[end]), isTagged(sentence, at, end)});
                surfaces.emplace_back(sentence.searchText().substr(at, node->length));
            }
            at = end;
        }
        counts_.addSentence(std::move(found), surfaces);
    }
    bool isInDictionary(unsigned char const* record) const {
        auto const& entries = TavoAccess::impl(analyser_).context.dics.entries();
        return std::ranges::any_of(entries, [&](DicEntry const& entry) { return entry.dic->contains(record); });
    }
    static bool isTagged(Sentence const& sentence, std::size_t begin, std::size_t end) {
        return sentence.markup && std::ranges::any_of(sentence.markup->words, [&](TaggedWord const& word) {
                   return word.begin == begin && word.end == end;
               });
    }

    Tavo analyser_;
    CoocCounts& counts_;
    LineText line_;
};

/// The source lines of the words that get ids.
class IdDictionary {
public:
    IdDictionary(WordForms& forms, CoocCounts const& counts) : forms_(forms), counts_(counts) {}

    void add(std::vector<CoocCounts::Choice> const& choices) {
        for (CoocCounts::Choice const& choice : choices) {
            std::string const id = "c" + std::to_string(++idCount_);
            for (std::string const& surface : formsOf(choice)) {
                give(surface, choice.lexeme, id + "LR");
                homographs_.insert(surface);
            }
            for (CoocCounts::Id const lexeme : choice.context)
                for (std::string const& surface : counts_.surfacesOf(lexeme)) give(surface, lexeme, id);
        }
    }
    /// In Shift_JIS. All words of a form are there, so that without scoring the same one of them is taken as in the
    /// lexicon, where the order of making decides.
    std::string source() {
        std::string lines;
        for (auto const& [surface, ids] : ids_)
            forms_.eachRecord(surface, [&, &form = surface, &known = ids](Dic const& dic, MrphDic record) {
                auto const found = known.find(forms_.lexemeOf(record, form));
                lines += withIds(formatSourceLine(form, record, dic), found == known.end() ? "" : found->second) + "\n";
                ++lineCount_;
            });
        return lines;
    }
    std::size_t homographs() const noexcept { return homographs_.size(); }
    std::size_t lines() const noexcept { return lineCount_; }

private:
    /// The forms that the text has of a group's lexemes and that each of them may be.
    std::set<std::string> formsOf(CoocCounts::Choice const& choice) const {
        std::set<std::string> all;
        std::vector<CoocCounts::Id> const& group = counts_.group(choice.group);
        for (CoocCounts::Id const lexeme : group)
            for (std::string const& surface : counts_.surfacesOf(lexeme))
                if (CoocCounts::isHomograph(surface) && forms_.lexemesOf(surface) == group) all.insert(surface);
        return all;
    }
    void give(std::string const& surface, CoocCounts::Id lexeme, std::string const& id) {
        std::string& ids = ids_[surface][lexeme];
        ids += (ids.empty() ? "" : " ") + id;
    }
    /// @p line of source with @p ids behind those of its word cooccurrence field.
    static std::string withIds(std::string const& line, std::string const& ids) {
        constexpr std::size_t kField = 5;
        std::vector<std::size_t> commas;
        for (std::size_t pos = 0; pos < line.size(); pos += charWidth(line, pos)) {
            if (line[pos] == '\\') ++pos;
            if (line[pos] == ',') commas.push_back(pos);
        }
        if (ids.empty()) return line;
        if (commas.size() < kField) return line + std::string(kField - commas.size(), ',') + ids;
        std::size_t const end = commas.size() > kField ? commas[kField] : line.size();
        bool const isEmpty = end == commas[kField - 1] + 1;
        return line.substr(0, end) + (isEmpty ? "" : " ") + ids + line.substr(end);
    }

    WordForms& forms_;
    CoocCounts const& counts_;
    std::map<std::string, std::map<CoocCounts::Id, std::string>> ids_;
    std::set<std::string> homographs_;
    std::size_t idCount_ = 0, lineCount_ = 0;
};

void writeText(std::string const& path, std::string const& text) {
    NewFile file(path);
    file.write(text);
    file.commit();
}

std::string absolute(std::string const& path) { return std::filesystem::absolute(path).lexically_normal().string(); }

/// An init file of @p lexicon with the dictionary and the rules of @p base.
std::string initText(Tavo const& lexicon, std::string const& base) {
    std::string text =
        "; The lexicon with cooccurrence. The paths are absolute.\nDic=" + absolute(base + ".dic") + "\n";
    for (int i = 0; i < lexicon.getDicCount(); ++i)
        text += std::string("Dic=") + absolute(lexicon.getDicPath(i)) + "\n";
    text += std::string("ConnTable=") + absolute(lexicon.getConnTablePath()) + "\n";
    for (auto const& [key, path] : {std::pair{"ReduceRule", lexicon.getReduceRulePath()},
                                    {"NumberPartOfSP", lexicon.getNumberPartOfSPPath()},
                                    {"MajorPartOfSP", lexicon.getMajorPartOfSPPath()},
                                    {"ConvertRule", lexicon.getConvertRulePath()},
                                    {"EndFormRule", lexicon.getEndFormRulePath()},
                                    {"PublicPartOfSP", lexicon.getPublicPartOfSPPath()}})
        if (*path != '\0') text += std::string(key) + "=" + absolute(path) + "\n";
    return text + "CooccurrenceRule=" + absolute(base + ".rules") + "\nCooccurrence=1\n";
}

}  // namespace
}  // namespace words

CooccurrenceReport learnCooccurrence(std::string_view corpus, CooccurrenceOptions const& options) {
    using namespace words;
    if (options.output.empty()) throw lexicon_error("", 0, "no name for the dictionary to write");
    std::string const base =
        options.output.ends_with(".dic") ? options.output.substr(0, options.output.size() - 4) : options.output;
    LexiconVersion const lexicon(options.lexicon, {});
    WordForms forms(TavoAccess::impl(lexicon.prototype()).context.dics);
    CoocCounts counts(forms, options);
    CorpusReader reader(lexicon.prototype(), options.tagged, counts);
    for (std::size_t at = 0; at < corpus.size();) {
        std::size_t const end = std::min(corpus.find('\n', at), corpus.size());
        tell(options.progress, "Analysing", at, corpus.size());
        reader.addLine(corpus.substr(at, end - at));
        at = end + 1;
    }
    tell(options.progress, "Counting");
    counts.count();
    IdDictionary dictionary(forms, counts);
    dictionary.add(counts.choices());
    std::string const source = dictionary.source();
    if (source.empty())
        throw lexicon_error(options.name, 0,
                            "nothing learnt: it takes homographs that the text has in other forms, or tagged, some "
                            "times each; give more text");
    WordListOptions list;
    list.connTable = lexicon.prototype().getConnTablePath();
    list.encoding = TextEncoding::Sjis;
    list.name = base + ".dic";
    list.output = base + ".dic";
    list.progress = options.progress;
    if (WordList const made = compileWords(source, list); !made.made)
        throw lexicon_error(made.faults.empty() ? LexiconFault{options.name, 0, "nothing was compiled"}
                                                : made.faults[0]);
    writeText(base + ".rules",
              "; Cooccurrence: how much dearer an analysis may be, and how far words are seen.\nMargin = " +
                  std::to_string(options.margin) + "\nWindow = " + std::to_string(options.window) + "\n");
    writeText(base + ".init", initText(lexicon.prototype(), base));
    return {counts.sentences(), counts.evidence(), dictionary.homographs(), dictionary.lines()};
}

}  // namespace TAVO
