#include "platform/posix/network_watch.h"

#include "platform/posix/address_events.h"

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <utility>

namespace lumbrine {

namespace {

void closeIfOpen(int& fd) {
    if (fd >= 0) ::close(std::exchange(fd, -1));
}

} // namespace

NetworkWatch::NetworkWatch(Runtime& runtime, std::function<void()> observer)
    : runtime(runtime), changed(std::make_shared<const std::function<void()>>(std::move(observer))),
      events(openAddressEvents()) {
    if (events >= 0 && ::pipe(ending.data()) == 0) thread = runtime.startThread("network", [this] { watch(); });
}

NetworkWatch::~NetworkWatch() {
    closeIfOpen(ending[1]);
    thread.reset();
    closeIfOpen(ending[0]);
    closeIfOpen(events);
}

void NetworkWatch::watch() {
    while (waitForMessage(true)) {
        if (!readMessage()) continue;
        while (waitForMessage(false))
            readMessage();
        runtime.postMain([weak = std::weak_ptr(changed)] {
            if (const auto call = weak.lock()) (*call)();
        });
    }
}

// Returns false when the watch ends, and without `forEver` also when nothing has arrived for the settling time.
bool NetworkWatch::waitForMessage(bool forEver) const {
    const auto limit = std::chrono::duration_cast<std::chrono::milliseconds>(settling);
    std::array<pollfd, 2> sources{
        {{.fd = ending[0], .events = POLLIN, .revents = 0}, {.fd = events, .events = POLLIN, .revents = 0}}};
    const int ready = ::poll(sources.data(), sources.size(), forEver ? -1 : static_cast<int>(limit.count()));
    if (ready < 0) return errno == EINTR;
    return ready > 0 && sources[0].revents == 0;
}

// Returns true when it is about an address. A full buffer loses messages, which may have been.
bool NetworkWatch::readMessage() const {
    alignas(8) std::array<std::uint8_t, longestAddressEvent> buffer;
    const auto received = ::recv(events, buffer.data(), buffer.size(), MSG_DONTWAIT);
    if (received < 0) return errno == ENOBUFS;
    return tellsOfAddresses(std::span(buffer).first(static_cast<std::size_t>(received)));
}

} // namespace lumbrine
