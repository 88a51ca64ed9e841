// lumbrine-headless while somebody outside takes nothing from it: who reads its output, and the network.
#include "tests/end_to_end/client_socket.h"
#include "tests/end_to_end/deadlines.h"
#include "tests/end_to_end/neighbours.h"
#include "tests/end_to_end/receiver_process.h"
#include "tests/interop/own_world.h"
#include "tests/interop/waiting.h"

#include <csignal>

namespace lumbrine::end_to_end {
namespace {

using interop::ChildProcess;
using interop::waitUntil;
using std::chrono::milliseconds;

constexpr milliseconds soon{1000};

// To a hello that is sent now.
bool answers(ClientSocket& client, milliseconds limit) {
    client.forget();
    client.send(Bytes{0x01, 0x00});
    return client.hears({0x01, 0x7F}, limit);
}

TEST(UnreadOutput, KeepsTheReceiverFromNothing) {
    const std::uint16_t port = freePort();
    ChildProcess receiver({headlessProgram},
                          {.environment = environmentFor({.port = port, .jack = noJack}), .outputIsRead = false});
    ClientSocket client(port);
    ASSERT_TRUE(waitUntil([&] { return answers(client, milliseconds(200)); }));

    for (int press = 0; press < 500; ++press) { // each has a line of the log
        client.send(Bytes{0x01, 0x04, static_cast<std::uint8_t>(press % 16)});
        if (press % 20 != 0) continue;
        const bool answered = answers(client, soon); // not faster than they are read
        EXPECT_TRUE(answered) << "after " << press << " presses";
        if (!answered) break;
    }
    EXPECT_TRUE(answers(client, soon));
    receiver.signal(SIGTERM);
    EXPECT_EQ(receiver.wait(ending), 0);
}

TEST(FullSocket, KeepsTheReceiverFromNothing) {
    if (!interop::inOwnWorld()) GTEST_SKIP() << "needs a network of its own";
    Neighbours neighbours;
    ReceiverProcess receiver({.jack = noJack});
    ClientSocket owner(receiver.port);
    ASSERT_TRUE(answers(owner, interop::patience));

    for (int i = 0; i < 1000; ++i) // each is told that somebody else is in control
        neighbours.send(i % Neighbours::count, receiver.port, Bytes{0x01});
    // What it does is seen in the log: an answer may be lost, and so may a press behind the neighbours' datagrams.
    const auto pressed = [&] {
        owner.send(Bytes{0x01, 0x04, 0x07});
        return receiver.process.output().find("switch zone7") != std::string::npos;
    };
    EXPECT_TRUE(waitUntil(pressed, soon));
    receiver.process.signal(SIGTERM);
    EXPECT_EQ(receiver.process.wait(ending), 0) << receiver.process.output();
}

} // namespace
} // namespace lumbrine::end_to_end
