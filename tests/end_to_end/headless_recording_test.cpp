// What crosses the seams of lumbrine-headless is in its recording, however the program ends.
#include "blackbox/ring_reader.h"
#include "tests/end_to_end/client_socket.h"
#include "tests/end_to_end/host_ports.h"
#include "tests/end_to_end/receiver_process.h"
#include "tests/interop/private_jack.h"

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>

namespace lumbrine::end_to_end {
namespace {

using blackbox::AnchorCause;
using blackbox::Kind;
using blackbox::Record;
using interop::PrivateJack;
using interop::TemporaryFolder;
using interop::waitUntil;

class HeadlessRecording : public testing::Test {
protected:
    std::vector<Record> records() {
        std::ifstream stream(path, std::ios::binary);
        file.resize(std::filesystem::file_size(path));
        stream.read(reinterpret_cast<char*>(file.data()), static_cast<std::streamsize>(file.size()));
        const auto reading = blackbox::readRing(file);
        return reading ? reading->records : std::vector<Record>{};
    }

    bool has(Kind kind, const Bytes& end) {
        return std::ranges::any_of(records(), [&](const Record& record) {
            return record.kind == kind && record.payload.size() >= end.size() &&
                   std::ranges::equal(record.payload.last(end.size()), end);
        });
    }

    static bool isAnchor(const Record& record, AnchorCause cause) {
        return record.kind == Kind::anchor && record.channel == static_cast<std::uint8_t>(cause);
    }

    PrivateJack jack;
    TemporaryFolder folder;
    const std::string path = (folder.path / "state" / "blackbox").string();
    Bytes file;
};

TEST_F(HeadlessRecording, IsWholeUpToTheLastEventOfAProgramThatIsKilled) {
    ReceiverProcess receiver({.blackbox = path});
    std::optional<HostPorts> host(std::in_place, "Lumbrine");
    ClientSocket client(receiver.port);
    const Bytes ping{0x90, 0x00, 0x00};
    ASSERT_TRUE(waitUntil([&] {
        host->send(ping);
        return has(Kind::midiIn, ping);
    }));
    const Bytes touch{0x01, 0x02, 0x03};
    client.send(Bytes{0x01, 0x00});
    client.send(touch);
    ASSERT_TRUE(client.hears(Bytes{0x01, 0x7F}));
    ASSERT_TRUE(waitUntil([&] { return has(Kind::datagramIn, touch); }));
    host.reset(); // closing it takes long when another client of JACK was killed
    receiver.process.signal(SIGKILL);
    EXPECT_EQ(receiver.process.wait(interop::patience), 128 + SIGKILL);

    EXPECT_TRUE(has(Kind::datagramIn, touch));
    EXPECT_TRUE(has(Kind::datagramOut, Bytes{0x01, 0x7F}));
    EXPECT_TRUE(has(Kind::midiOut, Bytes{0x90, 0x00, 0x7F}));
    const auto all = records();
    EXPECT_TRUE(isAnchor(all.front(), AnchorCause::programBegan));
    EXPECT_FALSE(isAnchor(all.back(), AnchorCause::programEnded));
    const auto shown =
        interop::runCommand({LUMBRINE_BIN_DIR "/lumbrine-blackbox", "-f", path, "show", "--kind", "datagrams"});
    EXPECT_EQ(shown.status, 0);
    EXPECT_TRUE(shown.output.contains(" → hello\n")) << shown.output;
    EXPECT_TRUE(shown.output.contains(" ← pong\n")) << shown.output;
    EXPECT_TRUE(shown.output.contains(" → touch 4\n")) << shown.output;
}

TEST_F(HeadlessRecording, GoesOnInTheNextProgramAndTellsThatTheFirstEnded) {
    for (int run = 0; run < 2; ++run) {
        ReceiverProcess receiver({.blackbox = path});
        receiver.process.signal(SIGTERM);
        ASSERT_EQ(receiver.process.wait(interop::patience), 0);
    }
    std::vector<AnchorCause> causes;
    for (const Record& record : records())
        if (record.kind == Kind::anchor) causes.push_back(static_cast<AnchorCause>(record.channel));
    using enum AnchorCause;
    EXPECT_EQ(causes, (std::vector{programBegan, programEnded, programBegan, programEnded}));
}

TEST_F(HeadlessRecording, BelongsToOneReceiverAndTheOtherGoesOnWithout) {
    const ReceiverProcess first({.blackbox = path});
    const ReceiverProcess second({.blackbox = path});
    EXPECT_TRUE(second.logs("⚠️ No black box: another Lumbrine program is writing " + path));
    EXPECT_FALSE(first.process.output().contains("No black box"));
}

} // namespace
} // namespace lumbrine::end_to_end
