// Compiled morpheme records from dictionary source lines, for tests that need
// no dictionary around them.
#ifndef TAVO_TESTS_RECORD_BUILDER_HPP
#define TAVO_TESTS_RECORD_BUILDER_HPP

#include "dic/source_record.hpp"
#include "result/mrph_access.hpp"
#include "support/thrown.hpp"

#include <deque>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace TAVO::test {

/// Two-byte text that stays readable: each capital letter becomes its full-width
/// form (0x82 0x60 for A), every other byte stays.
inline std::string wide(std::string_view text) {
    std::string result;
    for (char const c : text) {
        if (c >= 'A' && c <= 'Z') {
            result += {'\x82', static_cast<char>(0x60 + (c - 'A'))};
        } else {
            result += c;
        }
    }
    return result;
}

/// Owns records; their addresses are stable.
class RecordBuilder {
public:
    /// Ids count from 1 in this order.
    static std::vector<std::string> names() {
        return {"Begin", "End", "Undef", "Noun", "Verb:Stem", "Suffix-Kind", "Number/Odd", "Comma,Name"};
    }

    RecordBuilder() {
        std::uint16_t id = 0;
        for (std::string const& name : names()) ids_[name] = ++id;
    }

    unsigned char const* record(std::string_view line) {
        SourceRecord source;
        std::string error;
        std::string bytes;
        if (!source.parse(line, error) || !source.serialize(bytes, ids_, error)) throw std::invalid_argument(error);
        return raw(std::move(bytes));
    }
    unsigned char const* raw(std::string bytes) { return asBytes(records_.emplace_back(std::move(bytes)).data()); }

    /// A morpheme on the record of @p line, whose form is the line's.
    Mrph mrph(std::string_view line, AnalyzerContext const* owner = nullptr) {
        SourceRecord source;
        std::string error;
        if (!source.parse(line, error)) throw std::invalid_argument(error);
        std::string const& form = records_.emplace_back(source.form);
        return MrphAccess::fromRecord(form.data(), static_cast<unsigned int>(form.size()), record(line), owner);
    }

private:
    NameTable ids_;
    std::deque<std::string> records_;
};

}  // namespace TAVO::test

#endif
