#include "support/random_world.hpp"

#include "dic/pools.hpp"
#include "support/small_world.hpp"

#include <algorithm>

namespace TAVO::test {
namespace {

/// Few bytes, so that texts and forms meet at first and second bytes alike:
/// lead bytes, second bytes that are letters, a one-byte character above 127.
constexpr char kAlphabet[] = {'\x81', '\x82', '\x41', '\x42', '\xA0'};

bool isLetter(char byte) { return byte == 'A' || byte == 'B'; }

/// A form that a source line can carry: its last byte is not a lone lead byte.
std::string randomForm(Random& random) {
    for (;;) {
        std::string const form = random.bytes(5, false);
        std::size_t pos = 0;
        while (pos + 1 < form.size()) pos += form[pos] == '\x81' || form[pos] == '\x82' ? 2 : 1;
        if (pos == form.size() || (form[pos] != '\x81' && form[pos] != '\x82')) return form;
    }
}

/// Latin letters as lexicons have them: a word that begins a stretch of them, which any word may stand before, and
/// one that goes on. The second letter may have words of its own.
void makeLettersPlain(World& world, Random& random) {
    world.plainLetters = true;
    std::vector<Record> records;
    for (unsigned pid = 4; pid <= 5; ++pid)
        for (unsigned n = random.below(3) + (5 - pid); n > 0; --n) records.push_back({pid, random.below(3), 0});
    std::vector<Record> ofSecond = records;
    bool const isOfAnotherKind = random.below(2) == 0;
    if (isOfAnotherKind) ofSecond.assign(1 + random.below(2), {6, random.below(3), 0});
    bool const inAll = random.below(8) == 0;
    for (std::size_t i = 0; i < world.dictionaries.size(); ++i) {
        WordTable& words = world.dictionaries[i];
        std::erase_if(words, [](auto const& entry) { return isLetter(entry.first.front()); });
        if (i != 0 && !inAll) continue;
        for (std::vector<Record>* const some : {&records, &ofSecond})
            for (Record& record : *some) record.dictionary = static_cast<int>(i);
        words["A"] = records;
        words["B"] = ofSecond;
        if (random.below(4) == 0) words["B"].front().cost = random.below(3);
    }
    auto const at = [&](unsigned left, unsigned right) -> std::uint8_t& {
        return world.costs[(left - 1) * kIds + right - 1];
    };
    auto const unknown = static_cast<std::uint8_t>(random.below(3) == 0 ? 254 : 1 + random.below(6));
    bool const isTight = unknown != 254 && random.below(2) == 0;  // unknown words are hardly worse than letters
    bool const goesOnOnly = random.below(2) == 0;
    for (unsigned id = 1; id <= kIds; ++id) {
        if (at(id, 4) == 255) at(id, 4) = static_cast<std::uint8_t>(random.below(4));
        if (isOfAnotherKind && at(id, 6) == 255) at(id, 6) = static_cast<std::uint8_t>(random.below(4));
        for (unsigned const letter : {4U, 6U})
            if (isTight) at(id, letter) = static_cast<std::uint8_t>(random.below(2U * unknown + 1));
        if (goesOnOnly) at(id, 5) = id == 4 ? static_cast<std::uint8_t>(random.below(3)) : std::uint8_t{255};
        at(id, 3) = unknown;
        at(3, id) = goesOnOnly && id == 5 ? std::uint8_t{255} : unknown;
    }
    world.shareRow();
}

/// Keeps one of equal rows, as a lexicon's table does.
ConnTableContent withoutEqualRows(ConnTableContent content) {
    auto const row = [&](std::size_t index) { return &content.matrix[index * content.cols]; };
    for (std::uint16_t& index : content.rowIndex)
        for (std::uint16_t other = 0; other < index; ++other)
            if (std::equal(row(index), row(index) + content.cols, row(other))) index = other;
    return content;
}

/// Moves column number i of @p content to @p columns[i], if there are any.
ConnTableContent spread(ConnTableContent content, std::vector<std::uint16_t> const& columns) {
    if (columns.empty()) return content;
    auto const cols = static_cast<std::uint16_t>(*std::max_element(columns.begin(), columns.end()) + 1);
    std::vector<std::uint8_t> matrix(std::size_t{content.rows} * cols, 1);
    for (std::size_t row = 0; row != content.rows; ++row)
        for (std::size_t i = 0; i != columns.size(); ++i)
            matrix[row * cols + columns[i]] = content.matrix[row * content.cols + i];
    for (std::uint16_t& index : content.columnIndex) index = columns[index];
    content.matrix = std::move(matrix);
    content.cols = cols;
    return content;
}

}  // namespace

void World::shareRow() { std::copy_n(&costs[3 * kIds], kIds, &costs[4 * kIds]); }

std::string Random::latin(unsigned most) {
    std::string text;
    for (unsigned n = 1 + below(most); n > 0; --n)
        text.push_back(below(4) == 0 ? kAlphabet[below(sizeof kAlphabet)] : below(4) == 0 ? 'B' : 'A');
    return text;
}

std::string Random::bytes(unsigned most, bool withNul) {
    std::string text;
    for (unsigned n = 1 + below(most); n > 0; --n)
        text.push_back(withNul && below(20) == 0 ? '\0' : kAlphabet[below(sizeof kAlphabet)]);
    return text;
}

CostFunction World::costFunction() const {
    return [this](unsigned left, unsigned right) -> unsigned { return costs[(left - 1) * kIds + right - 1]; };
}

World randomWorld(Random& random) {
    World world;
    world.dictionaries.resize(1 + random.below(3));
    int number = 0;
    unsigned const most = random.below(4) == 0 ? 9 : 3;
    for (WordTable& words : world.dictionaries) {
        for (unsigned n = random.below(12); n > 0; --n) {
            std::vector<Record>& records = words[randomForm(random)];
            for (unsigned k = 1 + random.below(most); k > 0; --k)
                records.push_back({4 + random.below(kIds - 3), random.below(3), number});
        }
        ++number;
    }
    // Few distinct costs and many 255s, so that ties and dead ends are everywhere;
    // some worlds have one cost for the unknown word on either side, some a word
    // that may stand behind one word only.
    unsigned const forbidden = random.below(4);
    unsigned const costs = random.below(2) == 0 ? 3 : 9;
    for (unsigned i = 0; i < kIds * kIds; ++i)
        world.costs.push_back(random.below(8) < forbidden ? 255 : static_cast<std::uint8_t>(random.below(costs)));
    auto const flat = static_cast<std::uint8_t>(random.below(2) == 0 ? 254 : random.below(4));
    bool const flatColumn = random.below(2) == 0;
    bool const flatRow = flatColumn || random.below(2) == 0;
    for (unsigned id = 0; id < kIds; ++id) {
        if (flatRow) world.costs[2 * kIds + id] = random.below(8) == 0 ? std::uint8_t{255} : flat;
        if (flatColumn) world.costs[id * kIds + 2] = flat;
    }
    if (random.below(2) == 0) {
        unsigned const column = 3 + random.below(kIds - 3);
        unsigned const row = 3 + random.below(kIds - 3);
        for (unsigned id = 0; id < kIds; ++id) world.costs[id * kIds + column] = id == row ? 0 : 255;
    }
    if (random.below(2) == 0) makeLettersPlain(world, random);
    unsigned const distance = random.below(2) == 0 ? 1 : 1 + random.below(80);
    for (unsigned id = 0; id < kIds; ++id) world.columns.push_back(static_cast<std::uint16_t>(id * distance));
    std::swap(world.columns[random.below(kIds)], world.columns[random.below(kIds)]);
    return world;
}

Attached::Attached(World const& world) {
    int number = 0;
    for (WordTable const& words : world.dictionaries) {
        SmallWorld small;
        small.names({"BOS", "EOS", "UNK", "A", "B", "C", "D", "E", "F"});
        small.cost([&](unsigned left, unsigned right) { return world.costs[(left - 1) * kIds + right - 1]; });
        for (auto const& [form, records] : words)
            for (Record const& record : records)
                small.line(form + "," + small.names()[record.pid - 1] + "," + std::to_string(record.cost));
        std::string const name = std::to_string(number++);
        dir.write(name, small.dictionary());
        dir.write("ConnTable", serializeConnTable(spread(withoutEqualRows(small.connTable()), world.columns)));
    }
    table = std::make_unique<ConnTable>(false, dir.file("ConnTable").c_str());
    for (int i = 0; i < number; ++i) dics.addDicPath(dir.file(std::to_string(i)).c_str(), i % 2 == 0, table.get());
}

Attached::PoolGuard::~PoolGuard() { sharedPools().dispose(); }

int dictionaryOf(DicSet const& dics, unsigned char const* record) {
    for (int i = 0; i < dics.getDicCount(); ++i)
        if (dics.entries()[static_cast<std::size_t>(i)].dic->contains(record)) return i;
    return -1;
}

}  // namespace TAVO::test
