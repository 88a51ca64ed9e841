#include "platform/posix/os_thread.h"

#include <pthread.h>

#include <string>

namespace lumbrine {

void nameThisThread(std::string_view name) {
    pthread_setname_np(std::string(name.substr(0, 15)).c_str());
}

struct StayOnThisCore::Before {};

StayOnThisCore::StayOnThisCore() = default;
StayOnThisCore::~StayOnThisCore() = default;

} // namespace lumbrine
