#include "tests/tidy/source_tree.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

namespace lumbrine::tidy {

namespace fs = std::filesystem;

bool SourceFile::isTest() const {
    return path.ends_with("_test.cpp") || isBelow(path, "tests") || path.find("/testing/") != std::string::npos;
}

std::string SourceFile::folder() const {
    return fs::path(path).parent_path().generic_string();
}

bool isBelow(std::string_view path, std::string_view folder) {
    return path.size() > folder.size() && path.starts_with(folder) && path[folder.size()] == '/';
}

std::vector<SourceFile> projectFiles(const std::vector<std::string>& endings) {
    const fs::path top = LUMBRINE_SOURCE_DIR;
    std::vector<SourceFile> files;
    for (auto entry = fs::recursive_directory_iterator(top); entry != fs::recursive_directory_iterator(); ++entry) {
        const std::string name = entry->path().filename().string();
        const bool atTheTop = entry.depth() == 0;
        const bool isForeign =
            (atTheTop && (name == "build" || name == ".git" || name == ".cache")) || name == "node_modules";
        if (entry->is_directory() && isForeign) {
            entry.disable_recursion_pending();
            continue;
        }
        const auto matches = [&](const std::string& ending) { return name.ends_with(ending); };
        if (!entry->is_regular_file() || std::ranges::none_of(endings, matches)) continue;
        std::ifstream stream(entry->path());
        std::string text((std::istreambuf_iterator<char>(stream)), std::istreambuf_iterator<char>());
        files.push_back({fs::relative(entry->path(), top).generic_string(), std::move(text)});
    }
    std::ranges::sort(files, {}, &SourceFile::path);
    return files;
}

std::vector<SourceFile> cppFiles() {
    return projectFiles({".h", ".cpp", ".mm"});
}

std::vector<std::string> codeLines(std::string_view text) {
    static const std::regex quoted(R"('("|\\.)'|"([^"\\]|\\.)*")");
    std::vector<std::string> lines;
    std::istringstream stream{std::string(text)};
    for (std::string line; std::getline(stream, line);) {
        line = std::regex_replace(line, quoted, "\"\"");
        lines.push_back(line.substr(0, line.find("//")));
    }
    return lines;
}

namespace {

std::vector<std::string> includes(std::string_view text, const std::regex& pattern) {
    std::vector<std::string> found;
    const std::string copy(text);
    for (std::sregex_iterator match(copy.begin(), copy.end(), pattern), end; match != end; ++match)
        found.push_back((*match)[1]);
    return found;
}

} // namespace

std::vector<std::string> quotedIncludes(std::string_view text) {
    static const std::regex pattern(R"re((?:^|\n)\s*#\s*(?:include|import)\s*"([^"]+)")re");
    return includes(text, pattern);
}

std::vector<std::string> bracketedIncludes(std::string_view text) {
    static const std::regex pattern(R"re((?:^|\n)\s*#\s*(?:include|import)\s*<([^>]+)>)re");
    return includes(text, pattern);
}

Pattern::Pattern(const std::string& expression) : compiled(expression) {}

bool Pattern::isIn(const std::string& line) const {
    return std::regex_search(line, compiled);
}

} // namespace lumbrine::tidy
