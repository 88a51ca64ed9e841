#include "web/gateway/gateway_arguments.h"

#include "web/gateway/key_file.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <charconv>
#include <sstream>
#include <vector>

namespace lumbrine::web {

namespace {

// 1 to 65535 in digits.
std::optional<std::uint16_t> portNumber(std::string_view text) {
    std::uint16_t port = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), port);
    if (error != std::errc() || end != text.data() + text.size() || port == 0) return std::nullopt;
    return port;
}

// In a file, the key is not in the list of processes.
std::optional<PairingKey> sealKeyOf(const std::string& text) {
    return text.starts_with('@') ? readSealKey(text.substr(1)) : PairingKey::parse(text);
}

} // namespace

std::optional<HostAndPort> hostAndPort(std::string_view text) {
    const std::size_t colon = text.rfind(':');
    if (colon == std::string_view::npos) return std::nullopt;
    const auto port = portNumber(text.substr(colon + 1));
    std::string_view host = text.substr(0, colon);
    const bool bracketed = host.starts_with('[') && host.ends_with(']');
    if (bracketed) host = host.substr(1, host.size() - 2);
    const bool ambiguous = !bracketed && host.find(':') != std::string_view::npos;
    if (!port || host.empty() || ambiguous) return std::nullopt;
    return HostAndPort{std::string(host), *port};
}

std::expected<GatewayArguments, GatewayArgumentsAnswer>
readGatewayArguments(std::span<const char* const> arguments,
                     const std::function<std::optional<std::string>(const std::string& name)>& environment) {
    GatewayArguments read;
    read.port = portNumber(environment("QV_WEB_PORT").value_or("")).value_or(read.port);
    read.receiverPort = portNumber(environment("QV_PORT").value_or("")).value_or(read.receiverPort);

    CLI::App app("Makes every browser a client of the Lumbrine receiver: serves the page and carries its messages to "
                 "the\nreceiver and back. Prints the address to open on a phone, also as a QR code. SIGINT (Ctrl-C) "
                 "and\nSIGTERM end it.",
                 "lumbrine-web");
    app.set_version_flag("--version", "lumbrine-web " LUMBRINE_VERSION, "print the version and end");
    app.set_help_flag("-h,--help", "print this and end");
    app.footer(
        "Environment variables:\n"
        "  QV_WEB_PORT     the same as --port\n"
        "  QV_PORT         port of a receiver on this computer (default 52700)\n"
        "  XDG_STATE_HOME  the key is in lumbrine/web-key there (default ~/.local/state), those of a receiver on\n"
        "                  this computer in lumbrine/keys\n"
        "  LANGUAGE, LC_ALL, LC_MESSAGES, LANG\n"
        "                  the first that is set chooses the language: Japanese (ja...) or English");
    app.get_formatter()->column_width(28);

    const auto anyPort = [](const std::string& text) { return text == "0" ? 0 : portNumber(text); };
    const CLI::Validator isPort(
        [=](const std::string& text) { return anyPort(text) ? "" : "is not a port number: " + text; }, "");
    const CLI::Validator isReceiver(
        [](const std::string& text) { return hostAndPort(text) ? "" : "is not HOST:PORT: " + text; }, "");
    const CLI::Validator isSealKey(
        [](const std::string& text) {
            return sealKeyOf(text) ? "" : "is not a key of 26 letters and digits, nor @FILE with one";
        },
        "");
    app.add_option_function<std::string>(
           "--port", [&](const std::string& text) { read.port = *anyPort(text); },
           "TCP port (default 52780), 0: any free one")
        ->check(isPort)
        ->type_name("PORT");
    app.add_option_function<std::string>(
           "--receiver",
           [&](const std::string& text) {
               HostAndPort place = *hostAndPort(text);
               read.receiverHost = std::move(place.host);
               read.receiverPort = place.port;
           },
           "the receiver, if not on this computer")
        ->check(isReceiver)
        ->type_name("HOST:PORT");
    app.add_option_function<std::string>(
           "--seal-key", [&](const std::string& text) { read.sealKey = sealKeyOf(text); },
           "seal messages with this key of a receiver elsewhere, or @FILE with it")
        ->check(isSealKey)
        ->type_name("KEY");
    CLI::Option* const certificate =
        app.add_option("--certificate", read.certificateChain, "serve HTTPS with this certificate chain (PEM)")
            ->type_name("FILE");
    CLI::Option* const key =
        app.add_option("--key", read.privateKey, "the certificate's private key (PEM)")->type_name("FILE");
    certificate->needs(key);
    key->needs(certificate);
    app.add_flag("--new-key", read.newKey, "make a new key, print the new address and end; phones need it from now on");

    try {
        // CLI11 expects the words in reverse order.
        std::vector<std::string> words(arguments.begin(), arguments.end());
        std::ranges::reverse(words);
        app.parse(words);
    } catch (const CLI::ParseError& error) {
        std::ostringstream output, complaint;
        const int status = app.exit(error, output, complaint) == 0 ? 0 : 2;
        return std::unexpected(GatewayArgumentsAnswer{output.str(), complaint.str(), status});
    }
    return read;
}

} // namespace lumbrine::web
