#!/usr/bin/env python3
"""Writes the seed corpora of the fuzz targets (tests/fuzz/corpus/<target>).

dispatch: one seed per pair of layouts (first code of each), plus seeds that reach
every alias, the source-only 422P and an unknown code, at widths around the block
sizes and with every stride mode.
transport: the payload reader at each start phase with full and short payloads, and
the packed-line reader at widths around the 6- and 48-pixel groups, the packetised
reader at one to eight packets a line.
rows: every mode of the row target at widths around the vector block sizes.
The layout of a seed is described at the top of each target's source."""
import os
import struct
import sys

# Indices into the dispatcher's code table (the twenty aliases, then the extras).
FIRST_OF_LAYOUT = [0, 1, 10, 12, 13, 14, 16, 17, 18]  # RGB32 UYVY YUY2 YVYU cyuv I420 YV12 P422 012v
CODE_COUNT = 22
WIDTHS = [1, 2, 6, 7, 47, 48, 97, 725, 1283]
HEIGHTS = [1, 2, 3, 7, 16]


def seed(src, dst, w, h, smode, sraw, dmode, draw, matrix, flags, salt):
    head = struct.pack("<BBHBBHBHBI", src, dst, w, h, smode, sraw, dmode, draw, matrix, flags)
    body = bytes((salt * 37 + i * 11) & 0xFF for i in range(24))
    return head + body


def transport_seeds():
    seeds = []
    i = 0
    for phase in (0, 1, 2):
        for pgroups in (1, 2, 3, 4, 7, 30, 275):
            for short in (0, 1, 5):
                body = bytes((i * 29 + k * 13) & 0xFF for k in range(48))
                seeds.append(struct.pack("<BBHHB", 0, phase, pgroups + 8, short, 0) + body)
                i += 1
    for w in (1, 2, 6, 7, 48, 97, 480, 721, 1920):
        for h in (1, 2, 5):
            body = bytes((i * 17 + k * 7) & 0xFF for k in range(40))
            seeds.append(struct.pack("<BBHHB", 1, 0, w, h, i & 1) + body)
            i += 1
    for w in (480, 481, 720, 961, 1280, 1920, 3599):
        for h in (1, 2, 5):
            body = bytes((i * 23 + k * 3) & 0xFF for k in range(40))
            seeds.append(struct.pack("<BBHHB", 2, 0, w - 480, h - 1, i & 1) + body)
            i += 1
    return seeds


def rows_seeds():
    seeds = []
    i = 0
    for mode in range(7):
        for w in (0, 1, 2, 5, 6, 7, 13, 31, 32, 33, 47, 48, 65, 97, 725, 1283):
            params = bytes(((i * 7 + k * 5) & 0xFF) for k in range(4))
            body = bytes((i * 31 + k * 11) & 0xFF for k in range(32))
            seeds.append(struct.pack("<BHB", mode, w, i % 4) + params + body)
            i += 1
    return seeds


def write(out, seeds):
    os.makedirs(out, exist_ok=True)
    for i, s in enumerate(seeds):
        with open(os.path.join(out, "seed-%03d" % i), "wb") as f:
            f.write(s)


def dispatch_seeds():
    seeds = []
    n = 0
    for s in FIRST_OF_LAYOUT:
        for d in FIRST_OF_LAYOUT:
            w = WIDTHS[n % len(WIDTHS)]
            h = HEIGHTS[n % len(HEIGHTS)]
            seeds.append(seed(s, d, w, h, n % 4, 40 + n, (n + 1) % 4, 7 * n, n % 8, n & 0x1F, n))
            n += 1
    for code in range(CODE_COUNT):
        seeds.append(seed(code, (code * 7 + 3) % CODE_COUNT, 725, 3, 2, 30, 0, 0, 1, 0, n))
        seeds.append(seed((code * 5 + 1) % CODE_COUNT, code, 48, 2, 3, 0xFFFF, 1, 0, 2, 1, n + 1))
        n += 2
    return seeds


if __name__ == "__main__":
    root = sys.argv[1] if len(sys.argv) > 1 else os.path.join(os.path.dirname(__file__), "..", "tests", "fuzz", "corpus")
    write(os.path.join(root, "dispatch"), dispatch_seeds())
    write(os.path.join(root, "transport"), transport_seeds())
    write(os.path.join(root, "rows"), rows_seeds())
