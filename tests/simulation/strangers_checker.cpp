#include "tests/simulation/strangers_checker.h"

#include "tests/simulation/false_receiver.h"
#include "tests/simulation/owner_oracle.h"
#include "tests/simulation/phone.h"
#include "tests/simulation/second_receiver.h"

#include <algorithm>
#include <array>
#include <map>
#include <set>

namespace lumbrine::simulation {

namespace {

constexpr std::uint8_t busy = 0x7D;
constexpr std::uint8_t pong = 0x7F;
constexpr Duration longestOwnership = seconds(6.4); // 6 s of silence, and a tick that notices

bool isHello(const Bytes& datagram) {
    return datagram.size() >= 2 && datagram[0] == 0x01 && datagram[1] == 0x00;
}

bool mayBeAReceiver(const std::string& address) {
    constexpr std::array hosts{secondReceiverAddress, falseReceiverAddress, receiverAddress, "127.0.0.1"};
    return std::ranges::any_of(
        hosts, [&](const char* host) { return address.starts_with("::ffff:" + std::string(host) + ":"); });
}

// What somebody has said so far that a client may say, less what was said in return.
struct Account {
    int refusals = 0;
    int pongs = 0;
    TimePoint last = distantPast;
};

bool pay(Account& account, const SentDatagram& answer) {
    if (answer.type() == busy) return account.refusals-- > 0;
    if (answer.type() == pong) return account.pongs-- > 0;
    return answer.at - account.last <= longestOwnership;
}

} // namespace

std::vector<std::string> checkStrangers(const Evidence& evidence) {
    std::vector<std::string> violations;
    std::map<std::string, Account> accounts;
    std::set<std::string> told;
    auto received = evidence.datagrams.begin();
    for (const SentDatagram& answer : evidence.sent.list) {
        const std::string& receiver = evidence.sent.peers[answer.peer];
        for (; received != evidence.datagrams.end() && received->at <= answer.at; ++received) {
            if (isOfReceiver(*received)) continue;
            Account& account = accounts[received->sender];
            ++account.refusals;
            if (isHello(received->bytes)) ++account.pongs;
            account.last = received->at;
        }
        if (!mayBeAReceiver(receiver) || pay(accounts[receiver], answer)) continue;
        if (!told.insert(receiver).second) continue;
        violations.push_back("talks to " + receiver + ", which said nothing that a client says, at " +
                             std::to_string(inSeconds(answer.at.time_since_epoch())) + " s");
    }
    return violations;
}

} // namespace lumbrine::simulation
