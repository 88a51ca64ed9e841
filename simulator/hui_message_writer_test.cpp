#include "simulator/hui_message_writer.h"

namespace lumbrine {
namespace {

using testing::ElementsAre;

constexpr DisplayText kick{'K', 'i', 'c', 'k'};
constexpr DisplayText snare{'S', 'n', 'r', ' '};
constexpr DisplayText pan{'P', 'a', 'n', ' '};
constexpr std::array<HUIMessageWriter::Display, 3> threeDisplays{{{0, kick}, {1, snare}, {8, pan}}};

TEST(HUIMessageWriter, WritesEachMessageAsItsOwnPacket) {
    HUIMessageWriter writer{SimulatorOptions{}};
    writer.ping();
    writer.fader(2, FaderValue::ofRaw(8191));
    writer.ring(11, 0x56);
    writer.meter(7, 1, 12);
    writer.counter(std::array<std::uint8_t, 3>{4, 2, 1});
    writer.mainDisplay(7, "Evening Li");
    EXPECT_THAT(writer.take(),
                ElementsAre(Bytes{0x90, 0x00, 0x00},                                                 // ping
                            Bytes{0xB0, 0x02, 0x3F}, Bytes{0xB0, 0x22, 0x7F},                        // fader 2
                            Bytes{0xB0, 0x1B, 0x56},                                                 // pot 11
                            Bytes{0xA0, 0x07, 0x1C},                                                 // right meter 7
                            Bytes{0xF0, 0x00, 0x00, 0x66, 0x05, 0x00, 0x11, 0x04, 0x02, 0x01, 0xF7}, // "...124"
                            Bytes{0xF0, 0x00, 0x00, 0x66, 0x05, 0x00, 0x12, 0x07, 'E', 'v', 'e', 'n', 'i', 'n', 'g',
                                  ' ', 'L', 'i', 0xF7}));
}

TEST(HUIMessageWriter, CanSelectAZoneOnceForThePortsOfABurst) {
    SimulatorOptions options;
    options.repeatZoneSelect = false;
    HUIMessageWriter writer(options);
    writer.led(2, 2, true);
    writer.led(2, 3, false);
    writer.led(3, 2, true);
    EXPECT_THAT(writer.take(), ElementsAre(Bytes{0xB0, 0x0C, 0x02}, Bytes{0xB0, 0x2C, 0x42}, Bytes{0xB0, 0x2C, 0x03},
                                           Bytes{0xB0, 0x0C, 0x03}, Bytes{0xB0, 0x2C, 0x42}));
    writer.led(3, 3, true); // a new burst says its zone
    EXPECT_THAT(writer.take(), ElementsAre(Bytes{0xB0, 0x0C, 0x03}, Bytes{0xB0, 0x2C, 0x43}));
}

TEST(HUIMessageWriter, SelectsTheZoneBeforeEachPort) {
    HUIMessageWriter writer{SimulatorOptions{}};
    writer.led(2, 2, true);
    writer.led(2, 3, false);
    EXPECT_THAT(writer.take(), ElementsAre(Bytes{0xB0, 0x0C, 0x02}, Bytes{0xB0, 0x2C, 0x42}, Bytes{0xB0, 0x0C, 0x02},
                                           Bytes{0xB0, 0x2C, 0x03}));
}

TEST(HUIMessageWriter, WritesTheStateOfAnAutoLEDInItsHighDigit) {
    HUIMessageWriter writer{SimulatorOptions{}};
    writer.autoLED(5, 0x20);
    EXPECT_THAT(writer.take(), ElementsAre(Bytes{0xB0, 0x0C, 0x05}, Bytes{0xB0, 0x2C, 0x24}));
}

TEST(HUIMessageWriter, RunsTheStatusThroughABurstOfControllers) {
    SimulatorOptions options;
    options.runningStatus = true;
    HUIMessageWriter writer(options);
    writer.led(2, 2, true);
    writer.ring(1, 0x43);
    writer.meter(0, 0, 1); // breaks the run
    writer.ring(0, 0x46);
    EXPECT_THAT(writer.take(), ElementsAre(Bytes{0xB0, 0x0C, 0x02, 0x2C, 0x42, 0x11, 0x43}, Bytes{0xA0, 0x00, 0x01},
                                           Bytes{0xB0, 0x10, 0x46}));
}

TEST(HUIMessageWriter, KeepsARunWithin64Bytes) {
    SimulatorOptions options;
    options.runningStatus = true;
    HUIMessageWriter writer(options);
    for (int i = 0; i < 40; ++i)
        writer.ring(0, static_cast<std::uint8_t>(i));
    const auto packets = writer.take();
    ASSERT_EQ(packets.size(), 2u);
    EXPECT_EQ(packets[0].size(), 63u); // a status and 31 controllers
    EXPECT_EQ(packets[1].size(), 19u); // a status and the other 9
    EXPECT_EQ(packets[1].front(), 0xB0);
}

TEST(HUIMessageWriter, SendsOneDisplayInEachSysEx) {
    HUIMessageWriter writer{SimulatorOptions{}};
    writer.displays(threeDisplays);
    EXPECT_THAT(writer.take(),
                ElementsAre(Bytes{0xF0, 0x00, 0x00, 0x66, 0x05, 0x00, 0x10, 0x00, 'K', 'i', 'c', 'k', 0xF7},
                            Bytes{0xF0, 0x00, 0x00, 0x66, 0x05, 0x00, 0x10, 0x01, 'S', 'n', 'r', ' ', 0xF7},
                            Bytes{0xF0, 0x00, 0x00, 0x66, 0x05, 0x00, 0x10, 0x08, 'P', 'a', 'n', ' ', 0xF7}));
}

TEST(HUIMessageWriter, PacksSeveralDisplaysInASysExWhereTheOptionSaysSo) {
    SimulatorOptions options;
    options.displaysPerSysEx = 2;
    HUIMessageWriter writer(options);
    writer.displays(threeDisplays);
    EXPECT_THAT(writer.take(),
                ElementsAre(Bytes{0xF0, 0x00, 0x00, 0x66, 0x05, 0x00, 0x10, 0x00, 'K', 'i', 'c', 'k', 0x01, 'S', 'n',
                                  'r', ' ', 0xF7},
                            Bytes{0xF0, 0x00, 0x00, 0x66, 0x05, 0x00, 0x10, 0x08, 'P', 'a', 'n', ' ', 0xF7}));
}

} // namespace
} // namespace lumbrine
