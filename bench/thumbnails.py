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
FORMATS = ("png", "jpeg", "tiff")


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


def costs(command, result):
    """Medians, after a first run that only warms the files."""
    taken = []
    for _ in range(RUNS + 1):
        taken.append(cost(command))
        result.unlink()
    return [statistics.median(figures) for figures in zip(*taken[1:])]


def measure(build):
    with tempfile.TemporaryDirectory() as folder:
        result = pathlib.Path(folder) / "thumbnail.png"
        for name in FORMATS:
            picture = pathlib.Path(folder) / f"photo.{name}"
            make_picture(picture)
            ours = costs([str(build / "bench" / "Thumbnail"), str(picture), str(result)], result)
            theirs = costs(["vipsthumbnail", str(picture), "-s", str(SIDE), "-o", str(result)], result)
            what = f"thumbnail of {WIDTH} x {HEIGHT} {name.upper()}"
            yield Row(f"{what}, time", "ms", ours[0] * 1000, theirs[0] * 1000, ratio_at_most=1)
            yield Row(f"{what}, peak memory", "MB", ours[1], theirs[1], ratio_at_most=1)
