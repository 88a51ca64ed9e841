#include "platform/linux/found_services.h"

namespace lumbrine {
namespace {

TEST(FoundServices, AreReportedOnce) {
    FoundServices services;
    EXPECT_TRUE(services.appeared("Studio"));
    EXPECT_TRUE(services.appeared("Studio")); // over a second interface, before the first has an answer
    EXPECT_TRUE(services.resolved("Studio"));
    EXPECT_FALSE(services.resolved("Studio"));
    EXPECT_FALSE(services.appeared("Studio"));
}

TEST(FoundServices, AreReportedOneByOne) {
    FoundServices services;
    services.appeared("Studio");
    services.appeared("Studio #2");
    EXPECT_TRUE(services.resolved("Studio"));
    EXPECT_TRUE(services.resolved("Studio #2"));
}

TEST(FoundServices, AreNewsAgainAfterTheyWereGoneFromEverywhere) {
    FoundServices services;
    services.appeared("Studio");
    services.appeared("Studio");
    services.resolved("Studio");
    services.disappeared("Studio");
    EXPECT_FALSE(services.resolved("Studio"));
    services.disappeared("Studio");
    EXPECT_TRUE(services.appeared("Studio"));
    EXPECT_TRUE(services.resolved("Studio"));
}

TEST(FoundServices, AreNotReportedWhenGoneBeforeTheAnswer) {
    FoundServices services;
    services.appeared("Studio");
    services.disappeared("Studio");
    EXPECT_FALSE(services.resolved("Studio"));
}

TEST(FoundServices, BearTheGoingOfWhatNeverCame) {
    FoundServices services;
    services.disappeared("Studio");
    EXPECT_TRUE(services.appeared("Studio"));
}

} // namespace
} // namespace lumbrine
