#!/usr/bin/env python3
"""Writes the seed corpus of the dispatcher fuzz target (tests/fuzz/corpus/dispatch).

One seed per pair of layouts (first code of each), plus seeds that reach every alias,
the source-only 422P and an unknown code, at widths around the block sizes and with
every stride mode. Layout of a seed: see tests/fuzz/dispatch_fuzz.cpp."""
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


def main(out):
    os.makedirs(out, exist_ok=True)
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
    for i, s in enumerate(seeds):
        with open(os.path.join(out, "seed-%03d" % i), "wb") as f:
            f.write(s)


if __name__ == "__main__":
    main(sys.argv[1] if len(sys.argv) > 1 else os.path.join(os.path.dirname(__file__), "..", "tests", "fuzz", "corpus", "dispatch"))
