#!/usr/bin/env python3
"""Checks which folder of the project includes which, and that no Qt text reaches a script.

    tools/build/check_includes.py [ROOT]

ROOT is the checkout (default: the one this file lies in). Prints one line per fault,
`path:line: what`, and leaves with 1 when there is any.
"""
import pathlib
import re
import sys

SOURCE_SUFFIXES = {".h", ".cpp", ".hpp", ".inl"}
INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]')

# The host's rooms and the rooms that each one stands on. An edge goes all the way down: who stands
# on `edit` sees what `edit` sees.
HOST_EDGES = {
    "base": [],
    "graph": ["base"],
    "nodes": ["graph"],
    "edit": ["nodes"],
    "script": ["nodes"],
    "draw": ["edit"],
    "commands": ["script", "draw"],
    "mel": ["script"],
    "python": ["script"],
    "files": ["script"],
    "api": ["commands", "files"],
    "ui": ["api", "draw"],
    "app": ["ui", "mel", "python"],
}

# Inside the plug-in. A folder always sees itself; "shell/entry" is the one file that registers all.
PLUGIN_TOOLS = {"skeleton", "control", "twist", "rename", "update"}
PLUGIN_ALLOWED = {
    "toolkit": set(),
    "shell": {"toolkit"},
    "skeleton": {"toolkit", "shell", "licence", "update"},
    "control": {"toolkit", "shell"},
    "twist": {"toolkit", "shell"},
    "rename": {"toolkit", "shell"},
    "update": {"toolkit", "shell"},
    "licence": {"toolkit", "shell"},
}
PLUGIN_ENTRY = re.compile(r"^plugin/shell/entry[^/]*$")
GENERATED = re.compile(r"^(ui_\w+\.h|moc_\w+\.cpp|\w+\.moc|qrc_\w+\.cpp)$")

# The units that fill and read what the plug-in says about itself: these and no others.
INFO_HEADER = "shell/plugin_info.h"
INFO_UNITS = {
    "plugin/licence/license_window.cpp",
    "plugin/shell/entry.cpp",
    "plugin/skeleton/skeleton_command.cpp",
    "plugin/update/checker_command.cpp",
}

# Headers of the standard library are spelled without a dot; these C ones are accepted besides.
STANDARD_HEADER = re.compile(r"^[a-z0-9_]+$")
QT_HEADER = re.compile(r"^(Qt\w+/)?Q\w+(\.h)?$|^q\w+\.h$")
C_HEADERS = {"assert.h", "math.h", "stddef.h", "stdint.h", "stdlib.h", "string.h", "stdio.h"}

RUNS_SCRIPTS = re.compile(r"\bMGlobal\s*::\s*execute\w*")
TEXT_CONVERSION = re.compile(r"\b(toStdString|toUtf8|asUTF8|toLocal8Bit)\b")


def blank_comments(text):
    """The text with comments blanked, its lines and its string literals kept."""
    pattern = re.compile(r'"(?:[^"\\\n]|\\.)*"|//[^\n]*|/\*.*?\*/', re.S)

    def blank(match):
        part = match.group(0)
        return part if part.startswith('"') else re.sub(r"[^\n]", " ", part)

    return pattern.sub(blank, text)


def host_allowed(folder):
    """Every room that a room may include, itself too; None for a folder that is no room."""
    if folder not in HOST_EDGES:
        return None
    return {folder}.union(*(host_allowed(below) for below in HOST_EDGES[folder]))


def host_target(root, path, quote, name):
    """The host folder that an include leads to, or None where it leads out of the host."""
    if name.startswith("maya/"):
        return "api"
    first = name.split("/")[0]
    if "/" in name and first in HOST_EDGES and (root / "host" / name).exists():
        return first
    if quote == '"' and (path.parent / name).exists():
        target = (path.parent / name).resolve()
        host = (root / "host").resolve()
        if host in target.parents:
            return target.relative_to(host).parts[0]
    return None


def check_host_include(root, path, folder, quote, name):
    if name.startswith("plugin/"):
        return "the host includes the plug-in"
    target = host_target(root, path, quote, name)
    if target is None or target == "include":
        return None
    allowed = host_allowed(folder)
    if allowed is None:
        return f"host/{folder} is no room of the host"
    if target not in allowed:
        return f"host/{folder} must not include host/{target}"
    return None


def check_public_include(quote, name):
    """Headers under host/include/maya: each other and the standard library."""
    if name.startswith("maya/") or (quote == '"' and "/" not in name):
        return None
    if STANDARD_HEADER.match(name) or name in C_HEADERS or QT_HEADER.match(name):
        return None
    return f"a public header must not include {name}"


def plugin_target(root, path, name):
    for base in (path.parent, root / "plugin"):
        candidate = (base / name).resolve()
        plugin = (root / "plugin").resolve()
        if candidate.exists():
            return candidate.relative_to(plugin).parts[0] if plugin in candidate.parents else ""
    return None


def check_plugin_include(root, path, folder, quote, name):
    if quote == "<":
        known = (
            name.startswith("maya/")
            or QT_HEADER.match(name)
            or STANDARD_HEADER.match(name)
            or name in C_HEADERS
        )
        return None if known else f"the plug-in sees only <maya/...>, Qt and std, not <{name}>"
    if GENERATED.match(name.split("/")[-1]):
        return None
    target = plugin_target(root, path, name)
    if not target:
        return f'"{name}" is no file of the plug-in'
    if target == folder or PLUGIN_ENTRY.match(path.relative_to(root).as_posix()):
        return None
    if folder not in PLUGIN_ALLOWED:
        return f"plugin/{folder} is no folder of the plug-in"
    if target not in PLUGIN_ALLOWED[folder]:
        return f"plugin/{folder} must not include plugin/{target}"
    return None


def check_line(root, path, quote, name):
    parts = path.relative_to(root).parts
    if parts[0] == "plugin":
        folder = parts[1] if len(parts) > 2 else ""
        return check_plugin_include(root, path, folder, quote, name)
    if parts[1] == "include":
        return check_public_include(quote, name)
    return check_host_include(root, path, parts[1], quote, name)


def check_file(root, path):
    text = blank_comments(path.read_text(encoding="utf-8"))
    where = path.relative_to(root).as_posix()
    faults = []
    for number, line in enumerate(text.split("\n"), 1):
        match = INCLUDE.match(line)
        fault = match and check_line(root, path, match.group(1), match.group(2))
        if fault:
            faults.append(f"{where}:{number}: {fault}")
    if where.startswith("plugin/") and RUNS_SCRIPTS.search(text):
        for number, line in enumerate(text.split("\n"), 1):
            match = TEXT_CONVERSION.search(line)
            if match:
                faults.append(f"{where}:{number}: {match.group(1)} in a file that runs scripts")
    return faults


def check_info_units(root):
    """Which units include the header of `pluginInfo`; nothing to say in a tree without it."""
    if not (root / "plugin" / INFO_HEADER).exists():
        return []
    found = set()
    for path in (root / "plugin").rglob("*"):
        if path.suffix in SOURCE_SUFFIXES and path.is_file():
            text = blank_comments(path.read_text(encoding="utf-8"))
            if re.search(r'^\s*#\s*include\s*"[^"]*plugin_info\.h"', text, re.M):
                found.add(path.relative_to(root).as_posix())
    faults = [f"{where}:1: must not include {INFO_HEADER}" for where in found - INFO_UNITS]
    faults += [f"{where}:1: has to include {INFO_HEADER}" for where in INFO_UNITS - found]
    return sorted(faults)


def check_tree(root):
    """All faults below root/host and root/plugin, in path order."""
    root = pathlib.Path(root).resolve()
    faults = []
    for top in ("host", "plugin"):
        for path in sorted((root / top).rglob("*")):
            if path.suffix in SOURCE_SUFFIXES and path.is_file():
                faults += check_file(root, path)
    return faults + check_info_units(root)


def main(arguments):
    root = arguments[1] if len(arguments) > 1 else pathlib.Path(__file__).resolve().parents[2]
    faults = check_tree(root)
    for fault in faults:
        print(fault)
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
