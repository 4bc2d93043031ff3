#!/usr/bin/env python3
"""Draws the pictures of the control palette and the contact sheet from the shapes' own points.

    QT_QPA_PLATFORM=offscreen tools/generate/palette.py [--sheet docs/images/control_shapes.png]

Writes plugin/resources/images/img/new/ccButton01 copy.jpg to ccButton46 copy.jpg and offsetAuto.jpg.
A number without a shape gets a plain tile. Flat shapes are seen face on, the others from above to
one side; what lies farther off is dimmer. Needs PySide2.
"""
import math
import pathlib
import sys

from PySide2 import QtCore, QtGui

import shapes

IMAGES = shapes.ROOT / "plugin" / "resources" / "images" / "img"
TILE = 80
QUALITY = 88

BACK_TOP, BACK_LOW = QtGui.QColor(74, 77, 82), QtGui.QColor(52, 54, 58)
EDGE, LINE = QtGui.QColor(38, 39, 42), QtGui.QColor(255, 205, 92)
INK, FAINT = QtGui.QColor(225, 228, 232), QtGui.QColor(150, 156, 164)

# Yaw and pitch of the eye in degrees: (0, 0) looks along -Z, (90, 0) along -X, pitch 90 from above.
TOP, TOP_TURNED, FRONT, SIDE, CORNER = (0, 90), (180, 90), (0, 0), (90, 0), (32, 24)
VIEWS = {1: SIDE, 3: (-38, 24), 4: TOP, 5: (28, 38), 6: (14, 12), 7: (24, 22), 8: (58, 24),
         9: CORNER, 10: CORNER, 12: TOP_TURNED, 13: TOP, 14: (26, 24), 15: (28, 48), 16: (62, 40),
         17: FRONT, 18: TOP, 19: (22, 20), 20: (22, 20), 21: FRONT, 22: FRONT, 23: TOP, 26: (26, 22),
         27: TOP, 29: TOP, 32: TOP, 34: SIDE, 35: SIDE, 36: SIDE, 38: TOP, 39: TOP, 40: FRONT,
         42: (26, 24), 43: FRONT, 46: SIDE}


def smooth(points, per_span=12):
    """Points along the uniform cubic curve of the given control points."""
    result = []
    for a, b, c, d in zip(points, points[1:], points[2:], points[3:]):
        for k in range(per_span + 1):
            t = k / per_span
            w = ((1 - t) ** 3 / 6, (3 * t ** 3 - 6 * t * t + 4) / 6,
                 (-3 * t ** 3 + 3 * t * t + 3 * t + 1) / 6, t ** 3 / 6)
            result.append(tuple(sum(wi * p[i] for wi, p in zip(w, (a, b, c, d)))
                                for i in range(3)))
    return result


def wires():
    """Number of each shape: its polylines as they look in the scene."""
    table = {s.number: [smooth(s.points) if s.degree == 3 else s.points]
             for s in shapes.shapes()}
    table[1] = [shapes.ring(48, 1.0, shapes.side)]
    table[36] += [smooth(shapes.eye_ring(centre)) for centre in (-2.0, 2.0)]
    return table


def seen(point, view):
    """Right, up and towards the eye."""
    yaw, pitch = (math.radians(a) for a in view)
    x, y, z = point
    right = x * math.cos(yaw) - z * math.sin(yaw)
    depth = x * math.sin(yaw) + z * math.cos(yaw)
    return (right, y * math.cos(pitch) - depth * math.sin(pitch),
            y * math.sin(pitch) + depth * math.cos(pitch))


def mixed(a, b, t):
    return QtGui.QColor(*(round(p + (q - p) * t) for p, q in
                          zip(a.getRgb()[:3], b.getRgb()[:3])))


def draw_wires(painter, lines, view, box, width):
    """Fits the lines into the box, middle on middle; farther ones first and dimmer."""
    flat = [[seen(p, view) for p in line] for line in lines]
    points = [p for line in flat for p in line]
    low = [min(p[i] for p in points) for i in range(3)]
    high = [max(p[i] for p in points) for i in range(3)]
    middle = [(a + b) / 2 for a, b in zip(low, high)]
    scale = min(box.width() / max(high[0] - low[0], 1e-9),
                box.height() / max(high[1] - low[1], 1e-9))
    deep = high[2] - low[2]

    def place(p):
        return QtCore.QPointF(box.center().x() + (p[0] - middle[0]) * scale,
                              box.center().y() - (p[1] - middle[1]) * scale)

    pieces = [(a[2] + b[2], place(a), place(b)) for line in flat for a, b in zip(line, line[1:])]
    for depth, a, b in sorted(pieces, key=lambda piece: piece[0]):
        near = (depth / 2 - low[2]) / deep if deep > 1e-6 else 1.0
        color = mixed(BACK_TOP, LINE, 0.42 + 0.58 * near)
        painter.setPen(QtGui.QPen(color, width, QtCore.Qt.SolidLine, QtCore.Qt.RoundCap))
        painter.drawLine(a, b)


def new_image(width, height, color):
    image = QtGui.QImage(width, height, QtGui.QImage.Format_RGB32)
    image.fill(color)
    painter = QtGui.QPainter(image)
    painter.setRenderHint(QtGui.QPainter.Antialiasing)
    return image, painter


def draw_back(painter, rect, radius):
    shade = QtGui.QLinearGradient(rect.topLeft(), rect.bottomLeft())
    shade.setColorAt(0, BACK_TOP)
    shade.setColorAt(1, BACK_LOW)
    painter.setPen(QtCore.Qt.NoPen)
    painter.setBrush(shade)
    painter.drawRoundedRect(rect, radius, radius)


def tile(lines, view):
    image, painter = new_image(TILE, TILE, EDGE)
    rect = QtCore.QRectF(1.5, 1.5, TILE - 3, TILE - 3)
    draw_back(painter, rect, 8)
    if lines:
        draw_wires(painter, lines, view, rect.adjusted(9, 9, -9, -9), 2.4)
    painter.end()
    return image


def draw_contact(path):
    """All shapes, one cell each, with number and form."""
    table, forms = wires(), {s.number: s.form for s in shapes.shapes()}
    forms[1] = "circle facing X"
    columns, wide, high = 7, 190, 200
    rows = -(-len(table) // columns)
    image, painter = new_image(columns * wide + 10, rows * high + 10, EDGE)
    for i, number in enumerate(sorted(table)):
        left, top = 5 + i % columns * wide, 5 + i // columns * high
        draw_back(painter, QtCore.QRectF(left + 4, top + 4, wide - 8, high - 8), 10)
        draw_wires(painter, table[number], VIEWS.get(number, CORNER),
                   QtCore.QRectF(left + 26, top + 22, wide - 52, high - 72), 1.8)
        label(painter, INK, 11, QtCore.QRectF(left, top + high - 45, wide, 18), f"{number:02d}")
        label(painter, FAINT, 10, QtCore.QRectF(left, top + high - 28, wide, 18), forms[number])
    painter.end()
    save(image, path)


def label(painter, color, pixels, rect, text):
    font = QtGui.QFont("DejaVu Sans")
    font.setPixelSize(pixels)
    painter.setFont(font)
    painter.setPen(color)
    painter.drawText(rect, QtCore.Qt.AlignCenter, text)


def draw_group(painter, left, top, text, depth, color):
    rect = QtCore.QRectF(left + 22 * depth, top + 38 * depth, 138, 28)
    if depth:
        painter.setPen(QtGui.QPen(FAINT, 1.5))
        x = rect.left() - 11
        painter.drawLine(QtCore.QPointF(x, rect.top() - 10), QtCore.QPointF(x, rect.center().y()))
        painter.drawLine(QtCore.QPointF(x, rect.center().y()), rect.topLeft() + QtCore.QPointF(0, 14))
    painter.setPen(QtGui.QPen(color, 1.6))
    painter.setBrush(QtGui.QColor(46, 48, 52))
    painter.drawRoundedRect(rect, 6, 6)
    label(painter, INK, 13, rect, text)


def offset_picture():
    """The stacks of groups above a control, with and without the second one."""
    image, painter = new_image(480, 200, EDGE)
    draw_back(painter, QtCore.QRectF(2, 2, 476, 196), 10)
    painter.setPen(QtGui.QPen(EDGE, 2))
    painter.drawLine(220, 16, 220, 184)
    group, auto = QtGui.QColor(120, 170, 220), QtGui.QColor(140, 200, 130)
    label(painter, FAINT, 14, QtCore.QRectF(10, 12, 200, 20), "Offset")
    label(painter, FAINT, 14, QtCore.QRectF(230, 12, 240, 20), "Offset and Auto")
    draw_group(painter, 22, 60, "arm_Offset", 0, group)
    draw_group(painter, 22, 60, "arm_ctrl", 1, LINE)
    draw_group(painter, 250, 46, "arm_Offset", 0, group)
    draw_group(painter, 250, 46, "arm_Auto", 1, auto)
    draw_group(painter, 250, 46, "arm_ctrl", 2, LINE)
    painter.end()
    return image


def save(image, path):
    pathlib.Path(path).parent.mkdir(parents=True, exist_ok=True)
    if not image.save(str(path), None, QUALITY if str(path).endswith(".jpg") else -1):
        raise RuntimeError(f"cannot write {path}")


def main(arguments):
    application = QtGui.QGuiApplication([])
    table = wires()
    for number in range(1, 47):
        picture = tile(table.get(number), VIEWS.get(number, CORNER))
        save(picture, IMAGES / "new" / f"ccButton{number:02d} copy.jpg")
    save(offset_picture(), IMAGES / "offsetAuto.jpg")
    if arguments[:1] == ["--sheet"]:
        draw_contact(arguments[1])
    del application


if __name__ == "__main__":
    main(sys.argv[1:])
