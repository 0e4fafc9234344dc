#!/usr/bin/python3
"""Moves a tool's cache files to the Trash with tallowmere-cli and checks them with the
desktop's own Trash tools (gio, through gvfs): each is listed with its original place, and the
desktop can put one back. Then Undo, after the desktop restored one item and deleted another,
says so for those two and restores the third, overwriting nothing.

    /usr/bin/python3 desktop_trash.py --cli build/release/cli/tallowmere-cli
Exits 0 on success, 1 on a failed step, 77 when the machine lacks gio, gvfs or D-Bus.
"""

import argparse
import json
import os
import shutil
import signal
import subprocess
import sys
import tempfile
import time

SKIPPED = 77
# Ten days: past the age below which cache files are left alone by default.
OLD = time.time() - 10 * 86400
FILES = {
    "deps/registry.json": b'{"packages": ["left-pad"]}\n' * 40,
    "deps/index.js": bytes(range(256)) * 16,
    "assets/icon bin #1.png": b"\x89PNG fake icon " * 200,
}


class StepFailed(Exception):
    pass


def progress(text):
    print(f"[desktop-trash] {text}", flush=True)


def run(command, env, expect=0):
    done = subprocess.run(command, env=env, stdin=subprocess.DEVNULL, capture_output=True)
    if expect is not None and done.returncode != expect:
        raise StepFailed(f"{' '.join(command)} exited {done.returncode}:\n"
                         f"{done.stdout.decode(errors='replace')}"
                         f"{done.stderr.decode(errors='replace')}")
    return done


def private_bus(env):
    """Starts a session bus of the test's own; gio activates the gvfs trash backend on it."""
    daemon = subprocess.Popen(
        ["dbus-daemon", "--session", "--nofork", "--print-address=1"], env=env,
        stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, start_new_session=True)
    address = daemon.stdout.readline().decode().strip()
    if not address:
        raise StepFailed("dbus-daemon did not start")
    return daemon, address


def trash_listing(env):
    """Maps each original path the desktop's Trash shows to the item's trash:// address."""
    listed = run(["gio", "trash", "--list"], env).stdout.decode()
    entries = {}
    for line in listed.splitlines():
        uri, _, original = line.partition("\t")
        entries[original] = uri
    return entries


def drive(root, cli):
    home = os.path.join(root, "home")
    cache = os.path.join(home, ".cache")
    tool_cache = os.path.join(cache, "opencode")
    env = {
        "PATH": os.environ.get("PATH", "/usr/bin:/bin"),
        "HOME": home,
        "XDG_CONFIG_HOME": os.path.join(home, ".config"),
        "XDG_CACHE_HOME": cache,
        "XDG_DATA_HOME": os.path.join(home, ".local/share"),
        "XDG_STATE_HOME": os.path.join(home, ".local/state"),
        "XDG_RUNTIME_DIR": os.path.join(root, "runtime"),
        "LANG": "C.UTF-8",
    }
    os.makedirs(env["XDG_RUNTIME_DIR"], mode=0o700)
    paths = {}
    for name, content in FILES.items():
        path = os.path.join(tool_cache, name)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "wb") as file:
            file.write(content)
        os.utime(path, (OLD, OLD))
        paths[name] = path

    daemon, address = private_bus(env)
    env["DBUS_SESSION_BUS_ADDRESS"] = address
    try:
        review = os.path.join(root, "review.json")
        undo = os.path.join(root, "undo.json")
        run([cli, "review", "--tool", "OpenCode", "--select", tool_cache, "--out", review,
             "--no-pause"], env)
        removed = json.loads(run([cli, "remove", review, "--yes", "--undo", undo, "--json",
                                  "--no-pause"], env).stdout)
        if removed["moved"] != len(FILES):
            raise StepFailed(f"tallowmere-cli moved {removed['moved']} items: {removed}")
        progress(f"tallowmere-cli: {removed['notice']!r}")

        listed = trash_listing(env)
        if set(listed) != set(paths.values()):
            raise StepFailed(f"gio trash --list shows {sorted(listed)}, "
                             f"expected {sorted(paths.values())}")
        progress(f"gio trash --list shows all {len(listed)} with their original places")

        restored_by_desktop = paths["deps/registry.json"]
        run(["gio", "trash", "--restore", listed[restored_by_desktop]], env)
        if not os.path.isfile(restored_by_desktop):
            raise StepFailed("gio trash --restore did not put the file back")
        deleted_by_desktop = paths["deps/index.js"]
        run(["gio", "remove", listed[deleted_by_desktop]], env)
        progress("the desktop put one item back and deleted another from the Trash")

        # Marks the file the desktop put back, to prove that Undo does not replace it.
        os.utime(restored_by_desktop, (OLD + 60, OLD + 60))
        result = json.loads(run([cli, "restore", undo, "--json", "--no-pause"], env,
                                expect=None).stdout)
        gone = "It is no longer in the Trash."
        expected_errors = sorted(f"{os.path.basename(path)}: {gone}"
                                 for path in (restored_by_desktop, deleted_by_desktop))
        if result["restored"] != 1 or sorted(result["errors"]) != expected_errors:
            raise StepFailed(f"restore answered {result}")
        if result["remaining"]:
            raise StepFailed(f"the undo file keeps items that are gone: {result['remaining']}")
        progress(f"Undo: {result['notice']!r}, errors {result['errors']}")

        third = paths["assets/icon bin #1.png"]
        with open(third, "rb") as file:
            if file.read() != FILES["assets/icon bin #1.png"]:
                raise StepFailed("the restored file's content changed")
        if os.stat(restored_by_desktop).st_mtime != OLD + 60:
            raise StepFailed("Undo replaced the file the desktop had put back")
        if os.path.exists(deleted_by_desktop):
            raise StepFailed("a file the desktop deleted came back")
        if trash_listing(env):
            raise StepFailed(f"the Trash still lists {sorted(trash_listing(env))}")
        progress("on disk: the third file is back, the desktop's restore stands, the Trash "
                 "is empty")
    finally:
        os.killpg(daemon.pid, signal.SIGTERM)
        # The gvfs daemons it started leave with it.
        daemon.wait(timeout=10)


def missing_tools():
    missing = [tool for tool in ("gio", "dbus-daemon") if shutil.which(tool) is None]
    if not os.access("/usr/libexec/gvfsd-trash", os.X_OK):
        missing.append("gvfs (/usr/libexec/gvfsd-trash)")
    return missing


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--cli", required=True, help="the tallowmere-cli executable")
    arguments = parser.parse_args()
    missing = missing_tools()
    if missing:
        print(f"[desktop-trash] skipped: missing {', '.join(missing)}", flush=True)
        return SKIPPED
    root = os.path.realpath(tempfile.mkdtemp(prefix="tallowmere-desktop-trash-"))
    try:
        drive(root, os.path.abspath(arguments.cli))
    except StepFailed as failure:
        print(f"[desktop-trash] FAILED: {failure}", flush=True)
        return 1
    finally:
        shutil.rmtree(root, ignore_errors=True)
    print("[desktop-trash] passed", flush=True)
    return 0


if __name__ == "__main__":
    sys.exit(main())
