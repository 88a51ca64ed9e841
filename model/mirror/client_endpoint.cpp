#include "model/mirror/client_endpoint.h"

#include <cassert>
#include <system_error>
#include <utility>

namespace lumbrine {

using State = LinkHealth::State;

ClientEndpoint::ClientEndpoint(const Jobs& jobs, PublishedState& published, DatagramSockets& sockets,
                               ServiceAdvertiser& advertiser, const SystemInfo& system, Configuration configuration,
                               ActivityLog& log, Secrets* secrets)
    : port(configuration.port), jobs(jobs), published(published), runtime(jobs.runtime), sockets(sockets),
      advertiser(advertiser), system(system), noBonjour(configuration.noBonjour), clients(configuration.clients),
      log(log), secrets(secrets) {
    published.health.port = port;
}

void ClientEndpoint::startUDPAndBonjour(Handler handler) {
    assert(runtime.onMain());
    listen(std::move(handler));
    if (noBonjour) {
        published.health.announcement = {.state = State::off};
        log.say("⚠️ Bonjour advertising off (QV_NO_BONJOUR experimental mode)",
                "⚠️ Bonjour 広告なし（QV_NO_BONJOUR 実験モード）");
    } else {
        advertise();
    }
}

void ClientEndpoint::listen(Handler handler) {
    if (clients.onlyPaired && secrets == nullptr) {
        noteDeaf(log.text("LUMBRINE_CLIENTS=paired needs keys, which cannot be used here",
                          "LUMBRINE_CLIENTS=paired に必要な鍵がここでは使えません"));
        return;
    }
    udp = std::make_unique<UDPServer>(runtime, sockets, port);
    udp->onDatagram = std::move(handler);
    udp->onTakeOver = [this](const std::string& by, const std::string& from) { logTakeOver(by, from); };
    udp->onSendingRefused = [this](int error) { logRefusal(error); };
    udp->onStranger = [this] { noteStranger(); };
    if (secrets != nullptr) {
        udp->useSeals(*secrets);
        udp->setKeys(keys);
        udp->letOnlyPairedIn(clients.onlyPaired);
    }
    if (const auto started = udp->start()) {
        const std::string where = std::to_string(port);
        published.health.udp = {.state = State::up};
        log.say("✓ UDP listening on :" + where, "✓ UDP 受信開始 :" + where);
    } else {
        noteDeaf(started.error().description);
    }
}

void ClientEndpoint::noteDeaf(const std::string& why) {
    published.health.udp = {.state = State::down, .detail = why};
    log.say("✗ UDP failed: " + why, "✗ UDP 失敗: " + why);
}

void ClientEndpoint::logTakeOver(const std::string& by, const std::string& from) {
    const TimePoint now = runtime.now();
    if (now - takeOverLoggedAt < betweenTakeOvers) return;
    takeOverLoggedAt = now;
    log.say("→ " + by + " took over from " + from, "→ 操作が " + from + " から " + by + " に移りました");
}

void ClientEndpoint::logRefusal(int error) {
    const std::string why = std::generic_category().message(error);
    log.sayOnceAMinute("✗ This computer does not let answers to the iOS app out (" + why +
                           "). Check its firewall; on a Mac allow Lumbrine in System Settings ▸ Privacy & Security ▸ "
                           "Local Network",
                       "✗ iOS アプリへの応答がこのコンピュータから送信できません（" + why +
                           "）。ファイアウォールを確認してください。Mac では、システム設定 ▸ "
                           "プライバシーとセキュリティ ▸ ローカルネットワーク で Lumbrine を許可してください");
}

void ClientEndpoint::setKeys(std::vector<PairingKey> known) {
    assert(runtime.onMain());
    keys = std::move(known);
    if (udp) udp->setKeys(keys);
}

void ClientEndpoint::letOnlyPairedIn(bool on) {
    assert(runtime.onMain());
    if (clients.isFixed || secrets == nullptr || on == clients.onlyPaired) return;
    clients.onlyPaired = on;
    if (udp) udp->letOnlyPairedIn(on);
    log.say(on ? "Only clients with a key are let in" : "Clients without a key are let in",
            on ? "鍵を持つクライアントだけを許可します" : "鍵のないクライアントも許可します");
}

std::vector<TimePoint> ClientEndpoint::lastUsesOfKeys() {
    return udp ? udp->lastUsesOfKeys() : std::vector<TimePoint>();
}

void ClientEndpoint::noteStranger() {
    jobs.runOnMain([this] {
        published.health.strangers = udp->strangers();
        published.changed();
    });
    log.sayOnceAMinute("⚠️ A client without a key was not let in", "⚠️ 鍵のないクライアントを拒否しました");
}

void ClientEndpoint::advertise() {
    const std::string name = system.computerName().value_or("Lumbrine Mac");
    published.health.announcement = {.state = State::waiting};
    bonjour = advertiser.publish({.domain = "local.",
                                  .type = "_lumbrine._udp.",
                                  .name = name,
                                  .port = port,
                                  .onChange = [this](const std::optional<std::string>& announcedAs) {
                                      jobs.runOnMain([this, announcedAs] { noteAnnouncement(announcedAs); });
                                  }});
    log.say("✓ Bonjour advertising: " + name, "✓ Bonjour 広告: " + name);
}

void ClientEndpoint::noteAnnouncement(const std::optional<std::string>& name) {
    LinkHealth now{.state = name ? State::up : State::down, .detail = name.value_or("")};
    if (std::exchange(published.health.announcement, now) != now) published.changed();
}

// The server itself stays: its receive thread may be asking for it.
void ClientEndpoint::close() {
    if (udp) udp->end();
}

void ClientEndpoint::send(ByteView bytes, std::string_view key) {
    if (udp) udp->send(bytes, key);
}

void ClientEndpoint::broadcast(ByteView bytes) {
    if (udp) udp->broadcast(bytes);
}

std::vector<std::string> ClientEndpoint::connectedIPs() {
    return udp ? udp->connectedIPs() : std::vector<std::string>{};
}

std::optional<std::string> ClientEndpoint::ownerIP() {
    return udp ? udp->ownerIP() : std::nullopt;
}

std::optional<std::string> ClientEndpoint::liveOwnerKey() {
    return udp ? udp->liveOwnerKey() : std::nullopt;
}

std::optional<Ownership> ClientEndpoint::ownership() {
    return udp ? udp->ownership() : std::nullopt;
}

std::optional<SealedSessions::Loss> ClientEndpoint::ownersLoss() {
    return udp ? udp->ownersLoss() : std::nullopt;
}

} // namespace lumbrine
