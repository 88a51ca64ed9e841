// A file that nothing builds, includes or calls is a file that nobody notices breaking.
#include "tests/tidy/source_tree.h"

#include <algorithm>
#include <filesystem>
#include <set>

namespace lumbrine::tidy {
namespace {

std::string fileName(const std::string& path) {
    return std::filesystem::path(path).filename().string();
}

bool anyOtherMentions(const std::vector<SourceFile>& files, const SourceFile& self, const std::string& what) {
    return std::ranges::any_of(files, [&](const SourceFile& file) {
        return file.path != self.path && file.text.find(what) != std::string::npos;
    });
}

bool builds(const SourceFile& build, const std::string& source) {
    const std::string folder = build.folder();
    if (!folder.empty() && !isBelow(source, folder)) return false;
    const std::string relative = folder.empty() ? source : source.substr(folder.size() + 1);
    return build.text.find(relative) != std::string::npos;
}

TEST(DeadFiles, EverySourceStandsInTheBuildOfItsFolder) {
    const std::vector<SourceFile> lists = projectFiles({"CMakeLists.txt"});
    for (const SourceFile& source : projectFiles({".cpp", ".mm"}))
        EXPECT_TRUE(std::ranges::any_of(lists, [&](const SourceFile& list) { return builds(list, source.path); }))
            << "nothing builds " << source.path;
}

TEST(DeadFiles, NoSourceHasAnEndingThatTheseTestsDoNotRead) {
    for (const SourceFile& file :
         projectFiles({".c", ".cc", ".cxx", ".c++", ".m", ".hh", ".hpp", ".hxx", ".inl", ".ipp"}))
        ADD_FAILURE() << file.path << " is checked by nothing: sources end in .h, .cpp or .mm";
}

TEST(DeadFiles, EveryHeaderIsIncludedSomewhere) {
    std::set<std::string> included;
    for (const SourceFile& file : cppFiles())
        for (const std::string& include : quotedIncludes(file.text))
            included.insert(include);
    for (const SourceFile& header : projectFiles({".h"}))
        EXPECT_TRUE(included.contains(header.path)) << "nobody includes " << header.path;
}

TEST(DeadFiles, EveryScriptIsCalledSomewhere) {
    const std::vector<SourceFile> callers =
        projectFiles({".sh", ".py", "Makefile", "CMakeLists.txt", ".cmake", ".cpp", ".md", "run"});
    for (const SourceFile& script : projectFiles({".sh", ".py"}))
        EXPECT_TRUE(anyOtherMentions(callers, script, fileName(script.path))) << "nothing calls " << script.path;
}

TEST(DeadFiles, EveryPageIsLinkedFromAnother) {
    const std::vector<SourceFile> pages = projectFiles({".md"});
    for (const SourceFile& page : pages)
        EXPECT_TRUE(page.path == "README.md" || anyOtherMentions(pages, page, fileName(page.path)))
            << "no page links to " << page.path;
}

TEST(DeadFiles, AreFoundByTheFullPathOnly) {
    const SourceFile list{"surface/CMakeLists.txt", "SOURCES midi_host.cpp"};
    EXPECT_TRUE(builds(list, "surface/midi_host.cpp"));
    EXPECT_FALSE(builds(list, "surface/hui_output.cpp"));
    EXPECT_FALSE(builds(list, "model/midi_host.cpp"));
}

} // namespace
} // namespace lumbrine::tidy
