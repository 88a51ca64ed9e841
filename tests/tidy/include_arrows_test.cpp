// Dependencies point one way: app -> model -> links -> base and the seams to the operating system.
#include "tests/tidy/source_tree.h"

#include <algorithm>
#include <map>

namespace lumbrine::tidy {
namespace {

using Folders = std::vector<std::string>;

// What a module may include besides itself.
const std::map<std::string, Folders>& arrows() {
    static const Folders ground{"base", "platform/api"};
    static const std::map<std::string, Folders> table{
        {"base", {}},
        {"platform/api", {"base"}},
        {"platform/posix", ground},
        {"platform/linux", {"base", "platform/api", "platform/posix"}},
        {"platform/macos", {"base", "platform/api", "platform/posix"}},
        {"platform/qt", {"base", "platform/api", "platform/posix"}},
        {"platform/virtual", {"base", "platform/api", "platform/posix"}},
        {"surface", ground},
        {"client_link", ground},
        {"ptsl", ground},
        {"screen", ground},
        {"model", {"base", "platform/api", "surface", "client_link", "ptsl", "screen"}},
        {"simulator", ground},
        {"remote", ground},
        {"app", {"base", "platform", "model", "surface", "client_link", "ptsl", "screen", "simulator", "remote"}},
    };
    return table;
}

// The demo and the two programs beside the receiver; everything else in app/ is the product.
bool isBesideTheProduct(const std::string& path) {
    return path.starts_with("app/demo") || path.starts_with("app/simulator") || path.starts_with("app/remote");
}

std::string moduleOf(const std::string& path) {
    for (const auto& [module, allowed] : arrows())
        if (isBelow(path, module)) return module;
    return {};
}

// Empty when the include is allowed, else what is wrong with it.
std::string complaint(const std::string& path, bool isTest, const std::string& include) {
    const std::string module = moduleOf(path);
    if (module.empty() || isBelow(include, module)) return {};
    Folders allowed = arrows().at(module);
    // A unit test runs its module in virtual time, and has no other JSON than the system's.
    if (isTest) allowed.emplace_back("platform/virtual");
    if (isTest && include == "platform/linux/nlohmann_json.h") return {};
    if (std::ranges::none_of(allowed, [&](const std::string& folder) { return isBelow(include, folder); }))
        return path + " must not include " + include;
    if (module == "app" && !isBesideTheProduct(path) && (isBelow(include, "simulator") || isBelow(include, "remote")))
        return path + " is part of the product and must not include " + include;
    return {};
}

TEST(IncludeArrows, PointTheWayTheArchitectureHasThem) {
    for (const SourceFile& file : cppFiles())
        for (const std::string& include : quotedIncludes(file.text))
            EXPECT_EQ(complaint(file.path, file.isTest(), include), "");
}

TEST(IncludeArrows, AreWrittenFromTheTopOfTheTree) {
    const std::vector<SourceFile> files = cppFiles();
    for (const SourceFile& file : files)
        for (const std::string& include : quotedIncludes(file.text))
            EXPECT_TRUE(std::ranges::any_of(files, [&](const SourceFile& other) { return other.path == include; }))
                << file.path << " includes " << include << ", which is no file of the project";
}

TEST(IncludeArrows, AreCheckedAgainstWrongOnes) {
    EXPECT_NE(complaint("base/strip.h", false, "surface/hui_engine.h"), "");
    EXPECT_NE(complaint("surface/midi_host.cpp", false, "client_link/udp_server.h"), "");
    EXPECT_NE(complaint("surface/midi_host.cpp", false, "platform/virtual/memory_midi.h"), "");
    EXPECT_NE(complaint("model/receiver_model.cpp", false, "platform/posix/run_loop.h"), "");
    EXPECT_NE(complaint("remote/session_picture.cpp", false, "client_link/state_messages.h"), "");
    EXPECT_NE(complaint("app/headless_main.cpp", false, "simulator/simulated_session.h"), "");
    EXPECT_EQ(complaint("app/demo_main.cpp", false, "simulator/simulated_session.h"), "");
    EXPECT_EQ(complaint("surface/midi_host_test.cpp", true, "platform/virtual/memory_midi.h"), "");
    EXPECT_EQ(quotedIncludes("#include \"a/b.h\"\n#include <c>\n  #import \"d.h\"\n"),
              (std::vector<std::string>{"a/b.h", "d.h"}));
}

} // namespace
} // namespace lumbrine::tidy
