#include "app/connect_text.h"

namespace lumbrine {
namespace {

TEST(ConnectText, HasEveryAddressWithThePortAndTheLikeliestInTheCode) {
    PublishedState published;
    published.health.port = 52701;
    published.localIP = "192.168.1.2";
    const ConnectText text = connectText(published, {"10.0.0.2", "192.168.1.2"}, "", Bilingual(false));
    EXPECT_EQ(text.addresses, (std::vector<std::string>{"192.168.1.2:52701", "10.0.0.2:52701"}));
    EXPECT_EQ(text.link, "lumbrine://192.168.1.2:52701");
    EXPECT_EQ(text.pageAdvice, "");
}

TEST(ConnectText, ShowsThePageForBrowsersWhereThereIsOne) {
    const ConnectText text = connectText({}, {}, "http://192.168.1.2:52780/#KEY", Bilingual(false));
    EXPECT_EQ(text.pageLink, "http://192.168.1.2:52780/#KEY");
    EXPECT_NE(text.pageAdvice, "");
}

} // namespace
} // namespace lumbrine
