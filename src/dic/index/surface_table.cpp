#include "dic/index/surface_table.hpp"

#include "base/sjis.hpp"
#include "dic/conn_table.hpp"
#include "dic/record_walk.hpp"

namespace TAVO {

SurfaceTable::SurfaceTable(DicTrie const& trie, ConnTable const& table) {
    trie.visitAll([&](std::string const& key, RecordChain chain) {
        Surface surface{static_cast<std::uint32_t>(codes_.size()), static_cast<std::uint32_t>(words_.size()),
                        trie.positionOf(chain), 0, 0};
        if (!addCharacters(key)) {
            codes_.resize(surface.firstCode);
            regular_ = false;
            return;
        }
        eachNodeRecord(chain, table.idCount(), [&](MrphDic record) {
            words_.push_back({table.column(record.pid()), table.row(record.pid()), record.cost()});
        });
        surface.codeCount = static_cast<std::uint32_t>(codes_.size()) - surface.firstCode;
        surface.wordCount = static_cast<std::uint32_t>(words_.size()) - surface.firstWord;
        surfaces_.push_back(surface);
    });
}

bool SurfaceTable::addCharacters(std::string const& key) {
    for (std::size_t at = 0; at < key.size(); ++at) {
        unsigned code = static_cast<unsigned char>(key[at]);
        if (isLeadByte(key[at])) {
            if (++at == key.size()) return false;
            code = code << 8 | static_cast<unsigned char>(key[at]);
        }
        codes_.push_back(static_cast<CharacterCode>(code));
    }
    return true;
}

}  // namespace TAVO
