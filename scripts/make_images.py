#!/usr/bin/env python3
"""Draws the interface's small pictures (plain RGBA PNGs) into images/.

The pictures are simple glyphs on coloured squares; run it again after a
change and commit the result.

The eight toolbar pictures keep a transparent alpha around the square. The
twelve tile-button pictures are added onto the tile's pixels (saturating),
so for them black is the transparent colour: they are drawn opaque on
black, at 64 pixels with 4 x 4 samples per pixel, so that they stay clear
when the tile scales them to anything from 24 to 64 pixels."""
import os, struct, zlib, math

HERE = os.path.dirname(os.path.abspath(__file__))
OUT = os.path.join(HERE, "..", "images")

def png(path, w, h, pixel):
    raw = b"".join(b"\x00" + b"".join(bytes(pixel(x, y)) for x in range(w)) for y in range(h))
    def chunk(tag, data):
        c = struct.pack(">I", len(data)) + tag + data
        return c + struct.pack(">I", zlib.crc32(tag + data) & 0xffffffff)
    data = b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", w, h, 8, 6, 0, 0, 0))
    data += chunk(b"IDAT", zlib.compress(raw, 9)) + chunk(b"IEND", b"")
    with open(path, "wb") as f:
        f.write(data)

def glyph_pixel(size, colour, glyph):
    def pixel(x, y):
        u, v = (x + 0.5) / size, (y + 0.5) / size
        r = 0.18
        # rounded square
        dx, dy = max(abs(u - 0.5) - (0.5 - r), 0), max(abs(v - 0.5) - (0.5 - r), 0)
        if math.hypot(dx, dy) > r:
            return (0, 0, 0, 0)
        if glyph(u, v):
            return (255, 255, 255, 255)
        return colour + (255,)
    return pixel

def near_segment(u, v, a, b, width):
    (ax, ay), (bx, by) = a, b
    dx, dy = bx - ax, by - ay
    t = max(0.0, min(1.0, ((u - ax) * dx + (v - ay) * dy) / (dx * dx + dy * dy)))
    return math.hypot(u - ax - t * dx, v - ay - t * dy) < width

G = {
    "play": lambda u, v: 0.35 < u < 0.72 and abs(v - 0.5) < (0.72 - u) * 0.9,
    "stop": lambda u, v: 0.32 < u < 0.68 and 0.32 < v < 0.68,
    "eye": lambda u, v: abs(math.hypot((u - 0.5) * 1.0, (v - 0.5) * 2.0) - 0.25) < 0.05 or math.hypot(u - 0.5, v - 0.5) < 0.08,
    "bars": lambda u, v: 0.28 < v < 0.72 and (0.28 < u < 0.36 or 0.46 < u < 0.54 or 0.64 < u < 0.72),
    "gear": lambda u, v: 0.12 < math.hypot(u - 0.5, v - 0.5) < 0.28 and (math.hypot(u - 0.5, v - 0.5) < 0.22 or int((math.atan2(v - 0.5, u - 0.5) + 4) * 8 / math.pi) % 2 == 0),
    "list": lambda u, v: 0.28 < u < 0.72 and any(abs(v - c) < 0.04 for c in (0.32, 0.5, 0.68)),
    "chat": lambda u, v: 0.25 < u < 0.75 and 0.3 < v < 0.62 or (0.32 < u < 0.45 and 0.62 <= v < 0.75 and u - 0.32 < 0.75 - v),
    "book": lambda u, v: 0.28 < u < 0.72 and 0.26 < v < 0.74 and not (0.48 < u < 0.52),
    "cross": lambda u, v: abs(u - v) < 0.07 and 0.28 < u < 0.72 or abs(u + v - 1) < 0.07 and 0.28 < u < 0.72,
    "dot": lambda u, v: math.hypot(u - 0.5, v - 0.5) < 0.22,
    "none": lambda u, v: False,
    "camera": lambda u, v: (0.22 < u < 0.62 and 0.34 < v < 0.66) or (0.62 <= u < 0.8 and abs(v - 0.5) < (u - 0.62) * 0.9 + 0.04),
    "monitor": lambda u, v: 0.24 < u < 0.76 and 0.28 < v < 0.62 and not (0.3 < u < 0.7 and 0.34 < v < 0.56) or (0.44 < u < 0.56 and 0.62 <= v < 0.74),
    "console": lambda u, v: near_segment(u, v, (0.3, 0.32), (0.48, 0.5), 0.05) or near_segment(u, v, (0.48, 0.5), (0.3, 0.68), 0.05) or (0.52 < u < 0.72 and 0.62 < v < 0.7),
}

BLUE, GREEN, RED, GREY, ORANGE, PURPLE, TEAL = (40, 100, 190), (40, 150, 70), (190, 50, 50), (110, 110, 110), (210, 130, 30), (120, 70, 160), (30, 140, 150)

def tile_button_pixel(size, colour, glyph, samples=4):
    """A glyph on a dimmed rounded square, everything else black."""
    dim = tuple(int(c * 0.6) for c in colour)
    def pixel(x, y):
        acc = [0, 0, 0]
        for sy in range(samples):
            for sx in range(samples):
                u = (x + (sx + 0.5) / samples) / size
                v = (y + (sy + 0.5) / samples) / size
                r = 0.2
                dx, dy = max(abs(u - 0.5) - (0.5 - r), 0), max(abs(v - 0.5) - (0.5 - r), 0)
                if math.hypot(dx, dy) > r - 0.03:
                    c = (0, 0, 0)
                elif glyph(u, v):
                    c = (240, 240, 240)
                else:
                    c = dim
                for i in range(3):
                    acc[i] += c[i]
        n = samples * samples
        return tuple(int(a / n + 0.5) for a in acc) + (255,)
    return pixel

def main():
    os.makedirs(OUT, exist_ok=True)
    toolbar = [("button1.png", GREEN, "play"), ("button2.png", RED, "stop"), ("button3.png", BLUE, "eye"),
               ("button4.png", ORANGE, "bars"), ("button5.png", TEAL, "gear"), ("button6.png", PURPLE, "list"),
               ("button7.png", BLUE, "chat"), ("button8.png", GREY, "book")]
    for name, colour, glyph in toolbar:
        png(os.path.join(OUT, name), 32, 32, glyph_pixel(32, colour, G[glyph]))
    tile = [("runstatus.png", GREEN, "dot"), ("runstatusoff.png", GREY, "dot"), ("brun.png", GREEN, "play"),
            ("bstop.png", RED, "stop"), ("bsvideo.png", BLUE, "camera"), ("bsrecog.png", TEAL, "eye"),
            ("bsdirect.png", ORANGE, "gear"), ("bsdelete.png", RED, "cross"), ("bsshowwindowon.png", BLUE, "monitor"),
            ("bsshowwindowoff.png", GREY, "monitor"), ("bsshowconsoleon.png", BLUE, "console"),
            ("bsshowconsoloff.png", GREY, "console")]
    for name, colour, glyph in tile:
        png(os.path.join(OUT, name), 64, 64, tile_button_pixel(64, colour, G[glyph]))
    png(os.path.join(OUT, "vexlane.png"), 64, 64, glyph_pixel(64, BLUE, G["camera"]))
    # The Windows build's program icon (resource 103): the same picture,
    # held whole as PNG inside an icon file.
    with open(os.path.join(OUT, "vexlane.png"), "rb") as f:
        picture = f.read()
    icon = struct.pack("<HHH", 0, 1, 1) + struct.pack("<BBBBHHII", 64, 64, 0, 0, 1, 32, len(picture), 22)
    with open(os.path.join(HERE, "..", "src", "ui", "win32", "vexlane.ico"), "wb") as f:
        f.write(icon + picture)

if __name__ == "__main__":
    main()
