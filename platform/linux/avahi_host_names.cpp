#include "platform/linux/avahi_host_names.h"

#include "platform/linux/avahi_session.h"

#include <avahi-client/lookup.h>
#include <avahi-common/address.h>

#include <string_view>
#include <utility>

namespace lumbrine {

namespace {

// "Annas-iPhone.local" is "Annas-iPhone".
std::string firstLabel(std::string_view host) {
    return std::string(host.substr(0, host.find('.')));
}

class AvahiHostNameSearch final : public HostNameSearch, private AvahiSession::User {
public:
    AvahiHostNameSearch(const AvahiAddress& address, std::function<void(const std::string&)> found)
        : address(address), found(std::move(found)), session(*this) {}

private:
    void up(AvahiClient* client) override {
        const auto onAnswer = [](AvahiAddressResolver* resolver, AvahiIfIndex /*interface*/, AvahiProtocol /*protocol*/,
                                 AvahiResolverEvent event, const AvahiAddress* /*address*/, const char* name,
                                 AvahiLookupResultFlags /*flags*/, void* self) {
            avahi_address_resolver_free(resolver);
            if (event == AVAHI_RESOLVER_FOUND) static_cast<AvahiHostNameSearch*>(self)->tell(firstLabel(name));
        };
        if (std::exchange(asked, true)) return;
        avahi_address_resolver_new(client, AVAHI_IF_UNSPEC, AVAHI_PROTO_UNSPEC, &address, AvahiLookupFlags{}, onAnswer,
                                   this);
    }

    void pause() override {}
    void down() override {}

    void tell(const std::string& name) {
        if (!name.empty()) found(name);
    }

    const AvahiAddress address;
    const std::function<void(const std::string&)> found;
    bool asked = false;   // once: nobody waits for the name
    AvahiSession session; // last member, so destroyed first: afterwards nothing is called any more
};

} // namespace

std::unique_ptr<HostNameSearch> AvahiHostNames::find(const std::string& address,
                                                     std::function<void(const std::string& name)> found) {
    AvahiAddress parsed;
    if (avahi_address_parse(address.c_str(), AVAHI_PROTO_UNSPEC, &parsed) == nullptr) return nullptr;
    return std::make_unique<AvahiHostNameSearch>(parsed, std::move(found));
}

} // namespace lumbrine
