// lumbrine-web between browsers and a receiver that the test plays.
#include "tests/end_to_end/client_socket.h"
#include "tests/end_to_end/deadlines.h"
#include "tests/end_to_end/gateway_process.h"
#include "tests/end_to_end/played_receiver.h"
#include "tests/end_to_end/resident_memory.h"
#include "tests/end_to_end/web_client.h"

#include <csignal>
#include <cstdio>
#include <list>

namespace lumbrine::end_to_end {
namespace {

using interop::waitUntil;
using std::chrono::milliseconds;
using std::chrono::seconds;

const Bytes hello{0x01, 0x00};
const Bytes pong{0x01, 0x7F};
constexpr int browsers = 16;

class WebGateway : public testing::Test {
protected:
    SocketRequest asked() const { return {.key = gateway.key()}; }

    WebClient connected() { return WebClient(gateway.port, asked()); }

    std::string get(const std::string& target, const std::string& moreLines = "") {
        TCPConnection connection(gateway.port);
        return connection.exchange("GET " + target + " HTTP/1.1\r\nHost: " + host + "\r\n" + moreLines + "\r\n");
    }

    PlayedReceiver receiver;
    GatewayProcess gateway{receiver.port()};
    const std::string host = "127.0.0.1:" + std::to_string(gateway.port);
};

bool has(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

TEST_F(WebGateway, CarriesMessagesUnchangedBothWays) {
    WebClient browser = connected();
    ASSERT_EQ(browser.status(), 101);
    Bytes longest(4096);
    for (std::size_t i = 0; i < longest.size(); ++i)
        longest[i] = static_cast<std::uint8_t>(i * 7);
    for (const Bytes& message : {hello, Bytes{}, Bytes{0xFF}, longest}) {
        browser.send(message);
        EXPECT_EQ(receiver.receive(), message);
        receiver.answer(message);
        const auto frame = browser.receive();
        ASSERT_TRUE(frame);
        EXPECT_EQ(frame->opcode, WebClient::binary);
        EXPECT_EQ(frame->payload, message);
    }
}

TEST_F(WebGateway, GivesEachBrowserASocketOfItsOwn) {
    WebClient first = connected(), second = connected();
    first.send(hello);
    ASSERT_EQ(receiver.receive(), hello);
    const std::uint16_t firstPort = receiver.peerPort();
    second.send(hello);
    ASSERT_EQ(receiver.receive(), hello);
    EXPECT_NE(receiver.peerPort(), firstPort);
    receiver.answer(pong);
    EXPECT_TRUE(second.hears(pong));
    EXPECT_FALSE(first.receive(milliseconds(50)));
}

TEST_F(WebGateway, LetsNobodyInWithoutKeyOrFromAnotherSite) {
    EXPECT_EQ(connected().status(), 101);
    EXPECT_EQ(WebClient(gateway.port, {.key = ""}).status(), 403);
    EXPECT_EQ(WebClient(gateway.port, {.key = "00000000000000000000000000"}).status(), 403);
    EXPECT_EQ(WebClient(gateway.port, {.key = gateway.key(), .origin = "http://example.com"}).status(), 403);
    EXPECT_EQ(WebClient(gateway.port, {.key = gateway.key(), .origin = "null"}).status(), 403);
    EXPECT_EQ(WebClient(gateway.port, {.key = gateway.key(), .host = "example.com"}).status(), 403);
    EXPECT_EQ(WebClient(gateway.port, {.key = gateway.key(), .target = "/other"}).status(), 404);
}

TEST_F(WebGateway, IsReachedByOtherNamesAndIPv6) {
    const std::string port = std::to_string(gateway.port);
    EXPECT_EQ(WebClient(gateway.port, {.key = gateway.key(), .host = "localhost:" + port}).status(), 101);
    TCPConnection connection(gateway.port, "::1");
    const std::string page = connection.exchange("GET / HTTP/1.1\r\nHost: [::1]:" + port + "\r\n\r\n");
    EXPECT_TRUE(page.starts_with("HTTP/1.1 200 ")) << page;
}

TEST_F(WebGateway, ServesThePageForItselfAlone) {
    const std::string page = get("/");
    EXPECT_TRUE(page.starts_with("HTTP/1.1 200 ")) << page;
    EXPECT_TRUE(has(page, "Content-Type: text/html; charset=utf-8\r\n"));
    EXPECT_TRUE(has(page, "Content-Security-Policy: default-src 'none'; script-src 'self';"));
    EXPECT_TRUE(has(page, "X-Content-Type-Options: nosniff\r\n"));
    EXPECT_TRUE(has(page, "Referrer-Policy: no-referrer\r\n"));
    EXPECT_TRUE(has(page, "<!doctype html>"));
    EXPECT_EQ(get("/index.html?1"), page);
    EXPECT_TRUE(get("/", "Origin: http://example.com\r\n").starts_with("HTTP/1.1 403 "));
    EXPECT_TRUE(get("/no_such_file").starts_with("HTTP/1.1 404 "));
    EXPECT_TRUE(get("/../gateway/gateway.cpp").starts_with("HTTP/1.1 404 "));
}

TEST_F(WebGateway, GivesNothingAwayToOddRequests) {
    for (const std::string target :
         {"/%2e%2e/%2e%2e/etc/passwd", "//etc/passwd", "http://example.com/", "/page.js/", "*"})
        EXPECT_TRUE(get(target).starts_with("HTTP/1.1 404 ")) << target;
    for (const std::string& line : {std::string("Host: example.com\r\n"), "Host: " + host + "\r\n"})
        EXPECT_TRUE(get("/", line).starts_with("HTTP/1.1 403 ")) << "a second " << line;
    for (const std::string body :
         {"Content-Length: 5\r\n\r\nhello", "Transfer-Encoding: chunked\r\n\r\n5\r\nhello\r\n0\r\n\r\n"})
        EXPECT_FALSE(has(get("/", body), "200 OK")) << body;
    EXPECT_FALSE(has(get("/a\rSet-Cookie: b"), "Set-Cookie"));
    EXPECT_TRUE(get("/").starts_with("HTTP/1.1 200 "));
}

TEST_F(WebGateway, SendsAFileThatTheBrowserHasOnlyOnce) {
    const std::string page = get("/");
    const std::size_t tag = page.find("ETag: ") + 6;
    const std::string again = get("/", "If-None-Match: " + page.substr(tag, page.find('\r', tag) - tag) + "\r\n");
    EXPECT_TRUE(again.starts_with("HTTP/1.1 304 ")) << again;
}

TEST_F(WebGateway, CompressesWhatABrowserTakesCompressed) {
    const std::string zipped = get("/page.js", "Accept-Encoding: deflate, gzip\r\n");
    EXPECT_TRUE(has(zipped, "Content-Encoding: gzip\r\n"));
    EXPECT_TRUE(has(zipped, "Vary: Accept-Encoding\r\n"));
    EXPECT_TRUE(has(zipped, "\r\n\r\n\x1F\x8B"));
    for (const std::string line : {"", "Accept-Encoding: deflate\r\n", "Accept-Encoding: gzip;q=0\r\n"}) {
        const std::string plain = get("/page.js", line);
        EXPECT_FALSE(has(plain, "Content-Encoding")) << line;
        EXPECT_TRUE(has(plain, "const modules")) << line;
        EXPECT_LT(zipped.size() * 3, plain.size());
    }
}

TEST_F(WebGateway, AnswersManyRequestsOnOneConnectionAndNoOtherMethods) {
    TCPConnection connection(gateway.port);
    const std::string lines = " / HTTP/1.1\r\nHost: " + host + "\r\n\r\n";
    EXPECT_TRUE(connection.exchange("GET" + lines).starts_with("HTTP/1.1 200 "));
    EXPECT_TRUE(connection.exchange("GET" + lines).starts_with("HTTP/1.1 200 "));
    EXPECT_TRUE(connection.exchange("DELETE" + lines).starts_with("HTTP/1.1 405 "));
    EXPECT_TRUE(connection.closes());
}

TEST_F(WebGateway, ClosesRequestsThatAreTooLong) {
    TCPConnection connection(gateway.port);
    connection.write("GET / HTTP/1.1\r\nHost: " + host + "\r\nX: " + std::string(9'000, 'x'));
    EXPECT_TRUE(connection.closes(seconds(5)));
}

TEST_F(WebGateway, HasRoomForOneMoreWhenManyConnectionsSayNothing) {
    std::list<TCPConnection> idle;
    for (int i = 0; i < 200; ++i)
        idle.emplace_back(gateway.port);
    EXPECT_EQ(connected().status(), 101);
}

TEST_F(WebGateway, KeepsAConnectionThatAsksBesideManyThatDoNot) {
    TCPConnection asking(gateway.port);
    const std::string request = "GET / HTTP/1.1\r\nHost: " + host + "\r\n\r\n";
    std::list<TCPConnection> idle;
    for (int i = 0; i < 200; ++i) {
        idle.emplace_back(gateway.port);
        if (i % 50 != 0) continue;
        EXPECT_TRUE(asking.exchange(request).starts_with("HTTP/1.1 200 ")) << i;
    }
    EXPECT_TRUE(idle.front().closes());
}

TEST_F(WebGateway, HoldsSixteenBrowsers) {
    std::list<WebClient> open;
    for (int i = 0; i < browsers; ++i)
        ASSERT_EQ(open.emplace_back(gateway.port, asked()).status(), 101);
    EXPECT_EQ(connected().closeCode(), 4001);

    open.pop_front();
    EXPECT_TRUE(waitUntil([&] { // until its end has been noticed
        WebClient another = connected();
        another.send(hello);
        return receiver.receive(milliseconds(100)) == hello;
    }));
    open.back().send(pong);
    EXPECT_EQ(receiver.receive(), pong);
}

TEST_F(WebGateway, EndsABrowserThatSendsTooMuch) {
    WebClient browser = connected();
    for (int i = 0; i <= 2'000; ++i)
        browser.send(Bytes{0x01, 0x07, 0x00, 0x00});
    EXPECT_EQ(browser.closeCode(), 4002);
    WebClient pinging = connected();
    for (int i = 0; i <= 2'000; ++i)
        pinging.send({}, WebClient::ping);
    EXPECT_EQ(pinging.closeCode(), 4002);
}

TEST_F(WebGateway, EndsABrowserThatSendsWhatIsNoMessage) {
    WebClient longOne = connected();
    longOne.send(Bytes(4097));
    EXPECT_EQ(longOne.closeCode(), 1009);
    WebClient text = connected();
    text.send(Bytes{'a'}, WebClient::text);
    EXPECT_EQ(text.closeCode(), 1003);
    EXPECT_FALSE(receiver.receive(milliseconds(50))) << "neither reaches the receiver";
}

TEST_F(WebGateway, EndsABrowserThatIsSilentForFifteenSeconds) {
    const auto begin = std::chrono::steady_clock::now(); // before the gateway hears of the browsers
    WebClient silent = connected(), pinging = connected();
    std::optional<int> code;
    while (!code && std::chrono::steady_clock::now() - begin < interop::patience) {
        pinging.send({}, WebClient::ping);
        code = silent.closeCode(seconds(1));
    }
    EXPECT_EQ(code, 4003);
    EXPECT_GE(std::chrono::steady_clock::now() - begin, seconds(15));
    pinging.send(hello);
    EXPECT_EQ(receiver.receive(), hello) << "what pings is not silent";
}

TEST_F(WebGateway, ClosesAllBrowsersWhenTheKeyIsChanged) {
    const SocketRequest before = asked();
    WebClient browser(gateway.port, before);
    gateway.makeNewKey();
    EXPECT_EQ(WebClient(gateway.port, before).status(), 403);
    EXPECT_EQ(browser.closeCode(), 1008);
    EXPECT_EQ(connected().status(), 101);
}

// While the browser takes nothing, the newest meters and fader replace the older ones, and names are kept.
TEST_F(WebGateway, SparesASlowBrowserWhatIsObsolete) {
    WebClient browser = connected();
    browser.send(hello);
    ASSERT_EQ(receiver.receive(), hello);
    const auto sendState = [&](std::uint8_t high, std::uint8_t low) {
        Bytes meters(1400, 0x00); // fills the buffers of the system with few messages
        std::copy_n(Bytes{0x01, 0x11, high, low}.begin(), 4, meters.begin());
        receiver.answer(meters);
        receiver.answer(Bytes{0x01, 0x12, 0x05, high, low});
        if (low == 0) receiver.answer(Bytes{0x01, 0x10, 0x00, high, ' ', ' ', ' '});
    };
    for (int i = 0; i < 20'000; ++i) {
        sendState(static_cast<std::uint8_t>(i / 256), static_cast<std::uint8_t>(i % 256));
        if (i % 40 == 0) receiver.waitUntilTaken(); // the gateway's socket does not hold many more
    }
    int faders = 0, names = 0;
    const Bytes last{0x01, 0x12, 0x05, 78, 31}; // 19,999
    EXPECT_TRUE(browser.receive([&](const Bytes& message) {
        faders += message[1] == 0x12;
        names += message[1] == 0x10;
        return message == last;
    }));
    std::printf("%d faders and %d names of 20000 and 79\n", faders, names);
    EXPECT_LT(faders, 10'000);
    EXPECT_EQ(names, 79);
}

TEST_F(WebGateway, EndsABrowserThatTakesNothing) {
    WebClient browser = connected();
    browser.send(hello);
    ASSERT_EQ(receiver.receive(), hello);
    const long before = residentKiB(gateway.process.id());
    const Bytes row(1400, 0x1B);
    const auto isGone = [&] { return receiver.wasRefused(); };
    for (int i = 0; i < 30'000 && !isGone(); ++i) {
        receiver.answer(row);
        if (i % 40 == 0) receiver.waitUntilTaken();
    }
    EXPECT_TRUE(waitUntil([&] {
        receiver.answer(row);
        return isGone();
    })) << "its UDP socket is closed";
    EXPECT_LE(residentKiB(gateway.process.id()) - before, memoryGrowth);
    EXPECT_EQ(connected().status(), 101);
}

TEST_F(WebGateway, KeepsTheSocketWhileThereIsNoReceiver) {
    WebClient browser = connected();
    receiver.close();
    for (int i = 0; i < 10; ++i)
        browser.send(hello);
    receiver.open();
    EXPECT_TRUE(waitUntil([&] {
        browser.send(hello);
        return receiver.receive(milliseconds(100)) == hello;
    }));
    receiver.answer(pong);
    EXPECT_TRUE(browser.hears(pong));
}

TEST_F(WebGateway, EndsAtOnceWithAWordToEachBrowser) {
    TCPConnection idle(gateway.port);
    WebClient browser = connected(), deaf = connected();
    gateway.process.signal(SIGTERM);
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(browser.closeCode(), 1001);
    EXPECT_EQ(gateway.process.wait(interop::patience), 0) << gateway.process.output();
    EXPECT_LE(std::chrono::steady_clock::now() - begin, ending);
    EXPECT_TRUE(idle.closes());
}

TEST(WebGatewayAlone, NeedsNobodyWhoReadsItsOutput) {
    const interop::TemporaryFolder state;
    const std::uint16_t port = freeTCPPort();
    interop::ChildProcess gateway(
        {webProgram}, {.environment = {{"QV_WEB_PORT", std::to_string(port)}, {"XDG_STATE_HOME", state.path.string()}},
                       .outputIsRead = false});
    EXPECT_TRUE(waitUntil([&] {
        try {
            TCPConnection connection(port);
            return connection.exchange("GET / HTTP/1.1\r\nHost: localhost\r\n\r\n").starts_with("HTTP/1.1 200 ");
        } catch (const std::runtime_error&) { // it does not listen yet
            return false;
        }
    }));
    gateway.signal(SIGTERM);
    EXPECT_EQ(gateway.wait(ending), 0);
}

TEST(WebGatewayAlone, SaysWhyItDoesNotStart) {
    const interop::TemporaryFolder state;
    const auto run = [&](const std::vector<std::string>& options, const std::string& language) {
        std::vector<std::string> command{"env", "LANGUAGE=" + language, "XDG_STATE_HOME=" + state.path.string(),
                                         webProgram};
        command.insert(command.end(), options.begin(), options.end());
        return interop::runCommand(command);
    };
    const auto taken = [&] {
        const GatewayProcess other(freePort());
        return run({"--port", std::to_string(other.port)}, "en");
    }();
    EXPECT_EQ(taken.status, 1);
    EXPECT_TRUE(has(taken.output, "✗ Browsers: TCP ")) << taken.output;
    const auto noCertificate = run({"--certificate", "/no/file", "--key", "/no/file"}, "ja");
    EXPECT_EQ(noCertificate.status, 1);
    EXPECT_TRUE(has(noCertificate.output, "✗ ブラウザ: 証明書: ")) << noCertificate.output;
}

TEST(WebGatewayAlone, ServesHTTPSWithTheUsersCertificate) {
    const interop::TemporaryFolder folder;
    const std::string certificate = folder.path / "certificate.pem", key = folder.path / "key.pem";
    ASSERT_EQ(interop::runCommand({"openssl", "req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:P-256",
                                   "-nodes", "-days", "2", "-subj", "/CN=localhost", "-addext",
                                   "subjectAltName=DNS:localhost", "-keyout", key, "-out", certificate})
                  .status,
              0);
    PlayedReceiver receiver;
    const GatewayProcess gateway(receiver.port(), {"--certificate", certificate, "--key", key});
    EXPECT_TRUE(waitUntil([&] { return has(gateway.process.output(), "https://"); }));
    const auto result =
        interop::runCommand({"/usr/bin/python3", LUMBRINE_SOURCE_DIR "/tests/end_to_end/https_client.py",
                             std::to_string(gateway.port), certificate, gateway.key()});
    EXPECT_EQ(result.status, 0) << result.output;
    EXPECT_EQ(receiver.receive(), hello);
}

} // namespace
} // namespace lumbrine::end_to_end
