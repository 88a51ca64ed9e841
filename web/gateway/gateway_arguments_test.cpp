#include "web/gateway/gateway_arguments.h"

#include <gtest/gtest.h>

#include <map>
#include <vector>

namespace lumbrine::web {
namespace {

using Words = std::vector<const char*>;
using Variables = std::map<std::string, std::string>;

auto readWith(const Words& words, const Variables& variables = {}) {
    return readGatewayArguments(words, [&](const std::string& name) -> std::optional<std::string> {
        const auto variable = variables.find(name);
        if (variable == variables.end()) return std::nullopt;
        return variable->second;
    });
}

TEST(GatewayArguments, HaveTheProgramsPortsByDefault) {
    const auto read = readWith({});
    ASSERT_TRUE(read);
    EXPECT_EQ(read->port, 52780);
    EXPECT_EQ(read->receiverHost, "127.0.0.1");
    EXPECT_EQ(read->receiverPort, 52700);
    EXPECT_FALSE(read->newKey);
    EXPECT_EQ(read->certificateChain, "");
}

TEST(GatewayArguments, SayWhereTheReceiverIs) {
    const auto read = readWith({"--receiver", "[fe80::1]:5000", "--port", "80"});
    ASSERT_TRUE(read);
    EXPECT_EQ(read->port, 80);
    EXPECT_EQ(read->receiverHost, "fe80::1");
    EXPECT_EQ(read->receiverPort, 5000);
}

TEST(GatewayArguments, MayLeaveTheChoiceOfThePort) {
    const auto read = readWith({"--port", "0"});
    ASSERT_TRUE(read);
    EXPECT_EQ(read->port, 0);
}

TEST(GatewayArguments, ReadPortsInTheEnvironmentToo) {
    const Variables variables{{"QV_WEB_PORT", "5001"}, {"QV_PORT", "5002"}};
    const auto read = readWith({}, variables);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->port, 5001);
    EXPECT_EQ(read->receiverPort, 5002);
    const auto stronger = readWith({"--port", "1", "--receiver", "a:2"}, variables);
    ASSERT_TRUE(stronger);
    EXPECT_EQ(stronger->port, 1);
    EXPECT_EQ(stronger->receiverPort, 2);
}

TEST(GatewayArguments, IgnoreAnEnvironmentThatNamesNoPort) {
    for (const char* text : {"", "0", "65536", "-1", "x", "1 ", " 1"}) {
        const auto read = readWith({}, {{"QV_WEB_PORT", text}, {"QV_PORT", text}});
        ASSERT_TRUE(read);
        EXPECT_EQ(read->port, 52780) << text;
        EXPECT_EQ(read->receiverPort, 52700) << text;
    }
}

TEST(GatewayArguments, TakeACertificateWithItsKeyOnly) {
    const auto read = readWith({"--certificate", "a.pem", "--key", "b.pem"});
    ASSERT_TRUE(read);
    EXPECT_EQ(read->certificateChain, "a.pem");
    EXPECT_EQ(read->privateKey, "b.pem");
    EXPECT_FALSE(readWith({"--certificate", "a.pem"}));
    EXPECT_FALSE(readWith({"--key", "b.pem"}));
}

TEST(GatewayArguments, TakeTheReceiversKeyThatSeals) {
    const auto read = readWith({"--seal-key", "742BCM0SCXPZA154Z02S9P89HC"});
    ASSERT_TRUE(read);
    EXPECT_EQ(read->sealKey, PairingKey::parse("742BCM0SCXPZA154Z02S9P89HC"));
    EXPECT_EQ(readWith({})->sealKey, std::nullopt);
    EXPECT_FALSE(readWith({"--seal-key", "742BCM"}));
    EXPECT_FALSE(readWith({"--seal-key", "@/no/such/file"}));
}

TEST(GatewayArguments, TellAReceiverOnThisComputerFromOthers) {
    EXPECT_TRUE(readWith({})->isReceiverHere());
    EXPECT_TRUE(readWith({"--receiver", "localhost:5000"})->isReceiverHere());
    EXPECT_FALSE(readWith({"--receiver", "studio.local:5000"})->isReceiverHere());
}

TEST(GatewayArguments, RefuseWhatTheyDoNotKnow) {
    for (const Words& words :
         {Words{"--unknown"}, Words{"x"}, Words{"--port"}, Words{"--port", "65536"}, Words{"--receiver", "studio"}}) {
        const auto read = readWith(words);
        ASSERT_FALSE(read);
        EXPECT_EQ(read.error().status, 2);
        EXPECT_NE(read.error().error, "");
    }
}

TEST(GatewayArguments, ExplainThemselves) {
    const auto read = readWith({"--help"});
    ASSERT_FALSE(read);
    EXPECT_EQ(read.error().status, 0);
    EXPECT_NE(read.error().output.find("--new-key"), std::string::npos);
}

TEST(HostAndPort, AreOnBothSidesOfTheLastColon) {
    const auto place = hostAndPort("studio.local:52700");
    ASSERT_TRUE(place);
    EXPECT_EQ(place->host, "studio.local");
    EXPECT_EQ(place->port, 52700);
}

TEST(HostAndPort, AreNoTwoThingsInOtherTexts) {
    for (const char* text :
         {"", ":", "a", "a:", ":1", "a:0", "a:65536", "a:1x", "a: 1", "a:+1", "::1:5", "[]:1", "[::1]"})
        EXPECT_FALSE(hostAndPort(text)) << text;
}

} // namespace
} // namespace lumbrine::web
