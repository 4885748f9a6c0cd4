// Part-of-speech names as the program shows them.
#ifndef TAVO_TOOL_POS_NAMES_HPP
#define TAVO_TOOL_POS_NAMES_HPP

#include "encoding.hpp"

#include <tavo/tavo.hpp>

#include <string>
#include <string_view>
#include <vector>

namespace tool {

/// @p name without the class number that tells parts of speech of one name and
/// different costs apart: "A:B-12" is shown as "A:B".
std::string_view withoutClass(std::string_view name) noexcept;

/// Converts each name once.
class PosNames {
public:
    struct Style {
        Encoding encoding = Encoding::Utf8;
        bool showClass = false;
        char separator = ':';  ///< what ":" is shown as
    };
    /// @p analyser must outlive this and keep its connection table.
    PosNames(TAVO::Tavo const& analyser, Style style) : analyser_(analyser), style_(style) {}

    std::string const& name(unsigned short pid) {
        if (pid >= names_.size() || !names_[pid].known) load(pid);
        return names_[pid].text;
    }

private:
    struct Name {
        std::string text;
        bool known = false;
    };
    void load(unsigned short pid);

    TAVO::Tavo const& analyser_;
    Style style_;
    std::vector<Name> names_;
};

}  // namespace tool

#endif
