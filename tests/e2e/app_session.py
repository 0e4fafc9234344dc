"""What the end-to-end tests share: a temporary home, a private session (Xvfb, session bus,
accessibility bus) that runs Tallowmere, and the accessibility tree, read as a screen reader
reads it.

Imported by the tests, which run with Debian's /usr/bin/python3 (the only one that imports
pyatspi). Each test exits 0 on success, 1 on a failed step, 77 when the machine lacks the tools.
"""

import os
import shutil
import signal
import subprocess
import sys
import tempfile
import time

STEP_TIMEOUT = 30.0
POLL_INTERVAL = 0.2
SKIPPED = 77


class StepFailed(Exception):
    pass


def progress(text):
    print(f"[e2e] {text}", flush=True)


# ---------------------------------------------------------------------------------------------
# The temporary home


class Home:
    def __init__(self):
        # Resolved, because the app resolves HOME's symlinks before shortening paths to "~/".
        self.root = os.path.realpath(tempfile.mkdtemp(prefix="tallowmere-e2e-"))
        self.home = os.path.join(self.root, "home")
        # Not the default names, so the tests also prove the app follows the XDG variables.
        self.config = os.path.join(self.home, "xdg-config")
        self.cache = os.path.join(self.home, "xdg-cache")
        self.data = os.path.join(self.home, "xdg-data")
        self.state = os.path.join(self.home, "xdg-state")
        self.runtime = os.path.join(self.root, "runtime")
        self.tmp = os.path.join(self.root, "tmp")
        self.trash = os.path.join(self.data, "Trash")
        self.mtimes = {}
        for folder in (self.config, self.cache, self.data, self.state, self.tmp):
            os.makedirs(folder, exist_ok=True)
        os.makedirs(self.runtime, mode=0o700, exist_ok=True)

    def write(self, path, content, mtime):
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "wb") as file:
            file.write(content)
        os.utime(path, (mtime, mtime))
        self.mtimes[path] = os.stat(path).st_mtime_ns

    def short(self, path):
        return "~/" + os.path.relpath(path, self.home)

    def environment(self):
        env = {
            key: value
            for key, value in os.environ.items()
            if key not in ("DBUS_SESSION_BUS_ADDRESS", "AT_SPI_BUS_ADDRESS", "DISPLAY",
                           "XAUTHORITY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM",
                           "SESSION_MANAGER")
            and not key.startswith("XDG_")
        }
        env.update(
            HOME=self.home,
            XDG_CONFIG_HOME=self.config,
            XDG_CACHE_HOME=self.cache,
            XDG_DATA_HOME=self.data,
            XDG_STATE_HOME=self.state,
            XDG_RUNTIME_DIR=self.runtime,
            TMPDIR=self.tmp,
            LANG="C.UTF-8",
            LC_ALL="C.UTF-8",
            QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1",
            QT_ACCESSIBILITY="1",
        )
        return env


# ---------------------------------------------------------------------------------------------
# The private session: X server, session bus, accessibility bus, and the app

# Runs inside dbus-run-session: publishes the bus, display and X authority for this script, starts
# the accessibility bus, and becomes the app so that its process id is known.
SESSION_SCRIPT = r"""
printf '%s\n%s\n%s\n' "$DBUS_SESSION_BUS_ADDRESS" "$DISPLAY" "$XAUTHORITY" > "$E2E_SESSION_FILE.new"
mv "$E2E_SESSION_FILE.new" "$E2E_SESSION_FILE"
/usr/libexec/at-spi-bus-launcher --launch-immediately &
sleep 1
echo $$ > "$E2E_APP_PID_FILE"
exec "$E2E_APP"
"""


class Session:
    def __init__(self, home, app):
        self.home = home
        self.app = app
        self.session_file = os.path.join(home.root, "session")
        self.pid_file = os.path.join(home.root, "app.pid")
        self.log_path = os.path.join(home.root, "app.log")
        self.process = None

    def start(self):
        env = self.home.environment()
        env.update(E2E_SESSION_FILE=self.session_file, E2E_APP_PID_FILE=self.pid_file,
                   E2E_APP=self.app)
        self.log = open(self.log_path, "wb")
        # A process group of its own, so that everything the session starts can be ended.
        self.process = subprocess.Popen(
            ["xvfb-run", "-a", "dbus-run-session", "--", "bash", "-c", SESSION_SCRIPT],
            env=env, stdin=subprocess.DEVNULL, stdout=self.log, stderr=subprocess.STDOUT,
            start_new_session=True)

    def addresses(self):
        deadline = time.monotonic() + STEP_TIMEOUT
        while time.monotonic() < deadline:
            self.check_running("the private session")
            if os.path.exists(self.session_file):
                with open(self.session_file) as file:
                    lines = file.read().splitlines()
                if len(lines) >= 3 and lines[0]:
                    return lines[0], lines[1], lines[2]
            time.sleep(POLL_INTERVAL)
        raise StepFailed("the private session did not start")

    def launch_again(self):
        """Starts the app once more in the same session; answers its process."""
        bus, display, xauthority = self.addresses()
        env = self.home.environment()
        env.update(DBUS_SESSION_BUS_ADDRESS=bus, DISPLAY=display, XAUTHORITY=xauthority)
        return subprocess.Popen([self.app], env=env, stdin=subprocess.DEVNULL,
                                stdout=subprocess.PIPE, stderr=subprocess.STDOUT)

    def check_running(self, what):
        if self.process.poll() is not None:
            raise StepFailed(f"the app's session ended (status {self.process.returncode}) "
                             f"while waiting for {what}")

    def log_tail(self, lines=40):
        try:
            with open(self.log_path, "rb") as file:
                text = file.read().decode("utf-8", "replace")
        except OSError:
            return ""
        return "\n".join(text.splitlines()[-lines:])

    def stop(self):
        if self.process is None:
            return
        # The app first, so that xvfb-run ends normally and removes its own files.
        try:
            with open(self.pid_file) as file:
                os.kill(int(file.read().strip()), signal.SIGTERM)
        except (OSError, ValueError):
            pass
        try:
            self.process.wait(timeout=10)
        except subprocess.TimeoutExpired:
            pass
        # Then whatever is left of the group: the accessibility bus and registry outlive the app.
        for sig, wait in ((signal.SIGTERM, 3), (signal.SIGKILL, 3)):
            try:
                os.killpg(self.process.pid, sig)
            except ProcessLookupError:
                break
            deadline = time.monotonic() + wait
            while time.monotonic() < deadline and group_alive(self.process.pid):
                time.sleep(0.1)
            if not group_alive(self.process.pid):
                break
        if self.process.poll() is None:
            self.process.wait(timeout=5)
        self.log.close()


def group_alive(pgid):
    try:
        os.killpg(pgid, 0)
        return True
    except ProcessLookupError:
        return False
    except PermissionError:
        return True


# ---------------------------------------------------------------------------------------------
# The accessibility tree


class Tree:
    def __init__(self, session, pyatspi):
        self.session = session
        self.pyatspi = pyatspi

    def application(self):
        desktop = self.pyatspi.Registry.getDesktop(0)
        for index in range(desktop.childCount):
            try:
                child = desktop.getChildAtIndex(index)
                if child is not None and child.name == "Tallowmere":
                    return child
            except Exception:
                continue
        return None

    def application_count(self):
        desktop = self.pyatspi.Registry.getDesktop(0)
        count = 0
        for index in range(desktop.childCount):
            try:
                child = desktop.getChildAtIndex(index)
                count += child is not None and child.name == "Tallowmere"
            except Exception:
                continue
        return count

    def nodes(self):
        """Every node under the application, read afresh: cached children can be stale."""
        root = self.application()
        if root is None:
            return
        stack = [root]
        while stack:
            node = stack.pop()
            yield node
            try:
                count = node.childCount
            except Exception:
                continue
            for index in reversed(range(count)):
                try:
                    child = node.getChildAtIndex(index)
                except Exception:
                    continue
                if child is not None:
                    stack.append(child)

    def describe(self, node):
        try:
            return node.getRoleName(), node.name, node.getState()
        except Exception:
            return None

    def visible(self, state):
        return state.contains(self.pyatspi.STATE_VISIBLE)

    def find(self, role, name_test):
        """The first visible node with `role` whose name passes `name_test`, or None."""
        for node in self.nodes():
            described = self.describe(node)
            if described is None:
                continue
            node_role, name, state = described
            if node_role == role and self.visible(state) and name_test(name):
                return node
        return None

    def visible_names(self):
        names = []
        for node in self.nodes():
            described = self.describe(node)
            if described and described[1] and self.visible(described[2]):
                names.append(f"{described[0]} {described[1]!r}")
        return names

    def wait_for(self, what, role, name_test, timeout=STEP_TIMEOUT):
        deadline = time.monotonic() + timeout
        while time.monotonic() < deadline:
            self.session.check_running(what)
            self.fail_on_alert()
            node = self.find(role, name_test)
            if node is not None:
                return node
            time.sleep(POLL_INTERVAL)
        shown = "\n    ".join(self.visible_names()) or "(nothing)"
        raise StepFailed(f"{what} did not appear within {timeout:.0f} s. Visible:\n    {shown}")

    def fail_on_alert(self):
        alert = self.find("label", lambda name: name == "Couldn’t complete that action")
        if alert is not None:
            shown = "\n    ".join(self.visible_names())
            raise StepFailed(f"the app showed a failure alert. Visible:\n    {shown}")

    def act(self, node, *names):
        """Runs the first of `names` that the node offers as an action."""
        action = node.queryAction()
        offered = [action.getName(index) for index in range(action.nActions)]
        for name in names:
            if name in offered:
                if not action.doAction(offered.index(name)):
                    raise StepFailed(f"the action {name} of {node.name!r} was refused")
                return
        raise StepFailed(f"{node.name!r} offers none of {names}; it offers {offered}")

    def checked(self, node):
        return node.getState().contains(self.pyatspi.STATE_CHECKED)

    def wait_until(self, what, test, timeout=STEP_TIMEOUT):
        deadline = time.monotonic() + timeout
        while time.monotonic() < deadline:
            self.session.check_running(what)
            if test():
                return
            time.sleep(POLL_INTERVAL)
        raise StepFailed(f"{what} did not happen within {timeout:.0f} s")


def exactly(text):
    return lambda name: name == text


def connect(session):
    """Starts the session and answers its accessibility tree once the app is on it."""
    progress("starting the private session (Xvfb, session bus, accessibility bus, app)")
    session.start()
    bus, display, xauthority = session.addresses()
    # pyatspi finds the accessibility bus through the display or the session bus it starts with.
    os.environ["DBUS_SESSION_BUS_ADDRESS"] = bus
    os.environ["DISPLAY"] = display
    os.environ["XAUTHORITY"] = xauthority
    os.environ.pop("AT_SPI_BUS_ADDRESS", None)
    import pyatspi

    tree = Tree(session, pyatspi)
    deadline = time.monotonic() + STEP_TIMEOUT
    while tree.application() is None:
        session.check_running("the app on the accessibility bus")
        if time.monotonic() > deadline:
            raise StepFailed("the app never appeared on the accessibility bus")
        time.sleep(POLL_INTERVAL)
    progress("the app is on the accessibility bus")
    return tree


def missing_tools():
    missing = [tool for tool in ("xvfb-run", "dbus-run-session") if shutil.which(tool) is None]
    if not os.access("/usr/libexec/at-spi-bus-launcher", os.X_OK):
        missing.append("/usr/libexec/at-spi-bus-launcher")
    # Looked up, not imported: importing it now would tie it to the wrong session bus.
    if not any(os.path.isdir(os.path.join(folder, "pyatspi")) for folder in sys.path if folder):
        missing.append("pyatspi (python3-pyatspi, for /usr/bin/python3)")
    return missing



def run(description, drive, prepare=None):
    """Runs `drive(home, session)` on a new home and session; answers the exit status."""
    import argparse

    parser = argparse.ArgumentParser(description=description)
    parser.add_argument("--app", required=True, help="the tallowmere executable")
    parser.add_argument("--keep", action="store_true",
                        help="keep the temporary home to look at afterwards")
    arguments = parser.parse_args()

    app = os.path.abspath(arguments.app)
    if not os.access(app, os.X_OK):
        print(f"[e2e] FAILED: {app} is not an executable", flush=True)
        return 1
    missing = missing_tools()
    if missing:
        print(f"[e2e] SKIPPED: missing {', '.join(missing)}", flush=True)
        return SKIPPED

    home = Home()
    session = Session(home, app)
    step_failed = None
    try:
        if prepare is not None:
            prepare(home)
        progress(f"temporary home {home.home}")
        drive(home, session)
    except StepFailed as failure:
        step_failed = str(failure)
    except Exception as failure:  # a broken bus or tree is a failure too, with its reason
        step_failed = f"unexpected {type(failure).__name__}: {failure}"
    finally:
        session.stop()
        if step_failed is not None:
            tail = session.log_tail()
            if tail:
                print("[e2e] the app's output, last lines:\n" + tail, flush=True)
        if arguments.keep:
            progress(f"kept {home.root}")
        else:
            shutil.rmtree(home.root, ignore_errors=True)

    if step_failed is not None:
        print(f"[e2e] FAILED: {step_failed}", flush=True)
        return 1
    progress("PASSED")
    return 0
