#include "simulator/packet_options.h"

namespace lumbrine {

std::optional<std::string> problemWith(const PacketOptions& options) {
    if (options.messagesPerPacket < 1) return "a packet holds at least 1 message";
    return std::nullopt;
}

} // namespace lumbrine
