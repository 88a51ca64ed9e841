// What becomes of a browser's request. A web site anywhere can have a browser send requests to addresses of the user's
// network, also under a name that its own DNS server maps to such an address; these rules tell our page from others'.
#pragma once

#include "seal/pairing_key.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lumbrine::web {

// The parts of a request that decide. Absent texts are headers that it does not have.
struct Request {
    bool reads = false;       // the method is GET
    bool opensSocket = false; // it asks for a WebSocket
    std::string_view target;  // "/strips/fader.js?x"
    std::optional<std::string_view> host;
    std::optional<std::string_view> origin;
    std::vector<std::string_view> protocols; // that it offers for the WebSocket
};

// How a browser may name us.
struct OwnNames {
    std::string scheme;   // "http" or "https"
    std::string address;  // numeric, the one that the request came to
    std::string hostName; // without ".local"
};

enum class Verdict {
    page,
    socket,
    otherMethod,
    foreignHost,   // Host is not ours
    foreignOrigin, // a page of another site sent it, or for a WebSocket no page at all
    noKey,         // none, or a wrong one
    noSuchFile,    // a WebSocket at another path than socketTarget, or no WebSocket there
};

inline constexpr std::string_view socketTarget = "/ws";
inline constexpr std::string_view socketProtocol = "lumbrine"; // the page offers it beside "key-" and the key

// `key` is absent when there is none at the moment; then nobody gets a socket. Whether the page has a file of the name
// is not looked at.
Verdict judge(const Request& request, const OwnNames& names, const std::optional<PairingKey>& key);

// True when the value of a Host header names this computer: "localhost", the address that the request came to, or the
// name of multicast DNS; with any port.
bool isOwnHost(std::string_view host, const OwnNames& names);

} // namespace lumbrine::web
