#include "app/flight_recorder.h"
#include "blackbox/ring_reader.h"
#include "platform/portable/nlohmann_json.h"
#include "platform/portable/no_accessibility.h"
#include "platform/virtual/null_platform.h"
#include "platform/virtual/virtual_network.h"
#include "platform/virtual/virtual_runtime.h"

#include <algorithm>
#include <fstream>
#include <iterator>

namespace lumbrine {
namespace {

namespace fs = std::filesystem;
using blackbox::Kind;

struct FlightRecorderTest : testing::Test {
    FlightRecorderTest() {
        std::string pattern = (fs::temp_directory_path() / "recorder-XXXXXX").string();
        folder = ::mkdtemp(pattern.data());
        setting.path = folder / "blackbox";
        setting.size = std::size_t{1} << 20;
    }
    ~FlightRecorderTest() override { fs::remove_all(folder); }

    // A receiver that runs for this long.
    void run(Duration duration, bool japanese = false, const std::function<void(ReceiverModel&)>& meanwhile = {}) {
        const Bilingual text(japanese);
        VirtualNetwork network(*runtime);
        DatagramSockets& sockets = network.host("192.168.1.10");
        FlightRecorder recorder(*runtime, setting, "lumbrine 1.0", text);
        auto model = ReceiverModel::create(
            recorder.recorded({*runtime, midi, sockets, advertiser, system, streams, json, accessibility}), text,
            recorder.recorded([this](const std::string& line) { log.push_back(line); }));
        recorder.keepUp(model);
        model->start();
        runtime->runFor(duration / 2);
        if (meanwhile) meanwhile(*model);
        runtime->runFor(duration / 2);
        model->letGo();
        const std::weak_ptr<const void> gone = model->lifetime();
        model.reset();
        runtime->runUntil([&] { return gone.expired(); }, seconds(10));
    }

    std::vector<blackbox::Record> records() {
        std::ifstream stream(setting.path, std::ios::binary);
        file.assign(std::istreambuf_iterator<char>(stream), {});
        const auto reading = blackbox::readRing(file);
        return reading ? reading->records : std::vector<blackbox::Record>{};
    }

    long countOf(Kind kind) { return std::ranges::count(records(), kind, &blackbox::Record::kind); }

    long warnings(std::string_view part) const {
        return std::ranges::count_if(log, [&](const std::string& line) { return line.contains(part); });
    }

    fs::path folder;
    BlackboxSetting setting;
    std::optional<VirtualRuntime> runtime{std::in_place};
    NullMIDI midi;
    NullStreams streams;
    NullAdvertiser advertiser;
    NullComputer system{{{"QV_NO_BONJOUR", "1"}}};
    NlohmannJSON json{Bilingual(false)};
    NoAccessibility accessibility;
    std::vector<std::string> log;
    Bytes file;
};

TEST_F(FlightRecorderTest, RecordsEverySeamFromTheBeginningToTheEnd) {
    run(seconds(1));
    const auto all = records();
    ASSERT_FALSE(all.empty());
    EXPECT_EQ(all.front().kind, Kind::anchor);
    EXPECT_EQ(all.front().channel, static_cast<int>(blackbox::AnchorCause::programBegan));
    EXPECT_EQ(all.back().kind, Kind::anchor);
    EXPECT_EQ(all.back().channel, static_cast<int>(blackbox::AnchorCause::programEnded));
    for (const Kind kind : {Kind::log, Kind::fact, Kind::socket, Kind::midiPort, Kind::midiOut})
        EXPECT_GT(countOf(kind), 0) << static_cast<int>(kind);
    EXPECT_EQ(countOf(Kind::log), static_cast<long>(log.size()));
}

TEST_F(FlightRecorderTest, GoesOnInTheRecordingOfTheRunBefore) {
    run(seconds(1));
    const auto first = records().size();
    runtime.emplace();
    run(seconds(1));
    EXPECT_GT(records().size(), first + 10);
    EXPECT_EQ(std::ranges::count_if(records(),
                                    [](const auto& record) {
                                        return record.kind == Kind::anchor &&
                                               record.channel == static_cast<int>(blackbox::AnchorCause::programBegan);
                                    }),
              2);
}

TEST_F(FlightRecorderTest, SaysOnceThatAnotherProgramHasTheFileAndGoesOn) {
    const FlightRecorder other(*runtime, setting, "lumbrine 1.0", Bilingual(false));
    run(seconds(60));
    EXPECT_EQ(warnings("⚠️ No black box: another Lumbrine program is writing " + setting.path.string()), 1);
    EXPECT_GT(log.size(), 3U);
}

TEST_F(FlightRecorderTest, SaysSoInJapanese) {
    const FlightRecorder other(*runtime, setting, "lumbrine 1.0", Bilingual(false));
    run(seconds(60), true);
    EXPECT_EQ(warnings("⚠️ ブラックボックスなし：別の Lumbrine が書き込み中 " + setting.path.string()), 1);
}

TEST_F(FlightRecorderTest, SaysOnceThatTheFolderCannotBeWrittenAndGoesOn) {
    std::ofstream(folder / "occupied") << "no folder";
    setting.path = folder / "occupied" / "blackbox";
    run(seconds(60));
    EXPECT_EQ(warnings("⚠️ No black box: cannot write " + setting.path.string()), 1);
}

TEST_F(FlightRecorderTest, SaysOnceThatTheFileWasCutAndGoesOn) {
    run(seconds(120), false, [this](ReceiverModel& model) {
        fs::resize_file(setting.path, 0);
        model.appendLog("a line that is lost");
    });
    EXPECT_EQ(warnings("⚠️ The black box has ended: its file was cut, or the disk is full"), 1);
}

} // namespace
} // namespace lumbrine
