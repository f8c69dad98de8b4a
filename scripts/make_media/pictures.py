# SPDX-License-Identifier: MIT
"""Pictures: rows of tuples of channels, mostly from 0 to 1. They are sums of waves, so that they look like something
in any viewer and come out the same on every machine."""

import math


def draw(width, height, colour):
    """The picture of a function of x and y, which go from 0 to 1."""
    return [[colour(x / max(1, width - 1), y / max(1, height - 1)) for x in range(width)] for y in range(height)]


def quantized(picture, largest=255):
    def whole(part):
        return max(0, min(largest, round(largest * part)))
    return [[tuple(whole(part) for part in pixel) for pixel in row] for row in picture]


def grey(colour):
    """One channel of a function with three."""
    def shade(x, y):
        red, green, blue = colour(x, y)
        return (0.2126 * red + 0.7152 * green + 0.0722 * blue,)
    return shade


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


def cut_out_globe(x, y):
    """With an opacity."""
    return *globe(x, y), float((2 * x - 1) ** 2 + (2 * y - 1) ** 2 < 1)


def distance(x, y):
    """Metres from a camera to the globe; far behind it, 1000."""
    inside = 1 - (2 * x - 1) ** 2 - (2 * y - 1) ** 2
    return (5 - math.sqrt(inside) if inside > 0 else 1000.0,)


def sky(x, y):
    """A sun far brighter than white."""
    sun = 400 * math.exp(-900 * ((x - 0.3) ** 2 + (y - 0.35) ** 2 / 4))
    return 0.25 + 0.4 * y + sun, 0.45 + 0.3 * y + 0.9 * sun, 1.1 - 0.4 * y + 0.7 * sun


def spinning(turn):
    """A wheel of eight sectors, turned."""
    def wheel(x, y):
        u, v = 2 * x - 1, 2 * y - 1
        sector = int((math.atan2(v, u) / math.tau + 1 + turn) * 8) % 2
        return (0.9, 0.45, 0.1) if sector and u * u + v * v < 0.9 else (0.1, 0.1, 0.12)
    return wheel
