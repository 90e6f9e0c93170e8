#!/usr/bin/env python3
"""Draws the engineering symbols and writes them as tables of base64 bitmaps.

    symbols.py --tables DIR     write the tables
    symbols.py --check DIR      compare the tables there with the drawings; exit status 1 says
                                that they differ
    symbols.py --sheet FILE     write a contact sheet, a PNG
"""

import argparse
import sys
from pathlib import Path

sys.dont_write_bytecode = True

from bitmap import Bitmap, word_rows
from letters import FONTS
from png import write_png

SIZES = (16, 22)
DRAWINGS = Path(__file__).resolve().parent / "drawings.txt"

HEADER = """\
# Engineering symbols: tag, character code, small picture (16 x 16), large picture (22 x 22).
# A picture is the base64 text of its rows from the top, whole bytes a row, the leftmost pixel in
# the highest bit, 1 is ink. Made by tools/symbols/symbols.py from tools/symbols/drawings.txt:
# change the drawing there.
"""


class Symbol:
    def __init__(self, tag, code):
        self.tag = tag
        self.code = code
        self.pictures = {}

    def row(self):
        pictures = [self.pictures[size].base64() for size in SIZES]
        return " ".join([self.tag, str(self.code)] + pictures)


def ring(bitmap, text):
    if bitmap.size == 16:
        bitmap.circle(7, 7, 7)
        bitmap.word("normal", 7, 7, text)
    else:
        bitmap.circle(10, 10, 10)
        bitmap.word("large", 10, 10, text)


def lozenge(bitmap, text):
    if bitmap.size == 16:
        font = "tiny" if len(text) > 2 else "narrow"
        # An odd word stands in the middle of an odd frame.
        right = 14 + (len(word_rows(FONTS[font], text)[0]) + 1) % 2
        bitmap.oval(0, 1, right, 13)
        bitmap.word(font, right / 2, 7, text)
    else:
        font = "narrow" if len(text) > 2 else "normal"
        right = 20 + (len(word_rows(FONTS[font], text)[0]) + 1) % 2
        bitmap.oval(0, 4, right, 16)
        bitmap.word(font, right / 2, 10, text)


def flag(bitmap, text):
    if bitmap.size == 16:
        right = 14 + (len(word_rows(FONTS["narrow"], text)[0]) + 1) % 2
        bitmap.hexagon(0, 1, right, 13, 3)
        bitmap.word("narrow", right / 2, 7, text)
    else:
        bitmap.hexagon(0, 4, 20, 16, 4)
        bitmap.word("normal", 10, 10, text)


def draw(bitmap, stroke):
    verb, *words = stroke.split()
    if verb in ("ring", "lozenge", "flag"):
        {"ring": ring, "lozenge": lozenge, "flag": flag}[verb](bitmap, *words)
    elif verb == "word":
        font, x, y, text = words
        bitmap.word(font, float(x), float(y), text)
    elif verb in ("line", "shape", "fill"):
        numbers = [float(word) for word in words]
        getattr(bitmap, verb)(*zip(numbers[::2], numbers[1::2], strict=True))
    elif verb in ("box", "circle", "disc", "arc"):
        getattr(bitmap, verb)(*(float(word) for word in words))
    else:
        raise ValueError("unknown stroke " + verb)


def read_drawings(path):
    """Tables by name: their symbols and, as text, the comments between them."""
    tables = {}
    entries = []
    for number, line in enumerate(path.read_text(encoding="ascii").splitlines(), 1):
        words = line.split(None, 1)
        try:
            if not words:
                continue
            if line.startswith("#"):
                entries.append(line)
            elif line.startswith("["):
                entries = tables.setdefault(line.strip("[]"), [])
            elif not line.startswith(" "):
                entries.append(Symbol(words[0], int(words[1])))
            else:
                for size in SIZES if words[0] == "all" else (int(words[0]),):
                    bitmap = entries[-1].pictures.setdefault(size, Bitmap(size))
                    for stroke in words[1].split(";"):
                        draw(bitmap, stroke)
                    if bitmap.lost:
                        raise ValueError(f"ink outside of the picture at {sorted(bitmap.lost)[0]}")
        except (ValueError, IndexError, KeyError, TypeError, AttributeError) as error:
            sys.exit(f"{path}:{number}: {error}")
    return tables


def symbols_of(entries):
    return [entry for entry in entries if isinstance(entry, Symbol)]


def table_texts(tables):
    """The text of every table, by file name."""
    rows = {name: [entry.row() if isinstance(entry, Symbol) else entry for entry in entries]
            for name, entries in tables.items()}
    # In the stroke fonts of ISO the spot face carries two pictures of each size.
    pictured = {symbol.tag: symbol for symbol in symbols_of(tables["engineering-symbols"])}
    spot_face, counterbore = pictured["<SpotFace>"], pictured["<COUNTERBORE>"]
    joined = [spot_face.pictures[size].base64() + counterbore.pictures[size].base64()
              for size in SIZES]
    rows["engineering-symbols-joined"] += [
        "# The spot face with its own pictures and those of the counterbore, joined",
        " ".join([spot_face.tag, str(spot_face.code)] + joined)]
    return {name + ".txt": HEADER + "\n" + "\n".join(lines) + "\n" for name, lines in rows.items()}


def sheet(symbols, path):
    """Every symbol at both sizes, enlarged and at its real size, with its tag."""
    scale, columns, width, height = 6, 6, 300, 172
    lines = -(-len(symbols) // columns)
    pixels = [bytearray(b"\xff" * (width * columns)) for _ in range(height * lines)]

    def paint(rows, left, top, enlarged, shade):
        for y, row in enumerate(rows):
            for x, inked in enumerate(row):
                for dy in range(enlarged):
                    at = left + x * enlarged
                    value = 0 if inked else shade
                    pixels[top + y * enlarged + dy][at:at + enlarged] = bytes([value]) * enlarged

    for place, symbol in enumerate(symbols):
        left, top = place % columns * width + 6, place // columns * height + 6
        caption = symbol.tag.strip("<>").replace("><", " ").upper()
        rows = word_rows(FONTS["normal"], caption)
        paint([[pixel == "#" for pixel in row] for row in rows], left, top, 2, 255)
        for size, x in ((16, left), (22, left + 16 * scale + 6)):
            paint(symbol.pictures[size].rows(), x, top + 22, scale, 232)
        for size, y in ((16, top + 22), (22, top + 60)):
            paint(symbol.pictures[size].rows(), left + 38 * scale + 14, y, 1, 255)
    write_png(path, pixels)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--tables", metavar="DIR", type=Path, help="write the tables")
    parser.add_argument("--check", metavar="DIR", type=Path,
                        help="compare the tables there with the drawings")
    parser.add_argument("--sheet", metavar="FILE", type=Path, help="write a contact sheet, a PNG")
    options = parser.parse_args()
    if not (options.tables or options.check or options.sheet):
        parser.error("nothing to do")

    tables = read_drawings(DRAWINGS)
    texts = table_texts(tables)
    if options.sheet:
        sheet([symbol for entries in tables.values() for symbol in symbols_of(entries)],
              options.sheet)
    if options.tables:
        for name, text in texts.items():
            (options.tables / name).write_text(text, encoding="ascii", newline="\n")
    different = []
    if options.check:
        different = [name for name, text in texts.items()
                     if not (options.check / name).is_file()
                     or (options.check / name).read_bytes() != text.encode("ascii")]
        for name in different:
            print(f"symbols.py: {options.check / name}: not what the drawings make",
                  file=sys.stderr)
    return 1 if different else 0


if __name__ == "__main__":
    sys.exit(main())
