"""Pictures of what KWin shows: for each line "X Y WIDTH HEIGHT", in points, the three bytes of each pixel."""

import os
import sys

import dbus

NAME = "org.kde.KWin.ScreenShot2"


def picture(screen, x, y, width, height):
    read, write = os.pipe()
    answer = screen.CaptureArea(x, y, dbus.UInt32(width), dbus.UInt32(height), dbus.Dictionary({}, signature="sv"),
                                dbus.types.UnixFd(write), dbus_interface=NAME)
    os.close(write)
    with os.fdopen(read, "rb") as pipe:
        data = pipe.read()
    rows = b"".join(data[row * answer["stride"]:row * answer["stride"] + 4 * width] for row in range(height))
    pixels = bytearray(3 * width * height)
    for colour in range(3):
        pixels[colour::3] = rows[2 - colour::4]
    return pixels


screen = dbus.SessionBus().get_object("org.kde.KWin", "/org/kde/KWin/ScreenShot2")
for line in sys.stdin:
    sys.stdout.buffer.write(picture(screen, *map(int, line.split())))
    sys.stdout.buffer.flush()
