// One channel strip as a column on the page.
#pragma once

#include "remote/canvas.h"
#include "remote/session_picture.h"

namespace lumbrine::remote {

// The place of a strip on the page, at least `minWidth` wide and `minHeight` high. Its last character column stays
// blank.
struct ColumnPlace {
    int top;
    int left;
    int width;
    int height;

    static constexpr int minWidth = 5;
    static constexpr int minHeight = 16;

    // The fader takes the rows between those for the fields above it and below it.
    static constexpr int rowsAbove = 6;
    static constexpr int rowsBelow = 2;
    int faderRows() const { return height - rowsAbove - rowsBelow; }
    int faderTop() const { return top + rowsAbove; }
};

struct StripLook {
    int number; // 1-16
    bool cursor = false;
    bool held = false;
    bool blinkOn = true;
    bool panRight = false; // the V-Pots turn the right side of stereo pans
};

// Draws a strip. From top to bottom: number and select, name, full name, lights, the pans of both sides, fader and
// meters, the fader's value from 0 to 100, automation mode.
void drawStrip(Canvas& canvas, const ColumnPlace& place, const StripPicture& strip, const StripLook& look);

} // namespace lumbrine::remote
