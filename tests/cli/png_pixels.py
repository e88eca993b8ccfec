"""Counts the pixels of a PNG screenshot (8-bit RGB or RGBA, not interlaced):
png_pixels.py FILE [#rrggbb ...] prints "WIDTH HEIGHT NON_WHITE COLOURED
LISTED", where a coloured pixel is one whose channels differ by more than 60
(not a grey) and a listed one has exactly one of the colours given."""
import struct
import sys
import zlib


def chunks(data):
    at = 8
    while at < len(data):
        length, kind = struct.unpack(">I4s", data[at:at + 8])
        yield kind, data[at + 8:at + 8 + length]
        at += 12 + length


def paeth(a, b, c):
    p = a + b - c
    pa, pb, pc = abs(p - a), abs(p - b), abs(p - c)
    return a if pa <= pb and pa <= pc else b if pb <= pc else c


def rows(width, height, channels, raw):
    stride = width * channels
    previous = bytearray(stride)
    at = 0
    for _ in range(height):
        kind, line = raw[at], bytearray(raw[at + 1:at + 1 + stride])
        at += 1 + stride
        for i in range(stride):
            left = line[i - channels] if i >= channels else 0
            up = previous[i]
            corner = previous[i - channels] if i >= channels else 0
            add = (0, left, up, (left + up) // 2, paeth(left, up, corner))[kind]
            line[i] = (line[i] + add) & 0xFF
        yield line
        previous = line


def main():
    data = open(sys.argv[1], "rb").read()
    if data[:8] != b"\x89PNG\r\n\x1a\n":
        sys.exit("not a PNG file")
    header = dict(chunks(data))[b"IHDR"]
    width, height, depth, colour, _, _, interlace = struct.unpack(">IIBBBBB", header)
    if depth != 8 or colour not in (2, 6) or interlace != 0:
        sys.exit(f"unexpected PNG layout: depth {depth}, colour type {colour}, interlace {interlace}")
    channels = 3 if colour == 2 else 4
    raw = zlib.decompress(b"".join(body for kind, body in chunks(data) if kind == b"IDAT"))
    listed = {tuple(bytes.fromhex(arg.lstrip("#"))) for arg in sys.argv[2:]}
    non_white = coloured = in_list = 0
    for line in rows(width, height, channels, raw):
        for x in range(0, width * channels, channels):
            r, g, b = line[x], line[x + 1], line[x + 2]
            if min(r, g, b) < 240:
                non_white += 1
            if max(r, g, b) - min(r, g, b) > 60:
                coloured += 1
            if (r, g, b) in listed:
                in_list += 1
    print(width, height, non_white, coloured, in_list)


main()
