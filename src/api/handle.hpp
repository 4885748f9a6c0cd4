// What the handles of the flat interface stand for.
#ifndef TAVO_API_HANDLE_HPP
#define TAVO_API_HANDLE_HPP

#include <tavo/tavo.h>
#include <tavo/tavo.hpp>

#include <memory>
#include <vector>

namespace TAVO::api {

class BulkArrays;

/// Morphemes that are handed out as handles, one list per path.
class HandedOut {
public:
    using Path = std::vector<Mrph>;

    /// Ends the life of all handles; memory is kept for the next ones.
    void clear() noexcept;
    /// The only path, emptied for a result to be put in.
    Path& onePath();
    std::vector<Path>& paths() noexcept { return paths_; }
    /// Writes one descriptor per path to @p out. Throws bad_alloc with
    /// "BAD_ALLOC: " + @p function + "()".
    void publish(tavo_result_t* out, char const* function);

private:
    std::vector<Path> paths_;
    std::vector<tavo_mrph_t*> handles_;
};

}  // namespace TAVO::api

/// An analyser with what the flat interface keeps beside it.
struct tavo_t : TAVO::Tavo {
    explicit tavo_t(int nodeCapacity);
    ~tavo_t();

    void endHandles() noexcept {
        results.clear();
        words.clear();
    }

    TAVO::api::HandedOut results;  // of tavo_getResult and tavo_getResultNBest
    TAVO::api::HandedOut words;    // of tavo_getByRead
    std::unique_ptr<TAVO::api::BulkArrays> bulk;
};

namespace TAVO::api {

inline tavo_t& objectOf(tavo_t& handle) noexcept { return handle; }
/// A morpheme handle is the address of a morpheme.
inline Mrph& objectOf(tavo_mrph_t& handle) noexcept { return reinterpret_cast<Mrph&>(handle); }
inline tavo_mrph_t* handleOf(Mrph const& mrph) noexcept {
    return reinterpret_cast<tavo_mrph_t*>(const_cast<Mrph*>(&mrph));
}

}  // namespace TAVO::api

#endif
