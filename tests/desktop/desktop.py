"""A private desktop: an X server, a window manager, a compositor, a message bus and folders of its own."""

import functools
import json
import os
import pathlib
import shutil
import signal
import subprocess
import sys
import tempfile
import time

from Xlib import X
from Xlib.display import Display

WIDTH, HEIGHT = 1512, 982
NOTCH_LEFT, NOTCH_RIGHT, NOTCH_HEIGHT = 664, 848, 32
NOTCH_MIDDLE = (NOTCH_LEFT + NOTCH_RIGHT) // 2


def reached(stage):
    """What a test does when a person would look."""
    print("reached:", stage, flush=True)


class StageMissed(Exception):
    """Something that a person would have seen did not happen."""


def wait_until(what, condition, seconds=15.0):
    """Returns what `condition` gives as soon as that is true."""
    end = time.monotonic() + seconds
    while True:
        result = condition()
        if result:
            return result
        if time.monotonic() > end:
            raise StageMissed(what)
        time.sleep(0.02)


def gradient_png(width, height, top, bottom):
    """A picture to copy: an RGB gradient from `top` to `bottom`."""
    colours = "-".join(f"rgb{colour}" for colour in (top, bottom))
    return subprocess.run(["convert", "-size", f"{width}x{height}", f"gradient:{colours}", "-depth", "8", "png:-"],
                          check=True, stdout=subprocess.PIPE).stdout


def run_test(program, play, told=False, kind=None, **options):
    """Plays a test on a desktop of its own; 0 when everything happened and nothing else was worth a word. `told` when a
    screen reader listens. `kind` is the class of the desktop."""
    with (kind or Desktop)(program, **options) as desktop:
        if told:
            desktop.environment["QT_LINUX_ACCESSIBILITY_ALWAYS_ON"] = "1"
        try:
            play(desktop)
            desktop.check_log()
        except StageMissed as missed:
            print("missed:", missed, "\n" + desktop.all_logs(), file=sys.stderr)
            return 1
    return 0


class Peer:
    """A window of a program of the tests' own, with its left and top edge there, in points."""

    def __init__(self, desktop, peers, program, left, top, *words):
        self.process = desktop.spawn([os.path.join(os.path.abspath(peers), program), *map(str, words)])
        # "DragSource" calls its window "Drag source".
        title = program[0] + "".join(" " + letter.lower() if letter.isupper() else letter for letter in program[1:])
        window = wait_until(f"the window of {program}", lambda: desktop.xdotool(
            "search", "--sync", "--onlyvisible", "--name", title).split()[-1].decode(), 20)
        desktop.xdotool("windowmove", window, left * desktop.scale, top * desktop.scale)
        time.sleep(0.5)

    def close(self):
        self.process.terminate()
        self.process.wait(10)


class ServerScreen:
    """What an X server shows, read without starting a program: on a busy machine a notice is gone before one runs."""

    def __init__(self, display):
        self.root = Display(display).screen().root

    def pixels(self, x, y, width, height):
        """Three bytes each: red, green, blue."""
        all_planes = 0xffffffff
        data = self.root.get_image(x, y, width, height, X.ZPixmap, all_planes).data
        return bytes(data[at + part] for at in range(0, len(data), 4) for part in (2, 1, 0))


class Desktop:
    """`with Desktop(program) as desktop:` starts it all and ends it all."""

    # Pixels a point of the output, where the windowing system has points of its own.
    output_scale = 1

    def __init__(self, program, window_manager="openbox", compositor=True, bus=True, scale=1, settings=None,
                 services=None):
        self.program = os.path.abspath(program)
        self.window_manager = window_manager
        self.compositor = compositor
        self.bus = bus
        # The only services that the bus may start, where not all that are installed.
        self.services = services
        self.scale = scale
        self.processes = []
        # The last is Qt's word about somebody who asked for a view that has gone meanwhile.
        self.usual_log = ["did finish launching", "adapter launched", "adapter ready",
                          "Could not find accessible on path"]
        self.nimbarrow = None
        self.home = pathlib.Path(tempfile.mkdtemp(prefix="nimbarrow-desktop-"))
        self.environment = {
            name: value for name, value in os.environ.items()
            if name not in ("DISPLAY", "WAYLAND_DISPLAY", "XAUTHORITY", "DBUS_SESSION_BUS_ADDRESS",
                            "DBUS_SYSTEM_BUS_ADDRESS", "SESSION_MANAGER", "QT_QPA_PLATFORM")
        }
        for name, folder in (("HOME", "home"), ("XDG_CONFIG_HOME", "config"), ("XDG_DATA_HOME", "data"),
                             ("XDG_CACHE_HOME", "cache"), ("XDG_RUNTIME_DIR", "runtime")):
            path = self.home / folder
            path.mkdir(mode=0o700)
            self.environment[name] = str(path)
        self.environment.update({
            "GSETTINGS_BACKEND": "memory", "NO_AT_BRIDGE": "1", "LANG": "C.UTF-8", "LC_ALL": "C.UTF-8",
            "XDG_DATA_DIRS": "/usr/local/share:/usr/share", "GTK_THEME": "Adwaita",
        })
        self.set_settings(settings or {})
        self.declare_notch()

    # What the person has set up before the program starts.

    def set_settings(self, settings):
        lines = "".join(f"{key}={str(value).lower()}\n" for key, value in settings.items())
        (self.home / "config" / "Nimbarrow.conf").write_text("[General]\n" + lines)

    def declare_notch(self):
        panels = self.home / "data" / "Nimbarrow" / "display-panels"
        panels.mkdir(parents=True, exist_ok=True)
        left, right, height = (n * self.scale for n in (NOTCH_LEFT, NOTCH_RIGHT, NOTCH_HEIGHT))
        (panels / "screen.json").write_text(json.dumps({
            "name": "A screen with a notch", "x-res": WIDTH * self.scale, "y-res": HEIGHT * self.scale,
            "cutouts": [{"name": "notch", "path": f"M {left} 0 H {right} V {height} H {left} Z"}],
        }))

    # Starting and ending.

    def __enter__(self):
        try:
            self._start_server()
            if self.bus:
                self._start_bus()
            self.spawn(["openbox", "--sm-disable"] if self.window_manager == "openbox" else [self.window_manager])
            wait_until("a window manager", lambda: "window id" in self._root_property("_NET_SUPPORTING_WM_CHECK"))
            self._paint_background()
            if self.compositor:
                self.spawn(["picom", "--config", "/dev/null", "--backend", "xrender", "--no-fading-openclose"])
                wait_until("a compositor", self._is_composited)
        except BaseException:
            self.__exit__()
            raise
        return self

    def __exit__(self, *_):
        self.stop()
        for process in reversed(self.processes):
            if process.poll() is None:
                process.terminate()
        for process in reversed(self.processes):
            try:
                process.wait(5)
            except subprocess.TimeoutExpired:
                process.kill()
                process.wait()
        shutil.rmtree(self.home, ignore_errors=True)

    def spawn(self, command, **more):
        streams = dict.fromkeys(("stdin", "stdout", "stderr"), subprocess.DEVNULL)
        process = subprocess.Popen(command, env=self.environment, cwd=self.home, **{**streams, **more})
        self.processes.append(process)
        return process

    def start(self, patience=15, **environment):
        """Starts Nimbarrow and waits until its panel stands over the notch."""
        self.start_unseen(**environment)
        wait_until("the panel over the notch", lambda: self._still_runs() and self.is_black(NOTCH_MIDDLE, 16),
                   patience)

    def start_unseen(self, **environment):
        """Starts Nimbarrow where nobody can see it."""
        with open(self.home / "nimbarrow.log", "ab") as log:
            self.nimbarrow = subprocess.Popen([self.program], env={**self._scaled(), **environment}, cwd=self.home,
                                              stdin=subprocess.DEVNULL, stdout=log, stderr=log)

    def _scaled(self):
        return {**self.environment, **({"QT_SCALE_FACTOR": str(self.scale)} if self.scale != 1 else {})}

    def run(self, *words, status=0, **environment):
        """Runs the program with these options; what it has said on both streams."""
        run = subprocess.run([self.program, *words], env={**self._scaled(), **environment}, timeout=30,
                             capture_output=True, text=True)
        if run.returncode != status:
            raise StageMissed(f"status {status} of {words}, not {run.returncode}: {run.stdout}{run.stderr}")
        return run.stdout, run.stderr

    def _still_runs(self):
        if self.nimbarrow.poll() is not None:
            raise StageMissed(f"Nimbarrow ended with {self.nimbarrow.returncode}:\n{self.log()}")
        return True

    def stop(self, how=signal.SIGTERM):
        if self.nimbarrow and self.nimbarrow.poll() is None:
            self.nimbarrow.send_signal(how)
            try:
                self.nimbarrow.wait(10)
            except subprocess.TimeoutExpired:
                self.nimbarrow.kill()
                self.nimbarrow.wait()
        self.nimbarrow = None

    def kill_server(self):
        """Takes the X server away."""
        self.server.kill()

    @staticmethod
    def children_of(pid):
        tasks = pathlib.Path(f"/proc/{pid}/task").glob("*/children")
        return [int(child) for task in tasks for child in task.read_text().split()]

    @staticmethod
    def runs(pid):
        try:
            return "Z" not in pathlib.Path(f"/proc/{pid}/stat").read_text().rsplit(")", 1)[1].split()[0]
        except FileNotFoundError:
            return False

    def log(self):
        path = self.home / "nimbarrow.log"
        return path.read_text(errors="replace") if path.exists() else ""

    def all_logs(self):
        """What is to be read when something was missed."""
        return self.log()

    def check_log(self):
        """Nothing but its start has been worth a word."""
        lines = [line for line in self.log().splitlines() if not any(words in line for words in self.usual_log)]
        if lines:
            raise StageMissed("a quiet log:\n" + "\n".join(lines))

    def _start_server(self):
        read, write = os.pipe()
        self.server = self.spawn(["Xvfb", "-displayfd", str(write), "-screen", "0",
                    f"{WIDTH * self.scale}x{HEIGHT * self.scale}x24", "-nolisten", "tcp", "-noreset"],
                   pass_fds=[write])
        os.close(write)
        with os.fdopen(read) as pipe:
            number = pipe.readline().strip()
        if not number:
            raise StageMissed("a private X server")
        self.environment["DISPLAY"] = ":" + number

    def _start_bus(self):
        configuration = ["--session"] if self.services is None else [f"--config-file={self._bus_configuration()}"]
        # At the same place each time, as a session has it.
        address = f"unix:path={self.home}/bus"
        self.bus_daemon = self.spawn(["dbus-daemon", *configuration, f"--address={address}", "--nofork",
                                      "--print-address=1"], stdout=subprocess.PIPE)
        self.bus_daemon.stdout.readline()
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = address

    def restart_bus(self):
        ready = self.log().count("adapter ready")
        self.bus_daemon.kill()
        self.bus_daemon.wait()
        (self.home / "bus").unlink()
        wait_until("an adapter that waits for a bus", lambda: self.log().count("adapter ready") > ready)
        self.usual_log += ["adapter exited (ready: 1)"]
        self._start_bus()

    def _bus_configuration(self):
        folder = self.home / "services"
        folder.mkdir(exist_ok=True)
        for name in self.services:
            shutil.copy(f"/usr/share/dbus-1/services/{name}.service", folder)
        path = self.home / "bus.conf"
        path.write_text(f"<busconfig><type>session</type><listen>unix:tmpdir={self.home}</listen>"
                        f"<servicedir>{folder}</servicedir><policy context='default'><allow send_destination='*'/>"
                        "<allow eavesdrop='true'/><allow own='*'/></policy></busconfig>")
        return path

    def _paint_background(self):
        self.call(["hsetroot", "-add", "#31547a", "-add", "#b98b6d", "-gradient", "0"])

    def _root_property(self, name):
        return self.call(["xprop", "-root", name]).decode(errors="replace")

    def _is_composited(self):
        # A composited screen redirects its windows; picom says so through a property on its own window.
        return b"picom" in self.call(["xwininfo", "-root", "-tree"])

    # What a person does and sees.

    def call(self, command, **more):
        return subprocess.run(command, env=self.environment, cwd=self.home, check=True, stdout=subprocess.PIPE,
                              stderr=more.pop("stderr", subprocess.DEVNULL), timeout=60, **more).stdout

    def xdotool(self, *words):
        return self.call(["xdotool", *map(str, words)])

    def move(self, x, y):
        """Moves the pointer there in a few steps, as a hand does."""
        self._glide(self.pointer(), (x, y), steps=5, pause=0.015)

    def _glide(self, start, end, steps, pause):
        """By whole points."""
        for step in range(1, steps + 1):
            self.leap(*(int(a + (b - a) * step / steps) for a, b in zip(start, end)))
            time.sleep(pause)

    def pointer(self):
        """Where it is."""
        place = dict(line.split("=") for line in self.xdotool("getmouselocation", "--shell").decode().split())
        return int(place["X"]) // self.scale, int(place["Y"]) // self.scale

    def leap(self, x, y):
        """Puts the pointer there at once."""
        self.xdotool("mousemove", x * self.scale, y * self.scale)

    def press(self):
        self.xdotool("mousedown", 1)

    def release(self):
        self.xdotool("mouseup", 1)

    def click(self, x, y):
        self.move(x, y)
        self.press()
        time.sleep(0.05)
        self.release()

    def drag(self, start, end):
        """Drags slowly enough for the drag protocol's handshakes."""
        self.move(*start)
        time.sleep(0.1)
        self.press()
        self.drag_on(start, end)

    def drag_on(self, start, end):
        """With the button down already."""
        time.sleep(0.08)
        self._glide(start, end, steps=12, pause=0.08)
        time.sleep(0.3)

    def key(self, *keys):
        self.xdotool("key", "--clearmodifiers", "--delay", "40", *keys)

    def copy(self, data, target=None):
        """Copies with xclip, which stays in the background to serve what it copied."""
        words = ["xclip", "-selection", "clipboard", "-in"] + (["-t", target] if target else [])
        process = subprocess.Popen(words, env=self.environment, stdin=subprocess.PIPE, stdout=subprocess.DEVNULL,
                                   stderr=subprocess.DEVNULL)
        process.communicate(data if isinstance(data, bytes) else data.encode())

    def copy_texts(self, *texts, seconds=15.0):
        """And waits each time until the history has it."""
        for text in texts:
            self.copy(text)
            self.wait_for_text(text, seconds)

    def pasted(self, target="UTF8_STRING"):
        """What any other program would paste now."""
        run = subprocess.run(["xclip", "-selection", "clipboard", "-out", "-t", target], env=self.environment,
                             capture_output=True, timeout=10)
        return run.stdout

    @functools.cached_property
    def _server_screen(self):
        return ServerScreen(self.environment["DISPLAY"])

    def _pixels(self, x, y, width, height):
        """Of a part of the screen, three bytes each."""
        return self._server_screen.pixels(*(value * self.scale for value in (x, y, width, height)))

    def pixel(self, x, y):
        return tuple(self._pixels(x, y, 1, 1)[:3])

    def brightest(self, x, top, bottom):
        """The brightest part of any colour in a column of pixels."""
        return max(self._pixels(x, top, 1, bottom - top))

    def is_black(self, x, y):
        return max(self.pixel(x, y)) <= 8

    def are_ends_black(self, left, right, y):
        """In one look: of what is there for a moment, two looks may see half."""
        line = self._pixels(left, y, right - left, 1)
        return max(line[:3] + line[-3:]) <= 8

    def picture(self, path):
        self.call(["import", "-window", "root", str(path)])
        return path

    # What the history holds, as the disk has it.

    @property
    def history_folder(self):
        return self.home / "data" / "Nimbarrow"

    def history(self):
        try:
            return json.loads((self.history_folder / "index.json").read_text())
        except FileNotFoundError:
            return []

    def wait_for_text(self, text, seconds=15.0):
        self.wait_for_entry(repr(text), lambda item: item.get("text") == text, seconds)

    def wait_for_entry(self, what, matches, seconds=15.0):
        return wait_until(f"{what} in the history", lambda: next(filter(matches, self.history()), None), seconds)
