#include "platform/recorded/recorded_accessibility.h"
#include "platform/recorded/testing/recording_bench.h"

namespace lumbrine {
namespace {

using blackbox::ScreenEvent;
using blackbox::ScreenHead;

struct Window final : AccessibleElement {};

// An application with two windows, which answers every question alike.
struct Screen final : Accessibility {
    bool isTrusted() override { return trusted; }
    bool isTrustedOrPrompt() override { return trusted; }
    std::optional<std::int32_t> runningApplication(std::string_view) override { return 77; }
    ElementHandle applicationElement(std::int32_t) override { return application; }
    std::expected<std::vector<std::optional<AttributeValue>>, ScreenFailure>
    attributes(const ElementHandle& element, std::span<const std::string_view> names) override {
        asked.push_back(element);
        if (hangs) return std::unexpected(ScreenFailure::noAnswer);
        std::vector<std::optional<AttributeValue>> values(names.size());
        if (!names.empty()) values[0] = std::vector<ElementHandle>{one, two};
        if (names.size() > 1) values[1] = std::string("Mix: Song");
        if (names.size() > 2) values[2] = true;
        return values;
    }
    bool perform(const ElementHandle& element, std::string_view) override { return element == two; }

    const ElementHandle application = std::make_shared<Window>();
    const ElementHandle one = std::make_shared<Window>();
    const ElementHandle two = std::make_shared<Window>();
    std::vector<ElementHandle> asked;
    bool trusted = false;
    bool hangs = false;
};

struct RecordedAccessibilityTest : testing::Test {
    RecordingBench bench;
    Screen real;
    RecordedAccessibility screen{real, bench.recorder};
};

TEST_F(RecordedAccessibilityTest, NumbersTheElementsAndRecordsWhatTheySay) {
    const ElementHandle application = screen.applicationElement(77);
    const std::array<std::string_view, 4> names{"AXWindows", "AXTitle", "AXMain", "AXRow"};
    const auto values = screen.attributes(application, names);
    EXPECT_EQ(real.asked, std::vector{real.application});
    const auto windows = std::get<std::vector<ElementHandle>>(*values->at(0));
    EXPECT_FALSE(screen.perform(windows.at(0), "AXPress"));
    EXPECT_TRUE(screen.perform(windows.at(1), "AXPress"));

    const auto entries = bench.entries();
    ASSERT_EQ(entries.size(), 3U);
    EXPECT_EQ(entries[0].channel, static_cast<int>(ScreenEvent::read));
    EXPECT_EQ(entries[0].head<ScreenHead>().element, 1U);
    EXPECT_EQ(entries[0].textBehind<ScreenHead>(), "AXWindows=[#2-#3] AXTitle=\"Mix: Song\" AXMain=true AXRow=-");
    EXPECT_EQ(entries[1].channel, static_cast<int>(ScreenEvent::pressed));
    EXPECT_EQ(entries[1].head<ScreenHead>().element, 2U);
    EXPECT_EQ(entries[1].head<ScreenHead>().result, -1);
    EXPECT_EQ(entries[2].head<ScreenHead>().element, 3U);
    EXPECT_EQ(entries[2].head<ScreenHead>().result, 0);
}

TEST_F(RecordedAccessibilityTest, RecordsThatNoAnswerCame) {
    real.hangs = true;
    const std::array<std::string_view, 1> names{"AXWindows"};
    EXPECT_FALSE(screen.attributes(screen.applicationElement(77), names));
    EXPECT_EQ(bench.only().head<ScreenHead>().result, -1);
    EXPECT_EQ(bench.only().textBehind<ScreenHead>(), "AXWindows");
}

TEST_F(RecordedAccessibilityTest, RecordsTrustWhenItChanges) {
    for (const bool trusted : {false, false, true, true, false}) {
        real.trusted = trusted;
        EXPECT_EQ(screen.isTrusted(), trusted);
        EXPECT_EQ(screen.isTrustedOrPrompt(), trusted);
    }
    std::vector<std::int32_t> answers;
    for (const auto& entry : bench.entries())
        answers.push_back(entry.head<ScreenHead>().result);
    EXPECT_EQ(answers, (std::vector<std::int32_t>{0, 1, 0}));
}

TEST_F(RecordedAccessibilityTest, RecordsWhichProgramRuns) {
    EXPECT_EQ(screen.runningApplication("com.example.studio"), 77);
    EXPECT_EQ(bench.only().head<ScreenHead>().result, 77);
    EXPECT_EQ(bench.only().textBehind<ScreenHead>(), "com.example.studio");
}

} // namespace
} // namespace lumbrine
