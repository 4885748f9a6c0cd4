// Parts of speech as users read them.
#ifndef TAVO_TEXT_POS_TEXTS_HPP
#define TAVO_TEXT_POS_TEXTS_HPP

#include "dic/conn_table.hpp"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

namespace TAVO {

/// Of all ids of a connection table, in UTF-8; the views live as long as this object.
class PosTexts {
public:
    struct Part {
        std::string_view name;                 ///< levels with ":" between them
        std::vector<std::string_view> fields;  ///< its levels without the conjugation
        std::string_view fieldsText;           ///< with tabs between them
        std::string_view conjugationType, conjugationForm;
    };

    /// @p fields: the text of the table's file pos.fields, which may be empty. Lines of it that are none of that file's
    /// are passed over.
    PosTexts(ConnTable const& table, std::string_view fields);

    /// Empty for ids that there are none of.
    Part const& part(std::uint32_t pid) const noexcept { return parts_[places_[pid < places_.size() ? pid : 0]]; }

private:
    Part made(std::string_view displayName, std::vector<std::string> const* line, std::size_t count);
    std::string_view keep(std::string text);
    void setFields(Part& part, std::vector<std::string> const& levels, std::size_t count);

    std::deque<std::string> kept_;
    std::vector<Part> parts_;            // each distinct one once; the first is empty
    std::vector<std::uint32_t> places_;  // in parts_, by id
};

}  // namespace TAVO

#endif
