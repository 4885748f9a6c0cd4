// From input files to output: reads blocks, analyses them on one or more
// threads and hands the results on in input order.
#ifndef TAVO_TOOL_PIPELINE_HPP
#define TAVO_TOOL_PIPELINE_HPP

#include "cli/block_analyser.hpp"
#include "cli/line_reader.hpp"

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace tool {

/// Receives output, one call at a time. What it throws ends the run.
using Sink = std::function<void(std::string_view)>;

/// What the input held, over all files.
struct InputReport {
    std::size_t invalidBytes = 0;
    std::string firstInvalidFile;
    std::size_t firstInvalidLine = 0;  // 1-based
    std::size_t longLines = 0;         // too long for more than the best analysis
    std::string firstLongFile;
    std::size_t firstLongLine = 0;
    /// Files that seem to be in another encoding, and in which. Their bytes are not among the invalid ones.
    struct OtherEncoding {
        std::string file;
        std::string_view encoding;
    };
    std::vector<OtherEncoding> otherEncodings;
};

/// Adds up the reports of blocks, which come in input order.
class InputCounter {
public:
    explicit InputCounter(LineReader const& reader) : reader_(reader) {}
    void add(std::size_t file, BlockReport const& block);
    /// To be asked for once, behind the last block.
    InputReport const& report() {
        endFile();
        return report_;
    }

private:
    void endFile();

    LineReader const& reader_;
    std::size_t file_ = 0;
    // Of the current file:
    std::size_t lines_ = 0;
    std::size_t invalidBytes_ = 0;
    std::size_t firstInvalidLine_ = 0;
    std::string_view otherEncoding_;
    InputReport report_;
};

/// Runs @p threads (at least 1) analysers. Before more than one is asked for,
/// TAVO::Tavo::readyForThread() must have been called. Exceptions of any thread
/// come out here, after all threads have ended.
InputReport runPipeline(LineReader& reader, TAVO::Tavo const& prototype, OutputOptions const& options,
                        std::size_t threads, Sink const& sink);

}  // namespace tool

#endif
