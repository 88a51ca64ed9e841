#include "platform/linux/rtmidi_names.h"

#include <algorithm>

namespace lumbrine {

namespace {

bool isNumber(std::string_view text) {
    return !text.empty() && std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
}

// ALSA's address of the port, client number and port number.
bool isAddress(std::string_view text) {
    const std::size_t colon = text.find(':');
    return colon != std::string_view::npos && isNumber(text.substr(0, colon)) && isNumber(text.substr(colon + 1));
}

} // namespace

bool hasShortName(std::string_view listed, std::string_view shortName) {
    const std::size_t lastBlank = listed.rfind(' ');
    if (lastBlank != std::string_view::npos && isAddress(listed.substr(lastBlank + 1)))
        listed = listed.substr(0, lastBlank);
    if (!listed.ends_with(shortName)) return false;
    listed.remove_suffix(shortName.size());
    return listed.ends_with(':');
}

} // namespace lumbrine
