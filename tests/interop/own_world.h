// A private world for a test program, in Linux namespaces, so that test programs running at the same time share
// nothing: a network with loopback only, so that ports and multicast are private; an empty /dev/shm, where JACK keeps
// its server registry, memory and sockets; and an empty /run, where Avahi and the system's message bus are found.
//
// A test program gets it by `MAIN interop_main` in its CMakeLists.txt.
#pragma once

#include <optional>
#include <string>

namespace lumbrine::interop {

// Moves this process and its future children into a private world. Call it at the start of `main`. Does nothing when
// the system permits no namespaces, neither to root nor inside a user namespace.
void enterOwnWorld();
bool inOwnWorld();

// A lock among all tests on the computer for a resource that is shared outside private worlds. In a private world it
// does nothing.
class Turn {
public:
    // Waits until no other test holds it; throws std::runtime_error when that takes too long.
    explicit Turn(const std::string& shared);
    ~Turn();
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;

private:
    std::optional<int> lockFile;
};

} // namespace lumbrine::interop
