#include "result/dictionary_lookup.hpp"

#include "result/mrph_access.hpp"

#include <algorithm>

namespace TAVO {
namespace {

/// Calls collect(length, chain) for each prefix of the text that is a form, and
/// returns how much longer that made @p result.
template <class Collect>
unsigned int collectPrefixes(Dic const& dic, char const* text, std::size_t length, std::vector<Mrph>& result,
                             Collect collect) {
    std::size_t const before = result.size();
    if (dic.trie() != nullptr && length > 0) {
        dic.trie()->prefixSearch(asBytes(text), length, [&](std::size_t formLength, RecordChain chain) {
            collect(static_cast<unsigned int>(formLength), chain);
            return true;
        });
    }
    return static_cast<unsigned int>(result.size() - before);
}

struct Origin {
    char const* text;
    AnalyzerContext const* owner;
    int dicIndex;

    Mrph make(unsigned int length, RecordChain chain) const {
        Mrph m = MrphAccess::fromRecord(text, length, chain.head(), owner);
        MrphAccess::setDicIndex(m, dicIndex);
        return m;
    }
};

/// The cheaper record wins, the later one among equals. A morpheme that takes
/// the record also takes the dictionary it comes from.
void mergeRecord(std::vector<Mrph>& result, Origin const& origin, unsigned int length, RecordChain chain) {
    MrphDic const record = chain.record();
    auto const same = std::find_if(result.begin(), result.end(), [&](Mrph const& m) {
        return m.getFormLength() == length && m.getPid() == record.pid();
    });
    if (same == result.end()) {
        result.push_back(origin.make(length, chain));
    } else if (record.cost() <= same->getCost()) {
        *same = MrphAccess::withRecord(*same, chain.head());
        MrphAccess::setDicIndex(*same, origin.dicIndex);
    }
}

}  // namespace

bool lookupAppend(Dic const& dic, char const* form, std::size_t length, std::vector<Mrph>& result,
                  AnalyzerContext const* owner) {
    if (dic.trie() == nullptr || length == 0) return false;
    RecordChain const found = dic.trie()->exactMatch(asBytes(form), length);
    for (RecordChain chain = found; chain; chain = chain.next())
        result.push_back(MrphAccess::fromRecord(form, static_cast<unsigned int>(length), chain.head(), owner));
    return static_cast<bool>(found);
}

bool lookupAppend(Dic const& dic, std::string const& form, std::vector<Mrph>& result, AnalyzerContext const* owner) {
    return lookupAppend(dic, form.data(), form.size(), result, owner);
}

bool lookup(Dic const& dic, char const* form, std::size_t length, std::vector<Mrph>& result,
            AnalyzerContext const* owner) {
    result.clear();
    return lookupAppend(dic, form, length, result, owner);
}

bool lookup(Dic const& dic, std::string const& form, std::vector<Mrph>& result, AnalyzerContext const* owner) {
    return lookup(dic, form.data(), form.size(), result, owner);
}

unsigned int commonPrefixAll(Dic const& dic, char const* text, std::size_t length, std::vector<Mrph>& result,
                             AnalyzerContext const* owner, int dicIndex) {
    Origin const origin{text, owner, dicIndex};
    return collectPrefixes(dic, text, length, result, [&](unsigned int formLength, RecordChain chain) {
        for (; chain; chain = chain.next()) result.push_back(origin.make(formLength, chain));
    });
}

unsigned int commonPrefixAll(Dic const& dic, std::string const& text, std::vector<Mrph>& result,
                             AnalyzerContext const* owner, int dicIndex) {
    return commonPrefixAll(dic, text.data(), text.size(), result, owner, dicIndex);
}

unsigned int commonPrefixDistinct(Dic const& dic, char const* text, std::size_t length, std::vector<Mrph>& result,
                                  AnalyzerContext const* owner, int dicIndex) {
    Origin const origin{text, owner, dicIndex};
    return collectPrefixes(dic, text, length, result, [&](unsigned int formLength, RecordChain chain) {
        bool isFirst = true;
        std::uint16_t before = 0;
        for (; chain; chain = chain.next(), isFirst = false) {
            std::uint16_t const pid = chain.record().pid();
            if (isFirst || pid != before) result.push_back(origin.make(formLength, chain));
            before = pid;
        }
    });
}

unsigned int commonPrefixDistinct(Dic const& dic, std::string const& text, std::vector<Mrph>& result,
                                  AnalyzerContext const* owner, int dicIndex) {
    return commonPrefixDistinct(dic, text.data(), text.size(), result, owner, dicIndex);
}

unsigned int commonPrefixMerge(Dic const& dic, char const* text, std::size_t length, std::vector<Mrph>& result,
                               AnalyzerContext const* owner, int dicIndex) {
    Origin const origin{text, owner, dicIndex};
    return collectPrefixes(dic, text, length, result, [&](unsigned int formLength, RecordChain chain) {
        for (; chain; chain = chain.next()) mergeRecord(result, origin, formLength, chain);
    });
}

unsigned int commonPrefixMerge(Dic const& dic, std::string const& text, std::vector<Mrph>& result,
                               AnalyzerContext const* owner, int dicIndex) {
    return commonPrefixMerge(dic, text.data(), text.size(), result, owner, dicIndex);
}

}  // namespace TAVO
