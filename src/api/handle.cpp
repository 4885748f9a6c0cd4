#include "api/handle.hpp"

#include "api/bulk_arrays.hpp"

#include <cstdio>
#include <new>

namespace TAVO::api {
namespace {

class NoRoomForHandles : public std::bad_alloc {
public:
    explicit NoRoomForHandles(char const* function) noexcept {
        std::snprintf(text_, sizeof text_, "BAD_ALLOC: %s()", function);
    }
    char const* what() const noexcept override { return text_; }

private:
    char text_[64];  // making a string could fail just as well
};

}  // namespace

void HandedOut::clear() noexcept {
    for (Path& path : paths_) path.clear();
}

HandedOut::Path& HandedOut::onePath() {
    paths_.resize(1);
    paths_.front().clear();
    return paths_.front();
}

void HandedOut::publish(tavo_result_t* out, char const* function) {
    std::size_t total = 0;
    for (Path const& path : paths_) total += path.size();
    handles_.clear();
    try {
        handles_.reserve(total);
    } catch (std::bad_alloc const&) {
        handles_ = {};
        throw NoRoomForHandles(function);
    }
    for (Path& path : paths_) {
        *out++ = {static_cast<int>(path.size()), path.empty() ? nullptr : handles_.data() + handles_.size()};
        for (Mrph& mrph : path) handles_.push_back(handleOf(mrph));
    }
}

}  // namespace TAVO::api

// Here, where the bulk arrays are complete.
tavo_t::tavo_t(int nodeCapacity) : Tavo(nodeCapacity) {}
tavo_t::~tavo_t() = default;
