#include "support/random_world.hpp"

#include "base/sjis.hpp"
#include "dic/pools.hpp"
#include "support/draw_lattice.hpp"
#include "support/small_world.hpp"

#include <algorithm>
#include <sstream>

namespace TAVO::test {
namespace {

/// Few bytes, so that texts and surfaces meet at first and second bytes alike: lead bytes, letters, which are second
/// bytes as well, a digit, which is none in known characters, and characters of one byte above 127.
constexpr std::string_view kAlphabets[] = {"\x81\x82\x41\x42\xA0", "\x81\x41\xA0",       "\x81\x82\xA0\xDF",
                                           "\x81\x82\xE0\x42",     "\x81\x41\x42\r\xB1", "\x81\x82\x41",
                                           "\x81\x82\x30\xA0",     "\x81\x30\x41"};

bool isWhole(std::string const& surface) {
    std::size_t pos = 0;
    while (pos + 1 < surface.size()) pos += isLeadByte(surface[pos]) ? 2 : 1;
    return pos == surface.size() || !isLeadByte(surface[pos]);
}

/// A surface that a source line can carry: it has no line break, and its last byte is not a lone lead byte.
std::string randomSurface(World const& world, Random& random) {
    for (;;) {
        std::string surface = world.bytes(random, 5);
        if (isWhole(surface) && surface.find('\r') == std::string::npos) return surface;
    }
}

unsigned randomId(Random& random) { return 4 + random.below(kIds - 3); }
/// Mostly equal ones; some as large as that of an unknown word.
unsigned randomCost(Random& random) { return random.oneIn(12) ? 255 - random.below(3) : random.below(3); }

void addWords(World& world, Random& random, unsigned mostSurfaces) {
    unsigned const most = random.oneIn(4) ? 9 : 3;
    for (std::size_t i = 0; i != world.dictionaries.size(); ++i) {
        for (unsigned n = random.below(mostSurfaces); n > 0; --n) {
            std::vector<Record>& records = world.dictionaries[i][randomSurface(world, random)];
            for (unsigned k = 1 + random.below(most); k > 0; --k)
                records.push_back({randomId(random), randomCost(random), static_cast<int>(i)});
        }
    }
}

/// Few distinct costs and many 255s, so that ties and dead ends are everywhere.
void makeAnyCosts(World& world, Random& random) {
    unsigned const forbidden = random.below(4);
    unsigned const costs = random.oneIn(2) ? 3 : 9;
    for (unsigned i = 0; i < kIds * kIds; ++i)
        world.costs.push_back(random.below(8) < forbidden ? 255 : static_cast<std::uint8_t>(random.below(costs)));
    auto const flat = static_cast<std::uint8_t>(random.oneIn(2) ? 254 : random.below(4));
    bool const flatColumn = random.oneIn(2);
    bool const flatRow = flatColumn || random.oneIn(2);
    for (unsigned id = 1; id <= kIds; ++id) {
        if (flatRow) world.cost(3, id) = random.oneIn(8) ? std::uint8_t{255} : flat;
        if (flatColumn) world.cost(id, 3) = flat;
    }
    if (random.oneIn(2)) {
        unsigned const column = randomId(random), row = randomId(random);
        for (unsigned id = 1; id <= kIds; ++id) world.cost(id, column) = id == row ? 0 : 255;
    }
}

/// Costs of one column, from 0 to @p most; extreme ones lie near both ends.
void makeColumn(World& world, Random& random, unsigned column, unsigned most, bool extreme) {
    for (unsigned left = 1; left <= kIds; ++left) {
        unsigned cost = random.below(most + 1);
        if (extreme) cost = random.oneIn(2) ? std::min(most, random.below(3)) : most - std::min(most, random.below(3));
        world.cost(left, column) = static_cast<std::uint8_t>(cost);
    }
}

/// Columns of all kinds that the fast search tells apart: bounded ones, those with costs above the unknown word's, with
/// forbidden ones, and those that no unknown word may stand before; most of these are restricted.
void makeFlatCosts(World& world, Random& random) {
    unsigned const unknown = random.oneIn(3) ? 254 : 1 + random.below(random.oneIn(2) ? 8 : 100);
    unsigned const oddColumns = random.below(5);
    unsigned const style = random.below(3);
    bool const ties = random.oneIn(3);
    world.costs.assign(kIds * kIds, 0);
    unsigned const rowSets = 1 + random.below(3);
    for (unsigned right = 1; right <= kIds; ++right) {
        bool const odd = random.below(8) < oddColumns;
        unsigned const kind = odd ? random.below(4) : 4;
        unsigned most = kind == 0 ? std::min(254U, unknown + random.below(unknown + 5)) : unknown;
        if (kind == 4 && random.oneIn(2)) most = random.below(unknown + 1);
        if (ties) most = std::min(most, 2 + random.below(3));
        makeColumn(world, random, right, most, style == 0 || (style == 1 && random.oneIn(2)));
        std::uint8_t const before =
            kind == 2 || kind == 3 || (odd && random.oneIn(4)) ? 255 : static_cast<std::uint8_t>(unknown);
        if (kind == 1)
            for (unsigned left = 1; left <= kIds; ++left)
                if (random.oneIn(4)) world.cost(left, right) = 255;
        if (kind == 2)
            for (unsigned left = 1; left <= kIds; ++left)
                if (left % rowSets != right % rowSets || random.oneIn(2)) world.cost(left, right) = 255;
        world.cost(3, right) = before;
    }
    for (unsigned const id : {4U, 6U, 8U})
        if (random.oneIn(2)) std::copy_n(&world.cost(id, 1), kIds, &world.cost(id + 1, 1));
    for (unsigned left = 1; left <= kIds; ++left) {
        world.cost(left, 3) = static_cast<std::uint8_t>(unknown);
        if (random.oneIn(20)) world.cost(left, 2) = 255;
    }
    if (random.oneIn(20)) ++world.cost(random.below(kIds) + 1, 3);
}

bool isRestricted(World const& world, unsigned id) { return world.cost(3, id) == 255; }

/// Gives each word that no unknown one may stand before another of the same row that one may.
void addTwins(World& world) {
    for (WordTable& words : world.dictionaries) {
        for (auto& [surface, records] : words) {
            std::vector<Record> all;
            for (Record const& record : records) {
                unsigned twin = 4;
                while (twin <= kIds &&
                       (isRestricted(world, twin) ||
                        !std::equal(&world.cost(twin, 1), &world.cost(twin, 1) + kIds, &world.cost(record.pid, 1))))
                    ++twin;
                if (isRestricted(world, record.pid) && twin > kIds) continue;
                all.push_back(record);
                if (isRestricted(world, record.pid)) all.push_back({twin, record.cost, record.dictionary});
            }
            records = all;
        }
        std::erase_if(words, [](auto const& entry) { return entry.second.empty(); });
    }
}

/// Lets words of one id alone stand before those of another, and lets them end, in most worlds, with no character of
/// one byte: so words without a twin may be left out.
void closeExits(World& world, Random& random, unsigned opening, unsigned entering) {
    bool const close = !random.oneIn(4);
    for (unsigned id = 1; id <= kIds; ++id) {
        world.cost(3, id) = id == entering ? std::uint8_t{255} : world.cost(3, id);
        world.cost(id, entering) = static_cast<std::uint8_t>(id == opening ? random.below(3) : 255);
        if (random.oneIn(2)) world.cost(entering, id) = std::min<std::uint8_t>(world.cost(entering, id), 2);
    }
    for (WordTable& words : world.dictionaries) {
        for (auto& [surface, records] : words) {
            bool const isClosed = surface.size() > 1 && isLeadByte(surface[surface.size() - 2]);
            if (random.oneIn(3)) records.front().pid = entering;
            if (isClosed && random.oneIn(3)) records.back().pid = opening;
            for (Record& record : records)
                if (record.pid == opening && close && !isClosed) record.pid = 4;
        }
    }
}

/// Most characters of the alphabet get a word.
void addCharacters(World& world, Random& random) {
    unsigned const missing = random.below(3) * random.below(3);
    for (char const first : world.alphabet) {
        for (char const second : world.alphabet) {
            std::string const surface = isLeadByte(first) ? std::string{first, second} : std::string(1, first);
            if (random.below(12) < missing || surface.find('\r') != std::string::npos) continue;
            unsigned const dic = random.below(static_cast<unsigned>(world.dictionaries.size()));
            std::vector<Record>& records = world.dictionaries[dic][surface];
            if (records.empty() || random.oneIn(2))
                records.push_back({randomId(random), randomCost(random), static_cast<int>(dic)});
        }
    }
}

/// Keeps one of equal rows, as a lexicon's table does.
ConnTableContent withoutEqualRows(ConnTableContent content) {
    auto const row = [&](std::size_t index) { return &content.matrix[index * content.cols]; };
    for (std::uint16_t& index : content.rowIndex)
        for (std::uint16_t other = 0; other < index; ++other)
            if (std::equal(row(index), row(index) + content.cols, row(other))) index = other;
    return content;
}

/// Moves column number i of @p content to @p columns[i], if there are any. What nothing stands in costs what every
/// unknown word does, where it has one cost.
ConnTableContent spread(ConnTableContent content, std::vector<std::uint16_t> const& columns) {
    if (columns.empty()) return content;
    auto const cols = static_cast<std::uint16_t>(*std::max_element(columns.begin(), columns.end()) + 1);
    std::vector<std::uint8_t> matrix(std::size_t{content.rows} * cols, content.matrix[2]);
    for (std::size_t row = 0; row != content.rows; ++row)
        for (std::size_t i = 0; i != columns.size(); ++i)
            matrix[row * cols + columns[i]] = content.matrix[row * content.cols + i];
    for (std::uint16_t& index : content.columnIndex) index = columns[index];
    content.matrix = std::move(matrix);
    content.cols = cols;
    return content;
}

void spreadColumns(World& world, Random& random) {
    unsigned const distance = random.oneIn(2) ? 1 : 1 + random.below(80);
    for (unsigned id = 0; id < kIds; ++id) world.columns.push_back(static_cast<std::uint16_t>(id * distance));
    std::swap(world.columns[random.below(kIds)], world.columns[random.below(kIds)]);
}

World emptyWorld(Random& random) {
    World world;
    world.alphabet = random.of(kAlphabets);
    world.dictionaries.resize(random.oneIn(2) ? 1 : 1 + random.below(3));
    return world;
}

}  // namespace

std::string World::bytes(Random& random, unsigned most) const {
    std::string text;
    for (unsigned n = 1 + random.below(most); n > 0; --n) text.push_back(random.of(alphabet));
    return text;
}

std::string World::text(Random& random, unsigned most, bool withNul) const {
    std::string text;
    for (std::size_t const length = 1 + random.below(most); text.size() < length;) {
        WordTable const& words = random.of(dictionaries);
        if (!words.empty() && random.oneIn(8))
            text += std::next(words.begin(), random.below(static_cast<unsigned>(words.size())))->first;
        else
            text.push_back(withNul && random.oneIn(30) ? '\0' : random.of(alphabet));
    }
    text.resize(std::min<std::size_t>(text.size(), most));
    return text;
}

CostFunction World::costFunction() const {
    return [this](unsigned left, unsigned right) { return cost(left, right); };
}

std::string World::describe() const {
    std::ostringstream out;
    for (WordTable const& words : dictionaries) {
        out << "dictionary (surface: id/cost):\n";
        for (auto const& [surface, records] : words) {
            out << "  " << hexOf(surface) << ":";
            for (Record const& record : records) out << " " << record.pid << "/" << record.cost;
            out << "\n";
        }
    }
    out << "costs, a row for each id on the left:\n";
    for (unsigned left = 1; left <= kIds; ++left) {
        out << "  " << left << ":";
        for (unsigned right = 1; right <= kIds; ++right) out << " " << cost(left, right);
        out << "\n";
    }
    return out.str();
}

World randomWorld(Random& random) {
    if (random.oneIn(2)) return randomFlatWorld(random);
    World world = emptyWorld(random);
    addWords(world, random, 12);
    makeAnyCosts(world, random);
    spreadColumns(world, random);
    return world;
}

World randomFlatWorld(Random& random) {
    World world = emptyWorld(random);
    makeFlatCosts(world, random);
    addWords(world, random, 1 + random.below(16));
    addCharacters(world, random);
    bool const leavesOut = random.oneIn(4);
    if (leavesOut) {
        for (unsigned id = 4; id <= kIds; ++id)
            if (world.cost(3, id) == 255) world.cost(3, id) = world.cost(1, 3);
        closeExits(world, random, 10, 11);
        if (random.oneIn(2)) closeExits(world, random, 8, 7);
    } else if (!random.oneIn(3)) {
        addTwins(world);
    }
    spreadColumns(world, random);
    return world;
}

void addManyWords(World& world, Random& random) {
    for (std::size_t i = 0; i != world.dictionaries.size(); ++i) {
        std::vector<Record>& records = world.dictionaries[i][randomSurface(world, random)];
        for (unsigned k = 80 + random.below(220); k > 0; --k)
            records.push_back({4 + k % 3, random.below(3), static_cast<int>(i)});
    }
}

void addLongSurface(World& world, Random& random, std::string& text, unsigned most) {
    std::size_t const room = text.size() - std::min<std::size_t>(text.size(), most);
    std::string surface = text.substr(random.below(static_cast<unsigned>(room) + 1), 1 + random.below(most));
    for (std::size_t pos = 0; pos < surface.size(); pos += charWidth(surface, pos))
        if (surface[pos] == '\r' || surface[pos] == '\0' ||
            (charWidth(surface, pos) == 1 && isLeadByte(surface[pos])) ||
            (charWidth(surface, pos) == 2 && (surface[pos + 1] == '\r' || surface[pos + 1] == '\0')))
            surface.replace(pos, charWidth(surface, pos), charWidth(surface, pos), 'A');
    world.dictionaries[0][surface].push_back({4 + random.below(kIds - 3), random.below(3), 0});
    text.replace(random.below(static_cast<unsigned>(text.size() - surface.size()) + 1), surface.size(), surface);
}

Attached::Attached(World const& world) {
    int number = 0;
    for (WordTable const& words : world.dictionaries) {
        SmallWorld small;
        std::vector<std::string> names{"BOS", "EOS", "UNK"};
        for (unsigned id = 4; id <= kIds; ++id) names.push_back("N" + std::to_string(id));
        small.names(names);
        small.cost([&](unsigned left, unsigned right) { return world.costs[(left - 1) * kIds + right - 1]; });
        for (auto const& [surface, records] : words)
            for (Record const& record : records)
                small.line(surface + "," + small.names()[record.pid - 1] + "," + std::to_string(record.cost));
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
