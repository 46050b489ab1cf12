"""flow_test.py PROGRAM PEERS: the main flow, end to end, on a private desktop."""

import sys

from desktop import Desktop, StageMissed
from flow import DragSource, Editor, Flow


def main(program, peers):
    with Desktop(program, settings={"pasteOnClick": True, "language": "en"}) as desktop:
        try:
            flow = Flow(desktop, lambda stage: print("reached:", stage, flush=True))
            editor = Editor(desktop)
            desktop.start()
            flow.copies()
            flow.hovers()
            flow.click_pastes(editor)
            flow.leaves()
            flow.keyboard(editor)
            source = DragSource(desktop, peers)
            flow.drops(source)
            source.close()
            flow.restarts()
            desktop.check_log()
        except StageMissed as missed:
            print("missed:", missed, "\n" + desktop.log(), file=sys.stderr)
            return 1
    return 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
