// The fields of MeCab's format: how many a lexicon has, and those that its parts
// of speech stand for.
#ifndef TAVO_LEXICON_MECAB_FIELDS_HPP
#define TAVO_LEXICON_MECAB_FIELDS_HPP

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace TAVO::words {

/// File name beside the connection table; the import of a lexicon writes it. UTF-8.
inline constexpr char kMecabFieldsName[] = "pos.fields";

/// @p text as a field of a CSV line: in double quotes when it holds a comma or one of them.
std::string csvField(std::string_view text);

struct MecabFields {
    /// Number of fields of a word, and of those in front that tell its part of speech.
    std::size_t count = 0, posCount = 0;
    /// Where the values of a word stand among them, from 0; -1: nowhere.
    int base = -1, reading = -1, pron = -1;
    /// Number of fields of an unknown word that no line tells.
    std::size_t unknownCount = 0;

    struct PartOfSpeech {
        std::vector<std::string> fields;  ///< in front; of an unknown word all
        bool unknown = false;
    };
    /// By the connection table's name without class number.
    std::unordered_map<std::string, PartOfSpeech> partsOfSpeech;

    /// Throws lexicon_error for a file that is there and not as text() writes it.
    /// False without such a file.
    bool read(std::string const& path);
    std::string text() const;

    /// Base form, reading and pronunciation behind as many part-of-speech fields as the
    /// longest of @p names (display names) has levels.
    static MecabFields ofNames(std::vector<std::string> const& names);
    /// The levels of a display name.
    static std::vector<std::string> levels(std::string_view displayName);
};

}  // namespace TAVO::words

#endif
