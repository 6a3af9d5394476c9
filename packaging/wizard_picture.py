#!/usr/bin/env python3
"""wizard_picture.py FILE: draws the picture at the left of the setup's first and last page (164 x 314, as NSIS wants it):
a calm gradient and three frames, one behind the other."""

import struct
import sys

WIDTH, HEIGHT = 164, 314
TOP, BOTTOM = (38, 62, 84), (96, 140, 160)
FRAMES = [((44, 84, 100, 76), 0.35), ((36, 96, 100, 76), 0.6), ((28, 108, 100, 76), 1.0)]  # left, top, width, height
THICKNESS = 4


def mixed(one, other, share):
    return tuple(round(a + (b - a) * share) for a, b in zip(one, other))


def pixel(x, y):
    colour = mixed(TOP, BOTTOM, y / (HEIGHT - 1))
    for (left, top, width, height), strength in FRAMES:
        inside = left <= x < left + width and top <= y < top + height
        core = left + THICKNESS <= x < left + width - THICKNESS and top + THICKNESS <= y < top + height - THICKNESS
        if inside:
            colour = mixed(mixed(TOP, BOTTOM, 0.25 + 0.15 * strength), (255, 255, 255), 0 if core else 0.75 * strength)
    return colour


def main() -> int:
    rows = bytearray()
    for y in reversed(range(HEIGHT)):
        for x in range(WIDTH):
            red, green, blue = pixel(x, y)
            rows += bytes((blue, green, red))
        rows += bytes(-(WIDTH * 3) % 4)
    header = struct.pack("<IiiHHIIiiII", 40, WIDTH, HEIGHT, 1, 24, 0, len(rows), 2835, 2835, 0, 0)
    with open(sys.argv[1], "wb") as picture:
        picture.write(b"BM" + struct.pack("<IHHI", 54 + len(rows), 0, 0, 54) + header + rows)
    return 0


if __name__ == "__main__":
    sys.exit(main())
