#include "platform/posix/line_input.h"

#include "platform/posix/os_thread.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <utility>

namespace lumbrine {

LineInput::LineInput(int fileDescriptor, std::function<void(std::string)> callback)
    : input(fileDescriptor), callback(std::move(callback)) {
    if (pipe(wakePipe) != 0) return; // out of descriptors: without a way to end the thread, do not start it
    for (const int end : wakePipe)
        fcntl(end, F_SETFD, FD_CLOEXEC);
    thread = std::thread([this] { read(); });
}

LineInput::~LineInput() {
    if (!thread.joinable()) return;
    close(wakePipe[1]);
    thread.join();
    close(wakePipe[0]);
}

bool LineInput::waitForInput() const {
    std::array<pollfd, 2> watched{{{input, POLLIN, 0}, {wakePipe[0], POLLIN, 0}}};
    while (poll(watched.data(), watched.size(), -1) < 0)
        if (errno != EINTR) return false;
    return watched[1].revents == 0;
}

void LineInput::read() {
    nameThisThread("line input");
    std::string partial;
    std::array<char, 4096> chunk;
    while (waitForInput()) {
        const ssize_t count = ::read(input, chunk.data(), chunk.size());
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) {
            if (!partial.empty()) callback(std::move(partial));
            return;
        }
        partial.append(chunk.data(), static_cast<std::size_t>(count));
        for (std::size_t end = partial.find('\n'); end != std::string::npos; end = partial.find('\n')) {
            callback(partial.substr(0, end));
            partial.erase(0, end + 1);
        }
    }
}

} // namespace lumbrine
