# SPDX-License-Identifier: MIT
"""Scenes as text or bytes. A solid is points and triangles (solids.py)."""

import json
import struct

from solids import corners, unrolled


def obj(solid, material_file, material):
    """With texture coordinates."""
    points, triangles = solid
    lines = ["# A turned vase", f"mtllib {material_file}", "o vase"]
    lines += [f"v {x:.4f} {y:.4f} {z:.4f}" for x, y, z in points]
    lines += [f"vt {u:.4f} {v:.4f}" for u, v in unrolled(points)]
    lines += [f"usemtl {material}"]
    lines += ["f " + " ".join(f"{i + 1}/{i + 1}" for i in triangle) for triangle in triangles]
    return "\n".join(lines) + "\n"


def mtl(material, texture=None):
    lines = [f"newmtl {material}", "Ka 0.1 0.05 0.03", "Kd 0.72 0.38 0.22", "Ks 0.05 0.05 0.05", "Ns 12", "illum 2"]
    return "\n".join(lines + ([f"map_Kd {texture}"] if texture else [])) + "\n"


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


def ply_header(form, vertices, faces):
    return "\n".join(["ply", f"format {form} 1.0", "comment a turned pawn", f"element vertex {vertices}",
                      "property float x", "property float y", "property float z", f"element face {faces}",
                      "property list uchar int vertex_indices", "end_header"]) + "\n"


def ply_text(solid):
    points, triangles = solid
    lines = [f"{x:.4f} {y:.4f} {z:.4f}" for x, y, z in points]
    lines += [f"3 {a} {b} {c}" for a, b, c in triangles]
    return ply_header("ascii", len(points), len(triangles)) + "\n".join(lines) + "\n"


def ply_binary(solid):
    points, triangles = solid
    body = b"".join(struct.pack("<3f", *point) for point in points)
    body += b"".join(struct.pack("<B3i", 3, *triangle) for triangle in triangles)
    return ply_header("binary_little_endian", len(points), len(triangles)).encode() + body


def off(solid):
    points, triangles = solid
    lines = ["OFF", f"{len(points)} {len(triangles)} 0"]
    lines += [f"{x:.4f} {y:.4f} {z:.4f}" for x, y, z in points]
    lines += [f"3 {a} {b} {c}" for a, b, c in triangles]
    return "\n".join(lines) + "\n"


def gltf_scene(solid, buffer_file=None):
    """The scene and its buffer: one mesh, a camera, and an animation that turns the mesh round in a second."""
    points, triangles = solid
    indices = b"".join(struct.pack("<3H", *triangle) for triangle in triangles)
    indices += bytes(-len(indices) % 4)
    places = b"".join(struct.pack("<3f", *point) for point in points)
    times = struct.pack("<3f", 0, 0.5, 1)
    turns = struct.pack("<12f", 0, 0, 0, 1, 0, 1, 0, 0, 0, 0, 0, -1)
    parts = [indices, places, times, turns]
    starts = [sum(len(part) for part in parts[:i]) for i in range(len(parts))]
    single = [struct.unpack("<3f", struct.pack("<3f", *point)) for point in points]
    scene = {
        "asset": {"version": "2.0", "generator": "ZelTools"},
        "scene": 0, "scenes": [{"nodes": [0, 1]}],
        "nodes": [{"name": "vase", "mesh": 0}, {"name": "viewer", "camera": 0, "translation": [0, 1, 4]}],
        "meshes": [{"name": "vase", "primitives": [{"attributes": {"POSITION": 1}, "indices": 0, "material": 0}]}],
        "materials": [{"name": "clay", "pbrMetallicRoughness": {"baseColorFactor": [0.72, 0.38, 0.22, 1]}}],
        "cameras": [{"type": "perspective", "perspective": {"yfov": 0.7, "znear": 0.1, "aspectRatio": 1.5}}],
        "animations": [{"name": "turn", "samplers": [{"input": 2, "output": 3}],
                        "channels": [{"sampler": 0, "target": {"node": 0, "path": "rotation"}}]}],
        "accessors": [
            {"bufferView": 0, "componentType": 5123, "count": 3 * len(triangles), "type": "SCALAR"},
            {"bufferView": 1, "componentType": 5126, "count": len(points), "type": "VEC3",
             "min": [min(point[i] for point in single) for i in range(3)],
             "max": [max(point[i] for point in single) for i in range(3)]},
            {"bufferView": 2, "componentType": 5126, "count": 3, "type": "SCALAR", "min": [0], "max": [1]},
            {"bufferView": 3, "componentType": 5126, "count": 3, "type": "VEC4"},
        ],
        "bufferViews": [{"buffer": 0, "byteOffset": start, "byteLength": len(part)}
                        for start, part in zip(starts, parts)],
        "buffers": [{"byteLength": len(b"".join(parts))} | ({"uri": buffer_file} if buffer_file else {})],
    }
    return scene, b"".join(parts)


def gltf(scene):
    return json.dumps(scene, indent=1) + "\n"


def glb(scene, buffer):
    text = json.dumps(scene).encode()
    text += b" " * (-len(text) % 4)
    buffer += bytes(-len(buffer) % 4)
    total = 12 + 8 + len(text) + 8 + len(buffer)
    return (struct.pack("<4sII", b"glTF", 2, total) + struct.pack("<I4s", len(text), b"JSON") + text
            + struct.pack("<I4s", len(buffer), b"BIN\0") + buffer)


def dae(solid, texture):
    """In centimetres, with a material that has a texture, a camera and a light."""
    points, triangles = solid
    numbers = " ".join(f"{100 * part:.3f}" for point in points for part in point)
    places = " ".join(f"{part:.4f}" for pair in unrolled(points) for part in pair)
    indices = " ".join(f"{i} {i}" for triangle in triangles for i in triangle)
    return f"""<?xml version="1.0" encoding="utf-8"?>
<COLLADA xmlns="http://www.collada.org/2005/11/COLLADASchema" version="1.4.1">
 <asset><created>2026-11-23T00:00:00Z</created><modified>2026-11-23T00:00:00Z</modified>
  <unit name="centimeter" meter="0.01"/><up_axis>Y_UP</up_axis></asset>
 <library_cameras><camera id="viewer" name="viewer"><optics><technique_common><perspective>
  <xfov>40</xfov><aspect_ratio>1.5</aspect_ratio><znear>1</znear><zfar>1000</zfar>
 </perspective></technique_common></optics></camera></library_cameras>
 <library_lights><light id="lamp" name="lamp"><technique_common><point><color>1 0.9 0.8</color></point>
 </technique_common></light></library_lights>
 <library_images><image id="top"><init_from>{texture}</init_from></image></library_images>
 <library_effects><effect id="wood-effect"><profile_COMMON>
  <newparam sid="surface"><surface type="2D"><init_from>top</init_from></surface></newparam>
  <newparam sid="sampler"><sampler2D><source>surface</source></sampler2D></newparam>
  <technique sid="common"><lambert><diffuse>
   <texture texture="sampler" texcoord="UVMap"/>
  </diffuse></lambert></technique>
 </profile_COMMON></effect></library_effects>
 <library_materials>
  <material id="wood" name="wood"><instance_effect url="#wood-effect"/></material>
 </library_materials>
 <library_geometries><geometry id="table" name="table"><mesh>
  <source id="places"><float_array id="places-array" count="{3 * len(points)}">{numbers}</float_array>
   <technique_common><accessor source="#places-array" count="{len(points)}" stride="3">
    <param name="X" type="float"/><param name="Y" type="float"/><param name="Z" type="float"/>
   </accessor></technique_common></source>
  <source id="map"><float_array id="map-array" count="{2 * len(points)}">{places}</float_array>
   <technique_common><accessor source="#map-array" count="{len(points)}" stride="2">
    <param name="S" type="float"/><param name="T" type="float"/>
   </accessor></technique_common></source>
  <vertices id="corners"><input semantic="POSITION" source="#places"/></vertices>
  <triangles count="{len(triangles)}" material="wood">
   <input semantic="VERTEX" source="#corners" offset="0"/><input semantic="TEXCOORD" source="#map" offset="1"/>
   <p>{indices}</p></triangles>
 </mesh></geometry></library_geometries>
 <library_visual_scenes><visual_scene id="room" name="room">
  <node id="table-node" name="table"><instance_geometry url="#table"><bind_material><technique_common>
   <instance_material symbol="wood" target="#wood"/></technique_common></bind_material></instance_geometry></node>
  <node id="viewer-node" name="viewer"><translate>0 100 400</translate><instance_camera url="#viewer"/></node>
  <node id="lamp-node" name="lamp"><translate>50 200 50</translate><instance_light url="#lamp"/></node>
 </visual_scene></library_visual_scenes>
 <scene><instance_visual_scene url="#room"/></scene>
</COLLADA>
"""
