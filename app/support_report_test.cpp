#include "app/flight_recorder.h"
#include "app/support_report.h"
#include "blackbox/ring_reader.h"
#include "blackbox/support/recording_file.h"
#include "platform/virtual/virtual_runtime.h"

#include <unistd.h>

#include <cstdlib>
#include <fstream>

namespace lumbrine {
namespace {

namespace fs = std::filesystem;

struct SupportReportTest : testing::Test {
    SupportReportTest() {
        std::string pattern = (fs::temp_directory_path() / "report-XXXXXX").string();
        folder = ::mkdtemp(pattern.data());
        recording = folder / "blackbox";
        report = folder / "report";
    }
    ~SupportReportTest() override { fs::remove_all(folder); }

    // A program that records one line of its log.
    void record(const std::string& line) {
        VirtualRuntime runtime;
        const BlackboxSetting setting{.path = recording, .size = std::size_t{1} << 20};
        FlightRecorder recorder(runtime, setting, "lumbrine 1.0", Bilingual(false));
        EXPECT_TRUE(recorder.isRecording());
        recorder.recorded([](const std::string&) {})(line);
    }

    std::vector<std::string> linesOf(const fs::path& file) {
        const auto ring = blackbox::loadRecording(file);
        if (!ring) return {ring.error()};
        std::vector<std::string> lines;
        for (const blackbox::Record& each : blackbox::readRing(*ring)->records)
            if (each.kind == blackbox::Kind::log) lines.emplace_back(each.payload.begin(), each.payload.end());
        return lines;
    }

    fs::path folder, recording, report;
};

TEST_F(SupportReportTest, HasTheRecordingAndTheDiagnosis) {
    record("UDP listening");
    EXPECT_TRUE(saveSupportReport(recording, report, "✓ MIDI\n✗ No phone\n"));
    EXPECT_EQ(linesOf(report), (std::vector<std::string>{"UDP listening", "check: ✓ MIDI", "check: ✗ No phone"}));
}

TEST_F(SupportReportTest, SaysWhichFileIsNoRecording) {
    std::ofstream(recording) << "something else";
    const auto saved = saveSupportReport(recording, report, "");
    ASSERT_FALSE(saved);
    EXPECT_EQ(saved.error(), recording.string() + " is no recording");
    EXPECT_FALSE(fs::exists(report));
}

TEST_F(SupportReportTest, SaysThatItCannotBeWritten) {
    record("UDP listening");
    const auto saved = saveSupportReport(recording, folder / "nowhere" / "report", "");
    ASSERT_FALSE(saved);
    EXPECT_TRUE(saved.error().starts_with((folder / "nowhere" / "report").string())) << saved.error();
}

TEST_F(SupportReportTest, IsMadeOfWhatTheSettingNames) {
    ::setenv("LUMBRINE_BLACKBOX", recording.c_str(), 1);
    EXPECT_EQ(recordingPath(LinuxSystemInfo()), recording);
    ::unsetenv("LUMBRINE_BLACKBOX");
}

TEST_F(SupportReportTest, IsMadeOfTheServicesRecordingWhereThereIsNoOther) {
    const fs::path ofService = folder / ".config/lumbrine/blackbox";
    fs::create_directories(ofService.parent_path());
    std::ofstream(ofService) << "";
    ::setenv("HOME", folder.c_str(), 1);
    ::setenv("XDG_STATE_HOME", (folder / "state").c_str(), 1);
    EXPECT_EQ(recordingPath(LinuxSystemInfo()), ofService);
}

} // namespace
} // namespace lumbrine
