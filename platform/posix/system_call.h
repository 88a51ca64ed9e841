// Converts the results of system calls to the convention of platform/api: a negative errno value means failure.
#pragma once

#include <sys/socket.h>
#include <sys/types.h>

#include <cerrno>

namespace lumbrine {

// Returns `result`, or -errno when it is negative.
inline int orError(ssize_t result) {
    return result < 0 ? -errno : static_cast<int>(result);
}

inline int setSocketOption(int fd, int level, int option, int value) {
    return orError(::setsockopt(fd, level, option, &value, sizeof value));
}

} // namespace lumbrine
