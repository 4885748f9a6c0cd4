// What the search for a best path reads of a connection table and of the
// dictionaries.
#ifndef TAVO_ENGINE_SEARCH_TABLE_HPP
#define TAVO_ENGINE_SEARCH_TABLE_HPP

#include "base/raw_buffer.hpp"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace TAVO {

class ConnTable;
class DicSet;

/// Derived from a table and the attached dictionaries, anew when they change.
///
/// Columns that most rows may not stand before are sparse; the few rows that may
/// belong to classes, a bit each. A word of a sparse column is on a path only
/// where a word of one of the column's classes ends.
class SearchTable {
public:
    static constexpr std::uint8_t kAlways = 0x80;
    struct Id {
        std::uint32_t rowOffset;  ///< of the row in the matrix, in bytes
        std::uint16_t column;
        std::uint8_t enters;     ///< classes of the row; 0 when no sparse column may follow
        std::uint8_t enteredBy;  ///< 0: every row may stand before; kAlways: any word may; else classes
    };
    /// True when only words of certain classes may stand before.
    static bool isSparse(Id const& id) noexcept { return id.enteredBy != 0 && id.enteredBy != kAlways; }

    /// True when they are not those attached before.
    bool attach(ConnTable const& table, DicSet const& dics);
    /// True while @p table and @p dics are those attached last.
    bool isAttached(ConnTable const& table, DicSet const& dics) const;

    /// Ids run from 1 to idCount().
    Id const& id(std::uint32_t id) const noexcept { return ids_[id]; }
    std::uint32_t idCount() const noexcept { return static_cast<std::uint32_t>(ids_.size() - 1); }
    unsigned char const* costs(std::uint32_t rowOffset) const noexcept { return matrix_ + rowOffset; }
    /// Smallest cost of a column.
    std::uint8_t columnMinimum(std::uint16_t column) const noexcept { return columnMinimum_[column]; }
    /// Largest cost of a column that every row may stand before.
    std::uint8_t columnMaximum(std::uint16_t column) const noexcept { return columnMaximum_[column]; }

    /// Every word may stand before an unknown word, at unknownCost(); an unknown
    /// word costs that before every word too, or may not stand there.
    bool unknownIsFlat() const noexcept { return unknownIsFlat_; }
    std::uint8_t unknownCost() const noexcept { return unknownCost_; }

    /// The words of a short form, all dictionaries together.
    struct ShortForm {
        std::uint8_t enters = 0;  ///< their classes
        bool words = false;       ///< there are some
        bool longer = false;      ///< a longer form may begin so
        bool known = false;       ///< a form of zero bytes is unknown
    };
    /// The words of a form of one byte; looked up once.
    ShortForm const& byteForm(unsigned char byte, DicSet const& dics) {
        ShortForm& form = byteForms_[byte];
        if (!form.known) form = formOf({byte, 0}, 1, dics);
        return form;
    }
    /// The words of a form of two bytes; looked up once.
    ShortForm const& pairForm(unsigned char first, unsigned char second, DicSet const& dics) {
        // The second byte is a lead byte, of which a text has few.
        ShortForm& form = pairForms_[static_cast<std::size_t>(second) << 8 | first];
        if (!form.known) form = formOf({first, second}, 2, dics);
        return form;
    }

private:
    void deriveIds(ConnTable const& table);
    void deriveClasses(ConnTable const& table, std::vector<std::uint8_t>& rows, std::vector<std::uint8_t>& columns);
    void deriveUnknown(ConnTable const& table);
    ShortForm formOf(std::array<unsigned char, 2> const& bytes, std::size_t length, DicSet const& dics) const;

    /// Serial numbers of the table and of the dictionaries.
    std::vector<std::uint64_t> attached_;

    unsigned char const* matrix_ = nullptr;
    std::vector<Id> ids_;  // by id; ids_[0] is unused
    std::vector<std::uint8_t> columnMinimum_;
    std::vector<std::uint8_t> columnMaximum_;
    bool unknownIsFlat_ = false;
    std::uint8_t unknownCost_ = 0;
    std::array<ShortForm, 256> byteForms_{};
    RawBuffer<ShortForm> pairForms_;
};

}  // namespace TAVO

#endif
