// A compiled record as a line of dictionary source text.
#ifndef TAVO_DIC_RECORD_SOURCE_HPP
#define TAVO_DIC_RECORD_SOURCE_HPP

#include "dic/dic.hpp"
#include "dic/mrph_dic.hpp"

#include <string>
#include <string_view>

namespace TAVO {

/// The line (without its end) that compiles to this record again. @p form is the
/// record's surface form, @p dic the dictionary that holds it. Fields left empty
/// at the end are left out.
std::string formatSourceLine(std::string_view form, MrphDic record, Dic const& dic);

}  // namespace TAVO

#endif
