"""Writes grey pictures as PNG."""

import struct
import zlib


def write_png(path, rows):
    """Rows of one byte a pixel, 0 black and 255 white."""
    def chunk(name, data):
        check = zlib.crc32(name + data)
        return struct.pack(">I", len(data)) + name + data + struct.pack(">I", check)

    size = struct.pack(">IIBBBBB", len(rows[0]), len(rows), 8, 0, 0, 0, 0)
    data = zlib.compress(b"".join(b"\0" + bytes(row) for row in rows), 9)
    path.write_bytes(b"\x89PNG\r\n\x1a\n"
                     + chunk(b"IHDR", size)
                     + chunk(b"IDAT", data)
                     + chunk(b"IEND", b""))
