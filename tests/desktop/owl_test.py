"""owl_test.py PROGRAM PEERS: keeping awake from the surface, against a login manager and a screen saver of the test, on a
private desktop."""

import pathlib
import signal
import subprocess
import sys
import time

from desktop import run_test, StageMissed, wait_until
from flow import Flow

PEERS = pathlib.Path(__file__).resolve().parent / "peers"


class Services:
    """What the program asks not to sleep."""

    def __init__(self, desktop):
        self.desktop = desktop
        bus = desktop.spawn(["dbus-daemon", "--session", "--nofork", "--print-address=1"], stdout=subprocess.PIPE)
        desktop.environment["DBUS_SYSTEM_BUS_ADDRESS"] = bus.stdout.readline().decode().strip()
        desktop.spawn([sys.executable, "-m", "dbusmock", "--system", "--template", "logind"])
        self.log = desktop.home / "screen saver"
        self.start_saver()
        wait_until("a login manager", lambda: self.inhibitors() is not None)

    def start_saver(self):
        self.log.write_text("")
        self.saver = self.desktop.spawn([sys.executable, str(PEERS / "screen_saver.py"), str(self.log)])
        self.desktop.call(["gdbus", "wait", "--session", "--timeout", "15", "org.freedesktop.ScreenSaver"])

    def restart_saver(self):
        self.saver.kill()
        self.saver.wait()
        self.start_saver()

    def inhibitors(self):
        """How many keep the computer awake; None while the login manager is not there."""
        run = subprocess.run(
            ["dbus-send", "--bus=" + self.desktop.environment["DBUS_SYSTEM_BUS_ADDRESS"], "--print-reply",
             "--dest=org.freedesktop.login1", "/org/freedesktop/login1",
             "org.freedesktop.login1.Manager.ListInhibitors"], capture_output=True, env=self.desktop.environment)
        return run.stdout.decode().count('"sleep:idle"') if run.returncode == 0 else None

    def counts(self):
        """How many have kept the display on, change by change."""
        return [int(line) for line in self.log.read_text().split()]

    def wait_held(self, what, count):
        wait_until(f"{count} of a type {what} ({self.inhibitors()}, {self.counts()})",
                   lambda: self.inhibitors() == count and (self.counts() or [0])[-1] == count)


class OwlFlow(Flow):
    def press(self, role, name):
        super().press(role, name)
        time.sleep(0.4)

    def choose(self, what):
        self.press("push button", "Keep the computer awake")
        self.press("menu item", what)

    def keeps_awake(self, services):
        self.open_by_pointer()
        self.choose("1 h")
        services.wait_held("after one hour was chosen", 1)
        wait_until("the time left", lambda: {"1:00", "0:59"} & set(self.reader.texts()))
        self.press("push button", "Allow sleep")
        services.wait_held("after it was turned off", 0)
        self.choose("∞")
        services.wait_held("without an end", 1)
        wait_until("no end told", lambda: "∞" in self.reader.texts())
        services.restart_saver()
        services.wait_held("after the screen saver was started again", 1)
        if max(services.counts()) > 1:
            raise StageMissed(f"never two at once: {services.counts()}")
        self.desktop.stop(signal.SIGKILL)
        services.wait_held("after the program was killed", 0)


def play(desktop):
    services = Services(desktop)
    flow = OwlFlow(desktop)
    desktop.start()
    flow.keeps_awake(services)


if __name__ == "__main__":
    sys.exit(run_test(sys.argv[1], play, told=True, settings={"language": "en"}))
