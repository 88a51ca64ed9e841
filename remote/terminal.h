// The terminal as the view needs it.
#pragma once

#include "remote/canvas.h"

#include <optional>

namespace lumbrine::remote {

enum class SpecialKey {
    none,
    left,
    right,
    up,
    down,
    pageUp,
    pageDown,
    home,
    end,
    enter,
    escape,
    backspace,
    tab,
    redraw,
    interrupt
};

// A special key, or a character of ASCII.
struct Key {
    SpecialKey special = SpecialKey::none;
    char character = 0;

    bool operator==(const Key&) const = default;
};

class Terminal {
public:
    virtual ~Terminal() = default;

    // The next key that was pressed, without waiting for one.
    virtual std::optional<Key> poll() = 0;

    virtual int rows() = 0;
    virtual int columns() = 0;

    // The canvas has the size that the terminal told last.
    virtual void draw(const Canvas& canvas) = 0;

    // Draws every character anew at the next `draw`, whatever stood there.
    virtual void forget() = 0;
};

} // namespace lumbrine::remote
