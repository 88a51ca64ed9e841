// The receiver on the network: its UDP server and the announcement of it.
#pragma once

#include "client_link/udp_server.h"
#include "model/state/activity_log.h"
#include "model/state/configuration.h"
#include "platform/api/service_discovery.h"
#include "platform/api/system_info.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace lumbrine {

class ClientEndpoint {
public:
    // Take-overs are logged at most once in this time: datagrams with forged addresses can bring any number.
    static constexpr Duration betweenTakeOvers = seconds(1.0);

    using Handler = std::function<void(ByteView bytes, const Sender& sender)>;

    ClientEndpoint(const Jobs& jobs, PublishedState& published, DatagramSockets& sockets, ServiceAdvertiser& advertiser,
                   const SystemInfo& system, Configuration configuration, ActivityLog& log, Secrets* secrets = nullptr);

    // The keys that clients may seal with, instead of those before. Nothing happens without secrets. Main thread.
    void setKeys(std::vector<PairingKey> known);

    // Whether only clients with a key are let in. Nothing happens without secrets, and where LUMBRINE_CLIENTS decides.
    // Main thread.
    void letOnlyPairedIn(bool on);
    PairedMode pairedMode() const { return clients; }

    // When each of the keys last opened a session, in the order of `setKeys`. Main thread.
    std::vector<TimePoint> lastUsesOfKeys();

    // Listens, and announces the port even when listening failed; logs both, and keeps their health up to date.
    // `handler` gets the owner's datagrams on the receive thread. Main thread, once.
    void startUDPAndBonjour(Handler handler);

    // Waits for the receive thread to end, after which the handler is not called any more; a handler at work meanwhile
    // can still send. Main thread.
    void close();

    // The rest: any thread; nothing happens and nobody is there before the start, nothing is sent after the end.

    void send(ByteView bytes, std::string_view key); // to that peer alone
    void broadcast(ByteView bytes);                  // to the live owner alone
    std::vector<std::string> connectedIPs();
    std::optional<std::string> ownerIP();
    std::optional<std::string> liveOwnerKey();
    std::optional<Ownership> ownership();
    std::optional<SealedSessions::Loss> ownersLoss();

    const std::uint16_t port;

private:
    void listen(Handler handler);
    void noteDeaf(const std::string& why);
    void logTakeOver(const std::string& by, const std::string& from);
    void logRefusal(int error);
    void noteStranger();
    void advertise();
    void noteAnnouncement(const std::optional<std::string>& name);

    const Jobs& jobs;
    PublishedState& published;
    Runtime& runtime;
    DatagramSockets& sockets;
    ServiceAdvertiser& advertiser;
    const SystemInfo& system;
    const bool noBonjour;
    PairedMode clients;
    ActivityLog& log;
    Secrets* const secrets;
    std::vector<PairingKey> keys;
    std::unique_ptr<UDPServer> udp;
    TimePoint takeOverLoggedAt = distantPast; // receive thread
    std::unique_ptr<Advertisement> bonjour;
};

} // namespace lumbrine
