# SPDX-License-Identifier: MIT
"""Solids of revolution: a profile (radius, height) turned around the upright axis."""

import math

VASE = [(0, 0)] + [(0.5 + 0.25 * math.sin(h * 4.2), h / 1.5) for h in [k / 8 for k in range(17)]]
CONE = [(0, 0), (1, 0), (0, 2)]
PAWN = [(0, 0), (0.6, 0), (0.6, 0.2), (0.3, 0.4), (0.2, 1.0), (0.4, 1.1), (0.15, 1.2)] + \
       [(0.32 * math.sin(a), 1.45 - 0.32 * math.cos(a)) for a in [0.6 + k * 0.36 for k in range(7)]] + [(0, 1.77)]
TABLE = [(0, 0), (0.5, 0), (0.5, 0.05), (0.06, 0.1), (0.06, 0.7), (0.8, 0.72), (0.8, 0.76), (0, 0.76)]


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


def unrolled(points):
    """A texture coordinate for each point: the angle, and the height."""
    top = max(height for _, height, _ in points)
    return [(math.atan2(z, x) / math.tau % 1, height / top) for x, height, z in points]


def normal(a, b, c):
    u, v = [b[i] - a[i] for i in range(3)], [c[i] - a[i] for i in range(3)]
    n = (u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2], u[0] * v[1] - u[1] * v[0])
    length = math.sqrt(sum(part * part for part in n)) or 1
    return tuple(part / length for part in n)


def corners(solid):
    """The normal and the three points of each triangle."""
    points, triangles = solid
    for triangle in triangles:
        a, b, c = (points[i] for i in triangle)
        yield normal(a, b, c), (a, b, c)
