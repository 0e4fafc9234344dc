#!/usr/bin/python3
"""Moves a tool's cache files to the Trash and undoes it, driving Tallowmere only through the
accessibility tree, as a screen reader would.

Run with Debian's /usr/bin/python3 (the only one that imports pyatspi):
    /usr/bin/python3 drive_cleanup.py --app build/release/Tallowmere/tallowmere
Exits 0 on success, 1 on a failed step, 77 when the machine lacks the tools to run it.
"""

import os
import re
import subprocess
import sys
import time
import urllib.parse

from app_session import StepFailed, connect, exactly, progress, run

OWNER = "OpenCode"
# Ten days: well past the age below which the app leaves cache files alone by default.
OLD = time.time() - 10 * 86400

# Files the app may move: ordinary cache files, old enough.
ELIGIBLE = {
    "deps/registry.json": b'{"packages": ["left-pad", "is-even"]}\n' * 40,
    "deps/pkg/index.js": bytes(range(256)) * 48,
    "assets/icon.bin": b"\x89PNG fake icon bytes " * 300,
}
# Files in the same cache folder the app must never move: a database and a credential.
INELIGIBLE = {
    "deps/store.db": b"SQLite format 3\x00" + b"\x00" * 2000,
    "auth.json": b'{"token": "do-not-touch"}\n',
}
# A folder of another location of the same tool, left unselected.
UNSELECTED = {"project/notes.txt": b"saved work\n" * 50}


def populate(home):
    home.tool_cache = os.path.join(home.cache, "opencode")
    home.tool_data = os.path.join(home.data, "opencode")
    for index, (name, content) in enumerate({**ELIGIBLE, **INELIGIBLE}.items()):
        home.write(os.path.join(home.tool_cache, name), content, OLD - index * 3600)
    for name, content in UNSELECTED.items():
        home.write(os.path.join(home.tool_data, name), content, OLD)


# ---------------------------------------------------------------------------------------------
# The disk


def read(path):
    with open(path, "rb") as file:
        return file.read()


def trash_entries(home):
    """Maps each trashed item's original path to its name in Trash/files."""
    info = os.path.join(home.trash, "info")
    entries = {}
    if not os.path.isdir(info):
        return entries
    for name in os.listdir(info):
        if not name.endswith(".trashinfo"):
            raise StepFailed(f"Trash/info holds {name!r}, which is not a .trashinfo file")
        lines = read(os.path.join(info, name)).decode("utf-8").splitlines()
        if not lines or lines[0] != "[Trash Info]":
            raise StepFailed(f"{name} does not start with [Trash Info]")
        paths = [line[len("Path="):] for line in lines if line.startswith("Path=")]
        if len(paths) != 1 or not any(line.startswith("DeletionDate=") for line in lines):
            raise StepFailed(f"{name} lacks one Path= and a DeletionDate=")
        original = urllib.parse.unquote(paths[0])
        if not original.startswith("/"):
            # Relative paths are relative to the folder that holds the Trash.
            original = os.path.join(os.path.dirname(home.trash), original)
        entries[os.path.normpath(original)] = name[: -len(".trashinfo")]
    return entries


def check_untouched(home, files, base, when):
    for name, content in files.items():
        path = os.path.join(base, name)
        if not os.path.isfile(path) or read(path) != content:
            raise StepFailed(f"{when}: {home.short(path)} was moved or changed")


def check_desktop_trash(home):
    """The desktop's own Trash (gio, through gvfs on the session bus) lists the moved files."""
    if not os.access("/usr/libexec/gvfsd-trash", os.X_OK):
        progress("gvfs is not installed: the desktop's view of the Trash is not checked")
        return
    env = home.environment()
    env["DBUS_SESSION_BUS_ADDRESS"] = os.environ["DBUS_SESSION_BUS_ADDRESS"]
    listed = subprocess.run(["gio", "trash", "--list"], env=env, capture_output=True)
    originals = {line.partition("\t")[2] for line in listed.stdout.decode().splitlines()}
    expected = {os.path.join(home.tool_cache, name) for name in ELIGIBLE}
    if listed.returncode != 0 or originals != expected:
        raise StepFailed(f"gio trash --list shows {sorted(originals)} "
                         f"({listed.stderr.decode(errors='replace').strip()}), "
                         f"expected {sorted(expected)}")
    progress(f"gio trash --list shows the {len(expected)} files with their original places")


def check_in_trash(home):
    entries = trash_entries(home)
    expected = {os.path.join(home.tool_cache, name) for name in ELIGIBLE}
    if set(entries) != expected:
        listed = sorted(home.short(path) for path in entries)
        raise StepFailed(f"after Move to Trash: the Trash records {listed}, "
                         f"expected {sorted(home.short(path) for path in expected)}")
    for name, content in ELIGIBLE.items():
        original = os.path.join(home.tool_cache, name)
        if os.path.lexists(original):
            raise StepFailed(f"after Move to Trash: {home.short(original)} is still in place")
        trashed = os.path.join(home.trash, "files", entries[original])
        if not os.path.isfile(trashed) or read(trashed) != content:
            raise StepFailed(f"after Move to Trash: Trash/files/{entries[original]} is missing "
                             f"or does not hold {name}'s content")
    check_untouched(home, INELIGIBLE, home.tool_cache, "after Move to Trash")
    check_untouched(home, UNSELECTED, home.tool_data, "after Move to Trash")


def check_restored(home):
    for name, content in ELIGIBLE.items():
        path = os.path.join(home.tool_cache, name)
        if not os.path.isfile(path):
            raise StepFailed(f"after Undo: {home.short(path)} is not back")
        if read(path) != content:
            raise StepFailed(f"after Undo: {home.short(path)} came back with other content")
        if os.stat(path).st_mtime_ns != home.mtimes[path]:
            raise StepFailed(f"after Undo: {home.short(path)} came back with another "
                             "modification time")
    left = trash_entries(home)
    files = os.path.join(home.trash, "files")
    left_files = os.listdir(files) if os.path.isdir(files) else []
    if left or left_files:
        raise StepFailed(f"after Undo: the Trash still holds {sorted(left_files)} "
                         f"with records for {sorted(home.short(path) for path in left)}")
    check_untouched(home, INELIGIBLE, home.tool_cache, "after Undo")
    check_untouched(home, UNSELECTED, home.tool_data, "after Undo")


# ---------------------------------------------------------------------------------------------
# The walk through the app


def drive(home, session):
    tree = connect(session)

    status = tree.wait_for("the footer's \"Updated …\" after the first scan", "label",
                           lambda name: re.fullmatch(r"Updated \S.*", name or "") is not None)
    progress(f"scan finished: {status.name!r}")

    row = tree.wait_for(f"the {OWNER} row", "push button",
                        lambda name: (name or "").startswith(f"Open {OWNER}, "))
    progress(f"pressing {row.name!r}")
    tree.act(row, "Press")

    cache_name = f"Select Cache at {home.short(home.tool_cache)}"
    data_name = f"Select Agent data at {home.short(home.tool_data)}"
    cache_box = tree.wait_for(f"the checkbox {cache_name!r}", "check box", exactly(cache_name))
    tree.wait_for(f"the checkbox {data_name!r}", "check box", exactly(data_name))
    if tree.checked(cache_box):
        raise StepFailed(f"{cache_name!r} was checked before anyone chose it")
    progress(f"checking {cache_name!r}")
    tree.act(cache_box, "Toggle", "Press")

    def cache_checked():
        # Read afresh: the box shows the selection the app kept, not merely the toggle.
        box = tree.find("check box", exactly(cache_name))
        return box is not None and tree.checked(box)

    tree.wait_until(f"{cache_name!r} becoming checked", cache_checked)
    data_box = tree.wait_for(f"the checkbox {data_name!r}", "check box", exactly(data_name))
    if tree.checked(data_box):
        raise StepFailed(f"{data_name!r} became checked along with the cache")

    review = tree.wait_for("the button \"Review selected…\"", "push button",
                           exactly("Review selected…"))
    progress("pressing \"Review selected…\"")
    tree.act(review, "Press")

    move = tree.wait_for("the review sheet's \"Move to Trash\"", "push button",
                         exactly("Move to Trash"))
    tree.wait_for("the review sheet's heading", "label", exactly("Review selected items"))
    progress("pressing \"Move to Trash\"")
    tree.act(move, "Press")

    notice = tree.wait_for("the footer's moved-to-Trash notice", "label",
                           lambda name: (name or "").startswith("Moved "))
    expected = f"Moved {len(ELIGIBLE)} items to Trash."
    if notice.name != expected:
        raise StepFailed(f"the footer says {notice.name!r}, expected {expected!r}")
    progress(f"footer notice: {notice.name!r}")

    check_in_trash(home)
    progress(f"on disk: {len(ELIGIBLE)} files are in Trash/files with .trashinfo records; "
             "the database, the credential and the other location are untouched")
    check_desktop_trash(home)

    undo = tree.wait_for("the footer's \"Undo\"", "push button", exactly("Undo"))
    progress("pressing \"Undo\"")
    tree.act(undo, "Press")

    restored = tree.wait_for("the footer's restore notice", "label",
                             lambda name: (name or "").startswith("Restored "))
    expected = f"Restored {len(ELIGIBLE)} items to the original locations."
    if restored.name != expected:
        raise StepFailed(f"the footer says {restored.name!r}, expected {expected!r}")
    progress(f"footer notice: {restored.name!r}")

    check_restored(home)
    progress("on disk: every file is back with its content and modification time; "
             "the Trash is empty")


if __name__ == "__main__":
    sys.exit(run(__doc__.splitlines()[0], drive, populate))
