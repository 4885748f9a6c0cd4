#include "support/line_cases.hpp"

#include "support/tagged_world.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <sstream>
#include <stdexcept>

namespace TAVO::test {
namespace {

constexpr char kArrow[] = " =>";

std::string unescaped(std::string_view text) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        std::size_t const known =
            text[i] == '\\' && i + 1 < text.size() ? std::string_view("nrt0\\").find(text[i + 1]) : std::string::npos;
        result += known == std::string::npos ? text[i] : "\n\r\t\0\\"[known];
        if (known != std::string::npos) ++i;
    }
    return result;
}

}  // namespace

std::vector<LineCase> lineCases(std::string const& name) {
    std::istringstream file(readFile(std::string(TAVO_TESTS_DIR) + "/golden/lines/" + name));
    std::vector<LineCase> cases;
    std::string settings, format;
    std::string line;
    for (int number = 1; std::getline(file, line); ++number) {
        if (line.empty() || line[0] == ';') continue;
        std::size_t const arrow = line.find(kArrow);
        if (arrow == std::string::npos) {
            std::size_t const close = line.find(']');
            if (line[0] != '[' || close == std::string::npos)
                throw std::runtime_error(name + ":" + std::to_string(number) + ": no case: " + line);
            settings = unescaped(line.substr(1, close - 1));
            std::replace(settings.begin(), settings.end(), ' ', '\n');
            format = line.size() > close + 2 ? line.substr(close + 2) : "";
            continue;
        }
        std::string const input = toSjis(unescaped(line.substr(0, arrow)));
        std::size_t const behind = arrow + sizeof kArrow;
        std::string const expected = behind < line.size() ? toSjis(unescaped(line.substr(behind))) : "";
        cases.push_back({number, settings, format, input, expected == "!" ? "!" + input : expected});
    }
    if (cases.empty()) throw std::runtime_error("no cases: " + name);
    return cases;
}

void expectLineCases(std::string const& name, SmallWorld const& world, std::string const& init) {
    TempDir const dir;
    SmallWorld::Paths const paths = world.writeTo(dir.path());
    std::unique_ptr<Tavo> tavo;
    std::string settings = "none yet";
    for (LineCase const& c : lineCases(name)) {
        if (c.settings != settings) {
            settings = c.settings;
            std::string const file = dir.write(
                "init", settings + "\n" + init + "\nDic=" + paths.dic + "\nConnTable=" + paths.connTable + "\n");
            tavo = std::make_unique<Tavo>();
            tavo->setInitFilePath(file.c_str());
        }
        tavo->analyze(c.input);
        EXPECT_EQ(describeAll(*tavo, c.format), c.expected) << name << ":" << c.number << ": " << c.input;
    }
}

}  // namespace TAVO::test
