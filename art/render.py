#!/usr/bin/env python3
"""Renders every picture of images.csv into PNG files and writes the resource script that names them.

    render.py OUTPUT_FOLDER

Only what changed is rendered again: the composed SVG is kept next to its PNG and compared first.
"""
import argparse
import csv
import os
import subprocess
import sys
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

import drawing


def read_table(path=drawing.HERE / "images.csv"):
    """The rows of the table as dictionaries, the id as a number."""
    with open(path, encoding="utf-8", newline="") as file:
        return [dict(row, id=int(row["id"])) for row in csv.DictReader(file)]


def write_if_changed(path, text):
    """Keeps the time stamp if nothing changed, so that nothing is rebuilt."""
    if not path.is_file() or path.read_text(encoding="utf-8") != text:
        path.write_text(text, encoding="utf-8")
        return True
    return False


def render(row, folder):
    """Brings one picture up to date."""
    svg, png = folder / f"{row['id']}.svg", folder / f"{row['id']}.png"
    changed = write_if_changed(svg, drawing.compose(row["kind"], row["glyph"], row["tone"], row["badge"]))
    if not changed and png.is_file():
        return False
    width, height = drawing.PIXELS[row["kind"]]
    png.unlink(missing_ok=True)  # an interrupted run must not leave an incomplete picture
    temporary = png.with_suffix(".tmp")
    subprocess.run(["rsvg-convert", "-w", str(width), "-h", str(height), "-o", temporary, svg], check=True)
    temporary.replace(png)
    return True


def resource_script(rows):
    lines = ["// Made by render.py from images.csv.", "LANGUAGE 0, 0"]
    lines += [f'{row["id"]} PNG "{row["id"]}.png"' for row in rows]
    return "\n".join(lines) + "\n"


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("folder", type=Path)
    arguments = parser.parse_args()
    folder = arguments.folder
    folder.mkdir(parents=True, exist_ok=True)
    rows = read_table()
    known = {f"{row['id']}{suffix}" for row in rows for suffix in (".svg", ".png")} | {"CardArt.rc"}
    for stale in (path for path in folder.iterdir() if path.name not in known):
        stale.unlink()
    with ThreadPoolExecutor(os.cpu_count()) as pool:
        changed = sum(pool.map(lambda row: render(row, folder), rows))
    write_if_changed(folder / "CardArt.rc", resource_script(rows))
    print(f"{changed} of {len(rows)} pictures rendered")
    return 0


if __name__ == "__main__":
    sys.exit(main())
