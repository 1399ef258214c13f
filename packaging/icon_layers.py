#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Makes the pictures that src/ui/toolkit/drawing_layers.cpp mixes icons from, where Qt has no SVG.

    icon_layers.py RSVG-CONVERT FOLDER DRAWING...

For each drawing NAME.svg: FOLDER/NAME-0.png, -1 and -2. In each of them three of the seven colours
that the drawings use are pure red, green and blue, and all others black. The program's own icon,
which has colours of its own, is only -0.
"""
import pathlib
import subprocess
import sys

# In the order of the roles in src/ui/toolkit/drawing.h.
ROLES = ["#404040", "#1f6fb8", "#2e7d46", "#a86400", "#c0342c", "#808080", "#ffffff"]
PURE = ["#ff0000", "#00ff00", "#0000ff"]
SIDE = "96"  # the largest that is shown: twice 48


def layer_of(drawing, first):
    # Two rounds, because a pure colour could be one that is still to be replaced.
    for role, colour in enumerate(ROLES):
        drawing = drawing.replace(colour, "{%d}" % role)
    for role in range(len(ROLES)):
        pure = PURE[role - first] if first <= role < first + len(PURE) else "#000000"
        drawing = drawing.replace("{%d}" % role, pure)
    return drawing


def main(convert, folder, *drawings):
    folder = pathlib.Path(folder)
    folder.mkdir(parents=True, exist_ok=True)
    for path in map(pathlib.Path, drawings):
        drawing = path.read_text(encoding="utf-8")
        layers = [drawing]
        if path.stem != "app":
            layers = [layer_of(drawing, first) for first in range(0, len(ROLES), len(PURE))]
        for number, layer in enumerate(layers):
            subprocess.run(
                [convert, "--width", SIDE, "--height", SIDE, "--output",
                 str(folder / f"{path.stem}-{number}.png")],
                input=layer.encode("utf-8"), check=True)


main(*sys.argv[1:])
