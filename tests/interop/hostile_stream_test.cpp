// The wire on the system's sockets, against servers that are none.
#include "tests/interop/link_rig.h"
#include "tests/interop/local_server.h"

#include <sys/socket.h>

#include <array>
#include <string_view>
#include <thread>

namespace lumbrine::interop {
namespace {

using namespace std::chrono_literals;

// Reads until nothing has come for a while.
void readRequest(int connection) {
    const timeval pause{0, 50'000};
    ::setsockopt(connection, SOL_SOCKET, SO_RCVTIMEO, &pause, sizeof pause);
    std::array<char, 4096> buffer{};
    while (::recv(connection, buffer.data(), buffer.size(), 0) > 0) {
    }
}

// Reads until the other end has gone.
void readToTheEnd(int connection) {
    const timeval pause{10, 0};
    ::setsockopt(connection, SOL_SOCKET, SO_RCVTIMEO, &pause, sizeof pause);
    std::array<char, 4096> buffer{};
    while (::recv(connection, buffer.data(), buffer.size(), 0) > 0) {
    }
}

bool send(int connection, std::string_view bytes) {
    return ::send(connection, bytes.data(), bytes.size(), MSG_NOSIGNAL) >= 0;
}

class HostileServer : public LinkTest {
protected:
    struct Outcome {
        std::string error;
        Clock::duration took;
    };

    // One call with a time-out of 0.3 seconds.
    Outcome callTo(const LocalServer& server) {
        const auto wire = wireTo(server.port, 0.3);
        const auto begin = Clock::now();
        const auto result = wire->call(path, Bytes{1});
        return {errorOf(result), Clock::now() - begin};
    }
};

constexpr std::string_view webAnswer = "HTTP/1.1 400 Bad Request\r\nConnection: close\r\n\r\n";
constexpr std::string_view alert{"\x15\x03\x01\x00\x02\x02\x46", 7};

TEST_F(HostileServer, AnswersAsAWebServerAndCloses) {
    const LocalServer server([](int connection) {
        readRequest(connection);
        send(connection, webAnswer);
    });
    EXPECT_EQ(callTo(server).error, "PTSL transport error: connection lost");
}

TEST_F(HostileServer, AnswersAsAWebServerAndStays) {
    const LocalServer server([](int connection) {
        send(connection, webAnswer);
        readToTheEnd(connection);
    });
    EXPECT_EQ(callTo(server).error, "PTSL response timed out");
}

TEST_F(HostileServer, SendsATLSAlertAndStays) {
    const LocalServer server([](int connection) {
        send(connection, alert);
        readToTheEnd(connection);
    });
    EXPECT_EQ(callTo(server).error, "PTSL response timed out");
}

TEST_F(HostileServer, ClosesAtOnce) {
    const LocalServer server([](int) {});
    for (int i = 0; i < 50; ++i)
        EXPECT_TRUE(callTo(server).error.starts_with("PTSL transport error: ")); // which, is a matter of luck
}

TEST_F(HostileServer, BreaksTheConnectionAtOnce) {
    const LocalServer server([](int connection) {
        const linger atOnce{1, 0};
        ::setsockopt(connection, SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
    });
    for (int i = 0; i < 50; ++i)
        EXPECT_TRUE(callTo(server).error.starts_with("PTSL transport error: "));
}

TEST_F(HostileServer, IsSilent) {
    const LocalServer server(readToTheEnd);
    const Outcome outcome = callTo(server);
    EXPECT_EQ(outcome.error, "PTSL response timed out");
    EXPECT_GE(outcome.took, 290ms);
    EXPECT_LT(outcome.took, 2s);
}

TEST_F(HostileServer, DripsOneFrameForEver) {
    const LocalServer server([](int connection) {
        send(connection, {"\xFF\xFF\xFF\x00\x00\x00\x00\x00\x01", 9});
        while (send(connection, "x"))
            std::this_thread::sleep_for(20ms);
    });
    const Outcome outcome = callTo(server);
    EXPECT_EQ(outcome.error, "PTSL response timed out");
    EXPECT_GE(outcome.took, 590ms);
    EXPECT_LT(outcome.took, 3s);
}

TEST_F(HostileServer, FloodsWithPingsAndReadsNoAnswers) {
    std::string pings;
    for (int i = 0; i < 1000; ++i)
        pings += std::string_view("\x00\x00\x08\x06\x00\x00\x00\x00\x00pingping", 17);
    const LocalServer server([&](int connection) {
        while (send(connection, pings)) {
        }
    });
    const Outcome outcome = callTo(server);
    EXPECT_EQ(outcome.error, "PTSL response timed out");
    EXPECT_LT(outcome.took, 3s);
}

TEST_F(HostileServer, FloodsWithFramesThatMeanNothing) {
    std::string frames;
    for (int i = 0; i < 1000; ++i)
        frames += std::string_view("\x00\x00\x04\x08\x00\x00\x00\x00\x01\x00\x00\x00\x01", 13);
    const LocalServer server([&](int connection) {
        while (send(connection, frames)) {
        }
    });
    const Outcome outcome = callTo(server);
    EXPECT_EQ(outcome.error, "PTSL response timed out");
    EXPECT_LT(outcome.took, 3s);
}

TEST_F(HostileServer, LeavesNoDescriptorOpen) {
    const LocalServer server([](int connection) { send(connection, webAnswer); });
    const auto before = openDescriptors();
    {
        const auto client = clientOf(server.port);
        for (int i = 0; i < 30; ++i)
            EXPECT_FALSE(client->trackList());
        EXPECT_LE(openDescriptors(), before + 1); // the server may be about to close its own end
    }
    EXPECT_EQ(server.accepted, 60);
}

TEST_F(HostileServer, HoldsNobodyUpWhenTheProgramEnds) {
    const LocalServer server(readToTheEnd);
    const auto client = clientOf(server.port);
    std::thread ending([this] {
        std::this_thread::sleep_for(50ms);
        sockets.shutDown();
    });
    const auto begin = Clock::now();
    EXPECT_EQ(errorOf(client->trackList()), "PTSL transport error: socket() failed");
    EXPECT_LT(Clock::now() - begin, 2s);
    ending.join();
}

} // namespace
} // namespace lumbrine::interop
