// The values of a morpheme that differ from its dictionary record.
#ifndef TAVO_RESULT_MRPH_COVER_HPP
#define TAVO_RESULT_MRPH_COVER_HPP

#include <tavo/mrph.hpp>

#include <cstdint>
#include <string>
#include <vector>

namespace TAVO {

/// Owned by one morpheme; made when the first value is stored. An empty text or
/// list is "not given" and leaves the record's value in force, unless
/// replacesRecord says that this block is all there is.
class MrphCover {
public:
    static constexpr std::int32_t kNoCost = -1;

    std::uint16_t pid = 0;       ///< 0: not given
    std::string className;       ///< of a phrase; stands for the name of the part of speech
    std::vector<Mrph> subMrphs;  ///< the morphemes joined into this one
    std::string text0;           ///< kept and copied, read by nothing
    std::string stdForm;         ///< with part separators
    std::string readPron;        ///< in the read-pron encoding
    std::string form;            ///< surface form; the morpheme's form pointer then points here
    std::string read;            ///< with part separators
    std::string pron;            ///< with part separators
    std::string lvRead;          ///< with part separators
    std::string group;
    std::int32_t cost = kNoCost;
    std::vector<unsigned short> category1, category2, category3;
    std::vector<std::string> ext;
    std::string additionalInfo;
    std::string prosodicInfo;
    std::string grammarType;
    std::string prosodicType;

    /// Set for joined morphemes and for the parts of a divided one, whose record
    /// describes something else: no value falls back to the record.
    bool replacesRecord = false;
    /// Set for texts of tags where "/" separates no parts.
    bool keepsSlashes = false;

    bool hasContent() const noexcept {
        return pid != 0 || cost != kNoCost || replacesRecord || !className.empty() || !subMrphs.empty() ||
               !text0.empty() || !stdForm.empty() || !readPron.empty() || !form.empty() || !read.empty() ||
               !pron.empty() || !lvRead.empty() || !group.empty() || !category1.empty() || !category2.empty() ||
               !category3.empty() || !ext.empty() || !additionalInfo.empty() || !prosodicInfo.empty() ||
               !grammarType.empty() || !prosodicType.empty();
    }
};

}  // namespace TAVO

#endif
