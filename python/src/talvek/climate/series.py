"""Measurements of one quantity, each over a time of its own."""

from __future__ import annotations

import dataclasses
import os
from collections.abc import Iterable, Sequence

import numpy as np
from numpy.typing import NDArray

from talvek.errors import ClimateError

Times = NDArray[np.datetime64]
Path = str | os.PathLike[str]


@dataclasses.dataclass(frozen=True)
class Series:
    """Measurements in the order of time; no two overlap.

    Attributes
    ----------
    column : str
        What is measured and in which unit, as the column of an epoch table: ``so2_ug_m3``, ``so2_ugS_m3``,
        ``so2_ppb``, ``no2_ug_m3``, ``no2_ugN_m3``, ``no2_ppb``, ``rain_mm`` or ``ph``.
    start, end : array of datetime64[s], shape (N,)
        When each measurement began and ended.
    value : array of float64, shape (N,)
        In the unit of the column.
    dropped : int
        How many rows were left out because they were marked as missing or not valid.
    source : str
        The files.
    """

    column: str
    start: Times
    end: Times
    value: NDArray[np.float64]
    dropped: int
    source: str

    @property
    def quantity(self) -> str:
        """``so2``, ``no2``, ``rain`` or ``ph``."""
        return self.column.partition("_")[0]


def make_series(
    column: str, rows: Iterable[tuple[np.datetime64, np.datetime64, float]], dropped: int, source: str
) -> Series:
    """A series of rows of start, end and value in any order; rows that are repeated as they are count once."""
    ordered = sorted(set(rows))
    start = np.array([row[0] for row in ordered], dtype="datetime64[s]")
    end = np.array([row[1] for row in ordered], dtype="datetime64[s]")
    value = np.array([row[2] for row in ordered], dtype=np.float64)
    if np.any(end <= start):
        worst = int(np.argmax(end <= start))
        raise ClimateError(f"{source}: a measurement of {column} ends at {end[worst]}, not after its start")
    overlaps = np.flatnonzero(start[1:] < end[:-1])
    if overlaps.size:
        raise ClimateError(
            f"{source}: two measurements of {column} for {start[overlaps[0] + 1]}; "
            "give one station, one sampling point and one averaging time"
        )
    return Series(column, start, end, value, dropped, source)


def join_series(parts: Sequence[Series]) -> list[Series]:
    """One series a column of those of several files."""
    joined = []
    for column in dict.fromkeys(part.column for part in parts):
        same = [part for part in parts if part.column == column]
        rows = [row for part in same for row in zip(part.start, part.end, part.value.tolist(), strict=True)]
        dropped = sum(part.dropped for part in same)
        joined.append(make_series(column, rows, dropped, ", ".join(part.source for part in same)))
    return joined


def read_text(path: Path) -> str:
    """The text of a file in UTF-8 or UTF-16, with or without a byte order mark, or else in Latin-1."""
    with open(path, "rb") as file:
        data = file.read()
    if data[:2] in (b"\xff\xfe", b"\xfe\xff"):
        return data.decode("utf-16")
    try:
        return data.decode("utf-8-sig")
    except UnicodeDecodeError:
        return data.decode("latin-1")
