// Two clients on real sockets, and which of them lumbrine-headless listens to.
#include "tests/end_to_end/client_socket.h"
#include "tests/end_to_end/receiver_process.h"

#include <thread>

namespace lumbrine::end_to_end {
namespace {

using std::chrono::milliseconds;
using Clock = std::chrono::steady_clock;

const Bytes hello{0x01, 0x00};
const Bytes takeOver{0x01, 0x25};
const Bytes signOfLife{0x01, 0x07, 0x00, 0x00};
const Bytes pong{0x01, 0x7F};
const Bytes busy{0x01, 0x7D};

Bytes helloOf(std::uint8_t device) {
    return {0x01, 0x00, 0, 0, 0, 0, 0, 0, 0, device};
}

class Owner : public testing::Test {
protected:
    ReceiverProcess receiver{{.jack = noJack}};
    ClientSocket first{receiver.port};
    ClientSocket second{receiver.port};
};

// What answers, leaving out the state messages.
bool answersWith(ClientSocket& client, const Bytes& question, const Bytes& answer) {
    client.send(question);
    const auto heard = client.receive([](const Bytes& datagram) { return datagram == pong || datagram == busy; });
    return heard == answer;
}

TEST_F(Owner, IsTheFirstThatSpeaksAndTheOtherIsRefused) {
    EXPECT_TRUE(answersWith(first, hello, pong));
    EXPECT_TRUE(answersWith(second, hello, busy));
    EXPECT_TRUE(answersWith(second, signOfLife, busy));
    EXPECT_TRUE(answersWith(first, hello, pong));
}

TEST_F(Owner, IsAnsweredFromTheAddressItSpokeTo) {
    ClientSocket other(receiver.port, "127.0.0.2");
    EXPECT_TRUE(answersWith(other, hello, pong));
    EXPECT_TRUE(answersWith(first, hello, busy));
}

TEST_F(Owner, ChangesWhenAnotherClientTakesOver) {
    ASSERT_TRUE(answersWith(first, hello, pong));
    ASSERT_TRUE(answersWith(second, hello, busy));
    second.send(takeOver);
    EXPECT_TRUE(answersWith(second, hello, pong));
    EXPECT_TRUE(answersWith(first, signOfLife, busy));
    first.send(takeOver);
    EXPECT_TRUE(answersWith(first, hello, pong));
    EXPECT_TRUE(answersWith(second, hello, busy));
}

TEST_F(Owner, FollowsItsTokenToAnotherPort) {
    ASSERT_TRUE(answersWith(first, helloOf(7), pong));
    EXPECT_TRUE(answersWith(second, helloOf(8), busy));
    ClientSocket restarted(receiver.port);
    EXPECT_TRUE(answersWith(restarted, helloOf(7), pong));
    EXPECT_TRUE(answersWith(first, signOfLife, busy));
}

TEST_F(Owner, AloneGetsTheMessages) {
    ASSERT_TRUE(answersWith(first, hello, pong));
    ASSERT_TRUE(answersWith(second, hello, busy));
    const auto isSwitches = [](const Bytes& datagram) { return datagram.size() == 26 && datagram[1] == 0x13; };
    EXPECT_TRUE(first.receive(isSwitches).has_value()); // with the answer to its hello
    EXPECT_TRUE(first.receive(isSwitches).has_value()); // and regularly
    EXPECT_FALSE(second.receive(milliseconds(100)).has_value());
}

TEST_F(Owner, LosesItsPlaceSixSecondsAfterItsLastDatagram) {
    ASSERT_TRUE(answersWith(first, hello, pong));
    const auto last = Clock::now();
    Clock::time_point refused = last;
    for (;;) {
        const auto asked = Clock::now();
        second.send(hello);
        const auto answer = second.receive();
        ASSERT_TRUE(answer.has_value());
        if (*answer != busy) break;
        refused = asked;
        first.forget();
        std::this_thread::sleep_for(milliseconds(20));
    }
    // The first datagram reached the receiver a little before its answer came here, on a busy machine more than that.
    EXPECT_GE(Clock::now() - last, milliseconds(5500));
    EXPECT_LE(refused - last, milliseconds(6000));
    EXPECT_TRUE(answersWith(first, signOfLife, busy));
}

} // namespace
} // namespace lumbrine::end_to_end
