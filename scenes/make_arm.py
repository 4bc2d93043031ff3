"""Makes scenes/arm.ma: an arm of five joints without rotations, slightly bent at the elbow, bound to its mesh.

    torvel-host --batch --no-plugin --script scenes/make_arm.py -- scenes/arm.ma
"""
import sys

from limb import make_limb

# Name, translation, joint orientation, rotation (degrees). X runs along each bone.
JOINTS = (
    ("clavicle", (1.0, 15.0, 0.0), (0.0, 0.0, 6.0), (0.0, 0.0, 0.0)),
    ("shoulder", (3.0, 0.0, 0.0), (0.0, 0.0, -36.0), (0.0, 0.0, 0.0)),
    ("elbow", (6.5, 0.0, 0.0), (0.0, -22.0, 0.0), (0.0, 0.0, 0.0)),
    ("wrist", (6.0, 0.0, 0.0), (0.0, 8.0, 0.0), (0.0, 0.0, 0.0)),
    ("hand", (2.2, 0.0, 0.0), (0.0, 0.0, 0.0), (0.0, 0.0, 0.0)),
)

make_limb(sys.argv[1] if len(sys.argv) > 1 else "scenes/arm.ma", "arm", JOINTS, radii=(1.7, 1.6, 1.1, 0.75, 0.85), rings=64,
          around=28)
