// The analyser's setters and getters.
#include "core/impl.hpp"
#include "dic/pools.hpp"

#include <cstdlib>
#include <stdexcept>
#include <utility>

namespace TAVO {
namespace {

char const* required(char const* text, char const* operation) {
    if (text == nullptr) throw std::invalid_argument(std::string("INVALID_ARGUMENT: Tavo::") + operation + "()");
    return text;
}

/// The folder of the default dictionary and connection table.
std::string defaultFolder() {
    char const* const variable = std::getenv("TAVO_PATH");
    std::string folder = variable == nullptr || *variable == '\0' ? "." : variable;
    if (folder.back() == '/' || folder.back() == '\\') folder.pop_back();
    return folder;
}

}  // namespace

void Tavo::Impl::setMode(Mode mode, int value) {
    hasResult = false;
    context.settings.setMode(mode, value);
}

void Tavo::setInputConvertMode(int mode) { impl_->setMode(Mode::InputConvert, mode); }
int Tavo::getInputConvertMode() const { return impl_->context.settings.mode(Mode::InputConvert); }
void Tavo::setOutputConvertMode(int mode) { impl_->setMode(Mode::OutputConvert, mode); }
int Tavo::getOutputConvertMode() const { return impl_->context.settings.mode(Mode::OutputConvert); }
void Tavo::setDelimitCRLFMode(int mode) { impl_->setMode(Mode::DelimitCRLF, mode); }
int Tavo::getDelimitCRLFMode() const { return impl_->context.settings.mode(Mode::DelimitCRLF); }
void Tavo::setDeleteCRLFMode(int mode) { impl_->setMode(Mode::DeleteCRLF, mode); }
int Tavo::getDeleteCRLFMode() const { return impl_->context.settings.mode(Mode::DeleteCRLF); }
void Tavo::setCooccurrenceMode(int mode) { impl_->setMode(Mode::Cooccurrence, mode); }
int Tavo::getCooccurrenceMode() const { return impl_->context.settings.mode(Mode::Cooccurrence); }
void Tavo::setTaggedInputMode(int mode) { impl_->setMode(Mode::TaggedInput, mode); }
int Tavo::getTaggedInputMode() const { return impl_->context.settings.mode(Mode::TaggedInput); }
void Tavo::setDeleteSlashMode(int mode) { impl_->setMode(Mode::DeleteSlash, mode); }
int Tavo::getDeleteSlashMode() const { return impl_->context.settings.mode(Mode::DeleteSlash); }
void Tavo::setAlphabetCapitalizeMode(int mode) { impl_->setMode(Mode::AlphabetCapitalize, mode); }
int Tavo::getAlphabetCapitalizeMode() const { return impl_->context.settings.mode(Mode::AlphabetCapitalize); }
void Tavo::setDivideWordMode(int mode) { impl_->setMode(Mode::DivideWord, mode); }
int Tavo::getDivideWordMode() const { return impl_->context.settings.mode(Mode::DivideWord); }
void Tavo::setMemoryMappedMode(int mode) { impl_->setMode(Mode::MemoryMapped, mode); }
int Tavo::getMemoryMappedMode() const { return impl_->context.settings.mode(Mode::MemoryMapped); }
void Tavo::setAlternativeMode(int mode) { impl_->setMode(Mode::Alternative, mode); }
int Tavo::getAlternativeMode() const { return impl_->context.settings.mode(Mode::Alternative); }
void Tavo::setReduceNumberMode(int mode) { impl_->setMode(Mode::ReduceNumber, mode); }
int Tavo::getReduceNumberMode() const { return impl_->context.settings.mode(Mode::ReduceNumber); }
void Tavo::setReduceUndefMode(int mode) { impl_->setMode(Mode::ReduceUndef, mode); }
int Tavo::getReduceUndefMode() const { return impl_->context.settings.mode(Mode::ReduceUndef); }
void Tavo::setReduceCharMode(int mode) { impl_->setMode(Mode::ReduceChar, mode); }
int Tavo::getReduceCharMode() const { return impl_->context.settings.mode(Mode::ReduceChar); }

void Tavo::setProsodicInfoCombineMode(int mode, std::string filler) {
    impl_->hasResult = false;
    // Callers compare this text, misspelt name included.
    if (mode < 0 || mode > 2) throw std::invalid_argument("INVALID_ARGUMENT: Tavo::setProsodicInfoCobineMode()");
    impl_->context.settings.prosodicInfoCombine = mode;
    impl_->context.settings.prosodicInfoFiller = std::move(filler);
}

int Tavo::getProsodicInfoCombineMode() const { return impl_->context.settings.prosodicInfoCombine; }
char const* Tavo::getProsodicInfoFiller() const { return impl_->context.settings.prosodicInfoFiller.c_str(); }

void Tavo::setExtCombineMode(int index, int mode, std::string filler) {
    impl_->hasResult = false;
    if (index < 0) throw std::range_error("RANGE_ERROR: Tavo::setExtCombineMode()");
    if (mode < 0 || mode > 2) throw std::invalid_argument("INVALID_ARGUMENT: Tavo::setExtCombineMode()");
    impl_->context.settings.extCombine[index] = mode;
    impl_->context.settings.extFiller[index] = std::move(filler);
}

int Tavo::getExtCombineMode(int index) const {
    if (index < 0) throw std::range_error("RANGE_ERROR: Tavo::getExtCombineMode()");
    auto const& modes = impl_->context.settings.extCombine;
    auto const found = modes.find(index);
    return found == modes.end() ? 0 : found->second;
}

char const* Tavo::getExtFiller(int index) const {
    if (index < 0) throw std::range_error("RANGE_ERROR: Tavo::getExtFiller()");
    auto const& fillers = impl_->context.settings.extFiller;
    auto const found = fillers.find(index);
    return found == fillers.end() ? "" : found->second.c_str();
}

void Tavo::setDelimiterString(std::vector<char const*> const& strings) {
    // Copied first: the pointers may come from getDelimiterString().
    std::vector<std::string> delimiters;
    bool complete = true;
    for (char const* text : strings) {
        complete = text != nullptr;
        if (!complete) break;
        delimiters.emplace_back(text);
    }
    impl_->context.settings.delimiters = std::move(delimiters);
    if (!complete) throw std::invalid_argument("INVALID_ARGUMENT: Tavo::setDelimiterString()");
}

std::vector<char const*> Tavo::getDelimiterString() const {
    std::vector<char const*> strings;
    for (std::string const& text : impl_->context.settings.delimiters) strings.push_back(text.c_str());
    return strings;
}

void Tavo::clearDelimiterString() { impl_->context.settings.delimiters.clear(); }

void Tavo::setOutputFormat(char const* format) {
    impl_->context.settings.outputFormat = required(format, "setOutputFormat");
}
char const* Tavo::getOutputFormat() const { return impl_->context.settings.outputFormat.c_str(); }
void Tavo::setNullString(char const* text) { impl_->context.settings.nullString = required(text, "setNullString"); }
char const* Tavo::getNullString() const { return impl_->context.settings.nullString.c_str(); }
void Tavo::setEOS(char const* text) { impl_->context.settings.eos = required(text, "setEOS"); }
char const* Tavo::getEOS() const { return impl_->context.settings.eos.c_str(); }

void Tavo::setInitFilePath(char const* path) {
    std::string const kept = required(path, "setInitFilePath");
    impl_->context.settings.initFilePath = kept;
    impl_->applyInitFile(*this, readInitFile(kept), kept, defaultFolder());
}
char const* Tavo::getInitFilePath() const { return impl_->context.settings.initFilePath.c_str(); }

void Tavo::setConnTablePath(char const* path) {
    std::string const kept = required(path, "setConnTablePath");
    ConnTable const* const table = sharedPools().connTable(kept.c_str());
    for (DicEntry const& entry : impl_->context.dics.entries())
        if (!checkAdaptable(*table, *entry.dic)) throw not_adaptable(kept + ": " + entry.path);
    impl_->context.settings.connTablePath = kept;
    impl_->context.connTable = table;
    impl_->context.pos.setPartOfSP(table);
}
char const* Tavo::getConnTablePath() const { return impl_->context.settings.connTablePath.c_str(); }

void Tavo::setNumberPartOfSPPath(char const* path) {
    impl_->hasResult = false;
    impl_->context.pos.setNumberPartOfSPPath(path);
}
char const* Tavo::getNumberPartOfSPPath() const { return impl_->context.pos.numberPath().c_str(); }
void Tavo::setMajorPartOfSPPath(char const* path) {
    impl_->hasResult = false;
    impl_->context.pos.setMajorPartOfSPPath(path);
}
char const* Tavo::getMajorPartOfSPPath() const { return impl_->context.pos.majorPath().c_str(); }
void Tavo::setPublicPartOfSPPath(char const* path) {
    impl_->hasResult = false;
    impl_->context.pos.setPublicPartOfSPPath(path);
}
char const* Tavo::getPublicPartOfSPPath() const { return impl_->context.pos.publicPath().c_str(); }

void Tavo::setCommentRulePath(char const* path) {
    impl_->comments.setCommentRulePath(path);
    impl_->context.pos.setPartOfSP(impl_->context.connTable);
}
char const* Tavo::getCommentRulePath() const { return impl_->comments.path().c_str(); }
void Tavo::setConvertRulePath(char const* path) { impl_->convertRules.load(path); }
char const* Tavo::getConvertRulePath() const { return impl_->convertRules.path().c_str(); }
void Tavo::setReduceRulePath(char const* path) {
    impl_->reduce.load(path);
    impl_->context.pos.setPartOfSP(impl_->context.connTable);
}
char const* Tavo::getReduceRulePath() const { return impl_->reduce.path().c_str(); }
void Tavo::setEndFormRulePath(char const* path) { impl_->context.endForms.load(path); }
char const* Tavo::getEndFormRulePath() const { return impl_->context.endForms.path().c_str(); }

void Tavo::setCooccurrenceRulePath(char const* path) {
    impl_->hasResult = false;
    impl_->cooccurrence.load(path);
}
char const* Tavo::getCooccurrenceRulePath() const { return impl_->cooccurrence.rules().path().c_str(); }

unsigned short Tavo::getPid(std::string const& name) const { return impl_->context.pos.getPid(name); }
std::string Tavo::getPartOfSP(unsigned short pid) const { return impl_->context.pos.name(pid); }
std::string Tavo::getDisplayPartOfSP(unsigned short pid) const { return displayPosName(getPartOfSP(pid)); }
unsigned short Tavo::getPidMax() const { return impl_->context.pos.getPidMax(); }

}  // namespace TAVO
