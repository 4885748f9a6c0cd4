// Formatting of morphemes (docs/format-string.md tells the language).
#ifndef TAVO_RESULT_FORMAT_HPP
#define TAVO_RESULT_FORMAT_HPP

#include "result/format_scan.hpp"

#include <tavo/mrph.hpp>

#include <string>
#include <string_view>
#include <vector>

namespace TAVO {

/// A format string scanned once, for output of many morphemes. Gives exactly
/// what Mrph::format gives.
class CompiledFormat {
public:
    CompiledFormat() = default;
    explicit CompiledFormat(std::string format);

    /// Takes on another format; costs one comparison when it is the same.
    void set(std::string const& format) {
        if (format != format_) *this = CompiledFormat(format);
    }

    /// Appends the whole morpheme to @p out.
    void write(std::string& out, Mrph const& m, std::string_view nullString) const;

private:
    struct Piece {
        std::string literal;  // comes first
        Directive directive;
        bool hasDirective = false;
    };

    std::string format_;
    std::vector<Piece> pieces_;
};

/// Appends the value of @p directive, or @p nullString when it is empty, padded
/// with blanks to the directive's width.
void writeValue(std::string& out, Directive const& directive, Mrph const& m, std::string_view nullString);
/// The same for part @p part, an index below getPartCount().
void writePartValue(std::string& out, Directive const& directive, Mrph const& m, int part, std::string_view nullString);

}  // namespace TAVO

#endif
