#include "platform/macos/announcement_keeper.h"
#include "platform/virtual/virtual_runtime.h"

namespace lumbrine {
namespace {

constexpr int notAllowed = -65570;
constexpr int collision = -72001;

// Plays the system: records what is announced, and lets the test send reports.
struct FakeSystem {
    explicit FakeSystem(Runtime& runtime) : runtime(runtime) {}

    struct Attempt final : AnnouncementAttempt {
        explicit Attempt(FakeSystem& system) : system(system) { ++system.announced; }
        ~Attempt() override { --system.announced; }
        FakeSystem& system;
    };

    Runtime& runtime;
    BeginAnnouncement begin = [this](const AdvertisedService& service, AnnouncementReports reports) {
        names.push_back(service.name);
        times.push_back(inSeconds(runtime.now() - TimePoint{}));
        latest = std::move(reports);
        return std::make_unique<Attempt>(*this);
    };

    int announced = 0;
    std::vector<std::string> names;
    std::vector<double> times;
    AnnouncementReports latest;
};

class AnnouncementKeeperTest : public ::testing::Test {
protected:
    void SetUp() override { keeper->start(); }

    VirtualRuntime runtime;
    FakeSystem system{runtime};
    std::vector<int> refusals;
    std::shared_ptr<AnnouncementKeeper> keeper = std::make_shared<AnnouncementKeeper>(
        runtime, system.begin, AdvertisedService{"local.", "_lumbrine._udp.", "Studio", 52700},
        [this](int code) { refusals.push_back(code); });
};

TEST_F(AnnouncementKeeperTest, AnnouncesAtOnceAndThenLeavesItAlone) {
    system.latest.published();
    runtime.runFor(seconds(3600));
    EXPECT_EQ(system.names, std::vector<std::string>{"Studio"});
    EXPECT_EQ(system.announced, 1);
    EXPECT_TRUE(refusals.empty());
}

TEST_F(AnnouncementKeeperTest, AnnouncesAgainASecondAfterTheSystemGaveItUp) {
    system.latest.published();
    runtime.runFor(seconds(10));
    system.latest.stopped();
    runtime.runFor(seconds(5));
    EXPECT_EQ(system.times, (std::vector<double>{0, 11}));
    EXPECT_EQ(system.announced, 1);
}

TEST_F(AnnouncementKeeperTest, WaitsLongerAfterEachFailureUpToAMinute) {
    for (int i = 0; i < 7; ++i) {
        system.latest.failed(notAllowed);
        runtime.runFor(seconds(i == 0 ? 5 : i == 1 ? 10 : i == 2 ? 20 : i == 3 ? 40 : 60));
    }
    EXPECT_EQ(system.times, (std::vector<double>{0, 5, 15, 35, 75, 135, 195, 255}));
    EXPECT_EQ(system.announced, 1);
}

TEST_F(AnnouncementKeeperTest, ReportsARefusalOnceUntilItsReasonChanges) {
    for (const int code : {notAllowed, notAllowed, collision, notAllowed}) {
        system.latest.failed(code);
        runtime.runFor(seconds(60));
    }
    EXPECT_EQ(refusals, (std::vector<int>{notAllowed, collision, notAllowed}));
}

TEST_F(AnnouncementKeeperTest, ReportsTheSameRefusalAgainAfterASuccess) {
    system.latest.failed(notAllowed);
    runtime.runFor(seconds(5));
    system.latest.published();
    system.latest.failed(notAllowed);
    runtime.runFor(seconds(5));
    EXPECT_EQ(refusals, (std::vector<int>{notAllowed, notAllowed}));
    EXPECT_EQ(system.times, (std::vector<double>{0, 5, 10}));
}

TEST_F(AnnouncementKeeperTest, RenewsByWithdrawingAndAnnouncingAtOnce) {
    system.latest.published();
    runtime.runFor(seconds(2));
    keeper->renew();
    EXPECT_EQ(system.times, (std::vector<double>{0, 2}));
    EXPECT_EQ(system.announced, 1);
}

TEST_F(AnnouncementKeeperTest, ForgetsWhatItHadPlannedWhenItRenews) {
    system.latest.failed(notAllowed);
    runtime.runFor(seconds(1));
    keeper->renew();
    system.latest.published();
    runtime.runFor(seconds(100));
    EXPECT_EQ(system.times, (std::vector<double>{0, 1}));
}

TEST_F(AnnouncementKeeperTest, DoesNotListenToAnAttemptThatIsOver) {
    const AnnouncementReports old = system.latest;
    keeper->renew();
    old.stopped();
    old.failed(notAllowed);
    runtime.runFor(seconds(100));
    EXPECT_EQ(system.times.size(), 2U);
    EXPECT_TRUE(refusals.empty());
}

TEST_F(AnnouncementKeeperTest, CountsTwoReportsOfOneEndOnce) {
    system.latest.failed(notAllowed);
    system.latest.stopped();
    runtime.runFor(seconds(9));
    EXPECT_EQ(system.times, (std::vector<double>{0, 5}));
}

TEST_F(AnnouncementKeeperTest, IsSilentAfterTheEnd) {
    system.latest.failed(notAllowed);
    keeper->end();
    EXPECT_EQ(system.announced, 0);
    runtime.runFor(seconds(100));
    EXPECT_EQ(system.times.size(), 1U);
}

TEST_F(AnnouncementKeeperTest, MayBeGoneWhenAPlanOrAReportComes) {
    const AnnouncementReports reports = system.latest;
    reports.failed(notAllowed);
    keeper.reset();
    reports.published();
    runtime.runFor(seconds(100));
    EXPECT_EQ(system.announced, 0);
    EXPECT_EQ(system.times.size(), 1U);
}

} // namespace
} // namespace lumbrine
