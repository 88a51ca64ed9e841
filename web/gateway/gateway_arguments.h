// The command line and the environment of lumbrine-web.
#pragma once

#include "seal/pairing_key.h"

#include <cstdint>
#include <expected>
#include <functional>
#include <optional>
#include <span>
#include <string>

namespace lumbrine::web {

struct GatewayArguments {
    std::uint16_t port = 52780; // TCP; 0: any free one
    std::string receiverHost = "127.0.0.1";
    std::uint16_t receiverPort = 52700; // UDP
    std::optional<PairingKey> sealKey;  // the receiver's
    std::string certificateChain;       // both file names, or both empty
    std::string privateKey;
    bool newKey = false;

    bool isReceiverHere() const { return receiverHost == "127.0.0.1" || receiverHost == "localhost"; }
};

// What the program prints instead of starting, and its exit status, if the command line asks for help or the version,
// or is wrong.
struct GatewayArgumentsAnswer {
    std::string output; // to standard output: help or version
    std::string error;  // to standard error
    int status;         // 0, or 2 for a wrong command line
};

// `arguments` are those after the program's name. As in the receiver, an environment variable that is not a port number
// counts as not set.
std::expected<GatewayArguments, GatewayArgumentsAnswer>
readGatewayArguments(std::span<const char* const> arguments,
                     const std::function<std::optional<std::string>(const std::string& name)>& environment);

struct HostAndPort {
    std::string host;
    std::uint16_t port;
};

// "studio.local:52700", "192.168.1.5:52700" or "[fe80::1]:52700". Absent for anything else.
std::optional<HostAndPort> hostAndPort(std::string_view text);

} // namespace lumbrine::web
