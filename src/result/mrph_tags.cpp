// A morpheme and the attributes that a person gave it.
#include "result/mrph_access.hpp"
#include "result/part_text.hpp"

#include <utility>

namespace TAVO {
namespace {

using TextAccessor = std::string (Mrph::*)(bool) const;

/// True when @p given is empty or what @p m answers, whole or in parts.
bool agrees(Mrph const& m, TextAccessor accessor, std::string const& given) {
    if (given.empty() || (m.*accessor)(true) == given) return true;
    std::string const inParts = (m.*accessor)(false);
    if (inParts == given) return true;
    std::string unmarked = given;
    dropMarks(unmarked, "-");
    return inParts == unmarked;
}

bool extAgrees(Mrph const& m, std::map<unsigned, std::string> const& given) {
    if (given.empty()) return true;
    std::vector<char const*> own;
    m.getExt(own);
    for (auto const& [field, text] : given)
        if (field >= own.size() || text != own[field]) return false;
    return true;
}

bool categoriesAgree(Mrph const& m, TagInfo const& info) {
    if (info.category1.empty() && info.category2.empty() && info.category3.empty()) return true;
    std::vector<unsigned short> own1, own2, own3;
    m.getCategory(own1, own2, own3);
    return (info.category1.empty() || info.category1 == own1) && (info.category2.empty() || info.category2 == own2) &&
           (info.category3.empty() || info.category3 == own3);
}

}  // namespace

bool MrphAccess::match(Mrph const& m, TagInfo const& info) {
    return (info.pid == 0 || info.pid == m.getPid()) && agrees(m, &Mrph::getStdForm, info.stdForm) &&
           agrees(m, &Mrph::getReadPron, info.readPron) && agrees(m, &Mrph::getRead, info.read) &&
           agrees(m, &Mrph::getPron, info.pron) && (info.group.empty() || info.group == m.getGroup()) &&
           (info.prosodicInfo.empty() || info.prosodicInfo == m.getProsodicInfo()) && categoriesAgree(m, info) &&
           extAgrees(m, info.ext);
}

void MrphAccess::setTagInfo(Mrph& m, TagInfo const& info) {
    constexpr std::pair<TextAccessor, std::pair<std::string TagInfo::*, std::string MrphCover::*>> kCompared[] = {
        {&Mrph::getStdForm, {&TagInfo::stdForm, &MrphCover::stdForm}},
        {&Mrph::getReadPron, {&TagInfo::readPron, &MrphCover::readPron}},
        {&Mrph::getRead, {&TagInfo::read, &MrphCover::read}},
        {&Mrph::getPron, {&TagInfo::pron, &MrphCover::pron}},
        {&Mrph::getLVRead, {&TagInfo::lvRead, &MrphCover::lvRead}},
    };
    MrphCover& cover = confirmCover(m);
    if (info.pid != 0) cover.pid = info.pid;
    for (auto const& [accessor, fields] : kCompared) {
        std::string const& given = info.*fields.first;
        if (!given.empty() && (m.*accessor)(true) != given) cover.*fields.second = given;
    }
    cover.keepsSlashes = m.owner_ != nullptr && m.owner_->settings.mode(Mode::DeleteSlash) == 0;
    if (!info.group.empty()) cover.group = info.group;
    if (!info.additionalInfo.empty()) cover.additionalInfo = info.additionalInfo;
    if (!info.prosodicInfo.empty()) cover.prosodicInfo = info.prosodicInfo;
    if (!info.ext.empty()) {
        cover.ext.assign(info.ext.rbegin()->first + std::size_t{1}, {});
        for (auto const& [field, text] : info.ext) cover.ext[field] = text;
    }
    if (!info.category1.empty()) cover.category1 = info.category1;
    if (!info.category2.empty()) cover.category2 = info.category2;
    if (!info.category3.empty()) cover.category3 = info.category3;
}

void MrphAccess::setBoundaryInfo(Mrph& m, BoundaryInfo const& info) {
    MrphCover& cover = confirmCover(m);
    cover.grammarType = info.grammarType;
    cover.prosodicType = info.prosodicType;
}

}  // namespace TAVO
