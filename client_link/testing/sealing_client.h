// For tests: a client that seals, in front of a server.
#pragma once

#include "client_link/testing/served_peers.h"
#include "platform/virtual/toy_secrets.h"
#include "seal/client_seal.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace lumbrine {

inline const PairingKey studioKey = *PairingKey::parse("742BCM0SCXPZA154Z02S9P89HC");
inline const PairingKey otherKey = *PairingKey::parse("014D2PF2DBSQQG28T5CY4TQKFF");

class SealingClient {
public:
    SealingClient(ServedPeers& peers, std::string address, std::uint8_t token, const PairingKey& key = studioKey)
        : address(std::move(address)), hello{0x01, 0x00, 0x80, 0, 0, 0, 0, 0, 0, token}, peers(peers),
          secrets(std::hash<std::string>()(this->address)), client(secrets, key) {}

    // The datagram of a message, sealed now.
    Bytes sealed(const Bytes& message) { return copyOf(client.outgoing(message, peers.runtime.time)); }

    void sends(const Bytes& message) { peers.from(address, sealed(message)); }

    // Says hello until the session is open; the server's answers reach this client.
    void open() {
        sends(hello);
        receiveAll();
    }

    // What of the datagrams that the server has sent is for this client; its replies go back at once.
    std::vector<Bytes> receiveAll() {
        std::vector<Bytes> messages;
        for (auto sent = peers.takeSent(); !sent.empty(); sent = peers.takeSent())
            for (const auto& [to, datagram] : sent) {
                if (to != address) continue;
                const auto [message, reply] = client.incoming(datagram, peers.runtime.time);
                if (!message.empty()) messages.push_back(copyOf(message));
                if (!reply.empty()) peers.from(address, copyOf(reply));
            }
        return messages;
    }

    bool inSession() const { return client.inSession(); }

    std::string address;
    const Bytes hello;

private:
    static Bytes copyOf(ByteView bytes) { return {bytes.begin(), bytes.end()}; }

    ServedPeers& peers;
    ToySecrets secrets;
    seal::ClientSeal client;
};

} // namespace lumbrine
