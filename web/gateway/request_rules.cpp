#include "web/gateway/request_rules.h"

#include <arpa/inet.h>

#include <algorithm>
#include <array>

namespace lumbrine::web {

namespace {

constexpr std::string_view keyPrefix = "key-";

char lowered(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool sameText(std::string_view one, std::string_view other) {
    return std::ranges::equal(one, other, {}, lowered, lowered);
}

bool isPort(std::string_view text) {
    return !text.empty() && text.size() <= 5 && std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
}

// "studio.local:52780" -> "studio.local", "[::1]:80" -> "::1"
std::optional<std::string_view> hostWithoutPort(std::string_view host) {
    const bool bracketed = host.starts_with('[');
    const std::size_t end = bracketed ? host.find(']') : std::min(host.find(':'), host.size());
    if (end == std::string_view::npos) return std::nullopt;
    const std::string_view name = bracketed ? host.substr(1, end - 1) : host.substr(0, end);
    const std::string_view rest = host.substr(bracketed ? end + 1 : end);
    const bool wellFormed = rest.empty() || (rest.starts_with(':') && isPort(rest.substr(1)));
    if (name.empty() || !wellFormed) return std::nullopt;
    return name;
}

// The bytes of a numeric address; zeros for anything else.
using AddressBytes = std::array<unsigned char, 17>;

AddressBytes addressBytes(std::string_view text) {
    AddressBytes bytes{};
    if (text.find('\0') != std::string_view::npos) return bytes;
    const std::string terminated(text);
    if (::inet_pton(AF_INET, terminated.c_str(), bytes.data()) == 1)
        bytes[16] = 4;
    else if (::inet_pton(AF_INET6, terminated.c_str(), bytes.data()) == 1)
        bytes[16] = 6;
    return bytes;
}

// Our own may have a zone, as in "fe80::1%eth0", which browsers do not send.
bool isAddress(std::string_view host, std::string_view own) {
    const AddressBytes bytes = addressBytes(host);
    return bytes[16] != 0 && bytes == addressBytes(own.substr(0, own.find('%')));
}

bool hasKey(const std::vector<std::string_view>& protocols, const PairingKey& key) {
    return std::ranges::any_of(protocols, [&](std::string_view protocol) {
        return protocol.starts_with(keyPrefix) && key.is(protocol.substr(keyPrefix.size()));
    });
}

} // namespace

bool isOwnHost(std::string_view host, const OwnNames& names) {
    const auto name = hostWithoutPort(host);
    if (!name) return false;
    return sameText(*name, "localhost") || sameText(*name, names.hostName + ".local") ||
           isAddress(*name, names.address);
}

Verdict judge(const Request& request, const OwnNames& names, const std::optional<PairingKey>& key) {
    if (!request.host || !isOwnHost(*request.host, names)) return Verdict::foreignHost;
    const std::string ownOrigin = names.scheme + "://" + std::string(*request.host);
    const bool fromElsewhere = request.origin && !sameText(*request.origin, ownOrigin);
    if (fromElsewhere || (request.opensSocket && !request.origin)) return Verdict::foreignOrigin;
    if (!request.reads) return Verdict::otherMethod;
    if (request.opensSocket != (request.target == socketTarget)) return Verdict::noSuchFile;
    if (!request.opensSocket) return Verdict::page;
    const bool offersOurs = std::ranges::find(request.protocols, socketProtocol) != request.protocols.end();
    return offersOurs && key && hasKey(request.protocols, *key) ? Verdict::socket : Verdict::noKey;
}

} // namespace lumbrine::web
