// The project's own files, as the tidy tests read them.
#pragma once

#include <regex>
#include <string>
#include <string_view>
#include <vector>

namespace lumbrine::tidy {

struct SourceFile {
    std::string path; // from the top of the tree, "surface/hui_engine.h"
    std::string text;

    bool isTest() const;        // a unit test, or test support, beside its source or under tests/
    std::string folder() const; // "platform/api", "surface", "" for the top
};

// Every file of the project whose name ends in one of `endings`; nothing from the build's folder.
std::vector<SourceFile> projectFiles(const std::vector<std::string>& endings);

// C++ sources and headers: .h, .cpp and .mm, the only endings that the project has.
std::vector<SourceFile> cppFiles();

// The lines of a text without comments; what stands inside quotation marks is left out too.
std::vector<std::string> codeLines(std::string_view text);

// The paths in `#include "..."` and in `#include <...>`.
std::vector<std::string> quotedIncludes(std::string_view text);
std::vector<std::string> bracketedIncludes(std::string_view text);

// A regular expression in the syntax of ECMAScript.
class Pattern {
public:
    explicit Pattern(const std::string& expression);

    bool isIn(const std::string& line) const;

private:
    std::regex compiled;
};

bool isBelow(std::string_view path, std::string_view folder);

} // namespace lumbrine::tidy
