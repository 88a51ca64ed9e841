// The link's end, while the receive thread is at work.
#include "client_link/testing/datagrams.h"
#include "model/mirror/client_endpoint.h"
#include "model/testing/model_test.h"

namespace lumbrine {
namespace {

class ClientEndpointTest : public ::testing::Test {
protected:
    ModelWorld world;
    FakeComputer computer;
    Jobs jobs{world.runtime};
    PublishedState published;
    ActivityLog log{jobs, published, Bilingual(false), [](const std::string&) {}};
    ClientEndpoint endpoint{world.runtime, world.network.host("192.168.1.2"), computer,
                            computer,      Configuration::read(computer),     log};
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

TEST_F(ClientEndpointTest, IsClosedWithoutHavingBeenOpened) {
    endpoint.close();
    endpoint.broadcast(news);
    world.runtime.runUntilIdle();
    EXPECT_THAT(phone.tape.takeBytes(), IsEmpty());
}

} // namespace
} // namespace lumbrine
