"""What the closed surface costs: memory before and after an opening, time of the processor, and wakings.

The settings are those of a person who has just installed it; only the limit of the history is raised to hold what is
measured. All processes of each program count."""

import re
import shutil
import time

from desktop import Desktop, NOTCH_MIDDLE
from flow import BELOW_THE_SURFACE
from history import fill_ours, fill_peer
from peer import Peer
import processes
from table import Row

# Long enough for what either puts off after its start.
SETTLING = 45
IDLE = 60


def use_own_libraries(desktop, *programs):
    """What else runs on this machine with the same libraries would take over a part of their memory."""
    folder = desktop.home / "libraries"
    folder.mkdir()
    for program in programs:
        for library in re.findall(r"=> (/\S+)", desktop.call(["ldd", program]).decode()):
            # The C library is everybody's.
            if not re.search(r"/lib(c|m)\.so", library):
                shutil.copy(library, folder)
    desktop.environment["LD_LIBRARY_PATH"] = str(folder)


def memory(pid):
    family = processes.family(pid)
    if not family:
        raise RuntimeError("The program has ended.")
    return sum(map(processes.memory, family))


def idle(pids):
    """For each process its name, its ticks of the processor over a minute, and its wakings a second."""
    def now():
        return {pid: (processes.processor_ticks(pid), processes.sleeps(pid)) for pid in pids}

    before = now()
    time.sleep(IDLE)
    for pid, (ticks, sleeps) in now().items():
        # Of a thread that has ended meanwhile nothing is known, and it has been woken no more.
        wakings = sum(count - before[pid][1].get(thread, 0) for thread, count in sleeps.items())
        yield processes.name(pid), ticks - before[pid][0], wakings / IDLE


def measure_program(pid, open_once):
    """Memory before, what idleness costs, memory after."""
    time.sleep(SETTLING)
    never_opened = memory(pid)
    idleness = list(idle(processes.family(pid)))
    open_once()
    time.sleep(IDLE)
    return never_opened, idleness, memory(pid)


def measure(build):
    def open_ours():
        desktop.move(NOTCH_MIDDLE, 10)
        time.sleep(3)
        desktop.move(*BELOW_THE_SURFACE)

    def open_peer():
        desktop.call(["copyq", "show"])
        time.sleep(3)
        desktop.call(["copyq", "hide"])

    with Desktop(build / "nimbarrow", settings={"historyLimit": 1000}) as desktop:
        use_own_libraries(desktop, desktop.program, shutil.which("copyq"))
        fill_ours(desktop)
        desktop.start()
        ours = measure_program(desktop.nimbarrow.pid, open_ours)
        desktop.stop()
        with Peer(desktop) as peer:
            fill_peer(desktop, peer)
        # What filling has left in its memory is not what the history takes.
        with Peer(desktop) as peer:
            theirs = measure_program(peer.server.pid, open_peer)
    return [Row("memory (PSS), never opened", "MB", ours[0], theirs[0], ratio_at_most=0.6),
            Row("memory (PSS), a minute after an opening", "MB", ours[2], theirs[2], ratio_at_most=0.6),
            *idle_rows(ours[1], theirs[1])]


def idle_rows(ours, theirs):
    # Only the sums of the two compare; each of our processes has to keep still by itself.
    peer_ticks, peer_wakings = (sum(process[place] for process in theirs) for place in (1, 2))
    for name, ticks, wakings in ours:
        yield Row(f"idle minute, {name}: processor", "ticks", ticks, peer_ticks, exactly=0)
        yield Row(f"idle minute, {name}: wakings", "/s", wakings, peer_wakings, at_most=0.1)
