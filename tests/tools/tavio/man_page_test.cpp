// The man pages, compared with the programs' help.

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "tools/tavio/process.h"

namespace tavio::test {
namespace {

const std::filesystem::path kManPages = TAVIO_MAN_PAGES;

// A man page, with "\-" as the hyphen that it sets.
std::string pageOf(const std::string& name) {
    std::string page = readFile(kManPages / name);
    for (auto at = page.find("\\-"); at != std::string::npos; at = page.find("\\-", at)) {
        page.erase(at, 1);
    }
    return page;
}

std::vector<std::string> linesOf(const std::string& text) {
    std::istringstream stream(text);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
}

bool isOptionLetter(char c) {
    return c == '-' || (c >= 'a' && c <= 'z');
}

// All options in a text: "-h", "--help".
std::set<std::string> optionsIn(const std::string& text) {
    std::set<std::string> options;
    for (std::size_t at = 1; at < text.size(); ++at) {
        if (text[at] != '-' || std::string_view(" ,\n").find(text[at - 1]) == std::string::npos) {
            continue;
        }
        std::string option;
        while (at < text.size() && isOptionLetter(text[at])) option += text[at++];
        if (option.find_first_not_of('-') != std::string::npos) options.insert(option);
    }
    return options;
}

// The commands that a help lists.
std::set<std::string> commandsIn(const std::string& help) {
    std::set<std::string> commands;
    bool listed = false;
    for (const std::string& line : linesOf(help)) {
        if (listed && line.empty()) break;
        if (listed) commands.insert(line.substr(2, line.find(' ', 2) - 2));
        if (line == "Subcommands:") listed = true;
    }
    return commands;
}

// The entries of a man page: the lines under ".TP".
std::vector<std::string> headingsOf(const std::string& page) {
    std::vector<std::string> headings;
    bool isHeading = false;
    for (const std::string& line : linesOf(page)) {
        if (isHeading) headings.push_back(line);
        isHeading = line == ".TP";
    }
    return headings;
}

// A blank within a word of a man page, and its macros, read as they are set.
std::string asSet(std::string heading) {
    for (const char* mark : {".BI ", ".BR ", ".B "}) {
        if (heading.starts_with(mark)) heading.erase(0, std::string_view(mark).size());
    }
    for (auto at = heading.find('\\'); at != std::string::npos; at = heading.find('\\')) {
        heading.erase(at, 1);
    }
    return heading;
}

class ManPage : public ToolTest {
  protected:
    void SetUp() override {
        const std::string help = tavio({"--help"}).out;
        options = optionsIn(help);
        for (const std::string& name : commandsIn(help)) addCommand({name});
        for (const std::string& heading : headingsOf(page)) headings.push_back(asSet(heading));
    }
    void addCommand(std::vector<std::string> words) {
        words.emplace_back("--help");
        const std::string help = tavio(words).out;
        words.pop_back();
        options.merge(optionsIn(help));
        const std::set<std::string> inner = commandsIn(help);
        for (const std::string& name : inner) {
            words.push_back(name);
            addCommand(words);
            words.pop_back();
        }
        if (inner.empty()) {
            commands.insert(words.size() == 1 ? words[0] : words[0] + " " + words[1]);
        }
    }

    const std::string page = pageOf("tavio.1");
    std::vector<std::string> headings;
    std::set<std::string> options;
    std::set<std::string> commands;
};

TEST_F(ManPage, DescribesEveryCommand) {
    EXPECT_EQ(commands.size(), 25U) << testing::PrintToString(commands);
    for (const std::string& command : commands) {
        const bool described =
            std::any_of(headings.begin(), headings.end(), [&](const std::string& heading) {
                return heading == command || heading.starts_with(command + " ");
            });
        EXPECT_TRUE(described) << command;
    }
}

TEST_F(ManPage, DescribesEveryOption) {
    EXPECT_EQ(options.size(), 62U) << testing::PrintToString(options);
    std::set<std::string> described;
    for (const std::string& heading : headings) described.merge(optionsIn(" " + heading));
    EXPECT_EQ(described, options);
}

TEST_F(ManPage, NamesNoOptionThatIsNotThere) {
    for (const std::string& option : optionsIn(page)) {
        if (!option.starts_with("--")) continue;
        EXPECT_EQ(options.count(option), 1U) << option;
    }
}

TEST_F(ManPage, IsOfThisVersion) {
    std::string version = tavio({"--version"}).out;
    version.pop_back();
    EXPECT_NE(page.find("\"" + version + "\""), std::string::npos) << version;
}

TEST(ManPages, AreSetWithoutAWarning) {
    if (std::system("command -v man >/dev/null && command -v groff >/dev/null") != 0) {
        GTEST_SKIP() << "no man or no groff here";
    }
    for (const auto& entry : std::filesystem::directory_iterator(kManPages)) {
        TemporaryFolder folder;
        const std::string command = std::string("man --warnings=w -l '")
                                        .append(entry.path().string())
                                        .append("' >/dev/null 2>'")
                                        .append(folder / "warnings")
                                        .append("'");
        EXPECT_EQ(std::system(command.c_str()), 0);
        EXPECT_EQ(readFile(folder / "warnings"), "") << entry.path();
    }
}

}  // namespace
}  // namespace tavio::test
