#include "platform/macos/net_service_advertiser.h"

#include "platform/macos/foundation_text.h"

#include <utility>

// Delegate of one NSNetService. May outlive its owner, so it keeps the callbacks by value.
@interface LumbrineNetServiceListener : NSObject <NSNetServiceDelegate>
- (instancetype)initWithReports:(lumbrine::AnnouncementReports)given;
@end

@implementation LumbrineNetServiceListener {
    lumbrine::AnnouncementReports reports;
}

- (instancetype)initWithReports:(lumbrine::AnnouncementReports)given {
    self = [super init];
    if (self != nil) reports = std::move(given);
    return self;
}

- (void)netServiceDidPublish:(NSNetService*)sender {
    reports.published();
}

- (void)netService:(NSNetService*)sender didNotPublish:(NSDictionary<NSString*, NSNumber*>*)errors {
    reports.failed(errors[NSNetServicesErrorCode].intValue);
}

- (void)netServiceDidStop:(NSNetService*)sender {
    reports.stopped();
}
@end

namespace lumbrine {

namespace {

class NetServiceAttempt final : public AnnouncementAttempt {
public:
    NetServiceAttempt(const AdvertisedService& announced, AnnouncementReports reports)
        : listener([[LumbrineNetServiceListener alloc] initWithReports:std::move(reports)]) {
        @autoreleasepool {
            service = [[NSNetService alloc] initWithDomain:shownText(announced.domain)
                                                      type:shownText(announced.type)
                                                      name:shownText(announced.name)
                                                      port:announced.port];
            service.delegate = listener;
            [service publish];
        }
    }

    ~NetServiceAttempt() override {
        @autoreleasepool {
            service.delegate = nil;
            [service stop];
        }
    }

    NetServiceAttempt(const NetServiceAttempt&) = delete;
    NetServiceAttempt& operator=(const NetServiceAttempt&) = delete;

private:
    LumbrineNetServiceListener* const listener; // owned here: an NSNetService does not retain its delegate
    NSNetService* service = nil;
};

class KeptAdvertisement final : public Advertisement {
public:
    explicit KeptAdvertisement(std::shared_ptr<AnnouncementKeeper> keeper) : keeper(std::move(keeper)) {}
    ~KeptAdvertisement() override { keeper->end(); }

private:
    const std::shared_ptr<AnnouncementKeeper> keeper;
};

} // namespace

std::unique_ptr<Advertisement> NetServiceAdvertiser::publish(AdvertisedService service) {
    const auto begin = [](const AdvertisedService& announced, AnnouncementReports reports) {
        return std::make_unique<NetServiceAttempt>(announced, std::move(reports));
    };
    const auto refused = [this](int code) {
        if (onRefused) onRefused(code);
    };
    auto keeper = std::make_shared<AnnouncementKeeper>(runtime, begin, std::move(service), refused);
    keeper->start();
    keepers.push_back(keeper);
    return std::make_unique<KeptAdvertisement>(std::move(keeper));
}

void NetServiceAdvertiser::renew() {
    for (const auto& weak : keepers)
        if (const auto keeper = weak.lock()) keeper->renew();
}

} // namespace lumbrine
