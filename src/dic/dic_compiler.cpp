#include "dic/dic_compiler.hpp"

#include "base/bytes.hpp"
#include "base/crc32.hpp"
#include "dic/file_access.hpp"

#include <algorithm>
#include <iostream>
#include <limits>

namespace TAVO {
namespace {

constexpr std::size_t kFormsPerDot = 10000;
constexpr std::size_t kFlagsB = 7;  // of a record's head

/// The first eight bytes of @p form as a number that compares as they do.
std::uint64_t prefixOf(std::string_view form) {
    std::uint64_t prefix = 0;
    for (std::size_t i = 0; i < sizeof prefix; ++i) {
        prefix = prefix << 8 | (i < form.size() ? static_cast<unsigned char>(form[i]) : 0U);
    }
    return prefix;
}

}  // namespace

DicCompiler::DicCompiler(std::vector<std::string> names, std::uint8_t version, std::uint8_t charType)
    : version_(version), charType_(charType), names_(std::move(names)) {
    ids_.reserve(names_.size());
    // More names than ids are refused by compile().
    for (std::size_t i = 0; i < std::min(names_.size(), kMaxNames); ++i) {
        ids_[names_[i]] = static_cast<std::uint16_t>(i + 1);
    }
}

bool DicCompiler::add(std::string_view line) {
    std::string error;
    if (add(line, error)) return true;
    std::cerr << error << '\n';
    return false;
}

bool DicCompiler::add(std::string_view line, std::string& error) {
    if (!record_.parse(line, error)) return false;
    std::size_t const begin = records_.size();
    if (!record_.serialize(records_, ids_, error)) return false;
    std::string const& form = record_.form;
    if (form.size() > std::numeric_limits<std::uint32_t>::max()) {
        records_.resize(begin);
        error = "Error: Too Long Word";
        return false;
    }
    items_.push_back({prefixOf(form), forms_.size(), begin, static_cast<std::uint32_t>(form.size()),
                      static_cast<std::uint32_t>(records_.size() - begin)});
    forms_ += form;
    return true;
}

bool DicCompiler::compile(std::ostream& out, bool verbose) {
    return compile(ByteSink([&out](std::string_view bytes) {
                       return static_cast<bool>(out.write(bytes.data(), static_cast<std::streamsize>(bytes.size())));
                   }),
                   verbose);
}

bool DicCompiler::compile(int handle, bool verbose) {
    return compile(ByteSink([handle](std::string_view bytes) {
                       return FileWrite(handle, bytes.data(), bytes.size()) == static_cast<std::int64_t>(bytes.size());
                   }),
                   verbose);
}

bool DicCompiler::fail(bool verbose, std::string text) {
    if (verbose) std::cerr << text << '\n';
    if (error_.empty()) error_ = std::move(text);
    return false;
}

bool DicCompiler::compile(ByteSink const& sink, bool verbose) {
    error_.clear();
    if (names_.size() > kMaxNames) return fail(verbose, "Error: Too Much PartOfSP");
    if (verbose) std::cerr << "Serializing Data...";
    sortItems();
    std::string chains;
    std::vector<TrieKey> const keys = makeKeys(chains, verbose);
    if (verbose) std::cerr << "Done\n";
    TrieBuilder builder;
    if (!builder.init(TrieBuilder::kDefaultCells, TrieBuilder::kDefaultLeafBytes)) {
        return fail(verbose, "Error: Not Enouph Memory fo TrieBuilder");  // callers compare this text
    }
    if (!builder.build(keys, verbose)) {
        error_ = builder.error();
        return fail(verbose, "Error: TrieBuilder.build Failed");
    }
    if (verbose) std::cerr << "Writing Dic...";
    if (!writeNames(sink) || !builder.write(sink)) {
        error_ = "Error: the dictionary could not be written";
        return false;
    }
    if (verbose) std::cerr << "Done\n";
    return true;
}

void DicCompiler::sortItems() {
    // Stable: the records of one form stay in the order of their lines.
    std::stable_sort(items_.begin(), items_.end(), [this](Item const& a, Item const& b) {
        return a.prefix != b.prefix ? a.prefix < b.prefix : formOf(a) < formOf(b);
    });
}

std::vector<TrieKey> DicCompiler::makeKeys(std::string& chains, bool verbose) const {
    std::vector<TrieKey> keys;
    chains.reserve(records_.size());
    for (std::size_t i = 0; i < items_.size(); ++i) {
        std::string_view const form = formOf(items_[i]);
        bool const first = i == 0 || formOf(items_[i - 1]) != form;
        bool const moreFollows = i + 1 < items_.size() && formOf(items_[i + 1]) == form;
        std::size_t const begin = chains.size();
        chains.append(records_, items_[i].record, items_[i].recordBytes);
        if (moreFollows) chains[begin + kFlagsB] |= static_cast<char>(MrphDic::kAnotherFollows);
        if (first) keys.push_back({form, std::string_view(chains).substr(begin, 0)});
        keys.back().chain = {keys.back().chain.data(), keys.back().chain.size() + items_[i].recordBytes};
        if (verbose && first && keys.size() % kFormsPerDot == 0) std::cerr << '.';
    }
    return keys;
}

bool DicCompiler::writeNames(ByteSink const& sink) const {
    std::string pool;
    std::string offsets;
    for (std::string const& name : names_) {
        appendU32(offsets, static_cast<std::uint32_t>(pool.size()));
        pool.append(name.c_str(), name.size() + 1);
    }
    std::string header{static_cast<char>(version_), static_cast<char>(charType_), '\0', '\0'};
    appendU32(header, static_cast<std::uint32_t>(16 + 5 * names_.size() + pool.size()));
    appendU16(header, static_cast<std::uint32_t>(names_.size()));
    appendU16(header, 0);
    appendU32(header, crc32(pool));
    return sink(header) && sink(std::string(names_.size(), '\0')) && sink(offsets) && sink(pool);
}

}  // namespace TAVO
