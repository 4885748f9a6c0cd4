#include "engine/cooc/cooc_words.hpp"

#include "base/sjis.hpp"
#include "dic/mrph_dic.hpp"

#include <string_view>

namespace TAVO {

CoocIds const* CoocWords::of(unsigned char const* record) {
    MrphDic const word(record);
    if ((word.flagsA() & (MrphDic::kWordCooc | MrphDic::kGroupCooc)) == 0) return nullptr;
    std::unique_ptr<CoocIds const>& known = ids_[record];
    if (!known) {
        CoocIds ids;
        read(ids, word.wordCooc(), false);
        read(ids, word.groupCooc(), true);
        known = std::make_unique<CoocIds const>(std::move(ids));
    }
    return known->empty() ? nullptr : known.get();
}

void CoocWords::read(CoocIds& ids, char const* text, bool isGroup) {
    std::string_view rest = text;
    bool const allLook = rest.starts_with('@');
    if (allLook) rest.remove_prefix(1);
    std::string name;
    bool left = allLook, right = allLook;
    auto const finish = [&] {
        if (!name.empty()) {
            auto const next = static_cast<std::uint32_t>(names_.size());
            ids.push_back({names_.try_emplace({isGroup, name}, next).first->second, isGroup, left, right});
        }
        name.clear();
        left = right = allLook;
    };
    for (std::size_t pos = 0; pos < rest.size();) {
        std::size_t const width = charWidth(rest, pos);
        std::string_view const character = rest.substr(pos, width);
        pos += width;
        if (character == " ")
            finish();
        else if (character == "L")
            left = true;
        else if (character == "R")
            right = true;
        else
            name += character;
    }
    finish();
}

std::uint64_t coocScore(CoocSettings const& settings, CoocPlace const& left, CoocPlace const& right) noexcept {
    std::int64_t const distance = right.begin - left.end;
    if (distance >= settings.window) return 0;
    std::uint64_t weight = 0;
    for (CoocId const& a : *left.ids)
        for (CoocId const& b : *right.ids)
            if (a.name == b.name && (a.looksRight || b.looksLeft))
                weight += a.isGroup ? settings.groupWeight : settings.wordWeight;
    return weight * static_cast<std::uint64_t>(settings.window - distance);
}

}  // namespace TAVO
