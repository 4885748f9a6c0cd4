#include "import/import_lexicon.hpp"

#include "cli/encoding_guess.hpp"
#include "import/import_charset.hpp"

#include "base/text.hpp"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <memory>

namespace TAVO::importer {
namespace fs = std::filesystem;
namespace {

long long parseNumber(std::string_view text, long long low, long long high, fs::path const& file, std::size_t line,
                      char const* what) {
    long long value = 0;
    auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc{} || end != text.data() + text.size())
        fail(file, line, std::string(what) + " \"" + std::string(text) + "\" is not a number");
    if (value < low || value > high)
        fail(file, line,
             std::string(what) + " " + std::to_string(value) + " is outside " + std::to_string(low) + ".." +
                 std::to_string(high));
    return value;
}

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

/// Reads numbers from a file of any size through one buffer.
class NumberReader {
public:
    explicit NumberReader(fs::path const& path) : path_(path), file_(std::fopen(path.c_str(), "rb"), &std::fclose) {
        if (!file_) throw ImportError(path.string() + ": cannot be opened");
    }
    /// False at the end of the file.
    bool next(long& value) {
        int c = 0;
        do {
            line_ += behindBreak_ ? 1 : 0;
            c = get();
            behindBreak_ = c == '\n';
        } while (isBlank(c));
        if (c < 0) return false;
        bool const negative = c == '-';
        if (negative) c = get();
        if (c < '0' || c > '9') fail(path_, line_, "a number is expected");
        value = 0;
        for (; c >= '0' && c <= '9'; c = get()) {
            value = value * 10 + (c - '0');
            if (value > 10'000'000) fail(path_, line_, "the number is too large");
        }
        if (c >= 0 && !isBlank(c)) fail(path_, line_, "a number is expected");
        behindBreak_ = c == '\n';
        if (negative) value = -value;
        return true;
    }
    std::size_t line() const noexcept { return line_; }

private:
    static bool isBlank(int c) noexcept { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }
    int get() {
        if (at_ == end_) {
            at_ = buffer_.data();
            end_ = at_ + std::fread(buffer_.data(), 1, buffer_.size(), file_.get());
            if (at_ == end_) return -1;
        }
        return static_cast<unsigned char>(*at_++);
    }

    fs::path path_;
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> file_;
    std::vector<char> buffer_ = std::vector<char>(1 << 20);
    char const *at_ = nullptr, *end_ = nullptr;
    std::size_t line_ = 1;
    bool behindBreak_ = false;
};

Matrix readMatrix(fs::path const& file) {
    NumberReader reader(file);
    long rows = 0, cols = 0;
    if (!reader.next(rows) || !reader.next(cols) || rows < 1 || cols < 1 || rows > 65535 || cols > 65535)
        fail(file, 1, "the first line gives the number of right ids and of left ids, 1..65535 each");
    Matrix matrix(static_cast<std::uint32_t>(rows), static_cast<std::uint32_t>(cols));
    std::size_t const announced = std::size_t{matrix.rows} * matrix.cols;
    std::size_t seen = 0;
    long right = 0, left = 0, cost = 0;
    while (reader.next(right)) {
        if (!reader.next(left) || !reader.next(cost)) fail(file, reader.line(), "the file is cut short");
        if (right < 0 || right >= rows || left < 0 || left >= cols)
            fail(file, reader.line(),
                 "the ids " + std::to_string(right) + " " + std::to_string(left) + " lie outside the matrix");
        if (cost < -32767 || cost > 32767) fail(file, reader.line(), "the cost does not fit 16 bits");
        matrix.set(static_cast<std::uint32_t>(right), static_cast<std::uint32_t>(left),
                   static_cast<std::int16_t>(cost));
        ++seen;
    }
    if (seen < announced)
        throw ImportError(file.string() + ": " + std::to_string(announced) + " costs are announced, " +
                          std::to_string(seen) + " given");
    return matrix;
}

struct Reader {
    Lexicon& lexicon;
    FieldLayout layout;
    Cp932 const& cp932;
    std::vector<std::string> fields;
    std::string scratch;
    FieldCheck check;

    void ids(fs::path const& file, std::size_t line, std::uint32_t& row, std::uint32_t& col, std::int32_t& cost) {
        if (fields.size() < 5) fail(file, line, "fewer than 5 fields");
        long long const maxLeft = lexicon.matrix.cols - 1, maxRight = lexicon.matrix.rows - 1;
        col = static_cast<std::uint32_t>(parseNumber(fields[1], 0, maxLeft, file, line, "left id"));
        row = static_cast<std::uint32_t>(parseNumber(fields[2], 0, maxRight, file, line, "right id"));
        cost = static_cast<std::int32_t>(parseNumber(fields[3], -32768, 32767, file, line, "cost"));
    }

    std::vector<std::string> posFields() const {
        auto const first = fields.begin() + 4;
        return {first, first + std::min<std::ptrdiff_t>(fields.end() - first, std::max(layout.posFields, 0))};
    }
    /// Of a lexicon whose words have @p features fields.
    void describeFields(std::size_t features) {
        auto const present = [&](int index) { return index < static_cast<int>(features) ? index : -1; };
        lexicon.fields.count = features;
        lexicon.fields.posCount =
            std::clamp<std::size_t>(static_cast<std::size_t>(std::max(layout.posFields, 1)), 1, features);
        lexicon.fields.base = present(layout.base);
        lexicon.fields.reading = present(layout.reading);
        lexicon.fields.pron = present(layout.pron);
    }

    std::string name(fs::path const& file, std::size_t line) {
        std::string const utf8 = joinName(fields, 4, static_cast<std::size_t>(layout.posFields));
        std::string result;
        if (!cp932.append(result, utf8)) fail(file, line, "the part of speech has characters outside code page 932");
        return result;
    }

    std::string_view field(int index) {
        if (index < 0 || fields.size() <= static_cast<std::size_t>(index) + 4) return {};
        std::string const& text = fields[static_cast<std::size_t>(index) + 4];
        if (text == "*") return {};
        scratch.clear();
        if (!cp932.append(scratch, text)) {
            lexicon.leftOut.lostFields.add(text);
            return {};
        }
        return lexicon.keep(scratch);
    }

    void csvLine(fs::path const& file, std::string_view line, std::size_t number) {
        splitCsv(line, fields);
        ++lexicon.entriesRead;
        check.add(fields);
        Word word;
        ids(file, number, word.row, word.col, word.cost);
        if (fields[0].empty()) {
            lexicon.leftOut.noForm.add(file.filename().string() + ":" + std::to_string(number));
            return;
        }
        scratch.clear();
        if (!cp932.append(scratch, fields[0])) {
            lexicon.leftOut.noCode.add(fields[0]);
            return;
        }
        word.form = lexicon.keep(scratch);
        // The feature lets the reduce rules join digits, and no other numerals; where
        // letters are words, it lets them join too.
        std::string const feature = classFeature(fields[0]);
        bool const taken = feature != ":Alphabet" || lexicon.shortUnits;
        std::string const partOfSpeech = name(file, number) + (taken ? feature : "");
        std::uint32_t const namesBefore = lexicon.names.size();
        word.name = lexicon.names.add(partOfSpeech);
        if (lexicon.names.size() != namesBefore) lexicon.nameFields(partOfSpeech, posFields(), false);
        word.base = field(layout.base);
        if (word.base == word.form) word.base = {};
        word.reading = field(layout.reading);
        word.pron = field(layout.pron);
        lexicon.words.push_back(word);
    }

    void unknownLine(fs::path const& file, std::string_view line, std::size_t number) {
        splitCsv(line, fields);
        UnknownTemplate entry;
        ids(file, number, entry.row, entry.col, entry.cost);
        entry.category = fields[0];
        entry.name = name(file, number);
        entry.fields.assign(fields.begin() + 4, fields.end());
        lexicon.templates.push_back(entry);
    }
};

/// Latin of either width, Greek, Cyrillic.
bool isLetter(std::uint32_t c) {
    auto const within = [&](std::uint32_t low, std::uint32_t high) { return c >= low && c <= high; };
    return within('A', 'Z') || within('a', 'z') || within(0xFF21, 0xFF3A) || within(0xFF41, 0xFF5A) ||
           within(0x0391, 0x03C9) || within(0x0401, 0x0451);
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

std::string joinName(std::vector<std::string> const& fields, std::size_t first, std::size_t count) {
    std::string name;
    for (std::size_t i = first; i < std::min(fields.size(), first + count); ++i) {
        if (fields[i].empty() || fields[i] == "*") continue;
        if (!name.empty()) name += ':';
        for (char c : fields[i]) name += c == '-' || c == '/' ? ':' : c;
    }
    return name.empty() ? "*" : name;
}

std::string classFeature(std::string_view form) {
    bool digitBefore = false, first = true;
    for (std::size_t pos = 0; pos < form.size();) {
        std::uint32_t const c = nextCodePoint(form, pos);
        if (first && pos == form.size() && isLetter(c)) return ":Alphabet";
        first = false;
        bool const digit = (c >= '0' && c <= '9') || (c >= 0xFF10 && c <= 0xFF19);
        bool const comma = c == ',' || c == 0xFF0C;
        if (!digit && !(comma && digitBefore)) return {};
        digitBefore = digit;
    }
    return digitBefore ? ":Number" : "";
}

std::uint32_t StringPool::add(std::string_view text) {
    auto const found = index_.find(text);
    if (found != index_.end()) return found->second;
    strings_.emplace_back(text);
    std::uint32_t const index = size() - 1;
    index_.emplace(strings_.back(), index);
    return index;
}

void Lexicon::nameFields(std::string_view name, std::vector<std::string> values, bool unknown) {
    fields.partsOfSpeech.emplace(tool::sjisToUtf8(name), tool::MecabFields::PartOfSpeech{std::move(values), unknown});
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

void splitCsv(std::string_view line, std::vector<std::string>& fields) {
    std::size_t count = 0;
    std::size_t pos = 0;
    while (true) {
        if (fields.size() == count) fields.emplace_back();
        std::string& field = fields[count++];
        field.clear();
        if (pos < line.size() && line[pos] == '"') {
            ++pos;
            while (pos < line.size() && (line[pos] != '"' || (pos + 1 < line.size() && line[pos + 1] == '"'))) {
                if (line[pos] == '"') ++pos;
                field += line[pos++];
            }
            pos = std::min(line.find(',', pos), line.size());
        } else {
            std::size_t const end = std::min(line.find(',', pos), line.size());
            field.assign(line.substr(pos, end - pos));
            pos = end;
        }
        if (pos >= line.size()) break;
        ++pos;
    }
    fields.resize(count);
}

Lexicon readLexicon(fs::path const& folder, std::string const& charsetOverride, FieldLayout const* layout) {
    if (!fs::is_directory(folder)) throw ImportError(folder.string() + ": is not a folder");
    Lexicon lexicon;
    lexicon.folder = folder;
    lexicon.charset = charsetOverride;
    std::vector<fs::path> files;
    for (auto const& entry : fs::directory_iterator(folder))
        if (entry.path().extension() == ".csv") files.push_back(entry.path());
    if (files.empty()) throw ImportError(folder.string() + ": holds no *.csv file");
    std::sort(files.begin(), files.end());
    readSettings(lexicon);
    if (!charsetOverride.empty()) lexicon.charset = charsetOverride;
    if (lexicon.charset.empty()) {
        std::string_view const other = tool::otherEncoding(readFile(files.front()), tool::Encoding::Utf8);
        throw ImportError((folder / "dicrc").string() + ": no config-charset line; name the encoding: --charset " +
                          (other.empty() ? "UTF-8" : std::string(other)));
    }
    lexicon.matrix = readMatrix(folder / "matrix.def");
    lexicon.sourceRows = lexicon.matrix.rows;
    lexicon.sourceCols = lexicon.matrix.cols;
    for (std::uint32_t row = 0; row < lexicon.sourceRows; ++row) lexicon.rowBase.push_back(row);

    Reader reader{lexicon, layout ? *layout : FieldLayout{}, Cp932::table(), {}, {}, {}};
    bool featuresKnown = false;
    for (fs::path const& file : files) {
        readLines(file, lexicon.charset, &lexicon.leftOut.damaged, [&](std::string_view line, std::size_t number) {
            if (!featuresKnown) {
                std::size_t const features = featureCount(file, line, number);
                lexicon.shortUnits = features >= kShortUnitFeatures;
                if (layout == nullptr) reader.layout = layoutFor(features);
                reader.describeFields(features);
                featuresKnown = true;
            }
            reader.csvLine(file, line, number);
        });
    }
    if (std::string const fault = layout ? "" : reader.check.fault(reader.layout); !fault.empty())
        throw ImportError(folder.string() + ": " + fault);
    fs::path const unk = folder / "unk.def";
    readLines(unk, lexicon.charset, nullptr,
              [&](std::string_view line, std::size_t number) { reader.unknownLine(unk, line, number); });
    return lexicon;
}

}  // namespace TAVO::importer
