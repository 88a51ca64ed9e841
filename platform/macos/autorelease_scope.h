// What the system's frameworks set aside on a thread is given back at the end of a scope.
#pragma once

// The two calls that a compiler makes for an @autoreleasepool block.
extern "C" {
void* objc_autoreleasePoolPush(void);
void objc_autoreleasePoolPop(void* pool);
}

namespace lumbrine {

// Threads that are not the system's own have no pool of theirs; without one, what is set aside on them stays for ever.
class AutoreleaseScope {
public:
    AutoreleaseScope() : pool(objc_autoreleasePoolPush()) {}
    ~AutoreleaseScope() { objc_autoreleasePoolPop(pool); }
    AutoreleaseScope(const AutoreleaseScope&) = delete;
    AutoreleaseScope& operator=(const AutoreleaseScope&) = delete;

private:
    void* const pool;
};

} // namespace lumbrine
