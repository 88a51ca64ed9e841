#include "model/state/configuration.h"
#include "model/testing/model_world.h"

namespace lumbrine {
namespace {

TEST(Configuration, TakesThePortFromADecimalNumber) {
    EXPECT_EQ(parsePort("5000"), 5000);
    EXPECT_EQ(parsePort("+5000"), 5000);
    EXPECT_EQ(parsePort("0005000"), 5000);
    EXPECT_EQ(parsePort("65535"), 65535);
    EXPECT_EQ(parsePort("0"), 0);
}

TEST(Configuration, AllowsAMinusBeforeZeroOnly) {
    EXPECT_EQ(parsePort("-0"), 0);
    EXPECT_EQ(parsePort("-000"), 0);
    EXPECT_EQ(parsePort("-1"), std::nullopt);
    EXPECT_EQ(parsePort("-65536"), std::nullopt);
}

TEST(Configuration, RefusesWhatIsNoPort) {
    for (const char* text :
         {"", "+", "-", "65536", "70000", "99999999999999999999", "abc", "50a", " 5000", "5000 ", "+-1", "0x10", "5.0"})
        EXPECT_EQ(parsePort(text), std::nullopt) << text;
}

TEST(Configuration, IsTheDefaultWithoutVariables) {
    const Configuration configuration = Configuration::read(FakeComputer{});
    EXPECT_EQ(configuration.port, 52700);
    EXPECT_FALSE(configuration.noBonjour);
    EXPECT_FALSE(configuration.debug);
}

TEST(Configuration, FallsBackToTheDefaultPort) {
    FakeComputer computer;
    for (const char* text : {"", "70000", "abc"}) {
        computer.variables["QV_PORT"] = text;
        EXPECT_EQ(Configuration::read(computer).port, 52700) << text;
    }
    computer.variables["QV_PORT"] = "5000";
    EXPECT_EQ(Configuration::read(computer).port, 5000);
}

TEST(Configuration, LetsOnlyPairedClientsInWhereThatIsAsked) {
    FakeComputer computer;
    EXPECT_FALSE(Configuration::read(computer).clients.onlyPaired);
    computer.variables = {{"LUMBRINE_CLIENTS", "paired"}};
    EXPECT_TRUE(Configuration::read(computer).clients.onlyPaired);
}

TEST(Configuration, TakesASwitchAsSetWhateverItsValue) {
    FakeComputer computer;
    computer.variables = {{"QV_NO_BONJOUR", "0"}, {"QV_DEBUG", ""}};
    EXPECT_TRUE(Configuration::read(computer).noBonjour);
    EXPECT_TRUE(Configuration::read(computer).debug);
}

} // namespace
} // namespace lumbrine
