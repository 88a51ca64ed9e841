// A smart pointer for CoreFoundation objects.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <utility>

namespace lumbrine {

// Owns one reference to a CoreFoundation object, or none, and releases it in its destructor.
template <typename Ref>
class CFHolder {
public:
    CFHolder() = default;

    // Takes over the reference returned by a function with Create or Copy in its name. `object` may be null.
    static CFHolder takingOver(Ref object) { return CFHolder(object); }

    // Retains an object that somebody else owns. `object` may be null.
    static CFHolder sharing(Ref object) {
        if (object != nullptr) CFRetain(object);
        return CFHolder(object);
    }

    CFHolder(CFHolder&& other) noexcept : held(std::exchange(other.held, nullptr)) {}
    CFHolder& operator=(CFHolder&& other) noexcept {
        std::swap(held, other.held);
        return *this;
    }
    CFHolder(const CFHolder&) = delete;
    CFHolder& operator=(const CFHolder&) = delete;
    ~CFHolder() {
        if (held != nullptr) CFRelease(held);
    }

    explicit operator bool() const { return held != nullptr; }

    // Valid as long as the holder lives. Null when it holds nothing.
    Ref get() const { return held; }

private:
    explicit CFHolder(Ref object) : held(object) {}

    Ref held = nullptr;
};

} // namespace lumbrine
