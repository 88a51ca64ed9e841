// Time, threads and sockets come from the seams; back ends are chosen by file; nothing is caught blindly.
#include "tests/tidy/source_tree.h"

#include <algorithm>

namespace lumbrine::tidy {
namespace {

struct Ban {
    std::string why;
    Pattern pattern;
    std::vector<std::string> allowedIn;
};

const std::vector<Ban>& bans() {
    static const std::vector<Ban> all{
        {"time and threads come from platform/api/runtime.h",
         Pattern(R"(\bstd::(j?thread|this_thread|(recursive_|timed_|shared_)*mutex|condition_variable|async|)"
                 R"(counting_semaphore|binary_semaphore)\b|\bsleep_(for|until)\b|\b(u|nano)sleep\s*\(|)"
                 R"(\b(steady|system|high_resolution)_clock\b|\bpthread_\w+)"),
         {"platform", "benchmarks", "tests/interop", "tests/end_to_end"}},
        {"sockets come from platform/api/datagram_sockets.h",
         Pattern(R"((^|[^\w>])::(socket|bind|recvfrom|sendto|recv|send|connect|getnameinfo|getaddrinfo)\s*\()"),
         {"platform", "benchmarks", "tests/interop", "tests/end_to_end"}},
        {"an operating system is chosen by folder",
         Pattern(R"(#\s*(if|ifdef|ifndef|elif).*\b(__APPLE__|__linux__|_WIN32|__unix__|TARGET_OS_\w+))"),
         {"platform"}},
        {"say what is caught", Pattern(R"(catch\s*\(\s*\.\.\.\s*\))"), {}},
        {"randomness comes from a seed", Pattern(R"(\brandom_device\b|\bs?rand\s*\()"), {"platform", "app"}},
    };
    return all;
}

bool bannedIn(const Ban& ban, const std::string& path, const std::string& line) {
    const auto holds = [&](const std::string& folder) { return isBelow(path, folder); };
    return std::ranges::none_of(ban.allowedIn, holds) && ban.pattern.isIn(line);
}

TEST(BannedCalls, StandNowhere) {
    for (const SourceFile& file : cppFiles()) {
        const std::vector<std::string> lines = codeLines(file.text);
        for (std::size_t i = 0; i < lines.size(); ++i)
            for (const Ban& ban : bans())
                EXPECT_FALSE(bannedIn(ban, file.path, lines[i]))
                    << file.path << ":" << i + 1 << ": " << lines[i] << "\n  " << ban.why;
    }
}

TEST(BannedCalls, AreFoundWhereTheyStand) {
    const auto banned = [](const std::string& path, const std::string& line) {
        return std::ranges::any_of(bans(), [&](const Ban& ban) { return bannedIn(ban, path, codeLines(line).at(0)); });
    };
    EXPECT_TRUE(banned("model/x.cpp", "std::this_thread::sleep_for(1s);"));
    EXPECT_TRUE(banned("surface/x.h", "std::mutex lock;"));
    EXPECT_TRUE(banned("client_link/x.cpp", "::recvfrom(fd, nullptr, 0, 0, nullptr, nullptr);"));
    EXPECT_TRUE(banned("surface/x.cpp", "#ifdef __APPLE__"));
    EXPECT_TRUE(banned("platform/linux/x.cpp", "} catch (...) {"));
    EXPECT_TRUE(banned("model/x.cpp", "if (c == '\"') std::mutex lock; else c = '\"';"));
    EXPECT_FALSE(banned("platform/posix/x.cpp", "std::mutex lock;"));
    EXPECT_FALSE(banned("surface/x.cpp", "void MIDIHost::send(ByteView message) {"));
    EXPECT_FALSE(banned("model/x.cpp", "// no std::mutex here"));
}

} // namespace
} // namespace lumbrine::tidy
