"""A private GNOME desktop: its shell without a screen of its own, both message buses and folders of its own."""

import json
import pathlib
import shutil
import subprocess
import sys
import time

from desktop import Desktop, HEIGHT, StageMissed, wait_until, WIDTH
from gi.repository import Gio, GLib

OUTPUT, OTHER_OUTPUT = "Meta-0", "Meta-1"
# The shell offers scales alone that make whole points of all pixels.
MONITOR_HEIGHT = HEIGHT + 2
# The kernel's codes of keys.
KEYS = {"Escape": 1, "Return": 28, "Tab": 15, "Control": 29, "Shift": 42, "Super": 125, "Down": 108, "Up": 103,
        "F2": 60, "F3": 61, "F4": 62, " ": 57}
for first, letters in ((2, "1234567890"), (16, "qwertyuiop"), (30, "asdfghjkl"), (44, "zxcvbnm")):
    KEYS |= {letter: first + index for index, letter in enumerate(letters)}

# Lets the tests ask the shell for anything.
EXTENSION = """
import {Extension} from 'resource:///org/gnome/shell/extensions/extension.js';
export default class Unsafe extends Extension { enable() { global.context.unsafe_mode = true; } disable() {} }
"""
HANDS = """
const Clutter = imports.gi.Clutter;
const seat = global.stage.get_context().get_backend().get_default_seat();
global.hand = seat.create_virtual_device(Clutter.InputDeviceType.POINTER_DEVICE);
global.keys = seat.create_virtual_device(Clutter.InputDeviceType.KEYBOARD_DEVICE);
"""


def answered(bus, name, path, interface, method, parameters=None):
    """What a service answers, an empty answer as true; None where it does not."""
    try:
        return bus.call_sync(name, path, interface, method, parameters, None, Gio.DBusCallFlags.NONE, 20000,
                             None).unpack() or True
    except GLib.Error:
        return None


class GnomeDesktop(Desktop):
    """`with GnomeDesktop(program) as desktop:` as on an X server. A place is one in the shell's points. With `screens` it
    stands on two outputs of that scale."""

    def __init__(self, program, screens=None, **more):
        super().__init__(program, **more)
        self.screens = screens
        self.output_scale = screens or 1
        resources = pathlib.Path(__file__).resolve().parents[2]
        # As installed: the portals know a program by its desktop file, if that names one that can be found.
        applications, programs = self.home / "data" / "applications", self.home / "bin"
        applications.mkdir()
        programs.mkdir()
        shutil.copy(resources / "packaging" / "ua.tessak.Nimbarrow.desktop", applications)
        (programs / "nimbarrow").symlink_to(self.program)
        extension = self.home / "data" / "gnome-shell" / "extensions" / "unsafe@test"
        extension.mkdir(parents=True)
        (extension / "extension.js").write_text(EXTENSION)
        (extension / "metadata.json").write_text(json.dumps({
            "uuid": "unsafe@test", "name": "unsafe", "description": "unsafe", "shell-version": ["45", "46", "47", "48", "49"]}))
        settings = self.home / "config" / "glib-2.0" / "settings"
        settings.mkdir(parents=True)
        (settings / "keyfile").write_text(
            "[org/gnome/shell]\nenabled-extensions=['unsafe@test']\nwelcome-dialog-last-shown-version='999'\n"
            "[org/gnome/desktop/interface]\nenable-hot-corners=false\n")
        self.environment.update({
            "GSETTINGS_BACKEND": "keyfile", "XDG_CURRENT_DESKTOP": "GNOME", "XDG_SESSION_TYPE": "wayland",
            "XDG_SESSION_DESKTOP": "gnome", "PATH": f"{programs}:{self.environment['PATH']}", "LIBGL_ALWAYS_SOFTWARE": "1"})

    def declare_notch(self):
        super().declare_notch()
        panels = self.home / "data" / "Nimbarrow" / "display-panels"
        description = (panels / "screen.json").read_text().replace(f'"y-res": {HEIGHT}', f'"y-res": {MONITOR_HEIGHT}')
        (panels / f"{OUTPUT}.json").write_text(description)
        (panels / "screen.json").unlink()

    def __enter__(self):
        try:
            self._start_bus()
            self._start_system_bus()
            self._start_shell()
        except BaseException:
            self.__exit__()
            raise
        return self

    def _start_system_bus(self):
        address = f"unix:path={self.home}/system-bus"
        daemon = self.spawn(["dbus-daemon", "--session", f"--address={address}", "--nofork", "--print-address=1"],
                            stdout=subprocess.PIPE)
        daemon.stdout.readline()
        self.environment["DBUS_SYSTEM_BUS_ADDRESS"] = address
        self.spawn([sys.executable, "-m", "dbusmock", "--system", "--template", "logind"])
        # Without a display manager the shell locks nothing, and says so in a notification of its own.
        manager = "org.gnome.DisplayManager", "/org/gnome/DisplayManager/Manager", "org.gnome.DisplayManager.Manager"
        self.spawn([sys.executable, "-m", "dbusmock", "--system", *manager])
        bus = self._connected(address)
        wait_until("a display manager", lambda: answered(bus, manager[0], manager[1], "org.freedesktop.DBus.Mock",
                   "AddProperty", GLib.Variant("(ssv)", (manager[2], "Version", GLib.Variant("s", "48.0")))))
        time.sleep(1)

    def _start_shell(self):
        with open(self.home / "shell.log", "ab") as log:
            self.server = self.spawn(
                ["gnome-shell", "--headless", "--wayland-display=wayland-gnome",
                 *["--virtual-monitor", f"{WIDTH}x{MONITOR_HEIGHT}"] * (2 if self.screens else 1)],
                stdout=log, stderr=log)
        self.connection = self._connected(self.environment["DBUS_SESSION_BUS_ADDRESS"])
        wait_until("a shell that lets itself be asked", self._is_up, 60)
        self.ask("Main.overview.hide(); Main.messageTray.getSources().forEach(source => source.destroy()); " + HANDS + "1")
        self.environment["WAYLAND_DISPLAY"] = "wayland-gnome"
        self.environment["DISPLAY"] = self.ask("imports.gi.GLib.getenv('DISPLAY')")
        self.environment["XAUTHORITY"] = str(next(pathlib.Path(self.environment["XDG_RUNTIME_DIR"]).glob(
            ".mutter-Xwaylandauth.*")))
        # As a session does it, for the services that the bus starts.
        self.connection.call_sync(
            "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "UpdateActivationEnvironment",
            GLib.Variant("(a{ss})", (self.environment,)), None, Gio.DBusCallFlags.NONE, -1, None)
        wait_until("a desktop without the overview", lambda: not self.ask("Main.overview.visible"))
        if self.screens:
            self.switch_output(on=True)
            # It tells X11 programs of the scale.
            self.spawn(["/usr/libexec/gsd-xsettings"])
            wait_until("a scale for X11 programs", lambda: b"Xft.dpi" in self.call(["xprop", "-root", "RESOURCE_MANAGER"]))

    @staticmethod
    def _connected(address):
        return Gio.DBusConnection.new_for_address_sync(
            address, Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION, None,
            None)

    def switch_output(self, on):
        """The output with the notch, on the left of the other one."""
        name = "org.gnome.Mutter.DisplayConfig"
        display = self.connection, name, "/" + name.replace(".", "/"), name
        serial, monitors, *_ = answered(*display, "GetCurrentState")
        modes = {monitor[0]: modes[0][0] for monitor, modes, _ in monitors}
        places = {OUTPUT: 0, OTHER_OUTPUT: int(WIDTH / self.output_scale)} if on else {OTHER_OUTPUT: 0}
        wanted = [(left, 0, self.output_scale, 0, left == 0, [(output, modes[output], {})])
                  for output, left in places.items()]
        # Until the session ends, so that nobody is asked whether to keep it.
        if not answered(*display, "ApplyMonitorsConfig",
                        GLib.Variant("(uua(iiduba(ssa{sv}))a{sv})", (serial, 1, wanted, {}))):
            raise StageMissed(f"the outputs {places}")

    def lock(self):
        """What is to be seen then, as soon as somebody moves the pointer."""
        answered(self.connection, "org.gnome.ScreenSaver", "/org/gnome/ScreenSaver", "org.gnome.ScreenSaver", "Lock")
        wait_until("a locked session", lambda: self.ask("Main.screenShield.locked"))

    def _is_up(self):
        if self.server.poll() is not None:
            raise StageMissed(f"a shell that runs:\n{self.shell_log()}")
        try:
            return self.ask("Main.layoutManager._startingUp") is False
        except StageMissed:
            return False

    def shell_log(self):
        return (self.home / "shell.log").read_text(errors="replace")

    def window(self, title):
        """Left and top edge, width and height of what stands on the screen."""
        return self.ask("global.get_window_actors().map(actor => actor.meta_window).filter(window => window.title == "
                        f"{json.dumps(title)} && window.get_frame_rect().width > 0).map(window => window.get_frame_rect())"
                        ".map(it => [it.x, it.y, it.width, it.height])[0] ?? null")

    def button(self, label):
        """The middle of a button of the shell's notification that stands, once the pointer is over that."""
        return self.ask("(() => { const walk = actor => actor.label === " + json.dumps(label) + " ? [actor] : "
                        "actor.get_children().flatMap(walk); const button = walk(Main.messageTray)[0]; if (!button) "
                        "return null; const [x, y] = button.get_transformed_position(); "
                        "return [x + button.width / 2, y + button.height / 2]; })()")

    # What a person does and sees.

    def ask(self, code):
        """Has the shell evaluate that."""
        try:
            (good, answer) = self.connection.call_sync(
                "org.gnome.Shell", "/org/gnome/Shell", "org.gnome.Shell", "Eval", GLib.Variant("(s)", (code,)),
                GLib.VariantType("(bs)"), Gio.DBusCallFlags.NONE, 20000, None).unpack()
        except GLib.Error as error:
            raise StageMissed(f"a shell that answers: {error.message}") from None
        if not good:
            raise StageMissed(f"{code!r} evaluated: {answer}")
        return json.loads(answer) if answer else None

    def move(self, x, y):
        """As a mouse does, by so much each time: of a hand that has places alone the shell tells its X server too little to
        know that the pointer has left a window."""
        for steps in range(5, 0, -1):
            self._move_on(x, y, steps)
            time.sleep(0.03)
        # A busy shell tells where the pointer was some time ago.
        wait_until(f"the pointer at {x}, {y}", lambda: time.sleep(0.1) or not self._move_on(x, y))

    def _move_on(self, x, y, steps=1):
        """The first of so many steps; whether there was one to go."""
        from_x, from_y = self.ask("global.get_pointer()")[:2]
        if max(abs(x - from_x), abs(y - from_y)) < 1.5:
            return False
        self.ask("global.hand.notify_relative_motion(imports.gi.GLib.get_monotonic_time(), "
                 f"{(x - from_x) / steps}, {(y - from_y) / steps})")
        return True

    def click(self, x, y):
        self.move(x, y)
        for state in (1, 0):
            self.ask(f"global.hand.notify_button(imports.gi.GLib.get_monotonic_time(), 1, {state})")
            time.sleep(0.05)

    def chord(self, *keys):
        for state, order in ((1, keys), (0, reversed(keys))):
            for key in order:
                self.ask(f"global.keys.notify_key(imports.gi.GLib.get_monotonic_time(), {KEYS[key]}, {state})")
                time.sleep(0.02)

    def key(self, *keys):
        for key in keys:
            self.chord(key)

    def type(self, text):
        self.key(*text)

    def picture(self, path):
        self.connection.call_sync(
            "org.gnome.Shell.Screenshot", "/org/gnome/Shell/Screenshot", "org.gnome.Shell.Screenshot", "Screenshot",
            GLib.Variant("(bbs)", (False, False, str(path))), None, Gio.DBusCallFlags.NONE, 20000, None)
        return path

    def _pixels(self, x, y, width, height):
        """Of a part of the screen, three bytes each."""
        path = self.home / "part.png"
        self.connection.call_sync(
            "org.gnome.Shell.Screenshot", "/org/gnome/Shell/Screenshot", "org.gnome.Shell.Screenshot", "ScreenshotArea",
            GLib.Variant("(iiiibs)", (int(x), int(y), width, height, False, str(path))), None, Gio.DBusCallFlags.NONE,
            20000, None)
        return self.call(["convert", str(path), "-alpha", "off", "-depth", "8", "rgb:-"])
