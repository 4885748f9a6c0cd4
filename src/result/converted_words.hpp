// From a path through a converted text to morphemes of the given one.
#ifndef TAVO_RESULT_CONVERTED_WORDS_HPP
#define TAVO_RESULT_CONVERTED_WORDS_HPP

#include "result/mrph_access.hpp"

#include <cstddef>
#include <span>
#include <utility>
#include <vector>

namespace TAVO {

/// Calls visit(Mrph&&, end) for the words of @p path, a path of @p sentence, which has a conversion; end is where the
/// word ends in the sentence's text. Words, or parts, that come of one given character are one morpheme without
/// parts, so that none is empty.
template <class Visit>
void eachConvertedWord(std::span<LatticeNode const* const> path, AnalyzerContext const& context,
                       Sentence const& sentence, Visit&& visit) {
    Conversion const& conversion = *sentence.conversion;
    std::size_t begin = 0, at = 0;
    for (std::size_t i = 0; i < path.size();) {
        at += path[i]->length;
        std::size_t const end = conversion.toGiven(at);
        char const* const text = sentence.text.data() + begin;
        Mrph m = MrphAccess::fromConverted(text, end - begin, path[i++], &context);
        std::vector<Mrph> members;
        for (; i < path.size() && conversion.toGiven(at + path[i]->length) == end; ++i) {
            if (members.empty()) members.push_back(m);
            at += path[i]->length;
            members.push_back(MrphAccess::fromConverted(text + (end - begin), 0, path[i], &context));
        }
        if (!members.empty()) {
            m = MrphAccess::join(std::move(members), 0);
            MrphAccess::forgetParts(m);
        } else if (m.getPartCount() > 1 && MrphAccess::hasEmptyPart(m)) {
            MrphAccess::forgetParts(m);
        }
        visit(std::move(m), end);
        begin = end;
    }
}

}  // namespace TAVO

#endif
