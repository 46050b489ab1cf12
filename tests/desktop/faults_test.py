"""faults_test.py PROGRAM DRAG_SOURCE: what goes wrong around the program on a real desktop must not end it, slow
it down or lose what was copied."""

import os
import pathlib
import signal
import subprocess
import sys
import time

import dbus
import dbus.bus
from desktop import Desktop, run_test, StageMissed, wait_until, NOTCH_MIDDLE, NOTCH_LEFT
from flow import Flow, SURFACE_LEFT


def second_instance(desktop):
    _, told = desktop.run()
    if desktop.nimbarrow.poll() is not None:
        raise StageMissed("a second copy that ends by itself beside the first")
    # Without a bus nobody can ask the first for its surface.
    if not desktop.bus:
        if "does not answer" not in told:
            raise StageMissed(f"a line about that, not {told}")
        return
    flow = Flow(desktop)
    flow.wait_open()
    flow.close_by_key()


def private_memory(desktop):
    """A crash hands no handler what was copied: that is what a core limit of one byte says to the kernel."""
    limits = pathlib.Path(f"/proc/{desktop.nimbarrow.pid}/limits").read_text()
    core = next(line.split() for line in limits.splitlines() if line.startswith("Max core file size"))
    # Nobody may ask for more than the hard limit.
    if core[4] != min("1", core[5]):
        raise StageMissed(f"a core limit of one byte, not {core}")


def kill(desktop):
    """What was copied shortly before a kill is there after the restart, and files are private."""
    desktop.copy_texts("copied before the kill")
    desktop.stop(signal.SIGKILL)
    desktop.start()
    desktop.wait_for_text("copied before the kill", 1)
    for path in (desktop.history_folder, *desktop.history_folder.rglob("*")):
        if "display-panels" not in path.parts and path.stat().st_mode & 0o077:
            raise StageMissed(f"a private {path.name}")


def copy_and_end(desktop, text, end):
    """What was copied the moment before the program is ended is kept, nothing of the program stays, and it ends well."""
    desktop.copy(text)
    Flow(desktop).wait_for_notice(text, pause=0)
    program = desktop.nimbarrow
    children = desktop.children_of(program.pid)
    end()
    try:
        status = program.wait(8)
    except subprocess.TimeoutExpired:
        raise StageMissed(f"the end after {text}") from None
    if status != 0:
        raise StageMissed(f"an end with 0 after {text}, not {status}")
    desktop.wait_for_text(text, 0)
    wait_until("the end of the program's own processes", lambda: not any(map(desktop.runs, children)), 5)


def terminated(desktop):
    copy_and_end(desktop, "copied before a signal", desktop.nimbarrow.terminate)


def lost_display(desktop):
    """The X server dies under the program."""
    copy_and_end(desktop, "copied before the display went", desktop.kill_server)
    # In Qt's words.
    desktop.usual_log += ["The X11 connection broke", "X connection to"]


def start_beside(program, what, freeze):
    """What is silent around the program holds up its start no longer than a person notices."""
    with Desktop(program, settings={"language": "en"}) as desktop:
        frozen = freeze(desktop)
        try:
            for pid in frozen:
                os.kill(pid, signal.SIGSTOP)
            # Whoever waits for an answer waits for at least 25 s.
            desktop.start(patience=10, QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1")
        finally:
            for pid in frozen:
                os.kill(pid, signal.SIGCONT)
    print("survived: a start beside", what, flush=True)


def accessibility_launcher(desktop):
    """The process that serves the accessibility bus's address, started as a screen reader starts it."""
    bus = dbus.bus.BusConnection(desktop.environment["DBUS_SESSION_BUS_ADDRESS"])
    bus.call_blocking("org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress", "", ())
    return bus.call_blocking(dbus.BUS_DAEMON_NAME, dbus.BUS_DAEMON_PATH, dbus.BUS_DAEMON_IFACE,
                             "GetConnectionUnixProcessID", "s", ("org.a11y.Bus",))


def pipes(desktop):
    """Every file that is read at the start, as a pipe that nobody writes to."""
    for path in ("config/Nimbarrow.conf", "config/autostart/ua.tessak.Nimbarrow.desktop", "data/Nimbarrow/index.json",
                 "data/applications/program.desktop", "data/Nimbarrow/display-panels/eDP-1.json"):
        path = desktop.home / path
        path.parent.mkdir(parents=True, exist_ok=True)
        path.unlink(missing_ok=True)
        os.mkfifo(path)
    return []


def silent_starts(program):
    start_beside(program, "a frozen bus", lambda desktop: [desktop.bus_daemon.pid])
    start_beside(program, "pipes and a frozen accessibility service",
                 lambda desktop: pipes(desktop) + [accessibility_launcher(desktop)])
    start_beside(program, "a frozen accessibility bus",
                 lambda desktop: desktop.children_of(accessibility_launcher(desktop)))


def no_display(program):
    """Where the program cannot work it says so in one line."""
    for environment in ({"DISPLAY": ":1999"}, {"DISPLAY": ""}, {"QT_QPA_PLATFORM": "offscreen"},
                        {"QT_QPA_PLATFORM": "wayland"}):
        run = subprocess.run([program], env={**os.environ, "DISPLAY": ":1999", **environment}, timeout=30,
                             capture_output=True, text=True)
        if run.returncode != 1 or len(run.stderr.splitlines()) != 1:
            raise StageMissed(f"one line and status 1 with {environment}, not {run.returncode} and:\n{run.stderr}")
        print("survived: no_display", environment, flush=True)


def uncovered_corners(desktop):
    """Beside the outline the desktop shows through, with and without a compositor."""
    flow = Flow(desktop)
    flow.open_by_pointer()
    if desktop.is_black(SURFACE_LEFT + 1, 250) or desktop.is_black(SURFACE_LEFT + 4, 100):
        raise StageMissed("the desktop beside the surface's outline")
    if not desktop.is_black(SURFACE_LEFT + 20, 100):
        raise StageMissed("the surface itself")
    flow.leave()
    if desktop.is_black(NOTCH_LEFT - 6, 10) or not desktop.is_black(NOTCH_MIDDLE, 20):
        raise StageMissed("the notch and nothing else at rest")


def body_stays_whole(desktop):
    """Where rows light up and fade again, the desktop does not shine through."""
    for number in range(4):
        desktop.copy(f"row {number}")
        time.sleep(0.1)
    flow = Flow(desktop)
    flow.wait_for_notice("the last row")
    flow.wait_notice_gone()
    flow.open_by_pointer()
    for y in (130, 160, 100, 130):
        desktop.move(640, y)
        time.sleep(0.3)
    # Right of the texts and left of the buttons there is nothing but black and the light of a row.
    if desktop.brightest(880, 75, 230) > 60:
        raise StageMissed("a body without holes")
    flow.leave()


def play(program, *stages, **options):
    def play_all(desktop):
        desktop.start()
        for stage in stages:
            stage(desktop)
            print("survived:", stage.__name__, options or "", flush=True)

    return run_test(program, play_all, settings={"language": "en"}, **options) == 0


def main(program, _peers):
    everything = play(program, second_instance, uncovered_corners, body_stays_whole, private_memory, kill, terminated)
    bare = play(program, second_instance, uncovered_corners, kill, compositor=False, bus=False)
    end = play(program, lost_display)
    try:
        no_display(program)
        silent_starts(program)
    except StageMissed as missed:
        print("missed:", missed, file=sys.stderr)
        return 1
    return 0 if everything and bare and end else 1


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
