// Compiles dictionary source lines into a dictionary file.
#ifndef TAVO_DIC_DIC_COMPILER_HPP
#define TAVO_DIC_DIC_COMPILER_HPP

#include "dic/dic.hpp"
#include "dic/source_record.hpp"
#include "dic/trie_builder.hpp"

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

namespace TAVO {

/// Lines are serialized as they come, so that a fault is known with its line and
/// a large source takes little more memory than its dictionary.
class DicCompiler {
public:
    static constexpr std::size_t kMaxNames = 65534;

    /// @p names: part-of-speech names by id from 1 on. A name that occurs twice
    /// means its later id.
    explicit DicCompiler(std::vector<std::string> names, std::uint8_t version = Dic::kVersion,
                         std::uint8_t charType = Dic::kShiftJis);

    /// Takes one source line, which is no comment line. False when the line is
    /// refused: the first shape writes the error's text to the standard error
    /// stream, the second hands it over.
    bool add(std::string_view line);
    bool add(std::string_view line, std::string& error);

    /// Writes the dictionary. @p verbose: progress and errors go to the standard
    /// error stream, else nothing does; error() tells the cause of a failure.
    /// May be called again after further lines.
    bool compile(std::ostream& out, bool verbose);
    bool compile(int handle, bool verbose);
    std::string const& error() const noexcept { return error_; }

    std::size_t recordCount() const noexcept { return items_.size(); }

private:
    /// One record: its form and its serialized bytes, by their places in the
    /// two arenas. The form's first bytes decide most comparisons.
    struct Item {
        std::uint64_t prefix;
        std::size_t form;
        std::size_t record;
        std::uint32_t formBytes;
        std::uint32_t recordBytes;
    };

    bool compile(ByteSink const& sink, bool verbose);
    bool writeNames(ByteSink const& sink) const;
    bool fail(bool verbose, std::string text);
    std::string_view formOf(Item const& item) const { return {forms_.data() + item.form, item.formBytes}; }
    void sortItems();
    /// The keys, whose chains stand in @p chains.
    std::vector<TrieKey> makeKeys(std::string& chains, bool verbose) const;

    std::uint8_t version_;
    std::uint8_t charType_;
    std::vector<std::string> names_;
    NameTable ids_;
    SourceRecord record_;
    std::string forms_;
    std::string records_;
    std::vector<Item> items_;
    std::string error_;
};

}  // namespace TAVO

#endif
