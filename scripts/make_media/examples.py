# SPDX-License-Identifier: MIT
"""What stands in examples/media."""

import pathlib
import subprocess
import tempfile

import image_formats as images
import scene_formats as scenes
from pictures import (checker, cut_out_globe, distance, draw, globe, grey, quantized, sky, spinning, water, wood)
from solids import CONE, PAWN, TABLE, VASE, lathe


def converted(content, extension, *options):
    """A picture in a format that takes a codec: these come from the image tools of the system."""
    options = (*options, "--nosoftwareattrib", "--attrib", "DateTime", "2026:11:23 12:00:00")
    with tempfile.TemporaryDirectory() as folder:
        source, target = pathlib.Path(folder, "in.ppm"), pathlib.Path(folder, f"out{extension}")
        source.write_bytes(content)
        subprocess.run(["oiiotool", source, *options, "-o", target], check=True, capture_output=True)
        return target.read_bytes()


def image_files():
    half = [(name, "half") for name in "RGBA"]
    sunset = [[(*a, *b, *c) for a, b, c in zip(*rows)] for rows in zip(
        draw(96, 96, cut_out_globe), draw(96, 96, distance),
        draw(96, 96, lambda x, y: (int(cut_out_globe(x, y)[3]) * 7,)))]
    photo = images.pnm(quantized(draw(320, 200, water)))
    return {
        "globe.png": images.png(quantized(draw(96, 96, globe))),
        "globe.ico": images.ico(quantized(draw(32, 32, globe))),
        "images/dot.png": images.png([[(200,)]]),
        "images/globe 16 bit.png": images.png(quantized(draw(128, 128, cut_out_globe), 65535), 16,
                                              [("Title", "Globe"), ("Software", "ZelTools")]),
        "images/wall.png": images.png([[((x // 64 + y // 64) % 2,) for x in range(4096)] for y in range(2160)], 1),
        "images/photo.jpg": converted(photo, ".jpg", "--attrib", "Make", "ZelTools", "--attrib", "Model", "Lathe",
                                      "--quality", "80"),
        "images/photo grey.jpg": converted(photo, ".jpg", "--ch", "R", "--resize", "1024x640", "--quality", "60"),
        "images/photo.webp": converted(photo, ".webp"),
        "images/photo.jp2": converted(photo, ".jp2"),
        "images/height.tif": images.tiff([quantized(draw(160, 120, grey(water)), 65535)], "<H", True,
                                         [(270, "Heights"), (271, "ZelTools")]),
        "images/height float.tif": images.tiff([draw(80, 60, grey(water))], "<f"),
        "images/count.tif": images.tiff([quantized(draw(40, 30, grey(water)), 4294967295)], "<I", True),
        "images/pages.tif": images.tiff([quantized(draw(w, w * 3 // 4, wood)) for w in (96, 64, 32)], deflated=True),
        "images/sky.hdr": images.hdr(draw(128, 64, sky)),
        "images/sky.exr": images.exr([[(*pixel, 1.0) for pixel in row] for row in draw(128, 64, sky)], half),
        "images/layers.exr": images.exr(sunset, half + [("Z", "float"), ("object", "uint")]),
        "images/relief.pgm": images.pnm(quantized(draw(64, 48, grey(wood)), 65535), 65535),
        "images/spin.gif": images.gif([quantized(draw(48, 48, spinning(turn / 32))) for turn in range(4)]),
        "images/paint.sgi": images.sgi(quantized(draw(64, 48, water), 65535), 16),
        "images/film.dpx": images.dpx(quantized(draw(96, 54, water), 1023)),
        "images/decal.dds": images.dds(quantized(draw(64, 64, cut_out_globe))),
        "textures/Wood grain.bmp": images.bmp(quantized(draw(96, 64, wood))),
        "textures/Wood grain.png": images.png(quantized(draw(96, 64, wood))),
        "textures/checker.tga": images.tga(quantized(draw(64, 64, checker))),
        "textures/eau salée.ppm": images.pnm(quantized(draw(64, 64, water))),
    }


def scene_files():
    vase, vase_buffer = scenes.gltf_scene(lathe(VASE, 24), "vase.bin")
    return {
        "scenes/cone.stl": scenes.stl_text(lathe(CONE, 16)),
        "scenes/pawn.stl": scenes.stl_binary(lathe(PAWN, 20)),
        "scenes/pawn.ply": scenes.ply_text(lathe(PAWN, 12)),
        "scenes/pawn binary.ply": scenes.ply_binary(lathe(PAWN, 48)),
        "scenes/pawn.off": scenes.off(lathe(PAWN, 12)),
        "scenes/vase.obj": scenes.obj(lathe(VASE, 24), "vase.mtl", "clay"),
        "scenes/vase.mtl": scenes.mtl("clay", "../textures/checker.tga"),
        "scenes/vase.gltf": scenes.gltf(vase),
        "scenes/vase.bin": vase_buffer,
        "scenes/vase.glb": scenes.glb(*scenes.gltf_scene(lathe(VASE, 32))),
        "scenes/table.dae": scenes.dae(lathe(TABLE, 20), "../textures/Wood%20grain.png"),
        "scenes/lost texture.dae": scenes.dae(lathe(TABLE, 12), "../textures/lost.png"),
    }


def broken_files(whole):
    """One of each kind of file, and the kinds of harm that files meet in real life."""
    def cut(name, part=0.5):
        content = whole[name] if isinstance(whole[name], bytes) else whole[name].encode()
        return content[:int(len(content) * part)]
    return {
        "cut header.png": whole["globe.png"][:20],
        "cut.jpg": whole["images/photo.jpg"][:150],
        "cut directory.tif": cut("images/height.tif", 0.97),
        "cut header.exr": whole["images/sky.exr"][:100],
        "cut header.bmp": whole["textures/Wood grain.bmp"][:30],
        "empty.hdr": b"",
        "overwritten.gif": b"GIF89a" + bytes(200),
        "page of a server.webp": "<html><body>404 Not Found</body></html>\n",
        "cut.stl": cut("scenes/pawn.stl"),
        "cut.ply": cut("scenes/pawn binary.ply"),
        "cut.glb": cut("scenes/vase.glb"),
        "no corners.obj": "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 30\n",
        "no buffer.gltf": whole["scenes/vase.gltf"].replace("vase.bin", "lost.bin"),
        "cut.dae": cut("scenes/table.dae"),
        "empty.off": b"",
    }


READ_ME = """Small images and scenes to try zel on. scripts/make_media made them.

Those in broken/ are broken on purpose: zel says of each what is wrong, and ends with status 1.
"""


def files():
    whole = image_files() | scene_files()
    broken = {f"broken/{name}": content for name, content in broken_files(whole).items()}
    return whole | broken | {"READ ME.txt": READ_ME}
