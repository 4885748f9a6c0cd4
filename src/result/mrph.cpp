// Construction, copying and the values of the whole morpheme but for its texts.
#include "engine/special_records.hpp"
#include "result/mrph_access.hpp"

#include <algorithm>
#include <stdexcept>

namespace TAVO {
namespace {

constexpr unsigned short kPidWithoutRecord = 3;
constexpr int kCostWithoutRecord = 255;

std::uint32_t partCountOf(unsigned char const* record) noexcept {
    return record != nullptr ? MrphDic(record).partCount() : 1U;
}

bool formIsInCover(char const* form, MrphCover const* cover) noexcept {
    return cover != nullptr && form == cover->form.data();
}

unsigned char toCount(std::size_t count) noexcept {
    return static_cast<unsigned char>(std::min<std::size_t>(count, 255));
}

}  // namespace

Mrph::Mrph(char const* text, unsigned int length, unsigned char const* dic, AnalyzerContext const* owner)
    : form_(text),
      formLength_(length),
      dic_(dic),
      rawForm_(text),
      owner_(owner),
      rawFormLength_(length),
      partCount_(partCountOf(dic)) {}

Mrph::Mrph(char const* text, LatticeNode const* node, AnalyzerContext const* owner)
    : form_(text),
      formLength_(node->length),
      dic_(node->record),
      rawForm_(text),
      owner_(owner),
      node_(node),
      rawFormLength_(node->length),
      partCount_(partCountOf(node->record)) {}

Mrph::Mrph(Mrph const& other)
    : form_(other.form_),
      formLength_(other.formLength_),
      sentence_(other.sentence_),
      dic_(other.dic_),
      rawForm_(other.rawForm_),
      owner_(other.owner_),
      node_(other.node_),
      rawFormLength_(other.rawFormLength_),
      partCount_(other.partCount_),
      dicIndex_(other.dicIndex_) {
    if (!other.cover_) return;
    cover_ = std::make_unique<MrphCover>(*other.cover_);
    if (formIsInCover(other.form_, other.cover_.get())) form_ = cover_->form.data();
}

Mrph::Mrph(Mrph const& other, unsigned char const* dic) : Mrph(other) {
    dic_ = dic;
    if (!cover_ || cover_->subMrphs.empty()) partCount_ = partCountOf(dic);
}

// A form inside the cover stays where it is, since the cover itself does not move.
Mrph::Mrph(Mrph&& other) noexcept = default;
Mrph& Mrph::operator=(Mrph&& other) noexcept = default;

Mrph& Mrph::operator=(Mrph const& other) {
    if (this != &other) *this = Mrph(other);
    return *this;
}

Mrph::~Mrph() = default;

char const* MrphAccess::text(Mrph const& m, std::string MrphCover::*own, RecordText field) noexcept {
    if (MrphCover const* cover = m.cover_.get(); cover != nullptr) {
        std::string const& value = cover->*own;
        if (!value.empty() || cover->replacesRecord) return value.c_str();
    }
    return m.dic_ != nullptr ? (MrphDic(m.dic_).*field)() : "";
}

MrphCover& MrphAccess::confirmCover(Mrph const& m) {
    if (!m.cover_) m.cover_ = std::make_unique<MrphCover>();
    return *m.cover_;
}

void MrphAccess::setForm(Mrph& m, std::string form) {
    MrphCover& cover = confirmCover(m);
    cover.form = std::move(form);
    m.form_ = cover.form.data();
    m.formLength_ = static_cast<std::uint32_t>(cover.form.size());
}

Mrph const* MrphAccess::storeAlt(Mrph const& m) {
    if (m.owner_ == nullptr) return nullptr;
    return &m.owner_->alternatives.emplace_back(m);
}

unsigned short Mrph::getPid() const {
    if (cover_ && cover_->pid != 0) return cover_->pid;
    return dic_ != nullptr ? MrphDic(dic_).pid() : kPidWithoutRecord;
}

int Mrph::getCost() const {
    if (cover_ && cover_->cost != MrphCover::kNoCost) return cover_->cost;
    return dic_ != nullptr ? MrphDic(dic_).cost() : kCostWithoutRecord;
}

char const* Mrph::getPartOfSP() const {
    if (cover_ && !cover_->className.empty()) return cover_->className.c_str();
    return owner_ != nullptr ? owner_->pos.name(getPid()) : "";
}

std::string Mrph::getDisplayPartOfSP() const { return displayPosName(getPartOfSP()); }

bool Mrph::isUndef() const { return owner_ != nullptr && owner_->pos.isUndef(getPid()); }

bool Mrph::isAnnotation() const { return dic_ == kAnnotationRecord.data(); }

bool Mrph::isFirstDic() const {
    if (owner_ == nullptr || dic_ == nullptr || owner_->dics.entries().empty()) return false;
    Dic const* first = owner_->dics.entries().front().dic;
    return first != nullptr && first->contains(dic_);
}

int Mrph::getPartCount() const { return static_cast<int>(partCount_); }

char const* Mrph::getGroup() const { return MrphAccess::text(*this, &MrphCover::group, &MrphDic::group); }

char const* Mrph::getProsodicInfo() const {
    return MrphAccess::text(*this, &MrphCover::prosodicInfo, &MrphDic::prosodicInfo);
}

char const* Mrph::getAdditionalInfo() const { return MrphAccess::coverText(*this, &MrphCover::additionalInfo); }
char const* Mrph::getGrammarType() const { return MrphAccess::coverText(*this, &MrphCover::grammarType); }
char const* Mrph::getProsodicType() const { return MrphAccess::coverText(*this, &MrphCover::prosodicType); }
char const* Mrph::getWordCooc() const { return dic_ != nullptr ? MrphDic(dic_).wordCooc() : ""; }
char const* Mrph::getGroupCooc() const { return dic_ != nullptr ? MrphDic(dic_).groupCooc() : ""; }

void Mrph::getCategory(std::vector<unsigned short>& category1, std::vector<unsigned short>& category2,
                       std::vector<unsigned short>& category3) const {
    auto const list = [this](std::vector<unsigned short> MrphCover::*own, unsigned number) {
        if (cover_ && (cover_->replacesRecord || !((*cover_).*own).empty())) return (*cover_).*own;
        return dic_ != nullptr ? MrphDic(dic_).category(number) : std::vector<unsigned short>();
    };
    category1 = list(&MrphCover::category1, 1);
    category2 = list(&MrphCover::category2, 2);
    category3 = list(&MrphCover::category3, 3);
}

void Mrph::getCategoryCount(unsigned char& count1, unsigned char& count2, unsigned char& count3) const {
    std::vector<unsigned short> category1, category2, category3;
    getCategory(category1, category2, category3);
    count1 = toCount(category1.size());
    count2 = toCount(category2.size());
    count3 = toCount(category3.size());
}

void Mrph::getExt(std::vector<char const*>& fields) const {
    fields.clear();
    if (cover_ && (cover_->replacesRecord || !cover_->ext.empty())) {
        for (std::string const& field : cover_->ext) fields.push_back(field.c_str());
    } else if (dic_ != nullptr) {
        fields = MrphDic(dic_).ext();
    }
}

int Mrph::getExtCount() const {
    std::vector<char const*> fields;
    getExt(fields);
    return static_cast<int>(fields.size());
}

char const* Mrph::getExt(int index) const {
    std::vector<char const*> fields;
    getExt(fields);
    if (index < 0 || static_cast<std::size_t>(index) >= fields.size())
        throw std::range_error("RANGE_ERROR: Mrph::getExt()");
    return fields[static_cast<std::size_t>(index)];
}

namespace {

/// Calls visit(record, length) for every other candidate, of the same length unless the mode lets them differ.
template <class Visit>
void eachAlternative(Mrph const& m, Visit visit) {
    AnalyzerContext const* owner = MrphAccess::owner(m);
    if (owner == nullptr || MrphAccess::node(m) == nullptr) return;
    bool const anyLength = owner->settings.mode(Mode::Alternative) == 1;
    auto const take = [&](unsigned char const* record, std::uint32_t length) {
        if (record == MrphAccess::record(m) || (!anyLength && length != m.getFormLength())) return;
        if (MrphDic(record).pid() != ConnTable::kUnknownId) visit(record, length);
    };
    owner->eachCandidate(MrphAccess::node(m), MrphAccess::rawForm(m).data(), take);
}

}  // namespace

int Mrph::getAltCount() const {
    int count = 0;
    eachAlternative(*this, [&count](unsigned char const*, std::uint32_t) { ++count; });
    return count;
}

void Mrph::getAlt(std::vector<Mrph>& alternatives) const {
    std::vector<Mrph> found;
    eachAlternative(*this, [&](unsigned char const* record, std::uint32_t length) {
        Mrph& added = found.emplace_back(Mrph(rawForm_, length, record, owner_));
        added.node_ = node_;  // their alternatives are found by one node
        added.sentence_ = sentence_;
    });
    alternatives = std::move(found);
}

void Mrph::clearError() const { error_.reset(); }

int Mrph::setErrorWhat(int code, std::string text) const {
    error_ = std::make_unique<std::pair<int, std::string>>(code, std::move(text));
    return code;
}

int Mrph::getErrorCode() const { return error_ ? error_->first : 0; }
char const* Mrph::getErrorWhat() const { return error_ ? error_->second.c_str() : ""; }

}  // namespace TAVO
