#include "dic/mrph_dic.hpp"

#include <algorithm>
#include <cstring>

namespace TAVO {
namespace {

/// Steps over the items of a record's body. Past the record's end it stays there,
/// so that everything behind a corrupt item is absent.
class BodyCursor {
public:
    explicit BodyCursor(MrphDic record) noexcept
        : pos_(record.head() + MrphDic::kHeadBytes), end_(record.head() + record.sizeBytes()) {
        if (record.sizeBytes() < MrphDic::kHeadBytes) pos_ = end_ = record.head();
    }

    bool atEnd() const noexcept { return pos_ == end_; }

    /// The NUL-terminated string here, which is stepped over; null when it does
    /// not end inside the record.
    char const* takeString() noexcept {
        auto const* const nul =
            atEnd() ? nullptr : static_cast<unsigned char const*>(std::memchr(pos_, 0, remaining()));
        char const* const text = nul != nullptr ? asChars(pos_) : nullptr;
        pos_ = nul != nullptr ? nul + 1 : end_;
        return text;
    }

    struct Ids {
        unsigned char const* first;
        unsigned count;
    };
    /// A count byte and as many 16-bit values, stepped over; no values when they
    /// do not lie inside the record.
    Ids takeIds() noexcept {
        if (atEnd() || remaining() < 1 + std::size_t{2} * *pos_) {
            pos_ = end_;
            return {pos_, 0};
        }
        Ids const ids{pos_ + 1, *pos_};
        pos_ += 1 + std::size_t{2} * ids.count;
        return ids;
    }

private:
    std::size_t remaining() const noexcept { return static_cast<std::size_t>(end_ - pos_); }

    unsigned char const* pos_;
    unsigned char const* end_;
};

/// The strings that flags A announce, in body order.
constexpr unsigned kTextFlags[] = {MrphDic::kReadPron, MrphDic::kStdForm, MrphDic::kWordCooc, MrphDic::kGroupCooc,
                                   MrphDic::kGroup};
constexpr unsigned kCategoryFlags[] = {MrphDic::kCat1, MrphDic::kCat2, MrphDic::kCat3};

void skipCompound(BodyCursor& cursor, MrphDic record) noexcept {
    if ((record.flagsA() & MrphDic::kCompound) == 0) return;
    cursor.takeIds();
    cursor.takeString();
}

/// @p flag is one of kTextFlags.
char const* text(MrphDic record, unsigned flag) noexcept {
    if ((record.flagsA() & flag) == 0) return "";
    BodyCursor cursor(record);
    skipCompound(cursor, record);
    for (unsigned const item : kTextFlags) {
        if ((record.flagsA() & item) == 0) continue;
        char const* const value = cursor.takeString();
        if (item == flag) return value != nullptr ? value : "";
    }
    return "";
}

BodyCursor behindTexts(MrphDic record) noexcept {
    BodyCursor cursor(record);
    skipCompound(cursor, record);
    for (unsigned const item : kTextFlags) {
        if ((record.flagsA() & item) != 0) cursor.takeString();
    }
    return cursor;
}

BodyCursor behindCategories(MrphDic record) noexcept {
    BodyCursor cursor = behindTexts(record);
    for (unsigned const item : kCategoryFlags) {
        if ((record.flagsB() & item) != 0) cursor.takeIds();
    }
    return cursor;
}

}  // namespace

unsigned MrphDic::partCount() const noexcept {
    if ((flagsA() & kCompound) == 0) return 1;
    return std::max(1U, BodyCursor(*this).takeIds().count);
}

std::uint16_t MrphDic::partPid(unsigned index) const noexcept {
    if ((flagsA() & kCompound) == 0) return pid();
    BodyCursor::Ids const ids = BodyCursor(*this).takeIds();
    return index < ids.count ? loadU16(ids.first + std::size_t{2} * index) : pid();
}

char const* MrphDic::partForm() const noexcept {
    if ((flagsA() & kCompound) == 0) return "";
    BodyCursor cursor(*this);
    cursor.takeIds();
    char const* const value = cursor.takeString();
    return value != nullptr ? value : "";
}

char const* MrphDic::readPron() const noexcept { return text(*this, kReadPron); }
char const* MrphDic::stdForm() const noexcept { return text(*this, kStdForm); }
char const* MrphDic::wordCooc() const noexcept { return text(*this, kWordCooc); }
char const* MrphDic::groupCooc() const noexcept { return text(*this, kGroupCooc); }
char const* MrphDic::group() const noexcept { return text(*this, kGroup); }

std::vector<unsigned short> MrphDic::category(unsigned list) const {
    if (list < 1 || list > 3 || (flagsB() & kCategoryFlags[list - 1]) == 0) return {};
    BodyCursor cursor = behindTexts(*this);
    BodyCursor::Ids ids{};
    for (unsigned i = 0; i < list; ++i) {
        if ((flagsB() & kCategoryFlags[i]) != 0) ids = cursor.takeIds();
    }
    std::vector<unsigned short> values(ids.count);
    for (unsigned i = 0; i < ids.count; ++i) values[i] = loadU16(ids.first + std::size_t{2} * i);
    return values;
}

char const* MrphDic::prosodicInfo() const noexcept {
    if ((flagsB() & kProsodicInfo) == 0) return "";
    BodyCursor cursor = behindCategories(*this);
    char const* const value = cursor.takeString();
    return value != nullptr ? value : "";
}

std::vector<char const*> MrphDic::ext() const {
    BodyCursor cursor = behindCategories(*this);
    if ((flagsB() & kProsodicInfo) != 0) cursor.takeString();
    std::vector<char const*> texts;
    while (!cursor.atEnd()) {
        if (char const* const value = cursor.takeString()) texts.push_back(value);
    }
    return texts;
}

}  // namespace TAVO
