// A morpheme as one line of dictionary source text.
#include "base/text.hpp"
#include "dic/record_source.hpp"
#include "result/mrph_access.hpp"

#include <algorithm>
#include <limits>
#include <ostream>

namespace TAVO {
namespace {

/// The part forms with their separators: as the dictionary's source had them
/// when the form is the record's own.
std::string sourceForm(Mrph const& m) {
    MrphCover const* const cover = MrphAccess::cover(m);
    bool const ownForm = cover == nullptr || (cover->subMrphs.empty() && cover->form.empty());
    if (m.getPartCount() > 1 && ownForm) return MrphDic(MrphAccess::record(m)).partForm();
    std::string form;
    for (int i = 0; i < m.getPartCount(); ++i) {
        if (i > 0) form.push_back('-');
        form.append(escapeSource(MrphAccess::partForm(m, i), kFormMarks));
    }
    return form;
}

std::string sourceName(Mrph const& m, unsigned short pid, Dic const& dic) {
    AnalyzerContext const* const owner = MrphAccess::owner(m);
    char const* name = dic.getPartOfSPName(pid);
    if (*name == '\0' && owner != nullptr) name = owner->pos.name(pid);
    return escapeSource(name, kFormMarks);
}

std::string sourceNames(Mrph const& m, Dic const& dic) {
    std::string names = sourceName(m, m.getPid(), dic);
    for (int i = 0; i < m.getPartCount() && m.getPartCount() > 1; ++i)
        names.append("-").append(sourceName(m, m.getPartPid(i), dic));
    return names;
}

std::string sourceList(std::vector<unsigned short> const& numbers) {
    if (numbers.empty()) return "0";
    std::string list;
    for (unsigned short const number : numbers) {
        if (!list.empty()) list.push_back(':');
        list.append(std::to_string(number));
    }
    return list;
}

std::string sourceLine(Mrph const& m, Dic const& dic) {
    unsigned const partCount = MrphAccess::partCount(m);
    int const cost = std::clamp<int>(m.getCost(), 0, std::numeric_limits<std::uint8_t>::max());
    std::vector<unsigned short> category1, category2, category3;
    m.getCategory(category1, category2, category3);
    std::vector<char const*> ext;
    m.getExt(ext);

    std::string line = sourceForm(m);
    if (!line.empty() && isCommentLine(line)) line.insert(line.begin(), '\\');  // else the line would be a comment
    line.append(",").append(sourceNames(m, dic));
    line.append(",").append(std::to_string(cost));
    line.append(",").append(escapeSourceReading(MrphAccess::readPronPtr(m), partCount));
    line.append(",").append(escapeSourceReading(MrphAccess::stdFormPtr(m), partCount));
    for (char const* text : {m.getWordCooc(), m.getGroupCooc(), m.getGroup()})
        line.append(",").append(escapeSource(text, kTextMarks));
    for (auto const& list : {category1, category2, category3}) line.append(",").append(sourceList(list));
    line.append(",").append(escapeSource(m.getProsodicInfo(), kTextMarks));
    for (char const* field : ext) line.append(",").append(escapeSource(field, kTextMarks));
    return line;
}

}  // namespace

std::ostream& Mrph::source(std::ostream& os, Dic const* dic) const {
    if (dic == nullptr) return os << "ERROR: ILLEGAL USAGE" << std::endl;
    return os << sourceLine(*this, *dic) << '\n';
}

}  // namespace TAVO
