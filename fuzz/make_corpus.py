#!/usr/bin/env python3
"""Writes seed inputs for the fuzz targets: synthetic pages (a bright
quadrilateral on a darker desk, with lines of text strokes), in the layout that
fuzz/fuzz_input.h reads, followed by the calls each target makes.

    fuzz/make_corpus.py OUT_DIR      # writes OUT_DIR/<target>/seed_NNN
"""
import os
import random
import struct
import sys

GRAY, RGB, BINARY = 0, 1, 2


def u8(v):
    return struct.pack("<B", v & 0xFF)


def u16(v):
    return struct.pack("<H", v & 0xFFFF)


def u32(v):
    return struct.pack("<I", v & 0xFFFFFFFF)


def page(rng, kind, width, height):
    """Image part: a tilted page with text strokes on a desk."""
    out = u8(kind) + u16(width - 1) + u16(height - 1)
    out += u8(rng.choice([20, 60, 90, 140])) + u8(rng.choice([0, 8, 30])) + u32(rng.getrandbits(32))
    # The reader maps v to v % (2 w + 1) - w / 2, so v = x + w / 2 draws at x.
    def px(x, size):
        return u16(int(x) + size // 2)

    m = rng.uniform(0.02, 0.2)
    tilt = rng.uniform(-0.08, 0.08)
    corners = [(m * width + tilt * width, m * height),
               ((1 - m) * width + tilt * width, m * height - tilt * height),
               ((1 - m) * width, (1 - m) * height),
               (m * width, (1 - m) * height + tilt * height)]
    shapes = [corners]
    if rng.random() < 0.3:  # a picture on the page
        shapes.append([(0.4 * width, 0.5 * height), (0.6 * width, 0.5 * height),
                       (0.6 * width, 0.7 * height), (0.4 * width, 0.7 * height)])
    out += u8(len(shapes))
    for i, shape in enumerate(shapes):
        for x, y in shape:
            out += px(max(0, x), width) + px(max(0, y), height)
        out += bytes([230, 225, 210]) if i == 0 else bytes([rng.randrange(256) for _ in range(3)])
    strokes = rng.randrange(4, 16)
    out += u8(strokes)
    for k in range(strokes):
        y = int(height * (0.25 + 0.5 * k / strokes))
        x0, x1 = int(width * 0.25), int(width * rng.uniform(0.5, 0.75))
        out += u16(x0) + u16(y) + u16(x1) + u16(y + int(tilt * (x1 - x0)))
        out += u8(rng.choice([0, 30, 60])) + u8(rng.randrange(0, 3))
    return out


def corners(rng, width, height, mode):
    """Four corners in the reader's encoding: mode 0 inside, 1 near, 2 far, 3 image corners."""
    out = b""
    for i in range(4):
        if mode == 0:
            x, y = rng.randrange(width), rng.randrange(height)
        elif mode == 1:
            x, y = rng.randrange(1 << 14), rng.randrange(1 << 16)
        elif mode == 2:
            x, y = rng.randrange(1 << 14), rng.randrange(1 << 16)
        else:
            x, y = 0, i | (1 << 2) | (1 << 4)  # the image's own corner i
        out += u16((mode << 14) | x) + u16(y)
    return out


def tail(rng):
    return u32(0)


def free_functions(rng, kind, w, h, mode):
    data = page(rng, kind, w, h) + corners(rng, w, h, mode)
    data += b"".join(u32(rng.getrandbits(32)) for _ in range(8))
    return data + u8(rng.randrange(6)) + tail(rng)


def corrector(rng, kind, w, h, mode):
    data = page(rng, kind, w, h)
    data += u8(rng.getrandbits(8) if rng.random() < 0.5 else 0)       # which setters
    data += u8(1) + u8(1)                                               # method, corner type
    data += bytes(rng.randrange(256) for _ in range(5))                 # disparities, angle, fractions
    data += u8(0) + u8(rng.randrange(256)) + u16(35)                    # binarization
    data += bytes([255, 255, 255])                                      # fill colour
    data += u8(rng.randrange(4)) + u8(rng.getrandbits(8))               # route, what follows
    data += corners(rng, w, h, mode) + corners(rng, w, h, (mode + 1) % 4)
    return data + tail(rng)


def line_segments(rng, kind, w, h, mode):
    return page(rng, kind, w, h) + u8(rng.choice([0, 16])) + tail(rng)


def blob_calculator(rng, kind, w, h, mode):
    data = page(rng, kind, w, h) + u8(rng.getrandbits(8)) + u8(rng.randrange(4))
    base = rng.randrange(3)
    data += u8(base) + u8(rng.randrange(3)) + u16(w - 1) + u16(h - 1) + u16(rng.randrange(1, 20))
    return data + u8(rng.randrange(256)) + u8(rng.randrange(256)) + tail(rng)


def corner_search(rng, kind, w, h, mode):
    data = page(rng, kind, w, h) + u8(rng.choice([0, 6, 6, 4, 7, 1]))
    data += u8(rng.getrandbits(4) if rng.random() < 0.5 else 0)
    return data + bytes(rng.randrange(256) for _ in range(3)) + u8(rng.randrange(2)) + tail(rng)


def quality_evaluator(rng, kind, w, h, mode):
    return page(rng, kind, w, h) + u8(rng.randrange(2)) + corners(rng, w, h, mode) + tail(rng)


TARGETS = {
    "corner_search_fuzz": corner_search,
    "blob_calculator_fuzz": blob_calculator,
    "free_functions_fuzz": free_functions,
    "corrector_fuzz": corrector,
    "line_segments_fuzz": line_segments,
    "quality_evaluator_fuzz": quality_evaluator,
}


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    rng = random.Random(16)
    sizes = [(12, 10), (40, 30), (64, 90), (150, 200), (320, 240), (600, 450), (420, 600), (599, 37)]
    for target, make in TARGETS.items():
        folder = os.path.join(sys.argv[1], target)
        os.makedirs(folder, exist_ok=True)
        n = 0
        for kind in (GRAY, RGB, BINARY):
            for w, h in sizes:
                mode = n % 4
                with open(os.path.join(folder, "seed_%03d" % n), "wb") as f:
                    f.write(make(rng, kind, w, h, mode))
                n += 1


if __name__ == "__main__":
    main()
