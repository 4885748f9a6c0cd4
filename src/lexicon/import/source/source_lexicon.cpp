#include "lexicon/import/source/source_lexicon.hpp"

#include "lexicon/encoding_guess.hpp"
#include "lexicon/import/source/entry_reader.hpp"

#include "base/text.hpp"
#include "base/utf8.hpp"

#include <algorithm>

namespace TAVO::importer {
namespace fs = std::filesystem;
namespace {

/// Encoding and cost factor, from dicrc.
void readSettings(Lexicon& lexicon) {
    fs::path const file = lexicon.folder / "dicrc";
    forEachLine(readFile(file), [&](std::string_view line, std::size_t number) {
        std::size_t const equals = line.find('=');
        if (equals == std::string_view::npos) return;
        std::string_view const key = strip(line.substr(0, equals)), value = strip(line.substr(equals + 1));
        if (key == "config-charset") lexicon.charset = value;
        if (key == "cost-factor")
            lexicon.costFactor = static_cast<double>(parseNumber(value, 1, 32767, file, number, "cost-factor"));
    });
}

/// The number of fields behind the four fixed ones.
std::size_t featureCount(fs::path const& file, std::string_view line, std::size_t number) {
    std::vector<std::string> fields;
    splitCsv(line, fields);
    std::size_t const features = fields.size() - std::min<std::size_t>(fields.size(), 4);
    if (features < 1) fail(file, number, "fewer than 5 fields");
    return features;
}

}  // namespace

std::uint32_t StringPool::add(std::string_view text) {
    auto const found = index_.find(text);
    if (found != index_.end()) return found->second;
    strings_.emplace_back(text);
    std::uint32_t const index = size() - 1;
    index_.emplace(strings_.back(), index);
    return index;
}

void Lexicon::nameFields(std::string_view name, std::vector<std::string> values, bool unknown) {
    fields.partsOfSpeech.emplace(sjisToUtf8(name), words::MecabFields::PartOfSpeech{std::move(values), unknown});
}

std::string_view Lexicon::keep(std::string_view text) {
    constexpr std::size_t kStorageBytes = 1 << 20;
    if (text.size() > room_) {
        storage_.emplace_back();
        room_ = std::max(kStorageBytes, text.size());
        storage_.back().reserve(room_);
    }
    std::string& block = storage_.back();
    std::size_t const at = block.size();
    block.append(text);
    room_ -= text.size();
    return std::string_view(block).substr(at);
}

Lexicon readLexicon(fs::path const& folder, std::string const& charsetOverride, FieldLayout const* layout) {
    if (!fs::is_directory(folder)) throw lexicon_error(folder.string(), 0, "is not a folder");
    Lexicon lexicon;
    lexicon.folder = folder;
    lexicon.charset = charsetOverride;
    std::vector<fs::path> files;
    for (auto const& entry : fs::directory_iterator(folder))
        if (entry.path().extension() == ".csv") files.push_back(entry.path());
    if (files.empty()) throw lexicon_error(folder.string(), 0, "holds no *.csv file");
    std::sort(files.begin(), files.end());
    readSettings(lexicon);
    if (!charsetOverride.empty()) lexicon.charset = charsetOverride;
    if (lexicon.charset.empty()) {
        std::string_view const other = words::otherEncoding(readFile(files.front()), TextEncoding::Utf8);
        std::string const likely = other.empty() ? "UTF-8" : std::string(other);
        throw lexicon_error((folder / "dicrc").string(), 0,
                            "no config-charset line; name the encoding: --charset " + likely);
    }
    lexicon.matrix = readMatrix(folder / "matrix.def");
    lexicon.sourceRows = lexicon.matrix.rows;
    lexicon.sourceCols = lexicon.matrix.cols;
    for (std::uint32_t row = 0; row < lexicon.sourceRows; ++row) lexicon.rowBase.push_back(row);

    EntryReader reader(lexicon, layout ? *layout : FieldLayout{});
    bool featuresKnown = false;
    for (fs::path const& file : files) {
        readLines(file, lexicon.charset, &lexicon.leftOut.damaged, [&](std::string_view line, std::size_t number) {
            if (!featuresKnown) {
                std::size_t const features = featureCount(file, line, number);
                lexicon.shortUnits = features >= kShortUnitFeatures;
                if (layout == nullptr) reader.setLayout(layoutFor(features));
                reader.describeFields(features);
                featuresKnown = true;
            }
            reader.csvLine(file, line, number);
        });
    }
    if (std::string const fault = layout ? "" : reader.fault(); !fault.empty())
        throw lexicon_error(folder.string(), 0, fault);
    fs::path const unk = folder / "unk.def";
    readLines(unk, lexicon.charset, nullptr,
              [&](std::string_view line, std::size_t number) { reader.unknownLine(unk, line, number); });
    return lexicon;
}

}  // namespace TAVO::importer
