// lumbrine-simulator as a program offers its scripting service on a TCP port.
#include "tests/interop/child_process.h"
#include "tests/interop/official_client.h"
#include "tests/interop/private_jack.h"
#include "tests/interop/waiting.h"

#include <csignal>
#include <fstream>
#include <regex>

namespace lumbrine::interop {
namespace {

using testing::HasSubstr;

const std::string program = LUMBRINE_BIN_DIR "/lumbrine-simulator";

// 0 when it tells none in time.
std::uint16_t portOf(const ChildProcess& simulator) {
    const std::regex pattern(R"(\| scripting on (\d+) \|)");
    std::smatch match;
    std::string output;
    const auto tells = [&] { return std::regex_search(output = simulator.output(), match, pattern); };
    return waitUntil(tells) ? static_cast<std::uint16_t>(std::stoi(match[1])) : std::uint16_t{0};
}

TEST(SimulatorScripting, IsServedWithTheOptionsOfTheCommandLine) {
    const PrivateJack jack;
    ChildProcess simulator({program, "--tracks", "500", "--scripting-port", "0", "--attributes", "numbers",
                            "--japanese-names", "--folders", "1"});
    OfficialClient client(portOf(simulator));
    ASSERT_TRUE(client.registerOurselves()) << simulator.output();
    const ScriptingJSON list = client.ask(OfficialClient::trackList).body()["track_list"];
    ASSERT_EQ(list.size(), 500u);
    EXPECT_EQ(list[1]["name"], "ドラム 2");
    EXPECT_EQ(list[1]["track_attributes"]["is_hidden"], 3);
    EXPECT_EQ(client.set(OfficialClient::setMute, "ドラム 2", true).error(), 0);
    simulator.signal(SIGTERM);
    EXPECT_EQ(simulator.wait(patience), 0) << simulator.output();
}

TEST(SimulatorScripting, HasTheFaultsThatItsUserTypes) {
    const PrivateJack jack;
    const TemporaryFolder folder;
    const std::string keyboard = folder.path / "keyboard";
    ASSERT_EQ(runCommand({"mkfifo", keyboard}).status, 0);
    ChildProcess simulator(
        {"sh", "-c", "exec " + program + " --scripting-port 0 --faulty-wire --down-ms 200 < " + keyboard});
    std::ofstream typed(keyboard);
    OfficialClient client(portOf(simulator));
    ASSERT_TRUE(client.registerOurselves()) << simulator.output();
    typed << "script reset 1\ntracks\n" << std::flush;
    ASSERT_TRUE(waitUntil([&] { return simulator.output().find("Kick In") != std::string::npos; }));
    EXPECT_EQ(client.ask(OfficialClient::trackList).status.error_code(), grpc::StatusCode::INTERNAL);
    EXPECT_EQ(client.ask(OfficialClient::trackList).error(), 0);
    typed << "quit\n" << std::flush;
    EXPECT_EQ(simulator.wait(patience), 0) << simulator.output();
}

TEST(SimulatorScripting, GoesWithoutWhenThePortIsTaken) {
    const PrivateJack jack;
    ChildProcess first({program, "--scripting-port", "0"});
    const std::string port = std::to_string(portOf(first));
    ChildProcess second({program, "--scripting-port", port});
    EXPECT_TRUE(waitUntil([&] { return second.output().find("A gone | ") != std::string::npos; })) << second.output();
    EXPECT_THAT(second.output(), HasSubstr("port " + port + " is taken: there is no scripting service\n"));
    EXPECT_EQ(second.output().find("scripting on"), std::string::npos);
    for (ChildProcess* simulator : {&first, &second}) {
        simulator->signal(SIGTERM);
        EXPECT_EQ(simulator->wait(patience), 0) << simulator->output();
    }
}

} // namespace
} // namespace lumbrine::interop
