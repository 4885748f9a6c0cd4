#include "dic/index/candidate_list_maker.hpp"

#include "base/bytes.hpp"
#include "dic/index/conn_index.hpp"
#include "dic/index/dic_index.hpp"

#include <algorithm>
#include <numeric>
#include <stdexcept>

namespace TAVO {
namespace {

constexpr std::size_t kPadding = 64;  // behind the last list

}  // namespace

CandidateListMaker::CandidateListMaker(ConnIndex const& conn) : conn_(conn), bytes_(kPadding, 0) {
    std::string const none = layOut({}, false);
    std::copy(none.begin(), none.end(), bytes_.begin());
    numbers_.emplace(none, 0);
}

std::uint32_t CandidateListMaker::add(std::vector<ListedWord> const& words, bool beyond) {
    bool const tooMany = words.size() > CandidateList::kMostWords;
    std::string list = tooMany ? layOut({}, true) : layOut(words, beyond);
    auto const number = static_cast<std::uint32_t>(bytes_.size() / 8);
    if (number > DicIndex::kBaseMask) throw std::length_error("LENGTH_ERROR: the candidate lists do not fit the index");
    auto const [place, isNew] = numbers_.emplace(std::move(list), number);
    if (isNew) {
        bytes_.insert(bytes_.end(), place->first.begin(), place->first.end());
        bytes_.resize((bytes_.size() + 7) / 8 * 8);
    }
    return place->second;
}

void CandidateListMaker::finish() { bytes_.resize(bytes_.size() + kPadding); }

std::string CandidateListMaker::layOut(std::vector<ListedWord> const& words, bool beyond) const {
    std::vector<std::uint8_t> order(words.size());
    std::iota(order.begin(), order.end(), std::uint8_t{0});
    auto const isRestricted = [&](std::uint8_t i) { return conn_.columnClasses(words[i].column) != 0; };
    auto const middle =
        std::stable_partition(order.begin(), order.end(), [&](std::uint8_t i) { return !isRestricted(i); });
    unsigned enteredBy = 0, opens = 0, restrictedOpens = 0, longest = 0;
    unsigned flags = beyond ? CandidateList::kBeyond : 0;
    for (std::uint8_t const i : order) {
        ListedWord const& word = words[i];
        longest = std::max<unsigned>(longest, word.length);
        unsigned const opened = conn_.rowClasses(word.row);
        if (opened != 0 && word.length > 1) flags |= CandidateList::kOpensLater;
        if (isRestricted(i)) {
            enteredBy |= conn_.columnClasses(word.column);
            restrictedOpens |= opened;
        } else {
            opens |= opened;
        }
    }
    std::string list;
    auto const unrestricted = static_cast<unsigned>(middle - order.begin());
    for (unsigned const byte :
         {static_cast<unsigned>(words.size()), unrestricted, longest, flags, enteredBy, opens, restrictedOpens, 0U})
        list.push_back(static_cast<char>(byte));
    for (std::uint8_t const i : order) appendU16(list, words[i].column);
    for (std::uint8_t const i : order) appendU16(list, words[i].row);
    for (std::uint8_t const i : order) list.push_back(static_cast<char>(words[i].length));
    for (std::uint8_t const i : order) list.push_back(static_cast<char>(words[i].cost));
    if (middle != order.end())
        for (std::uint8_t const i : order) list.push_back(static_cast<char>(i));
    return list;
}

}  // namespace TAVO
