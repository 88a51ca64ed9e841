// The command line of lumbrine-remote.
#pragma once

#include "remote/remote_client.h"
#include "remote/script_runner.h"

#include <cstdint>
#include <expected>
#include <optional>
#include <string>
#include <vector>

namespace lumbrine::remote {

struct HostAndPort {
    std::string host;
    std::uint16_t port = 0;

    bool operator==(const HostAndPort&) const = default;
};

// "10.0.0.2:52700", "[::1]:52700", "studio.local:52700".
std::optional<HostAndPort> hostAndPortOf(const std::string& text);

struct RemoteArguments {
    std::optional<HostAndPort> receiver; // absent when the program must find one by mDNS
    std::optional<std::uint64_t> token;
    std::optional<PairingKey> key;
    bool takeOver = false;
    bool watch = false;
    Script script;

    // True for output as lines instead of the full-screen view.
    bool plain() const { return watch || !script.steps.empty(); }
};

// The output and exit status of a program that does not run because of its command line.
struct EarlyEnd {
    int status;       // 0 for help and version, 2 for wrong usage
    std::string text; // for standard output, or standard error when the status is not 0
};

// `arguments` does not include the program's name.
std::expected<RemoteArguments, EarlyEnd> parseArguments(const std::vector<std::string>& arguments,
                                                        const std::string& version);

} // namespace lumbrine::remote
