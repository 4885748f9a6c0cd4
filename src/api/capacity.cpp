// Room and counts of a morpheme.
#include "api/shapes.hpp"
#include "result/mrph_access.hpp"

using namespace TAVO;
using namespace TAVO::api;

namespace {

/// No compound has more parts: its record has at most 65,535 bytes.
constexpr int kMaxCapacity = 65535;

int joinedCapacity(Mrph const& mrph) {
    MrphCover const* const cover = MrphAccess::cover(mrph);
    return cover == nullptr ? 0 : static_cast<int>(cover->subMrphs.capacity());
}

/// Parts and joined morphemes share their room: a part takes at most one morpheme.
int reserveRoom(tavo_mrph_t* mrph, char const* function, int capacity) noexcept {
    return guarded(mrph, function, [&](Mrph& object, Call call) {
        call.require(capacity >= 0 && capacity <= kMaxCapacity);
        if (capacity > joinedCapacity(object))
            MrphAccess::confirmCover(object).subMrphs.reserve(static_cast<std::size_t>(capacity));
        return 0;
    });
}

int categoryTotal(Mrph const& mrph) {
    std::vector<unsigned short> lists[3];
    mrph.getCategory(lists[0], lists[1], lists[2]);
    return static_cast<int>(lists[0].size() + lists[1].size() + lists[2].size());
}

}  // namespace

int tavo_get_comp_cap(tavo_mrph_t* mrph) {
    return guarded(mrph, [](Mrph& object) { return std::max(object.getPartCount(), joinedCapacity(object)); });
}
int tavo_set_comp_cap(tavo_mrph_t* mrph, int capacity) { return reserveRoom(mrph, __func__, capacity); }

int tavo_get_mrph_cap(tavo_mrph_t* mrph) { return guarded(mrph, joinedCapacity); }
int tavo_set_mrph_cap(tavo_mrph_t* mrph, int capacity) { return reserveRoom(mrph, __func__, capacity); }

int tavo_get_icat(tavo_mrph_t* mrph) { return guarded(mrph, categoryTotal); }
int tavo_get_usrfield(tavo_mrph_t* mrph) { return valueOf(mrph, &Mrph::getExtCount); }
