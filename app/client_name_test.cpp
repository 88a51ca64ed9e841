// Who is asked for a name, and where the name stands.
#include "app/client_name.h"
#include "app/testing/fake_host_names.h"
#include "model/testing/model_test.h"

namespace lumbrine {
namespace {

class ClientNameTest : public testing::Test {
protected:
    ClientNameTest() {
        published.localIP = "192.168.1.2";
        published.health.announcement.state = LinkHealth::State::up;
    }

    void show(const std::string& description) {
        published.iosClientDesc = description;
        name.look(published);
    }

    void answer(const std::string& with) {
        hosts.answer(with);
        runtime.runFor(0s);
    }

    VirtualRuntime runtime;
    FakeHostNames hosts;
    PublishedState published;
    int learned = 0;
    ClientName name{runtime, &hosts, [this] { ++learned; }};
};

TEST_F(ClientNameTest, StandsInPlaceOfTheAddressOnceTheClientHasToldIt) {
    show("::ffff:192.168.1.7 (+1 waiting)");
    EXPECT_THAT(hosts.asked, ElementsAre("192.168.1.7"));
    EXPECT_EQ(name.in("192.168.1.7 (+1 waiting)"), "192.168.1.7 (+1 waiting)");
    answer("Annas-iPhone");
    EXPECT_EQ(learned, 1);
    EXPECT_EQ(name.in("192.168.1.7 (+1 waiting)"), "Annas-iPhone (+1 waiting)");
    EXPECT_EQ(name.in("iPhone / iPad: 192.168.1.7"), "iPhone / iPad: Annas-iPhone");
}

TEST_F(ClientNameTest, LeavesOtherAddressesAlone) {
    show("192.168.1.7");
    answer("Annas-iPhone");
    EXPECT_EQ(name.in("192.168.1.70 192.168.1.7 2192.168.1.7"), "192.168.1.70 Annas-iPhone 2192.168.1.7");
}

TEST_F(ClientNameTest, IsAskedForOnceAndKeptWhileTheClientIsSilent) {
    show("192.168.1.7");
    answer("Annas-iPhone");
    show("");
    show("192.168.1.7");
    EXPECT_THAT(hosts.asked, testing::SizeIs(1));
    EXPECT_EQ(name.in("192.168.1.7 was connected"), "Annas-iPhone was connected");
}

TEST_F(ClientNameTest, IsThatOfTheClientInControl) {
    show("192.168.1.7");
    const auto late = hosts.answer;
    show("192.168.1.9");
    late("Annas-iPhone");
    runtime.runFor(0s);
    EXPECT_EQ(name.in("192.168.1.9"), "192.168.1.9");
    EXPECT_EQ(learned, 0);
    answer("Bens-iPad");
    EXPECT_EQ(name.in("192.168.1.9"), "Bens-iPad");
}

TEST_F(ClientNameTest, IsAskedOfNobodyHereAndOfNobodyWhenTheReceiverKeepsQuiet) {
    show("192.168.1.2");
    show("127.0.0.1 (+1 waiting)");
    show("(+1 waiting)");
    show("（他 1 台待機）");
    published.health.announcement.state = LinkHealth::State::off;
    show("192.168.1.7");
    EXPECT_THAT(hosts.asked, IsEmpty());
}

} // namespace
} // namespace lumbrine
