// Browsers, lumbrine-web, lumbrine-headless and, for moves, lumbrine-simulator on real MIDI ports.
#include "tests/end_to_end/client_socket.h"
#include "tests/end_to_end/gateway_process.h"
#include "tests/end_to_end/receiver_process.h"
#include "tests/end_to_end/simulator_process.h"
#include "tests/end_to_end/web_client.h"
#include "tests/interop/private_jack.h"

#include <cmath>
#include <csignal>
#include <memory>

namespace lumbrine::end_to_end {
namespace {

using interop::waitUntil;

const Bytes takeOver{0x01, 0x25};
const Bytes pong{0x01, 0x7F};
const Bytes busy{0x01, 0x7D};

Bytes helloOf(std::uint8_t device) {
    return {0x01, 0x00, 0, 0, 0, 0, 0, 0, 0, device};
}

bool answersWith(WebClient& browser, const Bytes& question, const Bytes& answer) {
    browser.send(question);
    const auto heard = browser.receive([](const Bytes& message) { return message == pong || message == busy; });
    return heard == answer;
}

// Waits for a message as a client in control does: it is never silent for long.
bool awaits(WebClient& browser, const std::function<bool(const Bytes&)>& wanted) {
    return waitUntil([&] {
        browser.send(Bytes{0x01, 0x07, 0x00, 0x00});
        return browser.receive(wanted, std::chrono::milliseconds(500)).has_value();
    });
}

class WebSession : public testing::Test {
protected:
    WebClient connected() { return WebClient(gateway->port, {.key = gateway->key()}); }

    std::unique_ptr<ReceiverProcess> receiver = std::make_unique<ReceiverProcess>(ReceiverSetup{.jack = noJack});
    std::unique_ptr<GatewayProcess> gateway = std::make_unique<GatewayProcess>(receiver->port);
};

TEST_F(WebSession, HasOneBrowserInControlAndTheOtherTakesOver) {
    WebClient first = connected(), second = connected();
    EXPECT_TRUE(answersWith(first, helloOf(1), pong));
    EXPECT_TRUE(answersWith(second, helloOf(2), busy));
    second.send(takeOver);
    EXPECT_TRUE(answersWith(second, helloOf(2), pong));
    EXPECT_TRUE(answersWith(first, helloOf(1), busy));
}

TEST_F(WebSession, GoesOnWithTheSameWebSocketWhenTheReceiverIsBack) {
    WebClient browser = connected();
    ASSERT_TRUE(answersWith(browser, helloOf(1), pong));
    const std::uint16_t port = receiver->port;
    receiver->process.signal(SIGKILL);
    ASSERT_TRUE(receiver->process.wait(interop::patience));
    for (int i = 0; i < 5; ++i)
        browser.send(helloOf(1));
    receiver = std::make_unique<ReceiverProcess>(ReceiverSetup{.port = port, .jack = noJack});
    EXPECT_TRUE(answersWith(browser, helloOf(1), pong));
}

TEST_F(WebSession, IsTheSameDevicesAfterTheGatewayWasKilled) {
    WebClient before = connected(), other = connected();
    ASSERT_TRUE(answersWith(before, helloOf(1), pong));
    ASSERT_TRUE(answersWith(other, helloOf(2), busy));
    gateway->process.signal(SIGKILL);
    EXPECT_EQ(before.closeCode(), std::nullopt);
    gateway = std::make_unique<GatewayProcess>(receiver->port);
    WebClient after = connected();
    EXPECT_TRUE(answersWith(after, helloOf(1), pong));
}

// A receiver that lets only clients with a key in.
class PairedWebSession : public testing::Test {
protected:
    ReceiverSetup setup(const std::string& stateHome) const {
        return {.port = port, .jack = noJack, .onlyPaired = true, .stateHome = stateHome};
    }

    const std::uint16_t port = freePort();
};

TEST_F(PairedWebSession, HasABrowserOfTheSameUser) {
    const GatewayProcess gateway(port);
    const ReceiverProcess receiver(setup(gateway.stateHome()));
    WebClient browser(gateway.port, {.key = gateway.key()});
    EXPECT_TRUE(answersWith(browser, helloOf(1), pong)) << receiver.process.output();
}

TEST_F(PairedWebSession, HasABrowserWhoseGatewayWasGivenTheKey) {
    const interop::TemporaryFolder home;
    const ReceiverProcess receiver(setup(home.path.string()));
    const GatewayProcess gateway(port, {"--seal-key", "@" + (home.path / "lumbrine/keys").string()});
    WebClient browser(gateway.port, {.key = gateway.key()});
    EXPECT_TRUE(answersWith(browser, helloOf(1), pong)) << receiver.process.output();
}

TEST_F(PairedWebSession, HasNoBrowserWithoutTheKey) {
    const interop::TemporaryFolder home;
    const ReceiverProcess receiver(setup(home.path.string()));
    const GatewayProcess gateway(port);
    WebClient browser(gateway.port, {.key = gateway.key()});
    browser.send(helloOf(1));
    EXPECT_TRUE(receiver.logs("A client without a key was not let in")) << receiver.process.output();
    EXPECT_FALSE(browser.receive(std::chrono::milliseconds(50)));
}

TEST_F(PairedWebSession, HasABrowserThatWasThereBeforeTheKey) {
    const GatewayProcess gateway(port);
    WebClient browser(gateway.port, {.key = gateway.key()});
    browser.send(helloOf(1));
    const ReceiverProcess receiver(setup(gateway.stateHome()));
    EXPECT_TRUE(waitUntil([&] {
        browser.send(helloOf(1));
        return browser.hears(pong, std::chrono::milliseconds(200));
    })) << receiver.process.output();
}

TEST(WebStudio, MovesFadersBothWays) {
    const interop::PrivateJack jack;
    const ReceiverProcess receiver;
    SimulatorProcess simulator({"--tracks", "8", "--surfaces", "1", "--latency-ms", "5", "--no-scripting"});
    ASSERT_TRUE(simulator.prints("A on")) << simulator.output();
    const GatewayProcess gateway(receiver.port);
    WebClient browser(gateway.port, {.key = gateway.key()});
    ASSERT_TRUE(answersWith(browser, helloOf(1), pong));
    const auto isMapped = [](const Bytes& message) {
        return message.size() == 7 && message[1] == 0x16 && message[5] == 8;
    };
    ASSERT_TRUE(awaits(browser, isMapped)) << receiver.process.output();

    browser.send(Bytes{0x01, 0x02, 0x02});             // a finger on strip 2
    browser.send(Bytes{0x01, 0x01, 0x02, 0x0C, 0xCD}); // moves to 0.2
    browser.send(Bytes{0x01, 0x03, 0x02});             // and is lifted
    EXPECT_TRUE(waitUntil([&] {
        const auto track = simulator.track(3);
        return track && std::abs(track->fader - 0.2) < 0.005;
    })) << simulator.output();

    simulator.type("fader 5 0.75");
    EXPECT_TRUE(awaits(browser, [](const Bytes& message) {
        if (message.size() != 5 || message[1] != 0x12 || message[2] != 4) return false;
        return std::abs((message[3] << 8 | message[4]) / 16383.0 - 0.75) < 0.005;
    })) << simulator.output();
}

} // namespace
} // namespace lumbrine::end_to_end
