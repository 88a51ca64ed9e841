// The checker of answers sees floods and missing pongs.
#include "tests/simulation/answer_checkers.h"
#include "tests/simulation/testing/wire_actions.h"

namespace lumbrine::simulation {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr std::uint8_t panMode = 0x15;
constexpr std::uint8_t bankPosition = 0x16;
constexpr std::uint8_t transport = 0x1D;
constexpr std::uint8_t row = 0x1B;
constexpr std::uint8_t busy = 0x7D;
constexpr std::uint8_t pong = 0x7F;

class Answers : public testing::Test {
protected:
    Answers() { sent.peers = {"a", "b"}; }

    void send(double time, std::uint8_t type, std::size_t peer = 0) {
        sent.list.push_back({at(time), peer, {0x01, type, 0x00, 0x00}});
    }
    void send(int count, double begin, double interval, std::uint8_t type) {
        for (int i = 0; i < count; ++i)
            send(begin + i * interval, type);
    }
    std::vector<std::string> check(const std::vector<ReceivedDatagram>& received = {}) {
        return checkAnswers(sent, acceptedOf(received));
    }

    SentDatagrams sent;
};

TEST_F(Answers, AreAPongForEachHello) {
    const std::vector<ReceivedDatagram> received{{at(1), "a", {0x01, 0x00}}, {at(1), "a", {0x01, 0x00}}};
    send(1, pong);
    EXPECT_THAT(check(received), ElementsAre(HasSubstr("no pong")));
    send(1, pong);
    EXPECT_THAT(check(received), IsEmpty());
}

TEST_F(Answers, AreAtMostFiftyRefusalsASecond) {
    send(100, 0, 0.021, busy);
    EXPECT_THAT(check(), IsEmpty());
    send(51, 10, 0.001, busy);
    EXPECT_THAT(check(), ElementsAre(HasSubstr("more than 50")));
}

TEST_F(Answers, AreAtMostAThousandRefusalsASecondInAll) {
    sent.peers.clear();
    for (std::size_t peer = 0; peer < 21; ++peer) {
        sent.peers.push_back(std::to_string(peer));
        for (int i = 0; i < 50; ++i)
            send(1, busy, peer);
    }
    EXPECT_THAT(check(), ElementsAre(HasSubstr("more than 1000")));
}

TEST_F(Answers, HaveAPace) {
    send(500, 0, 0.0005, row);
    EXPECT_THAT(check(), IsEmpty());
    send(265, 10, 0, row);
    EXPECT_THAT(check(), ElementsAre(HasSubstr("rows faster")));
}

TEST_F(Answers, AreEverythingOnceInAQuarterOfASecond) {
    const auto sendEverything = [this](double time, std::size_t peer = 0) {
        for (const std::uint8_t type : {panMode, bankPosition, transport})
            send(time, type, peer);
    };
    for (const double time : {0.0, 0.25, 0.5})
        sendEverything(time);
    send(0.6, bankPosition); // it has changed
    send(0.6, panMode);
    send(0.65, panMode); // the client has switched it
    send(0.68, bankPosition);
    send(0.69, panMode); // a resend during a seek, which then tells its position
    send(0.69, bankPosition);
    send(0.695, transport); // it has changed
    sendEverything(0.7, 1); // to another client
    EXPECT_THAT(check(), IsEmpty());
    sendEverything(0.7);
    EXPECT_THAT(check(), ElementsAre(HasSubstr("everything twice")));
}

} // namespace
} // namespace lumbrine::simulation
