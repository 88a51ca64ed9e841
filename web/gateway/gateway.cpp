#include "web/gateway/gateway.h"

#include "platform/linux/openssl_secrets.h"
#include "web/gateway/message_pace.h"
#include "web/gateway/outbox.h"
#include "web/gateway/page_answer.h"
#include "web/gateway/receiver_seal.h"
#include "web/gateway/request_rules.h"

#include <boost/asio.hpp>
#include <boost/asio/ssl.hpp>
#include <boost/beast.hpp>
#include <boost/beast/ssl.hpp>
#include <boost/beast/websocket/ssl.hpp>
#include <netinet/tcp.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <list>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace lumbrine::web {

namespace {

namespace asio = boost::asio;
namespace beast = boost::beast;
namespace http = beast::http;
namespace websocket = beast::websocket;
using asio::ip::tcp;
using asio::ip::udp;
using boost::system::error_code;
using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr auto outcome = asio::as_tuple(asio::use_awaitable); // errors are values

constexpr std::size_t mostSockets = 16;
constexpr std::size_t mostVisitors = 128; // connections that are no WebSocket, or not yet
constexpr std::size_t longestMessage = 4'096;
constexpr std::size_t longestDatagram = 65'536;
constexpr std::uint32_t longestHeader = 8'192;
constexpr int mostUnsentBytes = 16'384; // in the system; what is more waits in the Outbox, where it can become obsolete
constexpr seconds visitTime{10};        // for each request and its answer
constexpr seconds longestSilence{15};
constexpr seconds farewellTime{1};
constexpr milliseconds endingTime{400};

constexpr std::string_view contentPolicy =
    "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self'; connect-src 'self'; manifest-src 'self'; "
    "base-uri 'none'; form-action 'none'; frame-ancestors 'none'";

TimePoint now() {
    return TimePoint(asio::steady_timer::clock_type::now().time_since_epoch());
}

// A TCP connection.
class Connection {
public:
    virtual ~Connection() = default;
    virtual void cut() = 0; // at once, without a farewell
    virtual void end(std::uint16_t closeCode) = 0;
};

using Connections = std::list<Connection*>;

struct House {
    const GatewaySettings& settings;
    udp::endpoint receiver;
    std::string scheme;
    Connections visitors; // those with the newest requests last
    Connections sockets;
    OpenSSLSecrets secrets = {};
    std::array<std::uint8_t, longestDatagram> datagram{}; // for whichever socket reads one
};

// Lists a connection while this lives.
class Listing {
public:
    Listing(Connections& list, Connection* connection) : list(list), place(list.insert(list.end(), connection)) {}
    ~Listing() { list.erase(place); }
    Listing(const Listing&) = delete;
    Listing& operator=(const Listing&) = delete;

private:
    Connections& list;
    const Connections::iterator place;
};

using HTTPRequest = http::request<http::empty_body>;

// A WebSocket and its UDP socket. Lives until its coroutines have ended.
template <typename Stream>
class BrowserSocket final : public Connection, public std::enable_shared_from_this<BrowserSocket<Stream>> {
public:
    BrowserSocket(House& house, Stream stream, PairingKey key)
        : house(house), key(std::move(key)), socket(std::move(stream)), toReceiver(socket.get_executor()),
          filled(socket.get_executor()), watch(socket.get_executor()), farewell(socket.get_executor()),
          seal(house.secrets), listing(house.sockets, this) {}

    // Answers the request that asks for the WebSocket and carries messages until the end of it.
    asio::awaitable<void> run(const HTTPRequest& request) {
        const auto self = this->shared_from_this();
        beast::get_lowest_layer(socket).expires_never();
        setOptions();
        const auto [refused] = co_await socket.async_accept(request, outcome);
        if (refused) co_return;
        if (house.sockets.size() > mostSockets)
            end(close_code::tooManySockets);
        else if (openUDP())
            startCarrying();
        co_await readMessages();
        stop();
    }

    void end(std::uint16_t closeCode) override {
        if (ending) return;
        ending = true;
        asio::co_spawn(socket.get_executor(), sayFarewell(this->shared_from_this(), closeCode), asio::detached);
    }

    void cut() override { beast::get_lowest_layer(socket).close(); }

private:
    using Self = std::shared_ptr<BrowserSocket>;

    void setOptions() {
        const int unsent = mostUnsentBytes;
        ::setsockopt(beast::get_lowest_layer(socket).socket().native_handle(), IPPROTO_TCP, TCP_NOTSENT_LOWAT, &unsent,
                     sizeof unsent);
        socket.set_option(websocket::stream_base::timeout{visitTime, websocket::stream_base::none(), false});
        socket.set_option(websocket::stream_base::decorator([](websocket::response_type& response) {
            response.set(http::field::sec_websocket_protocol, socketProtocol);
            response.set(http::field::server, "lumbrine-web");
        }));
        socket.control_callback([this](websocket::frame_type, beast::string_view) { noteMessage(); });
        socket.read_message_max(longestMessage);
        socket.auto_fragment(false);
        socket.binary(true);
    }

    bool openUDP() {
        error_code failed;
        failed = toReceiver.open(house.receiver.protocol(), failed);
        if (!failed) failed = toReceiver.non_blocking(true, failed);
        if (!failed) failed = toReceiver.connect(house.receiver, failed);
        if (failed) end(close_code::ending);
        return !failed;
    }

    void startCarrying() {
        lastHeard = now();
        seal.use(house.settings.sealKey());
        for (auto carry : {&BrowserSocket::readDatagrams, &BrowserSocket::writeMessages, &BrowserSocket::watchSilence})
            asio::co_spawn(socket.get_executor(), (this->*carry)(this->shared_from_this()), asio::detached);
    }

    asio::awaitable<void> readMessages() {
        beast::flat_buffer message;
        for (;;) {
            const auto [failed, size] = co_await socket.async_read(message, outcome);
            if (failed) co_return;
            noteMessage();
            if (!socket.got_binary()) end(close_code::noText);
            const ByteView bytes(static_cast<const std::uint8_t*>(message.cdata().data()), message.size());
            if (!ending) sendDatagram(seal.outgoing(bytes, lastHeard));
            message.clear();
        }
    }

    void noteMessage() {
        lastHeard = now();
        if (!pace.admits(lastHeard)) end(close_code::tooFast);
    }

    // Datagrams may be lost, so no failure matters. A refusal is of an earlier datagram, and hinders this one once.
    void sendDatagram(ByteView datagram) {
        const asio::const_buffer bytes(datagram.data(), datagram.size());
        error_code failed;
        toReceiver.send(bytes, 0, failed);
        if (failed == asio::error::connection_refused) toReceiver.send(bytes, 0, failed);
    }

    void takeDatagram(ByteView datagram) {
        const auto [message, reply] = seal.incoming(datagram, now());
        if (!reply.empty()) sendDatagram(reply);
        if (message && !outbox.put(*message)) end(close_code::tooSlow);
    }

    asio::awaitable<void> readDatagrams(Self) {
        while (toReceiver.is_open() && !ending) {
            co_await toReceiver.async_wait(udp::socket::wait_read, outcome);
            error_code failed; // when the receiver is not there at the moment, or no more is to be read
            while (!failed && !ending) {
                const std::size_t size = toReceiver.receive(asio::buffer(house.datagram), 0, failed);
                if (!failed) takeDatagram(ByteView(house.datagram).first(size));
            }
            filled.cancel();
        }
    }

    asio::awaitable<void> writeMessages(Self) {
        while (toReceiver.is_open() && !ending) {
            if (outbox.empty()) {
                filled.expires_at(asio::steady_timer::time_point::max());
                co_await filled.async_wait(outcome);
                continue;
            }
            const Bytes message = outbox.take();
            const auto [failed, size] = co_await socket.async_write(asio::buffer(message), outcome);
            if (failed) co_return;
        }
    }

    asio::awaitable<void> watchSilence(Self) {
        while (toReceiver.is_open() && !ending) {
            watch.expires_after(seconds(1));
            co_await watch.async_wait(outcome);
            if (now() - lastHeard >= longestSilence) end(close_code::silent);
            if (house.settings.key() != key) end(close_code::otherKey);
            seal.use(house.settings.sealKey());
        }
    }

    asio::awaitable<void> sayFarewell(Self self, std::uint16_t closeCode) {
        farewell.expires_after(farewellTime);
        farewell.async_wait([self](error_code cancelled) {
            if (!cancelled) self->cut();
        });
        co_await socket.async_close(websocket::close_reason(static_cast<websocket::close_code>(closeCode)), outcome);
        stop();
    }

    // Ends the coroutines.
    void stop() {
        error_code ignored;
        ignored = toReceiver.close(ignored);
        filled.cancel();
        watch.cancel();
        farewell.cancel();
        cut();
    }

    House& house;
    const PairingKey key;
    websocket::stream<Stream> socket;
    udp::socket toReceiver;
    asio::steady_timer filled; // cancelled when the outbox is not empty any more
    asio::steady_timer watch;
    asio::steady_timer farewell;
    ReceiverSeal seal;
    Outbox outbox;
    MessagePace pace;
    TimePoint lastHeard;
    bool ending = false;
    const Listing listing;
};

http::status statusOf(Verdict verdict) {
    switch (verdict) {
    case Verdict::otherMethod:
        return http::status::method_not_allowed;
    case Verdict::foreignHost:
    case Verdict::foreignOrigin:
    case Verdict::noKey:
        return http::status::forbidden;
    default:
        return http::status::not_found;
    }
}

using HTTPResponse = http::response<http::span_body<const char>>;

void setHeaders(HTTPResponse& response) {
    response.set("Content-Security-Policy", contentPolicy);
    response.set("X-Frame-Options", "DENY");
    response.set("X-Content-Type-Options", "nosniff");
    response.set("Referrer-Policy", "no-referrer");
    response.set("Cross-Origin-Resource-Policy", "same-origin");
    response.set("Permissions-Policy", "camera=(), geolocation=(), microphone=()");
    response.set(http::field::cache_control, "no-cache");
}

bool takesGzip(const HTTPRequest& request) {
    // With a weight it may mean "never"; no browser has one.
    for (const auto& [coding, weight] : http::ext_list(request[http::field::accept_encoding]))
        if (beast::iequals(coding, "gzip")) return weight.begin() == weight.end();
    return false;
}

HTTPResponse answerTo(const HTTPRequest& request, Verdict verdict) {
    HTTPResponse response(http::status::ok, request.version());
    setHeaders(response);
    const auto page = verdict == Verdict::page
                          ? pageAnswer(request.target(), request[http::field::if_none_match], takesGzip(request))
                          : PageAnswer();
    if (page.status == 404) {
        response.result(statusOf(verdict));
        response.set(http::field::content_type, "text/plain; charset=utf-8");
        if (verdict == Verdict::otherMethod) response.set(http::field::allow, "GET");
        const beast::string_view reason = http::obsolete_reason(response.result());
        response.body() = {reason.data(), reason.size()};
    } else {
        response.result(static_cast<unsigned>(page.status));
        response.set(http::field::etag, page.tag);
        response.set(http::field::vary, "Accept-Encoding");
        response.set(http::field::content_type, page.contentType);
        if (page.isCompressed) response.set(http::field::content_encoding, "gzip");
        response.body() = {page.content.data(), page.content.size()};
    }
    response.keep_alive(request.keep_alive() && verdict == Verdict::page);
    response.prepare_payload();
    return response;
}

// A header that must not be there twice. Then it is empty, as no valid one is.
std::optional<std::string_view> onlyOne(const HTTPRequest& request, http::field name) {
    const auto times = request.count(name);
    if (times == 0) return std::nullopt;
    return times == 1 ? std::string_view(request[name]) : std::string_view();
}

Request partsOf(const HTTPRequest& request) {
    Request parts{.reads = request.method() == http::verb::get,
                  .opensSocket = websocket::is_upgrade(request),
                  .target = request.target(),
                  .host = onlyOne(request, http::field::host),
                  .origin = onlyOne(request, http::field::origin),
                  .protocols = {}};
    for (const auto protocol : http::token_list(request[http::field::sec_websocket_protocol]))
        parts.protocols.emplace_back(protocol);
    return parts;
}

// A connection that asks for files, until it asks for a WebSocket.
template <typename Stream>
class Visitor final : public Connection, public std::enable_shared_from_this<Visitor<Stream>> {
public:
    template <typename... StreamArguments>
    explicit Visitor(House& house, StreamArguments&&... arguments)
        : house(house), stream(std::forward<StreamArguments>(arguments)...) {
        if (house.visitors.size() >= mostVisitors) house.visitors.front()->cut();
        listing.emplace(house.visitors, this);
    }

    asio::awaitable<void> run() {
        const auto self = this->shared_from_this();
        error_code failed;
        const auto local = beast::get_lowest_layer(stream).socket().local_endpoint(failed);
        if (!failed) failed = beast::get_lowest_layer(stream).socket().set_option(tcp::no_delay(true), failed);
        if (failed || !co_await secured()) co_return;
        const OwnNames names{house.scheme, local.address().to_string(), house.settings.hostName};
        while (co_await answerNext(names)) {
        }
    }

    void cut() override { beast::get_lowest_layer(stream).close(); }
    void end(std::uint16_t) override { cut(); }

private:
    asio::awaitable<bool> secured() {
        if constexpr (!std::is_same_v<Stream, beast::tcp_stream>) {
            beast::get_lowest_layer(stream).expires_after(visitTime);
            const auto [failed] = co_await stream.async_handshake(asio::ssl::stream_base::server, outcome);
            co_return !failed;
        }
        co_return true;
    }

    // False when nothing more is to come.
    asio::awaitable<bool> answerNext(const OwnNames& names) {
        beast::get_lowest_layer(stream).expires_after(visitTime);
        http::request_parser<http::empty_body> parser;
        parser.header_limit(longestHeader);
        const auto [unreadable, size] = co_await http::async_read(stream, buffer, parser, outcome);
        if (unreadable) co_return false;
        listing.emplace(house.visitors, this); // as the newest
        const HTTPRequest request = parser.release();
        const auto key = house.settings.key();
        const Verdict verdict = judge(partsOf(request), names, key);
        if (verdict == Verdict::socket) {
            listing.reset();
            const auto socket = std::make_shared<BrowserSocket<Stream>>(house, std::move(stream), *key);
            co_await socket->run(request);
            co_return false;
        }
        HTTPResponse response = answerTo(request, verdict);
        const auto [unwritten, written] = co_await http::async_write(stream, response, outcome);
        co_return !unwritten && response.keep_alive();
    }

    House& house;
    Stream stream;
    beast::flat_buffer buffer{longestHeader};
    std::optional<Listing> listing;
};

asio::awaitable<void> welcome(House& house, tcp::acceptor& door, asio::ssl::context* security) {
    while (door.is_open()) {
        auto [failed, connection] = co_await door.async_accept(outcome);
        if (failed) {
            // Out of descriptors, most likely: trying again at once would not help.
            asio::steady_timer pause(door.get_executor(), milliseconds(100));
            if (door.is_open()) co_await pause.async_wait(outcome);
            continue;
        }
        const auto greet = [&](const auto& visitor) {
            asio::co_spawn(door.get_executor(), [visitor] { return visitor->run(); }, asio::detached);
        };
        if (security == nullptr)
            greet(std::make_shared<Visitor<beast::tcp_stream>>(house, std::move(connection)));
        else
            greet(std::make_shared<Visitor<beast::ssl_stream<beast::tcp_stream>>>(house, std::move(connection),
                                                                                  *security));
    }
}

// Opens the port for one of the two protocols. Both have the same port number.
error_code open(tcp::acceptor& door, const tcp::endpoint& endpoint) {
    error_code failed;
    failed = door.open(endpoint.protocol(), failed);
    if (!failed) failed = door.set_option(tcp::acceptor::reuse_address(true), failed);
    if (!failed && endpoint.protocol() == tcp::v6()) failed = door.set_option(asio::ip::v6_only(true), failed);
    if (!failed) failed = door.bind(endpoint, failed);
    if (!failed) failed = door.listen(tcp::acceptor::max_listen_connections, failed);
    return failed;
}

error_code read(asio::ssl::context& security, const GatewaySettings& settings) {
    error_code failed;
    security.set_options(asio::ssl::context::default_workarounds | asio::ssl::context::no_tlsv1 |
                         asio::ssl::context::no_tlsv1_1);
    failed =
        security.set_password_callback([](std::size_t, asio::ssl::context::password_purpose) { return ""; }, failed);
    if (!failed) failed = security.use_certificate_chain_file(settings.certificateChain, failed);
    if (!failed) failed = security.use_private_key_file(settings.privateKey, asio::ssl::context::pem, failed);
    return failed;
}

// Asks everybody to leave and forgets those that have not after a while.
void closeHouse(House& house, asio::io_context& loop, asio::steady_timer& lastMoment) {
    for (Connection* const visitor : house.visitors)
        visitor->cut();
    for (Connection* const socket : house.sockets)
        socket->end(close_code::ending);
    lastMoment.expires_after(house.sockets.empty() ? milliseconds(0) : endingTime);
    lastMoment.async_wait([&loop](error_code) { loop.stop(); });
}

} // namespace

std::expected<void, StartProblem> serve(const GatewaySettings& settings,
                                        const std::function<void(std::uint16_t port)>& started) {
    error_code failed;
    House house{.settings = settings, .receiver = {}, .scheme = "http", .visitors = {}, .sockets = {}, .datagram = {}};
    asio::io_context loop(1);

    udp::resolver resolver(loop);
    const auto found = resolver.resolve(settings.receiverHost, std::to_string(settings.receiverPort), failed);
    if (failed) return std::unexpected(StartProblem{StartProblem::Of::receiver, failed.message()});
    house.receiver = *found.begin();

    std::optional<asio::ssl::context> security;
    if (!settings.certificateChain.empty()) {
        house.scheme = "https";
        security.emplace(asio::ssl::context::tls_server);
        failed = read(*security, settings);
        if (failed) return std::unexpected(StartProblem{StartProblem::Of::certificate, failed.message()});
    }

    tcp::acceptor doorV4(loop), doorV6(loop);
    failed = open(doorV4, {tcp::v4(), settings.port});
    if (failed) return std::unexpected(StartProblem{StartProblem::Of::port, failed.message()});
    const std::uint16_t port = doorV4.local_endpoint().port();
    failed = open(doorV6, {tcp::v6(), port});
    if (failed == asio::error::address_in_use)
        return std::unexpected(StartProblem{StartProblem::Of::port, failed.message()});

    asio::signal_set signals(loop, SIGINT, SIGTERM);
    asio::steady_timer lastMoment(loop);
    signals.async_wait([&](error_code, int) {
        doorV4.close();
        doorV6.close();
        closeHouse(house, loop, lastMoment);
    });
    for (tcp::acceptor* const door : {&doorV4, &doorV6})
        if (door->is_open())
            asio::co_spawn(loop, welcome(house, *door, security ? &*security : nullptr), asio::detached);
    started(port);
    loop.run();
    return {};
}

} // namespace lumbrine::web
