#!/usr/bin/env python3
"""macos_icon.py ICNS: draws packaging/com.tarnwick.lumbrine.svg at all sizes of a Mac's icon and packs them.

Needs nothing but Python, so that it runs on Linux and on a bare Mac. It knows what the drawing is made of: rectangles
with round corners, plain or with a vertical gradient, and outlines.
"""
import math
import struct
import sys
import xml.etree.ElementTree as ET
import zlib
from pathlib import Path

SVG = "{http://www.w3.org/2000/svg}"
SUBROWS = 4
# The names that the format has for each size in pixels.
SIZES = {
    16: ["icp4"],
    32: ["icp5", "ic11"],
    64: ["ic12"],
    128: ["ic07"],
    256: ["ic08", "ic13"],
    512: ["ic09", "ic14"],
    1024: ["ic10"],
}


def color_of(text):
    return tuple(int(text[i : i + 2], 16) for i in (1, 3, 5))


class Shape:
    """One rectangle in the drawing's units; a paint is a color for the top and one for the bottom."""

    def __init__(self, box, radius, paint, opacity, hole=None):
        self.box, self.radius, self.paint, self.opacity, self.hole = box, radius, paint, opacity, hole


def paint_of(name, gradients):
    return gradients[name[5:-1]] if name.startswith("url(#") else (color_of(name), color_of(name))


def shapes_of(svg):
    root = ET.parse(svg).getroot()
    gradients = {}
    for gradient in root.iter(SVG + "linearGradient"):
        stops = [color_of(stop.get("stop-color")) for stop in gradient.iter(SVG + "stop")]
        gradients[gradient.get("id")] = (stops[0], stops[-1])
    shapes = []
    for parent in [root, *root.iter(SVG + "g")]:
        for rect in parent.findall(SVG + "rect"):
            x, y, width, height, radius = (float(rect.get(key, 0)) for key in ("x", "y", "width", "height", "rx"))
            box = (x, y, x + width, y + height)
            fill = rect.get("fill", parent.get("fill", "#000000"))
            if fill != "none":
                shapes.append(Shape(box, radius, paint_of(fill, gradients), 1.0))
            if rect.get("stroke"):
                half = float(rect.get("stroke-width", 1)) / 2
                shapes.append(
                    Shape(
                        (box[0] - half, box[1] - half, box[2] + half, box[3] + half),
                        radius + half,
                        paint_of(rect.get("stroke"), gradients),
                        float(rect.get("stroke-opacity", 1)),
                        ((box[0] + half, box[1] + half, box[2] - half, box[3] - half), radius - half),
                    )
                )
    return float(root.get("viewBox").split()[2]), shapes


def add_coverage(row, sign, box, radius, y, scale):
    """Adds how much of each pixel of row `y` lies within the rectangle."""
    left, top, right, bottom = (side * scale for side in box)
    radius *= scale
    for sub in range(SUBROWS):
        at = y + (sub + 0.5) / SUBROWS
        if not top <= at < bottom:
            continue
        beyond = max(top + radius - at, at - (bottom - radius), 0.0)
        inset = radius - math.sqrt(max(radius * radius - beyond * beyond, 0.0))
        begin, end = left + inset, right - inset
        if end <= begin:
            continue
        first, last = int(begin), min(int(end), len(row) - 1)
        share = sign / SUBROWS
        if first == last:
            row[first] += (end - begin) * share
            continue
        row[first] += (first + 1 - begin) * share
        for x in range(first + 1, last):
            row[x] += share
        row[last] += (end - last) * share


def draw(size, extent, shapes):
    scale = size / extent
    rows = []
    for y in range(size):
        pixels = [(0.0, 0.0, 0.0, 0.0)] * size
        for shape in shapes:
            top, bottom = shape.box[1] * scale, shape.box[3] * scale
            if y + 1 <= top or y >= bottom:
                continue
            coverage = [0.0] * size
            add_coverage(coverage, 1, shape.box, shape.radius, y, scale)
            if shape.hole:
                add_coverage(coverage, -1, *shape.hole, y, scale)
            part = min(max((y + 0.5 - top) / (bottom - top), 0.0), 1.0)
            color = [a + (b - a) * part for a, b in zip(*shape.paint)]
            for x, covered in enumerate(coverage):
                if covered <= 0:
                    continue
                alpha = min(covered, 1.0) * shape.opacity
                red, green, blue, below = pixels[x]
                total = alpha + below * (1 - alpha)
                mix = alpha / total
                pixels[x] = (
                    red + (color[0] - red) * mix,
                    green + (color[1] - green) * mix,
                    blue + (color[2] - blue) * mix,
                    total,
                )
        row = bytearray([0])
        for red, green, blue, alpha in pixels:
            row += bytes((round(red), round(green), round(blue), round(alpha * 255)))
        rows.append(bytes(row))
    return b"".join(rows)


def png(size, rows):
    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

    header = struct.pack(">IIBBBBB", size, size, 8, 6, 0, 0, 0)
    return b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(rows, 9)) + chunk(b"IEND", b"")


def main():
    drawing = Path(__file__).resolve().parent.parent / "packaging" / "com.tarnwick.lumbrine.svg"
    extent, shapes = shapes_of(drawing)
    entries = b""
    for size, names in SIZES.items():
        image = png(size, draw(size, extent, shapes))
        for name in names:
            entries += name.encode() + struct.pack(">I", len(image) + 8) + image
    Path(sys.argv[1]).write_bytes(b"icns" + struct.pack(">I", len(entries) + 8) + entries)


main()
