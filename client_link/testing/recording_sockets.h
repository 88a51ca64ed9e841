// For tests that hand datagrams to a server directly: sockets that record what is sent and fail on command.
#pragma once

#include "platform/api/datagram_sockets.h"

#include <algorithm>
#include <cerrno>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace lumbrine {

// The address of "host:port" as these sockets keep it: the text itself. What follows a '#' is part of the address but
// not of its name.
inline PeerAddress peerAt(std::string_view hostAndPort) {
    PeerAddress address;
    address.length = static_cast<std::uint32_t>(std::min(hostAndPort.size(), address.storage.size()));
    std::copy_n(hostAndPort.begin(), address.length, address.storage.begin());
    return address;
}

inline std::string textOf(const PeerAddress& address) {
    return {address.storage.begin(), address.storage.begin() + address.length};
}

class RecordingSockets : public DatagramSockets {
public:
    static constexpr int descriptor = 0;        // what a program gets whose standard input is closed
    using Sent = std::pair<std::string, Bytes>; // "host:port", datagram

    std::vector<Sent> sent;
    std::vector<std::string> calls; // all except receive, name and sends on the open socket
    std::string ownAddress;         // "host:port" of the socket itself
    int nameCalls = 0;
    int openResult = descriptor;
    int bindResult = 0;
    int optionResult = 0;
    int sendResult = 0;

    int open() override {
        isOpen = openResult >= 0;
        return note("open", openResult);
    }
    int setReuseAddress(int) override { return note("reuse address", optionResult); }
    int setDualStack(int) override { return note("dual stack", optionResult); }
    int bind(int, std::uint16_t port) override { return note("bind " + std::to_string(port), bindResult); }
    int localPort(int) override { return -ENOTSUP; }
    bool isOwnAddress(int, const PeerAddress& address) override {
        return std::ranges::equal(std::span(address.storage).first(address.length), ownAddress);
    }
    int receive(int, std::span<std::uint8_t>, PeerAddress&) override { return -ENOTSUP; }

    int send(int fd, ByteView bytes, const PeerAddress& to) override {
        if (fd != descriptor || !isOpen) return note("send on no socket", -EBADF);
        if (sendResult < 0) return sendResult;
        sent.emplace_back(textOf(to), Bytes(bytes.begin(), bytes.end()));
        return static_cast<int>(bytes.size());
    }

    void name(const PeerAddress& address, std::string& host, std::string& port) override {
        ++nameCalls;
        std::string_view text(reinterpret_cast<const char*>(address.storage.data()), address.length);
        text = text.substr(0, text.find('#'));
        const std::size_t colon = std::min(text.rfind(':'), text.size());
        host.assign(text.substr(0, colon));
        port.assign(text.substr(std::min(colon + 1, text.size())));
    }

    bool resolve(const std::string&, std::uint16_t, PeerAddress&) override { return false; }
    void shutDown(int) override { note("shut down", 0); }
    void close(int) override {
        isOpen = false;
        note("close", 0);
    }

private:
    bool isOpen = false;

    int note(std::string call, int result) {
        calls.push_back(std::move(call));
        return result;
    }
};

} // namespace lumbrine
