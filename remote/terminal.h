// The terminal, reduced to what the view needs.
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

// A special key, or an ASCII character.
struct Key {
    SpecialKey special = SpecialKey::none;
    char character = 0;

    bool operator==(const Key&) const = default;
};

class Terminal {
public:
    virtual ~Terminal() = default;

    // The next pressed key; absent when there is none. Never waits.
    virtual std::optional<Key> poll() = 0;

    virtual int rows() = 0;
    virtual int columns() = 0;

    // Precondition: the canvas has the size that rows() and columns() returned last.
    virtual void draw(const Canvas& canvas) = 0;

    // Makes the next `draw` write every character, not only changed ones.
    virtual void forget() = 0;
};

} // namespace lumbrine::remote
