#include "platform/linux/service_names.h"

namespace lumbrine {
namespace {

TEST(ServiceNames, LoseTheDotAtTheEndAndNoOther) {
    EXPECT_EQ(withoutFinalDot("_lumbrine._udp."), "_lumbrine._udp");
    EXPECT_EQ(withoutFinalDot("local."), "local");
    EXPECT_EQ(withoutFinalDot("_lumbrine._udp"), "_lumbrine._udp");
    EXPECT_EQ(withoutFinalDot(""), "");
}

TEST(ServiceNames, AreCutTo63BytesBetweenCharacters) {
    EXPECT_EQ(fittingServiceName("Anna's Studio"), "Anna's Studio");
    EXPECT_EQ(fittingServiceName(std::string(63, 'a')), std::string(63, 'a'));
    EXPECT_EQ(fittingServiceName(std::string(64, 'a')), std::string(63, 'a'));

    const std::string almostFull(62, 'a');
    EXPECT_EQ(fittingServiceName(almostFull + "é"), almostFull);
}

} // namespace
} // namespace lumbrine
