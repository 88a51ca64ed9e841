#include "platform/linux/avahi_advertiser.h"

#include "platform/linux/avahi_session.h"
#include "platform/linux/service_names.h"

#include <avahi-client/publish.h>
#include <avahi-common/alternative.h>
#include <avahi-common/error.h>
#include <avahi-common/malloc.h>

#include <functional>
#include <optional>
#include <string>
#include <utility>

namespace lumbrine {

namespace {

class AvahiAdvertisement final : public Advertisement, private AvahiSession::User {
public:
    explicit AvahiAdvertisement(const AdvertisedService& service)
        : domain(withoutFinalDot(service.domain)), type(withoutFinalDot(service.type)),
          wantedName(fittingServiceName(service.name)), port(service.port), onChange(service.onChange),
          name(wantedName), session(*this) {}

private:
    void up(AvahiClient* client) override {
        if (group == nullptr) {
            const auto onChange = [](AvahiEntryGroup* /*group*/, AvahiEntryGroupState state, void* self) {
                static_cast<AvahiAdvertisement*>(self)->changed(state);
            };
            group = avahi_entry_group_new(client, onChange, this);
        }
        if (group == nullptr) {
            session.startOver();
        } else {
            add();
        }
    }

    void absent() override { report({}); }

    void pause() override {
        report({});
        if (group != nullptr) avahi_entry_group_reset(group);
    }

    void down() override {
        group = nullptr;
        name = wantedName;
    }

    // A service of this computer with the same name is reported at once, as the result of adding. A service of another
    // computer is reported later, as a collision of the group (see `changed`).
    void add() {
        avahi_entry_group_reset(group);
        int result = addUnderName();
        while (result == AVAHI_ERR_COLLISION) {
            takeAnotherName();
            result = addUnderName();
        }
        if (result == 0) avahi_entry_group_commit(group);
    }

    int addUnderName() {
        return avahi_entry_group_add_service(group, AVAHI_IF_UNSPEC, AVAHI_PROTO_UNSPEC, AvahiPublishFlags{},
                                             name.c_str(), type.c_str(), domain.c_str(), nullptr, port, nullptr);
    }

    void takeAnotherName() {
        char* alternative = avahi_alternative_service_name(name.c_str());
        name = alternative;
        avahi_free(alternative);
    }

    void changed(AvahiEntryGroupState state) {
        if (state == AVAHI_ENTRY_GROUP_ESTABLISHED) {
            report(name);
        } else if (state == AVAHI_ENTRY_GROUP_COLLISION) {
            takeAnotherName();
            add();
        } else if (state == AVAHI_ENTRY_GROUP_FAILURE) {
            session.startOver();
        }
    }

    void report(const std::optional<std::string>& announcedAs) const {
        if (onChange) onChange(announcedAs);
    }

    const std::string domain;
    const std::string type;
    const std::string wantedName;
    const std::uint16_t port;
    const std::function<void(const std::optional<std::string>&)> onChange;

    std::string name; // the name being tried, or published
    AvahiEntryGroup* group = nullptr;
    AvahiSession session; // last member, so destroyed first: afterwards nothing is called any more
};

} // namespace

std::unique_ptr<Advertisement> AvahiAdvertiser::publish(AdvertisedService service) {
    return std::make_unique<AvahiAdvertisement>(service);
}

} // namespace lumbrine
