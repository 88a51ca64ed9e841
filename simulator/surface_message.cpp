#include "simulator/surface_message.h"

namespace lumbrine {

namespace {

constexpr std::uint8_t noteOnStatus = 0x90;
constexpr std::uint8_t controlChangeStatus = 0xB0;
constexpr std::uint8_t firstRealtime = 0xF8;
constexpr std::uint8_t systemReset = 0xFF;
constexpr int lastZone = 0x1D;

// Bit 6 means clockwise; bits 0-5 are the number of clicks.
int clicksOf(std::uint8_t value) {
    const int magnitude = value & 0x3F;
    return (value & 0x40) != 0 ? magnitude : -magnitude;
}

} // namespace

void SurfaceDecoder::feed(ByteView bytes, const std::function<void(const SurfaceMessage&)>& take) {
    for (const std::uint8_t byte : bytes) {
        const auto message = byte >= 0x80 ? status(byte) : data(byte);
        if (message) take(*message);
    }
}

void SurfaceDecoder::forget() {
    *this = SurfaceDecoder();
}

std::optional<SurfaceMessage> SurfaceDecoder::status(std::uint8_t byte) {
    if (byte == systemReset) {
        forget();
        return from_surface::Reset{};
    }
    if (byte >= firstRealtime) return std::nullopt;
    runningStatus = byte == noteOnStatus || byte == controlChangeStatus ? byte : 0;
    first.reset();
    return std::nullopt;
}

std::optional<SurfaceMessage> SurfaceDecoder::data(std::uint8_t byte) {
    if (runningStatus == 0) return std::nullopt;
    if (!first) {
        first = byte;
        return std::nullopt;
    }
    const std::uint8_t number = *first;
    first.reset();
    if (runningStatus == controlChangeStatus) return controller(number, byte);
    if (number == 0 && byte == 0x7F) return from_surface::PingReply{};
    return std::nullopt;
}

std::optional<SurfaceMessage> SurfaceDecoder::controller(std::uint8_t number, std::uint8_t value) {
    const int low = number & 0x0F;
    switch (number & 0xF0) {
    case 0x00:
        if (low < 8) faderHigh[static_cast<std::size_t>(low)] = value + 1;
        if (low == 0x0F) zone = value <= lastZone ? std::optional<int>(value) : std::nullopt;
        if (low == 0x0D && clicksOf(value) != 0) return from_surface::JogTurned{clicksOf(value)};
        return std::nullopt;
    case 0x20:
        if (low < 8 && faderHigh[static_cast<std::size_t>(low)] > 0) {
            const int high = faderHigh[static_cast<std::size_t>(low)] - 1;
            return from_surface::FaderMoved{low, FaderValue::ofHalves(static_cast<std::uint8_t>(high), value)};
        }
        if (low == 0x0F && zone) {
            const int port = value & 0x0F;
            const int state = value >> 4;
            if (port < 8 && (state == 4 || state == 0)) return from_surface::SwitchEdge{*zone, port, state == 4};
        }
        return std::nullopt;
    case 0x40:
        if (low < 12 && clicksOf(value) != 0) return from_surface::VPotTurned{low, clicksOf(value)};
        return std::nullopt;
    default:
        return std::nullopt;
    }
}

} // namespace lumbrine
