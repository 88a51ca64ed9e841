#include "base/testing/segmentations.h"
#include "platform/virtual/still_runtime.h"
#include "surface/testing/hui_trace.h"

namespace lumbrine {
namespace {

using Texts = std::vector<std::string>;

const Bytes ping{0x90, 0x00, 0x00};

// A scribble-strip message up to and without its end.
Bytes displayText(std::uint8_t display, const Bytes& characters) {
    Bytes message{0xF0, 0x00,   0x00, 0x66, // manufacturer
                  0x05, 0x00,               // product, device
                  0x10, display};
    message.insert(message.end(), characters.begin(), characters.end());
    return message;
}

Bytes operator+(Bytes left, const Bytes& right) {
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

const Bytes kick{0x4B, 0x69, 0x63, 0x6B};
const Bytes end{0xF7};

class HUIInputStream : public ::testing::Test {
protected:
    void receive(const Bytes& packet) { engine.handleIncoming(packet); }

    StillRuntime runtime;
    HUIEngine engine{runtime, Bilingual(false)};
    HUITrace trace{engine};
};

// What a new engine reports for these packets, one after another; "ping" stands for each answer to a ping.
Texts decoded(const std::vector<Bytes>& packets) {
    StillRuntime runtime;
    HUIEngine engine(runtime, Bilingual(false));
    HUITrace trace(engine);
    engine.send = [&](ByteView) { trace.events.emplace_back("ping"); };
    for (const Bytes& packet : packets)
        engine.handleIncoming(packet);
    return trace.events;
}

TEST_F(HUIInputStream, ReadsATrackName) {
    receive(displayText(2, kick) + end);
    EXPECT_EQ(trace.events, Texts{"name 2 'Kick'"});
}

TEST_F(HUIInputStream, KnowsTheDisplays) {
    for (const std::uint8_t display : Bytes{0x00, 0x07, 0x08, 0x09, 0x7F})
        receive(displayText(display, kick) + end);
    EXPECT_EQ(trace.events, (Texts{"name 0 'Kick'", "name 7 'Kick'", "assign 'Kick'"}));
}

TEST_F(HUIInputStream, ShowsWhatIsNotPrintableAsBlanks) {
    receive(displayText(0, {0x1F, 0x20, 0x7E, 0x7F}) + end);
    receive(displayText(1, {0x41, 0x00, 0x10, 0x09}) + end);
    EXPECT_EQ(trace.events, (Texts{"name 0 '  ~ '", "name 1 'A   '"}));
}

TEST_F(HUIInputStream, ReadsEveryDisplayOfAMessage) {
    const Bytes bass{0x42, 0x61, 0x73, 0x73};
    const Bytes stream =
        displayText(3, kick) + Bytes{0x04} + bass + Bytes{0x09} + kick + Bytes{0x08} + bass + Bytes{0x05, 0x4B} + end;
    for (const auto& packets : segmentationsOf(stream))
        EXPECT_EQ(decoded(packets), (Texts{"name 3 'Kick'", "name 4 'Bass'", "assign 'Bass'"}));
}

TEST_F(HUIInputStream, IgnoresADisplayMessageThatIsTooShort) {
    receive(displayText(0, {0x4B, 0x69, 0x63}) + end); // 12 bytes
    receive(Bytes{0xF0, 0xF7});
    EXPECT_EQ(trace.events, Texts{});
}

TEST_F(HUIInputStream, IgnoresAMessageWithAnyOtherHeader) {
    for (std::size_t i = 1; i < 7; ++i) {
        Bytes message = displayText(0, kick) + end;
        message[i] ^= 0x01;
        receive(message);
    }
    EXPECT_EQ(trace.events, Texts{});
}

TEST_F(HUIInputStream, DecodesWhatStandsAroundASysexMessage) {
    receive(Bytes{0xB0, 0x0C, 0x01} + displayText(0, kick) + end + Bytes{0xB0, 0x2C, 0x42} + ping);
    EXPECT_EQ(trace.events, (Texts{"name 0 'Kick'", "led 1/2 on"}));
    EXPECT_EQ(trace.sent.size(), 1u);
}

TEST_F(HUIInputStream, PutsASysexMessageTogetherWhereverItIsCut) {
    const Bytes stream = displayText(5, kick) + end + Bytes{0xF0, 0x7E, 0xF7} + displayText(8, kick) + end;
    for (const auto& packets : segmentationsOf(stream))
        EXPECT_EQ(decoded(packets), (Texts{"name 5 'Kick'", "assign 'Kick'"})) << packets.front().size();
}

TEST_F(HUIInputStream, LosesOnlyTheVoiceMessageThatIsCut) {
    const Bytes stream = Bytes{0xB0, 0x0F, 0x03}      // 0-2: zone
                         + displayText(2, kick) + end // 3-15
                         + Bytes{0xB0, 0x2F, 0x42}    // 16-18: port
                         + ping;                      // 19-21
    const Texts all{"name 2 'Kick'", "led 3/2 on", "ping"};
    const Texts withoutLed{"name 2 'Kick'", "ping"};
    const Texts withoutPing{"name 2 'Kick'", "led 3/2 on"};
    ASSERT_EQ(stream.size(), 22u);

    EXPECT_EQ(decoded({stream}), all);
    for (const std::size_t place : std::vector<std::size_t>{0, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 19, 22})
        EXPECT_EQ(decoded(cutAt(stream, place)), all) << place;
    for (const std::size_t place : std::vector<std::size_t>{1, 2, 17, 18})
        EXPECT_EQ(decoded(cutAt(stream, place)), withoutLed) << place;
    for (const std::size_t place : std::vector<std::size_t>{20, 21})
        EXPECT_EQ(decoded(cutAt(stream, place)), withoutPing) << place;
    EXPECT_EQ(decoded(byteByByte(stream)), Texts{"name 2 'Kick'"});
}

TEST_F(HUIInputStream, NeedsBothDataBytesInThePacket) {
    EXPECT_EQ(decoded({{0xB0, 0x20}}), Texts{});
    EXPECT_EQ(decoded({{0xA0}}), Texts{});
    EXPECT_EQ(decoded({{0xA0, 0x01, 0x02}}), Texts{"meter 1 left 2"});
}

TEST_F(HUIInputStream, ReadsTheBytesAfterACutStatusByThemselves) {
    EXPECT_EQ(decoded({{0xB0}, {0x90, 0x00, 0x00}}), Texts{"ping"});
    EXPECT_EQ(decoded({{0xB0, 0x90}, {0x00, 0x00}}), Texts{});
}

TEST_F(HUIInputStream, EndsAVoiceMessageAtTheNextStatusByte) {
    EXPECT_EQ(decoded({{0xB0, 0x0C, 0x90, 0x00, 0x00}}), Texts{"ping"});
    EXPECT_EQ(decoded({{0xB0, 0x90, 0x00, 0x00}}), Texts{"ping"});
    EXPECT_EQ(decoded({{0xA0, 0x01, 0xC0, 0x05}}), Texts{});
    EXPECT_EQ(decoded({Bytes{0xA0, 0x01} + displayText(0, kick) + end + Bytes{0x05}}), Texts{"name 0 'Kick'"});
}

TEST_F(HUIInputStream, KeepsTheStatusForTheMessagesThatFollowInThePacket) {
    EXPECT_EQ(decoded({{0xA0, 0x01, 0x02, 0x02, 0x03}}), (Texts{"meter 1 left 2", "meter 2 left 3"}));
    EXPECT_EQ(decoded({{0xB0, 0x0C, 0x03, 0x2C, 0x42, 0x2C, 0x03}}), (Texts{"led 3/2 on", "led 3/3 off"}));
    EXPECT_EQ(decoded({{0x90, 0x00, 0x00, 0x00, 0x00}}), (Texts{"ping", "ping"}));
}

TEST_F(HUIInputStream, ForgetsTheStatusAtTheEndOfThePacketAndAtEveryOtherStatus) {
    EXPECT_EQ(decoded({{0xA0, 0x01, 0x02}, {0x02, 0x03}}), Texts{"meter 1 left 2"});
    for (const std::uint8_t other : Bytes{0x81, 0x91, 0xA1, 0xBF, 0xC0, 0xD0, 0xE0, 0xF1, 0xF2, 0xF3, 0xF6, 0xF7})
        EXPECT_EQ(decoded({{0xA0, 0x01, 0x02, other, 0x02, 0x03}}), Texts{"meter 1 left 2"}) << int{other};
    EXPECT_EQ(decoded({Bytes{0xA0, 0x01, 0x02} + displayText(0, kick) + end + Bytes{0x02, 0x03}}),
              (Texts{"meter 1 left 2", "name 0 'Kick'"}));
}

TEST_F(HUIInputStream, SkipsEveryOtherByteAlone) {
    const Bytes noise{0x00, 0x7F, 0x80, 0x91, 0x9F, 0xA1, 0xB1, 0xC0, 0xE0, 0xF1, 0xF7, 0xF8, 0xFE, 0xFF};
    EXPECT_EQ(decoded({noise + ping}), Texts{"ping"});
    EXPECT_EQ(decoded({{}}), Texts{});
}

TEST_F(HUIInputStream, EndsASysexMessageAtTheNextStatusByteAndDropsItsText) {
    const Bytes unfinished = displayText(2, kick);
    for (std::size_t place = 0; place <= unfinished.size(); ++place)
        EXPECT_EQ(decoded(cutAt(unfinished + Bytes{0xA0, 0x01, 0x02}, place)), Texts{"meter 1 left 2"}) << place;
    for (int status = 0x80; status < 0xF8; ++status) {
        if (status == end.front()) continue;
        const Bytes interrupted = unfinished + Bytes{static_cast<std::uint8_t>(status)} + end;
        for (const auto& packets : segmentationsOf(interrupted))
            EXPECT_EQ(decoded(packets), Texts{}) << status;
    }
}

TEST_F(HUIInputStream, AnswersAPingAfterASysexMessageWithoutItsEnd) {
    for (std::size_t length = 1; length <= displayText(0, kick).size(); ++length) {
        const Bytes unfinished = cutAt(displayText(0, kick), length).front();
        EXPECT_EQ(decoded({unfinished + ping}), Texts{"ping"}) << length;
        EXPECT_EQ(decoded({unfinished, ping}), Texts{"ping"}) << length;
        EXPECT_EQ(decoded({unfinished, ping, displayText(3, kick) + end + ping}),
                  (Texts{"ping", "name 3 'Kick'", "ping"}))
            << length;
    }
}

TEST_F(HUIInputStream, StartsAgainAtASecondF0) {
    for (const auto& packets : segmentationsOf(displayText(1, kick) + displayText(0, kick) + end))
        EXPECT_EQ(decoded(packets), Texts{"name 0 'Kick'"});
}

TEST_F(HUIInputStream, LetsRealtimeBytesPassEverywhere) {
    const Bytes stream = displayText(2, kick) + end + Bytes{0xB0, 0x0C, 0x03, 0xB0, 0x2C, 0x42} + ping;
    const Texts all{"name 2 'Kick'", "led 3/2 on", "ping"};
    for (int realtime = 0xF8; realtime <= 0xFF; ++realtime) {
        for (std::size_t place = 0; place <= stream.size(); ++place) {
            Bytes disturbed = stream;
            disturbed.insert(disturbed.begin() + static_cast<std::ptrdiff_t>(place),
                             static_cast<std::uint8_t>(realtime));
            EXPECT_EQ(decoded({disturbed}), all) << realtime << " at " << place;
        }
        const Bytes alone{static_cast<std::uint8_t>(realtime)};
        EXPECT_EQ(
            decoded({displayText(2, kick), alone, end, alone, {0xB0, 0x0C, 0x03}, alone, {0xB0, 0x2C, 0x42}, ping}),
            all);
    }
}

TEST_F(HUIInputStream, AnswersAPingWhereverItStandsInAPacket) {
    const std::vector<Bytes> others{
        {0xA0, 0x01, 0x02},  {0xB0, 0x0C, 0x03}, {0xB0, 0x10}, {0xB0}, {0xC0, 0x05}, {0x00}, {0xF8},
        displayText(2, kick)};
    for (const Bytes& other : others) {
        for (const Bytes& form : {ping, Bytes{0x80, 0x00, 0x00}, Bytes{0x80, 0x00, 0x40}, Bytes{0x80, 0x00, 0x7F}}) {
            HUIEngine fresh(runtime, Bilingual(false));
            const HUITrace said(fresh);
            fresh.handleIncoming(other + form + other + form);
            EXPECT_EQ(fresh.pingCount, 2) << int{other.front()};
            EXPECT_EQ(said.sent, (std::vector<Bytes>{{0x90, 0x00, 0x7F}, {0x90, 0x00, 0x7F}}));
        }
    }
}

TEST_F(HUIInputStream, ForgetsWhatWasHalfReceivedWhenThePortsAreBack) {
    receive({0xB0, 0x0C, 0x03, 0xB0, 0x05, 0x7F});
    receive(displayText(1, kick));
    engine.portsAreBack();
    receive(end);                                  // of the text
    receive({0xB0, 0x2C, 0x42, 0xB0, 0x25, 0x02}); // a port without its zone, and the low half of a fader
    EXPECT_EQ(trace.events, Texts{"fader 5 at 2"});
}

TEST_F(HUIInputStream, EndsASysexMessageAtTheFirstByteOfAPacket) {
    EXPECT_EQ(decoded({displayText(1, kick), end}), Texts{"name 1 'Kick'"});
    EXPECT_EQ(decoded({displayText(1, kick), end + ping + Bytes{0xF7}}), (Texts{"name 1 'Kick'", "ping"}));
}

TEST_F(HUIInputStream, TakesAnEmptyPacketForNothing) {
    EXPECT_EQ(decoded({displayText(1, kick), {}, end}), Texts{"name 1 'Kick'"});
}

TEST_F(HUIInputStream, KeepsUpTo1024BytesOfAnIncompleteMessage) {
    receive(displayText(6, kick));
    receive(Bytes(256, 0x20));
    receive(Bytes(256, 0x20));
    receive(Bytes(256, 0x20));
    receive(Bytes(244, 0x20)); // 1024
    receive(end);
    EXPECT_EQ(trace.events, Texts{"name 6 'Kick'"});
}

TEST_F(HUIInputStream, GivesUpAMessageOfMoreThan1024Bytes) {
    receive(displayText(6, kick));
    receive(Bytes(1013, 0x20)); // 1025
    receive(end);
    receive(displayText(6, kick) + Bytes(1013, 0x20));
    receive(end);
    EXPECT_EQ(trace.events, Texts{});
}

TEST_F(HUIInputStream, StartsAgainAfterGivingUp) {
    receive(Bytes{0xF0} + Bytes(1024, 0x20));
    receive(displayText(7, kick));
    receive(end);
    EXPECT_EQ(trace.events, Texts{"name 7 'Kick'"});
}

TEST_F(HUIInputStream, ReadsALongerMessageWhoseEndHasCome) {
    receive(displayText(6, kick) + Bytes(1013, 0x20) + end);
    receive(displayText(5, kick) + Bytes(1012, 0x20));
    receive(Bytes(255, 0x20) + end);
    EXPECT_EQ(trace.events, (Texts{"name 6 'Kick'", "name 5 'Kick'"}));
}

} // namespace
} // namespace lumbrine
