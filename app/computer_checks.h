// What can be said of a computer on which no receiver of the user runs, and of the network around it.
#pragma once

#include "app/diagnosis.h"
#include "platform/api/service_discovery.h"

#include <optional>
#include <string>
#include <vector>

namespace lumbrine {

struct ComputerFacts {
    std::uint16_t port;
    bool portIsFree;
    std::optional<std::string> portHolder; // the program that has the port, if the system tells
    std::string address;                   // as PublishedState::localIP
    bool announces;                        // a service for announcements answers
    bool hasMIDI;
};
std::vector<Check> computerChecks(const ComputerFacts& facts, const Bilingual& text);

// Who serves browsers.
struct GatewayFacts {
    std::uint16_t port;
    bool isTaken;                      // somebody accepts connections there
    std::optional<std::string> holder; // the program, if the system tells
};
Check gatewayCheck(const GatewayFacts& facts, const Bilingual& text);

// Whether the firewall of that name lets clients through, its administrator alone may see.
Check firewallCheck(const std::string& firewall, std::uint16_t port, const Bilingual& text);

// A receiver runs and does not answer.
Check silentReceiver(std::uint16_t port, const Bilingual& text);

// What was found on the network. Absent when there is nothing to say.
struct NetworkFacts {
    std::string announcedAs; // the own receiver; empty when it is not announced
    std::vector<FoundService> found;
};
std::vector<Check> networkChecks(const NetworkFacts& facts, const Bilingual& text);

} // namespace lumbrine
