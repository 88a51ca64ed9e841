// Datagrams become HUI bytes on real MIDI ports, and HUI bytes become datagrams.
#include "tests/end_to_end/client_socket.h"
#include "tests/end_to_end/host_ports.h"
#include "tests/end_to_end/receiver_process.h"
#include "tests/interop/private_jack.h"

#include <array>

namespace lumbrine::end_to_end {
namespace {

using interop::waitUntil;
using std::chrono::milliseconds;

const Bytes ping{0x90, 0x00, 0x00};
const Bytes signOfLife{0x01, 0x07, 0x00, 0x00};

// No client has been heard yet.
class HeadlessHUIAlone : public testing::Test {
protected:
    interop::PrivateJack jack;
    ReceiverProcess receiver;
    HostPorts a{"Lumbrine"};
    HostPorts b{"Lumbrine B"};
    ClientSocket client{receiver.port};
};

class HeadlessHUI : public HeadlessHUIAlone {
protected:
    HeadlessHUI() { client.send(signOfLife); }
};

bool isOfType(const Bytes& datagram, std::uint8_t type) {
    return datagram.size() >= 2 && datagram[0] == 0x01 && datagram[1] == type;
}

TEST_F(HeadlessHUI, AnswersThePingsOfEachSurface) {
    a.send(ping);
    b.send(ping);
    EXPECT_TRUE(a.hears({{0x90, 0x00, 0x7F}}));
    EXPECT_TRUE(b.hears({{0x90, 0x00, 0x7F}}));
    EXPECT_TRUE(receiver.logs("♥ ping #1 received → replied (connection alive)"));
    EXPECT_TRUE(receiver.logs("[9-16] ♥ ping #1 received → replied (connection alive)"));
}

TEST_F(HeadlessHUI, TurnsAFaderGestureIntoHUI) {
    client.send(Bytes{0x01, 0x02, 0x03});             // touch strip 3
    client.send(Bytes{0x01, 0x01, 0x03, 0x3F, 0xFF}); // all the way up
    client.send(Bytes{0x01, 0x01, 0x03, 0x12, 0x34});
    client.send(Bytes{0x01, 0x03, 0x03}); // let go
    EXPECT_TRUE(a.hears({{0xB0, 0x0F, 0x03},
                         {0xB0, 0x2F, 0x40},
                         {0xB0, 0x03, 0x7F},
                         {0xB0, 0x23, 0x7F},
                         {0xB0, 0x03, 0x24},
                         {0xB0, 0x23, 0x34},
                         {0xB0, 0x0F, 0x03},
                         {0xB0, 0x2F, 0x00}}));
}

TEST_F(HeadlessHUI, PlaysStripsFromEightOnToTheSecondSurface) {
    client.send(Bytes{0x01, 0x01, 0x0B, 0x20, 0x00}); // strip 11
    EXPECT_TRUE(b.hears({{0xB0, 0x03, 0x40}, {0xB0, 0x23, 0x00}}));
}

TEST_F(HeadlessHUI, PressesAButtonAndLetsItGoSixtyMillisecondsLater) {
    const auto sent = std::chrono::steady_clock::now();
    client.send(Bytes{0x01, 0x04, 0x02}); // mute strip 2
    const auto press = a.waitFor({{0xB0, 0x0F, 0x02}, {0xB0, 0x2F, 0x42}});
    const auto release = a.waitFor({{0xB0, 0x0F, 0x02}, {0xB0, 0x2F, 0x02}});
    ASSERT_FALSE(press.empty());
    ASSERT_FALSE(release.empty());
    EXPECT_LT(press[0].at, release[0].at);
    // Not counted from the press, which a busy machine may bring late.
    EXPECT_GE(release[0].at - sent, milliseconds(60));
    EXPECT_TRUE(receiver.logs("→ switch zone2 port2 pressed"));
}

TEST_F(HeadlessHUI, TurnsAVPot) {
    client.send(Bytes{0x01, 0x07, 0x02, 0x03});
    client.send(Bytes{0x01, 0x07, 0x0A, 0xFF});
    EXPECT_TRUE(a.hears({{0xB0, 0x42, 0x43}}));
    EXPECT_TRUE(b.hears({{0xB0, 0x42, 0x01}}));
}

TEST_F(HeadlessHUI, SendsTheClientAFader) {
    a.send(Bytes{0xB0, 0x02, 0x7F});
    a.send(Bytes{0xB0, 0x22, 0x7F});
    EXPECT_TRUE(client.hears({0x01, 0x12, 0x02, 0x3F, 0xFF}));
    b.send(Bytes{0xB0, 0x04, 0x40, 0xB0, 0x24, 0x00}); // both halves in one event
    EXPECT_TRUE(client.hears({0x01, 0x12, 0x0C, 0x20, 0x00}));
}

TEST_F(HeadlessHUI, SendsTheClientTheNamesOnTheDisplays) {
    a.send(Bytes{0xF0, 0x00, 0x00, 0x66, 0x05, 0x00, 0x10, 0x03, 0x4B, 0x69, 0x63, 0x6B, 0xF7});
    EXPECT_TRUE(client.hears({0x01, 0x10, 0x03, 0x4B, 0x69, 0x63, 0x6B})); // Kick
    b.send(Bytes{0xF0, 0x00, 0x00, 0x66, 0x05, 0x00, 0x10, 0x00, 0x56, 0x6F});
    b.send(Bytes{0x78, 0x20, 0xF7});
    EXPECT_TRUE(client.hears({0x01, 0x10, 0x08, 0x56, 0x6F, 0x78, 0x20})); // Vox, in two parts
}

TEST_F(HeadlessHUI, SendsTheClientLEDs) {
    a.send(Bytes{0xB0, 0x0C, 0x05});
    a.send(Bytes{0xB0, 0x2C, 0x42}); // mute
    const auto muted = client.receive(
        [](const Bytes& datagram) { return isOfType(datagram, 0x13) && datagram.size() == 26 && datagram[17] == 1; });
    EXPECT_TRUE(muted.has_value());
    a.send(Bytes{0xB0, 0x2C, 0x43}); // solo
    a.send(Bytes{0xB0, 0x2C, 0x47}); // record
    const auto all = client.receive([](const Bytes& datagram) {
        return isOfType(datagram, 0x13) && datagram.size() == 26 && datagram[18] == 1 && datagram[19] == 1;
    });
    EXPECT_TRUE(all.has_value());
    EXPECT_TRUE(receiver.logs("← LED ch6 solo ON"));
    a.send(Bytes{0xB0, 0x2C, 0x41}); // select
    EXPECT_TRUE(client.hears({0x01, 0x17, 0, 0, 0, 0, 0, 1, 0, 0}));
}

TEST_F(HeadlessHUI, SendsTheClientRings) {
    a.send(Bytes{0xB0, 0x13, 0x46}); // in the middle, and the small light under it
    EXPECT_TRUE(client.hears({0x01, 0x14, 0x03, 0x00, 0x06, 0x01}));
    b.send(Bytes{0xB0, 0x17, 0x0B});
    EXPECT_TRUE(client.hears({0x01, 0x14, 0x0F, 0x00, 0x0B, 0x00}));
}

TEST_F(HeadlessHUI, SendsTheClientMeters) {
    // They begin with the tick that notices the client, and a level falls soon.
    const auto isShown = [](const Bytes& datagram) {
        return isOfType(datagram, 0x11) && datagram.size() == 18 && datagram[5] == 12;
    };
    EXPECT_TRUE(waitUntil([&] {
        a.send(Bytes{0xA0, 0x01, 0x1C}); // strip 1, right, clipping
        return client.receive(isShown, milliseconds(100)).has_value();
    }));
}

TEST_F(HeadlessHUI, ShowsSixteenStripsWhenBothSurfacesArePinged) {
    const auto grows = [this] {
        a.send(ping);
        b.send(ping);
        client.send(signOfLife);
        return client.hears({0x01, 0x16, 0xFF, 0xFF, 0x00, 0x00, 0x10}, milliseconds(300));
    };
    EXPECT_TRUE(waitUntil(grows));
    EXPECT_TRUE(receiver.logs("✓ Second surface connected → 16-ch window"));
}

TEST_F(HeadlessHUI, AnswersAHelloAtOnceAndThenSendsItsWholeState) {
    a.send(Bytes{0xF0, 0x00, 0x00, 0x66, 0x05, 0x00, 0x10, 0x00, 0x4B, 0x69, 0x63, 0x6B, 0xF7});
    ASSERT_TRUE(client.hears({0x01, 0x10, 0x00, 0x4B, 0x69, 0x63, 0x6B}));
    client.send(Bytes{0x01, 0x00});
    ASSERT_TRUE(client.hears({0x01, 0x7F}));
    const std::array<std::uint8_t, 12> types{0x10, 0x13, 0x12, 0x14, 0x15, 0x16, 0x17, 0x18, 0x19, 0x1A, 0x1C, 0x1D};
    for (const std::uint8_t type : types)
        EXPECT_TRUE(client.receive([&](const Bytes& datagram) { return isOfType(datagram, type); }))
            << std::hex << int{type};
}

TEST_F(HeadlessHUIAlone, PlaysTheFirstDatagramsOfAClientThatSaysNoHello) {
    a.send(Bytes{0xF0, 0x00, 0x00, 0x66, 0x05, 0x00, 0x10, 0x00, 0x4B, 0x69, 0x63, 0x6B, 0xF7}); // Kick
    a.send(ping);
    ASSERT_TRUE(a.hears({{0x90, 0x00, 0x7F}}));
    client.send(Bytes{0x01, 0x04, 0x00}); // mute strip 0
    client.send(Bytes{0x01, 0x01, 0x00, 0x3F, 0xFF});
    EXPECT_TRUE(a.hears({{0xB0, 0x0F, 0x00}, {0xB0, 0x2F, 0x42}, {0xB0, 0x00, 0x7F}, {0xB0, 0x20, 0x7F}}));
    EXPECT_TRUE(receiver.logs("→ switch zone0 port2 pressed"));
    EXPECT_THAT(receiver.log(), testing::Not(testing::Contains(testing::HasSubstr("Dropped"))));
}

} // namespace
} // namespace lumbrine::end_to_end
