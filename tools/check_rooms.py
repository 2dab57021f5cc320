#!/usr/bin/env python3
"""Checks that the rooms include downwards only.

A room may include itself and the rooms of lower floors, as listed below, and
the standard library. Everything else is an error with its file and line.
"""
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
ROOMS = ROOT / "orv2_geo"

# What stands in front of the rooms: the two doors, which may reach everything that is
# installed, and the version. A room of the last floor implements the door for C.
DOORS = {"c_api": {"orv2_geo.h", "version.h"}}

FLOORS = [
    ["frame"],
    ["platform"],
    ["angles", "plane", "survey", "terrain", "sorting"],
    ["repeated"],
    ["dialogs"],
    ["arrays"],
    ["library"],
    ["c_api", "com"],
]

# Renderers of the form model know no dialog, and no class of the library.
RENDERERS = {"ui": {"ui", "frame", "platform"}}

# What a renderer takes of the screen beside its toolkit.
SCREEN_HEADERS = {"xcb/xcb.h", "windows.h", "commctrl.h"}

# What the component server takes of the system that calls it.
COMPONENT_HEADERS = {"dispex.h", "windows.h", "objbase.h", "oaidl.h", "oleauto.h", "ocidl.h", "olectl.h"}

# One class may be spread over rooms of a floor: one header, and each room
# defines the members that are its own.
SHARED_HEADERS = {
    "plane": {"angles/cgeo_Algorismos.h"},
    "repeated": {"sorting/cgeo_Ordena.h"},
}

# What the system and the machine lend.
SYSTEM_HEADERS = {
    "dlfcn.h", "emmintrin.h", "immintrin.h", "langinfo.h", "locale.h", "oleauto.h", "sys/mman.h",
    "unistd.h", "windows.h",
}
INCLUDE = re.compile(r'^\s*#\s*include\s+(?:"([^"]+)"|<([^>]+)>)')


def allowed_rooms(room):
    """The rooms that `room` may include from."""
    if room in RENDERERS:
        return RENDERERS[room]
    allowed = {room}
    for floor in FLOORS:
        if room in floor:
            return allowed
        allowed.update(floor)
    raise ValueError(room)


def faults(path, room):
    allowed = allowed_rooms(room)
    for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
        match = INCLUDE.match(line)
        if not match:
            continue
        own, system = match.groups()
        where = f"{path.relative_to(ROOT)}:{number}"
        if own is not None:
            folder, _, header = own.partition("/")
            other_room = header.split("/")[0]
            known = SHARED_HEADERS.get(room, set()) | DOORS.get(room, set())
            if folder != "orv2_geo" or (other_room not in allowed and header not in known):
                yield f"{where}: {room}/ may not include {own}"
        elif "." in system and not (system in SYSTEM_HEADERS and room == "platform"):
            screen = room in RENDERERS and system in SCREEN_HEADERS
            component = room == "com" and system in COMPONENT_HEADERS
            if system not in {"stddef.h", "stdint.h"} and not screen and not component:
                yield f"{where}: {room}/ may not include <{system}>"


def main():
    found = []
    files = 0
    for floor in [*FLOORS, RENDERERS]:
        for room in floor:
            for path in sorted((ROOMS / room).rglob("*")):
                if path.suffix in {".h", ".hpp", ".cpp"}:
                    files += 1
                    found.extend(faults(path, room))
    print("\n".join(found) if found else f"{files} files include downwards only")
    return 1 if found or files == 0 else 0


if __name__ == "__main__":
    sys.exit(main())
