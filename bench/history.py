"""A full history: 200 texts and 20 screenshots of 1920 x 1080, for Nimbarrow and for its peer."""

import datetime
import json
import uuid

TEXTS = 200
SCREENSHOTS = 20
ENTRIES = TEXTS + SCREENSHOTS


def screenshots(desktop, count):
    """PNG files of 1920 x 1080 with flat areas, text and gradients in them, each another moment of a test film."""
    folder = desktop.home / "screenshots"
    folder.mkdir(exist_ok=True)
    desktop.call(["ffmpeg", "-y", "-loglevel", "error", "-f", "lavfi", "-i", "testsrc2=size=1920x1080:rate=1",
                  "-frames:v", str(count), str(folder / "%02d.png")])
    return sorted(folder.iterdir())


def text(number):
    return f"Entry {number}: the quick brown fox jumps over the lazy dog"


def fill_ours(desktop):
    """Writes the history as the program would have left it."""
    images = desktop.history_folder / "images"
    images.mkdir(parents=True, exist_ok=True)
    start = datetime.datetime(2026, 3, 1, 9, 0, tzinfo=datetime.timezone.utc)
    items = []

    def add(kind, **content):
        moment = start + datetime.timedelta(seconds=len(items))
        items.append({"id": str(uuid.uuid4()).upper(), "kind": kind, "isScreenshot": kind == "image", "pinned": False,
                      "createdAt": moment.strftime("%Y-%m-%dT%H:%M:%SZ"), **content})

    for number in range(TEXTS):
        add("text", text=text(number))
    for screenshot in screenshots(desktop, SCREENSHOTS):
        add("image", imagePath=str(screenshot.rename(images / screenshot.name)))
    (desktop.history_folder / "index.json").write_text(json.dumps(items[::-1]))


def fill_peer(desktop, peer):
    peer.evaluate(f"for (var i = 0; i < {TEXTS}; ++i) write(0, 'text/plain', {json.dumps(text('#'))}.replace('#', i))")
    for screenshot in screenshots(desktop, SCREENSHOTS):
        peer.write_image(screenshot)
    if peer.count() != ENTRIES:
        raise RuntimeError(f"The peer has {peer.count()} entries instead of {ENTRIES}.")
