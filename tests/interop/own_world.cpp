#include "tests/interop/own_world.h"

#include "tests/interop/waiting.h"

#include <fcntl.h>
#include <net/if.h>
#include <sched.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace lumbrine::interop {

namespace {

constexpr std::chrono::minutes longestTurn{2};

bool entered = false;

// A user namespace gives everybody the right to the other two. In it the user is root.
bool enterAsRootOfItsOwn() {
    const uid_t user = ::getuid();
    const gid_t group = ::getgid();
    if (::unshare(CLONE_NEWUSER | CLONE_NEWNET | CLONE_NEWNS) != 0) return false;
    std::ofstream("/proc/self/setgroups") << "deny";
    std::ofstream("/proc/self/uid_map") << "0 " << user << " 1";
    std::ofstream("/proc/self/gid_map") << "0 " << group << " 1";
    return true;
}

void bringUpLoopback() {
    const int fd = ::socket(AF_INET, SOCK_DGRAM, 0);
    ifreq request{};
    std::copy_n("lo", 3, request.ifr_name);
    request.ifr_flags = IFF_UP | IFF_RUNNING;
    ::ioctl(fd, SIOCSIFFLAGS, &request);
    ::close(fd);
}

void empty(const char* folder) {
    if (::mount("tmpfs", folder, "tmpfs", 0, nullptr) != 0)
        throw std::runtime_error("no memory file system at " + std::string(folder));
}

// Only opened when it is there already: it may be another user's, and reading is enough for a lock.
int openLockFile(const std::string& name) {
    const std::filesystem::path path = std::filesystem::temp_directory_path() / ("lumbrine-tests-" + name + ".lock");
    const int existing = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    return existing >= 0 ? existing : ::open(path.c_str(), O_RDONLY | O_CREAT | O_CLOEXEC, 0644);
}

} // namespace

void enterOwnWorld() {
    entered = ::unshare(CLONE_NEWNET | CLONE_NEWNS) == 0 || enterAsRootOfItsOwn();
    if (!entered) return;
    bringUpLoopback();
    ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr); // what is mounted here is seen nowhere else
    empty("/dev/shm");
    empty("/run");
}

bool inOwnWorld() {
    return entered;
}

Turn::Turn(const std::string& shared) {
    if (inOwnWorld()) return;
    lockFile = openLockFile(shared);
    const auto take = [this] { return ::flock(*lockFile, LOCK_EX | LOCK_NB) == 0; };
    if (!waitUntil(take, longestTurn)) throw std::runtime_error("other tests keep " + shared);
}

Turn::~Turn() {
    if (lockFile) ::close(*lockFile); // and with it the lock; the file stays for the next one
}

} // namespace lumbrine::interop
