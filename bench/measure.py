"""measure.py BUILD RESULTS [SUBJECT...]: prints one table of what Nimbarrow costs beside a peer or a baseline, and
writes it as JSON. Each program has a private desktop to itself while it is measured."""

import importlib
import json
import os
import pathlib
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
sys.path.insert(0, str(ROOT / "tests" / "desktop"))
import table

# In the order of the table; a module of the same name measures each.
SUBJECTS = ("resting", "copies", "compositor", "starting", "frames", "thumbnails", "scaling", "durability")


def main(build, results_file, *wanted):
    unknown = set(wanted) - set(SUBJECTS)
    if unknown:
        sys.exit(f"There is no {', '.join(sorted(unknown))}. The subjects are: {', '.join(SUBJECTS)}.")
    build = pathlib.Path(build).resolve()
    print(table.header())
    rows = []
    for subject in wanted or SUBJECTS:
        for row in importlib.import_module(subject).measure(build):
            print(table.line(row), flush=True)
            rows.append(row)
    load = os.getloadavg()[2]
    print(f"\n{sum(row.reached is False for row in rows)} of {len(rows)} figures are missed; "
          f"the machine's load was {load:.1f} over the last quarter of an hour.")
    pathlib.Path(results_file).write_text(
        json.dumps({"load": load, "rows": [table.as_json(row) for row in rows]}, indent=2) + "\n")


if __name__ == "__main__":
    main(*sys.argv[1:])
