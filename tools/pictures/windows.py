"""Draws the pictures of the documentation anew.

    torvel-host --batch --network scenes/leg.ma --script tools/pictures/windows.py -- docs/images
"""
import json
import os
import shutil
import subprocess
import sys
import tempfile

import maya.cmds as cmds
from PySide2 import QtWidgets

# File name and the menu item that opens the window.
TOOLS = (
    ("skeleton.png", "Skeleton Configuration"),
    ("twist.png", "Twist Bones"),
    ("rename.png", "Rename"),
)
ENVIRONMENT = dict(os.environ)
SERVER = os.path.join(os.path.dirname(os.path.abspath(__file__)), "../server/plugin_info_server.py")


def top_widgets():
    return [w for w in QtWidgets.QApplication.allWidgets() if w.isWindow() and w.isVisible()]


def settle():
    for _ in range(5):
        QtWidgets.QApplication.processEvents()


def picture(widget, folder, name):
    path = os.path.join(folder, name)
    if not widget.grab().save(path):
        raise RuntimeError("cannot write " + path)
    print(path)


def picture_of_item(menu, label, folder, name):
    """Chooses the item, draws the window that it opens, and closes it."""
    before = set(top_widgets())
    for action in menu.actions():
        if action.text() == label:
            action.trigger()
    settle()
    for made in top_widgets():
        if made not in before:
            picture(made, folder, name)
            made.close()
    settle()


def write_settings(settings):
    path = os.path.expanduser("~/AppData/Roaming/Autodesk/torvelToolsToken.json")
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "w") as out:
        json.dump(settings, out)


def picture_of_update(menu, folder):
    """The dialog of a newer version, which a server on this machine announces."""
    command = [shutil.which("python3"), SERVER, "0.25"]
    server = subprocess.Popen(command, stdout=subprocess.PIPE, text=True, env=ENVIRONMENT)
    try:
        server.stdout.readline()
        picture_of_item(menu, "Check for updates", folder, "update.png")
    finally:
        server.terminate()
        server.wait()


def main(folder):
    os.makedirs(folder, exist_ok=True)
    window = [w for w in QtWidgets.QApplication.topLevelWidgets() if w.objectName() == "MayaWindow"][0]
    window.resize(1100, 720)
    window.show()
    if cmds.ls("knee", type="joint"):
        cmds.select("knee")
    settle()
    picture(window, folder, "window.png")
    menu = window.findChild(QtWidgets.QMenu, "TorvelPlugin")
    for name, label in TOOLS:
        picture_of_item(menu, label, folder, name)
    picture_of_update(menu, folder)
    write_settings({"licence_required": True})
    picture_of_item(menu, "Skeleton Configuration", folder, "licence.png")
    window.hide()


# The plug-in's settings of the person at the keyboard are left alone.
with tempfile.TemporaryDirectory() as home:
    os.environ["HOME"] = home
    main(sys.argv[1] if len(sys.argv) > 1 else os.path.join("docs", "images"))
