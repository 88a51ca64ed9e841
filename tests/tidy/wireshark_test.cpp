// The dissector for Wireshark has the messages of docs/protocol.md, with the same numbers, names and bodies.
#include "tests/tidy/source_tree.h"

#include <algorithm>
#include <regex>
#include <set>

namespace lumbrine::tidy {
namespace {

// "01 FaderMove: strip, fader value"
using Rows = std::set<std::string>;

Rows rowsIn(const std::string& text, const std::regex& row) {
    Rows rows;
    for (std::sregex_iterator found(text.begin(), text.end(), row), end; found != end; ++found)
        rows.insert((*found)[1].str() + " " + (*found)[2].str() + ": " + (*found)[3].str());
    return rows;
}

std::string textOf(const std::string& path) {
    const auto files = projectFiles({".md", ".lua"});
    const auto file = std::ranges::find(files, path, &SourceFile::path);
    return file == files.end() ? std::string() : file->text;
}

TEST(WiresharkDissector, HasTheMessagesOfTheProtocolsPage) {
    const Rows page = rowsIn(textOf("docs/protocol.md"),
                             std::regex(R"(\n\| `([0-9A-F]{2})` \| `(\w+)` \| [^|]* \| ?([^|\n]*?) ?\|(?=\n))"));
    const Rows dissector = rowsIn(textOf("packaging/wireshark/lumbrine.lua"),
                                  std::regex(R"re(\[0x([0-9A-F]{2})\] = \{ "(\w+)", "([^"]*)" \})re"));
    EXPECT_GE(page.size(), 40U);
    EXPECT_EQ(page, dissector);
}

} // namespace
} // namespace lumbrine::tidy
