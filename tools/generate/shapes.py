#!/usr/bin/env python3
"""Designs the control shapes and writes their routines.

    tools/generate/shapes.py [--check]

Each shape is a list of points in drawing order, one wire each; the forms are worked out here and
written as fixed texts into plugin/control/shapes_*.cpp. With --check nothing is written: the
program leaves with 1 when a file differs from what it would write. tools/generate/palette.py draws the
same points.
"""
import math
import pathlib
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
FOLDER = ROOT / "plugin" / "control"
# Files and the highest number that each holds.
FILES = (("shapes_01_to_13.cpp", 13), ("shapes_14_to_22.cpp", 22), ("shapes_23_to_43.cpp", 43))
COLUMNS = 100


# ---- helpers ------------------------------------------------------------------------------------

def polar(radius, degrees, radius2=None):
    """Point of a circle (or ellipse) about the origin, as two coordinates."""
    angle = math.radians(degrees)
    return radius * math.cos(angle), (radius if radius2 is None else radius2) * math.sin(angle)


def ring(count, radius, place, start=0.0, radius2=None):
    """`count` sides of a ring as count + 1 points; `place` turns two coordinates into a point."""
    step = 360.0 / count
    return [place(*polar(radius, start + step * i, radius2)) for i in range(count + 1)]


def flat(x, z):
    return (x, 0.0, z)


def upright(x, y):
    return (x, y, 0.0)


def side(z, y):
    return (0.0, y, z)


def at_height(y):
    return lambda x, z: (x, y, z)


def mirrored_closed(half):
    """Flat outline from its half at x >= 0, which starts on the axis; closed at its start."""
    other = [(-x, y, z) for x, y, z in reversed(half) if x != 0.0]
    return half + other + half[:1]


def catmull_rom(points, per_span):
    """A smooth row of points through the given ones, ends repeated."""
    rows = [points[0]] + points + [points[-1]]
    result = []
    for i in range(1, len(rows) - 2):
        for k in range(per_span):
            t = k / per_span
            result.append(tuple(
                0.5 * (2 * b + (c - a) * t + (2 * a - 5 * b + 4 * c - d) * t * t
                       + (3 * b - a - 3 * c + d) * t ** 3)
                for a, b, c, d in zip(rows[i - 1], rows[i], rows[i + 1], rows[i + 2])))
    return result + [points[-1]]


def resample(points, count):
    """`count` points at equal distances along a polyline, ends included."""
    lengths = [0.0]
    for a, b in zip(points, points[1:]):
        lengths.append(lengths[-1] + math.dist(a, b))
    result, k = [], 0
    for i in range(count):
        target = lengths[-1] * i / (count - 1)
        while k < len(points) - 2 and lengths[k + 1] < target:
            k += 1
        t = (target - lengths[k]) / (lengths[k + 1] - lengths[k])
        result.append(tuple(p + (q - p) * t for p, q in zip(points[k], points[k + 1])))
    return result


def between(a, b, count):
    """`count` values strictly between a and b, evenly spread."""
    return [a + (b - a) * (i + 1) / (count + 1) for i in range(count)]


def run(first, count, step=1):
    return [first + step * i for i in range(count)]


def chords(points, last):
    """Lengths along the points, times the one factor that brings the last to `last`."""
    lengths = [0.0]
    for a, b in zip(points, points[1:]):
        lengths.append(lengths[-1] + math.dist(a, b))
    return [length * last / lengths[-1] for length in lengths]


# ---- forms --------------------------------------------------------------------------------------

def cube():
    b = [(-5, -5, 5), (5, -5, 5), (5, -5, -5), (-5, -5, -5)]
    t = [(x, 5, z) for x, _, z in b]
    return [b[0], b[1], t[1], b[1], b[2], t[2], b[2], b[3], t[3], b[3], b[0],
            t[0], t[1], t[2], t[3], t[0], b[0]]


def flat_double_arrow():
    return [(-4, 0, 0), (-2, 0, -2), (-2, 0, -1), (2, 0, -1), (2, 0, -2), (4, 0, 0),
            (2, 0, 2), (2, 0, 1), (-2, 0, 1), (-2, 0, 2), (-4, 0, 0)]


def ring_with_crossed_fins():
    fin = 0.593
    circle = ring(36, 3.0, lambda z, x: (x, 0.0, z), start=0.0)  # from (0, 0, 3) towards +x
    tip = circle[3]
    outer, inner = (0, 0, 3 + fin), (0, 0, 3 - fin)
    up, down = (0, fin, 3), (0, -fin, 3)
    return [inner] + circle + [outer, tip, down, up, tip, inner]


def arched_double_arrow():
    # Circle about (0, centre) whose middle line ends in the tips (+-3.972, 1.242); the shaft's
    # outer side has its top at 3.664.
    shaft, head, fin = 0.2, 0.52, 0.239
    centre = (3.972 ** 2 + 1.242 ** 2 - (3.664 - shaft) ** 2) / (2 * 1.242 - 2 * (3.664 - shaft))
    radius = 3.664 - shaft - centre
    end = math.degrees(math.asin(3.972 / radius))
    base = end - 9.6

    def at(r, angle, z=0.0):
        a = math.radians(angle)
        return (r * math.sin(a), centre + r * math.cos(a), z)

    def crossed(sign):
        tip = at(radius, sign * end)
        return [tip, at(radius, sign * base, fin), at(radius, sign * base, -fin), tip]

    outer = [at(radius + shaft, a) for a in between(-base, base, 7)]
    inner = [at(radius - shaft, a) for a in between(base, -base, 8)]
    return (crossed(-1) + [at(radius + head, -base), at(radius + shaft, -base)] + outer
            + [at(radius + shaft, base), at(radius + head, base)] + crossed(1)
            + [at(radius - head, base), at(radius - shaft, base)] + inner
            + [at(radius - shaft, -base), at(radius - head, -base), at(radius, -end)])


def solid_double_arrow():
    tip, base, half = 3.813, 2.4, 0.5

    def head(sign, order):
        corners = [(sign * base, half, 0), (sign * base, 0, half),
                   (sign * base, -half, 0), (sign * base, 0, -half)]
        p = [corners[i] for i in order]
        t = (sign * tip, 0, 0)
        return p, [p[0], p[1], p[2], p[3], p[0], t, p[2], p[1], t, p[3]]

    p, left = head(-1, (1, 2, 3, 0))   # ends at the upper corner
    q, right = head(1, (1, 2, 3, 0))
    right.reverse()                    # starts there
    return left + [p[1], (-base, 0, 0), (base, 0, 0), q[1]] + right


def oval_dome_with_post():
    x, z, low, apex, top = 0.934, 1.994, 0.297, 1.5, 2.209
    place = at_height(low)
    base = [place(*polar(x, 18 * i + 90, z)) for i in range(21)]    # from +z over -x

    def arc(points):
        """Half ellipse over the dome between two opposite base points, apex in the middle."""
        a = points
        return [(a[0] * math.cos(t), low + (apex - low) * math.sin(t), a[2] * math.cos(t))
                for t in (math.pi * i / 14 for i in range(15))]

    lengthwise = arc(base[0])
    across = arc(base[15])
    post = [(0, apex, 0), (0, top, 0), (0, apex, 0)]
    return (base + lengthwise[1:7] + post + lengthwise[8:] + base[11:16] + across[1:])


def wire_sphere():
    horizontal = ring(16, 1.0, flat)
    front = ring(16, 1.0, upright)
    across = ring(16, 1.0, side, start=90)
    return horizontal + front[1:] + front[1:5] + across[1:]


def sole():
    half = [(0.0, 2.183), (0.3, 2.12), (0.62, 1.82), (0.80, 1.35), (0.846, 0.85), (0.76, 0.3),
            (0.60, -0.3), (0.51, -0.85), (0.54, -1.35), (0.53, -1.72), (0.37, -2.02), (0.12, -2.12)]
    smooth = resample(catmull_rom(half, 24), 21)
    widest = max(x for x, _ in smooth)
    return mirrored_closed([(x * 0.846 / widest, 0.0, z) for x, z in smooth])


def four_way_arrow():
    arm = [(4.5, 0), (3.0, 1.5), (3.0, 0.75), (0.75, 0.75), (0.75, 3.0), (1.5, 3.0)]
    points = []
    for quarter in range(4):
        for x, z in arm:
            for _ in range(quarter):
                x, z = -z, x
            points.append((x, 0, z))
    return points + points[:1]


def wire_dome():
    radius = 2.514

    def level(elevation, count, start):
        r, y = polar(radius, elevation)
        return ring(count, r, at_height(y), start)

    def meridian(place, first, last):
        return [place(*polar(radius, 15 * i)) for i in range(first, last + 1)]

    base = level(0, 24, 0)
    front = meridian(upright, 0, 12)
    across = meridian(side, 0, 12)
    low, high = level(30, 24, 0), level(60, 12, 0)
    return (base + front[1:3] + low[1:] + front[3:5] + high[1:] + front[5:] + base[13:19]
            + [(x, y, -z) for x, y, z in across[1:]])


def on_dome(radius, centre, along, across, quarter=0):
    """Point at the angle `along` from the top of the dome, `across` to the side; degrees."""
    a, b = math.radians(along), math.radians(across)
    x, z = radius * math.cos(b) * math.sin(a), radius * math.sin(b)
    for _ in range(quarter):
        x, z = -z, x
    return (x, centre + radius * math.cos(a) * math.cos(b), z)


def dome_through(reach, low, side_square, high):
    """Radius and centre height of the sphere through (reach, low) and (sqrt(side_square), high)."""
    centre = (reach ** 2 + low ** 2 - side_square - high ** 2) / (2 * low - 2 * high)
    return math.hypot(reach, low - centre), centre


def four_way_arrow_on_dome():
    half = 0.42
    radius, centre = dome_through(2.613, 0.046, 2 * half ** 2, 2.434)
    tip = math.degrees(math.atan2(2.613, 0.046 - centre))
    shaft = math.degrees(math.asin(half / radius))
    inner = math.degrees(math.asin(half / radius / math.cos(math.radians(shaft))))
    base, wide = 52.0, 23.0
    slant = list(zip(between(base, tip, 2), between(wide, 0, 2)))
    arm = ([(tip, 0)] + [(a, w) for a, w in reversed(slant)] + [(base, wide), (base, shaft)]
           + [(a, shaft) for a in between(base, inner, 4)])
    points = []
    for quarter in range(4):
        right = [on_dome(radius, centre, a, -w, quarter) for a, w in arm]
        left = [on_dome(radius, centre, a, w, quarter) for a, w in arm]
        corner = on_dome(radius, centre, inner, shaft, quarter)
        points += right[:0:-1] + left + [corner]
    points = points[8:] + points[:8]   # from a tip
    return points + points[:1]


def double_arrow_on_dome():
    half = 0.6
    radius, centre = dome_through(2.613, 0.0, half ** 2, 2.434)
    tip = math.degrees(math.atan2(2.613, -centre))
    shaft = math.degrees(math.asin(half / radius))
    wide = math.degrees(math.asin(1.473 / radius))
    base = 46.0
    slant = list(zip(between(tip, base, 3), between(0, wide, 3)))
    down = [(tip, 0)] + slant + [(base, wide), (base, shaft)]
    half_way = (down + [(a, shaft) for a in between(base, -base, 9)]
                + [(-a, w) for a, w in reversed(down[1:])])
    first = [on_dome(radius, centre, a, w, 1) for a, w in half_way]
    second = [on_dome(radius, centre, -a, -w, 1) for a, w in half_way]
    return first + second + first[:1]


def plus_sign():
    a, b = 0.64, 2.56
    corners = [(-a, -b), (a, -b), (a, -a), (b, -a), (b, a), (a, a),
               (a, b), (-a, b), (-a, a), (-b, a), (-b, -a), (-a, -a)]
    return [upright(*c) for c in corners + corners[:1]]


def notched_square():
    a, b = 2, 3
    corners = [(-a, -b), (a, -b), (a, -a), (b, -a), (b, a), (a, a),
               (a, b), (-a, b), (-a, a), (-b, a), (-b, -a), (-a, -a)]
    return [(x, 0, z) for x, z in corners + corners[:1]]


def stem_ring_top():
    base = ring(6, 0.45, at_height(1.1))
    tip, centre, top = (0, 0, 0), (0, 1.1, 0), (0, 5.6, 0)
    r = ring(16, 2.0, at_height(5.6))
    return ([tip] + base + [centre, base[2], tip, base[4], centre, top]
            + r + r[8:13] + [top, r[4]])


def turned_over(points, height):
    return [(x, height - y, z) for x, y, z in points]


def flat_stem_ring_top():
    hoop = ring(24, 0.8, lambda x, y: (x, 6.4 + y, 0.0), start=-90)
    return [(0, 1.2, 0), (-0.6, 1.2, 0), (0, 0, 0), (0.6, 1.2, 0), (0, 1.2, 0)] + hoop


def circle_with_diameters():
    r = ring(16, 2.0, flat)
    centre = (0, 0, 0)
    return r + [centre] + r[8:13] + [centre, r[4]]


def pyramid_on_tip():
    c = [(-0.8, 3.2, 0.8), (0.8, 3.2, 0.8), (0.8, 3.2, -0.8), (-0.8, 3.2, -0.8)]
    t = (0, 0, 0)
    return [t, c[0], c[1], t, c[1], c[2], t, c[2], c[3], t, c[3], c[0], t]


def ring_with_arrowhead():
    circle = ring(36, 3.2, flat, start=180)
    notch = (-3.4, 0, 0)
    return circle + [notch, (-3.28, 0, -0.75), (-4.047, 0, 0), (-3.28, 0, 0.75), notch]


def compass_rose():
    tips = [flat(*polar(4.0 if i % 2 == 0 else 2.55, 45 * i)) for i in range(8)]
    inner = [flat(*polar(0.98, 45 * i + 22.5)) for i in range(8)]
    outline = [p for pair in zip(tips, inner) for p in pair]

    def part(first, last):
        return [outline[i % 16] for i in range(first, last + 1)]

    outer, bezel = ring(24, 3.0, flat), ring(24, 2.75, flat)
    return (part(0, 16) + outer + bezel + part(8, 10) + part(2, 4) + part(12, 14) + part(6, 6))


def smooth_arch():
    low = 0.846
    outer = [side(*polar(2.567, 22.5 * i, 2.567 - low)) for i in range(9)]
    inner = [side(*polar(1.72, 30.0 * i, 0.84)) for i in range(6, -1, -1)]
    points = [(x, y + low, z) for x, y, z in outer + inner]
    return points + points[:3]


def block_arrow():
    corners = [(-1, 0), (-1, 2.4), (-2.4, 2.4), (0, 4.8), (2.4, 2.4), (1, 2.4), (1, 0), (-1, 0)]
    return [side(*c) for c in corners]


def eyes_outline():
    quarter = [(3.903, 0.0), (3.7, 1.35), (2.72, 2.206), (1.3, 2.12), (0.0, 1.62)]
    z_y = quarter + [(-z, y) for z, y in quarter[3::-1]]
    z_y += [(z, -y) for z, y in z_y[7:0:-1]]
    points = [side(z, y) for z, y in z_y]
    return points + points[:3]


def eye_ring(centre):
    # Points of a circle of radius 1.4 as the circle command lays them.
    half = 1.551472
    ring_points = []
    for k in range(8):
        across, up = polar(half, 45 * k + 45)
        ring_points.append((0.0, up, centre + across))
    return ring_points + ring_points[:3]


def ring_with_four_arrows():
    radius, shaft, neck, wide, tip = 3.4, 0.6, 4.4, 1.2, 5.6
    start = math.degrees(math.asin(shaft / radius))
    foot = radius * math.cos(math.radians(start))
    arm = [(tip, 0), (neck, wide), (neck, shaft), (foot, shaft)]
    arm += [polar(radius, a) for a in between(start, 90 - start, 5)]
    arm += [(shaft, foot), (shaft, neck), (wide, neck)]
    points = []
    for quarter in range(4):
        for x, z in arm:
            for _ in range(quarter):
                x, z = -z, x
            points.append((x, 0, z))
    return points + points[:1]


def four_pointed_star():
    tips = [(4, 0, 0), (0, 0, 3.804), (-4, 0, 0), (0, 0, -3.804)]
    a, b = 0.9, 0.9 * 3.804 / 4
    inner = [(a, 0, b), (-a, 0, b), (-a, 0, -b), (a, 0, -b)]
    return [inner[0], tips[1], inner[1], tips[2], inner[2], tips[3], inner[3], tips[0], inner[0],
            inner[1], inner[2], inner[3], inner[0], inner[2], inner[3], inner[1]]


def stem_through_ring():
    hoop = ring(28, 0.8, lambda x, y: (x, 6.4 + y, 0.0), start=-90)
    return [(0, 0, 0)] + hoop + [(0, 7.2, 0)]


def wire_cylinder():
    low, high = ring(24, 1.49, flat), ring(24, 1.49, at_height(4.421))
    points = []
    for quarter in range(4):
        points += low[6 * quarter:6 * quarter + 6]
        if quarter < 3:
            points += [low[6 * quarter + 6], high[6 * quarter + 6]]
    return points + [low[0]] + high


# ---- the table ----------------------------------------------------------------------------------

SMOOTH_KNOTS = run(-0.125, 21, 0.0625)


class Shape:
    """One button's shape: degree, points in drawing order and knots."""

    def __init__(self, number, points, last=None, knots=None, degree=1, form=""):
        self.number, self.points, self.degree, self.form = number, points, degree, form
        if knots is None:
            knots = run(0, len(points)) if last is None else chords(points, last)
        self.knots = knots


def shapes():
    stem, flat_stem = stem_ring_top(), flat_stem_ring_top()
    hollow = [(-2.085786, 0, 0), (2.085786, 0, 2.828427), (1.590596, 0, 2.221061),
              (1.222963, 0, 1.528966), (0.993534, 0, 0.779625), (0.914213, 0, 0),
              (0.993534, 0, -0.779625), (1.222963, 0, -1.528966), (1.590596, 0, -2.221061),
              (2.085786, 0, -2.828427), (-2.085786, 0, 0)]
    arrowhead = [(-2, 0, 0), (1, 0, 1), (1, 0, -1), (-2, 0, 0), (1, 1, 0), (1, 0, 0), (1, -1, 0),
                 (-2, 0, 0)]
    square_head = [(0, 0, 0), (0, 5.6, 0), (-0.7, 5.6, 0), (-0.7, 7, 0), (0.7, 7, 0),
                   (0.7, 5.6, 0), (0, 5.6, 0)]
    lines = [(-2, 0, 0), (2, 0, 0), (0, 0, 0), (0, 0, 2), (0, 0, -2), (0, 0, 0), (0, 2, 0),
             (0, -2, 0)]
    square = [(0, -1, 1), (0, 1, 1), (0, 1, -1), (0, -1, -1), (0, -1, 1)]
    return [
        Shape(2, cube(), form="cube drawn as one wire"),
        Shape(3, arrowhead, form="pyramid arrowhead along -X"),
        Shape(4, flat_double_arrow(), form="flat double-headed arrow"),
        Shape(5, ring_with_crossed_fins(), form="ring with an arrowhead of two fins"),
        Shape(6, arched_double_arrow(), form="double-headed arrow, an arch"),
        Shape(7, solid_double_arrow(), form="solid double-headed arrow"),
        Shape(8, oval_dome_with_post(), form="oval dome with a post"),
        Shape(9, lines, form="three crossed lines"),
        Shape(10, wire_sphere(), form="wire sphere"),
        Shape(12, sole(), form="flat sole outline"),
        Shape(13, four_way_arrow(), form="flat four-way arrow"),
        Shape(14, wire_dome(), form="wire dome"),
        Shape(15, four_way_arrow_on_dome(), last=133.995, form="four-way arrow over a dome"),
        Shape(16, double_arrow_on_dome(), form="double arrow over a dome"),
        Shape(17, plus_sign(), last=51.2, form="plus sign"),
        Shape(18, notched_square(), form="notched square"),
        Shape(19, stem, last=236.793, form="stem: ring above, cone below"),
        Shape(20, turned_over(stem, 5.6), last=236.793, form="stem: cone above, ring below"),
        Shape(21, flat_stem, last=70.935, form="flat stem: ring, triangle below"),
        Shape(22, turned_over(flat_stem, 6.4), last=70.935, form="flat stem: triangle, ring below"),
        Shape(23, circle_with_diameters(), form="circle with two diameters"),
        Shape(26, pyramid_on_tip(), last=74.912, form="pyramid on its tip"),
        Shape(27, ring_with_arrowhead(), last=86.186, form="flat ring with an arrowhead"),
        Shape(29, hollow, knots=run(6, 11), form="arrowhead, hollow back"),
        Shape(32, compass_rose(), form="compass rose"),
        Shape(34, smooth_arch(), knots=SMOOTH_KNOTS, degree=3, form="smooth arch"),
        Shape(35, block_arrow(), form="block arrow"),
        Shape(36, eyes_outline(), knots=SMOOTH_KNOTS, degree=3, form="eyes"),
        Shape(38, ring_with_four_arrows(), form="ring with four arrows"),
        Shape(39, four_pointed_star(), form="four-pointed star"),
        Shape(40, stem_through_ring(), form="stem through a ring"),
        Shape(42, wire_cylinder(), last=117.138, form="wire cylinder"),
        Shape(43, square_head, form="stem with a square head"),
        Shape(46, square, form="square"),
    ]


# ---- texts --------------------------------------------------------------------------------------

def number_text(value):
    text = f"{value:.6f}".rstrip("0").rstrip(".")
    return "0" if text in ("-0", "") else text


def list_text(values):
    return "[" + ",".join(number_text(v) for v in values) + "]"


def points_text(points):
    return "[" + ",".join("(" + ",".join(number_text(v) for v in p) + ")" for p in points) + "]"


def curve_text(degree, knots, points, name):
    return (f"cmds.curve(degree={degree}, knot={list_text(knots)}, point={points_text(points)}, "
            f"n='{name}')")


def script_text(shape):
    if shape.number != 36:
        return "curveName = " + curve_text(shape.degree, shape.knots, shape.points,
                                           "curveTemp") + "; curveName"
    knots = run(-2, 13)
    return ("eyesCtrl = " + curve_text(3, shape.knots, shape.points, "eyesCtrl")
            + ";leftEyeCtrl = " + curve_text(3, knots, eye_ring(-2.0), "leftEyeCtrl")
            + ";rightEyeCtrl = " + curve_text(3, knots, eye_ring(2.0), "rightEyeCtrl")
            + ";cmds.parent(leftEyeCtrl, eyesCtrl);cmds.parent(rightEyeCtrl, eyesCtrl)"
            ";cmds.select(eyesCtrl, replace=True);eyesCtrl")


def literal(text, indent):
    """The text as adjacent literals that keep within the columns, broken behind commas."""
    room = COLUMNS - indent - 4
    lines, rest = [], text
    while len(rest) > room:
        cut = max(rest.rfind("),(", 0, room) + 2, rest.rfind(", ", 0, room) + 2)
        if cut < room // 2:
            cut = rest.rfind(",", 0, room) + 1
        lines.append(rest[:cut])
        rest = rest[cut:]
    lines.append(rest)
    return "\n".join(" " * indent + '"' + line + '"' for line in lines)


def routine(number, text):
    head = f"MObject createShape{number:02d}() {{\n    return curveFromScript("
    whole = f'"{text}");\n}}\n'
    if len("    return curveFromScript(") + len(text) + 4 <= COLUMNS:
        return head + whole
    return head + "\n" + literal(text, 8) + ");\n}\n"


HEAD = """// Control shapes {first} to {last}: one fixed text each, written by tools/generate/shapes.py.

#include "control/shape_routines.h"
#include "control/shape_script.h"

"""


def files():
    texts = {1: "curveName = cmds.circle(nr=(1,0,0))[0]; curveName"}
    texts.update((s.number, script_text(s)) for s in shapes() if s.number not in (9, 46))
    result, low = {}, 0
    for name, high in FILES:
        numbers = [n for n in sorted(texts) if low < n <= high]
        body = "\n".join(routine(n, texts[n]) for n in numbers)
        result[name] = HEAD.format(first=f"{numbers[0]:02d}", last=numbers[-1]) + body
        low = high
    return result


def main(arguments):
    stale = [name for name, text in files().items()
             if not (FOLDER / name).exists() or (FOLDER / name).read_text() != text]
    if arguments == ["--check"]:
        for name in stale:
            print(f"plugin/control/{name} is not what tools/generate/shapes.py writes")
        return 1 if stale else 0
    for name, text in files().items():
        (FOLDER / name).write_text(text)
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
