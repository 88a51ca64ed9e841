// lumbrine-headless beside a JACK server that starts late, ends and comes back.
#include "tests/end_to_end/client_socket.h"
#include "tests/end_to_end/host_ports.h"
#include "tests/end_to_end/receiver_process.h"
#include "tests/interop/private_jack.h"
#include "tests/interop/waiting.h"

#include <filesystem>

namespace lumbrine::end_to_end {
namespace {

using interop::JackMode;
using interop::PrivateJack;
using interop::waitUntil;
using testing::ElementsAre;
using testing::StartsWith;

class JackService : public testing::TestWithParam<JackMode> {
protected:
    static bool answersPings() {
        HostPorts a("Lumbrine");
        HostPorts b("Lumbrine B");
        const auto answers = [](HostPorts& host) {
            return waitUntil([&] { // an asynchronous server may lose a message
                host.send(Bytes{0x90, 0x00, 0x00});
                return waitUntil([&] { return !host.events().empty(); }, std::chrono::milliseconds(100));
            });
        };
        return answers(a) && answers(b);
    }

    // The lines about MIDI.
    static std::vector<std::string> midiLog(const ReceiverProcess& receiver) {
        std::vector<std::string> lines = receiver.log();
        std::erase_if(lines, [](const std::string& line) { return line.find("MIDI") == std::string::npos; });
        return lines;
    }

    PrivateJack jack{{.mode = GetParam(), .started = false}};
};

TEST_P(JackService, ComesIntoUseWhenItStartsAfterTheReceiver) {
    if (std::filesystem::exists("/dev/snd/seq")) GTEST_SKIP() << "the receiver uses this computer's ALSA sequencer";
    const ReceiverProcess receiver;
    ASSERT_TRUE(receiver.logs("✗ MIDI failed"));
    jack.start();
    ASSERT_TRUE(receiver.logs("✓ Virtual MIDI")) << receiver.process.output();
    EXPECT_TRUE(answersPings()) << receiver.process.output();
    EXPECT_THAT(midiLog(receiver), ElementsAre(StartsWith("✗ MIDI failed: MIDIClientCreateWithBlock failed: "),
                                               "✓ Virtual MIDI 'Lumbrine' + 'Lumbrine B' created (ch 1-8 + 9-16)"));
}

TEST_P(JackService, ComesIntoUseWhenItHungAtTheReceiversStart) {
    if (std::filesystem::exists("/dev/snd/seq")) GTEST_SKIP() << "the receiver uses this computer's ALSA sequencer";
    jack.start();
    jack.freeze();
    const ReceiverProcess receiver;
    ASSERT_TRUE(receiver.logs("✗ MIDI failed"));
    jack.thaw();
    ASSERT_TRUE(receiver.logs("✓ Virtual MIDI")) << receiver.process.output();
    EXPECT_TRUE(answersPings()) << receiver.process.output();
}

TEST_P(JackService, IsReportedOnceWhenItIsLostAndOnceWhenItIsBack) {
    jack.start();
    const ReceiverProcess receiver({.language = "ja"});
    ASSERT_TRUE(receiver.logs("✓ 仮想MIDI"));
    jack.kill();
    ASSERT_TRUE(receiver.logs("⚠️ MIDI サーバー切断")) << receiver.process.output();
    jack.start();
    ASSERT_TRUE(receiver.logs("✓ MIDI サーバー復帰")) << receiver.process.output();
    EXPECT_TRUE(answersPings()) << receiver.process.output();
    EXPECT_THAT(midiLog(receiver), ElementsAre("✓ 仮想MIDI 'Lumbrine' + 'Lumbrine B' 生成（8ch＋9〜16ch）",
                                               "⚠️ MIDI サーバー切断", "✓ MIDI サーバー復帰"));
}

TEST_P(JackService, IsHeardAgainByAReceiverThatItHadCutOff) {
    jack.start();
    const ReceiverProcess receiver;
    ASSERT_TRUE(receiver.logs("✓ Virtual MIDI"));
    ASSERT_TRUE(answersPings());
    jack.cutOff("Lumbrine-01"); // the client of the destinations
    ASSERT_TRUE(receiver.logs("✓ MIDI server back")) << receiver.process.output();
    EXPECT_TRUE(answersPings()) << receiver.process.output();
}

TEST_P(JackService, LosesNoMessageWithoutAWordWhileItHangs) {
    jack.start();
    const ReceiverProcess receiver;
    ASSERT_TRUE(receiver.logs("✓ Virtual MIDI"));
    jack.freeze();
    ClientSocket owner(receiver.port);
    for (int move = 0; move < 25'000; ++move) { // more than a port holds
        owner.send(
            Bytes{0x01, 0x01, 0x03, static_cast<std::uint8_t>(move >> 8 & 0x3F), static_cast<std::uint8_t>(move)});
        if (move % 100 != 0) continue;
        owner.send(Bytes{0x01, 0x00});
        ASSERT_TRUE(owner.hears({0x01, 0x7F})) << receiver.process.output(); // not faster than they are read
    }
    EXPECT_TRUE(receiver.logs(" messages dropped")) << receiver.process.output();
    jack.thaw();
    EXPECT_TRUE(answersPings()) << receiver.process.output();
}

INSTANTIATE_TEST_SUITE_P(Servers, JackService, testing::Values(JackMode::synchronous, JackMode::asynchronous),
                         interop::nameOfMode<testing::TestParamInfo<JackMode>>);

} // namespace
} // namespace lumbrine::end_to_end
