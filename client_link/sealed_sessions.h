// The receiver's end of sealed traffic: which datagrams of which clients count. docs/protocol.md has every byte.
//
// A session belongs to a device token and begins with two messages: the client's opening, and its first hello sealed
// with the key that both ends' halves give. Only that hello shows that the opening is no recording.
#pragma once

#include "client_link/ownership.h"
#include "platform/api/secrets.h"
#include "platform/api/time.h"
#include "seal/pairing_key.h"
#include "seal/seal_trailer.h"
#include "seal/sequence_window.h"
#include "seal/session_key.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lumbrine {

// Not thread-safe.
class SealedSessions {
public:
    static constexpr std::size_t maxSessions = 32; // another one replaces the one that was silent longest
    static constexpr std::size_t maxOpenings = 16; // that wait for their hello
    static constexpr std::size_t maxRemembered = 256;

    // A press and whatever else is not a fader's or a hello is dropped when it comes later than this.
    static constexpr Duration lateness = seconds(2.0) + seal::Sequence::timeStep;

    // A fader's are newer than what has come of them, so they may come later. What the network lost longer ago must not
    // be played by somebody who has recorded it.
    static constexpr Duration latenessOfFaders = seconds(5.0) + seal::Sequence::timeStep;

    // As long as that after its last sealed datagram, nothing else counts that comes from the client's address.
    static constexpr Duration livePeriod = seconds(6.0);

    explicit SealedSessions(Secrets& secrets) : secrets(secrets) {}

    // Sessions of keys that are not among them end.
    void setKeys(const std::vector<PairingKey>& known);

    // From now on unsealed datagrams count, as at the beginning, or do not.
    void letOnlyPairedIn(bool on) { onlyPaired = on; }

    enum class Verdict {
        counts,   // `message` is for the receiver
        opening,  // send `message` to the sender, and do nothing else
        stranger, // not sealed, and only paired clients are let in
        dropped   // came before, came too late, or is forged
    };
    struct Judged {
        Verdict verdict = Verdict::counts;
        ByteView message;           // valid as long as the datagram, and until the next `judge`
        std::optional<SealedBy> by; // absent when it is not sealed
    };

    // A datagram has come from this address ("host:port"). In a session it allocates nothing.
    //
    // A wrong seal is none: bytes behind a message have no meaning for a receiver, so a client without keys may send
    // them. But from the address of a live session nothing unsealed counts.
    Judged judge(ByteView datagram, std::string_view from, TimePoint now);

    // What to send to the client at this address: the message sealed, in `space`; the message itself when the client
    // has no session; nothing when it would have to be sealed and cannot be.
    ByteView outgoing(ByteView message, std::string_view to, TimePoint now, seal::SealedDatagram& space);

    // True when this address has a session.
    bool knows(std::string_view address) { return at(address) != nullptr; }

    // The datagrams of the client at this address: how many came and how many were lost. Absent without a session.
    struct Loss {
        std::uint32_t received = 0;
        std::uint32_t lost = 0;
    };
    std::optional<Loss> lossFrom(std::string_view address);

    // When each of the keys last opened a session, in the order of `setKeys`.
    std::vector<TimePoint> lastUses() const;

private:
    struct Key {
        PairingKey key;
        std::unique_ptr<KeyedHash> hash;
        std::uint8_t number = 0;
        TimePoint lastUse = distantPast;
    };

    // The newest counts of a strip, so that what is older than they are does nothing.
    struct StripCounts {
        std::uint32_t move = 0;
        std::uint32_t hold = 0; // touch or release
    };

    struct Session {
        SealedBy by;
        std::unique_ptr<KeyedHash> hash;
        std::string address; // where its newest hello came from
        seal::SequenceWindow window;
        std::array<StripCounts, 16> strips{};
        std::uint32_t sent = 0;
        TimePoint lastHeard = distantPast;
    };

    static bool isOf(const Session& session, const seal::Sealed& parts);
    std::optional<Judged> judgeSealed(const seal::Sealed& parts, std::string_view from, TimePoint now);
    std::optional<Judged> judgeOpening(const seal::Sealed& parts, std::uint64_t token, const seal::Half& client,
                                       TimePoint now);
    std::optional<Judged> judgeHello(const seal::Sealed& parts, std::uint64_t token, std::string_view from,
                                     TimePoint now);
    Judged admit(Session& session, const seal::Sealed& parts, std::string_view from, TimePoint now);
    Session* confirm(const seal::Sealed& parts, std::uint64_t token, TimePoint now);
    void moveTo(Session& session, std::string_view address);
    Session* at(std::string_view address);
    static bool isOvertaken(Session& session, ByteView message, std::uint32_t count);

    Secrets& secrets;
    bool onlyPaired = false;
    std::vector<Key> keys;
    std::vector<Session> sessions;     // at most maxSessions
    std::deque<Session> openings;      // at most maxOpenings, oldest first
    std::deque<seal::Half> remembered; // the clients' halves that were answered, oldest first
    seal::SealedDatagram answered;
};

} // namespace lumbrine
