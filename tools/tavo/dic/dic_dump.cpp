// tavo dic dump
#include "cli/file_io.hpp"
#include "cli/lexicon.hpp"
#include "dic/dic_command.hpp"
#include "output/out_buffer.hpp"

#include "dic/dic.hpp"
#include "dic/record_source.hpp"

#include <optional>

namespace tool {

namespace {

constexpr std::size_t kWriteBytes = std::size_t{1} << 20;

/// True when reading the text that was written gives the same bytes.
bool survives(std::string_view sjis, std::string_view utf8) {
    std::string back;
    return !appendUtf8AsSjis(back, utf8) && back == sjis;
}

}  // namespace

ExitStatus dumpDictionary(DicOptions const& options) {
    std::optional<TAVO::Dic> loaded;
    namingDictionary(options.input, [&] { loaded.emplace(true, options.input.c_str()); });
    TAVO::Dic const& dic = *loaded;
    if (dic.trie() == nullptr) throw ToolError(ExitStatus::Data, options.input + ": damaged dictionary");
    OutBuffer out;
    std::size_t changed = 0;
    auto const write = [&](std::string const& form, TAVO::RecordChain chain) {
        for (; chain; chain = chain.next()) {
            std::string const sjis = TAVO::formatSourceLine(form, chain.record(), dic);
            std::string const line = fromSjis(sjis, options.encoding);
            if (options.encoding == Encoding::Utf8 && !survives(sjis, line)) ++changed;
            out.append(line);
            out.append('\n');
        }
        if (out.size() < kWriteBytes) return;
        writeStandardOutput(out.view());
        out.clear();
    };
    dic.trie()->visitAll(write);
    writeStandardOutput(out.view());
    if (changed == 0) return ExitStatus::Ok;
    complain(options.input + ": " + std::to_string(changed) +
             " lines hold codes that UTF-8 does not keep apart; --encoding sjis writes them exactly");
    return ExitStatus::Data;
}

}  // namespace tool
