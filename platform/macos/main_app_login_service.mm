#include "platform/macos/main_app_login_service.h"

#include "platform/macos/foundation_text.h"

// The methods of SMAppService that are called here.
@protocol LumbrineMainAppService <NSObject>
+ (id<LumbrineMainAppService>)mainAppService;
@property(readonly) NSInteger status;
- (BOOL)registerAndReturnError:(NSError**)error;
- (BOOL)unregisterAndReturnError:(NSError**)error;
@end

namespace lumbrine {

namespace {

constexpr NSInteger enabled = 1;

// Nil when the system does not have the class.
id<LumbrineMainAppService> mainAppService() {
    const Class<LumbrineMainAppService> service = NSClassFromString(@"SMAppService");
    return [service mainAppService];
}

} // namespace

bool MainAppLoginService::isEnabled() {
    @autoreleasepool {
        return mainAppService().status == enabled;
    }
}

std::expected<void, std::string> MainAppLoginService::registerApplication() {
    return change(true);
}

std::expected<void, std::string> MainAppLoginService::unregisterApplication() {
    return change(false);
}

std::expected<void, std::string> MainAppLoginService::change(bool on) {
    @autoreleasepool {
        const id<LumbrineMainAppService> service = mainAppService();
        if (service == nil) return std::unexpected(text("needs macOS 13 or later", "macOS 13 以降が必要です"));
        NSError* error = nil;
        const bool done = on ? [service registerAndReturnError:&error] : [service unregisterAndReturnError:&error];
        if (done) return {};
        return std::unexpected(utf8Of(error.localizedDescription));
    }
}

} // namespace lumbrine
