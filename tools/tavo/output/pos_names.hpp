// Part-of-speech names as the program shows them.
#ifndef TAVO_TOOL_POS_NAMES_HPP
#define TAVO_TOOL_POS_NAMES_HPP

#include "cli/encoding.hpp"

#include "config/pos_name.hpp"

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

    std::string const& name(unsigned short pid) { return at(pid).text; }
    /// The name up to the first ":", "-" or "/".
    std::string const& head(unsigned short pid) { return at(pid).head; }

private:
    struct Name {
        std::string text, head;
        bool known = false;
    };
    Name const& at(unsigned short pid) {
        if (pid >= names_.size() || !names_[pid].known) load(pid);
        return names_[pid];
    }
    void load(unsigned short pid);

    TAVO::Tavo const& analyser_;
    Encoding encoding_;
    bool whole_;
    std::vector<Name> names_;
};

}  // namespace tool

#endif
