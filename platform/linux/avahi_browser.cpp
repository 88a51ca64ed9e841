#include "platform/linux/avahi_browser.h"

#include "platform/linux/avahi_session.h"
#include "platform/linux/found_services.h"
#include "platform/linux/service_names.h"

#include <avahi-client/lookup.h>
#include <avahi-common/address.h>
#include <netinet/in.h>

#include <array>
#include <list>
#include <string>
#include <utility>

namespace lumbrine {

namespace {

bool isLinkLocal(const AvahiAddress& address) {
    const std::uint8_t* bytes = address.data.ipv6.address;
    return address.proto == AVAHI_PROTO_INET6 && bytes[0] == 0xFE && (bytes[1] & 0xC0) == 0x80;
}

std::string numericHost(const AvahiAddress& address, AvahiIfIndex interface) {
    std::array<char, AVAHI_ADDRESS_STR_MAX> text{};
    avahi_address_snprint(text.data(), text.size(), &address);
    std::string host = text.data();
    if (isLinkLocal(address)) host += "%" + std::to_string(interface);
    return host;
}

class AvahiSearch final : public ServiceSearch, private AvahiSession::User {
public:
    AvahiSearch(const std::string& serviceType, std::function<void(const FoundService&)> found)
        : type(withoutFinalDot(serviceType)), found(std::move(found)), session(*this) {}

private:
    // A pending request for the address of a service that was heard over one interface and protocol.
    struct Question {
        AvahiSearch& search;
        AvahiClient* client;
        AvahiIfIndex interface;
        AvahiProtocol protocol;
        std::string name;
        std::string domain;
        AvahiProtocol wanted; // the kind of address
    };

    void up(AvahiClient* client) override {
        const auto onEvent = [](AvahiServiceBrowser* /*browser*/, AvahiIfIndex interface, AvahiProtocol protocol,
                                AvahiBrowserEvent event, const char* name, const char* /*type*/, const char* domain,
                                AvahiLookupResultFlags /*flags*/, void* self) {
            static_cast<AvahiSearch*>(self)->heard(event, interface, protocol, name, domain);
        };
        browsedClient = client;
        if (browsing) return;
        browsing = avahi_service_browser_new(client, AVAHI_IF_UNSPEC, AVAHI_PROTO_UNSPEC, type.c_str(), nullptr,
                                             AvahiLookupFlags{}, onEvent, this) != nullptr;
        if (!browsing) session.startOver();
    }

    void pause() override {}

    void down() override {
        browsing = false;
        services.clear();
        questions.clear();
    }

    void heard(AvahiBrowserEvent event, AvahiIfIndex interface, AvahiProtocol protocol, const char* name,
               const char* domain) {
        if (event == AVAHI_BROWSER_NEW && services.appeared(name)) {
            ask({*this, browsedClient, interface, protocol, name, domain, AVAHI_PROTO_INET});
        } else if (event == AVAHI_BROWSER_REMOVE) {
            services.disappeared(name);
        } else if (event == AVAHI_BROWSER_FAILURE) {
            session.startOver();
        }
    }

    void ask(Question asked) {
        questions.push_back(std::move(asked));
        Question& question = questions.back();
        const auto onAnswer = [](AvahiServiceResolver* resolver, AvahiIfIndex interface, AvahiProtocol /*protocol*/,
                                 AvahiResolverEvent event, const char* /*name*/, const char* /*type*/,
                                 const char* /*domain*/, const char* /*host*/, const AvahiAddress* address,
                                 std::uint16_t port, AvahiStringList* /*texts*/, AvahiLookupResultFlags /*flags*/,
                                 void* about) {
            avahi_service_resolver_free(resolver);
            Question& answered = *static_cast<Question*>(about);
            const bool resolved = event == AVAHI_RESOLVER_FOUND && address != nullptr;
            answered.search.answered(answered, resolved ? numericHost(*address, interface) : "", port);
        };
        if (avahi_service_resolver_new(question.client, question.interface, question.protocol, question.name.c_str(),
                                       type.c_str(), question.domain.c_str(), question.wanted, AvahiLookupFlags{},
                                       onAnswer, &question) == nullptr)
            questions.pop_back();
    }

    // An empty host means that the service has no address of the wanted kind: after IPv4, IPv6 is tried.
    void answered(Question& question, const std::string& host, std::uint16_t port) {
        const Question done = question;
        questions.remove_if([&question](const Question& other) { return &other == &question; });
        if (!host.empty()) {
            if (services.resolved(done.name)) found({done.name, host, port});
        } else if (done.wanted == AVAHI_PROTO_INET) {
            Question other = done;
            other.wanted = AVAHI_PROTO_INET6;
            ask(std::move(other));
        }
    }

    const std::string type;
    const std::function<void(const FoundService&)> found;
    AvahiClient* browsedClient = nullptr;
    bool browsing = false;
    FoundServices services;
    std::list<Question> questions; // a list, because resolvers keep pointers to the entries
    AvahiSession session;          // last member, so destroyed first: afterwards nothing is called any more
};

} // namespace

std::unique_ptr<ServiceSearch> AvahiBrowser::browse(const std::string& type,
                                                    std::function<void(const FoundService&)> found) {
    if (!AvahiSession::daemonAnswers()) return nullptr;
    return std::make_unique<AvahiSearch>(type, std::move(found));
}

} // namespace lumbrine
