# SPDX-License-Identifier: MIT
"""Images as bytes. A picture is a list of rows of tuples: whole numbers of some bits or floats, as the format says."""

import math
import struct
import zlib


def size(picture):
    return len(picture[0]), len(picture)


def flat(picture):
    """The channels of all pixels, one after the other."""
    return [part for row in picture for pixel in row for part in pixel]


def packed(picture, code):
    """Numbers as struct's code of one with its byte order: ">H"."""
    numbers = flat(picture)
    return struct.pack(f"{code[0]}{len(numbers)}{code[1]}", *numbers)


def bmp(picture):
    width, height = size(picture)
    padding = bytes(-width * 3 % 4)
    pixels = b"".join(b"".join(bytes((b, g, r)) for r, g, b in row) + padding for row in reversed(picture))
    header = struct.pack("<IiiHHIIiiII", 40, width, height, 1, 24, 0, len(pixels), 2835, 2835, 0, 0)
    return struct.pack("<2sIHHI", b"BM", 54 + len(pixels), 0, 0, 54) + header + pixels


def png_chunk(kind, data):
    return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))


def png_header(width, height, depth, colour):
    return b"\x89PNG\r\n\x1a\n" + png_chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, depth, colour, 0, 0, 0))


def png(picture, depth=8, texts=()):
    """Of 8 or 16 bits; or of 1 bit, with one channel of 0 or 1."""
    colour = {1: 0, 2: 4, 3: 2, 4: 6}[len(picture[0][0])]
    def line(row):
        if depth == 1:
            bits = "".join(str(pixel[0]) for pixel in row)
            bits += "0" * (-len(bits) % 8)
            return int(bits, 2).to_bytes(len(bits) // 8, "big")
        return packed([row], ">B" if depth == 8 else ">H")
    lines = b"".join(b"\0" + line(row) for row in picture)
    notes = b"".join(png_chunk(b"tEXt", f"{name}\0{text}".encode("latin-1")) for name, text in texts)
    return (png_header(*size(picture), depth, colour) + notes + png_chunk(b"IDAT", zlib.compress(lines, 9))
            + png_chunk(b"IEND", b""))


def tga(picture):
    """Run-length coded, from the top."""
    out = struct.pack("<BBBHHBHHHHBB", 0, 0, 10, 0, 0, 0, 0, 0, *size(picture), 24, 0x20)
    for row in picture:
        x = 0
        while x < len(row):
            run = 1
            while x + run < len(row) and run < 128 and row[x + run] == row[x]:
                run += 1
            out += bytes((0x80 | (run - 1), *reversed(row[x])))
            x += run
    return out + bytes(8) + b"TRUEVISION-XFILE.\0"


def pnm(picture, largest=255):
    kind = b"P6" if len(picture[0][0]) == 3 else b"P5"
    return b"%s\n%d %d\n%d\n" % (kind, *size(picture), largest) + packed(picture, ">B" if largest < 256 else ">H")


def ico(picture):
    content = png(picture)
    return struct.pack("<HHHBBBBHHII", 0, 1, 1, *size(picture), 0, 0, 1, 24, len(content), 22) + content


# The field types of TIFF: number, struct's code.
TIFF_TYPES = {"text": (2, "s"), "short": (3, "H"), "long": (4, "I")}


def tiff(pages, code="<B", deflated=False, texts=()):
    """One picture a page. `code` is struct's for a channel: "<B", "<H", "<I", "<f"; `texts` are (tag, text)."""
    out = bytearray(b"II*\0\0\0\0\0")
    link = 4  # where the place of the next page's directory goes
    for picture in pages:
        (width, height), channels = size(picture), len(picture[0][0])
        pixels = packed(picture, code)
        pixels = zlib.compress(pixels, 9) if deflated else pixels
        bits = 8 * struct.calcsize(code)
        fields = [(256, "long", [width]), (257, "long", [height]), (258, "short", [bits] * channels),
                  (259, "short", [8 if deflated else 1]), (262, "short", [2 if channels > 2 else 1]),
                  (273, "long", [len(out)]), (277, "short", [channels]), (278, "long", [height]),
                  (279, "long", [len(pixels)]), (339, "short", [3 if code[1] == "f" else 1] * channels)]
        fields += [(tag, "text", text.encode() + b"\0") for tag, text in texts]
        out += pixels + bytes(len(pixels) % 2)
        entries = b""
        for tag, kind, values in sorted(fields):
            number, letter = TIFF_TYPES[kind]
            data = values if letter == "s" else struct.pack(f"<{len(values)}{letter}", *values)
            if len(data) > 4:
                place, data = struct.pack("<I", len(out)), data + bytes(len(data) % 2)
                out += data
            else:
                place = data.ljust(4, b"\0")
            entries += struct.pack("<HHI", tag, number, len(values)) + place
        struct.pack_into("<I", out, link, len(out))
        link = len(out) + 2 + len(entries)
        out += struct.pack("<H", len(fields)) + entries + bytes(4)
    return bytes(out)


def rgbe(pixel):
    brightest = max(pixel)
    if brightest < 1e-32:
        return bytes(4)
    fraction, exponent = math.frexp(brightest)
    scale = fraction * 256 / brightest
    return bytes([*(int(part * scale) for part in pixel), exponent + 128])


def hdr(picture):
    """Each line coded as four runs of bytes, none of which repeats."""
    width, height = size(picture)
    out = b"#?RADIANCE\nFORMAT=32-bit_rle_rgbe\n\n-Y %d +X %d\n" % (height, width)
    for row in picture:
        coded = [rgbe(pixel) for pixel in row]
        out += bytes((2, 2, width >> 8, width & 255))
        for channel in range(4):
            plane = bytes(pixel[channel] for pixel in coded)
            out += b"".join(bytes([len(plane[i:i + 128])]) + plane[i:i + 128] for i in range(0, width, 128))
    return out


EXR_TYPES = {"uint": (0, "I"), "half": (1, "e"), "float": (2, "f")}


def exr_header(width, height, channels, compression=2):
    """`channels` are (name, type), sorted by name. Compression 0 is none, 2 is deflate line by line."""
    def attribute(name, kind, value):
        return name.encode() + b"\0" + kind.encode() + b"\0" + struct.pack("<I", len(value)) + value
    entries = b"".join(name.encode() + b"\0" + struct.pack("<IIII", EXR_TYPES[kind][0], 0, 1, 1)
                       for name, kind in channels)
    window = struct.pack("<4i", 0, 0, width - 1, height - 1)
    return (struct.pack("<II", 20000630, 2) + attribute("channels", "chlist", entries + b"\0")
            + attribute("compression", "compression", bytes([compression]))
            + attribute("dataWindow", "box2i", window) + attribute("displayWindow", "box2i", window)
            + attribute("lineOrder", "lineOrder", b"\0")
            + attribute("pixelAspectRatio", "float", struct.pack("<f", 1))
            + attribute("screenWindowCenter", "v2f", struct.pack("<ff", 0, 0))
            + attribute("screenWindowWidth", "float", struct.pack("<f", 1)) + b"\0")


def exr(picture, channels):
    """`channels` are (name, type) in the picture's order."""
    order = sorted(range(len(channels)), key=lambda i: channels[i][0])
    header = exr_header(*size(picture), [channels[i] for i in order])
    lines = []
    for y, row in enumerate(picture):
        data = b"".join(struct.pack(f"<{len(row)}{EXR_TYPES[channels[i][1]][1]}", *(pixel[i] for pixel in row))
                        for i in order)
        halves = data[0::2] + data[1::2]
        steps = bytes([halves[0]]) + bytes((b - a + 128) & 255 for a, b in zip(halves, halves[1:]))
        coded = min(zlib.compress(steps, 9), data, key=len)
        lines.append(struct.pack("<iI", y, len(coded)) + coded)
    place, table = len(header) + 8 * len(lines), b""
    for line in lines:
        table += struct.pack("<Q", place)
        place += len(line)
    return header + table + b"".join(lines)


def gif(frames):
    """Animated; all frames together have 256 colours at most."""
    colours = sorted({pixel for frame in frames for row in frame for pixel in row})
    width, height = size(frames[0])
    palette = b"".join(bytes(colour) for colour in colours).ljust(768, b"\0")
    out = b"GIF89a" + struct.pack("<HHBBB", width, height, 0xF7, 0, 0) + palette
    out += b"!\xff\x0bNETSCAPE2.0\x03\x01\0\0\0"
    for frame in frames:
        data = gif_codes([colours.index(pixel) for row in frame for pixel in row])
        out += b"!\xf9\x04\x04\x0a\0\0\0" + struct.pack("<cHHHHB", b",", 0, 0, width, height, 0) + b"\x08"
        out += b"".join(bytes([len(data[i:i + 255])]) + data[i:i + 255] for i in range(0, len(data), 255)) + b"\0"
    return out + b";"


def gif_codes(indices):
    """Nothing is looked up: every 250 codes the table starts anew, so that all codes have 9 bits."""
    clear, end = 256, 257
    codes = [code for i in range(0, len(indices), 250) for code in [clear, *indices[i:i + 250]]] + [end]
    bits = sum(code << (9 * i) for i, code in enumerate(codes))
    return bits.to_bytes((9 * len(codes) + 7) // 8, "little")


def sgi(picture, depth=8):
    (width, height), channels = size(picture), len(picture[0][0])
    out = struct.pack(">HBBHHHHII", 474, 0, depth // 8, 3, width, height, channels, 0, (1 << depth) - 1)
    out = out.ljust(512, b"\0")
    for channel in range(channels):
        plane = [[(pixel[channel],) for pixel in row] for row in reversed(picture)]
        out += packed(plane, ">B" if depth == 8 else ">H")
    return out


def dpx(picture):
    """Three channels of 10 bits in each 32."""
    width, height = size(picture)
    words = [r << 22 | g << 12 | b << 2 for row in picture for r, g, b in row]
    out = bytearray(2048)
    struct.pack_into(">4sI8sIIIII", out, 0, b"SDPX", 2048, b"V1.0", 2048 + 4 * len(words), 1, 1664, 384, 0)
    struct.pack_into(">I", out, 660, 0xFFFFFFFF)  # not encrypted
    struct.pack_into(">HHII", out, 768, 0, 1, width, height)
    struct.pack_into(">IIfIfBBBBHHI", out, 780, 0, 0, 0, 1023, 0, 50, 2, 2, 10, 1, 0, 2048)
    return bytes(out) + struct.pack(f">{len(words)}I", *words)


def dds(picture):
    """Four channels of 8 bits, not compressed."""
    width, height = size(picture)
    header = struct.pack("<4s7I44x", b"DDS ", 124, 0x100F, height, width, 4 * width, 0, 0)
    header += struct.pack("<8I5I", 32, 0x41, 0, 32, 0xFF, 0xFF00, 0xFF0000, 0xFF000000, 0x1000, 0, 0, 0, 0)
    return header + packed(picture, "<B")
