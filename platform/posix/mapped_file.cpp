#include "platform/posix/mapped_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <mutex>
#include <system_error>
#include <utility>

namespace lumbrine {

namespace {

using Problem = MappedFile::Problem;

constexpr std::size_t leastPage = 4096;

// The signal handler's. A store to a mapped byte that the disk does not have raises SIGBUS on the thread that stores.
std::atomic<std::uintptr_t> guardedBegin{0};
std::atomic<std::size_t> guardedSize{0};
std::atomic<bool> guardedIsLost{false};
struct sigaction actionBefore;

// Puts memory of the process in the place of the file. mmap is one system call, here as elsewhere.
void onBusError(int, siginfo_t* info, void*) {
    const auto address = reinterpret_cast<std::uintptr_t>(info->si_addr);
    const std::uintptr_t begin = guardedBegin;
    const std::size_t size = guardedSize;
    void* const place = reinterpret_cast<void*>(begin); // NOLINT(performance-no-int-to-ptr)
    if (begin != 0 && address >= begin && address - begin < size &&
        ::mmap(place, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED, -1, 0) == place) {
        guardedIsLost = true;
        return; // the store is repeated
    }
    ::sigaction(SIGBUS, &actionBefore, nullptr); // not ours: the access is repeated and meets what there was before
}

void guard(std::span<std::uint64_t> content) {
    static std::once_flag once;
    std::call_once(once, [] {
        struct sigaction action{};
        action.sa_sigaction = onBusError;
        action.sa_flags = SA_SIGINFO;
        ::sigaction(SIGBUS, &action, &actionBefore);
    });
    guardedIsLost = false;
    guardedSize = content.size_bytes();
    guardedBegin = reinterpret_cast<std::uintptr_t>(content.data());
}

Problem problemOf(int error) {
    return error == ENOSPC || error == EDQUOT || error == EFBIG ? Problem::noRoom : Problem::notWritten;
}

// Zeros that are really written: bytes of a file that the disk has no place for cannot be stored later.
int fillWithZeros(int fd, std::size_t size) {
    if (::ftruncate(fd, 0) != 0) return errno;
    static constexpr std::array<std::byte, 65536> zeros{};
    for (std::size_t written = 0; written < size;) {
        const std::size_t piece = std::min(zeros.size(), size - written);
        const auto result = ::pwrite(fd, zeros.data(), piece, static_cast<off_t>(written));
        if (result < 0 && errno != EINTR) return errno;
        if (result > 0) written += static_cast<std::size_t>(result);
    }
    return 0;
}

// Closes the descriptor unless it was taken.
struct Descriptor {
    ~Descriptor() {
        if (fd >= 0) ::close(fd);
    }
    int take() { return std::exchange(fd, -1); }

    int fd;
};

} // namespace

std::expected<std::unique_ptr<MappedFile>, Problem> MappedFile::open(const std::filesystem::path& path,
                                                                     std::size_t size) {
    std::error_code error;
    if (std::filesystem::create_directories(path.parent_path(), error))
        std::filesystem::permissions(path.parent_path(), std::filesystem::perms::owner_all, error);
    Descriptor file{::open(path.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK, 0600)};
    if (file.fd < 0) return std::unexpected(problemOf(errno));
    if (::flock(file.fd, LOCK_EX | LOCK_NB) != 0) return std::unexpected(Problem::inUse);
    struct stat status{};
    if (::fstat(file.fd, &status) != 0 || !S_ISREG(status.st_mode)) return std::unexpected(Problem::notWritten);
    ::fchmod(file.fd, 0600);
    if (static_cast<std::uint64_t>(status.st_size) != size) {
        if (const int failure = fillWithZeros(file.fd, size)) {
            const bool isEmptied = ::ftruncate(file.fd, 0) == 0;
            return std::unexpected(isEmptied ? problemOf(failure) : Problem::notWritten);
        }
    }
    void* const place = ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, file.fd, 0);
    if (place == MAP_FAILED) return std::unexpected(Problem::notWritten);
    const std::span words(static_cast<std::uint64_t*>(place), size / sizeof(std::uint64_t));
    return std::unique_ptr<MappedFile>(new MappedFile(file.take(), words));
}

MappedFile::MappedFile(int descriptor, std::span<std::uint64_t> mapped) : fd(descriptor), content(mapped) {
    guard(content);
}

MappedFile::~MappedFile() {
    auto mine = reinterpret_cast<std::uintptr_t>(content.data());
    guardedBegin.compare_exchange_strong(mine, 0);
    ::munmap(content.data(), content.size_bytes());
    ::close(fd);
}

bool MappedFile::isLost() const {
    return guardedBegin == reinterpret_cast<std::uintptr_t>(content.data()) && guardedIsLost;
}

void MappedFile::expectStores(std::size_t offset, std::size_t size) {
    if (isLost()) return; // memory that is let go of would be the file's again no more, and zeros
    const std::size_t wordsAPage = leastPage / sizeof(std::uint64_t);
    ::madvise(content.data(), content.size_bytes(), MADV_DONTNEED);
    for (std::size_t page = 0; page < size / leastPage; ++page) {
        std::uint64_t& word = content[(offset / leastPage + page) * wordsAPage % content.size()];
        // The page has to be written to, and what another thread stores meanwhile must not be undone.
        std::uint64_t value = __atomic_load_n(&word, __ATOMIC_RELAXED);
        __atomic_compare_exchange_n(&word, &value, value, false, __ATOMIC_RELAXED, __ATOMIC_RELAXED);
    }
}

} // namespace lumbrine
