// Clients and server together: who is in control, and how each of them learns of it.
#include "client_link/client_command.h"
#include "client_link/state_messages.h"
#include "client_link/udp_server.h"
#include "platform/virtual/virtual_network.h"
#include "platform/virtual/virtual_runtime.h"
#include "remote/command_builder.h"
#include "remote/remote_client.h"

#include <chrono>

namespace lumbrine {
namespace {

using namespace std::chrono_literals;
using remote::LinkState;

// A server that answers a hello as the receiver does, notes who muted which strip, and talks every second.
class ClientControlTest : public ::testing::Test {
protected:
    ClientControlTest() {
        server.onDatagram = [this](ByteView bytes, const Sender& sender) {
            const auto command = parseClientCommand(bytes);
            if (!command) return;
            if (std::holds_alternative<Hello>(*command)) server.send(pongMessage(), sender.key);
            if (const auto* mute = std::get_if<MutePress>(&*command)) muted.push_back(mute->strip);
        };
        EXPECT_TRUE(server.start().has_value());
        talk = runtime.repeatOnMain(1s, [this] { server.broadcast(transportMessage(true, false)); });
        EXPECT_TRUE(phone.connect("192.168.1.2", 52700));
        runtime.runFor(10ms);
        EXPECT_TRUE(tablet.connect("192.168.1.2", 52700));
        runtime.runFor(10ms);
    }

    void press(remote::RemoteClient& client, int strip) {
        client.send(remote::mutePressCommand(*Strip::of(strip)));
        runtime.runFor(10ms);
    }

    VirtualRuntime runtime;
    VirtualNetwork network{runtime};
    std::vector<int> muted;
    UDPServer server{runtime, network.host("192.168.1.2"), 52700};
    std::unique_ptr<RepeatingTimer> talk;
    remote::RemoteClient phone{runtime, network.host("192.168.1.7"), {.token = 7}};
    remote::RemoteClient tablet{runtime, network.host("192.168.1.8"), {.token = 8}};
};

TEST_F(ClientControlTest, TheFirstClientIsConnectedAndTheSecondIsRefused) {
    EXPECT_EQ(phone.state(), LinkState::connected);
    EXPECT_EQ(tablet.state(), LinkState::busy);
    press(phone, 1);
    press(tablet, 2);
    EXPECT_EQ(muted, std::vector<int>{1});
}

TEST_F(ClientControlTest, AnHourOfSilenceOfTheUserChangesNothing) {
    runtime.runFor(1h);
    EXPECT_EQ(phone.state(), LinkState::connected);
    EXPECT_EQ(tablet.state(), LinkState::busy);
}

TEST_F(ClientControlTest, TakingOverTurnsTheRolesRound) {
    tablet.takeOver();
    runtime.runFor(2s); // until the phone gives its next sign of life
    EXPECT_EQ(tablet.state(), LinkState::connected);
    EXPECT_EQ(phone.state(), LinkState::takenOver);
    press(phone, 1);
    press(tablet, 2);
    EXPECT_EQ(muted, std::vector<int>{2});
    phone.takeOver();
    runtime.runFor(2s);
    EXPECT_EQ(phone.state(), LinkState::connected);
    EXPECT_EQ(tablet.state(), LinkState::takenOver);
}

TEST_F(ClientControlTest, TheSecondClientIsConnectedOnceTheFirstHasBeenSilentForSixSeconds) {
    auto third = std::make_unique<remote::RemoteClient>(runtime, network.host("192.168.1.9"));
    third->takeOver(); // before it is connected to anything: nothing
    ASSERT_TRUE(third->connect("192.168.1.2", 52700));
    third->takeOver();
    runtime.runFor(2s);
    ASSERT_EQ(third->state(), LinkState::connected);
    third.reset();
    runtime.runFor(4s);
    EXPECT_NE(tablet.state(), LinkState::connected);
    EXPECT_NE(phone.state(), LinkState::connected);
    runtime.runFor(3s);
    EXPECT_NE(tablet.state() == LinkState::connected, phone.state() == LinkState::connected); // one of them
}

TEST_F(ClientControlTest, ADeviceThatComesBackUnderAnotherAddressHasItsPlaceAtOnce) {
    remote::RemoteClient samePhone(runtime, network.host("192.168.1.70"), {.token = 7});
    ASSERT_TRUE(samePhone.connect("192.168.1.2", 52700));
    runtime.runFor(10ms);
    EXPECT_EQ(samePhone.state(), LinkState::connected);
    EXPECT_EQ(server.ownerIP(), "::ffff:192.168.1.70");
}

TEST_F(ClientControlTest, OneClientOfTwoStaysInControlOnANetworkThatLosesHalfOfEverything) {
    network.setFaults({.loss = 0.5, .duplication = 0.1, .latency = 5ms, .jitter = 50ms});
    runtime.runFor(10min);
    network.setFaults({});
    runtime.runFor(5s);
    EXPECT_NE(tablet.state() == LinkState::connected, phone.state() == LinkState::connected);
    EXPECT_EQ(phone.malformedCount(), 0u);
}

} // namespace
} // namespace lumbrine
