// The attributes of tags and comment rules.
#ifndef TAVO_RESULT_TAG_ATTRIBUTES_HPP
#define TAVO_RESULT_TAG_ATTRIBUTES_HPP

#include "config/pos_tables.hpp"
#include "split/sentence_markup.hpp"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace TAVO {

/// Extension fields above this one are skipped.
inline constexpr unsigned kMaxExtField = 255;

/// Reads one attribute of a tag from @p pos on; @p end is the position of the tag's
/// closing ">". Returns where the next one is read, at least @p end behind the
/// last; npos when only blanks and "/" are left in @p line.
std::size_t getKeyValue(std::string_view line, std::size_t pos, std::size_t end, std::string& key, std::string& value);

/// A position where one byte of a text was written as an entity.
struct Entity {
    std::size_t begin, end;    ///< in the text as written
    std::size_t decodedBegin;  ///< of the byte in the decoded text
};
/// @p text with &lt; &gt; &amp; &apos; &quot; decoded; any other "&" stays. Adds
/// the decoded ones to @p entities unless that is null.
std::string decodeEntities(std::string_view text, std::vector<Entity>* entities = nullptr);
/// @p text with the five characters written as entities.
std::string encodeEntities(std::string_view text);

/// True for the keys that setAttribute() takes, and for "PartOfSP".
bool isAttribute(std::string_view key) noexcept;
/// Stores the value of an attribute other than "PartOfSP"; false for a key that
/// is none, and for an extension field beyond kMaxExtField.
bool setAttribute(TagInfo& info, std::string_view key, std::string value);
/// The id of a part of speech as attributes name it: 0 for an empty name, the
/// unknown word's id for a name that is not in the table.
std::uint16_t attributePid(PosTables const& pos, std::string const& name);

}  // namespace TAVO

#endif
