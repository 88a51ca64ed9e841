#include "remote/script_command.h"
#include "seal/session_key.h"
#include "tools/blackbox/command_words.h"

namespace lumbrine::blackbox {
namespace {

Bytes datagramOf(const std::string& text) {
    return remote::scriptCommand(text, std::nullopt).value_or(Bytes{});
}

TEST(CommandWords, AreThoseThatTheTerminalClientTakes) {
    for (const char* const text : {"hello",
                                   "take-over",
                                   "touch 3",
                                   "fader 3 0.7200",
                                   "release 3",
                                   "mute 4",
                                   "solo 16",
                                   "rec 1",
                                   "select 2",
                                   "monitor 5",
                                   "vpot 2 -3",
                                   "pan-mode",
                                   "pan-seek 2 11",
                                   "bank left",
                                   "bank right",
                                   "channel left",
                                   "channel right",
                                   "seek 33",
                                   "recalibrate",
                                   "auto-mode 3 latch",
                                   "group-auto-mode write 1 7 300",
                                   "group-mute on 2 4",
                                   "group-solo off 9",
                                   "group-faders 1=0.2500 12=1.0000",
                                   "visible 65 40"})
        EXPECT_EQ(clientWords(datagramOf(text)).text, text);
}

TEST(CommandWords, NameTheStripOfACommandThatHasOne) {
    EXPECT_EQ(clientWords(datagramOf("fader 16 0.5")).strip, 15);
    EXPECT_EQ(clientWords(datagramOf("pan-seek 1 3")).strip, 0);
    EXPECT_EQ(clientWords(datagramOf("bank left")).strip, std::nullopt);
}

TEST(CommandWords, OfTheReceiverAreThoseThatTheTerminalClientPrints) {
    const Bytes fader{0x01, 0x12, 0x02, 0x3F, 0xFF};
    EXPECT_EQ(receiverWords(fader).text, "fader 3 1.0000");
    EXPECT_EQ(receiverWords(fader).strip, 2);
    EXPECT_EQ(receiverWords(Bytes{0x01, 0x7F}).text, "pong");
    EXPECT_EQ(receiverWords(Bytes{0x01, 0x7F}).strip, std::nullopt);
}

TEST(CommandWords, OfASealedMessageAreTheMessagesAndItsPlaceInTheSession) {
    Bytes move = datagramOf("fader 3 0.7200");
    append(move, Bytes{0xFF, 0x5E, 0xA1, 0xA0, 0x00, 0x00, 0x08, 0x5F, 1, 2, 3, 4, 5, 6, 7, 8});
    EXPECT_EQ(clientWords(move).text, "fader 3 0.7200 (sealed, number 2, key 160)");
    EXPECT_EQ(clientWords(move).strip, 2);
    Bytes pong{0x01, 0x7F};
    append(pong, Bytes{0xFF, 0x5E, 0xA1, 0xA0, 0x00, 0x00, 0x04, 0x0A, 1, 2, 3, 4, 5, 6, 7, 8});
    EXPECT_EQ(receiverWords(pong).text, "pong (sealed, number 1, key 160)");
}

TEST(CommandWords, SayWhenASessionIsOpened) {
    const Bytes trailer{0xFF, 0x5E, 0xA1, 0xA0, 0x00, 0x00, 0x00, 0x4D, 1, 2, 3, 4, 5, 6, 7, 8};
    const auto opening = seal::openingMessage(7, {});
    Bytes hello(opening.begin(), opening.end());
    append(hello, trailer);
    EXPECT_EQ(clientWords(hello).text, "hello, to open a session (sealed, number 0, key 160)");
    const auto answer = seal::sessionMessage({}, {});
    Bytes session(answer.begin(), answer.end());
    append(session, trailer);
    EXPECT_EQ(receiverWords(session).text, "session (sealed, number 0, key 160)");
}

TEST(CommandWords, OfAnythingElseAreItsBytes) {
    EXPECT_EQ(clientWords(Bytes{0x01, 0x6E, 0xFF}).text, "hex 01 6e ff");
    EXPECT_EQ(receiverWords(Bytes{0x02}).text, "hex 02");
    EXPECT_EQ(clientWords({}).text, "hex ");
}

} // namespace
} // namespace lumbrine::blackbox
