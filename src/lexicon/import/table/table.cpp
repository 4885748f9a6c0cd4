#include "lexicon/import/table/table.hpp"

#include "lexicon/import/fit/cluster.hpp"
#include "lexicon/import/table/distinct.hpp"
#include "lexicon/import/table/levels.hpp"

#include <algorithm>
#include <cmath>
#include <map>
#include <numeric>
#include <tuple>

namespace TAVO::importer {
namespace {

constexpr std::uint16_t kFixedIds = 3;  // beginning, end, unknown

class Builder {
public:
    Builder(Lexicon& lexicon, FormIndex const& index, Shifts const& shifts, Usage const& usage, PairCounts const& pairs,
            TableOptions const& options)
        : lexicon_(lexicon),
          index_(index),
          shifts_(shifts),
          pairs_(pairs),
          options_(options),
          clusters_(findClusters(lexicon, usage, options.contextTolerance)),
          weights_(lexicon.words.size(), 0.0) {
        for (Usage::Edge const& edge : usage.edges)
            if (edge.right != Lattice::kNone) weights_[edge.right] += static_cast<double>(edge.weight);
    }

    Tables build() {
        makeLevels();
        makeIds();
        nameIds();
        describeClasses();
        nameLines();
        mergeEqual();
        return std::move(tables_);
    }

private:
    struct Column {
        std::uint32_t col;  ///< of the source matrix; kNoIndex: the last resort
        double level;
    };
    struct Id {
        std::uint32_t name, row, column;
        std::uint64_t words;
        double asLeft;  ///< pairs of neighbours that its words are the first of
    };

    /// A row that follows a leader has the leader's shift, less the constant between them.
    double rowShift(std::uint32_t base) const {
        return shifts_.row[clusters_.rows.leader[base]] - clusters_.rows.offset[base];
    }
    /// Columns of the chains of unknown words stand for themselves.
    std::uint32_t columnLeader(std::uint32_t col) const {
        return col < lexicon_.sourceCols ? clusters_.columns.leader[col] : col;
    }
    double columnOffset(std::uint32_t col) const {
        return col < lexicon_.sourceCols ? clusters_.columns.offset[col] : 0;
    }

    /// A row that follows a leader connects as the leader does. Rows of the chains
    /// of unknown words stand for themselves.
    std::uint32_t rowLeader(std::uint32_t row) const {
        return row < lexicon_.sourceRows ? clusters_.rows.leader[row] : row;
    }

    /// Part of an edge's cost that depends on the word behind it alone.
    double wordPart(Word const& word) const {
        double const shifted = word.cost + columnOffset(word.col) - rowShift(lexicon_.rowBase[word.row]) +
                               shifts_.perByte * static_cast<double>(word.form.size());
        return shifted / options_.step;
    }

    void makeLevels() {
        constexpr double kLeastWeight = 0.02;
        std::vector<Levels> levels(lexicon_.matrix.cols);
        for (std::size_t i = 0; i < lexicon_.words.size(); ++i)
            levels[columnLeader(lexicon_.words[i].col)].add(wordPart(lexicon_.words[i]), weights_[i] + kLeastWeight);
        columnOfLevel_.resize(lexicon_.matrix.cols);
        columns_.push_back({0, -shifts_.end / options_.step});  // the text's end
        for (std::uint32_t col = 0; col < lexicon_.matrix.cols; ++col)
            levels[col].merge(options_.levelTolerance, [&](std::int32_t value, double mean) {
                if (columns_.back().col != col || columns_.back().level != mean) columns_.push_back({col, mean});
                columnOfLevel_[col][value] = static_cast<std::uint32_t>(columns_.size() - 1);
            });
        columns_.push_back({kNoIndex, 0});  // the last resort
    }

    std::uint32_t columnOf(Word const& word) const {
        return columnOfLevel_[columnLeader(word.col)].at(static_cast<std::int32_t>(std::lround(wordPart(word))));
    }

    /// Words of a form that connect alike and differ in cost: only the cheapest can win.
    bool competesAlike(Word const& a, Word const& b) const {
        return a.name == b.name && rowLeader(a.row) == rowLeader(b.row) && columnLeader(a.col) == columnLeader(b.col);
    }

    /// What can't win takes the id of what can, so that the lattice makes one node of them.
    void makeIds() {
        std::map<std::tuple<std::uint32_t, std::uint32_t, std::uint32_t>, std::uint32_t> ids;
        wordId_.assign(lexicon_.words.size(), kNoIndex);
        auto const idOf = [&](Word const& word, std::uint32_t column) {
            std::uint32_t const row = rowLeader(word.row);
            auto const [place, fresh] =
                ids.emplace(std::tuple(word.name, row, column), static_cast<std::uint32_t>(ids_.size()));
            if (fresh) ids_.push_back({word.name, row, column, 0, 0});
            return place->second;
        };
        for (std::uint32_t i = 0; i < lexicon_.words.size(); ++i) {
            Word const* cheapest = &lexicon_.words[i];
            for (std::uint32_t const winner : index_.sameForm(i)) {
                Word const& other = lexicon_.words[winner];
                if (competesAlike(other, *cheapest) && wordPart(other) < wordPart(*cheapest)) cheapest = &other;
            }
            std::uint32_t const id = wordId_[i] = idOf(*cheapest, columnOf(*cheapest));
            ids_[id].words += 1;
            if (!pairs_.asLeft.empty()) ids_[id].asLeft += pairs_.asLeft[i];
        }
    }

    /// Ids in the order of their names, levels rising; the level of the middle
    /// word of a name has the bare name.
    void nameIds() {
        std::vector<std::uint32_t> order(ids_.size());
        std::iota(order.begin(), order.end(), 0U);
        auto const key = [&](std::uint32_t i) {
            return std::tuple(std::string_view(lexicon_.names.at(ids_[i].name)), columns_[ids_[i].column].level,
                              ids_[i].row, ids_[i].column);
        };
        std::sort(order.begin(), order.end(), [&](std::uint32_t a, std::uint32_t b) { return key(a) < key(b); });
        if (order.size() + kFixedIds > 65534)
            throw lexicon_error(
                "", 0,
                "the lexicon needs " + std::to_string(order.size()) + " ids, more than 65531; raise --step or --merge");
        tables_.names = {"BOS", "EOS", "Undef"};
        std::vector<std::uint16_t> finalId(ids_.size());
        for (std::size_t from = 0, to = 0; from < order.size(); from = to) {
            std::uint64_t words = 0;
            while (to < order.size() && ids_[order[to]].name == ids_[order[from]].name)
                words += ids_[order[to++]].words;
            std::uint64_t seen = 0;
            unsigned number = 0;
            bool typicalSeen = false;
            for (std::size_t i = from; i < to; ++i) {
                seen += ids_[order[i]].words;
                bool const typical = !typicalSeen && seen * 2 >= words;
                typicalSeen = typicalSeen || typical;
                std::string name = lexicon_.names.at(ids_[order[i]].name);
                if (!typical) name += "-" + std::to_string(++number);
                tables_.names.push_back(std::move(name));
                finalId[order[i]] = static_cast<std::uint16_t>(tables_.names.size());
            }
        }
        order_ = std::move(order);
        for (std::size_t i = 0; i < lexicon_.words.size(); ++i) {
            Word const& word = lexicon_.words[i];
            double const rest = wordPart(word) - columns_[ids_[wordId_[i]].column].level;
            tables_.idOfWord.push_back(finalId[wordId_[i]]);
            tables_.costOfWord.push_back(
                static_cast<std::uint8_t>(std::clamp(std::lround(128 + 127 * rest), 1L, 255L)));
        }
    }

    void describeClasses() {
        words::WordClasses& classes = tables_.classes;
        classes.step = options_.step;
        classes.perByte = shifts_.perByte;
        for (std::uint32_t col = 0; col < lexicon_.sourceCols; ++col)
            classes.left[col] = {columnLeader(col), columnOffset(col)};
        for (std::uint32_t row = 0; row < lexicon_.sourceRows; ++row)
            classes.right[row] = {rowLeader(row), rowShift(row)};
        classes.classes.resize(order_.size() + kFixedIds + 1);
        for (std::size_t i = 0; i < order_.size(); ++i) {
            Id const& id = ids_[order_[i]];
            Column const& column = columns_[id.column];
            bool const ofWords = id.row < lexicon_.sourceRows && column.col < lexicon_.sourceCols;
            if (ofWords) classes.classes[i + kFixedIds + 1] = {id.row, column.col, column.level, true};
        }
    }

    std::uint8_t cell(std::uint32_t row, Column const& column) const {
        bool const inside = column.col != kNoIndex && column.col >= lexicon_.sourceCols;
        if (row == lexicon_.matrix.rows) return inside ? Tables::kForbidden : Tables::kHighest;
        if (column.col == kNoIndex) return Tables::kHighest;
        std::int16_t const cost = lexicon_.matrix.at(row, column.col);
        if (cost == Matrix::kForbidden) return Tables::kForbidden;
        // Inside a chain all costs are 0; elsewhere the leader's cost stands for the row's.
        std::uint32_t const leader = clusters_.rows.leader[lexicon_.rowBase[row]];
        double const shifted = inside ? cost + rowShift(lexicon_.rowBase[row])
                                      : lexicon_.matrix.at(leader, column.col) + shifts_.row[leader];
        double const value = shifted / options_.step + column.level;
        return static_cast<std::uint8_t>(std::clamp(std::lround(value), 0L, static_cast<long>(Tables::kHighest)));
    }

    /// Row and column per id, still with one row per right id in use and one column per level.
    void nameLines() {
        std::vector<std::uint32_t> lineOf(lexicon_.matrix.rows, kNoIndex);
        std::vector<std::uint32_t>& rows = rows_;
        rows = {0};
        lineOf[0] = 0;
        for (std::uint32_t const i : order_) {
            std::uint32_t& line = lineOf[ids_[i].row];
            if (line != kNoIndex) continue;
            line = static_cast<std::uint32_t>(rows.size());
            rows.push_back(ids_[i].row);
        }
        auto const lastLine = static_cast<std::uint32_t>(rows.size());
        rows.push_back(lexicon_.matrix.rows);
        auto const lastColumn = static_cast<std::uint32_t>(columns_.size() - 1);
        rowOf_ = {0, 0, lastLine};
        columnOf_ = {lastColumn, 0, lastColumn};
        rowUse_.assign(rows.size(), 0);
        for (std::uint32_t const i : order_) {
            rowOf_.push_back(lineOf[ids_[i].row]);
            columnOf_.push_back(ids_[i].column);
            rowUse_[rowOf_.back()] += ids_[i].asLeft;
        }
    }

    /// Keeps one of equal rows and columns. Rows that a search asks for most stand first, and
    /// columns that it asks for together stand together, so that it reads from few places. A search asks for
    /// the costs of all neighbours in a text, of which few are on a good path.
    void mergeEqual() {
        std::vector<Digest> rowDigests(rows_.size()), columnDigests(columns_.size());
        std::vector<std::uint8_t> line(columns_.size());
        for (std::size_t row = 0; row < rows_.size(); ++row) {
            for (std::size_t column = 0; column < columns_.size(); ++column)
                line[column] = cell(rows_[row], columns_[column]);
            for (std::uint8_t const byte : line) rowDigests[row].add(byte);
            for (std::size_t column = 0; column < columns_.size(); ++column) columnDigests[column].add(line[column]);
        }
        Distinct rows(rowOf_, rowDigests), columns(columnOf_, columnDigests);
        tables_.rows = static_cast<std::uint32_t>(rows.kept.size());
        tables_.columns = static_cast<std::uint32_t>(columns.kept.size());
        if (columns.kept.size() > 65535)
            throw lexicon_error("", 0, "the matrix has more than 65535 columns; raise --step or --merge");
        if (static_cast<double>(tables_.bytes()) > options_.maxBytes) return;

        std::vector<double> use(rowUse_.size(), 0);
        for (std::uint32_t row = 0; row < rowUse_.size(); ++row)
            if (rows.same[row] != kNoIndex) use[rows.same[row]] += rowUse_[row];
        rows.sort([&](std::uint32_t a, std::uint32_t b) { return use[a] > use[b]; });
        std::vector<std::uint32_t> const ranks = rankTogether(columns.same);
        columns.sort([&](std::uint32_t a, std::uint32_t b) { return ranks[a] < ranks[b]; });
        tables_.matrix.reserve(tables_.bytes());
        for (std::uint32_t const row : rows.kept)
            for (std::uint32_t const column : columns.kept)
                tables_.matrix.push_back(cell(rows_[row], columns_[column]));
        tables_.rowOf = rows.places(rowOf_);
        tables_.columnOf = columns.places(columnOf_);
    }

    /// When each column is first asked for, group after group; @p same tells which one stands for it.
    std::vector<std::uint32_t> rankTogether(std::vector<std::uint32_t> const& same) const {
        std::vector<std::uint32_t> ranks(same.size(), kNoIndex);
        std::uint32_t next = 0;
        for (std::vector<std::uint32_t> const& words : pairs_.together)
            for (std::uint32_t const word : words) {
                std::uint32_t const column = same[ids_[wordId_[word]].column];
                if (ranks[column] == kNoIndex) ranks[column] = next++;
            }
        return ranks;
    }

    Lexicon const& lexicon_;
    FormIndex const& index_;
    Shifts const& shifts_;
    PairCounts const& pairs_;
    TableOptions const& options_;
    Clusters clusters_;
    std::vector<double> weights_;  // per word: its use in near-best analyses
    std::vector<std::map<std::int32_t, std::uint32_t>> columnOfLevel_;
    std::vector<Column> columns_;
    std::vector<Id> ids_;
    std::vector<std::uint32_t> order_;  // of ids_, in final order
    std::vector<std::uint32_t> wordId_;
    std::vector<std::uint32_t> rows_;              // of the source, of which columns_ are the columns
    std::vector<std::uint32_t> rowOf_, columnOf_;  // per final id, into these
    std::vector<double> rowUse_;
    Tables tables_;
};

}  // namespace

Tables buildTables(Lexicon& lexicon, FormIndex const& index, Shifts const& shifts, Usage const& usage,
                   PairCounts const& pairs, TableOptions const& options) {
    return Builder(lexicon, index, shifts, usage, pairs, options).build();
}

}  // namespace TAVO::importer
