"""png_pixels.py FILE [#rrggbb ...] prints "WIDTH HEIGHT NON_WHITE COLOURED LISTED" for an 8-bit RGB or
RGBA PNG (not interlaced): coloured pixels have channels more than 60 apart, listed ones are one of the
colours given."""
import struct
import sys
import zlib

data = open(sys.argv[1], "rb").read()
if data[:8] != b"\x89PNG\r\n\x1a\n":
    sys.exit("not a PNG file")
chunks, at = [], 8
while at < len(data):
    length, kind = struct.unpack(">I4s", data[at:at + 8])
    chunks.append((kind, data[at + 8:at + 8 + length]))
    at += 12 + length
width, height, depth, colour, _, _, interlace = struct.unpack(">IIBBBBB", dict(chunks)[b"IHDR"])
if depth != 8 or colour not in (2, 6) or interlace != 0:
    sys.exit(f"unexpected PNG layout: depth {depth}, colour type {colour}, interlace {interlace}")
channels = 3 if colour == 2 else 4
raw = zlib.decompress(b"".join(body for kind, body in chunks if kind == b"IDAT"))
listed = {tuple(bytes.fromhex(arg.lstrip("#"))) for arg in sys.argv[2:]}
stride, previous = width * channels, bytearray(width * channels)
counts = [0, 0, 0]
for y in range(height):
    kind, line = raw[y * (stride + 1)], bytearray(raw[y * (stride + 1) + 1:(y + 1) * (stride + 1)])
    for i in range(stride):  # undo the row's filter: none, sub, up, average or Paeth
        a = line[i - channels] if i >= channels else 0
        b, c = previous[i], previous[i - channels] if i >= channels else 0
        p = a + b - c
        paeth = a if abs(p - a) <= abs(p - b) and abs(p - a) <= abs(p - c) else b if abs(p - b) <= abs(p - c) else c
        line[i] = (line[i] + (0, a, b, (a + b) // 2, paeth)[kind]) & 0xFF
    for x in range(0, stride, channels):
        pixel = tuple(line[x:x + 3])
        counts[0] += min(pixel) < 240
        counts[1] += max(pixel) - min(pixel) > 60
        counts[2] += pixel in listed
    previous = line
print(width, height, *counts)
