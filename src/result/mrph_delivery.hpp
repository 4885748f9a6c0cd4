// The last step of an assembly, for one morpheme.
#ifndef TAVO_RESULT_MRPH_DELIVERY_HPP
#define TAVO_RESULT_MRPH_DELIVERY_HPP

#include "result/mrph_access.hpp"
#include "result/reduce_rules.hpp"

#include <utility>
#include <vector>

namespace TAVO {

/// Appends a morpheme to @p out, divided or through @p joiner.
inline void deliverMrph(std::vector<Mrph>& out, Mrph&& m, RunJoiner& joiner, bool divideWords) {
    if (divideWords && m.getPartCount() > 1) {
        joiner.finish();
        MrphAccess::divideAndPush(m, out);
    } else {
        joiner.append(joiner.rules().membershipOf(m.getPid()), MrphAccess::form(m), std::move(m));
    }
}

}  // namespace TAVO

#endif
