// What the system's calls return, in the form that the seams of this system use.
#pragma once

#include <sys/socket.h>
#include <sys/types.h>

#include <cerrno>

namespace lumbrine {

// The result, or -errno.
inline int orError(ssize_t result) {
    return result < 0 ? -errno : static_cast<int>(result);
}

inline int setSocketOption(int fd, int level, int option, int value) {
    return orError(::setsockopt(fd, level, option, &value, sizeof value));
}

} // namespace lumbrine
