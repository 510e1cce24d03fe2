#!/usr/bin/env python3
"""Draws the docset icon, the project's own: a blue rounded square holding a white page
with three text lines. Writes icon.png (16x16) and icon@2x.png (32x32) into the folder
given (default: ../assets). Python's standard library only; same bytes every run."""
import struct
import sys
import zlib
from pathlib import Path

BLUE = (11, 92, 173, 255)
WHITE = (255, 255, 255, 255)
LINE = (11, 92, 173, 255)
CLEAR = (0, 0, 0, 0)


def pixel(x, y, size):
    """Colour at (x, y) of a size x size icon, drawn on a 32-unit grid."""
    u, v = (x + 0.5) * 32 / size, (y + 0.5) * 32 / size
    r = 6  # corner radius of the square
    cx, cy = min(max(u, r), 32 - r), min(max(v, r), 32 - r)
    if (u - cx) ** 2 + (v - cy) ** 2 > r * r:
        return CLEAR
    if 8 <= u <= 24 and 5 <= v <= 27:  # the page
        for top in (10, 15, 20):
            if top <= v < top + 2.4 and 11 <= u <= (21 if top != 20 else 17):
                return LINE
        return WHITE
    return BLUE


def png(size):
    rows = b"".join(b"\0" + b"".join(bytes(pixel(x, y, size)) for x in range(size)) for y in range(size))

    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data) & 0xFFFFFFFF)

    header = struct.pack(">IIBBBBB", size, size, 8, 6, 0, 0, 0)
    return b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(rows, 9)) + chunk(b"IEND", b"")


def main():
    folder = Path(sys.argv[1]) if len(sys.argv) > 1 else Path(__file__).resolve().parent.parent / "assets"
    (folder / "icon.png").write_bytes(png(16))
    (folder / "icon@2x.png").write_bytes(png(32))


if __name__ == "__main__":
    main()
