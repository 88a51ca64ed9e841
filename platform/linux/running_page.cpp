#include "platform/linux/running_page.h"

#include <fcntl.h>
#include <unistd.h>

#include <fstream>

namespace lumbrine {

namespace {

std::string noticeIn(const std::string& stateFolder) {
    return stateFolder + "/web-page";
}

// A lock of the open file, so that closing another descriptor of it does not end the lock.
struct flock wholeFile() {
    struct flock lock{};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    return lock;
}

bool isLocked(int file) {
    struct flock lock = wholeFile();
    return ::fcntl(file, F_OFD_GETLK, &lock) == 0 && lock.l_type != F_UNLCK;
}

} // namespace

PageNotice::PageNotice(const std::string& stateFolder, const RunningPage& page)
    : path(noticeIn(stateFolder)), file(::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600)) {
    struct flock lock = wholeFile();
    const std::string text = std::string(page.secure ? "https " : "http ") + std::to_string(page.port) + " " +
                             std::to_string(page.receiverPort) + "\n";
    const bool written = ::fcntl(file, F_OFD_SETLK, &lock) == 0 && ::ftruncate(file, 0) == 0 &&
                         ::write(file, text.data(), text.size()) == static_cast<ssize_t>(text.size());
    if (written || file < 0) return;
    ::close(file);
    file = -1;
}

PageNotice::~PageNotice() {
    if (file < 0) return;
    ::unlink(path.c_str());
    ::close(file);
}

std::optional<RunningPage> readPageNotice(const std::string& stateFolder) {
    const std::string path = noticeIn(stateFolder);
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW);
    if (file < 0) return std::nullopt;
    const bool believed = isLocked(file);
    ::close(file);
    std::string scheme;
    RunningPage page{};
    std::ifstream text(path);
    if (!believed || !(text >> scheme >> page.port >> page.receiverPort)) return std::nullopt;
    page.secure = scheme == "https";
    return page;
}

std::string pageAddress(const EnvironmentLookup& environment, const std::string& host, std::uint16_t receiverPort) {
    const auto folder = stateFolderIn(environment);
    const auto page = folder ? readPageNotice(*folder) : std::nullopt;
    if (!page || page->receiverPort != receiverPort) return {};
    std::string key;
    std::ifstream(*folder + pageKeyName) >> key;
    return (page->secure ? "https://" : "http://") + host + ":" + std::to_string(page->port) + "/#" + key;
}

} // namespace lumbrine
