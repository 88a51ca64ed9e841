#include "platform/posix/line_output.h"

#include "platform/posix/os_thread.h"

#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <utility>

namespace lumbrine {

LineOutput::LineOutput(int fileDescriptor, std::function<std::string(std::size_t)> missingNotice)
    : output(fileDescriptor), missingLine(std::move(missingNotice)), thread([this] { work(); }) {}

LineOutput::~LineOutput() {
    {
        const std::lock_guard lock(mutex);
        ending = true;
        changed.notify_one();
    }
    thread.join();
}

void LineOutput::print(const std::string& line) {
    const std::lock_guard lock(mutex);
    if (waiting.size() >= capacity) {
        ++missing;
        return;
    }
    noteMissing();
    waiting.push(line);
    changed.notify_one();
}

std::size_t LineOutput::backlog() {
    const std::lock_guard lock(mutex);
    return waiting.size() + missing;
}

void LineOutput::flush() {
    std::unique_lock lock(mutex);
    written.wait(lock, [this] { return waiting.empty() && !writing; });
}

void LineOutput::noteMissing() {
    if (missing > 0) waiting.push(missingLine(std::exchange(missing, 0)));
}

void LineOutput::work() {
    nameThisThread("log");
    // A reader that goes makes `write` fail. Unblocked, the signal would end the program.
    sigset_t brokenPipe;
    sigemptyset(&brokenPipe);
    sigaddset(&brokenPipe, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &brokenPipe, nullptr);

    std::unique_lock lock(mutex);
    for (;;) {
        changed.wait(lock, [this] { return ending || !waiting.empty(); });
        if (waiting.empty()) return;
        std::string line = waiting.pop();
        writing = true;
        lock.unlock();
        line += '\n'; // one write for each line, so that those of other programs do not mix with it
        write(line);
        lock.lock();
        writing = false;
        if (waiting.empty()) noteMissing();
        if (waiting.empty()) written.notify_all();
    }
}

void LineOutput::write(std::string_view text) const {
    while (!text.empty()) {
        const ssize_t count = ::write(output, text.data(), text.size());
        if (count >= 0) {
            text.remove_prefix(static_cast<std::size_t>(count));
        } else if (errno == EAGAIN) { // another program that shares the descriptor has made it non-blocking
            pollfd watched{output, POLLOUT, 0};
            poll(&watched, 1, -1);
        } else if (errno != EINTR) {
            return;
        }
    }
}

} // namespace lumbrine
