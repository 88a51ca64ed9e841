// Clients and server together, sealed, on a network that loses, doubles and reorders, with a forger in it.
#include "client_link/client_command.h"
#include "client_link/state_messages.h"
#include "client_link/udp_server.h"
#include "platform/virtual/toy_secrets.h"
#include "platform/virtual/virtual_network.h"
#include "platform/virtual/virtual_runtime.h"
#include "remote/command_builder.h"
#include "remote/remote_client.h"

#include <chrono>
#include <optional>

namespace lumbrine {
namespace {

using namespace std::chrono_literals;
using remote::LinkState;

const PairingKey key = *PairingKey::parse("742BCM0SCXPZA154Z02S9P89HC");

// A receiver that notes the values of presses and moves, and the way to it.
class SealedControlTest : public ::testing::Test {
protected:
    SealedControlTest() { startServer(); }

    void startServer() {
        server.reset();
        server.emplace(runtime, network.host("192.168.1.2"), 52700);
        server->onDatagram = [this](ByteView bytes, const Sender& sender) {
            const auto command = parseClientCommand(bytes);
            if (!command) return;
            if (std::holds_alternative<Hello>(*command)) server->send(pongMessage(), sender.key);
            if (const auto* press = std::get_if<SetAutoMode>(&*command)) pressed.push_back(press->mode);
            if (const auto* move = std::get_if<FaderMove>(&*command)) moves.push_back(move->value.raw());
        };
        server->useSeals(secrets);
        server->setKeys({key});
        server->letOnlyPairedIn(true);
        EXPECT_TRUE(server->start().has_value());
        talk = runtime.repeatOnMain(100ms, [this] { server->broadcast(transportMessage(true, false)); });
    }

    void connect(remote::RemoteClient& client) {
        EXPECT_TRUE(client.connect("192.168.1.2", 52700));
        runtime.runFor(100ms);
    }

    VirtualRuntime runtime;
    VirtualNetwork network{runtime};
    ToySecrets secrets{1};
    ToySecrets phonesSecrets{2};
    std::vector<int> pressed;
    std::vector<int> moves;
    std::optional<UDPServer> server;
    std::unique_ptr<RepeatingTimer> talk;
    remote::RemoteClient phone{
        runtime, network.host("192.168.1.7"), {.token = std::nullopt, .key = key, .secrets = &phonesSecrets}};
};

TEST_F(SealedControlTest, AClientWithTheKeyIsConnected) {
    connect(phone);
    EXPECT_EQ(phone.state(), LinkState::connected);
    EXPECT_TRUE(phone.picture().transport.playing);
    ASSERT_TRUE(phone.loss());
    EXPECT_EQ(phone.loss()->lost, 0U);
}

TEST_F(SealedControlTest, AClientWithoutAKeyFindsNoReceiver) {
    remote::RemoteClient other(runtime, network.host("192.168.1.8"), {.token = 8});
    connect(other);
    other.takeOver();
    runtime.runFor(5s);
    EXPECT_EQ(other.state(), LinkState::searching);
    EXPECT_EQ(server->strangers(), 1U);
}

TEST_F(SealedControlTest, AClientWithAKeyIsServedByAReceiverWithoutOne) {
    server->letOnlyPairedIn(false);
    server->setKeys({});
    connect(phone);
    EXPECT_EQ(phone.state(), LinkState::connected);
    EXPECT_FALSE(phone.loss());
}

TEST_F(SealedControlTest, TakesControlFromAnotherClientWithTheKey) {
    connect(phone);
    remote::RemoteClient tablet(runtime, network.host("192.168.1.8"),
                                {.token = std::nullopt, .key = key, .secrets = &phonesSecrets});
    connect(tablet);
    EXPECT_EQ(tablet.state(), LinkState::busy);
    tablet.takeOver();
    runtime.runFor(2s);
    EXPECT_EQ(tablet.state(), LinkState::connected);
    EXPECT_EQ(phone.state(), LinkState::takenOver);
}

TEST_F(SealedControlTest, AClientFindsAReceiverAgainThatWasRestarted) {
    connect(phone);
    startServer();
    runtime.runFor(5s);
    EXPECT_EQ(phone.state(), LinkState::connected);
    phone.send(remote::setAutoModeCommand(*Strip::of(0), remote::AutoModeKey{3}));
    runtime.runFor(10ms);
    EXPECT_EQ(pressed, std::vector<int>{3});
}

TEST_F(SealedControlTest, EveryPressHappensOnceOrNotAtAllAndAFaderNeverJumpsBack) {
    for (int round = 0; round < 20; ++round) {
        network.setFaults({.loss = 0.2, .duplication = 0.3, .jitter = 50ms, .straying = 0.1, .detour = 3s});
        pressed.clear();
        moves.clear();
        phone.connect("192.168.1.2", 52700);
        while (!phone.loss())
            runtime.runFor(1s);
        for (int i = 0; i < 6; ++i) {
            phone.send(remote::setAutoModeCommand(*Strip::of(0), static_cast<remote::AutoModeKey>(i)));
            for (int move = 0; move < 20; ++move, runtime.runFor(20ms))
                phone.move(*Strip::of(0), FaderValue::ofRaw(static_cast<std::uint16_t>(100 * i + move)));
        }
        network.setFaults({});
        phone.move(*Strip::of(0), FaderValue::ofRaw(9999));
        runtime.runFor(5s);
        EXPECT_TRUE(std::ranges::is_sorted(moves));
        EXPECT_EQ(moves.back(), 9999);
        EXPECT_GT(moves.size(), 30U) << "of 121; some are lost, and some overtaken";
        std::ranges::sort(pressed);
        EXPECT_EQ(std::ranges::adjacent_find(pressed), pressed.end());
    }
}

// Reads every datagram, writes any address, changes what it likes and plays everything again.
TEST_F(SealedControlTest, AForgerGetsNeitherAWordInNorAnAnswerOut) {
    connect(phone);
    struct Recorded {
        std::string host;
        std::uint16_t port;
        Bytes bytes;
    };
    std::vector<Recorded> recording;
    network.onDatagram = [&](const std::string& host, std::uint16_t port, ByteView bytes) {
        recording.push_back({host, port, Bytes(bytes.begin(), bytes.end())});
    };
    for (int i = 0; i < 6; ++i, runtime.runFor(300ms)) {
        phone.send(remote::setAutoModeCommand(*Strip::of(0), static_cast<remote::AutoModeKey>(i)));
        phone.move(*Strip::of(0), FaderValue::ofRaw(static_cast<std::uint16_t>(i)));
    }
    network.onDatagram = nullptr;
    talk.reset();
    const auto taken = pressed.size() + moves.size();
    const auto ownership = server->ownership();
    for (const auto& [host, port, bytes] : recording)
        for (std::size_t change = 0; change <= bytes.size(); ++change) {
            Bytes forged = bytes;
            if (change < forged.size()) forged[change] ^= 0x04;
            network.forge(host, port, "192.168.1.2", 52700, forged);
            network.forge("192.168.1.66", 1000, "192.168.1.2", 52700, forged);
        }
    std::size_t answers = 0;
    network.onDatagram = [&](const std::string&, std::uint16_t, ByteView) { ++answers; };
    runtime.runFor(10ms);
    EXPECT_GT(recording.size(), 12U);
    EXPECT_EQ(pressed.size() + moves.size(), taken);
    EXPECT_EQ(answers, 0U);
    EXPECT_EQ(server->ownership(), ownership);
}

} // namespace
} // namespace lumbrine
