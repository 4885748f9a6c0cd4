#include "text/lexicon_version.hpp"

#include "base/bytes.hpp"
#include "base/stamp.hpp"
#include "core/impl.hpp"
#include "dic/pools.hpp"
#include "text/lexicon_places.hpp"

#include <tavo/error.hpp>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace TAVO {

namespace {

namespace fs = std::filesystem;

/// Keys whose values are paths; each of a dictionary may have a second one behind a comma.
constexpr char const* kPathKeys[] = {
    "Dic",           "ConnTable",   "CommentRule", "ReduceRule",      "PublicPartOfSP", "NumberPartOfSP",
    "MajorPartOfSP", "ConvertRule", "EndFormRule", "CooccurrenceRule"};

std::string inFolder(fs::path const& folder, std::string const& path) {
    return path.empty() || path == kNoFile ? path : (folder / path).string();
}

/// Paths count from the folder of the init file.
void rebase(InitValues& values, fs::path const& folder) {
    for (char const* key : kPathKeys) {
        auto const found = values.find(key);
        if (found == values.end()) continue;
        for (std::string& value : found->second) {
            std::size_t const comma = std::string_view(key) == "Dic" ? value.find(',') : std::string::npos;
            std::string const second =
                comma == std::string::npos ? "" : "," + inFolder(folder, value.substr(comma + 1));
            value = inFolder(folder, value.substr(0, comma)) + second;
        }
    }
}

/// True when the dictionaries and the table that an init file names lie in @p folder: it was not moved since it was
/// written.
bool namesOwnFolder(InitValues const& values, fs::path const& folder) {
    for (char const* key : {"Dic", "ConnTable"}) {
        auto const found = values.find(key);
        if (found == values.end()) continue;
        for (std::string const& value : found->second) {
            std::error_code failed;
            fs::path const file = value.substr(0, value.find(','));
            if (!fs::equivalent(file.parent_path(), folder, failed)) return false;
        }
    }
    return true;
}

/// What to apply for a folder with a lexicon. Of an init file that was moved only what names no files counts: they are
/// taken by their names.
InitValues valuesOfFolder(std::string const& folder) {
    InitValues values;
    fs::path const initFile = fs::path(folder) / "tavo.init";
    std::error_code ignored;
    if (fs::exists(initFile, ignored)) values = readInitFile(initFile.string());
    rebase(values, folder);
    if (!namesOwnFolder(values, folder))
        for (char const* key : kPathKeys) values.erase(key);
    if (!values.contains("Dic")) values["Dic"] = dictionariesIn(folder);
    return values;
}

InitValues valuesOf(std::string const& path) {
    std::error_code ignored;
    if (fs::is_directory(path, ignored)) {
        if (!holdsLexicon(path))
            throw file_not_found(path +
                                 ": no lexicon: it has no SysDic and ConnTable; name the folder that "
                                 "`make lexicon` or `tavo import` made, or an init file");
        return valuesOfFolder(path);
    }
    InitValues values = readInitFile(path);
    rebase(values, fs::absolute(path, ignored).parent_path());
    return values;
}

std::string textOf(std::string const& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

std::span<unsigned char const> bytesOf(LexiconFile const& file) noexcept {
    return {reinterpret_cast<unsigned char const*>(file.bytes.data()), file.bytes.size()};
}

std::string_view charsOf(LexiconFile const& file) noexcept {
    return {reinterpret_cast<char const*>(file.bytes.data()), file.bytes.size()};
}

/// The last value of @p key; empty when there is none.
std::string lastOf(InitValues const& values, std::string_view key) {
    auto const found = values.find(key);
    return found == values.end() ? std::string() : found->second.back();
}

}  // namespace

LexiconVersion::LexiconVersion(std::string path, LexiconOptions options)
    : path_(path.empty() ? findLexicon() : std::move(path)), options_(std::move(options)) {
    open([this] {
        InitValues values = valuesOf(path_);
        applyOptions(values);
        openFiles(values);
        applyRules(values);
    });
}

LexiconVersion::LexiconVersion(std::span<LexiconFile const> files, LexiconOptions options)
    : options_(std::move(options)), files_(files.begin(), files.end()) {
    open([this] {
        InitValues values;
        applyOptions(values);
        openMemory();
        applyRules(values);
    });
}

template <class Load>
void LexiconVersion::open(Load load) {
    PoolLock const lock;
    try {
        load();
        attach();
    } catch (...) {
        letGo();
        throw;
    }
}

LexiconVersion::~LexiconVersion() {
    PoolLock const lock;
    letGo();
}

void LexiconVersion::letGo() noexcept {
    prototype_.offDic();
    for (auto const& dic : dics_) sharedPools().indexes.forget(dic->serial());
    if (table_ != nullptr) sharedPools().indexes.forget(table_->serial());
    dics_.clear();
}

std::shared_ptr<LexiconVersion const> LexiconVersion::reloaded() const {
    if (files_.empty()) return std::make_shared<LexiconVersion const>(path_, options_);
    return std::make_shared<LexiconVersion const>(std::span(files_), options_);
}

LexiconFile const* LexiconVersion::file(std::string_view name) const noexcept {
    auto const found =
        std::find_if(files_.begin(), files_.end(), [name](LexiconFile const& file) { return file.name == name; });
    return found == files_.end() ? nullptr : &*found;
}

void LexiconVersion::applyOptions(InitValues& values) {
    for (auto const& [key, value] : options_.modes) {
        bool const isMode =
            std::any_of(kModes.begin(), kModes.end(), [&key = key](ModeInfo const& info) { return key == info.key; });
        if (!isMode)
            throw std::invalid_argument("INVALID_ARGUMENT: Lexicon::open(): \"" + key +
                                        "\" is no mode of an init file (docs/init-file.md)");
        values[key] = {std::to_string(value)};
    }
    TavoAccess::impl(prototype_).applySettings(prototype_, values, path_.empty() ? "modes" : path_);
    prototype_.setTaggedInputMode(0);
    prototype_.setDelimitCRLFMode(1);
    prototype_.setDeleteCRLFMode(1);
    if (!options_.commentRules.empty()) values["CommentRule"] = {options_.commentRules};
    if (!options_.reduceRules.empty()) values["ReduceRule"] = {options_.reduceRules};
}

void LexiconVersion::openFiles(InitValues& values) {
    std::error_code ignored;
    bool const isFolder = fs::is_directory(path_, ignored);
    bool const isComplete = values.contains("Dic") && values.contains("ConnTable");
    std::string const folder = isFolder ? path_ : isComplete ? std::string() : findLexicon();
    if (!values.contains("Dic")) values["Dic"] = dictionariesIn(folder);
    if (!values.contains("ConnTable")) values["ConnTable"] = {(fs::path(folder) / "ConnTable").string()};
    for (std::string const& dictionary : options_.dictionaries) addDictionaryFile(dictionary);
    for (std::string const& dictionary : values["Dic"]) addDictionaryFile(dictionary);
    openTable(values["ConnTable"].back());
    for (TableCompanion const& companion : kTableCompanions) {
        std::string const beside = tableCompanion(table_->path(), companion.key);
        if (!values.contains(companion.key) && !beside.empty()) values[std::string(companion.key)] = {beside};
    }
}

void LexiconVersion::openMemory() {
    for (std::string const& dictionary : options_.dictionaries) addDictionaryFile(dictionary);
    std::string name = "SysDic";
    for (int part = 2; LexiconFile const* const found = file(name); ++part) {
        addDictionary(name, [&] { return std::make_unique<Dic const>(bytesOf(*found), name); });
        name = "SysDic" + std::to_string(part);
    }
    LexiconFile const* const table = file("ConnTable");
    if (table == nullptr || name == "SysDic")
        throw std::invalid_argument(
            "INVALID_ARGUMENT: Lexicon::open(): the files in memory need \"SysDic\" and "
            "\"ConnTable\"");
    table_ = std::make_unique<ConnTable const>(bytesOf(*table), "ConnTable");
    IndexPool& pool = sharedPools().indexes;
    auto const indexOf = [this](std::string const& path) {
        LexiconFile const* const found = file(indexPath(path));
        return found != nullptr ? bytesOf(*found) : std::span<unsigned char const>();
    };
    auto const conn = pool.connIndex(*table_, indexOf("ConnTable"));
    for (auto const& dic : dics_)
        if (file(dic->path()) != nullptr && dic->trie() != nullptr)
            pool.dicIndex(*dic, *table_, *conn, indexOf(dic->path()));
}

void LexiconVersion::openTable(std::string const& path) {
    try {
        table_ = std::make_unique<ConnTable const>(false, path.c_str());
    } catch (illegal_format const&) {
        throw illegal_format(path + ": damaged, or no connection table; take it from its source anew");
    }
}

template <class Load>
void LexiconVersion::addDictionary(std::string const& path, Load load) {
    constexpr char kCause[] = ": damaged, no compiled dictionary, or one of another version; make it anew";
    try {
        dics_.push_back(load());
        if (dics_.back()->trie() != nullptr) return;
    } catch (invalid_dictionary_version const&) {
    } catch (invalid_dictionary_char_type const&) {
    } catch (illegal_format const&) {
    }
    throw illegal_format(path + kCause);
}

void LexiconVersion::addDictionaryFile(std::string const& path) {
    std::string const compiled = path.substr(0, path.find(','));  // a source may stand behind it
    bool const known =
        std::any_of(dics_.begin(), dics_.end(), [&](auto const& dic) { return dic->path() == compiled; });
    if (known) return;
    bool const mapped = TavoAccess::impl(prototype_).context.settings.mode(Mode::MemoryMapped) == 1;
    addDictionary(compiled, [&] { return std::make_unique<Dic const>(mapped, compiled.c_str()); });
}

void LexiconVersion::applyRules(InitValues const& values) {
    auto const set = [&](char const* key, void (Tavo::*setter)(char const*)) {
        std::string const path = lastOf(values, key);
        if (!path.empty() && path != kNoFile) (prototype_.*setter)(path.c_str());
    };
    set("CommentRule", &Tavo::setCommentRulePath);
    set("ConvertRule", &Tavo::setConvertRulePath);
    set("PublicPartOfSP", &Tavo::setPublicPartOfSPPath);
    set("MajorPartOfSP", &Tavo::setMajorPartOfSPPath);
    set("NumberPartOfSP", &Tavo::setNumberPartOfSPPath);
    set("ReduceRule", &Tavo::setReduceRulePath);
    set("EndFormRule", &Tavo::setEndFormRulePath);
    set("CooccurrenceRule", &Tavo::setCooccurrenceRulePath);
    TavoAccess::Impl& impl = TavoAccess::impl(prototype_);
    if (LexiconFile const* const rules = file("reduce.rules"); rules != nullptr && !values.contains("ReduceRule")) {
        std::string_view const text = charsOf(*rules);
        impl.reduce.load("reduce.rules", &text);
    }
    if (LexiconFile const* const rules = file("end.rules")) {
        std::string_view const text = charsOf(*rules);
        impl.context.endForms.load("end.rules", &text);
    }
    if (LexiconFile const* const rules = file("cooc.rules"); rules != nullptr && !values.contains("CooccurrenceRule")) {
        std::string_view const text = charsOf(*rules);
        impl.cooccurrence.load("cooc.rules", &text);
    }
    if (LexiconFile const* const list = file("number.list")) {
        std::string_view const text = charsOf(*list);
        impl.context.pos.setNumberPartOfSPPath("number.list", &text);
    }
}

void LexiconVersion::attach() {
    std::vector<Dic const*> dics;
    for (auto const& dic : dics_) {
        if (!checkAdaptable(*table_, *dic))
            throw not_adaptable(dic->path() + ": its parts of speech are not those of " + table_->path() +
                                "; compile it with this connection table");
        dics.push_back(dic.get());
    }
    TavoAccess::impl(prototype_).attach(*table_, dics);
}

PosTexts const& LexiconVersion::pos() const {
    std::call_once(posMade_, [this] {
        LexiconFile const* const given = file("pos.fields");
        std::string text;
        if (given != nullptr) text = charsOf(*given);
        if (files_.empty()) text = textOf((fs::path(table_->path()).parent_path() / "pos.fields").string());
        pos_ = std::make_unique<PosTexts const>(*table_, text);
    });
    return *pos_;
}

std::vector<ReadingIndex> const& LexiconVersion::readings() const {
    std::call_once(readingsMade_, [this] {
        std::vector<ReadingIndex> made;
        for (auto const& dic : dics_) made.emplace_back(*dic);
        readings_ = std::move(made);
    });
    return readings_;
}

std::string LexiconVersion::fingerprint() const {
    std::string parts = TAVO_VERSION;
    auto const add = [&parts](std::span<unsigned char const> bytes) {
        appendU64(parts, contentStamp(bytes.data(), bytes.size()));
    };
    auto const addText = [&](std::string_view text) { add({asBytes(text.data()), text.size()}); };
    for (auto const& dic : dics_) add(dic->bytes());
    add(table_->bytes());
    TavoAccess::Impl const& impl = TavoAccess::impl(prototype_);
    for (std::string const& path :
         {impl.comments.path(), std::string(prototype_.getConvertRulePath()), impl.reduce.path(),
          impl.context.pos.numberPath(), impl.context.pos.majorPath(), impl.context.pos.publicPath(),
          impl.context.endForms.path(), impl.cooccurrence.rules().path()}) {
        LexiconFile const* const given = file(path);
        addText(path.empty() ? "" : given != nullptr ? std::string(charsOf(*given)) : textOf(path));
    }
    for (int const mode : impl.context.settings.modes) appendU32(parts, static_cast<std::uint32_t>(mode));
    for (std::string const& delimiter : impl.context.settings.delimiters) addText(delimiter);
    std::uint64_t const stamp = contentStamp(asBytes(parts.data()), parts.size());
    std::string digits(16, '0');
    for (std::size_t i = 0; i != digits.size(); ++i) digits[i] = "0123456789abcdef"[stamp >> (60 - 4 * i) & 0xF];
    return digits;
}

}  // namespace TAVO
