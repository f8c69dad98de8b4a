#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Makes examples/media: a handful of small real images and scenes, every byte of them from here.

    scripts/make_media.py [FOLDER]

The pictures are sums of waves and the scenes are solids of revolution, so that the files look like something in any
viewer and come out the same on every machine.
"""

import json
import math
import pathlib
import struct
import sys
import zlib


# --- Pictures: rows of (red, green, blue) -----------------------------------------------------------------------------

def picture(width, height, colour):
    return [[tuple(max(0, min(255, round(255 * part))) for part in colour(x / (width - 1), y / (height - 1)))
             for x in range(width)] for y in range(height)]


def wood(x, y):
    """Rings around a centre outside the board, bent a little along the grain."""
    ring = math.hypot(x * 0.6 + 0.4, y * 3 - 4 + 0.12 * math.sin(9 * x)) * 9
    shade = 0.75 + 0.25 * (ring - math.floor(ring)) - 0.05 * math.sin(140 * y)
    return 0.76 * shade, 0.53 * shade, 0.32 * shade


def water(x, y):
    wave = sum(math.sin(k * (x * math.cos(k) + y * math.sin(k)) * 7) / k for k in range(1, 6)) / 4
    return 0.1 + 0.2 * wave, 0.42 + 0.3 * wave, 0.62 + 0.3 * wave


def checker(x, y):
    on = (int(x * 7.999) + int(y * 7.999)) % 2
    return (0.95, 0.95, 0.92) if on else (0.15, 0.2, 0.35)


def globe(x, y):
    u, v = 2 * x - 1, 2 * y - 1
    inside = 1 - u * u - v * v
    if inside <= 0:
        return 0.06, 0.07, 0.1
    light = max(0.1, (-0.5 * u - 0.6 * v + 0.65 * math.sqrt(inside)))
    return 0.3 * light + 0.05, 0.75 * light, 0.5 * light


def bmp(rows):
    width, height = len(rows[0]), len(rows)
    padding = bytes(-width * 3 % 4)
    pixels = b"".join(b"".join(bytes((b, g, r)) for r, g, b in row) + padding for row in reversed(rows))
    header = struct.pack("<IiiHHIIiiII", 40, width, height, 1, 24, 0, len(pixels), 2835, 2835, 0, 0)
    return struct.pack("<2sIHHI", b"BM", 54 + len(pixels), 0, 0, 54) + header + pixels


def png(rows):
    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))
    lines = b"".join(b"\0" + bytes(part for pixel in row for part in pixel) for row in rows)
    header = struct.pack(">IIBBBBB", len(rows[0]), len(rows), 8, 2, 0, 0, 0)
    return b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(lines, 9)) + chunk(b"IEND", b"")


def tga(rows):
    """Run-length coded, from the top."""
    out = struct.pack("<BBBHHBHHHHBB", 0, 0, 10, 0, 0, 0, 0, 0, len(rows[0]), len(rows), 24, 0x20)
    for row in rows:
        x = 0
        while x < len(row):
            run = 1
            while x + run < len(row) and run < 128 and row[x + run] == row[x]:
                run += 1
            out += bytes((0x80 | (run - 1), *reversed(row[x])))
            x += run
    return out + bytes(8) + b"TRUEVISION-XFILE.\0"


def ppm(rows):
    return b"P6\n%d %d\n255\n" % (len(rows[0]), len(rows)) + bytes(part for row in rows for pixel in row for part in pixel)


def ico(rows):
    content = png(rows)
    return struct.pack("<HHHBBBBHHII", 0, 1, 1, len(rows[0]), len(rows), 0, 0, 1, 24, len(content), 22) + content


# --- Scenes: a profile (radius, height) turned around the upright axis --------------------------------------------------

def lathe(profile, steps):
    """Points and triangles (indices), the outside seen counter-clockwise."""
    points = [(r * math.cos(2 * math.pi * s / steps), h, r * math.sin(2 * math.pi * s / steps))
              for r, h in profile for s in range(steps)]
    triangles = []
    for level in range(len(profile) - 1):
        for s in range(steps):
            a, b = level * steps + s, level * steps + (s + 1) % steps
            c, d = a + steps, b + steps
            triangles += [(a, c, b)] if profile[level][0] else []
            triangles += [(b, c, d)] if profile[level + 1][0] else []
    return points, triangles


VASE = [(0, 0)] + [(0.5 + 0.25 * math.sin(h * 4.2), h / 1.5) for h in [k / 8 for k in range(17)]]
CONE = [(0, 0), (1, 0), (0, 2)]
PAWN = [(0, 0), (0.6, 0), (0.6, 0.2), (0.3, 0.4), (0.2, 1.0), (0.4, 1.1), (0.15, 1.2)] + \
       [(0.32 * math.sin(a), 1.45 - 0.32 * math.cos(a)) for a in [0.6 + k * 0.36 for k in range(7)]] + [(0, 1.77)]


def obj(solid, material_file, material):
    points, triangles = solid
    lines = ["# A turned vase", f"mtllib {material_file}", "o vase"]
    lines += [f"v {x:.4f} {y:.4f} {z:.4f}" for x, y, z in points]
    lines += [f"usemtl {material}"]
    lines += [f"f {a + 1} {b + 1} {c + 1}" for a, b, c in triangles]
    return "\n".join(lines) + "\n"


def normal(a, b, c):
    u, v = [b[i] - a[i] for i in range(3)], [c[i] - a[i] for i in range(3)]
    n = (u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2], u[0] * v[1] - u[1] * v[0])
    length = math.sqrt(sum(part * part for part in n)) or 1
    return tuple(part / length for part in n)


def corners(solid):
    points, triangles = solid
    for triangle in triangles:
        a, b, c = (points[i] for i in triangle)
        yield normal(a, b, c), (a, b, c)


def stl_binary(solid):
    facets = list(corners(solid))
    body = b"".join(struct.pack("<12fH", *n, *a, *b, *c, 0) for n, (a, b, c) in facets)
    return b"a pawn, turned".ljust(80) + struct.pack("<I", len(facets)) + body


def stl_text(solid):
    lines = ["solid cone"]
    for n, facet in corners(solid):
        lines += ["  facet normal " + " ".join(f"{part:.5f}" for part in n), "    outer loop"]
        lines += ["      vertex " + " ".join(f"{part:.5f}" for part in point) for point in facet]
        lines += ["    endloop", "  endfacet"]
    return "\n".join(lines + ["endsolid cone"]) + "\n"


def ply(solid):
    points, triangles = solid
    lines = ["ply", "format ascii 1.0", "comment a turned pawn", f"element vertex {len(points)}",
             "property float x", "property float y", "property float z", f"element face {len(triangles)}",
             "property list uchar int vertex_indices", "end_header"]
    lines += [f"{x:.4f} {y:.4f} {z:.4f}" for x, y, z in points]
    lines += [f"3 {a} {b} {c}" for a, b, c in triangles]
    return "\n".join(lines) + "\n"


def gltf(solid, buffer_file):
    """The text and the buffer beside it."""
    points, triangles = solid
    indices = b"".join(struct.pack("<3H", *triangle) for triangle in triangles)
    indices += bytes(-len(indices) % 4)
    places = b"".join(struct.pack("<3f", *point) for point in points)
    single = [tuple(struct.unpack("<f", struct.pack("<f", part))[0] for part in point) for point in points]
    scene = {
        "asset": {"version": "2.0", "generator": "scripts/make_media.py"},
        "scene": 0, "scenes": [{"nodes": [0]}], "nodes": [{"name": "vase", "mesh": 0}],
        "meshes": [{"primitives": [{"attributes": {"POSITION": 1}, "indices": 0}]}],
        "accessors": [
            {"bufferView": 0, "componentType": 5123, "count": 3 * len(triangles), "type": "SCALAR"},
            {"bufferView": 1, "componentType": 5126, "count": len(points), "type": "VEC3",
             "min": [min(point[i] for point in single) for i in range(3)],
             "max": [max(point[i] for point in single) for i in range(3)]},
        ],
        "bufferViews": [{"buffer": 0, "byteLength": len(indices), "target": 34963},
                        {"buffer": 0, "byteOffset": len(indices), "byteLength": len(places), "target": 34962}],
        "buffers": [{"uri": buffer_file, "byteLength": len(indices) + len(places)}],
    }
    return json.dumps(scene, indent=1) + "\n", indices + places


def main():
    folder = pathlib.Path(sys.argv[1]) if len(sys.argv) > 1 else \
        pathlib.Path(__file__).resolve().parents[1] / "examples" / "media"
    vase, vase_buffer = gltf(lathe(VASE, 24), "vase.bin")
    files = {
        "globe.png": png(picture(96, 96, globe)),
        "globe.ico": ico(picture(32, 32, globe)),
        "textures/Wood grain.bmp": bmp(picture(96, 64, wood)),
        "textures/Wood grain.png": png(picture(96, 64, wood)),
        "textures/checker.tga": tga(picture(64, 64, checker)),
        "textures/eau salée.ppm": ppm(picture(64, 64, water)),
        "scenes/cone.stl": stl_text(lathe(CONE, 16)),
        "scenes/pawn.stl": stl_binary(lathe(PAWN, 20)),
        "scenes/pawn.ply": ply(lathe(PAWN, 12)),
        "scenes/vase.obj": obj(lathe(VASE, 24), "vase.mtl", "clay"),
        "scenes/vase.mtl": "newmtl clay\nKa 0.1 0.05 0.03\nKd 0.72 0.38 0.22\nKs 0.05 0.05 0.05\nNs 12\nillum 2\n",
        "scenes/vase.gltf": vase,
        "scenes/vase.bin": vase_buffer,
        "READ ME.txt": "Small images and scenes to try zel on. scripts/make_media.py made every byte of them.\n",
    }
    for name, content in files.items():
        path = folder / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(content.encode() if isinstance(content, str) else content)


main()
