"""Time and peak memory of a process that makes a thumbnail, beside one of a library made for it."""

import os
import pathlib
import statistics
import subprocess
import tempfile
import time

from table import Row

WIDTH, HEIGHT, SIDE = 4000, 3000, 200
RUNS = 9
# The noise is what a camera's picture has, and what makes it hard to pack.
PHOTO = (f"gradients=size={WIDTH}x{HEIGHT}:seed=7:nb_colors=6:duration=1", "noise=alls=12:allf=u")
FORMATS = ("png", "jpeg")


def make_picture(path):
    source, grain = PHOTO
    subprocess.run(["ffmpeg", "-y", "-loglevel", "error", "-f", "lavfi", "-i", source, "-vf", grain, "-frames:v", "1",
                    "-pix_fmt", "yuvj420p" if path.suffix == ".jpeg" else "rgb24", "-q:v", "3", str(path)], check=True)


def cost(command):
    """Seconds and MB. The memory cannot be less than this process has, which is little."""
    start = time.monotonic()
    process = subprocess.Popen(command)
    _, status, usage = os.wait4(process.pid, 0)
    taken = time.monotonic() - start
    process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode:
        raise RuntimeError(f"{command[0]} failed with {process.returncode}.")
    return taken, usage.ru_maxrss / 1024


def costs(commands, result):
    """Medians for each command. They take turns, so that whatever else the machine does meets all of them; a first
    turn only warms the files."""
    taken = [[] for _ in commands]
    for turn in range(RUNS + 1):
        for command, figures in zip(commands, taken):
            figure = cost(command)
            result.unlink()
            if turn:
                figures.append(figure)
    return [[statistics.median(column) for column in zip(*figures)] for figures in taken]


def measure(build):
    with tempfile.TemporaryDirectory() as folder:
        result = pathlib.Path(folder) / "thumbnail.png"
        for name in FORMATS:
            picture = pathlib.Path(folder) / f"photo.{name}"
            make_picture(picture)
            ours, theirs = costs([[str(build / "bench" / "Thumbnail"), str(picture), str(result)],
                                  ["vipsthumbnail", str(picture), "-s", str(SIDE), "-o", str(result)]], result)
            what = f"thumbnail of {WIDTH} x {HEIGHT} {name.upper()}"
            yield Row(f"{what}, time", "ms", ours[0] * 1000, theirs[0] * 1000, ratio_at_most=1)
            yield Row(f"{what}, peak memory", "MB", ours[1], theirs[1], ratio_at_most=1)
