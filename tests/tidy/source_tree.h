// Reads the project's own files, for the tidy tests.
#pragma once

#include <regex>
#include <string>
#include <string_view>
#include <vector>

namespace lumbrine::tidy {

struct SourceFile {
    std::string path; // relative to the top of the tree: "surface/hui_engine.h"
    std::string text;

    bool isTest() const;        // a test or test support, beside its source or under tests/
    std::string folder() const; // "platform/api", "surface", "" for the top
};

// All files of the project whose names end in one of `endings`, without those in the build folder.
std::vector<SourceFile> projectFiles(const std::vector<std::string>& endings);

// All C++ sources and headers: .h, .cpp and .mm.
std::vector<SourceFile> cppFiles();

// The lines of a text without comments and without the contents of string literals.
std::vector<std::string> codeLines(std::string_view text);

// The paths in `#include "..."` and in `#include <...>`.
std::vector<std::string> quotedIncludes(std::string_view text);
std::vector<std::string> bracketedIncludes(std::string_view text);

// A regular expression in ECMAScript syntax.
class Pattern {
public:
    explicit Pattern(const std::string& expression);

    bool isIn(const std::string& line) const;

private:
    std::regex compiled;
};

bool isBelow(std::string_view path, std::string_view folder);

} // namespace lumbrine::tidy
