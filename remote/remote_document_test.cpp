// Checks that the commands in docs/remote.md work.
#include "remote/key_help.h"
#include "remote/remote_arguments.h"
#include "remote/script_command.h"
#include "remote/words.h"

#include <fstream>
#include <regex>

namespace lumbrine::remote {
namespace {

std::vector<std::string> linesOfPage() {
    std::ifstream file(LUMBRINE_SOURCE_DIR "/docs/remote.md");
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);)
        lines.push_back(line);
    return lines;
}

// The words of a shell line; text in double quotes is one word.
std::vector<std::string> shellWords(const std::string& line) {
    static const std::regex word("\"([^\"]*)\"|([^ \"]+)");
    std::vector<std::string> words;
    for (std::sregex_iterator match(line.begin(), line.end(), word), end; match != end; ++match)
        words.push_back((*match)[1].matched ? (*match)[1] : (*match)[2]);
    return words;
}

TEST(RemoteDocument, GivesCommandLinesThatAreUnderstood) {
    int checked = 0;
    for (const std::string& line : linesOfPage()) {
        if (!line.starts_with("lumbrine-remote 127.0.0.1:52700 --")) continue;
        std::vector<std::string> words = shellWords(line);
        words.erase(words.begin());
        EXPECT_TRUE(parseArguments(words, "0").has_value()) << line;
        ++checked;
    }
    EXPECT_EQ(checked, 4);
}

TEST(RemoteDocument, ListsEveryCommand) {
    std::string page;
    for (const std::string& line : linesOfPage())
        page += line + "\n";
    std::istringstream help(scriptCommandHelp());
    for (std::string line; std::getline(help, line);) {
        const std::string command(wordsOf(line).front());
        EXPECT_NE(page.find("`" + command), std::string::npos) << command;
    }
}

// The tables of keys equal the list on `?`, line by line.
TEST(RemoteDocument, ListsTheKeysAsTheHelpDoes) {
    std::vector<std::string> rows;
    for (const std::string& line : linesOfPage())
        if (line.starts_with("| ") && !line.starts_with("| `")) rows.push_back(line);
    for (const Page page : {Page::strips, Page::session})
        for (const KeyHelp& help : keysOf(page)) {
            const std::string row = "| " + std::string(help.keys) + " | " + std::string(help.meaning) + " |";
            EXPECT_THAT(rows, ::testing::Contains(row));
        }
}

} // namespace
} // namespace lumbrine::remote
