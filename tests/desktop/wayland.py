"""A private Wayland desktop: a compositor without a screen of its own, a message bus and folders of its own."""

import os
import pathlib
import pwd
import shutil
import subprocess
import sys
import time

from desktop import Desktop, HEIGHT, NOTCH_MIDDLE, StageMissed, wait_until, WIDTH

PYTHON = "/usr/bin/python3"
# sway refuses to run as root.
OTHER_USER = "nobody"
# The kernel's codes of keys.
KEYS = {"Escape": 1, "Return": 28, "Down": 108, "Up": 103, "Left": 105, "Right": 106}
for first, letters in ((16, "qwertyuiop"), (30, "asdfghjkl"), (44, "zxcvbnm")):
    KEYS |= {letter: first + index for index, letter in enumerate(letters)}


def known_compositors():
    """Without KWin 6: it gives the tests no pictures yet and, a known fault, does not tell which program is in front."""
    # Its program does not run everywhere, not even for its version.
    version = subprocess.run(["dpkg-query", "-W", "-f=${Version}", "kwin-wayland"], capture_output=True, text=True).stdout
    return ["sway", "kwin"] if ":5." in version else ["sway"]


class WaylandDesktop(Desktop):
    """`with WaylandDesktop(program, peers) as desktop:` as on an X server. Points are those of the output, whose upper
    left corner they count from."""

    def __init__(self, program, peers, compositor="sway", scale=1, xwayland=False, **more):
        self.compositor_name = compositor
        self.peers = pathlib.Path(peers).resolve()
        self.output_scale = scale
        self.xwayland = xwayland
        self.hand = None
        super().__init__(program, **more)
        # Only the compositor's user has to get there.
        self.home.chmod(0o711)
        self.place = (0, 0)
        # Qt's words on a keyboard that nobody has typed on yet, on the time without an output, and on a scale that it
        # learns when the window stands.
        self.usual_log += ["unknown keymap format: 0", "There are no outputs", "cached device pixel ratio value was stale"]

    def declare_notch(self):
        super().declare_notch()
        panels = self.home / "data" / "Nimbarrow" / "display-panels"
        description = (panels / "screen.json").read_text()
        for name in ("HEADLESS-1", "Virtual-1", "Virtual-0"):
            (panels / f"{name}.json").write_text(description)
        (panels / "screen.json").unlink()

    @property
    def points(self):
        """The output's width and height in points."""
        return int(WIDTH / self.output_scale), int(HEIGHT / self.output_scale)

    def __enter__(self):
        try:
            if self.bus:
                self._start_bus()
            self.start_compositor()
            self._start_hands()
        except BaseException:
            self.__exit__()
            raise
        return self

    def start_compositor(self):
        if self.compositor_name == "sway":
            self._start_sway()
        else:
            self._start_kwin()
        wait_until("a compositor", lambda: pathlib.Path(self.environment["WAYLAND_DISPLAY"]).exists()
                   and self._still_composes(), 30)

    def _still_composes(self):
        if self.compositor_process.poll() is not None:
            raise StageMissed(f"a compositor that runs:\n{self.compositor_log()}")
        return True

    def compositor_log(self):
        return (self.home / "compositor.log").read_text(errors="replace")

    def _start_sway(self):
        # Programs do not trust a folder of another user.
        runtime = self.home / "compositor"
        runtime.mkdir(mode=0o700, exist_ok=True)
        configuration = self.home / "sway.conf"
        configuration.write_text(
            f"output HEADLESS-1 resolution {WIDTH}x{HEIGHT} position 0 0 scale {self.output_scale} bg #31547a solid_color\n"
            f"xwayland {'enable' if self.xwayland else 'disable'}\ndefault_border none\n"
            # Its X server lets in nobody but its own user.
            f"exec {'xhost +local: && ' if self.xwayland else ''}echo \"$DISPLAY\" > {runtime}/x11-display\n")
        user = {}
        if os.geteuid() == 0:
            shutil.chown(runtime, OTHER_USER)
            user = {"user": OTHER_USER, "group": pwd.getpwnam(OTHER_USER).pw_gid, "extra_groups": []}
        socket = runtime / "sway.sock"
        self.environment.update({"SWAYSOCK": str(socket), "WAYLAND_DISPLAY": str(runtime / "wayland-1")})
        variables = {"WLR_BACKENDS": "headless", "WLR_LIBINPUT_NO_DEVICES": "1", "WLR_RENDERER": "pixman",
                     "HOME": str(runtime), "XDG_RUNTIME_DIR": str(runtime)}
        environment = {**self.environment, **variables}
        del environment["WAYLAND_DISPLAY"]
        with open(self.home / "compositor.log", "ab") as log:
            self.compositor_process = subprocess.Popen(["sway", "-c", str(configuration)], env=environment, cwd=runtime,
                                                       stdin=subprocess.DEVNULL, stdout=log, stderr=log, **user)
        self.processes.append(self.compositor_process)
        wait_until("the compositor's socket", lambda: self._still_composes() and socket.exists())
        wait_until("the compositor's start", (runtime / "x11-display").exists)
        if self.xwayland:
            self.environment["DISPLAY"] = (runtime / "x11-display").read_text().strip()

    def _start_kwin(self):
        # What Debian installs has a capability that takes more rights than a container has.
        binary = self.home / "kwin_wayland"
        shutil.copyfile(shutil.which("kwin_wayland"), binary)
        binary.chmod(0o755)
        variables = {"KWIN_COMPOSE": "O2", "LIBGL_ALWAYS_SOFTWARE": "1", "KWIN_WAYLAND_NO_PERMISSION_CHECKS": "1",
                     "KWIN_SCREENSHOT_NO_PERMISSION_CHECKS": "1"}
        self.environment["WAYLAND_DISPLAY"] = self.environment["XDG_RUNTIME_DIR"] + "/wayland-kwin"
        with open(self.home / "compositor.log", "ab") as log:
            self.compositor_process = subprocess.Popen(
                [str(binary), "--virtual", "--no-lockscreen", "--width", str(WIDTH), "--height", str(HEIGHT), "--scale",
                 str(self.output_scale), "--socket", "wayland-kwin"] + (["--xwayland"] if self.xwayland else []),
                env={**self.environment, **variables}, cwd=self.home, stdin=subprocess.DEVNULL, stdout=log, stderr=log)
        self.processes.append(self.compositor_process)

    def _start_hands(self):
        """A seat without devices has no pointer and no keyboard, and programs learn late that it has got them."""
        width, height = self.points
        self.hand = self.spawn([str(self.peers / "Hand"), str(width), str(height)], stdout=subprocess.PIPE,
                               stdin=subprocess.PIPE, text=True)
        self.hand.stdout.readline()
        if self.compositor_name == "sway":
            self.spawn(["wtype", "-s", "100000000", "z"])
        else:
            self.spawn(["swaybg", "-c", "#31547a"])
            self.camera = self.spawn([PYTHON, str(pathlib.Path(__file__).parent / "peers" / "kwin_picture.py")],
                                     stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        time.sleep(0.7)

    def swaymsg(self, *words):
        return self.call(["swaymsg", "-s", self.environment["SWAYSOCK"], *words]).decode()

    def lockers_are_surfaces(self):
        """Whether a locker is one more surface of the compositor, and no session lock."""
        if self.compositor_name != "sway":
            return False
        version = self.call(["sway", "--version"]).decode().split()[2]
        return tuple(int(part) for part in version.split("-")[0].split(".")[:2]) < (1, 8)

    def kill_server(self):
        self.compositor_process.kill()

    # What a person does and sees.

    def spawn(self, command, **more):
        stdin = more.pop("stdin", subprocess.DEVNULL)
        process = subprocess.Popen(command, env=self.environment, cwd=self.home, stdin=stdin,
                                   stdout=more.pop("stdout", subprocess.DEVNULL),
                                   stderr=more.pop("stderr", subprocess.DEVNULL), **more)
        self.processes.append(process)
        return process

    def do(self, *words):
        self.hand.stdin.write(" ".join(map(str, words)) + "\n")
        self.hand.stdin.flush()
        if not self.hand.stdout.readline():
            raise StageMissed("hands that the compositor listens to")

    def move(self, x, y):
        from_x, from_y = self.place
        for step in range(1, 6):
            self.do("move", from_x + (x - from_x) * step // 5, from_y + (y - from_y) * step // 5)
            time.sleep(0.015)
        self.place = (x, y)

    def click(self, x, y):
        self.move(x, y)
        self.do("press")
        time.sleep(0.05)
        self.do("release")

    def key(self, *keys):
        for key in keys:
            if self.compositor_name == "sway":
                self.call(["wtype", "-k", key])
            else:
                self.do("key", KEYS[key], 1)
                self.do("key", KEYS[key], 0)
            time.sleep(0.05)

    def type(self, text):
        if self.compositor_name == "sway":
            self.call(["wtype", text])
        else:
            self.key(*text)

    def copy(self, data, target=None):
        words = ["wl-copy"] + (["-t", target] if target else [])
        subprocess.run(words, env=self.environment, check=True, timeout=10,
                       input=data if isinstance(data, bytes) else data.encode(), stdout=subprocess.DEVNULL,
                       stderr=subprocess.DEVNULL)

    def pasted(self, target="text/plain"):
        return subprocess.run(["wl-paste", "-n", "-t", target], env=self.environment, capture_output=True,
                              timeout=10).stdout

    def _pixels(self, x, y, width, height):
        """Of a part of the screen, in points, three bytes each."""
        if self.compositor_name != "sway":
            self.camera.stdin.write(f"{x} {y} {width} {height}\n".encode())
            self.camera.stdin.flush()
            return self.camera.stdout.read(width * height * 3)
        picture = self.call(["grim", "-s", "1", "-t", "ppm", "-g", f"{x},{y} {width}x{height}", "-"])
        return picture[-width * height * 3:]

    def pixel(self, x, y):
        return tuple(self._pixels(x, y, 1, 1))

    def brightest(self, x, top, bottom):
        return max(self._pixels(x, top, 1, bottom - top))

    def picture(self, path):
        if self.compositor_name == "sway":
            self.call(["grim", str(path)])
            return path
        width, height = self.points
        self.call(["convert", "-size", f"{width}x{height}", "-depth", "8", "rgb:-", str(path)],
                  input=self._pixels(0, 0, width, height))
        return path


def run_wayland_test(program, peers, play, **options):
    """As desktop.run_test()."""
    with WaylandDesktop(program, peers, **options) as desktop:
        try:
            play(desktop)
            desktop.check_log()
        except StageMissed as missed:
            print("missed:", missed, "\n" + desktop.log(), "\n" + desktop.compositor_log()[-2000:], file=sys.stderr)
            return 1
    return 0
