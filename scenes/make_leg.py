"""Makes scenes/leg.ma: a leg of four joints that carry rotations while it is bound to its mesh.

    torvel-host --batch --no-plugin --script scenes/make_leg.py -- scenes/leg.ma
"""
import sys

from limb import make_limb

# Name, translation, joint orientation, rotation (degrees). X runs along each bone.
JOINTS = (
    ("hip", (2.0, 18.0, 0.0), (0.0, 0.0, -90.0), (8.0, 12.0, 14.0)),
    ("knee", (8.0, 0.0, 0.0), (0.0, 0.0, 5.0), (0.0, -6.0, -38.0)),
    ("ankle", (8.0, 0.0, 0.0), (0.0, 0.0, 55.0), (4.0, 10.0, 16.0)),
    ("toe", (3.6, 0.0, 0.0), (0.0, 0.0, 10.0), (2.0, -3.0, 6.0)),
)

make_limb(sys.argv[1] if len(sys.argv) > 1 else "scenes/leg.ma", "leg", JOINTS, radii=(2.4, 1.5, 0.95, 0.6), rings=72,
          around=40)
