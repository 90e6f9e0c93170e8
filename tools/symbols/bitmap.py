"""A monochrome bitmap and the few strokes that symbols are drawn with.

Coordinates are pixels, x to the right and y downwards; whole numbers are pixel centres, so that a
figure of even width is centred on a half. Every stroke is one pixel wide.
"""

import base64
import math

from letters import FONTS


class Bitmap:
    def __init__(self, size):
        self.size = size
        self.ink = set()
        self.lost = set()  # what a drawing put outside of the bitmap: always a mistake

    def dot(self, x, y):
        inside = 0 <= x < self.size and 0 <= y < self.size
        (self.ink if inside else self.lost).add((x, y))

    def line(self, *points):
        """A polyline. Halves round towards its end: mirrored strokes give mirrored pixels."""
        for (x1, y1), (x2, y2) in zip(points, points[1:]):
            steps = int(max(abs(x2 - x1), abs(y2 - y1)) + 0.5)
            for step in range(steps + 1):
                part = step / steps if steps else 0
                self.dot(_nearest(x1 + (x2 - x1) * part, x1 > x2),
                         _nearest(y1 + (y2 - y1) * part, y1 > y2))

    def shape(self, *points):
        """The outline of a polygon."""
        self.line(*points, points[0])

    def fill(self, *points):
        """A filled polygon, its outline included."""
        self.shape(*points)
        for x, y in self._grid():
            if _in_polygon(x, y, points):
                self.dot(x, y)

    def box(self, x1, y1, x2, y2):
        self.shape((x1, y1), (x2, y1), (x2, y2), (x1, y2))

    def disc(self, cx, cy, radius):
        for x, y in self._grid():
            if _in_disc(x, y, cx, cy, radius):
                self.dot(x, y)

    def circle(self, cx, cy, radius):
        self.arc(cx, cy, radius, 0, 360)

    def arc(self, cx, cy, radius, start, end):
        """Part of a circle, in degrees from the right and counter-clockwise."""
        def turned(x, y):
            angle = math.degrees(math.atan2(cy - y, x - cx))
            return (angle - start) % 360 <= end - start

        self._border(lambda x, y: _in_disc(x, y, cx, cy, radius), turned)

    def oval(self, x1, y1, x2, y2):
        """A frame with straight long sides and round ends."""
        radius = (y2 - y1) / 2
        cy = (y1 + y2) / 2
        left, right = x1 + radius, x2 - radius
        self._border(lambda x, y: _in_disc(x, y, min(max(x, left), right), cy, radius))

    def hexagon(self, x1, y1, x2, y2, depth):
        """A frame with straight long sides and pointed ends of the given depth."""
        cy = (y1 + y2) / 2
        low, high = math.floor(cy), math.ceil(cy)
        for end, inner in ((x1, x1 + depth), (x2, x2 - depth)):
            self.line((inner, y1), (end, low))
            self.line((end, high), (inner, y2))
        self.line((x1 + depth, y1), (x2 - depth, y1))
        self.line((x1 + depth, y2), (x2 - depth, y2))

    def word(self, font, cx, cy, text):
        """Letters, centred; where that needs half a pixel, they stand to the left or up."""
        rows = word_rows(FONTS[font], text)
        left = math.floor(cx - (len(rows[0]) - 1) / 2)
        top = math.floor(cy - (len(rows) - 1) / 2)
        for y, row in enumerate(rows):
            for x, pixel in enumerate(row):
                if pixel == "#":
                    self.dot(left + x, top + y)

    def rows(self):
        return [[(x, y) in self.ink for x in range(self.size)] for y in range(self.size)]

    def base64(self):
        """Rows from the top, each padded to whole bytes; the leftmost pixel is the highest bit."""
        width = (self.size + 7) // 8
        data = bytearray()
        for row in self.rows():
            bits = sum(1 << (width * 8 - 1 - x) for x, pixel in enumerate(row) if pixel)
            data += bits.to_bytes(width, "big")
        return base64.b64encode(bytes(data)).decode("ascii")

    def _grid(self):
        return ((x, y) for y in range(self.size) for x in range(self.size))

    def _border(self, inside, chosen=lambda x, y: True):
        """The pixels of a region with a neighbour, left, right, above or below, out of it."""
        for y in range(-self.size, 2 * self.size):
            for x in range(-self.size, 2 * self.size):
                if not inside(x, y) or not chosen(x, y):
                    continue
                if not all(inside(x + dx, y + dy) for dx, dy in ((1, 0), (-1, 0), (0, 1), (0, -1))):
                    self.dot(x, y)


def word_rows(font, text):
    """The pixel rows of a word, one empty column between letters."""
    letters = [font[letter] for letter in text]
    return [".".join(rows) for rows in zip(*letters)]


def _nearest(value, backwards):
    return math.ceil(value - 0.5) if backwards else math.floor(value + 0.5)


def _in_disc(x, y, cx, cy, radius):
    # Slightly more than the radius: small circles become rounder and lose their single tips.
    return (x - cx) ** 2 + (y - cy) ** 2 <= (radius + 0.25) ** 2


def _in_polygon(x, y, points):
    inside = False
    for (x1, y1), (x2, y2) in zip(points, points[1:] + points[:1]):
        if (y1 > y) != (y2 > y) and x < (x2 - x1) * (y - y1) / (y2 - y1) + x1:
            inside = not inside
    return inside
