#include "cli/line_reader.hpp"

#include "cli/tool_error.hpp"
#include "text/line_text.hpp"

#include <algorithm>
#include <cstring>

namespace tool {

std::size_t Block::room() const noexcept { return capacity_ == 0 ? 0 : capacity_ - TAVO::kPaddingBytes - size_; }

void Block::grow() {
    std::size_t const capacity = std::max(capacity_ * 2, LineReader::kBlockBytes + TAVO::kPaddingBytes);
    auto bigger = std::make_unique_for_overwrite<char[]>(capacity);
    if (size_ != 0) std::memcpy(bigger.get(), data_.get(), size_);
    data_ = std::move(bigger);
    capacity_ = capacity;
}

void Block::append(std::string_view bytes) {
    while (room() < bytes.size()) grow();
    if (!bytes.empty()) std::memcpy(data_.get() + size_, bytes.data(), bytes.size());
    size_ += bytes.size();
}

void Block::seal(std::size_t size) noexcept {
    size_ = size;
    std::memset(data_.get() + size_, 0, TAVO::kPaddingBytes);
}

LineReader::LineReader(std::vector<std::string> paths, bool eager, Encoding encoding)
    : paths_(std::move(paths)), eager_(eager), encoding_(encoding) {}

bool LineReader::openNext() {
    while (opened_ < paths_.size()) {
        try {
            file_ = openInput(paths_[opened_++]);
            atStart_ = true;
            return true;
        } catch (ToolError const& error) {
            complain(error.what());
            failed_ = true;
        }
    }
    return false;
}

std::size_t LineReader::read(Block& block) {
    if (block.room() == 0) block.grow();
    try {
        std::size_t const n = readSome(file_.get(), block.data_.get() + block.size_, block.room(), paths_[opened_ - 1]);
        block.size_ += n;
        return n;
    } catch (ToolError const& error) {
        complain(error.what());
        failed_ = true;
        return 0;
    }
}

/// True when the block holds lines, false at the end of the file without any.
bool LineReader::fill(Block& block) {
    block.begin_ = block.size_ = 0;
    block.file = opened_ - 1;
    block.append(carried_);
    carried_.clear();
    for (;;) {
        std::size_t const before = block.size_;
        std::size_t const n = read(block);
        if (n == 0) {
            file_.close();
            if (block.size_ != 0) block.seal(block.size_);
            return block.size_ != 0;
        }
        if (!eager_ && block.room() != 0) continue;
        std::string_view const fresh(block.data_.get() + before, n);
        // A block may be filled by many reads, so its last line feed can lie before the fresh bytes.
        std::size_t const lineFeed = eager_ ? fresh.rfind('\n') : block.text().rfind('\n');
        if (lineFeed == std::string_view::npos) continue;
        std::size_t const end = (eager_ ? before : 0) + lineFeed + 1;
        carried_.assign(block.data_.get() + end, block.size_ - end);
        block.seal(end);
        return true;
    }
}

bool LineReader::next(Block& block) {
    for (;;) {
        if (file_.get() < 0 && !openNext()) return false;
        if (!fill(block)) continue;
        bool const marked = atStart_ && encoding_ == Encoding::Utf8 && block.text().starts_with(kByteOrderMark);
        atStart_ = false;
        if (marked) block.begin_ = kByteOrderMark.size();
        return true;
    }
}

}  // namespace tool
