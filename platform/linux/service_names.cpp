#include "platform/linux/service_names.h"

#include "base/utf8.h"

namespace lumbrine {

std::string withoutFinalDot(std::string_view name) {
    if (name.ends_with('.')) name.remove_suffix(1);
    return std::string(name);
}

std::string fittingServiceName(std::string_view name) {
    constexpr std::size_t longestLabel = 63;
    return std::string(utf8Clamp(name, longestLabel));
}

} // namespace lumbrine
