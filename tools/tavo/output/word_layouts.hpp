// What was written for words, to be copied when they come again.
#ifndef TAVO_TOOL_WORD_LAYOUTS_HPP
#define TAVO_TOOL_WORD_LAYOUTS_HPP

#include "output/out_buffer.hpp"
#include "output/words.hpp"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

namespace tool {

/// Of each word number its first spelling; most words of a text were there before.
class WordLayouts {
public:
    struct Layout {
        std::string_view text;
        std::uint32_t extra;  // what the writer keeps with it
    };

    /// To be called before the words of @p words are looked up. Forgets all when numbers begin anew, or much is kept.
    void begin(Words const& words) {
        if (version_ == words.table.stringsVersion() && bytes_.size() < kMostBytes) return;
        version_ = words.table.stringsVersion();
        entries_.clear();
        bytes_.clear();
    }

    /// The layout of the word, which write(OutBuffer&) makes, or its extra value, where there is none. Lives until the
    /// next call; kCopyBytes bytes may be read from where it begins.
    template <class Write>
    Layout of(std::uint32_t number, std::string_view shown, Write const& write) {
        if (number < entries_.size()) {
            Entry const& entry = entries_[number];
            char const* const kept = bytes_.view().data() + entry.at;
            if (entry.shownBytes == shown.size() && isEqual(kept, shown))
                return {{kept + entry.shownBytes, entry.textBytes}, entry.extra};
        }
        return made(number, shown, write);
    }

    /// Appends the text of @p layout to @p out.
    static void append(OutBuffer& out, Layout const& layout) {
        std::size_t const size = layout.text.size();
        if (size > kCopyBytes) return out.append(layout.text);
        char* const to = out.reserve(kCopyBytes);
        std::memcpy(to, layout.text.data(), kCopyBytes);
        out.finish(to + size);
    }

private:
    static constexpr std::size_t kCopyBytes = 64;

    template <class Write>
    Layout made(std::uint32_t number, std::string_view shown, Write const& write) {
        if (number >= entries_.size()) entries_.resize(number + std::size_t{1} + entries_.size());
        made_.clear();
        std::uint32_t const extra = write(made_);
        made_.reserve(kCopyBytes);
        Entry& entry = entries_[number];
        if (entry.shownBytes == 0) {
            entry = {static_cast<std::uint32_t>(bytes_.size()), static_cast<std::uint32_t>(shown.size()),
                     static_cast<std::uint32_t>(made_.size()), extra};
            bytes_.append(shown);
            bytes_.append(made_.view());
            bytes_.reserve(kCopyBytes);
        }
        return {made_.view(), extra};
    }

    static bool isEqual(char const* kept, std::string_view shown) noexcept {
        std::size_t const size = shown.size();
        if (size > 8) return std::memcmp(kept, shown.data(), size) == 0;
        if (size < 4)
            return kept[0] == shown[0] && kept[size / 2] == shown[size / 2] && kept[size - 1] == shown[size - 1];
        return bytesAt(kept) == bytesAt(shown.data()) && bytesAt(kept + size - 4) == bytesAt(shown.data() + size - 4);
    }
    static std::uint32_t bytesAt(char const* place) noexcept {
        std::uint32_t bytes = 0;
        std::memcpy(&bytes, place, sizeof bytes);
        return bytes;
    }

    static constexpr std::size_t kMostBytes = std::size_t{1} << 25;

    struct Entry {
        std::uint32_t at = 0, shownBytes = 0, textBytes = 0, extra = 0;
    };

    std::uint64_t version_ = 0;
    std::vector<Entry> entries_;  // by word number
    OutBuffer bytes_;             // of each entry the word as it is shown, and its layout
    OutBuffer made_;
};

}  // namespace tool

#endif
