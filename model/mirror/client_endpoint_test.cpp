// The link's end, while the receive thread is at work.
#include "client_link/testing/datagrams.h"
#include "model/mirror/client_endpoint.h"
#include "model/testing/model_test.h"
#include "platform/virtual/toy_secrets.h"

namespace lumbrine {
namespace {

class ClientEndpointTest : public ::testing::Test {
protected:
    ModelWorld world;
    FakeComputer computer;
    Jobs jobs{world.runtime};
    PublishedState published;
    Lines lines;
    ActivityLog log{jobs, published, Bilingual(false), [this](const std::string& line) { lines.push_back(line); }};
    ClientEndpoint endpoint{
        jobs, published, world.network.host("192.168.1.2"), computer, computer, Configuration::read(computer), log};
    Phone phone{world, "192.168.1.7", "192.168.1.2", endpoint.port};
};

TEST_F(ClientEndpointTest, IsThereForTheDatagramInHandUntilItIsClosed) {
    std::optional<std::string> owner;
    endpoint.startUDPAndBonjour([&](ByteView, const Sender&) {
        world.runtime.sleepFor(10ms);
        owner = endpoint.liveOwnerKey();
    });
    phone.send(touch);
    world.runtime.runFor(5ms);
    endpoint.close();
    EXPECT_EQ(owner, phone.key());
}

TEST_F(ClientEndpointTest, NeitherReceivesNorSendsOnceItIsClosed) {
    int handled = 0;
    endpoint.startUDPAndBonjour([&handled](ByteView, const Sender&) { ++handled; });
    phone.send(touch);
    world.runtime.runUntilIdle();
    endpoint.close();
    phone.send(touch);
    endpoint.broadcast(news);
    endpoint.send(news, phone.key());
    world.runtime.runUntilIdle();
    EXPECT_EQ(handled, 1);
    EXPECT_THAT(phone.tape.takeBytes(), IsEmpty());
}

TEST_F(ClientEndpointTest, KnowsTheOwnershipThatADatagramCameIn) {
    EXPECT_EQ(endpoint.ownership(), std::nullopt);
    std::optional<Ownership> ownership;
    endpoint.startUDPAndBonjour([&](ByteView, const Sender& sender) { ownership = sender.ownership; });
    EXPECT_EQ(endpoint.ownership(), std::nullopt);
    phone.send(touch);
    world.runtime.runUntilIdle();
    ASSERT_TRUE(ownership.has_value());
    EXPECT_EQ(endpoint.ownership(), ownership);
    endpoint.close();
}

TEST_F(ClientEndpointTest, OpensNoPortForPairedClientsWhereNobodyCanProveAKey) {
    computer.variables = {{"LUMBRINE_CLIENTS", "paired"}};
    ClientEndpoint paired{
        jobs, published, world.network.host("192.168.1.2"), computer, computer, Configuration::read(computer), log};
    int handled = 0;
    paired.startUDPAndBonjour([&handled](ByteView, const Sender&) { ++handled; });
    phone.send(touch);
    world.runtime.runUntilIdle();
    EXPECT_EQ(handled, 0);
    EXPECT_EQ(published.health.udp.state, LinkHealth::State::down);
    EXPECT_THAT(lines, testing::Contains(testing::HasSubstr("LUMBRINE_CLIENTS=paired needs keys")));
    paired.close();
}

TEST_F(ClientEndpointTest, LogsThatItLetsInNobodyWithoutAKey) {
    computer.variables = {{"LUMBRINE_CLIENTS", "paired"}};
    ToySecrets secrets{1};
    ClientEndpoint paired{jobs,     published, world.network.host("192.168.1.2"),
                          computer, computer,  Configuration::read(computer),
                          log,      &secrets};
    int handled = 0;
    paired.startUDPAndBonjour([&handled](ByteView, const Sender&) { ++handled; });
    phone.send(touch);
    world.runtime.runUntilIdle();
    EXPECT_EQ(handled, 0);
    EXPECT_THAT(lines, testing::Contains("⚠️ A client without a key was not let in"));
    paired.close();
}

TEST_F(ClientEndpointTest, LogsWhoTookOverFromWhomOnceASecond) {
    endpoint.startUDPAndBonjour([](ByteView, const Sender&) {});
    Phone tablet{world, "192.168.1.8", "192.168.1.2", endpoint.port};
    lines.clear();
    const auto takesOver = [&](Phone& client) {
        client.send(takeOver);
        world.runtime.runUntilIdle();
    };
    takesOver(phone);
    EXPECT_THAT(lines, IsEmpty()); // from nobody
    takesOver(tablet);
    takesOver(phone);
    EXPECT_THAT(lines, ElementsAre("→ ::ffff:192.168.1.8 took over from ::ffff:192.168.1.7"));
    world.runtime.runFor(1s);
    takesOver(tablet);
    EXPECT_THAT(lines, testing::SizeIs(2));
    endpoint.close();
}

TEST_F(ClientEndpointTest, LogsOnceAMinuteThatAnswersAreNotLetOut) {
    endpoint.startUDPAndBonjour([this](ByteView, const Sender& sender) { endpoint.send(news, sender.key); });
    lines.clear();
    world.network.fail("192.168.1.2", VirtualNetwork::Call::send, EHOSTUNREACH);
    const auto speaks = [&](int times) {
        for (int i = 0; i < times; ++i) {
            phone.send(touch);
            world.runtime.runUntilIdle();
        }
    };
    speaks(2);
    EXPECT_THAT(lines, IsEmpty());
    speaks(10);
    EXPECT_THAT(lines, ElementsAre("✗ This computer does not let answers to the iOS app out (No route to host). Check "
                                   "its firewall; on a Mac allow Lumbrine in System Settings ▸ Privacy & Security ▸ "
                                   "Local Network"));
    world.runtime.runFor(1min);
    speaks(3);
    EXPECT_THAT(lines, testing::SizeIs(2));
    endpoint.close();
}

TEST_F(ClientEndpointTest, IsClosedWithoutHavingBeenOpened) {
    endpoint.close();
    endpoint.broadcast(news);
    world.runtime.runUntilIdle();
    EXPECT_THAT(phone.tape.takeBytes(), IsEmpty());
}

} // namespace
} // namespace lumbrine
