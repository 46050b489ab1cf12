"""What our processes take from the computer at rest, and whether that grows."""

import pathlib
import statistics
import subprocess
import time

QUIET_SECONDS = 5
MEGABYTE = 2 ** 20


# Fewer samples than this in a fifth of a run are easily all a little high or low.
MANY = 4


# How much more the last fifth of a run may have than the first, by what the first has and whether there are many.

def memory(first, many):
    """Memory is what no file backs: what the libraries' files take depends on who else on the computer uses them.
    One sample differs from the next by a megabyte, with the holes in the heap and the lengths of the texts that are
    kept at the moment; medians of many differ by less."""
    return min(max(first / 20, MEGABYTE / 2), 2 * MEGABYTE) if many else 2 * MEGABYTE


def exactly(_first, _many):
    return 0


def wake_ups(_first, _many):
    """The kernel may wake a thread once more in the quiet seconds; a timer left behind does so again and again."""
    return 1


JUDGED = {"anonymous": memory, "descriptors": exactly, "threads": exactly, "wake-ups": wake_ups,
          "windows": exactly, "pixmaps": exactly, "stray images": exactly}


def processes(pid):
    """Ours by their names: the program and the children that it has started."""
    found = {"program": pid}
    for path in pathlib.Path("/proc").glob("[0-9]*/stat"):
        try:
            name, rest = path.read_text().split("(", 1)[1].rsplit(")", 1)
        except (OSError, IndexError):
            continue
        if int(rest.split()[1]) == pid:
            found["adapter" if name.startswith("nimbarrow-medi") else name] = int(path.parent.name)
    return found


def _kilobytes(pid, *names):
    lines = pathlib.Path(f"/proc/{pid}/smaps_rollup").read_text().splitlines()
    values = {line.split(":")[0]: int(line.split()[1]) * 1024 for line in lines[1:]}
    return [values[name] for name in names]


def _switches(pid):
    """Of all threads, how often they have gone to sleep; each time takes a wake-up."""
    total = 0
    for status in pathlib.Path(f"/proc/{pid}/task").glob("*/status"):
        total += next(int(line.split()[1]) for line in status.read_text().splitlines()
                      if line.startswith("voluntary"))
    return total


def _descriptors(pid):
    """What each stands for, without the numbers that tell one socket or pipe from the next."""
    targets = []
    for path in pathlib.Path(f"/proc/{pid}/fd").iterdir():
        try:
            targets.append(str(path.readlink()).split(":[")[0])
        except OSError:
            pass
    return sorted(targets)


def _server_resources(environment):
    """Windows and pixmaps of all programs but those that only look; nothing where that cannot be asked."""
    try:
        report = subprocess.run(["xrestop", "-b", "-m", "1"], env=environment, capture_output=True, timeout=20,
                                text=True).stdout
    except FileNotFoundError:
        return {}
    totals = {"windows": 0, "pixmaps": 0}
    counted = False
    for line in report.splitlines():
        if " ( PID:" in line:
            counted = not any(name in line for name in ("xrestop", "picom", "Openbox"))
        for name in totals:
            if counted and line.strip().startswith(name + " "):
                totals[name] += int(line.split(":")[1])
    return totals


def take(desktop):
    """One sample of everything, by process and name; takes some quiet seconds."""
    ours = processes(desktop.nimbarrow.pid)
    before = {name: _switches(pid) for name, pid in ours.items()}
    time.sleep(QUIET_SECONDS)
    sample = {}
    for name, pid in ours.items():
        after = _switches(pid)
        anonymous, rss, pss = _kilobytes(pid, "Anonymous", "Rss", "Pss")
        descriptors = _descriptors(pid)
        sample[name] = {
            "pid": pid, "anonymous": anonymous, "rss": rss, "pss": pss, "descriptors": len(descriptors),
            "threads": len(list(pathlib.Path(f"/proc/{pid}/task").iterdir())),
            # Threads that have ended meanwhile take their number with them.
            "wake-ups": max(0, after - before[name]), "open": descriptors,
        }
    sample["server"] = _server_resources(desktop.environment)
    items = desktop.history()
    stored = {str(path) for path in (desktop.history_folder / "images").glob("*")}
    sample["history"] = {
        "entries": len(items), "pinned": sum(item["pinned"] for item in items),
        "stray images": len(stored - {item.get("imagePath") for item in items}), "images": len(stored),
        "bytes": sum(path.stat().st_size for path in desktop.history_folder.rglob("*") if path.is_file()),
    }
    return sample


def slope(points):
    """The median of the slopes between any two points, which a few wild ones do not bend."""
    slopes = [(y2 - y1) / (x2 - x1) for i, (x1, y1) in enumerate(points) for x2, y2 in points[i + 1:] if x2 > x1]
    return statistics.median(slopes) if slopes else 0.0


def judge(samples):
    """Of samples with their "minute": every figure as who, what, first and last fifth, growth, margin, flat."""
    verdicts = []
    fifth = min(len(samples), max(2, len(samples) // 5))
    for who in ("program", "adapter", "server", "history"):
        for what, margin in JUDGED.items():
            if what not in samples[0][who]:
                continue
            # A process that is gone or another one now is nothing that can be compared.
            points = [(sample["minute"], sample.get(who, {}).get(what, float("inf"))) for sample in samples]
            first = statistics.median(value for _, value in points[:fifth])
            last = statistics.median(value for _, value in points[-fifth:])
            growth = slope(points) * (points[-1][0] - points[0][0])
            allowed = margin(first, fifth >= MANY)
            verdicts.append({"who": who, "what": what, "first": first, "last": last, "growth": growth,
                             "margin": allowed, "flat": last - first <= allowed and growth <= allowed})
        if "pid" in samples[0][who]:
            pids = {sample.get(who, {}).get("pid") for sample in samples}
            verdicts.append({"who": who, "what": "processes", "first": 1, "last": len(pids), "growth": len(pids) - 1,
                             "margin": 0, "flat": len(pids) == 1})
    return verdicts
