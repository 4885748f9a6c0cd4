// Part-of-speech names as the program shows them.
#ifndef TAVO_TOOL_POS_NAMES_HPP
#define TAVO_TOOL_POS_NAMES_HPP

#include "cli/encoding.hpp"

#include "config/pos_name.hpp"
#include "result/mrph_access.hpp"

#include <tavo/tavo.hpp>

#include <string>
#include <string_view>
#include <vector>

namespace tool {

using TAVO::withoutClass;

/// Converts each name once.
class PosNames {
public:
    /// @p analyser must outlive this and keep its connection table. @p whole: names as the
    /// connection table has them, with class number and the features of the analyser.
    PosNames(TAVO::Tavo const& analyser, Encoding encoding, bool whole)
        : analyser_(analyser), encoding_(encoding), whole_(whole) {}

    std::string const& name(TAVO::Mrph const& m) { return of(m).text; }
    /// The name up to the first ":", "-" or "/".
    std::string const& head(TAVO::Mrph const& m) { return of(m).head; }

private:
    struct Name {
        std::string text, head;
        bool known = false;
    };
    Name const& of(TAVO::Mrph const& m) {
        TAVO::MrphCover const* const cover = TAVO::MrphAccess::cover(m);
        if (cover != nullptr && !cover->className.empty()) return phrase_ = made(cover->className);
        unsigned short const pid = m.getPid();
        if (pid >= names_.size() || !names_[pid].known) load(pid);
        return names_[pid];
    }
    Name made(std::string const& name) const;
    void load(unsigned short pid);

    TAVO::Tavo const& analyser_;
    Encoding encoding_;
    bool whole_;
    Name phrase_;  // of the last phrase
    std::vector<Name> names_;
};

}  // namespace tool

#endif
