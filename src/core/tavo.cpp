// Lifecycle, readiness, error state and dictionaries of the analyser.
#include "base/bad_allocation.hpp"
#include "core/impl.hpp"
#include "dic/pools.hpp"
#include "result/mrph_access.hpp"

#include <new>
#include <stdexcept>
#include <utility>

namespace TAVO {
namespace {

std::uint32_t checkedCapacity(int nodeCapacity) {
    if (nodeCapacity < 0) throw std::invalid_argument("INVALID_ARGUMENT: Tavo::Tavo()");
    return static_cast<std::uint32_t>(nodeCapacity);
}

}  // namespace

Tavo::Tavo(int nodeCapacity) try : impl_(std::make_unique<Impl>(checkedCapacity(nodeCapacity))) {
    PoolLock const lock;
    ++sharedPools().ObjectCount;
} catch (std::bad_alloc const&) {
    throw BadAllocation();
}

Tavo::Tavo(Tavo const& other) : Tavo(0) { impl_->copyFrom(*other.impl_); }

Tavo& Tavo::operator=(Tavo const& other) {
    if (this != &other) impl_->copyFrom(*other.impl_);
    return *this;
}

Tavo::~Tavo() {
    PoolLock const lock;
    --sharedPools().ObjectCount;
    impl_.reset();  // releases the dictionaries under the lock
}

void Tavo::readyForThread() { sharedPools().readyForThread(); }
void Tavo::dispose() { sharedPools().dispose(); }

Tavo::operator bool() const {
    AnalyzerContext const& context = impl_->context;
    if (context.connTable == nullptr || context.dics.entries().empty() || !context.lattice.ready()) return false;
    for (DicEntry const& entry : context.dics.entries())
        if (entry.dic == nullptr || entry.dic->trie() == nullptr) return false;
    return true;
}

bool Tavo::hasResult() const { return impl_->hasResult; }

void Tavo::Impl::copyFrom(Impl const& other) {
    // Everything that can fail comes first.
    Settings settings = other.context.settings;
    PosTables pos = other.context.pos;
    EndFormRules endForms = other.context.endForms;
    ReduceRules reduceRules = other.reduce;
    CommentRules commentRules = other.comments;
    ConvertRules ownConvertRules = other.convertRules;
    CoocRules coocRules = other.cooccurrence.rules();
    DicSet dics = other.context.dics;
    dropInput();
    convertRules = std::move(ownConvertRules);
    cooccurrence.setRules(std::move(coocRules));
    context.settings = std::move(settings);
    context.pos = std::move(pos);
    context.endForms = std::move(endForms);
    reduce = std::move(reduceRules);
    comments = std::move(commentRules);
    context.dics = std::move(dics);
    context.connTable = other.context.connTable;
}

void Tavo::Impl::attach(ConnTable const& table, std::vector<Dic const*> const& dics) {
    dropInput();
    context.dics.offDic();
    for (Dic const* const dic : dics) context.dics.add(*dic, &table);
    context.settings.connTablePath = table.path();
    context.connTable = &table;
    context.pos.setPartOfSP(&table);
}

int Tavo::setErrorWhat(int code, std::string text) const {
    impl_->errorCode = code;
    impl_->errorWhat = std::move(text);
    return code;
}

void Tavo::clearError() const {
    impl_->errorCode = 0;
    impl_->errorWhat.clear();
}

int Tavo::getErrorCode() const { return impl_->errorCode; }
char const* Tavo::getErrorWhat() const { return impl_->errorWhat.c_str(); }
std::vector<unsigned int> const& Tavo::getErrorSentenceIndex() const { return impl_->errorSentences; }

void Tavo::addDicPath(char const* pathSpec, bool memoryMapped) {
    impl_->context.dics.addDicPath(pathSpec, memoryMapped, impl_->context.connTable);
}

int Tavo::getDicCount() const { return impl_->context.dics.getDicCount(); }
int Tavo::getDicIndex(char const* path) const { return impl_->context.dics.getDicIndex(path); }
char const* Tavo::getDicPath(int index) const { return impl_->context.dics.getDicPath(index); }
char const* Tavo::getSrcPath(int index) const { return impl_->context.dics.getSrcPath(index); }

// Another analyser may rebuild a dictionary that this one gave up: results that point
// into it are no longer offered.
void Tavo::offDic(int index) {
    impl_->context.dics.offDic(index);
    impl_->hasResult = false;
}

void Tavo::offDic(char const* path) {
    impl_->context.dics.offDic(path);
    impl_->hasResult = false;
}

void Tavo::offDic() {
    impl_->context.dics.offDic();
    impl_->hasResult = false;
}

void Tavo::touchDic(int index) { impl_->context.dics.touchDic(index); }
void Tavo::touchDic(char const* path) { impl_->context.dics.touchDic(path); }
void Tavo::touchDic() {}

int Tavo::updateDic(int index) {
    // A rebuild frees the old image, and a failed file step (6) or a lack of memory
    // may have moved it: results of the last analysis point into it.
    try {
        int const code =
            impl_->context.dics.updateDic(index, impl_->context.pos.listedNames(), impl_->context.connTable);
        if (code == 1 || code == 6) impl_->dropInput();
        return code;
    } catch (std::bad_alloc const&) {
        impl_->dropInput();
        throw;
    }
}

int Tavo::updateDic(char const* path) {
    if (path == nullptr) throw std::invalid_argument("INVALID_ARGUMENT: Tavo::updateDic()");
    return updateDic(getDicIndex(path));
}

void Tavo::getByRead(std::vector<Mrph>& result, char const* reading, int index) {
    if (reading == nullptr) throw std::invalid_argument("INVALID_ARGUMENT: Tavo::getByRead()");
    std::vector<ReadingWord> const words = impl_->context.dics.findByRead(reading, index);
    result.clear();
    for (ReadingWord const& word : words) {
        auto const length = static_cast<unsigned int>(word.form.size());
        result.push_back(MrphAccess::fromRecord(word.form.data(), length, word.record, &impl_->context));
    }
}

void Tavo::getByRead(std::vector<Mrph>& result, char const* reading, char const* path) {
    if (path == nullptr) throw std::invalid_argument("INVALID_ARGUMENT: Tavo::getByRead()");
    getByRead(result, reading, getDicIndex(path));
}

}  // namespace TAVO
