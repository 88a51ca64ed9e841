#include "platform/linux/local_questions.h"

#include "platform/posix/os_thread.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstddef>
#include <cstring>
#include <memory>
#include <utility>

namespace lumbrine {

namespace {

constexpr int backlog = 4;
constexpr std::chrono::milliseconds pauseWithoutDescriptors{100};

// Each message of such a socket arrives as one, so a question and an answer need no mark at their ends.
int openSocket() {
    return ::socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0);
}

struct AbstractAddress {
    explicit AbstractAddress(const std::string& wanted) {
        const std::string name = wanted + "-" + std::to_string(::geteuid());
        system.sun_family = AF_UNIX;
        const std::size_t fitting = std::min(name.size(), sizeof system.sun_path - 1);
        std::memcpy(system.sun_path + 1, name.data(), fitting); // the first byte stays 0
        length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + fitting);
    }
    const sockaddr* get() const { return reinterpret_cast<const sockaddr*>(&system); }

    sockaddr_un system{};
    socklen_t length;
};

int listenAt(const std::string& name) {
    const int fd = openSocket();
    const AbstractAddress address(name);
    if (fd >= 0 && ::bind(fd, address.get(), address.length) == 0 && ::listen(fd, backlog) == 0) return fd;
    if (fd >= 0) ::close(fd);
    return -1;
}

bool isOfThisUser(int fd) {
    ucred peer{};
    socklen_t length = sizeof peer;
    return ::getsockopt(fd, SOL_SOCKET, SO_PEERCRED, &peer, &length) == 0 && peer.uid == ::geteuid();
}

void setPatience(int fd, Duration limit) {
    const auto whole = std::chrono::duration_cast<std::chrono::seconds>(limit);
    const auto rest = std::chrono::duration_cast<std::chrono::microseconds>(limit - whole);
    const timeval time{.tv_sec = static_cast<time_t>(whole.count()), .tv_usec = static_cast<suseconds_t>(rest.count())};
    ::setsockopt(fd, SOL_SOCKET, SO_RCVTIMEO, &time, sizeof time);
    ::setsockopt(fd, SOL_SOCKET, SO_SNDTIMEO, &time, sizeof time); // for `connect`, while others are waiting
}

// Closed when the last copy of a Reply goes.
struct Connection {
    explicit Connection(int fd) : fd(fd) {}
    ~Connection() { ::close(fd); }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    const int fd;
};

} // namespace

LocalQuestions::LocalQuestions(const std::string& name, std::function<void(const std::string&, Reply)> asked)
    : asked(std::move(asked)), listener(listenAt(name)) {
    if (listener >= 0) thread = std::thread([this] { serve(); });
}

LocalQuestions::~LocalQuestions() {
    ending = true;
    if (listener < 0) return;
    ::shutdown(listener, SHUT_RDWR);
    thread.join();
    ::close(listener);
}

void LocalQuestions::serve() {
    nameThisThread("questions");
    while (!ending) {
        const int fd = ::accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
        if (fd < 0) {
            if (!ending) std::this_thread::sleep_for(pauseWithoutDescriptors);
            continue;
        }
        const auto connection = std::make_shared<Connection>(fd);
        if (!isOfThisUser(fd)) continue;
        setPatience(fd, patience);
        std::array<char, longestQuestion> question;
        const auto received = ::recv(fd, question.data(), question.size(), 0);
        if (received <= 0) continue;
        asked(std::string(question.data(), static_cast<std::size_t>(received)),
              [connection](const std::string& answer) {
                  const std::size_t length = std::min(answer.size(), longestAnswer);
                  ::send(connection->fd, answer.data(), length, MSG_DONTWAIT | MSG_NOSIGNAL);
              });
    }
}

std::expected<std::string, NoAnswer> askLocally(const std::string& name, const std::string& question, Duration limit) {
    const Connection connection(openSocket());
    const AbstractAddress address(name);
    setPatience(connection.fd, limit);
    if (::connect(connection.fd, address.get(), address.length) != 0)
        return std::unexpected(errno == EAGAIN ? NoAnswer::silent : NoAnswer::nobodyThere);
    if (!isOfThisUser(connection.fd)) return std::unexpected(NoAnswer::nobodyThere);
    ::send(connection.fd, question.data(), question.size(), MSG_NOSIGNAL);
    std::string answer(LocalQuestions::longestAnswer, '\0');
    const auto received = ::recv(connection.fd, answer.data(), answer.size(), 0);
    if (received <= 0) return std::unexpected(NoAnswer::silent);
    answer.resize(static_cast<std::size_t>(received));
    return answer;
}

} // namespace lumbrine
