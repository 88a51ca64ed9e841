// An autorelease pool for the duration of a scope, for plain C++ files.
#pragma once

// The two functions that the compiler calls for an @autoreleasepool block.
extern "C" {
void* objc_autoreleasePoolPush(void);
void objc_autoreleasePoolPop(void* pool);
}

namespace lumbrine {

// Threads that our program has started have no autorelease pool. Without one, objects that the frameworks autorelease
// on them are never freed.
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
