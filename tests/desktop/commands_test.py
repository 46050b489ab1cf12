"""commands_test.py PROGRAM PEERS: each option, the desktop file's actions and the calls of the message bus, against a
running and a not running program, on a private desktop where the program is installed for its person alone."""

import os
import pathlib
import subprocess
import sys

from desktop import Desktop, NOTCH_MIDDLE, reached, run_test, StageMissed, wait_until
from flow import Flow

OPTIONS = ("--help", "--version", "--toggle", "--notch", "--doctor", "--quit")
PACKAGING = pathlib.Path(__file__).resolve().parents[2] / "packaging"
LAUNCHER = """
import sys
from gi.repository import Gio, GLib
Gio.DesktopAppInfo.new(sys.argv[1]).launch_action(sys.argv[2])
try:
    Gio.bus_get_sync(Gio.BusType.SESSION).call_sync("ua.tessak.Nimbarrow", "/", "org.freedesktop.DBus.Peer", "Ping", None,
                                                    None, Gio.DBusCallFlags.NONE, 10000)
except GLib.Error:
    pass
"""
NAME, PATH = "ua.tessak.Nimbarrow", "/ua/tessak/Nimbarrow"


class Installed(Desktop):
    def __init__(self, program, activatable=True, **options):
        super().__init__(program, settings={"language": "en"}, **options)
        (self.home / "bin").mkdir()
        (self.home / "bin" / "nimbarrow").symlink_to(self.program)
        self.environment["PATH"] = f"{self.home / 'bin'}:{self.environment['PATH']}"
        self.entry = self.place("applications/ua.tessak.Nimbarrow.desktop", "ua.tessak.Nimbarrow.desktop",
                                "" if activatable else "DBusActivatable=true")
        if activatable:
            self.place("dbus-1/services/ua.tessak.Nimbarrow.service", "ua.tessak.Nimbarrow.service.in",
                       "@CMAKE_INSTALL_FULL_BINDIR@", str(self.home / "bin"))

    def place(self, name, source, old, new=""):
        path = self.home / "data" / name
        path.parent.mkdir(parents=True, exist_ok=True)
        text = (PACKAGING / source).read_text()
        path.write_text(text.replace(old, new) if old else text)
        return path

    def __exit__(self, *rest):
        for process in self.pids():
            os.kill(process, 15)
        super().__exit__(*rest)

    def pids(self):
        """The copies that run, whoever has started them."""
        found = []
        for folder in pathlib.Path("/proc").glob("[0-9]*"):
            try:
                if (os.path.samefile(folder / "exe", self.program)
                        and f"HOME={self.home}/" in (folder / "environ").read_bytes().decode(errors="replace")):
                    found.append(int(folder.name))
            except OSError:
                pass
        return found

    def action(self, name):
        """As a menu does, which stays: the bus forgets what somebody has asked who is gone when it is started."""
        subprocess.run([sys.executable, "-c", LAUNCHER, self.entry.name, name], env=self.environment, cwd=self.home, timeout=30)

    def ask(self, method, *arguments):
        return subprocess.run(["gdbus", "call", "--session", "--dest", NAME, "--object-path", PATH, "--method",
                               f"org.freedesktop.Application.{method}", *arguments], env=self.environment, timeout=30,
                              capture_output=True, text=True)

    def wait_started(self):
        wait_until("the program", lambda: len(self.pids()) == 1)

    def wait_ended(self, *others):
        wait_until("the end of the program", lambda: set(self.pids()) <= set(others))


class CommandsFlow(Flow):
    def __init__(self, desktop):
        super().__init__(desktop, reached)

    def answers_without_a_display(self):
        desktop = self.desktop
        nothing = {"DISPLAY": "", "DBUS_SESSION_BUS_ADDRESS": "unix:path=/nonexistent"}
        told, mistake = desktop.run("--help", **nothing)
        for option in OPTIONS:
            if not all(option in text for text in (told, manual(), completion())):
                raise StageMissed(f"{option} in the help, the manual page and the completion")
        if mistake or desktop.run("--version", **nothing)[0].split() != ["Nimbarrow", version()]:
            raise StageMissed("the version and nothing else")
        for words in (["--unknown"], ["-platform", "minimal"], ["file"], ["--toggle", "--quit"], ["--quit=now"], ["--notch", "32"]):
            told, mistake = desktop.run(*words, status=2, **nothing)
            if told or "--help" not in mistake:
                raise StageMissed(f"a hint after {words}, not {told}{mistake}")
        for words in (["--quit"], ["--toggle"], ["--notch", "none"]):
            if len(desktop.run(*words, status=1, **nothing)[1].splitlines()) != 1:
                raise StageMissed(f"one line after {words} without a display")

        if "nothing works here" not in desktop.run("--doctor", status=1, **nothing)[0]:
            raise StageMissed("why nothing works without a display")

    def doctor(self):
        """Asked without a display it is the running program that tells."""
        desktop = self.desktop
        self.expect({"notch": "works", "hot key": "works", "calendar": "needs your consent"}, desktop.run("--doctor"))
        # A Nimbarrow of somebody else's has the key, and no notch.
        other = {name: str(desktop.home / "other") for name in ("XDG_DATA_HOME", "XDG_RUNTIME_DIR")}
        other["DBUS_SESSION_BUS_ADDRESS"] = "unix:path=/nonexistent"
        (desktop.home / "other").mkdir(mode=0o700)
        holder = subprocess.Popen([desktop.program], env={**desktop.environment, **other}, stderr=subprocess.DEVNULL)
        self.expect({"hot key": "not here"}, wait_until(
            "a key that is taken", lambda: (told := desktop.run("--doctor"))[0].count("not here") == 1 and told))
        desktop.start()
        self.expect({"panel": "works", "hot key": "not here"}, desktop.run("--doctor", DISPLAY=""))
        desktop.run("--quit")
        desktop.wait_ended(holder.pid)
        self.expect({"notch": "not here", "player": "not here"}, desktop.run("--doctor", **other))
        holder.terminate()
        holder.wait()

    def expect(self, states, told):
        rows = {line[2:21].strip(): line[21:41].strip() for line in told[0].splitlines()[1:]}
        if told[1] or len(rows) != 9 or not states.items() <= rows.items():
            raise StageMissed(f"a table with {states}, not\n{told[0]}{told[1]}")

    def options(self):
        desktop = self.desktop
        desktop.run("--quit", status=1)
        desktop.spawn([desktop.program, "--toggle"])
        self.wait_open()
        self.close_by_key()
        desktop.run("--toggle")
        self.wait_open()
        desktop.run("--toggle")
        self.wait_closed()
        for _ in range(2):
            desktop.run()
            self.wait_open()
        self.close_by_key()
        desktop.copy_texts("copied before the end")
        desktop.run("--quit")
        desktop.wait_ended()

    def starts_at_once(self):
        """Of three the first that has the data stays, and is asked by the others before it can answer."""
        desktop = self.desktop
        copies = [desktop.spawn([desktop.program]) for _ in range(3)]
        wait_until("the end of all but one", lambda: [copy.poll() for copy in copies].count(0) == 2)
        self.wait_open()
        self.close_by_key()
        desktop.run("--quit")
        wait_until("the end of that one", lambda: [copy.poll() for copy in copies].count(0) == 3)

    def bus(self):
        desktop = self.desktop
        # Nobody runs: the bus starts it.
        if desktop.ask("Activate", "{}").returncode:
            raise StageMissed("a program that the bus starts")
        self.wait_open()
        if "no action" not in desktop.ask("ActivateAction", "shout", "[]", "{}").stderr:
            raise StageMissed("an error for an action that there is not")
        desktop.ask("Activate", "{}")
        desktop.ask("ActivateAction", "toggle", "[]", "{'desktop-startup-id': <'one'>}")
        self.wait_closed()
        desktop.ask("Open", "['file:///etc/hostname']", "{}")
        self.wait_open()
        desktop.ask("ActivateAction", "quit", "[]", "{}")
        desktop.wait_ended()

    def menu(self, start, over_the_bus):
        """The bus asks for the panel what it starts; a command alone does not."""
        desktop = self.desktop
        desktop.spawn(start)
        desktop.wait_started()
        if over_the_bus:
            self.wait_open()
            desktop.action("toggle")
            self.wait_closed()
        wait_until("the notch", lambda: desktop.is_black(NOTCH_MIDDLE, 16))
        # One that runs, and one that has to be started for it.
        for _ in range(2):
            desktop.action("toggle")
            self.wait_open()
            desktop.action("quit")
            desktop.wait_ended()
        reached(f"{start[0]}, {'over the bus' if over_the_bus else 'by its command'}")


def manual():
    return (PACKAGING / "nimbarrow.1").read_text().replace("\\", "")


def completion():
    return (PACKAGING / "nimbarrow.bash").read_text()


def version():
    lists = (PACKAGING.parent / "CMakeLists.txt").read_text()
    return lists.split("project(nimbarrow VERSION ", 1)[1].split()[0]


def play(desktop):
    flow = CommandsFlow(desktop)
    for stage in (flow.answers_without_a_display, flow.doctor, flow.options, flow.starts_at_once, flow.bus):
        stage()
        reached(stage.__name__)
    flow.menu(["gtk-launch", NAME], over_the_bus=True)


def play_by_command(desktop):
    CommandsFlow(desktop).menu(["gtk-launch", NAME], over_the_bus=False)


if __name__ == "__main__":
    sys.exit(run_test(sys.argv[1], play, kind=Installed)
             or run_test(sys.argv[1], play_by_command, kind=Installed, activatable=False))
