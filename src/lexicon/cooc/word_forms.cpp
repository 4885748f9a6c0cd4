#include "lexicon/cooc/word_forms.hpp"

#include "base/sjis.hpp"
#include "config/pos_name.hpp"
#include "dic/read_pron.hpp"

#include <algorithm>

namespace TAVO::words {
namespace {

constexpr unsigned char kKanaLead = 0x82, kKatakanaLead = 0x83;
constexpr unsigned char kFirstHiragana = 0x9F, kLastHiragana = 0xF1, kFirstKatakana = 0x40, kGap = 0x7F;
constexpr std::string_view kLongVowel = "\x81\x5B";

/// The katakana that @p character is or stands for; empty for other characters.
std::string katakana(std::string_view character) {
    if (character == kLongVowel) return std::string(character);
    if (character.size() != 2) return {};
    auto const lead = static_cast<unsigned char>(character[0]);
    auto trail = static_cast<unsigned char>(character[1]);
    if (lead == kKatakanaLead && trail < kFirstHiragana) return std::string(character);
    if (lead != kKanaLead || trail < kFirstHiragana || trail > kLastHiragana) return {};
    trail = static_cast<unsigned char>(trail - kFirstHiragana + kFirstKatakana);
    if (trail >= kGap) ++trail;  // no second byte
    return {static_cast<char>(kKatakanaLead), static_cast<char>(trail)};
}

std::vector<std::string_view> charactersOf(std::string_view text) {
    std::vector<std::string_view> characters;
    for (std::size_t pos = 0; pos < text.size(); pos += charWidth(text, pos))
        characters.push_back(text.substr(pos, charWidth(text, pos)));
    return characters;
}

/// Takes the characters off the end of @p reading that @p surface has in kana.
std::string stemOf(std::string_view surface, std::string reading) {
    std::vector<std::string_view> const characters = charactersOf(surface);
    for (auto at = characters.rbegin(); at != characters.rend(); ++at) {
        std::string const kana = katakana(*at);
        if (kana.empty() || !reading.ends_with(kana)) break;
        reading.resize(reading.size() - kana.size());
    }
    return reading;
}

/// The first two levels of the name of a part of speech: what lies below are inflections and shades.
std::string firstLevels(std::string const& name) {
    std::size_t const first = name.find(':');
    return name.substr(0, first == std::string::npos ? first : name.find(':', first + 1));
}

}  // namespace

std::string katakanaOf(std::string_view text) {
    std::string all;
    for (std::string_view const character : charactersOf(text)) {
        std::string const kana = katakana(character);
        if (kana.empty()) return {};
        all += kana;
    }
    return all;
}

WordForms::Id WordForms::lexemeOf(MrphDic record, std::string_view surface) {
    std::string const base = *record.stdForm() != '\0' ? record.stdForm() : std::string(surface);
    std::string name;
    for (DicEntry const& entry : dics_.entries())
        if (entry.dic->contains(record.head())) name = displayPosName(entry.dic->getPartOfSPName(record.pid()));
    Lexeme lexeme{base, stemOf(surface, extractRead(record.readPron(), true)), firstLevels(name)};
    auto const [known, isNew] = ids_.try_emplace(lexeme, static_cast<Id>(lexemes_.size()));
    if (isNew) lexemes_.push_back(std::move(lexeme));
    return known->second;
}

std::string WordForms::baseReading(Id id) const {
    Lexeme const& word = lexemes_[id];
    if (word.stemReading.empty()) return katakanaOf(word.base);
    std::vector<std::string_view> const characters = charactersOf(word.base);
    std::string tail;
    for (auto at = characters.rbegin(); at != characters.rend() && !katakana(*at).empty(); ++at)
        tail.insert(0, katakana(*at));
    return word.stemReading + tail;
}

std::vector<WordForms::Id> const& WordForms::lexemesOf(std::string const& surface) {
    auto const [found, isNew] = bySurface_.try_emplace(surface);
    if (isNew) {
        std::vector<Id> ids;
        eachRecord(surface, [&](Dic const&, MrphDic record) { ids.push_back(lexemeOf(record, surface)); });
        std::sort(ids.begin(), ids.end());
        ids.erase(std::unique(ids.begin(), ids.end()), ids.end());
        found->second = std::move(ids);
    }
    return found->second;
}

}  // namespace TAVO::words
