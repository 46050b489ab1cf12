"""A private Wayland desktop: a compositor without a screen of its own, a message bus and folders of its own."""

import functools
import os
import pathlib
import pwd
import shutil
import subprocess
import time

from desktop import Desktop, HEIGHT, ServerScreen, StageMissed, wait_until, WIDTH

# sway refuses to run as root.
OTHER_USER = "nobody"
HEADLESS = {"WLR_BACKENDS": "headless", "WLR_LIBINPUT_NO_DEVICES": "1", "WLR_RENDERER": "pixman"}
# The kernel's codes of keys.
KEYS = {"Escape": 1, "Return": 28, "Down": 108, "Up": 103, "Left": 105, "Right": 106}
for first, letters in ((16, "qwertyuiop"), (30, "asdfghjkl"), (44, "zxcvbnm")):
    KEYS |= {letter: first + index for index, letter in enumerate(letters)}


# Where the windows of the programs that a test drags from and to stand, in points.
DRAG_WINDOWS, DRAG_LEFT, DRAG_TOP = ("Drag source", "Drop target"), 100, 600
LABWC = """<labwc_config>
  <placement><policy>cascade</policy></placement>
  <windowRules>{rules}</windowRules>
</labwc_config>
"""
LABWC_RULE = """<windowRule title="{title}" serverDecoration="no"><action name="MoveTo" x="{left}" y="{top}"/></windowRule>"""
# 2: always; 1: the whole title.
KWIN_RULES = "[General]\ncount={count}\nrules={numbers}\n"
KWIN_RULE = "[{number}]\nDescription=x\ntitle={title}\ntitlematch=1\nposition={left},{top}\npositionrule=2\n"


class WaylandDesktop(Desktop):
    """`with WaylandDesktop(program, peers) as desktop:` as on an X server. Points are those of the output, whose upper
    left corner they count from."""

    def __init__(self, program, peers, compositor="sway", scale=1, xwayland=False, outputs=1, locker=False, **more):
        self.compositor_name = compositor
        self.peers = pathlib.Path(peers).resolve()
        self.output_scale = scale
        self.xwayland = xwayland
        # On KWin: outputs side by side, with the notch on the left one, and whether it can lock its session.
        self.outputs = outputs
        self.locker = locker
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
        for name in ("HEADLESS-1", f"X11-{self.outputs - 1}"):
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
        {"sway": self._start_sway, "labwc": self._start_labwc, "kwin": self._start_kwin}[self.compositor_name]()
        wait_until("a compositor", lambda: pathlib.Path(self.environment["WAYLAND_DISPLAY"]).exists()
                   and self._still_composes(), 30)

    def _still_composes(self):
        if self.compositor_process.poll() is not None:
            raise StageMissed(f"a compositor that runs:\n{self.compositor_log()}")
        return True

    def compositor_log(self):
        return (self.home / "compositor.log").read_text(errors="replace")

    def all_logs(self):
        return self.log() + "\n" + self.compositor_log()[-2000:]

    def _start_labwc(self):
        configuration = self.home / "labwc"
        configuration.mkdir(exist_ok=True)
        rules = "".join(LABWC_RULE.format(title=title, left=DRAG_LEFT, top=DRAG_TOP) for title in DRAG_WINDOWS)
        (configuration / "rc.xml").write_text(LABWC.format(rules=rules))
        self.environment["WAYLAND_DISPLAY"] = self.environment["XDG_RUNTIME_DIR"] + "/wayland-0"
        environment = {**self.environment, **HEADLESS}
        del environment["WAYLAND_DISPLAY"]
        self._run_compositor(["labwc", "-C", str(configuration)], env=environment, cwd=self.home)
        wait_until("an output", lambda: self._still_composes() and self._set_output("--on"))

    def _set_output(self, switch):
        mode = ["--custom-mode", f"{WIDTH}x{HEIGHT}", "--scale", str(self.output_scale)] if switch == "--on" else []
        return subprocess.run(["wlr-randr", "--output", "HEADLESS-1", switch, *mode], env=self.environment,
                              capture_output=True).returncode == 0

    def _run_compositor(self, command, **more):
        with open(self.home / "compositor.log", "ab") as log:
            self.compositor_process = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=log, stderr=log, **more)
        self.processes.append(self.compositor_process)

    def _start_sway(self):
        # Programs do not trust a folder of another user.
        runtime = self.home / "compositor"
        runtime.mkdir(mode=0o700, exist_ok=True)
        configuration = self.home / "sway.conf"
        configuration.write_text(
            f"output HEADLESS-1 resolution {WIDTH}x{HEIGHT} position 0 0 scale {self.output_scale} bg #31547a solid_color\n"
            f"xwayland {'enable' if self.xwayland else 'disable'}\ndefault_border none\n"
            f"for_window [title=\"^({'|'.join(DRAG_WINDOWS)})$\"] floating enable, move position {DRAG_LEFT} {DRAG_TOP}\n"
            # Its X server lets in nobody but its own user.
            f"exec {'xhost +local: && ' if self.xwayland else ''}echo \"$DISPLAY\" > {runtime}/x11-display\n")
        user = {}
        if os.geteuid() == 0:
            shutil.chown(runtime, OTHER_USER)
            user = {"user": OTHER_USER, "group": pwd.getpwnam(OTHER_USER).pw_gid, "extra_groups": []}
        socket = runtime / "sway.sock"
        self.environment.update({"SWAYSOCK": str(socket), "WAYLAND_DISPLAY": str(runtime / "wayland-1")})
        environment = {**self.environment, **HEADLESS, "HOME": str(runtime), "XDG_RUNTIME_DIR": str(runtime)}
        del environment["WAYLAND_DISPLAY"]
        self._run_compositor(["sway", "-c", str(configuration)], env=environment, cwd=runtime, **user)
        wait_until("the compositor's socket", lambda: self._still_composes() and socket.exists())
        wait_until("the compositor's start", (runtime / "x11-display").exists)
        if self.xwayland:
            self.environment["DISPLAY"] = (runtime / "x11-display").read_text().strip()

    def _start_kwin(self):
        """As a window of an X server: without a graphics driver it has no pictures of its own to give."""
        self._start_server()
        self.server_display = self.environment.pop("DISPLAY")
        rules = [KWIN_RULE.format(number=number, title=title, left=DRAG_LEFT, top=DRAG_TOP)
                 for number, title in enumerate(DRAG_WINDOWS, 1)]
        numbers = ",".join(str(number + 1) for number in range(len(rules)))
        (self.home / "config" / "kwinrulesrc").write_text(
            KWIN_RULES.format(count=len(rules), numbers=numbers) + "".join(rules))
        # What Debian installs has a capability that takes more rights than a container has.
        binary = self.home / "kwin_wayland"
        shutil.copyfile(shutil.which("kwin_wayland"), binary)
        binary.chmod(0o755)
        variables = {"KWIN_COMPOSE": "Q", "KWIN_WAYLAND_NO_PERMISSION_CHECKS": "1"}
        self.environment["WAYLAND_DISPLAY"] = self.environment["XDG_RUNTIME_DIR"] + "/wayland-kwin"
        self._run_compositor(
            [str(binary), "--x11-display", self.server_display, *([] if self.locker else ["--no-lockscreen"]), "--width",
             str(self.points[0]), "--height", str(self.points[1]), "--scale", str(self.output_scale), "--output-count",
             str(self.outputs), "--socket", "wayland-kwin"], env={**self.environment, **variables}, cwd=self.home)
        # KWin 6 decides for itself on the scale of an output that is a window.
        if has_output_settings() and (self.output_scale != 1 or self.outputs > 1):
            wait_until("an output", lambda: self._still_composes() and self._arrange_outputs())

    def _arrange_outputs(self):
        """Side by side, with the one whose window is above the others' on the left."""
        return self._kscreen(*(f"X11-{index}.{setting}" for index in range(self.outputs) for setting in (
            "enable", f"scale.{self.output_scale}", f"position.{(self.outputs - 1 - index) * self.points[0]},0")))

    def _kscreen(self, *settings):
        return subprocess.run(["kscreen-doctor", *(f"output.{setting}" for setting in settings)], capture_output=True,
                              env={**self.environment, "QT_QPA_PLATFORM": "wayland"}, timeout=20).returncode == 0

    def _start_hands(self):
        """A seat without devices has no pointer and no keyboard, and programs learn late that it has got them."""
        width, height = self.points
        self.hand = self.spawn([str(self.peers / "Hand"), str(width), str(height)], stdout=subprocess.PIPE,
                               stdin=subprocess.PIPE, text=True)
        self.hand.stdout.readline()
        if self.compositor_name != "kwin":
            self.spawn(["wtype", "-s", "100000000", "z"])
        if self.compositor_name != "sway":
            self.spawn(["swaybg", "-c", "#31547a"])
            wait_until("a background", lambda: not self.is_black(100, 600))
        time.sleep(0.7)

    def switch_output(self, on):
        """The output with the notch."""
        if self.compositor_name == "labwc":
            self._set_output("--on" if on else "--off")
        elif self.compositor_name == "kwin":
            if not (self._arrange_outputs() if on else self._kscreen(f"X11-{self.outputs - 1}.disable")):
                raise StageMissed("outputs that can be switched")
        else:
            self.swaymsg("output", "HEADLESS-1", "enable" if on else "disable")

    def swaymsg(self, *words):
        return self.call(["swaymsg", "-s", self.environment["SWAYSOCK"], *words]).decode()

    def lockers_are_surfaces(self):
        """Whether a locker is one more surface of the compositor, and no session lock."""
        if self.compositor_name != "sway":
            return False
        version = self.call(["sway", "--version"]).decode().split()[2]
        return tuple(int(part) for part in version.split("-")[0].split(".")[:2]) < (1, 8)

    def lock(self):
        """The colour of what is to be seen then where it says nothing."""
        if self.compositor_name != "kwin":
            self.spawn(["swaylock", "--color", "204020", "--no-unlock-indicator"])
            return 0x20, 0x40, 0x20
        self.call(["dbus-send", "--print-reply", "--dest=org.freedesktop.ScreenSaver", "/org/freedesktop/ScreenSaver",
                   "org.freedesktop.ScreenSaver.Lock"])
        return 0, 0, 0

    def kill_server(self):
        self.compositor_process.kill()

    # What a person does and sees.

    def do(self, *words):
        self.hand.stdin.write(" ".join(map(str, words)) + "\n")
        self.hand.stdin.flush()
        if not self.hand.stdout.readline():
            raise StageMissed("hands that the compositor listens to")

    def pointer(self):
        return self.place

    def leap(self, x, y):
        self.do("move", x, y)
        self.place = (x, y)

    def press(self):
        self.do("press")

    def release(self):
        self.do("release")

    def key(self, *keys):
        for key in keys:
            if self.compositor_name == "kwin":
                self.do("key", KEYS[key], 1)
                self.do("key", KEYS[key], 0)
            else:
                self.call(["wtype", "-k", key])
            time.sleep(0.05)

    def type(self, text):
        if self.compositor_name == "kwin":
            self.key(*text)
        else:
            self.call(["wtype", text])

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
        if self.compositor_name == "kwin":
            x, y, width, height = (round(value * self.output_scale) for value in (x, y, width, height))
            return self._server_screen.pixels(x, y, width, height)
        picture = self.call(["grim", "-s", "1", "-t", "ppm", "-g", f"{x},{y} {width}x{height}", "-"])
        return picture[-width * height * 3:]

    @functools.cached_property
    def _server_screen(self):
        return ServerScreen(self.server_display)

    def is_filled(self, colour, x, y, width, height):
        return self._pixels(x, y, width, height) == bytes(colour) * (width * height)

    def picture(self, path):
        if self.compositor_name == "kwin":
            self.call(["import", "-display", self.server_display, "-window", "root", str(path)])
        else:
            self.call(["grim", str(path)])
        return path


def has_output_settings():
    """Whether KWin's outputs can be changed here."""
    return shutil.which("kscreen-doctor") is not None


def scales(compositor):
    version = subprocess.run(["dpkg-query", "-W", "-f=${Version}", "kwin-wayland"], capture_output=True, text=True).stdout
    return (1, 1.5) if compositor != "kwin" or ":5." in version or has_output_settings() else (1,)
