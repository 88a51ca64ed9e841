#include "web/gateway/request_rules.h"

#include <gtest/gtest.h>

namespace lumbrine::web {
namespace {

const OwnNames names{.scheme = "http", .address = "192.168.1.5", .hostName = "Studio"};
constexpr std::string_view keyText = "0123456789ABCDEFGHJKMNPQRS";
constexpr std::string_view offeredKey = "key-0123456789ABCDEFGHJKMNPQRS";
const std::optional<PairingKey> key = PairingKey::parse(keyText);

Request fileRequest() {
    return {.reads = true,
            .opensSocket = false,
            .target = "/",
            .host = "192.168.1.5:52780",
            .origin = std::nullopt,
            .protocols = {}};
}

Request socketRequest() {
    return {.reads = true,
            .opensSocket = true,
            .target = "/ws",
            .host = "192.168.1.5:52780",
            .origin = "http://192.168.1.5:52780",
            .protocols = {"lumbrine", offeredKey}};
}

TEST(OwnHost, IsTheAddressThatTheRequestCameTo) {
    EXPECT_TRUE(isOwnHost("192.168.1.5:52780", names));
    EXPECT_TRUE(isOwnHost("192.168.1.5", names));
    EXPECT_FALSE(isOwnHost("192.168.1.6:52780", names));
}

TEST(OwnHost, MayBeAnIPv6AddressHoweverItIsWritten) {
    const OwnNames onIPv6{.scheme = "http", .address = "fd00::5", .hostName = "studio"};
    EXPECT_TRUE(isOwnHost("[fd00::5]:52780", onIPv6));
    EXPECT_TRUE(isOwnHost("[FD00:0:0::5]", onIPv6));
    EXPECT_FALSE(isOwnHost("[fd00::6]:52780", onIPv6));
    EXPECT_FALSE(isOwnHost("fd00::5", onIPv6)) << "without brackets it is no value of a Host header";
}

TEST(OwnHost, MayBeAnAddressOfALinkWhoseZoneBrowsersDoNotSend) {
    const OwnNames onLink{.scheme = "http", .address = "fe80::5%eth0", .hostName = "studio"};
    EXPECT_TRUE(isOwnHost("[fe80::5]:52780", onLink));
    EXPECT_FALSE(isOwnHost("[fe80::6]:52780", onLink));
    EXPECT_FALSE(isOwnHost("[fe80::5%eth0]:52780", onLink));
}

TEST(OwnHost, IsLocalhostOrTheNameOfMulticastDNSInAnyCase) {
    EXPECT_TRUE(isOwnHost("localhost:52780", names));
    EXPECT_TRUE(isOwnHost("LOCALHOST", names));
    EXPECT_TRUE(isOwnHost("studio.local:52780", names));
    EXPECT_TRUE(isOwnHost("Studio.Local", names));
}

TEST(OwnHost, IsNoOtherNameWhateverAddressItsServerGivesIt) {
    for (const char* host : {"example.com", "studio", "studio.local.example.com", "other.local", ".local",
                             "localhost.example.com", "192.168.1.5.example.com", "example.com:52780"})
        EXPECT_FALSE(isOwnHost(host, names)) << host;
}

TEST(OwnHost, IsNothingMalformed) {
    using std::string_view_literals::operator""sv;
    for (const std::string_view host : {""sv, ":"sv, ":52780"sv, "localhost:"sv, "localhost:x"sv, "localhost:123456"sv,
                                        "[::1"sv, "[]"sv, "[localhost"sv, "[::1]x"sv, "localhost:1:2"sv, "localhost "sv,
                                        "user@localhost"sv, "192.168.1.5\0.example.com"sv, "0xC0A80105"sv})
        EXPECT_FALSE(isOwnHost(host, names)) << host;
}

TEST(Judge, GivesFilesToWhoeverAsksUnderAnOwnName) {
    EXPECT_EQ(judge(fileRequest(), names, key), Verdict::page);
    EXPECT_EQ(judge(fileRequest(), names, std::nullopt), Verdict::page) << "files need no key";
}

TEST(Judge, RefusesEverythingUnderAForeignName) {
    for (Request request : {fileRequest(), socketRequest()}) {
        request.host = "example.com:52780";
        request.origin = "http://example.com:52780";
        EXPECT_EQ(judge(request, names, key), Verdict::foreignHost);
        request.host = std::nullopt;
        EXPECT_EQ(judge(request, names, key), Verdict::foreignHost);
    }
}

TEST(Judge, RefusesWhatThePageOfAnotherSiteSends) {
    for (Request request : {fileRequest(), socketRequest()})
        for (const char* origin : {"http://example.com", "null", "", "http://192.168.1.5", "http://192.168.1.5:52781",
                                   "http://localhost:52780", "https://192.168.1.5:52780", "192.168.1.5:52780"}) {
            request.origin = origin;
            EXPECT_EQ(judge(request, names, key), Verdict::foreignOrigin) << origin;
        }
}

TEST(Judge, ExpectsTheSchemeThatTheConnectionHas) {
    OwnNames secured = names;
    secured.scheme = "https";
    Request request = socketRequest();
    EXPECT_EQ(judge(request, secured, key), Verdict::foreignOrigin);
    request.origin = "https://192.168.1.5:52780";
    EXPECT_EQ(judge(request, secured, key), Verdict::socket);
}

TEST(Judge, GivesASocketToOurPageWithTheKey) {
    EXPECT_EQ(judge(socketRequest(), names, key), Verdict::socket);
}

TEST(Judge, GivesNoSocketToWhatIsNoPage) {
    Request request = socketRequest();
    request.origin = std::nullopt;
    EXPECT_EQ(judge(request, names, key), Verdict::foreignOrigin);
}

TEST(Judge, GivesNoSocketWithoutTheKey) {
    using Protocols = std::vector<std::string_view>;
    for (const Protocols& offered :
         {Protocols{}, Protocols{"lumbrine"}, Protocols{offeredKey}, Protocols{"lumbrine", keyText},
          Protocols{"lumbrine", "key-"}, Protocols{"lumbrine", "key-0123456789ABCDEFGHJKMNPQRT"},
          Protocols{"lumbrine", offeredKey.substr(0, offeredKey.size() - 1)}}) {
        Request request = socketRequest();
        request.protocols = offered;
        EXPECT_EQ(judge(request, names, key), Verdict::noKey);
    }
    EXPECT_EQ(judge(socketRequest(), names, std::nullopt), Verdict::noKey);
}

TEST(Judge, KnowsOnePathForSocketsAndNoFileThere) {
    Request request = socketRequest();
    request.target = "/";
    EXPECT_EQ(judge(request, names, key), Verdict::noSuchFile);
    request = fileRequest();
    request.target = "/ws";
    EXPECT_EQ(judge(request, names, key), Verdict::noSuchFile);
}

TEST(Judge, OnlyReads) {
    Request request = fileRequest();
    request.reads = false;
    EXPECT_EQ(judge(request, names, key), Verdict::otherMethod);
}

} // namespace
} // namespace lumbrine::web
