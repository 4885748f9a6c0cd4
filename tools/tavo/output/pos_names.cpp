#include "output/pos_names.hpp"

#include "base/sjis.hpp"

#include <cstddef>

namespace tool {

void PosNames::load(unsigned short pid) {
    if (pid >= names_.size()) names_.resize(pid + std::size_t{1});
    std::string const name = whole_ ? analyser_.getPartOfSP(pid) : analyser_.getDisplayPartOfSP(pid);
    std::size_t const headEnd = TAVO::findMark(name, ":-/");
    names_[pid] = {fromSjis(name, encoding_), fromSjis(name.substr(0, headEnd), encoding_), true};
}

}  // namespace tool
