"""One row an epoch of series of measurements."""

from __future__ import annotations

import csv
import dataclasses
from collections.abc import Sequence

import numpy as np
from numpy.typing import NDArray

from talvek.climate.series import Path, Series, Times
from talvek.errors import ClimateError

_ENOUGH = 0.75
_STEPS = {"year": "datetime64[Y]", "month": "datetime64[M]"}


@dataclasses.dataclass(frozen=True)
class ClimateTable:
    """A table of epochs, with what is known of every cell.

    Attributes
    ----------
    start, end : array of datetime64[D], shape (E,)
        The first and the last day of every epoch.
    columns : dict of str to array of float64, shape (E,)
        The values, by the names of an epoch table's columns; not a number where nothing was measured.
    coverage : dict of str to array of float64, shape (E,)
        The share of the epoch's time that the measurements cover; for pH the share of the epoch's rain.
    warnings : tuple of str
        Every cell whose coverage is below 75 %.
    """

    start: Times
    end: Times
    columns: dict[str, NDArray[np.float64]]
    coverage: dict[str, NDArray[np.float64]]
    warnings: tuple[str, ...]

    def __len__(self) -> int:
        """The number of epochs."""
        return len(self.start)

    @property
    def days(self) -> NDArray[np.int64]:
        """The length of every epoch in days, shape (E,)."""
        days: NDArray[np.int64] = (self.end - self.start).astype("timedelta64[D]").astype(np.int64) + 1
        return days

    def note(self, epoch: int) -> str:
        """What the row of an epoch says of poorly covered values."""
        poor = [f"{name} {share[epoch]:.0%} covered" for name, share in self.coverage.items() if share[epoch] < _ENOUGH]
        return "; ".join(poor)

    def write(self, path: Path) -> None:
        """Write the table for ``talvek run --epoch-table``. Cells without a measurement stay empty."""
        with open(path, "w", newline="", encoding="utf-8") as file:
            writer = csv.writer(file, lineterminator="\n")
            writer.writerow(["start", "end", *self.columns, "note"])
            for i in range(len(self)):
                values = [repr(float(column[i])) if np.isfinite(column[i]) else "" for column in self.columns.values()]
                writer.writerow([self.start[i], self.end[i], *values, self.note(i)])


def _bounds(series: Sequence[Series], period: str | Sequence[str]) -> Times:
    """The first days of the epochs, and the day after the last one."""
    if not isinstance(period, str):
        bounds = np.array(list(period), dtype="datetime64[D]")
        if len(bounds) < 2 or np.any(np.diff(bounds) <= np.timedelta64(0, "D")):
            raise ClimateError("the bounds of epochs have to be two days or more, one after the other")
        return bounds
    if period not in _STEPS:
        raise ClimateError(f"epochs of a {period}: only year and month are known; give their first days instead")
    # A measurement that begins on the last evening of a year does not make that year an epoch.
    first = min((one.start[0] + (one.end[0] - one.start[0]) // 2) for one in series).astype(_STEPS[period])
    last = max((one.start[-1] + (one.end[-1] - one.start[-1]) // 2) for one in series).astype(_STEPS[period])
    return np.arange(first, last + 2).astype("datetime64[D]")


def _shares(one: Series, begin: np.datetime64, end: np.datetime64) -> NDArray[np.float64]:
    """The seconds of every measurement that lie in an epoch, shape (N,)."""
    overlap = np.minimum(one.end, end) - np.maximum(one.start, begin)
    seconds: NDArray[np.float64] = np.maximum(overlap.astype(np.float64), 0.0)
    return seconds


def _lengths(one: Series) -> NDArray[np.float64]:
    lengths: NDArray[np.float64] = (one.end - one.start).astype(np.float64)
    return lengths


def _volumes(ph: Series, rain: Series, begin: np.datetime64, end: np.datetime64) -> NDArray[np.float64]:
    """The rain that fell in an epoch during every sample of a pH, shape (N,)."""
    fallen = np.concatenate([[0.0], np.cumsum(rain.value * _shares(rain, begin, end) / _lengths(rain))])
    edges = np.append(rain.start, rain.end[-1:])

    def until(times: Times) -> NDArray[np.float64]:
        """The rain that has fallen by each time."""
        place = np.clip(np.searchsorted(edges, times, side="right") - 1, 0, len(rain.start) - 1)
        passed = (np.clip(times, rain.start[place], rain.end[place]) - rain.start[place]).astype(np.float64)
        result: NDArray[np.float64] = (
            fallen[place] + (fallen[place + 1] - fallen[place]) * passed / _lengths(rain)[place]
        )
        return result

    return until(np.minimum(ph.end, end)) - until(np.minimum(np.maximum(ph.start, begin), np.minimum(ph.end, end)))


def _cell(one: Series, rain: Series | None, begin: np.datetime64, end: np.datetime64) -> tuple[float, float]:
    """The value of an epoch and its coverage."""
    seconds = _shares(one, begin, end)
    covered = float(np.sum(seconds)) / float((end - begin).astype("timedelta64[s]").astype(np.float64))
    if one.quantity == "ph":
        if rain is None:
            raise ClimateError(f"{one.source}: a mean pH needs the rain that each sample stands for")
        volumes = np.maximum(_volumes(one, rain, begin, end), 0.0)
        sampled = float(np.sum(volumes))
        total = float(np.sum(rain.value * _shares(rain, begin, end) / _lengths(rain)))
        if sampled <= 0.0:
            return np.nan, 0.0
        return float(-np.log10(np.sum(volumes * 10.0**-one.value) / sampled)), min(sampled / total, 1.0)
    if covered <= 0.0:
        return np.nan, 0.0
    if one.quantity == "rain":
        return float(np.sum(one.value * seconds / _lengths(one))), covered
    return max(float(np.sum(one.value * seconds) / np.sum(seconds)), 0.0), covered


def _check(series: Sequence[Series]) -> None:
    if not series or any(len(one.value) == 0 for one in series):
        empty = ", ".join(f"{one.column} of {one.source}" for one in series if len(one.value) == 0)
        raise ClimateError(f"no valid measurement{': ' + empty if empty else ''}")
    quantities = [one.quantity for one in series]
    for quantity in quantities:
        if quantities.count(quantity) > 1:
            both = " and ".join(f"{one.column} of {one.source}" for one in series if one.quantity == quantity)
            raise ClimateError(f"two series of {quantity}: {both}; leave one out")


def epoch_table(series: Sequence[Series], period: str | Sequence[str] = "year") -> ClimateTable:
    """Make one row an epoch of measurements.

    Gases are averaged over the time that was measured, rain is summed, and pH is averaged as acidity, 10^-pH, weighted
    by the rain that fell during each sample. A measurement that reaches over the end of an epoch counts in both by
    its time.

    Parameters
    ----------
    series : sequence of Series
        At most one of each quantity.
    period : str or sequence of str
        ``"year"``, ``"month"``, or the first days of the epochs and the day after the last, as ``"1990-01-01"``.

    Returns
    -------
    ClimateTable
        With a warning for every cell that less than 75 % of its epoch stands behind.
    """
    _check(series)
    bounds = _bounds(series, period)
    rain = next((one for one in series if one.quantity == "rain"), None)
    seconds = bounds.astype("datetime64[s]")
    columns, coverage, warnings = {}, {}, []
    for one in series:
        cells = [_cell(one, rain, begin, end) for begin, end in zip(seconds[:-1], seconds[1:], strict=True)]
        columns[one.column] = np.array([cell[0] for cell in cells])
        coverage[one.column] = np.array([cell[1] for cell in cells])
        warnings += [
            f"epoch {i + 1}, from {bounds[i]}: {one.column} is covered to {cell[1]:.0%}, below {_ENOUGH:.0%}"
            for i, cell in enumerate(cells)
            if cell[1] < _ENOUGH
        ]
    last_days = bounds[1:] - np.timedelta64(1, "D")
    return ClimateTable(bounds[:-1], last_days, columns, coverage, tuple(warnings))
