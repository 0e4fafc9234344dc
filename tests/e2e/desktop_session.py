#!/usr/bin/python3
"""Tallowmere as a desktop application, driven through the accessibility tree: a second launch
brings the running window forward and leaves at once, the folder dialog opens and closes, and
everything the app writes lies in its XDG places.

Run with Debian's /usr/bin/python3 (the only one that imports pyatspi):
    /usr/bin/python3 desktop_session.py --app build/release/Tallowmere/tallowmere
Exits 0 on success, 1 on a failed step, 77 when the machine lacks the tools to run it.
"""

import ctypes
import os
import re
import subprocess
import sys

from app_session import StepFailed, connect, exactly, progress, run

TITLE = "Tallowmere · AI Storage"


class Cover:
    """A window of our own over the app's, as another application's would be. Without a window
    manager nothing else stacks the windows, so the order tells whether the app came forward."""

    def __init__(self):
        self.x11 = ctypes.CDLL("libX11.so.6")
        x11 = self.x11
        x11.XOpenDisplay.restype = ctypes.c_void_p
        x11.XOpenDisplay.argtypes = [ctypes.c_char_p]
        x11.XDefaultRootWindow.restype = ctypes.c_ulong
        x11.XDefaultRootWindow.argtypes = [ctypes.c_void_p]
        x11.XCreateSimpleWindow.restype = ctypes.c_ulong
        x11.XCreateSimpleWindow.argtypes = [ctypes.c_void_p, ctypes.c_ulong] + \
            [ctypes.c_int] * 2 + [ctypes.c_uint] * 3 + [ctypes.c_ulong] * 2
        x11.XMapRaised.argtypes = [ctypes.c_void_p, ctypes.c_ulong]
        x11.XSync.argtypes = [ctypes.c_void_p, ctypes.c_int]
        x11.XQueryTree.argtypes = [ctypes.c_void_p, ctypes.c_ulong] + \
            [ctypes.POINTER(ctypes.c_ulong)] * 2 + \
            [ctypes.POINTER(ctypes.POINTER(ctypes.c_ulong)), ctypes.POINTER(ctypes.c_uint)]
        x11.XFree.argtypes = [ctypes.c_void_p]
        x11.XCloseDisplay.argtypes = [ctypes.c_void_p]
        self.display = x11.XOpenDisplay(None)
        if not self.display:
            raise StepFailed("could not open the X display")
        self.root = x11.XDefaultRootWindow(self.display)
        self.window = x11.XCreateSimpleWindow(self.display, self.root, 0, 0, 1280, 900, 0, 0, 0)
        x11.XMapRaised(self.display, self.window)
        x11.XSync(self.display, 0)

    def on_top(self):
        """True while this window is the topmost of the screen's windows."""
        root, parent = ctypes.c_ulong(), ctypes.c_ulong()
        children, count = ctypes.POINTER(ctypes.c_ulong)(), ctypes.c_uint()
        self.x11.XQueryTree(self.display, self.root, ctypes.byref(root), ctypes.byref(parent),
                            ctypes.byref(children), ctypes.byref(count))
        topmost = children[count.value - 1] if count.value else 0
        if children:
            self.x11.XFree(children)
        return topmost == self.window

    def close(self):
        self.x11.XCloseDisplay(self.display)


def check_second_launch(tree, session):
    tree.wait_for("the window", "frame", exactly(TITLE))
    cover = Cover()
    try:
        tree.wait_until("another window covering the app's", cover.on_top)
        progress("another window covers the app's")

        second = session.launch_again()
        try:
            output, _ = second.communicate(timeout=15)
        except subprocess.TimeoutExpired:
            second.kill()
            raise StepFailed("the second launch kept running instead of leaving")
        if second.returncode != 0:
            raise StepFailed(f"the second launch exited {second.returncode}: "
                             f"{output.decode(errors='replace')}")
        progress("the second launch left at once, with status 0")

        tree.wait_until("the app's window coming forward", lambda: not cover.on_top())
    finally:
        cover.close()
    if tree.application_count() != 1:
        raise StepFailed(f"{tree.application_count()} Tallowmere applications are running")
    progress("the app's window came forward; one application is running")


def check_folder_dialog(tree):
    add = tree.wait_for("the button \"Add a folder…\"", "push button", exactly("Add a folder…"))
    progress("pressing \"Add a folder…\"")
    tree.act(add, "Press")
    cancel = tree.wait_for("the folder dialog's Cancel", "push button", exactly("Cancel"))
    tree.wait_for("the folder dialog's accept button", "push button", exactly("Track storage"))
    progress("the folder dialog is open; pressing Cancel")
    tree.act(cancel, "Press")
    tree.wait_until("the folder dialog closing",
                    lambda: tree.find("push button", exactly("Cancel")) is None)


def check_places(home):
    """Everything under the home the app made lies in its own XDG places or the Trash."""
    allowed = [os.path.join(home.config, "Tallowmere"), os.path.join(home.cache, "Tallowmere"),
               home.trash]
    bases = {home.home, home.config, home.cache, home.data, home.state}
    stray = []
    for folder, folders, files in os.walk(home.home):
        for name in folders + files:
            path = os.path.join(folder, name)
            inside = any(path == place or path.startswith(place + os.sep) for place in allowed)
            if not inside and path not in bases:
                stray.append(home.short(path))
    if stray:
        raise StepFailed(f"the app wrote outside its places: {sorted(stray)}")
    written = sorted(home.short(os.path.join(folder, name))
                     for place in allowed for folder, _, files in os.walk(place)
                     for name in files)
    progress(f"the app wrote only {written}")


def drive(home, session):
    tree = connect(session)
    status = tree.wait_for("the footer's \"Updated …\" after the first scan", "label",
                           lambda name: re.fullmatch(r"Updated \S.*", name or "") is not None)
    progress(f"scan finished: {status.name!r}")
    check_second_launch(tree, session)
    check_folder_dialog(tree)
    check_places(home)


if __name__ == "__main__":
    sys.exit(run(__doc__.splitlines()[0], drive))
