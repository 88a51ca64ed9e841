// Dependencies point one way: app -> model -> links -> base and the seams to the operating system.
#include "tests/tidy/source_tree.h"

#include <algorithm>
#include <map>
#include <set>

namespace lumbrine::tidy {
namespace {

using Modules = std::vector<std::string>;

// What a module may include besides itself. A file belongs to the module with the longest name that its path is below.
const std::map<std::string, Modules>& arrows() {
    static const Modules ground{"base", "platform/api"};
    static const Modules backEnd{"base", "platform/api", "platform/posix"};
    // What is built on every system, and so stands on no back end that is one system's.
    static const Modules everywhere{"base",   "platform/api", "platform/portable", "platform/virtual",
                                    "seal",   "surface",      "client_link",       "ptsl",
                                    "screen", "model",        "simulator",         "remote"};
    static const Modules fuzzed = [] {
        Modules modules = everywhere;
        modules.insert(modules.end(), {"blackbox", "web"});
        return modules;
    }();
    static const Modules replays = [] {
        Modules modules = everywhere;
        modules.insert(modules.end(), {"blackbox", "blackbox/support", "platform/recorded", "app", "tools", "tests"});
        return modules;
    }();
    static const Modules processes{"base", "blackbox", "tests/interop"};
    static const std::map<std::string, Modules> table{
        {"base", {}},
        {"blackbox", {"base"}},
        {"blackbox/support", {"base", "blackbox", "seal"}},
        {"platform/api", {"base"}},
        {"platform/portable", ground},
        {"platform/posix", ground},
        {"platform/recorded", {"base", "platform/api", "blackbox"}},
        {"platform/linux", backEnd},
        {"platform/macos", backEnd},
        {"platform/qt", backEnd},
        {"platform/virtual", backEnd},
        {"surface", ground},
        {"seal", ground},
        {"client_link", {"base", "platform/api", "seal"}},
        {"ptsl", ground},
        {"screen", ground},
        {"model", {"base", "platform/api", "seal", "surface", "client_link", "ptsl", "screen"}},
        {"simulator", ground},
        {"remote", {"base", "platform/api", "seal"}},
        {"app",
         {"base", "blackbox", "blackbox/support", "platform/api", "platform/portable", "platform/posix",
          "platform/linux", "platform/macos", "platform/qt", "platform/recorded", "seal", "model"}},
        {"tools",
         {"base", "blackbox", "blackbox/support", "platform/api", "platform/portable", "platform/posix",
          "platform/linux", "platform/macos", "platform/recorded", "platform/virtual", "seal", "client_link", "model",
          "app", "simulator", "remote"}},
        {"web", {"base", "platform/api", "platform/posix", "platform/linux", "seal"}},
        {"tests", everywhere},
        {"tests/replay", replays},
        {"tests/interop",
         {"base", "platform/api", "platform/portable", "platform/posix", "platform/linux", "platform/virtual", "seal",
          "ptsl", "simulator", "tools"}},
        {"tests/macos", {"base", "platform/api", "platform/posix", "platform/macos", "screen"}},
        {"tests/end_to_end", processes},
        {"tests/desktop", {"base", "tests/interop", "tests/end_to_end"}},
        {"fuzz", fuzzed},
        {"benchmarks",
         {"base", "blackbox", "platform/recorded", "platform/api", "platform/portable", "platform/posix",
          "platform/linux", "platform/virtual", "seal", "surface", "client_link", "ptsl", "model", "simulator", "web"}},
    };
    return table;
}

std::string moduleOf(const std::string& path) {
    std::string longest;
    for (const auto& [module, allowed] : arrows())
        if (isBelow(path, module) && module.size() > longest.size()) longest = module;
    return longest;
}

// Empty when the include is allowed, else what is wrong with it.
std::string complaint(const std::string& path, bool isTest, const std::string& include) {
    const std::string from = moduleOf(path);
    const std::string to = moduleOf(include);
    if (from.empty()) return path + " belongs to no module that has arrows";
    if (from == to) return {};
    Modules allowed = arrows().at(from);
    if (isTest) allowed.insert(allowed.end(), {"platform/portable", "platform/virtual"});
    if (std::ranges::find(allowed, to) == allowed.end()) return path + " must not include " + include;
    return {};
}

// The product between its back ends and its programs is C++ and its standard library, whose headers have bare names:
// others' libraries, the system's own headers and a path in angle brackets do not belong there.
bool isPortableProduct(const std::string& path, bool isTest) {
    static const Modules portable{"base",        "blackbox", "platform/api", "seal", "surface",
                                  "client_link", "ptsl",     "screen",       "model"};
    return !isTest && std::ranges::find(portable, moduleOf(path)) != portable.end();
}

bool isOfTheStandardLibrary(const std::string& include) {
    return include.find_first_of("./") == std::string::npos;
}

TEST(IncludeArrows, PointTheWayTheArchitectureHasThem) {
    for (const SourceFile& file : cppFiles())
        for (const std::string& include : quotedIncludes(file.text))
            EXPECT_EQ(complaint(file.path, file.isTest(), include), "");
}

TEST(IncludeArrows, BeginInAModule) {
    for (const SourceFile& file : cppFiles())
        EXPECT_NE(moduleOf(file.path), "") << file.path << " is in no module that has arrows";
}

TEST(IncludeArrows, LeadFromThePortableProductToNobodyElsesLibrary) {
    for (const SourceFile& file : cppFiles()) {
        if (!isPortableProduct(file.path, file.isTest())) continue;
        for (const std::string& include : bracketedIncludes(file.text))
            EXPECT_TRUE(isOfTheStandardLibrary(include)) << file.path << " must not include <" << include << ">";
    }
}

TEST(IncludeArrows, AreWrittenFromTheTopOfTheTree) {
    std::set<std::string> paths;
    const std::vector<SourceFile> files = cppFiles();
    for (const SourceFile& file : files)
        paths.insert(file.path);
    for (const SourceFile& file : files) {
        for (const std::string& include : quotedIncludes(file.text))
            EXPECT_TRUE(paths.contains(include))
                << file.path << " includes " << include << ", which is no file of the project";
        for (const std::string& include : bracketedIncludes(file.text))
            EXPECT_FALSE(paths.contains(include)) << file.path << " has a file of the project in angle brackets";
    }
}

TEST(IncludeArrows, AreCheckedAgainstWrongOnes) {
    EXPECT_NE(complaint("base/strip.h", false, "surface/hui_engine.h"), "");
    EXPECT_NE(complaint("surface/midi_host.cpp", false, "client_link/udp_server.h"), "");
    EXPECT_NE(complaint("surface/midi_host.cpp", false, "platform/virtual/memory_midi.h"), "");
    EXPECT_NE(complaint("model/receiver_model.cpp", false, "platform/posix/run_loop.h"), "");
    EXPECT_NE(complaint("remote/session_picture.cpp", false, "client_link/state_messages.h"), "");
    EXPECT_NE(complaint("app/headless_main.cpp", false, "simulator/simulated_session.h"), "");
    EXPECT_EQ(complaint("tools/demo_main.cpp", false, "simulator/simulated_session.h"), "");
    EXPECT_EQ(complaint("surface/midi_host_test.cpp", true, "platform/virtual/memory_midi.h"), "");
}

TEST(IncludeArrows, LetTestsOfEverySystemStandOnNoSystemsBackEnd) {
    EXPECT_EQ(complaint("model/bank/seek_worker_test.cpp", true, "platform/portable/nlohmann_json.h"), "");
    EXPECT_NE(complaint("model/bank/seek_worker.cpp", false, "platform/portable/nlohmann_json.h"), "");
    EXPECT_NE(complaint("model/bank/seek_worker_test.cpp", true, "platform/linux/user_settings.h"), "");
    EXPECT_NE(complaint("tests/simulation/world.h", true, "platform/linux/user_settings.h"), "");
    EXPECT_NE(complaint("tests/simulation/world.h", true, "tests/interop/child_process.h"), "");
    EXPECT_EQ(complaint("tests/interop/midi_backend_test.cpp", true, "platform/linux/midi_backend.h"), "");
}

TEST(IncludeArrows, AreCheckedInFoldersThatTheTableDoesNotHave) {
    EXPECT_NE(complaint("platform/windows/ports.cpp", false, "base/strip.h"), "");
    EXPECT_NE(complaint("surface/midi_host.cpp", false, "platform/windows/ports.h"), "");
}

TEST(IncludeArrows, AreCheckedInAngleBracketsToo) {
    EXPECT_TRUE(isPortableProduct("model/bank/seek_worker.cpp", false));
    EXPECT_FALSE(isPortableProduct("model/testing/hand_over.h", true));
    EXPECT_FALSE(isPortableProduct("platform/linux/bell.cpp", false));
    EXPECT_TRUE(isOfTheStandardLibrary("string_view"));
    for (const char* foreign : {"platform/linux/bell.h", "sys/socket.h", "pthread.h", "nlohmann/json.hpp"})
        EXPECT_FALSE(isOfTheStandardLibrary(foreign)) << foreign;
    EXPECT_EQ(bracketedIncludes("#include \"a/b.h\"\n#include <c>\n#  include<d/e.h>\n"),
              (std::vector<std::string>{"c", "d/e.h"}));
}

TEST(IncludeArrows, AreFoundHoweverTheyAreWritten) {
    EXPECT_EQ(quotedIncludes("#include \"a/b.h\"\n#include <c>\n  #import \"d.h\"\n"),
              (std::vector<std::string>{"a/b.h", "d.h"}));
}

} // namespace
} // namespace lumbrine::tidy
