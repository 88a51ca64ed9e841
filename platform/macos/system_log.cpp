#include "platform/macos/system_log.h"

#include <os/log.h>

namespace lumbrine {

void writeToSystemLog(const std::string& line) {
    static const os_log_t log = os_log_create("com.tarnwick.lumbrine", "activity");
    os_log(log, "%{public}s", line.c_str()); // the lines contain track names and addresses, and no secrets
}

} // namespace lumbrine
