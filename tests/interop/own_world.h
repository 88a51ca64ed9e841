// A world of the test program's own, so that programs that run at the same time share nothing: a network with nothing
// but loopback, so ports and multicast are private; an empty /dev/shm, where JACK keeps the registry of its servers,
// their memory and sockets that are named after the client alone; and an empty /run, where Avahi and the system's
// message bus are found.
//
// A test program gets it by `MAIN interop_main` in its CMakeLists.txt.
#pragma once

#include <optional>
#include <string>

namespace lumbrine::interop {

// Moves this process and the children it will have into a world of their own. At the start of `main`. Does nothing
// where the system permits no namespaces: neither to root nor, inside a namespace of its own, to anybody.
void enterOwnWorld();
bool inOwnWorld();

// The right to use something that is shared outside an own world, held against every other test on the machine. In an
// own world there is nobody to hold it against.
class Turn {
public:
    // Waits until the others have let go; throws std::runtime_error when they do not.
    explicit Turn(const std::string& shared);
    ~Turn();
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;

private:
    std::optional<int> lockFile;
};

} // namespace lumbrine::interop
