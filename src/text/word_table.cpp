#include "text/word_table.hpp"

#include "base/utf8.hpp"
#include "config/pos_name.hpp"
#include "dic/mrph_dic.hpp"
#include "engine/special_records.hpp"
#include "result/mrph_access.hpp"
#include "text/characters.hpp"
#include "text/tag_escape.hpp"

#include <algorithm>
#include <utility>

namespace TAVO {

namespace {

constexpr std::size_t kFirstWordSlots = 4096;
constexpr std::size_t kManyWords = std::size_t{1} << 17;
constexpr std::size_t kManyBytes = std::size_t{1} << 24;

/// Keys of words that no search index names: unknown ones by their bytes, others by their record.
constexpr std::uint64_t kUnknownKey = std::uint64_t{0x1FF} << 32, kRecordKey = std::uint64_t{1} << 63;
/// Begins keys of joined_ for words known by their values; the others begin with a part of speech.
constexpr char32_t kMadeKey = 0xFFFFFFFF;

std::uint64_t keyOfRecord(unsigned char const* record, std::string_view surface) noexcept {
    if (record != kUnknownRecord.data()) return kRecordKey | reinterpret_cast<std::uintptr_t>(record);
    auto const byte = [&](std::size_t i) { return std::uint64_t{static_cast<unsigned char>(surface[i])}; };
    return kUnknownKey | surface.size() << 16 | byte(0) << 8 | byte(surface.size() - 1);
}

}  // namespace

void WordTable::clear() {
    words_.assign(1, {});
    pids_.assign(1, 0);
    texts_.assign(1, {});
    values_.assign(wanted_.size(), 0);
    listedSlots_.assign(kFirstWordSlots, {});
    listedUsed_ = 0;
    surfaces_.clear();
    slots_.assign(kFirstWordSlots, {});
    used_ = 0;
    records_.clear();
    converted_.clear();
    joined_.clear();
    strings_.clear();
    ++version_;
}

bool WordTable::isLarge() const noexcept {
    return words_.size() > kManyWords || strings_.bytes() > kManyBytes || surfaces_.size() > kManyBytes;
}

std::size_t WordTable::place(std::uint64_t key) const noexcept {
    std::size_t const mask = slots_.size() - 1;
    std::size_t at = (key * 0x9E3779B97F4A7C15U >> 32) & mask;
    while (slots_[at].key != 0 && slots_[at].key != key) at = (at + 1) & mask;
    return at;
}

void WordTable::put(std::uint64_t key, std::uint32_t word) {
    if (2 * (used_ + 1) > slots_.size()) {
        std::vector<Slot> const old = std::exchange(slots_, std::vector<Slot>(2 * slots_.size()));
        for (Slot const& slot : old)
            if (slot.key != 0) slots_[place(slot.key)] = slot;
    }
    slots_[place(key)] = {key, word};
    ++used_;
}

std::uint32_t WordTable::addListed(ListedWord const& listed, PendingWord const& word) {
    std::string_view const surface(word.text, word.length);
    std::uint32_t const number = addRecord(word.record(), surface);
    if (2 * (listedUsed_ + 1) > listedSlots_.size()) {
        std::vector<ListedSlot> const old =
            std::exchange(listedSlots_, std::vector<ListedSlot>(2 * listedSlots_.size()));
        for (ListedSlot const& slot : old)
            if (slot.word != kNone) listedSlots_[listedPlace(slot.listed, surfaceOf(words_[slot.word]))] = slot;
    }
    listedSlots_[listedPlace(listed, surface)] = {listed, number};
    ++listedUsed_;
    return number;
}

/// The same record has several names in a search index.
std::uint32_t WordTable::addRecord(unsigned char const* record, std::string_view surface) {
    bool const isUnknown = record == kUnknownRecord.data();
    if (auto const known = records_.find(record);
        !isUnknown && known != records_.end() && surfaceOf(words_[known->second]) == surface)
        return known->second;
    MrphDic const values(record);
    Word word;
    word.record = record;
    word.pid = values.pid();
    word.cost = values.cost();
    word.isUnknown = word.pid == ConnTable::kUnknownId || context_.pos.isUndef(word.pid);
    if (!word.isUnknown) word.id = idOf(record);
    Texts texts;
    texts.fill(kNotYet);
    if (!wanted_.empty())
        addValues(
            MrphAccess::fromRecord(surface.data(), static_cast<unsigned>(surface.size()), word.record, &context_));
    std::uint32_t const number = keep(word, surface, texts);
    if (!isUnknown) records_.insert_or_assign(record, number);
    return number;
}

std::uint32_t WordTable::keep(Word word, std::string_view surface, Texts const& texts) {
    word.surfaceAt = static_cast<std::uint32_t>(surfaces_.size());
    word.surfaceBytes = static_cast<std::uint32_t>(surface.size());
    surfaces_ += surface;
    words_.push_back(word);
    pids_.push_back(word.pid);
    texts_.push_back(texts);
    return static_cast<std::uint32_t>(words_.size() - 1);
}

/// 1 and up: the dictionary's place in the lexicon, and behind it where the record stands in its file.
std::uint64_t WordTable::idOf(unsigned char const* record) const noexcept {
    std::uint64_t number = 0;
    for (DicEntry const& entry : context_.dics.entries()) {
        ++number;
        if (entry.dic->contains(record))
            return number << 32 | static_cast<std::uint64_t>(record - entry.dic->bytes().data());
    }
    return 0;
}

Mrph WordTable::morphemeOf(Word const& word) const {
    std::string_view const surface = surfaceOf(word);
    return MrphAccess::fromRecord(surface.data(), static_cast<unsigned>(surface.size()), word.record, &context_);
}

std::uint32_t WordTable::joined(std::span<WordPiece const> members, std::string_view surface, std::uint16_t pid) {
    scratch_.assign(1, pid);
    for (WordPiece const& member : members) scratch_ += static_cast<char32_t>(member.word);
    if (auto const known = joined_.find(std::u32string_view(scratch_)); known != joined_.end()) return known->second;
    std::vector<Mrph> morphemes;
    char const* text = surface.data();
    for (WordPiece const& member : members) {
        morphemes.push_back(MrphAccess::fromRecord(text, member.length, words_[member.word].record, &context_));
        text += member.length;
    }
    std::uint32_t const number = addMade(MrphAccess::join(std::move(morphemes), pid));
    joined_.emplace(scratch_, number);
    return number;
}

std::uint32_t WordTable::number(Mrph const& morpheme) {
    unsigned char const* const record = MrphAccess::record(morpheme);
    std::string_view const surface = MrphAccess::form(morpheme);
    std::string_view const converted = MrphAccess::converted(morpheme, surface);
    if (converted != surface) return addConverted(morpheme, surface, converted);
    bool const lasts = record == kUnknownRecord.data() || (record != nullptr && idOf(record) != 0);
    if (!lasts || MrphAccess::cover(morpheme) != nullptr || surface.empty()) return addMade(morpheme);
    return number(record, surface);
}

std::uint32_t WordTable::number(unsigned char const* record, std::string_view surface) {
    std::uint64_t const key = keyOfRecord(record, surface);
    Slot const& slot = slots_[place(key)];
    if (slot.key == key && surfaceOf(words_[slot.word]) == surface) return slot.word;
    bool const isNew = slot.key != key;
    std::uint32_t const number = addRecord(record, surface);
    if (isNew) put(key, number);
    return number;
}

std::uint32_t WordTable::addConverted(Mrph const& morpheme, std::string_view surface, std::string_view converted) {
    if (MrphAccess::cover(morpheme) != nullptr) return addMade(morpheme);
    unsigned char const* const record = MrphAccess::record(morpheme);
    std::string key(reinterpret_cast<char const*>(&record), sizeof record);
    key.append(surface).append(1, '\0').append(converted);
    auto const [known, isNew] = converted_.try_emplace(std::move(key), kNone);
    if (isNew) {
        known->second = addMade(morpheme);
        if (!words_.back().isUnknown) words_.back().id = idOf(record);
    }
    return known->second;
}

std::uint16_t WordTable::classId(std::string const& name) {
    std::size_t at = 0;
    while (at < classes_.size() && classes_[at].sjis != name) ++at;
    std::size_t const id = context_.pos.getPidMax() + 1 + at;
    if (id > 0xFFFF) return 0;
    if (at == classes_.size()) {
        ClassTexts& made = classes_.emplace_back();
        made.sjis = name;
        made.name = sjisToUtf8(displayPosName(name));
        made.fieldsText = made.name;
        std::replace(made.fieldsText.begin(), made.fieldsText.end(), ':', '\t');
        made.part.name = made.name;
        made.part.fieldsText = made.fieldsText;
        for (std::string_view rest = made.fieldsText; !rest.empty();) {
            std::size_t const end = std::min(rest.find('\t'), rest.size());
            made.part.fields.push_back(rest.substr(0, end));
            rest.remove_prefix(std::min(end + 1, rest.size()));
        }
    }
    return static_cast<std::uint16_t>(id);
}

std::uint32_t WordTable::addMade(Mrph const& morpheme) {
    std::string_view const surface = MrphAccess::form(morpheme);
    Word word;
    word.pid = morpheme.getPid();
    word.cost = morpheme.getCost();
    word.isUnknown = MrphAccess::isUnknown(morpheme);
    word.isAnnotation = morpheme.isAnnotation();
    Texts texts;
    texts.fill(kNotYet);
    auto const set = [&](TokenText which, std::uint32_t text) { texts[static_cast<std::size_t>(which)] = text; };
    set(TokenText::Additional, add(morpheme.getAdditionalInfo(), {}));
    set(TokenText::Annotation, word.isAnnotation ? add(surface, {}) : 0);
    // Of a phrase all base forms, where the end form is that of its first member alone.
    bool const isPhrase = MrphAccess::cover(morpheme) != nullptr && !MrphAccess::cover(morpheme)->className.empty();
    std::string const base = isPhrase ? morpheme.getStdForm(true) : morpheme.getEndStdForm(true);
    set(TokenText::Base, word.isAnnotation ? 0 : add(base, surface));
    set(TokenText::Converted, word.isAnnotation ? 0 : add(MrphAccess::converted(morpheme, surface), surface));
    set(TokenText::Reading, add(morpheme.getRead(true), surface));
    set(TokenText::Pronunciation, add(morpheme.getPron(true), surface));
    addValues(morpheme);
    if (isPhrase || word.isAnnotation) {  // a phrase is known by its members, and an annotation's text comes later
        std::uint32_t const number = keep(word, surface, texts);
        if (isPhrase) pids_.back() = classId(MrphAccess::cover(morpheme)->className);
        return number;
    }
    std::u32string key{kMadeKey, word.pid, static_cast<char32_t>(word.cost), word.isUnknown};
    for (std::uint32_t const text : texts) key += static_cast<char32_t>(text);
    for (std::size_t i = values_.size() - wanted_.size(); i != values_.size(); ++i)
        key += static_cast<char32_t>(values_[i]);
    for (char const byte : surface) key += static_cast<unsigned char>(byte);
    auto const [known, isNew] = joined_.emplace(std::move(key), 0);
    if (isNew) known->second = keep(word, surface, texts);
    return known->second;
}

/// Those of the word that is kept next.
void WordTable::addValues(Mrph const& morpheme) {
    values_.resize(words_.size() * wanted_.size());
    for (WordValue const& value : wanted_) values_.push_back(add(valueOf(value, morpheme), MrphAccess::form(morpheme)));
}

std::uint32_t WordTable::add(std::string_view sjis, std::string_view surface) {
    if (sjis.empty()) return 0;
    if (sjis == surface) return kSurface;
    return strings_.add(encoding_ == TextEncoding::Utf8 ? tagTextToUtf8(sjis) : std::string(sjis));
}

std::uint32_t WordTable::find(std::uint32_t number, TokenText which) {
    Word& word = words_[number];
    PosTexts::Part const& part = pos(number);
    std::uint32_t found = 0;
    switch (which) {
        case TokenText::Pos:
            found = strings_.add(part.name);
            break;
        case TokenText::PosFields:
            found = strings_.add(part.fieldsText);
            break;
        case TokenText::ConjugationType:
            found = strings_.add(part.conjugationType);
            break;
        case TokenText::ConjugationForm:
            found = strings_.add(part.conjugationForm);
            break;
        case TokenText::Base:
            found = add(morphemeOf(word).getEndStdForm(true), surfaceOf(word));
            break;
        case TokenText::Reading:
            found = add(morphemeOf(word).getRead(true), surfaceOf(word));
            break;
        case TokenText::Pronunciation:
            found = add(morphemeOf(word).getPron(true), surfaceOf(word));
            break;
        case TokenText::Normalized:
            found = text(number, TokenText::Base);
            if (found != kSurface) found = strings_.add(normalizedText(strings_.text(found)));
            break;
        case TokenText::Converted:
            found = kSurface;
            break;
        case TokenText::Annotation:
        case TokenText::Additional:
            break;
    }
    return texts_[number][static_cast<std::size_t>(which)] = found;
}

std::uint32_t WordTable::spelling(std::uint32_t number, std::string_view surface) {
    Word& word = words_[number];
    if (word.spelling == kNotYet) word.spelling = strings_.add(sjisToUtf8(surfaceOf(word)));
    return strings_.text(word.spelling) == surface ? word.spelling : kNotYet;
}

}  // namespace TAVO
