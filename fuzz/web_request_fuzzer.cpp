// The input is the lines of a browser's request: Host, Origin, target, and the offered protocols. A request that is let
// in names this computer, comes from our page, and for a WebSocket has the key.
#include "fuzz/require.h"
#include "web/gateway/request_rules.h"

#include <algorithm>
#include <set>

namespace {

using namespace lumbrine;
using namespace lumbrine::web;

constexpr std::string_view keyText = "742BCM0SCXPZA154Z02S9P89HC";

std::string lowered(std::string_view text) {
    std::string result(text);
    std::ranges::transform(result, result.begin(),
                           [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return result;
}

// Whether it is one of our names, alone or with a port.
bool isOurs(const std::string& host) {
    static const std::set<std::string> names{"localhost",   "studio.local",   "192.168.1.5",
                                             "[localhost]", "[studio.local]", "[192.168.1.5]"};
    const std::size_t colon = host.rfind(':');
    return names.contains(host) || (colon != std::string::npos && names.contains(host.substr(0, colon)));
}

std::vector<std::string_view> linesOf(std::string_view text) {
    std::vector<std::string_view> lines;
    for (std::size_t end = 0; end != std::string_view::npos; text = text.substr(std::min(end + 1, text.size()))) {
        end = text.find('\n');
        lines.push_back(text.substr(0, end));
    }
    return lines;
}

void requireReasons(const Request& request, Verdict verdict) {
    if (verdict == Verdict::foreignHost) return;
    require(isOurs(lowered(*request.host)));
    if (verdict == Verdict::foreignOrigin) return;
    require(!request.origin || lowered(*request.origin) == "http://" + lowered(*request.host));
    if (verdict != Verdict::socket) return;
    require(request.origin && request.opensSocket && request.target == "/ws");
    const auto offers = [&](const std::string& protocol) {
        return std::ranges::find(request.protocols, protocol) != request.protocols.end();
    };
    require(offers("lumbrine") && offers("key-" + std::string(keyText)));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::vector<std::string_view> lines = linesOf({reinterpret_cast<const char*>(data), size});
    if (lines.size() < 3) return 0;
    const OwnNames names{.scheme = "http", .address = "192.168.1.5", .hostName = "Studio"};
    const auto key = PairingKey::parse(keyText);
    for (const bool opensSocket : {false, true}) {
        const Request request{.reads = true,
                              .opensSocket = opensSocket,
                              .target = lines[2],
                              .host = lines[0],
                              .origin = lines[1].empty() ? std::nullopt : std::optional(lines[1]),
                              .protocols = {lines.begin() + 3, lines.end()}};
        const Verdict verdict = judge(request, names, key);
        requireReasons(request, verdict);
        require(judge(request, names, std::nullopt) != Verdict::socket);
        require(opensSocket || verdict != Verdict::socket);
    }
    return 0;
}
