#include "api/bulk_arrays.hpp"

#include "base/sjis.hpp"
#include "engine/special_records.hpp"
#include "result/mrph_access.hpp"
#include "split/sentence_splitter.hpp"

#include <functional>
#include <stdexcept>
#include <utility>

namespace TAVO::api {
namespace {

constexpr unsigned kTextFields[] = {
    TAVO_BULK_FORM, TAVO_BULK_PART_OF_SP, TAVO_BULK_STD_FORM, TAVO_BULK_READ,
    TAVO_BULK_PRON, TAVO_BULK_GROUP,      TAVO_BULK_INFO,     TAVO_BULK_DISPLAY_PART_OF_SP};

/// True when the morpheme's texts but its form are those of its record, and the
/// record outlives the text: those made for tags do not.
bool recordSaysAll(Mrph const& mrph) {
    if (MrphAccess::cover(mrph) != nullptr) return false;
    unsigned char const* const record = MrphAccess::record(mrph);
    if (record == kUnknownRecord.data()) return true;
    for (DicEntry const& entry : MrphAccess::owner(mrph)->dics.entries())
        if (entry.dic->contains(record)) return true;
    return false;
}

bool isInside(std::string_view span, std::string_view text) {
    std::less_equal<char const*> const notBehind;  // "<=" must not compare unrelated texts
    return notBehind(text.data(), span.data()) && notBehind(span.data() + span.size(), text.data() + text.size());
}

/// Throws where more than line breaks was taken out of the sentence's text.
void requireNoTags(Sentence const& sentence) {
    TextOrigins origins;
    if (sentence.ownedText && deleteLineBreaks(sentence.given, origins) != sentence.text)
        throw std::logic_error("LOGIC_ERROR: tags changed the text, so that only TAVO_BULK_ANALYZED tells places");
}

}  // namespace

std::uint32_t PositionCounter::at(std::size_t byte) {
    if (!inCharacters_) return static_cast<std::uint32_t>(byte);
    if (byte < byte_) byte_ = characters_ = 0;
    for (; byte_ < byte; ++characters_) byte_ += charWidth(text_, byte_);
    return characters_;
}

void BulkArrays::start(unsigned what) {
    what_ = what;
    textFields_.clear();
    for (unsigned const field : kTextFields)
        if ((what & field) != 0) textFields_.push_back(field);
    for (auto* const column : {&rowEnd_, &rowLength_, &rowFailed_, &rowText_, &rowConnectionCost_, &rowWordCost_,
                               &start_, &length_, &texts_, &fields_})
        column->clear();
    cost_.clear();
    pid_.clear();
    flags_.clear();
    strings_.clear();
    records_.clear(textFields_.size());
}

void BulkArrays::addRow(BulkRow const& row) {
    std::string_view const text = inAnalyzedText() ? row.analyzed : row.given;
    PositionCounter positions(text, asked(TAVO_BULK_CHARACTERS));
    for (std::size_t i = 0; i < row.morphemes.size(); ++i) addSentence(row, i, positions);
    rowLength_.push_back(positions.end());
    rowFailed_.push_back(row.failed);
    rowText_.push_back(inAnalyzedText() ? strings_.add(text) : 0);
    rowConnectionCost_.push_back(row.cost.connection);
    rowWordCost_.push_back(row.cost.word);
    rowEnd_.push_back(static_cast<std::uint32_t>(start_.size()));
}

void BulkArrays::addSentence(BulkRow const& row, std::size_t sentence, PositionCounter& positions) {
    std::vector<Mrph> const& morphemes = *row.morphemes[sentence];
    if (morphemes.empty()) return;
    Sentence const& source = MrphAccess::owner(morphemes.front())->sentences[sentence];
    std::size_t const base = inAnalyzedText() ? row.analyzedBegin[sentence]
                                              : static_cast<std::size_t>(source.given.data() - row.given.data());
    if (!inAnalyzedText()) requireNoTags(source);
    std::size_t last = base;  // where an annotation stands
    for (Mrph const& mrph : morphemes) {
        std::string_view const span = MrphAccess::rawForm(mrph);
        if (!isInside(span, source.text)) {  // an annotation has a text of its own
            addMorpheme(mrph, positions.at(last), 0);
            continue;
        }
        auto const inText = static_cast<std::size_t>(span.data() - source.text.data());
        TextSpan place{inText, inText + span.size()};
        if (!inAnalyzedText() && source.ownedText)
            place = {source.ownedText->origins.begin(place.begin), source.ownedText->origins.end(place.end)};
        last = base + place.end;
        std::uint32_t const start = positions.at(base + place.begin);
        addMorpheme(mrph, start, positions.at(last) - start);
    }
}

void BulkArrays::addMorpheme(Mrph const& mrph, std::uint32_t start, std::uint32_t length) {
    unsigned short const pid = mrph.getPid();
    start_.push_back(start);
    length_.push_back(length);
    cost_.push_back(mrph.getCost());
    pid_.push_back(pid);
    flags_.push_back(static_cast<std::uint8_t>((MrphAccess::isUnknown(mrph) ? TAVO_BULK_UNKNOWN : 0) |
                                               (mrph.isAnnotation() ? TAVO_BULK_ANNOTATION : 0)));
    if (!textFields_.empty()) addTexts(mrph);
}

void BulkArrays::addTexts(Mrph const& mrph) {
    // Only a form can differ between two morphemes of one record without cover,
    // and without cover it is the text they stand for.
    bool const shared = recordSaysAll(mrph);
    std::size_t const width = textFields_.size();
    if (std::uint32_t const* const known = shared ? records_.find(MrphAccess::record(mrph)) : nullptr) {
        texts_.insert(texts_.end(), known, known + width);
        return;
    }
    for (unsigned const field : textFields_) texts_.push_back(textOf(mrph, field));
    if (shared) records_.add(MrphAccess::record(mrph), texts_.data() + texts_.size() - width);
}

std::uint32_t BulkArrays::textOf(Mrph const& mrph, unsigned field) {
    switch (field) {
        case TAVO_BULK_FORM:
            return MrphAccess::form(mrph) == MrphAccess::rawForm(mrph) && !mrph.isAnnotation()
                       ? 0
                       : strings_.add(MrphAccess::form(mrph));
        case TAVO_BULK_PART_OF_SP:
            return strings_.add(mrph.getPartOfSP());
        case TAVO_BULK_DISPLAY_PART_OF_SP:
            return strings_.add(mrph.getDisplayPartOfSP());
        case TAVO_BULK_STD_FORM:
            return *MrphAccess::stdFormPtr(mrph) == '\0' ? 0 : strings_.add(mrph.getStdForm(true));
        case TAVO_BULK_READ:
            return strings_.add(mrph.getRead(true));
        case TAVO_BULK_PRON:
            return strings_.add(mrph.getPron(true));
        case TAVO_BULK_GROUP:
            return strings_.add(mrph.getGroup());
        default:
            return strings_.add(mrph.getAdditionalInfo());
    }
}

void BulkArrays::describe(tavo_bulk_t& out) {
    std::size_t const count = rowEnd_.empty() ? 0 : rowEnd_.back();  // a row that failed may have left more
    std::size_t const width = textFields_.size();
    fields_.resize(count * width);
    for (std::size_t field = 0; field < width; ++field)
        for (std::size_t i = 0; i < count; ++i) fields_[field * count + i] = texts_[i * width + field];
    out.rowCount = rowEnd_.size();
    out.morphemeCount = count;
    out.fieldCount = width;
    out.stringBytes = strings_.size();
    out.rowEnd = rowEnd_.data();
    out.rowLength = rowLength_.data();
    out.rowFailed = rowFailed_.data();
    out.rowText = rowText_.data();
    out.rowConnectionCost = rowConnectionCost_.data();
    out.rowWordCost = rowWordCost_.data();
    out.start = start_.data();
    out.length = length_.data();
    out.cost = cost_.data();
    out.pid = pid_.data();
    out.flags = flags_.data();
    out.fields = fields_.data();
    out.strings = strings_.data();
}

}  // namespace TAVO::api
