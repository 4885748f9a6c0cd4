// The mapping descriptor table of file_access.hpp.
#include "dic/file_access.hpp"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>

namespace TAVO {
namespace {

struct Slot {
    int descriptor = 0;  ///< 0: the slot is free
    void* view = nullptr;
    std::size_t length = 0;
};

std::array<Slot, kMappingSlots> slots;

Slot* slotOf(int descriptor) {
    auto const found =
        std::find_if(slots.begin(), slots.end(), [&](Slot const& slot) { return slot.descriptor == descriptor; });
    return found != slots.end() ? &*found : nullptr;
}

Slot* slotOf(void const* view) {
    if (view == nullptr) return nullptr;
    auto const found = std::find_if(slots.begin(), slots.end(), [&](Slot const& slot) { return slot.view == view; });
    return found != slots.end() ? &*found : nullptr;
}

/// A descriptor other than 0 for the same file; closes the one given.
int moveAwayFromZero(int descriptor) {
    if (descriptor != 0) return descriptor;
    int const moved = ::fcntl(descriptor, F_DUPFD_CLOEXEC, 1);
    ::close(descriptor);
    return moved;
}

}  // namespace

void* mmapFailed() noexcept { return MAP_FAILED; }

int MmapOpen(char const* path, int flags, int mode) {
    Slot* const slot = slotOf(0);
    if (slot == nullptr) return -2;
    if (fileStepFails(FileStep::kOpen)) return -1;
    int const opened = ::open(path, flags | O_CLOEXEC, mode);
    if (opened < 0) return -1;
    int const descriptor = moveAwayFromZero(opened);
    if (descriptor < 0) return -1;
    *slot = Slot{descriptor, nullptr, 0};
    return descriptor;
}

bool MmapIsFull() noexcept { return slotOf(0) == nullptr; }

void* Mmap(void* /*hint*/, std::size_t /*length*/, int protection, int flags, int descriptor) {
    Slot* const slot = descriptor > 0 ? slotOf(descriptor) : nullptr;
    if (slot == nullptr) return MAP_FAILED;
    int const pages =
        ((protection & kMapRead) != 0 ? PROT_READ : 0) | ((protection & kMapWrite) != 0 ? PROT_READ | PROT_WRITE : 0);
    // The descriptor itself is mapped, not its path once more: the path may name
    // another file by now.
    struct stat status {};
    void* view = MAP_FAILED;
    if (!fileStepFails(FileStep::kMap) && ::fstat(descriptor, &status) == 0) {
        slot->length = static_cast<std::size_t>(status.st_size);
        view =
            ::mmap(nullptr, slot->length, pages, (flags & kMapPrivate) != 0 ? MAP_PRIVATE : MAP_SHARED, descriptor, 0);
    }
    if (view == MAP_FAILED) {
        *slot = Slot{};
    } else {
        slot->view = view;
    }
    return view;
}

std::size_t MmapLength(void const* view) {
    Slot const* const slot = slotOf(view);
    return slot != nullptr ? slot->length : 0;
}

int Munmap(void const* view) {
    Slot* const slot = slotOf(view);
    if (slot == nullptr) return -2;
    void* const address = slot->view;
    slot->view = nullptr;
    return ::munmap(address, slot->length) == 0 ? 0 : -1;
}

int MmapClose(int descriptor) {
    Slot* const slot = descriptor > 0 ? slotOf(descriptor) : nullptr;
    if (slot == nullptr) return -2;
    *slot = Slot{};
    return ::close(descriptor);
}

int MmapFlush(void const* view, std::size_t length) {
    Slot const* const slot = slotOf(view);
    if (slot == nullptr) return -1;
    return ::msync(slot->view, length != 0 ? length : slot->length, MS_SYNC) == 0 ? 0 : -1;
}

}  // namespace TAVO
