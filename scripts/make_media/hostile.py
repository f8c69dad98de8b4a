# SPDX-License-Identifier: MIT
"""What stands in tests/data/hostile: small files, each with one defect, and defects.tsv, which names them.

The table's columns are the file, what must come of it, and the defect:
    refused   it cannot be opened, and the reason is told
    pixels    its header can be read, and not the rest
    limit     it asks for more than a host allows: refused with both numbers by a host that allows a million
    any       readers differ: it may be opened or refused
"""

import json
import struct

import image_formats as images
import scene_formats as scenes
from pictures import draw, globe, grey, quantized, sky, spinning, water
from solids import CONE, TABLE, VASE, lathe

HUGE = 2**31 - 1
LARGE = 30000  # 900 million pixels: honest for a wall, too much for a host that allows a million


def patched(content, offset, form, *values):
    """With other numbers at an offset."""
    out = bytearray(content)
    struct.pack_into(form, out, offset, *values)
    return bytes(out)


def recounted(content, old, new):
    """With other words in a text."""
    assert content.count(old) >= 1, old
    return content.replace(old, new)


def png_of(width, height, depth=8, colour=2):
    end = images.png_chunk(b"IDAT", b"x\x9c\x03\0\0\0\0\x01") + images.png_chunk(b"IEND", b"")
    return images.png_header(width, height, depth, colour) + end


def tiff_fields(content, changes):
    """With other values of a directory's fields: {tag: value}."""
    out = bytearray(content)
    place, = struct.unpack_from("<I", out, 4)
    count, = struct.unpack_from("<H", out, place)
    for entry in range(place + 2, place + 2 + 12 * count, 12):
        tag, = struct.unpack_from("<H", out, entry)
        if tag in changes:
            struct.pack_into("<HII", out, entry + 2, 4, 1, changes[tag])
    return bytes(out)


def png_rows(whole):
    yield "empty.png", "refused", "no byte at all", b""
    yield "cut_in_signature.png", "refused", "ends in its signature", whole[:5]
    yield "cut_in_header.png", "refused", "ends in its header", whole[:20]
    yield "cut_in_pixels.png", "pixels", "ends in its pixels", whole[:len(whole) // 2]
    yield "zero_size.png", "refused", "0 by 0 pixels", png_of(0, 0)
    yield "zero_height.png", "refused", "16 by 0 pixels", png_of(16, 0)
    yield "huge_size.png", "refused", "the largest width and height that 31 bits hold", png_of(HUGE, HUGE)
    yield "large_size.png", "limit", "900 million pixels in 100 bytes", png_of(LARGE, LARGE)
    yield "bad_depth.png", "refused", "7 bits a channel", png_of(4, 4, 7)
    yield "bad_check_sum.png", "refused", "a header whose check sum does not fit", patched(whole, 29, ">I", 1)
    yield "lying_chunk.png", "any", "a chunk of 2 GiB in a small file", patched(whole, 33, ">I", HUGE)
    yield "text.png", "refused", "a text by that name", b"This is no picture.\n"
    yield "png.exr", "any", "another format by that name", whole
    yield "png.obj", "refused", "an image by the name of a scene", whole


def tiff_rows():
    whole = images.tiff([quantized(draw(16, 12, water))])
    place, = struct.unpack_from("<I", whole, 4)
    yield "empty.tif", "refused", "no byte at all", b""
    yield "cut_in_header.tif", "refused", "ends in its header", whole[:6]
    yield "cut_in_directory.tif", "refused", "ends in its directory", whole[:place + 20]
    yield "directory_beyond_end.tif", "refused", "a directory behind the end", patched(whole, 4, "<I", HUGE)
    yield "directory_in_a_ring.tif", "any", "a second page that is the first again", \
        patched(whole, len(whole) - 4, "<I", place)
    yield "zero_size.tif", "refused", "0 by 0 pixels", tiff_fields(whole, {256: 0, 257: 0})
    yield "huge_size.tif", "refused", "the largest width and height that 31 bits hold", \
        tiff_fields(whole, {256: HUGE, 257: HUGE})
    yield "large_size.tif", "limit", "900 million pixels in 1 KiB", \
        tiff_fields(whole, {256: LARGE, 257: LARGE, 278: LARGE})
    yield "strip_beyond_end.tif", "pixels", "pixels behind the end", tiff_fields(whole, {273: HUGE})
    yield "strip_too_short.tif", "any", "fewer pixels than rows", tiff_fields(whole, {279: 7})
    yield "many_channels.tif", "any", "65535 channels", tiff_fields(whole, {277: 65535})
    yield "unknown_compression.tif", "any", "a compression that nobody knows", tiff_fields(whole, {259: 40000})


def exr_rows():
    half = [(name, "half") for name in "BGR"]
    whole = images.exr(draw(16, 12, sky), [(name, "half") for name in "RGB"])
    yield "empty.exr", "refused", "no byte at all", b""
    yield "cut_in_header.exr", "refused", "ends in its header", whole[:100]
    yield "cut_in_table.exr", "any", "ends in the table of its lines", \
        whole[:len(images.exr_header(16, 12, half)) + 11]
    yield "cut_in_pixels.exr", "any", "ends in its pixels", whole[:-50]
    yield "zero_size.exr", "refused", "0 by 0 pixels", images.exr_header(0, 0, half)
    yield "huge_size.exr", "refused", "the largest width and height that 31 bits hold", \
        images.exr_header(HUGE, HUGE, half)
    yield "large_size.exr", "any", "900 million pixels in 400 bytes", images.exr_header(LARGE, LARGE, half)
    yield "no_channels.exr", "refused", "no channel", images.exr_header(4, 4, []) + bytes(32)
    yield "unknown_compression.exr", "refused", "a compression that nobody knows", \
        images.exr_header(4, 4, half, 99) + bytes(64)
    yield "lying_attribute.exr", "any", "an attribute of 2 GiB", \
        patched(whole, 8 + len("channels\0chlist\0"), "<i", HUGE)


def other_image_rows(jpeg):
    bmp = images.bmp(quantized(draw(16, 12, water)))
    tga = images.tga(quantized(draw(16, 12, water)))
    gif = images.gif([quantized(draw(16, 12, spinning(0)))])
    hdr = images.hdr(draw(16, 12, sky))
    sgi = images.sgi(quantized(draw(16, 12, water)))
    dpx = images.dpx(quantized(draw(16, 12, water), 1023))
    dds = images.dds([[(*pixel, 255) for pixel in row] for row in quantized(draw(16, 12, water))])
    frame = jpeg.index(b"\xff\xc0") + 5
    yield "empty.jpg", "refused", "no byte at all", b""
    yield "cut_in_header.jpg", "refused", "ends before its size", jpeg[:frame]
    yield "cut_in_pixels.jpg", "any", "ends in its pixels", jpeg[:-40]
    yield "zero_size.jpg", "refused", "0 by 0 pixels", patched(jpeg, frame, ">HH", 0, 0)
    yield "large_size.jpg", "limit", "900 million pixels in 1 KiB", patched(jpeg, frame, ">HH", LARGE, LARGE)
    yield "end_at_once.jpg", "refused", "nothing between begin and end", b"\xff\xd8\xff\xd9"
    yield "cut_in_header.bmp", "refused", "ends in its header", bmp[:30]
    yield "cut_in_pixels.bmp", "pixels", "ends in its pixels", bmp[:-100]
    yield "zero_size.bmp", "refused", "0 by 0 pixels", patched(bmp, 18, "<ii", 0, 0)
    yield "negative_width.bmp", "any", "a width of -16", patched(bmp, 18, "<i", -16)
    yield "lowest_height.bmp", "any", "a height that has no positive", patched(bmp, 22, "<i", -2**31)
    yield "large_size.bmp", "limit", "900 million pixels in 1 KiB", patched(bmp, 18, "<ii", LARGE, LARGE)
    yield "pixels_beyond_end.bmp", "pixels", "pixels behind the end", patched(bmp, 10, "<I", HUGE)
    yield "cut_in_header.tga", "refused", "ends in its header", tga[:12]
    yield "cut_in_pixels.tga", "pixels", "ends in its pixels", tga[:60]
    yield "large_size.tga", "limit", "900 million pixels in 1 KiB", patched(tga, 12, "<HH", LARGE, LARGE)
    yield "cut_in_header.gif", "refused", "ends in its header", gif[:9]
    yield "cut_in_pixels.gif", "pixels", "ends in its pixels", gif[:900]
    yield "zero_size.gif", "refused", "0 by 0 pixels", patched(gif, 6, "<HH", 0, 0)
    yield "large_size.gif", "limit", "900 million pixels in 1 KiB", patched(gif, 6, "<HH", LARGE, LARGE)
    yield "cut_in_header.hdr", "refused", "ends in its header", hdr[:15]
    yield "cut_in_pixels.hdr", "pixels", "ends in its pixels", hdr[:100]
    yield "large_size.hdr", "limit", "900 million pixels in 1 KiB", \
        recounted(hdr, b"-Y 12 +X 16", b"-Y %d +X %d" % (LARGE, LARGE))
    yield "negative_size.hdr", "refused", "-12 by -16 pixels", recounted(hdr, b"-Y 12 +X 16", b"-Y -12 +X -16")
    yield "run_too_long.hdr", "pixels", "a run beyond the line's end", \
        hdr[:hdr.index(b"\2\2\0\x10") + 4] + b"\xff\0" * 400
    yield "cut_in_header.sgi", "refused", "ends in its header", sgi[:10]
    yield "cut_in_pixels.sgi", "pixels", "ends in its pixels", sgi[:600]
    yield "many_channels.sgi", "any", "65535 channels", patched(sgi, 10, ">H", 65535)
    yield "cut_in_header.dpx", "refused", "ends in its header", dpx[:100]
    yield "large_size.dpx", "limit", "900 million pixels in 3 KiB", patched(dpx, 772, ">II", LARGE, LARGE)
    yield "cut_in_header.dds", "refused", "ends in its header", dds[:60]
    yield "huge_size.dds", "refused", "4294967295 by 4294967295 pixels", patched(dds, 12, "<II", 2**32 - 1, 2**32 - 1)
    yield "huge_size.ppm", "limit", "the largest width and height that 31 bits hold", b"P6 %d %d 255 abc" % (HUGE, HUGE)
    yield "large_size.ppm", "limit", "900 million pixels in 20 bytes", b"P6 %d %d 255 abc" % (LARGE, LARGE)
    yield "no_numbers.ppm", "any", "words in place of its size", b"P6 many more 255 abc"
    yield "cut_in_directory.ico", "refused", "ends in its directory", b"\0\0\1\0\1\0\x10\x10"
    yield "image_beyond_end.ico", "refused", "an image behind the end", \
        struct.pack("<HHHBBBBHHII", 0, 1, 1, 16, 16, 0, 0, 1, 24, 99, HUGE)
    yield "riff_of_nothing.webp", "refused", "a container that is empty", b"RIFF\xff\xff\xff\x7fWEBP"


def scene_rows():
    cone = lathe(CONE, 6)
    stl, off = scenes.stl_binary(cone), scenes.off(cone).encode()
    ply, ply_binary = scenes.ply_text(cone).encode(), scenes.ply_binary(cone)
    table = scenes.dae(lathe(TABLE, 5), "lost.png").encode()
    yield "empty.obj", "any", "no byte at all", b""
    yield "corner_beyond_end.obj", "refused", "a face with a corner that is not there", \
        b"v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 30\n"
    yield "corner_before_begin.obj", "refused", "a face with a negative corner that is not there", \
        b"v 0 0 0\nv 1 0 0\nv 0 1 0\nf -1 -2 -30\n"
    yield "corner_too_large.obj", "any", "a corner that no number holds", b"v 0 0 0\nf 1 99999999999999999999 1\n"
    yield "nan.obj", "any", "places that are no numbers", b"v nan inf -inf\nv 1e999 0 0\nv x y z\nf 1 2 3\n"
    yield "own_library.obj", "any", "its own name as its materials", \
        b"mtllib own_library.obj\nv 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n"
    yield "empty.stl", "refused", "no byte at all", b""
    yield "cut_in_faces.stl", "refused", "fewer faces than counted", stl[:-70]
    yield "lying_count.stl", "refused", "4294967295 faces in 1 KiB", patched(stl, 80, "<I", 2**32 - 1)
    yield "cut_in_text.stl", "any", "a text that ends in a face", scenes.stl_text(cone).encode()[:300]
    yield "empty.ply", "refused", "no byte at all", b""
    yield "cut_in_header.ply", "refused", "ends in its header", ply[:60]
    yield "cut_in_faces.ply", "any", "a text with fewer faces than counted", ply[:-40]
    yield "cut_in_vertices.ply", "any", "a text with fewer vertices than counted", ply[:300]
    yield "cut_in_bytes.ply", "any", "bytes of fewer vertices than counted", ply_binary[:-200]
    yield "lying_count.ply", "any", "4294967295 vertices in 1 KiB", \
        recounted(ply_binary, b"vertex 18", b"vertex 4294967295")
    yield "corner_beyond_end.ply", "any", "a face with a corner that is not there", \
        recounted(ply, b"\n3 1 6 7\n", b"\n3 1 6000 7\n")
    yield "empty.off", "refused", "no byte at all", b""
    yield "lying_count.off", "any", "4294967295 vertices in 500 bytes", \
        recounted(off, b"OFF\n18 ", b"OFF\n4294967295 ")
    yield "corner_beyond_end.off", "any", "a face with a corner that is not there", \
        b"OFF\n3 1 0\n0 0 0\n1 0 0\n0 1 0\n3 0 1 77\n"
    yield "empty.dae", "refused", "no byte at all", b""
    yield "cut.dae", "refused", "ends in its geometry", table[:len(table) // 2]
    yield "lying_count.dae", "any", "4294967295 numbers in 3 KiB", \
        recounted(table, b'places-array" count="', b'places-array" count="4294967295')
    yield "corner_beyond_end.dae", "any", "triangles with corners that are not there", \
        recounted(table, b"<p>", b"<p>77777 88888 ")
    yield "node_in_itself.dae", "any", "a node that is a part of itself", \
        recounted(table, b"<instance_camera url=\"#viewer\"/>", b'<instance_node url="#viewer-node"/>')
    entities = b"".join(b'<!ENTITY e%d "%s">' % (i, b"&e%d;" % (i - 1) * 10 if i else b"x" * 10) for i in range(9))
    yield "entities.dae", "refused", "entities that unfold to a gigabyte", \
        b'<?xml version="1.0"?><!DOCTYPE x [' + entities + b"]><COLLADA>&e8;</COLLADA>"
    yield "deep.dae", "any", "twenty thousand elements in each other", b"<COLLADA>" + b"<node>" * 20000


def gltf_rows():
    scene, buffer = scenes.gltf_scene(lathe(VASE[:6], 5), "gltf.bin")
    glb = scenes.glb(*scenes.gltf_scene(lathe(VASE[:6], 5)))

    def changed(change):
        copy = json.loads(json.dumps(scene))
        change(copy)
        return json.dumps(copy).encode()
    yield "gltf.bin", "", "the buffer of the others; not a scene", buffer
    yield "empty.gltf", "refused", "no byte at all", b""
    yield "cut.gltf", "refused", "ends in its text", changed(lambda s: None)[:400]
    yield "no_buffer.gltf", "any", "a buffer that is not there", \
        changed(lambda s: s["buffers"][0].update(uri="lost.bin"))
    yield "buffer_elsewhere.gltf", "any", "a buffer far outside its folder", \
        changed(lambda s: s["buffers"][0].update(uri="../../../../../../../etc/passwd"))
    yield "buffer_too_short.gltf", "any", "a buffer that is longer than its file", \
        changed(lambda s: s["buffers"][0].update(byteLength=HUGE))
    yield "view_beyond_end.gltf", "any", "a view behind its buffer", \
        changed(lambda s: s["bufferViews"][1].update(byteOffset=HUGE))
    yield "lying_count.gltf", "any", "an accessor with 2147483647 vertices", \
        changed(lambda s: s["accessors"][1].update(count=HUGE))
    yield "negative_count.gltf", "any", "an accessor with -1 vertices", \
        changed(lambda s: s["accessors"][1].update(count=-1))
    yield "corner_beyond_end.gltf", "any", "corners in the list of times", \
        changed(lambda s: s["meshes"][0]["primitives"][0].update(indices=2))
    yield "no_such_mesh.gltf", "any", "a node with a mesh that is not there", \
        changed(lambda s: s["nodes"][0].update(mesh=99))
    yield "node_in_itself.gltf", "any", "a node that is its own child", \
        changed(lambda s: s["nodes"][0].update(children=[0]))
    yield "not_json.gltf", "refused", "words", b"This is no scene.\n"
    yield "deep.gltf", "refused", "a hundred thousand brackets", b'{"asset":' + b"[" * 100000
    yield "empty.glb", "refused", "no byte at all", b""
    yield "cut_in_header.glb", "refused", "ends in its header", glb[:10]
    yield "cut_in_text.glb", "refused", "ends in its text", glb[:200]
    yield "cut_in_buffer.glb", "any", "ends in its buffer", glb[:-100]
    yield "lying_chunk.glb", "refused", "a text of 4 GiB", patched(glb, 12, "<I", 2**32 - 1)
    yield "lying_length.glb", "any", "a length of 12 bytes", patched(glb, 8, "<I", 12)


def files():
    from examples import converted
    jpeg = converted(images.pnm(quantized(draw(16, 12, grey(globe)))), ".jpg")
    rows = [*png_rows(images.png(quantized(draw(16, 12, water)))), *tiff_rows(), *exr_rows(), *other_image_rows(jpeg),
            *scene_rows(), *gltf_rows()]
    found = {name: content for name, _, _, content in rows}
    assert len(found) == len(rows), "a name stands twice"
    lines = ["file\texpect\tdefect"] + ["\t".join(row[:3]) for row in sorted(rows) if row[1]]
    return found | {"defects.tsv": "\n".join(lines) + "\n"}
