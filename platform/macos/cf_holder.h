// Who owns a CoreFoundation object is said by a type, so that every path gives it back.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <utility>

namespace lumbrine {

// One reference to a CoreFoundation object, or none. Given back when the holder goes.
template <typename Ref>
class CFHolder {
public:
    CFHolder() = default;

    // Takes over the reference that a function with Create or Copy in its name has returned. Null is none.
    static CFHolder takingOver(Ref object) { return CFHolder(object); }

    // Takes a reference of its own, to an object that somebody else holds. Null is none.
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

    // Valid as long as the holder.
    Ref get() const { return held; }

private:
    explicit CFHolder(Ref object) : held(object) {}

    Ref held = nullptr;
};

} // namespace lumbrine
