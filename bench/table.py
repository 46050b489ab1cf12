"""The one table: what each measure prints and keeps."""

import dataclasses

# A 60 Hz screen shows what is ready within it.
FRAME_MS = 1000 / 60


@dataclasses.dataclass
class Row:
    """One figure. `baseline` is the peer's, or what the same took in a smaller case; None where nothing compares. Where
    several bounds are given, all have to be met; without any, the figure is only told."""

    what: str
    unit: str
    ours: float
    baseline: float | None = None
    ratio_at_most: float | None = None
    at_most: float | None = None
    exactly: float | None = None

    @property
    def ratio(self):
        return self.ours / self.baseline if self.baseline else None

    @property
    def bounds(self):
        told = []
        if self.ratio_at_most is not None:
            told.append(f"<= {self.ratio_at_most:g} x")
        if self.at_most is not None:
            told.append(f"<= {self.at_most:.4g} {self.unit}")
        if self.exactly is not None:
            told.append(f"{self.exactly:g}")
        return ", ".join(told)

    @property
    def reached(self):
        """None where there is nothing to reach."""
        met = []
        if self.ratio_at_most is not None:
            met.append(self.ratio is not None and self.ratio <= self.ratio_at_most)
        if self.at_most is not None:
            met.append(self.ours <= self.at_most)
        if self.exactly is not None:
            met.append(self.ours == self.exactly)
        return all(met) if met else None


HEADER = ("what", "nimbarrow", "compared", "ratio", "to reach", "reached")
LINE = "{:<58}{:>14}{:>14}{:>8}  {:<22}{:>7}"


def _figure(value, unit):
    return "" if value is None else f"{value:.{0 if value >= 1000 else 3 if value < 1 else 1}f} {unit}".strip()


def line(row):
    ratio = "" if row.ratio is None else f"{row.ratio:.2f}"
    reached = {None: "", True: "yes", False: "NO"}[row.reached]
    return LINE.format(row.what, _figure(row.ours, row.unit), _figure(row.baseline, row.unit), ratio, row.bounds,
                       reached).rstrip()


def header():
    return LINE.format(*HEADER)


def as_json(row):
    return {**dataclasses.asdict(row), "ratio": row.ratio, "reached": row.reached}
