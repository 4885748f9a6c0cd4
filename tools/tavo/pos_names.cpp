#include "pos_names.hpp"

#include <algorithm>

namespace tool {

std::string_view withoutClass(std::string_view name) noexcept {
    // Neither "-" nor a digit can be the second byte of a character.
    std::size_t const lastOther = name.find_last_not_of("0123456789");
    bool const hasClass =
        lastOther != std::string_view::npos && lastOther > 0 && lastOther + 1 < name.size() && name[lastOther] == '-';
    return hasClass ? name.substr(0, lastOther) : name;
}

void PosNames::load(unsigned short pid) {
    if (pid >= names_.size()) names_.resize(pid + std::size_t{1});
    std::string name = fromSjis(analyser_.getPartOfSP(pid), style_.encoding);
    if (!style_.showClass) name = withoutClass(name);
    std::replace(name.begin(), name.end(), ':', style_.separator);
    names_[pid] = {std::move(name), true};
}

}  // namespace tool
