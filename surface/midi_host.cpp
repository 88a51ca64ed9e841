#include "surface/midi_host.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace lumbrine {

namespace {

constexpr Duration presenceInterval = seconds(0.12);
constexpr std::uint8_t systemReset = 0xFF;

std::expected<void, MIDIError> check(MIDIStatus status, std::string_view what) {
    if (status == 0) return {};
    return std::unexpected(MIDIError{status, std::string(what) + " failed: " + std::to_string(status)});
}

} // namespace

MIDIHost::MIDIHost(Runtime& runtime, MIDIServices& services, std::string name, std::int32_t srcUID, std::int32_t dstUID)
    : name(std::move(name)), srcUID(srcUID), dstUID(dstUID), runtime(runtime), services(services) {}

std::expected<void, MIDIError> MIDIHost::start() {
    if (client == 0) {
        auto result = check(services.createClient(name, client), "MIDIClientCreateWithBlock");
        if (!result) return result;
    }
    if (source == 0) {
        MIDIEndpointRef newSource = 0;
        auto result = check(services.createSource(client, name, newSource), "MIDISourceCreate");
        if (!result) return result;
        source = newSource;
    }
    if (destination != 0) return {};

    services.onReturn(client, [weak = weak_from_this()] {
        const auto host = weak.lock();
        if (host && host->onReturn) host->onReturn();
    });
    // The services may call `read` until they end, which may be after this host is gone.
    auto read = [weak = weak_from_this()](ByteView packet) {
        const auto host = weak.lock();
        if (host && host->onIncoming) host->onIncoming(packet);
    };
    auto result =
        check(services.createDestination(client, name, std::move(read), destination), "MIDIDestinationCreateWithBlock");
    if (!result) return result;

    identify(source, srcUID);
    identify(destination, dstUID);
    return {};
}

void MIDIHost::identify(MIDIEndpointRef endpoint, std::int32_t uniqueID) {
    if (services.setUniqueID(endpoint, uniqueID) == 0) return;
    runtime.backgroundAfter(idRetry, [weak = weak_from_this(), endpoint, uniqueID] {
        const auto host = weak.lock();
        if (!host) return;
        const auto result = check(host->services.setUniqueID(endpoint, uniqueID), "MIDIObjectSetIntegerProperty");
        if (!result && host->onIDRefused) host->onIDRefused(result.error());
    });
}

void MIDIHost::send(ByteView message) {
    const MIDIEndpointRef from = source;
    if (from != 0 && !message.empty() && services.received(from, message) != 0) ++droppedCount;
}

std::optional<bool> MIDIHost::isTaken() const {
    if (source == 0 || destination == 0) return std::nullopt;
    const auto heard = services.isConnected(source), spokenTo = services.isConnected(destination);
    if (!heard || !spokenTo) return std::nullopt;
    return *heard && *spokenTo;
}

void MIDIHost::announcePresence(int times) {
    const int count = std::max(times, 1);
    for (int i = 0; i < count; ++i) {
        runtime.backgroundAfter(i * presenceInterval, [weak = weak_from_this()] {
            if (const auto host = weak.lock()) host->send(std::array{systemReset});
        });
    }
}

} // namespace lumbrine
