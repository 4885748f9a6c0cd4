#include "output/pos_names.hpp"

#include "base/sjis.hpp"

#include <cstddef>

namespace tool {

PosNames::Name PosNames::made(std::string const& name) const {
    return {fromSjis(name, encoding_), fromSjis(name.substr(0, TAVO::findMark(name, ":-/")), encoding_), true};
}

void PosNames::load(unsigned short pid) {
    if (pid >= names_.size()) names_.resize(pid + std::size_t{1});
    names_[pid] = made(whole_ ? analyser_.getPartOfSP(pid) : analyser_.getDisplayPartOfSP(pid));
}

}  // namespace tool
