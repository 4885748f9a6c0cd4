// The compiled form of a source record.
#include "base/bytes.hpp"
#include "dic/mrph_dic.hpp"
#include "dic/source_record.hpp"

#include <limits>

namespace TAVO {
namespace {

constexpr std::size_t kMaxCategories = std::numeric_limits<std::uint8_t>::max();

unsigned flagWhen(bool present, unsigned flag) { return present ? flag : 0U; }

void appendText(std::string& out, std::string const& text) { out.append(text.c_str(), text.size() + 1); }

void appendIds(std::string& out, std::vector<std::uint16_t> const& ids) {
    out.push_back(static_cast<char>(ids.size()));
    for (std::uint16_t const id : ids) appendU16(out, id);
}

/// The id of @p name; 0 with the error's text when it is not listed.
std::uint16_t lookUp(NameTable const& names, std::string const& name, std::string const& form, std::string& error) {
    auto const found = names.find(name);
    if (found != names.end()) return found->second;
    error = "Error: Unlisted PartOfSP: " + name + "(" + form + ")";
    return 0;
}

unsigned flagsA(SourceRecord const& record) {
    return flagWhen(record.leftMark, MrphDic::kLeftMark) | flagWhen(record.rightMark, MrphDic::kRightMark) |
           flagWhen(!record.group.empty(), MrphDic::kGroup) | flagWhen(!record.groupCooc.empty(), MrphDic::kGroupCooc) |
           flagWhen(!record.wordCooc.empty(), MrphDic::kWordCooc) | flagWhen(record.partCount > 1, MrphDic::kCompound) |
           flagWhen(!record.stdForm.empty(), MrphDic::kStdForm) |
           flagWhen(!record.readPron.empty(), MrphDic::kReadPron);
}

unsigned flagsB(SourceRecord const& record) {
    return flagWhen(record.moreFollows, MrphDic::kAnotherFollows) |
           flagWhen(!record.categories[0].empty(), MrphDic::kCat1) |
           flagWhen(!record.categories[1].empty(), MrphDic::kCat2) |
           flagWhen(!record.categories[2].empty(), MrphDic::kCat3) |
           flagWhen(!record.prosodicInfo.empty(), MrphDic::kProsodicInfo);
}

}  // namespace

bool SourceRecord::serialize(std::string& out, NameTable const& names, std::string& error) const {
    std::uint16_t const id = lookUp(names, partOfSP, form, error);
    if (id == 0) return false;
    std::vector<std::uint16_t> partIds(partNames.empty() ? partCount : 0, id);
    for (std::string const& name : partNames) {
        partIds.push_back(lookUp(names, name, form, error));
        if (partIds.back() == 0) return false;
    }
    for (auto const& list : categories) {
        if (list.size() <= kMaxCategories) continue;
        error = "Error: Too Much Category Number";
        return false;
    }
    std::size_t const begin = out.size();
    out.append(MrphDic::kHeadBytes, '\0');
    appendBody(out, partIds);
    std::size_t const sizeBytes = out.size() - begin;
    if (sizeBytes > MrphDic::kMaxBytes) {
        out.resize(begin);
        error = "Error: Too Big MrphData";
        return false;
    }
    std::string head;
    appendU16(head, static_cast<std::uint32_t>(sizeBytes));
    appendU16(head, id);
    head += {static_cast<char>(cost), '\0', static_cast<char>(flagsA(*this)), static_cast<char>(flagsB(*this))};
    out.replace(begin, head.size(), head);
    return true;
}

void SourceRecord::appendBody(std::string& out, std::vector<std::uint16_t> const& partIds) const {
    if (partCount > 1) {
        appendIds(out, partIds);
        appendText(out, partForm);
    }
    for (std::string const* const text : {&readPron, &stdForm, &wordCooc, &groupCooc, &group}) {
        if (!text->empty()) appendText(out, *text);
    }
    for (auto const& list : categories) {
        if (!list.empty()) appendIds(out, list);
    }
    if (!prosodicInfo.empty()) appendText(out, prosodicInfo);
    for (std::string const& text : ext) appendText(out, text);
}

}  // namespace TAVO
