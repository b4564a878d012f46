#!/usr/bin/env python3
"""Makes Plate.xyz anew: python3 make_plate.py > Plate.xyz

A milled plate of 200 x 120 mm as an optical scanner would measure it: bent like a saddle, bowed a little, with a step
of 0.15 mm, four drilled holes, the marks of the cutter and noise; tilted in space. The seed is fixed, so the file comes
out the same again. Only the standard library is needed.
"""
import math
import random

LENGTH, WIDTH, SPACING = 200.0, 120.0, 1.0  # mm
STEP_AT, STEP = 138.0, 0.15
HOLES = [(18.0, 18.0), (182.0, 18.0), (18.0, 102.0), (182.0, 102.0)]
HOLE_RADIUS = 7.0
NOISE = 0.006  # standard deviation
TILT_X, TILT_Y = math.radians(8.0), math.radians(-5.0)
ORIGIN = (412.5, 268.0, 91.2)


def height(x, y):
    u, v = x / LENGTH - 0.5, y / WIDTH - 0.5
    saddle = 0.22 * u * u - 0.26 * v * v
    bow = 0.05 * math.cos(math.pi * u) * math.cos(math.pi * v)
    marks = 0.004 * math.sin(math.hypot(x - 60.0, y + 150.0) / 1.6)
    return saddle + bow + marks + (STEP if x > STEP_AT else 0.0)


def tilt(x, y, z):
    y, z = y * math.cos(TILT_X) - z * math.sin(TILT_X), y * math.sin(TILT_X) + z * math.cos(TILT_X)
    x, z = x * math.cos(TILT_Y) + z * math.sin(TILT_Y), -x * math.sin(TILT_Y) + z * math.cos(TILT_Y)
    return ORIGIN[0] + x, ORIGIN[1] + y, ORIGIN[2] + z


def main():
    chance = random.Random(20)
    print("# A milled plate of 200 x 120 mm with a step of 0.15 mm: x y z of measured points in millimetres.")
    print("# Made by make_plate.py, not measured.")
    for row in range(int(WIDTH / SPACING) + 1):
        for column in range(int(LENGTH / SPACING) + 1):
            x = min(max(column * SPACING + chance.uniform(-0.3, 0.3), 0.0), LENGTH)
            y = min(max(row * SPACING + chance.uniform(-0.3, 0.3), 0.0), WIDTH)
            z = height(x, y) + chance.gauss(0.0, NOISE)
            if all(math.hypot(x - a, y - b) > HOLE_RADIUS for a, b in HOLES):
                print("%.4f %.4f %.4f" % tilt(x, y, z))


main()
