// The outer shape of every text: lines that fit a screen, files that are one thing, a first comment that says what.
#include "tests/tidy/source_tree.h"

#include <algorithm>
#include <sstream>

namespace lumbrine::tidy {
namespace {

// Characters, not bytes: Japanese texts count as what they are.
std::ptrdiff_t widthOf(const std::string& line) {
    return std::ranges::count_if(line, [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; });
}

std::vector<SourceFile> everything() {
    return projectFiles({".h", ".cpp", ".mm", ".js", ".css", ".sh", ".py", "CMakeLists.txt", ".cmake", "Makefile"});
}

TEST(TextShape, NoLineIsLongerThan120Characters) {
    for (const SourceFile& file : everything()) {
        std::istringstream lines(file.text);
        std::size_t number = 1;
        for (std::string line; std::getline(lines, line); ++number)
            EXPECT_LE(widthOf(line), 120) << file.path << ":" << number;
    }
}

TEST(TextShape, NoSourceIsLongerThan500Lines) {
    for (const SourceFile& file : cppFiles())
        EXPECT_LE(std::ranges::count(file.text, '\n'), 500) << file.path << " is more than one thing";
}

TEST(TextShape, EveryHeaderBeginsWithAComment) {
    for (const SourceFile& file : projectFiles({".h"}))
        EXPECT_TRUE(file.text.starts_with("// ")) << file.path;
}

TEST(TextShape, NoLineEndsInBlanks) {
    for (const SourceFile& file : everything())
        EXPECT_EQ(file.text.find(" \n"), std::string::npos) << file.path;
}

// Words that make a reader stop. They are looked for in comments only; texts for users may have them.
const Pattern& archaicWords() {
    static const Pattern words(R"((//|#) .*\b([Aa]new|[Ww]ho(m)?ever|[Cc]omes? of it)\b)");
    return words;
}

TEST(TextShape, CommentsUseCurrentEnglish) {
    for (const SourceFile& file : everything()) {
        std::istringstream lines(file.text);
        std::size_t number = 1;
        for (std::string line; std::getline(lines, line); ++number)
            EXPECT_FALSE(archaicWords().isIn(line)) << file.path << ":" << number << ": " << line;
    }
}

TEST(TextShape, FindsArchaicWordsInCommentsOnly) {
    const std::string word = std::string("ane") + "w"; // in two parts, or this line would be found
    EXPECT_TRUE(archaicWords().isIn("    // Draws everything " + word));
    EXPECT_TRUE(archaicWords().isIn("# Builds the map " + word + "."));
    EXPECT_FALSE(archaicWords().isIn("const char* text = \"draw anew\";"));
    EXPECT_FALSE(archaicWords().isIn("// A canewood desk."));
}

TEST(TextShape, CountsCharactersAndNotBytes) {
    EXPECT_EQ(widthOf("計測 scan"), 7);
}

} // namespace
} // namespace lumbrine::tidy
