#include "platform/recorded/recorded_computer.h"
#include "platform/recorded/testing/recording_bench.h"
#include "platform/virtual/null_platform.h"

namespace lumbrine {
namespace {

TEST(RecordedSystemInfo, RecordsTheReceiversOwnVariablesAndNoOther) {
    RecordingBench bench;
    const NullComputer computer({{"QV_PORT", "52701"}, {"SECRET", "5ecre7"}});
    const RecordedSystemInfo system(computer, bench.recorder);
    EXPECT_EQ(system.environment("QV_PORT"), "52701");
    EXPECT_EQ(system.environment("QV_DEBUG"), std::nullopt);
    EXPECT_EQ(system.environment("SECRET"), "5ecre7");
    EXPECT_EQ(system.primaryIPv4(), std::nullopt);
    std::vector<std::string> facts;
    for (const auto& entry : bench.entries())
        facts.push_back(entry.text());
    EXPECT_EQ(facts, (std::vector<std::string>{"QV_PORT=52701", "QV_DEBUG", "address"}));
}

TEST(RecordedAdvertiser, RecordsTheNameUnderWhichTheServiceIsAnnounced) {
    struct Advertiser final : ServiceAdvertiser {
        std::unique_ptr<Advertisement> publish(AdvertisedService service) override {
            service.onChange("Studio (2)");
            service.onChange(std::nullopt);
            return nullptr;
        }
    };
    RecordingBench bench;
    Advertiser real;
    RecordedAdvertiser advertiser(real, bench.recorder);
    std::vector<std::optional<std::string>> names;
    advertiser.publish({.domain = "local.",
                        .type = "_lumbrine._udp.",
                        .name = "Studio",
                        .port = 52700,
                        .onChange = [&](const std::optional<std::string>& name) { names.push_back(name); }});
    EXPECT_EQ(names, (std::vector<std::optional<std::string>>{"Studio (2)", std::nullopt}));
    const auto entries = bench.entries();
    ASSERT_EQ(entries.size(), 2U);
    EXPECT_EQ(entries[0].kind, blackbox::Kind::announced);
    EXPECT_EQ(entries[0].text(), "Studio (2)");
    EXPECT_EQ(entries[1].text(), "");
}

} // namespace
} // namespace lumbrine
