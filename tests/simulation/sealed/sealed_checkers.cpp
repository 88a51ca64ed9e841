#include "tests/simulation/sealed/sealed_checkers.h"

#include "tests/simulation/phone.h"
#include "tests/simulation/surface_wire.h"

#include <algorithm>
#include <map>
#include <optional>
#include <set>

namespace lumbrine::simulation {

namespace {

constexpr std::size_t trailer = 16;
constexpr std::uint8_t hello = 0x00;
constexpr std::uint8_t move = 0x01;
constexpr std::uint8_t sessionAnswer = 0x7E;
constexpr std::uint8_t pong = 0x7F;

constexpr Duration lateness = seconds(2.5);   // 2 s, and what eighths of a second leave open
constexpr Duration atASurface = seconds(1.1); // that a press may wait for
constexpr Duration jobs = seconds(0.1);       // that were under way

bool isSealed(ByteView datagram) {
    const std::size_t size = datagram.size();
    return size >= trailer + 2 && datagram[size - 16] == 0xFF && datagram[size - 15] == 0x5E &&
           datagram[size - 14] == 0xA1;
}

// The upper 22 bits of the sequence number.
std::uint32_t countOf(ByteView datagram) {
    const ByteView number = datagram.last(12);
    return static_cast<std::uint32_t>(number[0] << 14 | number[1] << 6 | number[2] >> 2);
}

bool isOf(std::uint8_t type, ByteView datagram) {
    return datagram.size() >= 2 && datagram[0] == 1 && datagram[1] == type;
}

bool isIn(const Silence& silence, TimePoint moment) {
    return moment > silence.first && moment <= silence.last;
}

// A sealed datagram of a phone, and its arrivals while it could count.
struct Message {
    const MadeDatagram* made = nullptr;
    int session = 0; // of this phone
    std::vector<const ReceivedDatagram*> arrivals;
};

// Those that are sealed, in the order in which they were made.
std::vector<Message> messagesOf(const SealedEvidence& evidence) {
    std::vector<Message> messages;
    std::map<Bytes, std::size_t> numbers;
    std::map<int, int> sessions;
    for (const MadeDatagram& made : evidence.made) {
        if (!isSealed(made.bytes)) continue;
        int& session = sessions[made.phone];
        if (countOf(made.bytes) == 1) ++session;
        numbers.emplace(made.bytes, messages.size());
        messages.push_back({&made, session, {}});
    }
    const std::string receiver = "::ffff:" + std::string(receiverAddress) + ":" + std::to_string(receiverPort);
    const auto nobodyHasAKey = [&](TimePoint moment) {
        return std::ranges::any_of(evidence.withoutKey, [&](const Silence& each) { return isIn(each, moment); });
    };
    for (const ReceivedDatagram& arrived : evidence.arrived) {
        const auto found = numbers.find(arrived.bytes);
        const bool counts = arrived.sender != receiver && !nobodyHasAKey(arrived.at); // the receiver ignores itself
        if (found != numbers.end() && counts) messages[found->second].arrivals.push_back(&arrived);
    }
    return messages;
}

struct StripAction {
    WireAction action;
    int strip = 0; // 0-15
};

// Of all surfaces, in their order.
std::vector<StripAction> actionsOf(const SealedEvidence& evidence) {
    std::multimap<TimePoint, StripAction> inOrder;
    for (std::size_t surface = 0; surface < evidence.surfaces.size(); ++surface)
        for (const WireAction& action : readWire(evidence.surfaces[surface]).actions)
            inOrder.emplace(action.at, StripAction{action, static_cast<int>(8 * surface) + action.number});
    std::vector<StripAction> actions;
    for (const auto& [at, action] : inOrder)
        actions.push_back(action);
    return actions;
}

bool isPress(const WireAction& action) {
    return action.isOfStrip() && action.value == 1 && action.port >= 1 && action.port <= 3;
}

int portOf(std::uint8_t type) {
    constexpr std::uint8_t mute = 0x04;
    constexpr std::uint8_t solo = 0x05;
    constexpr std::uint8_t select = 0x0D;
    return type == select ? 1 : type == mute ? 2 : type == solo ? 3 : 0;
}

// Finds for each press one that a phone made, and no two the same.
class Matching {
public:
    explicit Matching(const std::vector<Message>& ofPhones) : messages(ofPhones) {
        for (const Message& message : messages)
            if (isOf(hello, message.made->bytes) && !message.arrivals.empty()) hellos.push_back(&message);
    }

    bool take(const StripAction& press) {
        presses.push_back(press);
        std::set<std::size_t> tried;
        return place(presses.size() - 1, tried);
    }

private:
    // Moves another press elsewhere where it has to.
    bool place(std::size_t press, std::set<std::size_t>& tried) {
        for (std::size_t i = 0; i < messages.size(); ++i) {
            if (tried.contains(i) || !mayCause(messages[i], presses[press])) continue;
            tried.insert(i);
            const auto taken = owners.find(i);
            if (taken != owners.end() && !place(taken->second, tried)) continue;
            owners[i] = press;
            return true;
        }
        return false;
    }

    bool mayCause(const Message& message, const StripAction& press) const {
        const Bytes& bytes = message.made->bytes;
        if (portOf(bytes[1]) != press.action.port || bytes[2] != press.strip) return false;
        return std::ranges::any_of(message.arrivals, [&](const ReceivedDatagram* arrival) {
            return arrival->at <= press.action.at && press.action.at <= arrival->at + atASurface &&
                   !isTooLate(message, arrival->at);
        });
    }

    bool isTooLate(const Message& message, TimePoint arrival) const {
        return std::ranges::any_of(hellos, [&](const Message* newer) {
            return newer->made->phone == message.made->phone && newer->session == message.session &&
                   newer->made->at - message.made->at > lateness && newer->arrivals.front()->at <= arrival;
        });
    }

    const std::vector<Message>& messages;
    std::vector<const Message*> hellos;
    std::vector<StripAction> presses;
    std::map<std::size_t, std::size_t> owners; // of messages: the press
};

std::string at(TimePoint moment) {
    return " at " + timeText(moment);
}

} // namespace

Violations checkSealedPresses(const SealedEvidence& evidence) {
    Violations violations;
    const std::vector<Message> messages = messagesOf(evidence);
    Matching matching(messages);
    for (const StripAction& each : actionsOf(evidence))
        if (isPress(each.action) && !matching.take(each))
            violations.push_back("no phone made this press, or not so often, or long ago: " + each.action.text());
    return violations;
}

Violations checkSealedFaders(const SealedEvidence& evidence) {
    Violations violations;
    std::map<int, std::pair<int, int>> makers; // of a value: the phone and the strip
    for (const MadeDatagram& made : evidence.made)
        if (isOf(move, made.bytes) && isSealed(made.bytes))
            makers[made.bytes[3] << 8 | made.bytes[4]] = {made.phone, made.bytes[2]};
    std::map<std::pair<int, int>, int> newest;
    for (const auto& [action, strip] : actionsOf(evidence)) {
        if (action.kind != WireAction::Kind::fader) continue;
        const auto maker = makers.find(action.value);
        if (maker == makers.end() || maker->second.second != strip) {
            violations.push_back("no phone made this move: " + action.text());
        } else if (int& last = newest[maker->second]; action.value <= last) {
            violations.push_back("the fader goes back, or twice: " + action.text());
        } else {
            last = action.value;
        }
    }
    for (const LastFinger& finger : evidence.fingers)
        if (const int value = evidence.faders.at(static_cast<std::size_t>(finger.strip)); value != finger.value)
            violations.push_back("fader " + std::to_string(finger.strip) + " ends at " + std::to_string(value) +
                                 ", the finger left it at " + std::to_string(finger.value));
    return violations;
}

Violations checkSealedAnswers(const SealedEvidence& evidence) {
    Violations violations;
    std::vector<Message> messages = messagesOf(evidence);
    std::erase_if(messages,
                  [](const Message& message) { return !isOf(hello, message.made->bytes) || message.arrivals.empty(); });
    std::ranges::sort(messages, {}, [](const Message& message) { return message.arrivals.front()->at; });
    std::set<std::string> told;
    std::map<std::string, int> openings;
    std::map<std::string, int> hellos;
    std::map<std::string, TimePoint> newest; // by phone and session
    auto next = messages.begin();
    for (const SentDatagram& answer : evidence.sent.list) {
        for (; next != messages.end() && next->arrivals.front()->at <= answer.at; ++next) {
            const ReceivedDatagram& first = *next->arrivals.front();
            const bool isOpening = countOf(first.bytes) == 0;
            if (isOpening) {
                ++openings[first.sender];
                continue;
            }
            TimePoint& last = newest[std::to_string(next->made->phone) + " " + std::to_string(next->session)];
            if (next->made->at < last) continue; // overtaken
            last = next->made->at;
            ++hellos[first.sender];
        }
        const std::string& peer = evidence.sent.peers[answer.peer];
        const char* wrong = nullptr;
        if (!isSealed(answer.bytes)) {
            wrong = "not sealed";
        } else if (answer.type() == sessionAnswer) {
            if (openings[peer]-- <= 0) wrong = "a session that no opening asks for";
        } else if (!hellos.contains(peer)) {
            wrong = "to somebody who has not said hello";
        } else if (answer.type() == pong && hellos[peer]-- <= 0) {
            wrong = "a pong more than hellos";
        }
        if (wrong != nullptr && told.insert(peer + wrong).second)
            violations.push_back(std::string(wrong) + ": type " + std::to_string(answer.type()) + " to " + peer +
                                 at(answer.at));
    }
    return violations;
}

namespace {

// The receiver asks for a strip's mode on its own account.
bool isProbe(const WireAction& action) {
    return action.isOfStrip() && action.port == autoPort;
}

Violations brokenBy(const SealedEvidence& evidence, const Silence& silence, const char* when) {
    Violations violations;
    for (const SentDatagram& sent : evidence.sent.list)
        if (isIn(silence, sent.at) && sent.type() != sessionAnswer)
            violations.push_back(std::string(when) + " something was sent: type " + std::to_string(sent.type()) +
                                 at(sent.at));
    for (const auto& [action, strip] : actionsOf(evidence))
        if (isIn(silence, action.at) &&
            (action.kind != WireAction::Kind::edge || (action.value == 1 && !isProbe(action))))
            violations.push_back(std::string(when) + " Pro Tools got something: " + action.text());
    return violations;
}

} // namespace

Violations checkSilence(const SealedEvidence& evidence) {
    Violations violations = brokenBy(evidence, evidence.afterAll, "after the phones");
    for (const Silence& silence : evidence.withoutKey) {
        const Violations more = brokenBy(evidence, {silence.first + jobs, silence.last}, "without a key");
        violations.insert(violations.end(), more.begin(), more.end());
    }
    if (evidence.anybodyConnected) violations.emplace_back("somebody counts as connected after the phones");
    return violations;
}

Violations checkSealed(const SealedEvidence& evidence) {
    Violations all;
    const auto add = [&](const char* name, const Violations& violations) {
        for (const std::string& violation : violations)
            all.push_back(std::string(name) + ": " + violation);
    };
    add("presses", checkSealedPresses(evidence));
    add("faders", checkSealedFaders(evidence));
    add("answers", checkSealedAnswers(evidence));
    add("silence", checkSilence(evidence));
    return all;
}

} // namespace lumbrine::simulation
