#!/usr/bin/env python3
"""Writes a PNG of an X window dump (XWD, as "Xvfb -fbdir" keeps its screen), optionally cut to a
rectangle. Only the standard library is used.

    xwd_to_png.py SCREEN.xwd OUT.png [X Y WIDTH HEIGHT]
"""

import struct
import sys
import zlib


def read_xwd(path):
    with open(path, "rb") as f:
        data = f.read()
    header = struct.unpack(">25I", data[:100])
    (header_size, _version, pixmap_format, _depth, width, height, _xoffset, byte_order,
     _bitmap_unit, _bit_order, _pad, bits_per_pixel, bytes_per_line, _visual, red_mask,
     green_mask, blue_mask, _bits_per_rgb, _entries, ncolors) = header[:20]
    if pixmap_format != 2 or bits_per_pixel not in (24, 32):
        sys.exit("only true-colour ZPixmap dumps are read")
    offset = header_size + ncolors * 12
    return data[offset:], width, height, byte_order, bits_per_pixel // 8, bytes_per_line, (
        red_mask, green_mask, blue_mask)


def channel(pixel, mask):
    shift = (mask & -mask).bit_length() - 1
    return ((pixel & mask) >> shift) * 255 // (mask >> shift)


def to_rgb_rows(image, width, height, byte_order, pixel_bytes, bytes_per_line, masks, box):
    x0, y0, w, h = box
    endian = "little" if byte_order == 0 else "big"
    for y in range(y0, y0 + h):
        row = bytearray([0])  # filter type: none
        line = image[y * bytes_per_line:(y + 1) * bytes_per_line]
        for x in range(x0, x0 + w):
            pixel = int.from_bytes(line[x * pixel_bytes:(x + 1) * pixel_bytes], endian)
            row += bytes(channel(pixel, mask) for mask in masks)
        yield bytes(row)


def write_png(path, width, height, rows):
    def chunk(kind, body):
        return (struct.pack(">I", len(body)) + kind + body
                + struct.pack(">I", zlib.crc32(kind + body) & 0xFFFFFFFF))
    raw = b"".join(rows)
    with open(path, "wb") as f:
        f.write(b"\x89PNG\r\n\x1a\n")
        f.write(chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0)))
        f.write(chunk(b"IDAT", zlib.compress(raw, 9)))
        f.write(chunk(b"IEND", b""))


def main():
    if len(sys.argv) not in (3, 7):
        sys.exit(__doc__)
    image, width, height, byte_order, pixel_bytes, bytes_per_line, masks = read_xwd(sys.argv[1])
    box = (0, 0, width, height)
    if len(sys.argv) == 7:
        x, y, w, h = (int(v) for v in sys.argv[3:7])
        x, y = max(0, x), max(0, y)
        box = (x, y, min(w, width - x), min(h, height - y))
    write_png(sys.argv[2], box[2], box[3],
              to_rgb_rows(image, width, height, byte_order, pixel_bytes, bytes_per_line, masks,
                          box))


if __name__ == "__main__":
    main()
