// What markup and comment rules say about a sentence. Positions and lengths are
// those of the analysed text, in bytes.
#ifndef TAVO_SPLIT_SENTENCE_MARKUP_HPP
#define TAVO_SPLIT_SENTENCE_MARKUP_HPP

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace TAVO {

/// Attributes of a tagged word, an annotation or a comment. An empty text or
/// list is "not given".
struct TagInfo {
    std::uint32_t position = 0;  ///< where the word starts
    std::uint16_t pid = 0;       ///< 0: not given
    std::string stdForm;
    std::string readPron;
    std::string read;
    std::string pron;
    std::string lvRead;
    std::string group;
    std::string additionalInfo;
    std::string prosodicInfo;
    std::map<unsigned, std::string> ext;  ///< by field number
    std::vector<unsigned short> category1, category2, category3;
};

/// Attributes of a boundary.
struct BoundaryInfo {
    std::uint32_t position = 0;
    std::string kind = "word";  ///< or "sentence"
    std::string grammarType;
    std::string prosodicType;
};

/// A span that is one word.
struct TaggedWord {
    std::uint32_t begin = 0;
    std::uint32_t end = 0;
    TagInfo info;
};

/// A span whose words come out as one.
struct Multiword {
    std::uint32_t begin = 0;
    std::uint32_t end = 0;
    std::string additionalInfo;
};

/// A text that is not analysed and comes out before the word at its position.
struct Annotation {
    std::uint32_t position = 0;
    std::string text;
    TagInfo info;
    std::size_t lineBegin = 0, lineEnd = 0;  ///< where the text stands in the line, with its entities
    bool excluded = false;                   ///< does not come out
};

/// Every list is in the order of positions. Words do not overlap, multiwords
/// neither, and a word lies inside or outside a multiword.
struct SentenceMarkup {
    std::vector<TaggedWord> words;
    std::vector<Multiword> multiwords;
    std::vector<Annotation> annotations;   ///< those of one position in the order of the text
    std::vector<BoundaryInfo> boundaries;  ///< at most one per position
    std::vector<std::uint32_t> barriers;   ///< each once; no word crosses one

    /// Adds the position that the text has reached to the barriers.
    void addBarrier(std::uint32_t position) {
        if (barriers.empty() || barriers.back() != position) barriers.push_back(position);
    }
};

}  // namespace TAVO

#endif
