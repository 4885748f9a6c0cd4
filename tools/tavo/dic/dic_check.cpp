// tavo dic check
#include "cli/file_io.hpp"
#include "cli/lexicon.hpp"
#include "dic/dic_command.hpp"
#include "dic/index_file.hpp"
#include "output/out_buffer.hpp"

#include "dic/conn_table.hpp"
#include "dic/dic.hpp"
#include "dic/dic_check.hpp"

namespace tool {

namespace {

/// Writes each fault as "path: text"; true when there is none.
bool report(std::string const& path, std::vector<std::string> const& faults) {
    OutBuffer out;
    for (std::string const& fault : faults) {
        out.append(path);
        out.append(": ");
        out.append(fault);
        out.append('\n');
    }
    if (faults.empty()) {
        out.append(path);
        out.append(": sound\n");
    }
    writeStandardOutput(out.view());
    return faults.empty();
}

}  // namespace

ExitStatus checkDictionary(DicOptions const& options) {
    bool sound = report(options.input, TAVO::checkDic(readFile(options.input)));
    if (options.connTable.empty()) return sound ? ExitStatus::Ok : ExitStatus::Data;
    sound = report(options.connTable, TAVO::checkConnTable(readFile(options.connTable))) && sound;
    if (!sound) return ExitStatus::Data;
    if (!TAVO::checkAdaptable(TAVO::ConnTable(false, options.connTable.c_str()),
                              TAVO::Dic(true, options.input.c_str()))) {
        report(options.input, {"its parts of speech are not those of " + options.connTable});
        return ExitStatus::Data;
    }
    for (std::string const& fault :
         {faultOfConnIndex(options.connTable), faultOfIndex(options.connTable, options.input)}) {
        if (fault.empty()) continue;
        writeStandardOutput(fault + "\n");
        sound = false;
    }
    return sound ? ExitStatus::Ok : ExitStatus::Data;
}

}  // namespace tool
