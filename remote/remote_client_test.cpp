#include "platform/virtual/virtual_network.h"
#include "platform/virtual/virtual_runtime.h"
#include "remote/command_builder.h"
#include "remote/remote_client.h"
#include "remote/testing/scripted_receiver.h"
#include "remote/testing/wire_samples.h"

#include <cerrno>
#include <chrono>

namespace lumbrine::remote {
namespace {

using namespace std::chrono_literals;
using Datagrams = std::vector<Bytes>;
using States = std::vector<LinkState>;

const Bytes signOfLife{0x01, 0x07, 0x00, 0x00}; // a V-Pot that turns by nothing
const Bytes playing{0x01, 0x1D, 0x01, 0x00};
const Bytes stopped{0x01, 0x1D, 0x00, 0x00};

class RemoteClientTest : public ::testing::Test {
protected:
    RemoteClientTest() { renew({}); }

    void renew(RemoteOptions options) {
        client.reset();
        client = std::make_unique<RemoteClient>(runtime, network.host("192.168.1.7"), options);
        client->onState = [this](LinkState state) { states.push_back(state); };
        client->onMessage = [this](const ReceiverMessage& message) { messages.push_back(message); };
    }

    void connectAndAnswer() {
        ASSERT_TRUE(client->connect("192.168.1.2", 52700));
        runtime.runUntilIdle();
        say(pong);
        receiver.taken();
        states.clear();
        messages.clear();
    }

    void say(const Bytes& datagram) {
        receiver.send(datagram);
        runtime.runUntilIdle();
    }

    Datagrams heardIn(Duration duration) {
        runtime.runFor(duration);
        return receiver.taken();
    }

    VirtualRuntime runtime;
    VirtualNetwork network{runtime};
    ScriptedReceiver receiver{runtime, network.host("192.168.1.2"), 52700};
    std::unique_ptr<RemoteClient> client;
    States states;
    std::vector<ReceiverMessage> messages;
};

TEST_F(RemoteClientTest, SaysHelloAtOnceAndEverySecondUntilItIsAnswered) {
    ASSERT_TRUE(client->connect("192.168.1.2", 52700));
    EXPECT_EQ(heardIn(0s), Datagrams{hello});
    EXPECT_EQ(heardIn(999ms), Datagrams{});
    EXPECT_EQ(heardIn(1ms), Datagrams{hello});
    EXPECT_EQ(heardIn(1s), Datagrams{hello});
    EXPECT_EQ(client->state(), LinkState::searching);
}

TEST_F(RemoteClientTest, AnnouncesItsToken) {
    renew({.token = 0x0102030405060708});
    ASSERT_TRUE(client->connect("192.168.1.2", 52700));
    EXPECT_EQ(heardIn(0s), (Datagrams{{0x01, 0x00, 1, 2, 3, 4, 5, 6, 7, 8}}));
}

TEST_F(RemoteClientTest, IsConnectedOnceTheReceiverAnswers) {
    ASSERT_TRUE(client->connect("192.168.1.2", 52700));
    runtime.runUntilIdle();
    say(pong);
    EXPECT_EQ(states, States{LinkState::connected});
    EXPECT_EQ(messages, std::vector<ReceiverMessage>{Pong{}});
}

TEST_F(RemoteClientTest, AsksAgainWhenTheStateComesWithoutThePong) {
    ASSERT_TRUE(client->connect("192.168.1.2", 52700));
    receiver.taken();
    runtime.runUntilIdle();
    receiver.taken();
    say(playing);
    EXPECT_EQ(states, States{LinkState::connected});
    EXPECT_TRUE(client->picture().transport.playing);
    EXPECT_EQ(receiver.taken(), Datagrams{hello});
}

TEST_F(RemoteClientTest, UpdatesThePictureBeforeItReportsTheMessage) {
    connectAndAnswer();
    bool seen = false;
    client->onMessage = [&](const ReceiverMessage&) { seen = client->picture().transport.playing; };
    say(playing);
    EXPECT_TRUE(seen);
}

TEST_F(RemoteClientTest, GivesASignOfLifeAfterASecondOfSilence) {
    connectAndAnswer();
    EXPECT_EQ(heardIn(999ms), Datagrams{});
    EXPECT_EQ(heardIn(1ms), Datagrams{signOfLife});
}

TEST_F(RemoteClientTest, NeedsNoSignOfLifeWhileItSendsAnyway) {
    connectAndAnswer();
    runtime.runFor(900ms);
    client->send(mutePressCommand(strip(1)));
    say(playing);
    EXPECT_EQ(heardIn(999ms), (Datagrams{{0x01, 0x04, 0x01}}));
    EXPECT_EQ(heardIn(101ms), Datagrams{signOfLife}); // at the next quarter of a second
}

TEST_F(RemoteClientTest, AsksForEverythingEveryTenSeconds) {
    connectAndAnswer();
    Datagrams heard;
    for (int second = 1; second < 10; ++second) {
        say(playing);
        for (const Bytes& datagram : heardIn(1s))
            heard.push_back(datagram);
    }
    EXPECT_EQ(heard, Datagrams(9, signOfLife));
    say(playing);
    EXPECT_EQ(heardIn(1s), Datagrams{hello});
}

TEST_F(RemoteClientTest, AsksWhetherTheReceiverIsThereAfterTwoSecondsWithoutAWord) {
    connectAndAnswer();
    EXPECT_EQ(heardIn(1999ms), Datagrams{signOfLife});
    EXPECT_EQ(heardIn(1ms), Datagrams{hello});
}

TEST_F(RemoteClientTest, IsLostAfterFourSecondsWithoutAWord) {
    connectAndAnswer();
    runtime.runFor(3999ms);
    EXPECT_EQ(client->state(), LinkState::connected);
    runtime.runFor(1ms);
    EXPECT_EQ(states, States{LinkState::lost});
    receiver.taken();
    EXPECT_EQ(heardIn(3s), Datagrams(3, hello));
}

TEST_F(RemoteClientTest, KeepsThePictureWhileLostAndClearsItAfterwards) {
    connectAndAnswer();
    say(playing);
    runtime.runFor(4s);
    ASSERT_EQ(client->state(), LinkState::lost);
    EXPECT_TRUE(client->picture().transport.playing);
    say(pong);
    EXPECT_EQ(client->state(), LinkState::connected);
    EXPECT_EQ(client->picture(), SessionPicture{});
}

TEST_F(RemoteClientTest, IsBusyWhileAnotherIsInControlAndGoesOnAsking) {
    ASSERT_TRUE(client->connect("192.168.1.2", 52700));
    runtime.runUntilIdle();
    say(busyAnswer);
    EXPECT_EQ(states, States{LinkState::busy});
    receiver.taken();
    EXPECT_EQ(heardIn(2s), Datagrams(2, hello));
    say(busyAnswer);
    say(pong);
    EXPECT_EQ(states, (States{LinkState::busy, LinkState::connected}));
}

TEST_F(RemoteClientTest, IsTakenOverWhenItIsRefusedAfterHavingBeenInControl) {
    connectAndAnswer();
    say(busyAnswer);
    say(busyAnswer);
    EXPECT_EQ(states, States{LinkState::takenOver});
}

TEST_F(RemoteClientTest, DoesNotTakeALateMessageForControl) {
    connectAndAnswer();
    say(busyAnswer);
    say(playing);
    EXPECT_EQ(client->state(), LinkState::takenOver);
    say(pong);
    EXPECT_EQ(client->state(), LinkState::connected);
}

TEST_F(RemoteClientTest, IsLostWhenTheReceiverThatRefusedItGoesSilent) {
    ASSERT_TRUE(client->connect("192.168.1.2", 52700));
    runtime.runUntilIdle();
    say(busyAnswer);
    runtime.runFor(4s);
    EXPECT_EQ(states, (States{LinkState::busy, LinkState::lost}));
    say(busyAnswer);
    EXPECT_EQ(client->state(), LinkState::busy);
}

TEST_F(RemoteClientTest, TakesOverAndSaysHello) {
    connectAndAnswer();
    say(busyAnswer);
    client->takeOver();
    EXPECT_EQ(heardIn(0s), (Datagrams{{0x01, 0x25}, hello}));
}

TEST_F(RemoteClientTest, RepeatsATakeOverWhileItIsRefusedAndNeverAfterwards) {
    const Datagrams both{{0x01, 0x25}, hello};
    connectAndAnswer();
    say(busyAnswer);
    client->takeOver();
    EXPECT_EQ(heardIn(999ms), both);
    say(busyAnswer);
    EXPECT_EQ(heardIn(1ms), both);
    say(pong);
    say(busyAnswer); // another one has taken over since
    EXPECT_EQ(heardIn(2s), Datagrams(2, hello));
}

TEST_F(RemoteClientTest, ForgetsATakeOverWhenTheReceiverIsLost) {
    connectAndAnswer();
    say(busyAnswer);
    client->takeOver();
    runtime.runFor(4s);
    ASSERT_EQ(client->state(), LinkState::lost);
    receiver.taken();
    say(busyAnswer);
    EXPECT_EQ(heardIn(1s), Datagrams{hello});
}

TEST_F(RemoteClientTest, TouchesMovesAndReleasesAFaderAndFollowsItItself) {
    connectAndAnswer();
    client->touch(strip(3));
    client->move(strip(3), FaderValue::ofRaw(0x1234));
    client->release(strip(3));
    EXPECT_EQ(heardIn(0s), (Datagrams{{0x01, 0x02, 0x03}, {0x01, 0x01, 0x03, 0x12, 0x34}, {0x01, 0x03, 0x03}}));
    EXPECT_EQ(client->picture().at(strip(3)).fader, FaderValue::ofRaw(0x1234));
}

TEST_F(RemoteClientTest, RepeatsATouchEveryHalfSecondUntilTheRelease) {
    const Bytes touch{0x01, 0x02, 0x03};
    const Bytes release{0x01, 0x03, 0x03};
    connectAndAnswer();
    client->touch(strip(3));
    EXPECT_EQ(heardIn(499ms), Datagrams{touch});
    EXPECT_EQ(heardIn(1ms), Datagrams{touch});
    EXPECT_EQ(heardIn(499ms), Datagrams{});
    EXPECT_EQ(heardIn(1ms), Datagrams{touch});
    client->release(strip(3));
    EXPECT_EQ(heardIn(49ms), Datagrams{release});
    EXPECT_EQ(heardIn(1ms), Datagrams{release});
    EXPECT_EQ(heardIn(50ms), Datagrams{release});
    EXPECT_EQ(heardIn(899ms), Datagrams{});
}

TEST_F(RemoteClientTest, RepeatsNoReleaseAfterTheNextTouch) {
    connectAndAnswer();
    client->touch(strip(3));
    client->release(strip(3));
    client->touch(strip(3));
    EXPECT_EQ(heardIn(499ms), (Datagrams{{0x01, 0x02, 0x03}, {0x01, 0x03, 0x03}, {0x01, 0x02, 0x03}}));
}

TEST_F(RemoteClientTest, RepeatsNoPress) {
    connectAndAnswer();
    client->send(mutePressCommand(strip(3)));
    EXPECT_EQ(heardIn(999ms), (Datagrams{{0x01, 0x04, 0x03}}));
}

TEST_F(RemoteClientTest, RepeatsNoTouchOnceTheReceiverIsLost) {
    connectAndAnswer();
    client->touch(strip(3));
    runtime.runFor(4s);
    ASSERT_EQ(client->state(), LinkState::lost);
    receiver.taken();
    EXPECT_EQ(heardIn(1s), Datagrams{hello});
}

TEST_F(RemoteClientTest, ReleasesWhatIsStillHeldWhenItGoes) {
    connectAndAnswer();
    client->touch(strip(3));
    client->touch(strip(12));
    client->release(strip(3));
    heardIn(0s);
    client.reset();
    EXPECT_EQ(heardIn(0s), (Datagrams{{0x01, 0x03, 0x0C}}));
}

TEST_F(RemoteClientTest, HoldsNothingAnyMoreOnceItIsRefused) {
    connectAndAnswer();
    client->touch(strip(3));
    say(busyAnswer);
    heardIn(0s);
    EXPECT_EQ(heardIn(1s), Datagrams{hello});
    client.reset();
    EXPECT_EQ(heardIn(0s), Datagrams{});
}

TEST_F(RemoteClientTest, HearsNobodyButItsReceiver) {
    connectAndAnswer();
    DatagramSockets& stranger = network.host("192.168.1.9");
    ScriptedReceiver other(runtime, stranger, 52700);
    ASSERT_TRUE(client->connect("192.168.1.9", 52700)); // so that the stranger knows where the client is
    ASSERT_TRUE(client->connect("192.168.1.2", 52700));
    runtime.runUntilIdle();
    other.send(pong);
    runtime.runUntilIdle();
    EXPECT_EQ(client->state(), LinkState::searching);
    EXPECT_TRUE(messages.empty());
}

TEST_F(RemoteClientTest, ClearsThePictureForAnotherReceiver) {
    connectAndAnswer();
    say(playing);
    ScriptedReceiver other(runtime, network.host("192.168.1.9"), 4000);
    ASSERT_TRUE(client->connect("192.168.1.9", 4000));
    EXPECT_EQ(client->state(), LinkState::searching);
    EXPECT_EQ(client->picture(), SessionPicture{});
    runtime.runUntilIdle();
    EXPECT_EQ(other.taken(), Datagrams{hello});
}

TEST_F(RemoteClientTest, ForgetsWhatTheFormerReceiverStillHadSaid) {
    connectAndAnswer();
    receiver.send(playing);
    runtime.sleepFor(1s); // it waits for the main thread
    ASSERT_TRUE(client->connect("192.168.1.9", 4000));
    runtime.runUntilIdle();
    EXPECT_TRUE(messages.empty());
    EXPECT_EQ(client->state(), LinkState::searching);
}

TEST_F(RemoteClientTest, CountsWhatIsNoMessageAndChangesNothingForIt) {
    connectAndAnswer();
    say(playing);
    const SessionPicture before = client->picture();
    messages.clear();
    say({0x01, 0x1D, 0x02, 0x00});
    say({});
    EXPECT_EQ(client->malformedCount(), 2u);
    EXPECT_EQ(client->picture(), before);
    EXPECT_TRUE(messages.empty());
}

TEST_F(RemoteClientTest, QueuesABoundedNumberOfMessages) {
    connectAndAnswer();
    for (int i = 0; i < 5000; ++i) {
        receiver.send(playing);
        if (i % 1000 == 999) runtime.sleepFor(100ms); // the main thread is away while they arrive
    }
    runtime.runUntilIdle();
    EXPECT_EQ(messages.size(), 4096u);
    EXPECT_EQ(client->droppedCount(), 904u);
    say(stopped);
    EXPECT_FALSE(client->picture().transport.playing);
}

TEST_F(RemoteClientTest, SaysWhenThereIsNoSocketToBeHad) {
    network.fail("192.168.1.7", VirtualNetwork::Call::open, EMFILE);
    EXPECT_FALSE(client->connect("192.168.1.2", 52700));
    network.fail("192.168.1.7", VirtualNetwork::Call::open, 0);
    network.fail("192.168.1.7", VirtualNetwork::Call::bind, EADDRINUSE);
    EXPECT_FALSE(client->connect("192.168.1.2", 52700));
    network.fail("192.168.1.7", VirtualNetwork::Call::bind, 0);
    EXPECT_TRUE(client->connect("192.168.1.2", 52700));
}

TEST_F(RemoteClientTest, SaysWhenTheHostIsUnknownAndStaysWithItsReceiver) {
    connectAndAnswer();
    EXPECT_FALSE(client->connect("not a host", 52700));
    EXPECT_EQ(client->state(), LinkState::connected);
    EXPECT_EQ(heardIn(1s), Datagrams{signOfLife});
}

TEST_F(RemoteClientTest, SendsNothingBeforeItIsTurnedToAReceiver) {
    client->send(mutePressCommand(strip(0)));
    client->takeOver();
    client->touch(strip(0));
    runtime.runFor(5s);
    EXPECT_EQ(receiver.taken(), Datagrams{});
    EXPECT_EQ(client->state(), LinkState::searching);
}

TEST_F(RemoteClientTest, GetsThroughANetworkThatLosesHalfOfWhatItCarries) {
    network.setFaults({.loss = 0.5, .jitter = 50ms});
    ASSERT_TRUE(client->connect("192.168.1.2", 52700));
    for (int second = 0; second < 60; ++second) {
        if (!heardIn(1s).empty()) receiver.send(pong);
    }
    EXPECT_NE(std::ranges::find(states, LinkState::connected), states.end());
}

} // namespace
} // namespace lumbrine::remote
