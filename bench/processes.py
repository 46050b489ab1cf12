"""What the system tells of a process and of those that it has started."""

import pathlib
import re


def family(pid):
    """The process and all that live of those that come from it."""
    if _words(pid)[0] == "Z":
        return []
    pids = [pid]
    for children in pathlib.Path(f"/proc/{pid}/task").glob("*/children"):
        for child in children.read_text().split():
            pids += family(int(child))
    return pids


def _words(pid):
    # The name stands in brackets before them and may have spaces in it.
    return pathlib.Path(f"/proc/{pid}/stat").read_text().rpartition(")")[2].split()


def name(pid):
    return pathlib.Path(f"/proc/{pid}/comm").read_text().strip()


def memory(pid):
    """Proportional set size in MB: what is shared with others counts by its share."""
    rollup = pathlib.Path(f"/proc/{pid}/smaps_rollup").read_text()
    return int(re.search(r"^Pss:\s+(\d+)", rollup, re.MULTILINE)[1]) / 1024


def processor_ticks(pid):
    """Hundredths of a second that all threads have worked."""
    words = _words(pid)
    return int(words[11]) + int(words[12])


def sleeps(pid):
    """For each thread how often it has gone to sleep by its own will, so how often something has woken it."""
    return {status.parent.name: int(re.search(r"^voluntary_ctxt_switches:\s+(\d+)", status.read_text(), re.MULTILINE)[1])
            for status in pathlib.Path(f"/proc/{pid}/task").glob("*/status")}
