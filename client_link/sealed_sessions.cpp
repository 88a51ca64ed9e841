#include "client_link/sealed_sessions.h"

#include <algorithm>
#include <utility>

namespace lumbrine {

using seal::Direction;
using seal::Half;
using seal::Sealed;
using seal::Sequence;

namespace {

constexpr std::uint8_t faderMoveType = 0x01;
constexpr std::uint8_t faderTouchType = 0x02;
constexpr std::uint8_t faderReleaseType = 0x03;
constexpr std::uint8_t helloType = 0x00;

// How late it may come.
Duration patienceWith(ByteView message) {
    switch (message[1]) {
    case helloType: // repeated, and its time is believed
        return Duration::max();
    case faderMoveType: // overtaken by others of their kind
    case faderTouchType:
    case faderReleaseType:
        return SealedSessions::latenessOfFaders;
    default:
        return SealedSessions::lateness;
    }
}

} // namespace

void SealedSessions::setKeys(const std::vector<PairingKey>& known) {
    std::vector<Key> kept;
    for (const PairingKey& key : known) {
        const auto old = std::ranges::find(keys, key, &Key::key);
        if (old != keys.end()) {
            kept.push_back(std::move(*old));
            keys.erase(old);
            continue;
        }
        Key added{.key = key, .hash = seal::hashOf(secrets, key)};
        added.number = seal::numberOf(*added.hash);
        kept.push_back(std::move(added));
    }
    const auto isForgotten = [&](const Session& session) {
        return std::ranges::find(keys, session.by.keyNumber, &Key::number) != keys.end();
    };
    std::erase_if(sessions, isForgotten);
    std::erase_if(openings, isForgotten);
    keys = std::move(kept);
}

SealedSessions::Judged SealedSessions::judge(ByteView datagram, std::string_view from, TimePoint now) {
    if (const auto parts = seal::splitTrailer(datagram))
        if (const auto judged = judgeSealed(*parts, from, now)) return *judged;
    const Session* const session = at(from);
    const bool isForged = session != nullptr && now - session->lastHeard < livePeriod;
    Judged judged{.verdict = Verdict::counts, .message = datagram, .by = std::nullopt};
    if (onlyPaired) judged.verdict = Verdict::stranger;
    if (isForged) judged.verdict = Verdict::dropped; // a client that seals, seals everything
    return judged;
}

bool SealedSessions::isOf(const Session& session, const Sealed& parts) {
    return parts.trailer.keyNumber == session.by.keyNumber &&
           isRight(parts, *session.hash, Direction::toReceiver, session.by.token);
}

// Absent when the seal is not right, or cannot be judged.
std::optional<SealedSessions::Judged> SealedSessions::judgeSealed(const Sealed& parts, std::string_view from,
                                                                  TimePoint now) {
    if (const auto token = seal::tokenOfHello(parts.message)) {
        if (parts.trailer.sequence.count != 0) return judgeHello(parts, *token, from, now);
        const auto client = seal::clientHalfOf(parts.message);
        return client ? judgeOpening(parts, *token, *client, now) : std::nullopt;
    }
    Session* const session = at(from);
    if (session == nullptr || !isOf(*session, parts)) return std::nullopt;
    return admit(*session, parts, from, now);
}

std::optional<SealedSessions::Judged> SealedSessions::judgeOpening(const Sealed& parts, std::uint64_t token,
                                                                   const Half& client, TimePoint now) {
    const auto key = std::ranges::find_if(keys, [&](const Key& each) {
        return each.number == parts.trailer.keyNumber && isRight(parts, *each.hash, Direction::toReceiver, token);
    });
    if (key == keys.end()) return std::nullopt;
    const SealedBy by{.token = token, .keyNumber = key->number};
    // A recording must not make the receiver send to whom it was recorded from.
    if (std::ranges::find(remembered, client) != remembered.end())
        return Judged{.verdict = Verdict::dropped, .message = parts.message, .by = by};
    remembered.push_back(client);
    if (remembered.size() > maxRemembered) remembered.pop_front();

    Half receiver;
    secrets.fillRandom(receiver);
    std::erase_if(openings, [&](const Session& other) { return other.by.token == token; });
    if (openings.size() >= maxOpenings) openings.pop_front();
    Session& opened = openings.emplace_back();
    opened.by = by;
    opened.hash = seal::sessionHash(secrets, *key->hash, {.token = token, .client = client, .receiver = receiver});
    answered.make(seal::sessionMessage(client, receiver), *key->hash, key->number, Direction::toClient, token,
                  Sequence::at(now, 0));
    return Judged{.verdict = Verdict::opening, .message = answered.bytes(), .by = by};
}

std::optional<SealedSessions::Judged> SealedSessions::judgeHello(const Sealed& parts, std::uint64_t token,
                                                                 std::string_view from, TimePoint now) {
    const auto running = std::ranges::find_if(
        sessions, [&](const Session& session) { return session.by.token == token && isOf(session, parts); });
    if (running != sessions.end()) return admit(*running, parts, from, now);
    Session* const begun = confirm(parts, token, now);
    if (begun == nullptr) return std::nullopt;
    return admit(*begun, parts, from, now);
}

// The session of this hello, when an opening waits for it. It replaces the device's former session.
SealedSessions::Session* SealedSessions::confirm(const Sealed& parts, std::uint64_t token, TimePoint now) {
    const auto opened = std::ranges::find_if(
        openings, [&](const Session& session) { return session.by.token == token && isOf(session, parts); });
    if (opened == openings.end()) return nullptr;
    const auto key = std::ranges::find(keys, opened->by.keyNumber, &Key::number);
    if (key != keys.end()) key->lastUse = now;
    auto place = std::ranges::find_if(sessions, [&](const Session& each) { return each.by.token == token; });
    if (place == sessions.end() && sessions.size() < maxSessions) place = sessions.insert(place, Session{});
    if (place == sessions.end()) place = std::ranges::min_element(sessions, {}, &Session::lastHeard);
    *place = std::move(*opened);
    openings.erase(opened);
    return &*place;
}

SealedSessions::Judged SealedSessions::admit(Session& session, const Sealed& parts, std::string_view from,
                                             TimePoint now) {
    Judged judged{.verdict = Verdict::dropped, .message = parts.message, .by = session.by};
    const std::uint32_t count = parts.trailer.sequence.count;
    const auto arrival = session.window.admit(parts.trailer.sequence, now);
    if (!arrival) return judged;
    session.lastHeard = now;
    if (parts.message[1] == helloType) {
        // An overtaken hello may come from an address that the client has left.
        if (!arrival->isNewest) return judged;
        session.window.setTime(now);
        moveTo(session, from);
    }
    if (arrival->late > patienceWith(parts.message)) return judged;
    if (isOvertaken(session, parts.message, count)) return judged;
    judged.verdict = Verdict::counts;
    return judged;
}

void SealedSessions::moveTo(Session& session, std::string_view address) {
    if (session.address == address) return;
    for (Session& other : sessions)
        if (other.address == address) other.address.clear();
    session.address = address;
}

bool SealedSessions::isOvertaken(Session& session, ByteView message, std::uint32_t count) {
    if (message.size() < 3 || message[1] < faderMoveType || message[1] > faderReleaseType) return false;
    if (message[2] >= session.strips.size()) return false;
    StripCounts& strip = session.strips[message[2]];
    std::uint32_t& newest = message[1] == faderMoveType ? strip.move : strip.hold;
    if (count < newest) return true;
    newest = count;
    return false;
}

SealedSessions::Session* SealedSessions::at(std::string_view address) {
    const auto found = std::ranges::find(sessions, address, &Session::address);
    return found == sessions.end() ? nullptr : &*found;
}

ByteView SealedSessions::outgoing(ByteView message, std::string_view to, TimePoint now, seal::SealedDatagram& space) {
    Session* const session = at(to);
    if (session == nullptr) return onlyPaired ? ByteView{} : message;
    if (session->sent >= Sequence::maxCount || message.size() > seal::maxMessage) return {};
    space.make(message, *session->hash, session->by.keyNumber, Direction::toClient, session->by.token,
               Sequence::at(now, ++session->sent));
    return space.bytes();
}

std::optional<SealedSessions::Loss> SealedSessions::lossFrom(std::string_view address) {
    const Session* const session = at(address);
    if (session == nullptr) return std::nullopt;
    return Loss{.received = session->window.received(), .lost = session->window.lost()};
}

std::vector<TimePoint> SealedSessions::lastUses() const {
    std::vector<TimePoint> uses;
    uses.reserve(keys.size());
    for (const Key& key : keys)
        uses.push_back(key.lastUse);
    return uses;
}

} // namespace lumbrine
