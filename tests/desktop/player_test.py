"""player_test.py PROGRAM PEERS: a real player on a private desktop, seen and played from the surface."""

import json
import sys
import time

from desktop import run_test, StageMissed, wait_until
from flow import Flow, SURFACE_LEFT
from screen_reader import PYTHON, ScreenReader


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
        wait_until("the player on the bus", lambda: self._get("PlaybackStatus", quiet=True) == "Playing", 20)

    def _track(self, title, artist, color, seconds):
        folder = self.desktop.home / "home" / title
        folder.mkdir()
        make = ["ffmpeg", "-loglevel", "error", "-f", "lavfi"]
        self.desktop.call([*make, "-i", "anullsrc=r=8000", "-t", str(seconds), "-metadata", f"title={title}",
                           "-metadata", f"artist={artist}", str(folder / "track.mp3")])
        self.desktop.call([*make, "-i", f"color={color}:s=300x300", "-frames:v", "1", str(folder / "cover.jpg")])
        return folder / "track.mp3"

    def _get(self, name, quiet=False):
        script = ("import dbus, json; bus = dbus.SessionBus(); player = bus.get_object('org.mpris.MediaPlayer2.mpv', "
                  "'/org/mpris/MediaPlayer2'); print(json.dumps(dbus.Interface(player, "
                  f"'org.freedesktop.DBus.Properties').Get('org.mpris.MediaPlayer2.Player', '{name}'), default=str))")
        try:
            return json.loads(self.desktop.call([PYTHON, "-c", script]))
        except Exception:
            if quiet:
                return None
            raise

    def status(self):
        return self._get("PlaybackStatus")

    def title(self):
        return self._get("Metadata")["xesam:title"]

    def position(self):
        return self._get("Position") / 1e6

    def volume(self):
        return self._get("Volume")

    def quit(self):
        self.process.terminate()
        self.process.wait(10)


class PlayerFlow(Flow):
    def __init__(self, desktop):
        super().__init__(desktop)
        self.reader = ScreenReader(desktop)

    def wait_told(self, what, text):
        wait_until(f"{what} told ({self.reader.texts()})", lambda: text in self.reader.texts(), 10)

    def press(self, name):
        if not self.reader.press("push button", name):
            raise StageMissed(f"a press of {name!r}, among {self.reader.controls()}")

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
        bar = next(node for node in self.reader.nodes() if node["role"] == "progress bar")
        left, top, width, height = bar["extents"]
        self.desktop.xdotool("mousemove", left + width // 4, top + height // 2)
        time.sleep(0.1)
        self.desktop.xdotool("mousedown", 1)
        self.desktop.xdotool("mousemove", left + width // 3, top + height // 2)
        self.desktop.xdotool("mousemove", left + width // 2, top + height // 2)
        time.sleep(0.1)
        self.desktop.xdotool("mouseup", 1)
        wait_until("the middle of the track", lambda: 90 < player.position() < 115)

    def sets_volume(self, player):
        self.press("Volume")
        slider = wait_until("the slider", lambda: next(
            (node for node in self.reader.nodes() if node["role"] == "slider"), None))
        left, top, width, height = slider["extents"]
        self.desktop.xdotool("mousemove", left + width // 2, top + height // 2)
        time.sleep(0.1)
        self.desktop.xdotool("mousedown", 1)
        self.desktop.xdotool("mousemove", left + width // 2, top + height - 2)
        time.sleep(0.1)
        self.desktop.xdotool("mouseup", 1)
        wait_until("a silent player", lambda: player.volume() < 0.2)

    def notices_a_track(self, player):
        self.leave()
        self.desktop.call([PYTHON, "-c", "import dbus; dbus.Interface(dbus.SessionBus().get_object("
                           "'org.mpris.MediaPlayer2.mpv', '/org/mpris/MediaPlayer2'), "
                           "'org.mpris.MediaPlayer2.Player').Next()"])
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
