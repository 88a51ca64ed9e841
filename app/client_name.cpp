#include "app/client_name.h"

#include "app/diagnosis.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace lumbrine {

namespace {

constexpr std::string_view partOfAddresses = "0123456789abcdefABCDEF.:%";

// The one in control comes first in the description: "192.168.1.7 (+1 waiting)".
std::string addressIn(const std::string& description) {
    const std::string plain = withPlainAddresses(description);
    return plain.substr(0, plain.find_first_not_of(partOfAddresses));
}

bool isOfThisComputer(const std::string& address, const PublishedState& published) {
    return address == published.localIP || address.starts_with("127.") || address == "::1";
}

bool isPartOfAddress(const std::string& text, std::size_t at) {
    return at < text.size() && partOfAddresses.substr(0, 10).find(text[at]) != std::string_view::npos;
}

} // namespace

ClientName::ClientName(Runtime& runtime, HostNames* hosts, std::function<void()> learned)
    : runtime(runtime), hosts(hosts), learned(std::move(learned)) {}

void ClientName::look(const PublishedState& published) {
    if (hosts == nullptr || published.health.announcement.state != LinkHealth::State::up) return;
    std::string client = addressIn(published.iosClientDesc);
    if (client.empty() || client == address || isOfThisComputer(client, published)) return;
    address = std::move(client);
    name.clear();
    search = hosts->find(address, [this, asked = address, alive = std::weak_ptr(life)](const std::string& answer) {
        runtime.postMain([this, asked, alive, answer] {
            if (!alive.lock() || asked != address) return;
            name = answer;
            learned();
        });
    });
}

std::string ClientName::in(std::string text) const {
    if (name.empty()) return text;
    for (std::size_t at = text.find(address); at != std::string::npos; at = text.find(address, at)) {
        const bool isLonger = (at > 0 && isPartOfAddress(text, at - 1)) || isPartOfAddress(text, at + address.size());
        if (!isLonger) text.replace(at, address.size(), name);
        at += isLonger ? address.size() : name.size();
    }
    return text;
}

} // namespace lumbrine
