#include "support/small_world.hpp"

#include "dic/dic_compiler.hpp"
#include "support/encoding.hpp"
#include "support/temp_dir.hpp"

#include <numeric>
#include <sstream>
#include <stdexcept>

namespace TAVO::test {

void SmallWorld::Paths::attachTo(Tavo& tavo, bool memoryMapped) const {
    tavo.setConnTablePath(connTable.c_str());
    tavo.addDicPath(dicSpec().c_str(), memoryMapped);
}

SmallWorld& SmallWorld::names(std::vector<std::string> names) {
    names_ = std::move(names);
    costs_.assign(names_.size() * names_.size(), 0);
    return *this;
}

SmallWorld& SmallWorld::namesUtf8(std::vector<std::string> const& names) {
    std::vector<std::string> converted;
    for (std::string const& name : names) converted.push_back(toSjis(name));
    return this->names(std::move(converted));
}

SmallWorld& SmallWorld::cost(std::function<std::uint8_t(unsigned, unsigned)> function) {
    auto const count = static_cast<unsigned>(names_.size());
    for (unsigned left = 1; left <= count; ++left) {
        for (unsigned right = 1; right <= count; ++right) cost(left, right, function(left, right));
    }
    return *this;
}

SmallWorld& SmallWorld::cost(unsigned left, unsigned right, std::uint8_t value) {
    costs_.at(std::size_t{left - 1} * names_.size() + (right - 1)) = value;
    return *this;
}

SmallWorld& SmallWorld::shareColumns() {
    sharesColumns_ = true;
    return *this;
}

SmallWorld& SmallWorld::line(std::string line) {
    lines_.push_back(std::move(line));
    return *this;
}

SmallWorld& SmallWorld::linesUtf8(std::initializer_list<std::string_view> lines) {
    for (std::string_view const text : lines) line(toSjis(text));
    return *this;
}

ConnTableContent SmallWorld::connTable() const {
    ConnTableContent content;
    content.names = names_;
    content.rowIndex.resize(names_.size());
    std::iota(content.rowIndex.begin(), content.rowIndex.end(), std::uint16_t{0});
    content.columnIndex = content.rowIndex;
    content.rows = content.cols = static_cast<std::uint16_t>(names_.size());
    content.matrix = costs_;
    auto const areEqual = [&](std::size_t a, std::size_t b) {
        for (std::size_t row = 0; row < names_.size(); ++row)
            if (costs_[row * names_.size() + a] != costs_[row * names_.size() + b]) return false;
        return true;
    };
    for (std::size_t id = names_.size(); sharesColumns_ && id-- > 0;)
        for (std::size_t other = id; other-- > 0;)
            if (areEqual(id, other)) content.columnIndex[id] = static_cast<std::uint16_t>(other);
    return content;
}

std::string SmallWorld::source() const {
    std::string text;
    for (std::string const& line : lines_) text += line + "\n";
    return text;
}

std::string SmallWorld::dictionary() const {
    DicCompiler compiler(names_);
    for (std::string const& line : lines_) {
        std::string error;
        if (!compiler.add(line, error)) throw std::runtime_error(error + " in line " + line);
    }
    std::ostringstream out;
    if (!compiler.compile(out, false)) throw std::runtime_error(compiler.error());
    return out.str();
}

SmallWorld::Paths SmallWorld::writeTo(std::string const& dir) const {
    Paths const paths{dir + "/SysDic", dir + "/SysDic.txt", dir + "/ConnTable"};
    // The source first: a compiled file that is older would be rebuilt.
    writeFile(paths.source, source());
    writeFile(paths.dic, dictionary());
    writeFile(paths.connTable, serializeConnTable(connTable()));
    return paths;
}

}  // namespace TAVO::test
