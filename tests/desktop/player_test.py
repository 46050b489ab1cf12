"""player_test.py PROGRAM PEERS: a real player on a private desktop, seen and played from the surface."""

import sys
import time

import dbus
import dbus.bus
from desktop import run_test, wait_until
from flow import Flow, SURFACE_LEFT

NAME, PLAYER = "org.mpris.MediaPlayer2.mpv", "org.mpris.MediaPlayer2.Player"


class Player:
    """mpv with silent tracks, each with a cover of its own, and without a sound card."""

    TRACKS = (("First Song", "Anna", "red", 200), ("Second Song", "Bohdan", "blue", 100))

    def __init__(self, desktop, tracks=TRACKS, *options):
        self.desktop = desktop
        self.command = ["mpv", "--no-config", "--no-video", "--ao=null", "--idle=yes", "--volume=60", *options,
                        "--script=/etc/mpv/scripts/mpris.so", *(str(self._track(*track)) for track in tracks)]
        self.start()

    def start(self):
        self.process = self.desktop.spawn(self.command)
        # For its own connection, which may end with the bus.
        self.bus = dbus.bus.BusConnection(self.desktop.environment["DBUS_SESSION_BUS_ADDRESS"])
        wait_until("the player on the bus", lambda: self.bus.name_has_owner(NAME) and self.status() == "Playing", 20)

    def _track(self, title, artist, color, seconds):
        folder = self.desktop.home / "home" / title
        folder.mkdir()
        make = ["ffmpeg", "-loglevel", "error", "-f", "lavfi"]
        self.desktop.call([*make, "-i", "anullsrc=r=8000", "-t", str(seconds), "-metadata", f"title={title}",
                           "-metadata", f"artist={artist}", str(folder / "track.mp3")])
        self.desktop.call([*make, "-i", f"color={color}:s=300x300", "-frames:v", "1", str(folder / "cover.jpg")])
        return folder / "track.mp3"

    def _call(self, interface, method, *arguments):
        return self.bus.call_blocking(NAME, "/org/mpris/MediaPlayer2", interface, method, "s" * len(arguments), arguments)

    def _get(self, name):
        return self._call("org.freedesktop.DBus.Properties", "Get", PLAYER, name)

    def status(self):
        return self._get("PlaybackStatus")

    def title(self):
        return self._get("Metadata").get("xesam:title")

    def position(self):
        return self._get("Position") / 1e6

    def volume(self):
        return self._get("Volume")

    def next(self):
        self._call(PLAYER, "Next")

    def quit(self):
        self.process.terminate()
        self.process.wait(10)


class PlayerFlow(Flow):
    def wait_told(self, what, text):
        wait_until(f"{what} told ({self.reader.texts()})", lambda: text in self.reader.texts(), 10)

    def press(self, name):
        super().press("push button", name)

    def drag_within(self, role, *places):
        """With the button down from the first to the last place, in parts of the control's width and height."""
        node = wait_until(f"a {role}", lambda: next((n for n in self.reader.nodes() if n["role"] == role), None))
        left, top, width, height = node["extents"]
        for number, (x, y) in enumerate(places):
            self.desktop.xdotool("mousemove", left + int(width * x), top + int(height * y))
            time.sleep(0.1)
            if number == 0:
                self.desktop.press()
        self.desktop.release()

    def artwork(self):
        return self.desktop.pixel(SURFACE_LEFT + 49, 77)

    def plays(self, player):
        self.open_by_pointer()
        self.wait_told("the track", "First Song")
        self.wait_told("its artist", "Anna")
        wait_until("its red cover", lambda: self.artwork()[0] > 200 and self.artwork()[2] < 60)
        self.press("Play / pause")
        wait_until("a pause", lambda: player.status() == "Paused")
        self.press("Play / pause")
        wait_until("playing again", lambda: player.status() == "Playing")
        # A click in the middle of the bar.
        self.seeks(player)
        self.press("Next")
        wait_until("the next track", lambda: player.title() == "Second Song")
        self.wait_told("the next track", "Second Song")
        wait_until("its blue cover", lambda: self.artwork()[2] > 200 and self.artwork()[0] < 60)
        self.press("Previous")
        self.wait_told("the track before", "First Song")

    def seeks(self, player):
        self.drag_within("progress bar", (1 / 4, 1 / 2), (1 / 3, 1 / 2), (1 / 2, 1 / 2))
        wait_until("the middle of the track", lambda: 90 < player.position() < 115)

    def sets_volume(self, player):
        self.press("Volume")
        self.drag_within("slider", (1 / 2, 1 / 2), (1 / 2, 0.97))
        wait_until("a silent player", lambda: player.volume() < 0.2)

    def notices_a_track(self, player):
        self.leave()
        player.next()
        self.wait_for_notice("a new track")
        self.show("track-notice")
        self.wait_notice_gone()

    def shows_nothing_after(self, player):
        player.quit()
        self.open_by_pointer()
        self.wait_told("that nothing plays", "Nothing playing")
        self.leave()

    def comes_back_after_a_restart_of_the_bus(self, player):
        self.desktop.restart_bus()
        player.start()
        # Of the program's texts nobody can be told any more: what reads them out was on the bus that went.
        self.open_by_pointer()
        wait_until("the red cover again", lambda: self.artwork()[0] > 200 and self.artwork()[2] < 60, 40)
        self.show("bus-restarted")
        self.leave()


def play(desktop):
    flow = PlayerFlow(desktop)
    player = Player(desktop)
    desktop.start()
    flow.plays(player)
    flow.sets_volume(player)
    flow.notices_a_track(player)
    flow.shows_nothing_after(player)
    flow.comes_back_after_a_restart_of_the_bus(player)


if __name__ == "__main__":
    sys.exit(run_test(sys.argv[1], play, told=True, settings={"language": "en", "showCalendar": False}))
