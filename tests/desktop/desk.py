"""A desktop running the program, and helpers to use it: real keys and a real pointer."""

import http.server
import json
import os
import pathlib
import re
import signal
import subprocess
import sys
import threading
import time
import unittest

import accessible

ROOT = pathlib.Path(__file__).resolve().parents[2]
PROGRAM = os.environ.get("ULVAK_PROGRAM", str(ROOT / "build/release/src/ulvak"))
PATIENCE_S = 10
LOOKS_APART_S = 0.03


def wait_for(what, look, seconds=PATIENCE_S):
    """Polls `look` and returns its first true result. If it never comes, fails naming what was expected."""
    end = time.monotonic() + seconds
    while True:
        try:
            if seen := look():
                return seen
        except accessible.Gone:
            pass
        if time.monotonic() > end:
            raise AssertionError(f"expected within {seconds} s: {what}")
        time.sleep(LOOKS_APART_S)


class ModelServer:
    """A local language model server that lists one model, or does not answer while told to be silent."""

    def __init__(self):
        speaks = self._speaks = threading.Event()
        speaks.set()

        class Handler(http.server.BaseHTTPRequestHandler):
            def do_GET(self):
                speaks.wait()
                is_list = self.path == "/v1/models"
                body = json.dumps({"object": "list", "data": [{"id": "yerel", "object": "model"}]} if is_list else {})
                self.send_response(200 if is_list or self.path == "/health" else 404)
                self.send_header("Content-Type", "application/json")
                self.send_header("Content-Length", str(len(body)))
                self.end_headers()
                self.wfile.write(body.encode())

            def do_POST(self):
                speaks.wait()
                self.send_error(404)

            def log_message(self, *_):
                pass

            def handle(self):
                try:
                    super().handle()
                except ConnectionError:
                    pass  # the client did not wait

        self._server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Handler)
        self._server.daemon_threads = True
        self.url = f"http://127.0.0.1:{self._server.server_port}"
        threading.Thread(target=self._server.serve_forever, daemon=True).start()

    def be_silent(self):
        self._speaks.clear()

    def close(self):
        self._speaks.set()
        self._server.shutdown()
        self._server.server_close()


def make_home():
    """One home for all tests, because it is large. Removed with the script's temporary folder it is in."""
    home = pathlib.Path(os.environ["ULVAK_DESKTOP_TEST"]) / "demo"
    options = os.environ["ULVAK_DEMO_HOME_OPTION"].split()
    subprocess.run([ROOT / "scripts/demo-home", home, *options], check=True, stdout=subprocess.DEVNULL, timeout=60)
    return home


class DesktopTest(unittest.TestCase):
    """Each test runs its own program over the shared demo home, and uses different items of it."""

    home = None

    def setUp(self):
        is_new = not DesktopTest.home
        if is_new:
            DesktopTest.home = make_home()
        self.hold = self.home.with_name("hold")
        self.data = self.home / ".local/share"
        self.verdicts_file = self.data / "Ulvak/verdicts.json"
        self.trash_before = self.trash()
        self.server = ModelServer()
        self.addCleanup(self.server.close)
        if is_new:
            self.check_home()

    def check_home(self):
        """The program must find everything that was put there; otherwise each test would miss something different."""
        told = subprocess.run(
            [PROGRAM, "--dump"], env=self.environment(), check=True, timeout=60, capture_output=True, text=True,
        ).stdout
        self.assertRegex(told, r"^Tarandı: \d+ dosya, 25,\d+ GB", "the size of the home")

    def environment(self):
        """The program's environment."""
        return dict(
            os.environ,
            HOME=str(self.home),
            TMPDIR=str(self.home / ".tmp/T"),
            XDG_DATA_HOME=str(self.data),
            XDG_CONFIG_HOME=str(self.home / ".config"),
            XDG_CACHE_HOME=str(self.home / ".cache"),
            ULVAK_MODEL_URL=self.server.url,
            ULVAK_REDUCED_MOTION="1",
            LD_PRELOAD=os.environ["ULVAK_DISK"],
            ULVAK_DISK_HOME=str(self.home),
            ULVAK_DISK_HOLD=str(self.hold),
            # An ASan build rejects libraries preloaded before its own.
            ASAN_OPTIONS="verify_asan_link_order=0",
        )

    def hold_disk(self):
        """From now on the disk does not answer, so that a scan does not end."""
        self.hold.touch()
        self.addCleanup(self.hold.unlink)

    def start(self, *arguments):
        self.process = subprocess.Popen([PROGRAM, *arguments], env=self.environment())
        self.addCleanup(self._end)
        self.addCleanup(self._tell_failure)
        self.bus = accessible.connect()
        self.window = wait_for("the window, told to assistive programs", self._find_window, 20)
        wait_for("the window has the keyboard", lambda: "active" in self.window.states)

    def _tell_failure(self):
        """If a test has failed, reports what the window showed."""
        result = self._outcome.result
        has_failed = any(test is self for test, _ in result.failures + result.errors)
        if not has_failed or self.process.poll() is not None:
            return
        print("\nwhat was shown:", file=sys.stderr)
        for node in self.shown():
            print(f"  {node!r} {sorted(node.states - {'enabled', 'sensitive', 'showing', 'visible'})}", file=sys.stderr)

    def _end(self):
        if self.process.poll() is None:
            self.process.send_signal(signal.SIGKILL)
            self.process.wait()

    def _find_window(self):
        if self.process.poll() is not None:
            raise AssertionError(f"expected a window; the program ended with {self.process.returncode}")
        told = accessible.program(self.bus, self.process.pid)
        return next(iter(told.children), None) if told else None

    # What is visible.

    def shown(self):
        """All visible controls, in tree order."""
        return [node for node in self.window.below() if "showing" in node.states]

    def find(self, role, beginning):
        """The last control with this role whose name starts with `beginning`: the one on top."""
        found = None
        for node in self.shown():
            if node.role in role.split("|") and node.name.startswith(beginning):
                found = node
        return found

    def see(self, role, beginning):
        return wait_for(f"{role} {beginning!r}", lambda: self.find(role, beginning))

    def see_no(self, role, beginning):
        wait_for(f"no {role} {beginning!r}", lambda: not self.find(role, beginning))

    def focused(self):
        """The focused control: the innermost, if a list and its row both report focus."""
        nodes = [node for node in self.shown() if "focused" in node.states]
        return nodes[-1] if nodes else None

    # User input.

    def _xdotool(self, *words):
        subprocess.run(["xdotool", *map(str, words)], check=True, timeout=10)

    def press(self, *keys):
        self._xdotool("key", "--clearmodifiers", *keys)

    def settled_place(self, node):
        """Its final position: new items may still be moved to make room for others."""
        before = None

        def look():
            nonlocal before
            now = node.place
            is_settled = now == before
            before = now
            return is_settled and now

        return wait_for(f"{node!r} stays in its place", look)

    def click(self, node, times=1, button=1):
        left, top, width, height = self.settled_place(node)
        self.assertGreater(min(width, height), 3, f"{node!r} has a place that can be hit")
        self._xdotool("mousemove", left + width // 2, top + height // 2)
        self._xdotool("click", "--repeat", times, "--delay", 20, button)

    def tab_to(self, role, beginning):
        """Moves the focus there using only the Tab key."""
        for _ in range(40):
            node = self.focused()
            if node and node.role in role.split("|") and node.name.startswith(beginning):
                return node
            self.press("Tab")
            wait_for(f"the focus leaves {node!r}", lambda: self.focused() != node)
        raise AssertionError(f"expected to come to {role} {beginning!r} by Tab")

    def wait_for_end(self, seconds, when, expected=0):
        try:
            status = self.process.wait(seconds)
        except subprocess.TimeoutExpired:
            self.fail(f"expected the program to end within {seconds} s when {when}")
        self.assertEqual(status, expected, f"status when {when}")

    # What the desktop knows.

    def _window_property(self, kind, name):
        """The strings in a property of the program's window."""
        window = subprocess.run(
            ["xdotool", "search", "--pid", str(self.process.pid), "--name", "."],
            check=True, timeout=10, capture_output=True, text=True,
        ).stdout.split()[-1]
        told = subprocess.run(
            ["xprop", "-id", window, "-f", name, kind, name],
            check=True, timeout=10, capture_output=True, text=True, env=dict(os.environ, LC_ALL="C.UTF-8"),
        ).stdout
        return re.findall('"([^"]*)"', told)

    def window_classes(self):
        """The names a window manager knows the program's window by."""
        return self._window_property("8s", "WM_CLASS")

    def window_title(self):
        """What a task bar shows."""
        return self._window_property("8u", "_NET_WM_NAME")[0]

    def entry(self, key):
        """A value from the installed desktop entry."""
        text = (ROOT / "packaging/linux/ulvak.desktop").read_text()
        return re.search(f"^{key}=(.*)$", text, re.MULTILINE)[1]

    # What is on the disk.

    def trash(self):
        """The names of the items in the Trash."""
        files = self.data / "Trash/files"
        return set(os.listdir(files)) if files.is_dir() else set()

    def newly_trashed(self):
        return self.trash() - self.trash_before

    def trash_info(self, name):
        return self.data / f"Trash/info/{name}.trashinfo"

    def verdicts(self):
        try:
            return json.loads(self.verdicts_file.read_bytes())
        except FileNotFoundError:
            return {}


class WaylandTest(DesktopTest):
    """Gives the program only Wayland, with a compositor whose window fills the X display, so that keys and clicks go
    all the way through. It shows a program at full size, so positions in its window and on the screen are the
    same."""

    SOCKET = "ulvak-wayland"

    def setUp(self):
        super().setUp()
        log = pathlib.Path(os.environ["TMPDIR"]) / "weston.log"
        self.compositor = subprocess.Popen(
            ["weston", "--backend=x11-backend.so", "--shell=kiosk-shell.so", "--use-pixman", "--fullscreen",
             "--width=1600", "--height=1000", "--idle-time=0", "--no-config", f"--socket={self.SOCKET}", f"--log={log}"],
            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
        )
        self.addCleanup(self._end_compositor)
        try:
            wait_for("a compositor that fills the display", self._is_compositor_there, 20)
        except AssertionError as error:
            raise AssertionError(f"{error}\n{log.read_text() if log.exists() else 'It says nothing.'}") from error

    def _is_compositor_there(self):
        if self.compositor.poll() is not None:
            raise AssertionError(f"expected a compositor; it ended with {self.compositor.returncode}")
        told = subprocess.run(
            ["xdotool", "search", "--onlyvisible", "--class", "^Weston Compositor", "getwindowgeometry"],
            timeout=10, capture_output=True, text=True,
        ).stdout
        has_socket = (pathlib.Path(os.environ["XDG_RUNTIME_DIR"]) / self.SOCKET).is_socket()
        return has_socket and "Position: 0,0 " in told and "Geometry: 1600x1000" in told

    def _end_compositor(self):
        self.compositor.kill()
        self.compositor.wait()

    def environment(self):
        environment = dict(super().environment(), WAYLAND_DISPLAY=self.SOCKET, XDG_SESSION_TYPE="wayland")
        del environment["DISPLAY"]
        return environment

    def start(self, *arguments):
        super().start(*arguments)
        # The compositor does not report where the pointer enters, only later moves.
        for place in (1, 2):
            self._xdotool("mousemove", place, place)
