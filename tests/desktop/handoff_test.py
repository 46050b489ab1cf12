"""handoff_test.py PROGRAM PEERS: entries opened, dragged out and looked at, on a private desktop."""

import sys

from desktop import Desktop, StageMissed
from handoff import DropTarget, Handler, Handoff


def main(program, peers):
    with Desktop(program, settings={"language": "en"}) as desktop:
        try:
            flow = Handoff(desktop, lambda stage: print("reached:", stage, flush=True))
            handler = Handler(desktop)
            flow.looks_at_the_desktop()
            desktop.start()
            flow.fills()
            flow.double_clicks(handler)
            flow.leave()
            target = DropTarget(desktop, peers)
            flow.drags_out(target)
            flow.previews()
            flow.carries_after_a_preview(target)
            target.close()
            desktop.check_log()
        except StageMissed as missed:
            print("missed:", missed, "\n" + desktop.log(), file=sys.stderr)
            return 1
    return 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
