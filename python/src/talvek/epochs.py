"""Epochs and their tables, and the units in which they may be given.

The models take gases in mol/cm3, rain in metres a year of 365 days and acidity as a pH. A table may have columns in
other units, by the names that stand below.
"""

from __future__ import annotations

import csv
import dataclasses
import os
import re
from collections.abc import Callable, Mapping, Sequence
from typing import Any

import numpy as np
from numpy.typing import ArrayLike, NDArray

from talvek.climate.series import read_text
from talvek.climate.table import ClimateTable
from talvek.errors import ParameterError

Doubles = NDArray[np.float64]
Columns = dict[str, NDArray[Any]]

# The program's own constants: standard atomic weights, and what a mol takes up at 25 degrees Celsius and 1 atm, in cm3.
_GRAMS_PER_MOL = {"so2": 32.06 + 2 * 15.999, "no2": 14.007 + 2 * 15.999, "S": 32.06, "N": 14.007}
_MOLAR_VOLUME = 8.314462618 * 298.15 / 101325 * 1e6
_DAYS_PER_YEAR = 365.0

Convert = Callable[[Doubles, Doubles], Doubles]


def _times(factor: float) -> Convert:
    def convert(values: Doubles, days: Doubles) -> Doubles:
        return values * factor

    return convert


def _rain_of_epoch(values: Doubles, days: Doubles) -> Doubles:
    """Rain that fell in an epoch, in mm."""
    return values / 1000.0 * (_DAYS_PER_YEAR / days)


def _micrograms(of: str) -> Convert:
    return _times(1e-12 / _GRAMS_PER_MOL[of])


# What each column stands for in the models, and how its values become the models'.
COLUMNS: dict[str, tuple[str, Convert]] = {
    "so2": ("so2", _times(1.0)),
    "so2_ug_m3": ("so2", _micrograms("so2")),
    "so2_ugS_m3": ("so2", _micrograms("S")),
    "so2_ppb": ("so2", _times(1e-9 / _MOLAR_VOLUME)),
    "no2": ("no2", _times(1.0)),
    "no2_ug_m3": ("no2", _micrograms("no2")),
    "no2_ugN_m3": ("no2", _micrograms("N")),
    "no2_ppb": ("no2", _times(1e-9 / _MOLAR_VOLUME)),
    "rv": ("rv", _times(1.0)),
    "rain_mm_year": ("rv", _times(0.001)),
    "rain_mm": ("rv", _rain_of_epoch),
    "rph": ("rph", _times(1.0)),
    "ph": ("rph", _times(1.0)),
}
_TIME_COLUMNS = ("days", "start", "end", "note")

# The units that a text may state behind its number, and the ends of the columns' names.
_UNITS = {"": "", "ug/m3": "_ug_m3", "ppb": "_ppb", "ugS/m3": "_ugS_m3", "ugN/m3": "_ugN_m3", "mm": "_mm_year"}
_QUANTITY = re.compile(r"\s*([-+0-9.eE]+?)\s*(ug/m3|ugS/m3|ugN/m3|ppb|mm|)\s*")


def quantity_of(column: str) -> str:
    """What a column stands for: ``so2``, ``no2``, ``rv`` or ``rph``."""
    if column not in COLUMNS:
        raise ParameterError(f"unknown column {column}; there are {', '.join((*_TIME_COLUMNS, *COLUMNS))}")
    return COLUMNS[column][0]


def to_model(columns: Mapping[str, ArrayLike], days: ArrayLike) -> dict[str, Doubles]:
    """Values in the models' units.

    Parameters
    ----------
    columns : mapping of str to array_like
        By the names of an epoch table's columns, of shapes that broadcast against `days`.
    days : array_like, shape (E,)
        The lengths of the epochs.

    Returns
    -------
    dict of str to array of float64
        By ``so2``, ``no2``, ``rv`` and ``rph``.
    """
    lengths = np.asarray(days, dtype=np.float64)
    values: dict[str, Doubles] = {}
    for column, given in columns.items():
        quantity = quantity_of(column)
        if quantity in values:
            raise ParameterError(
                f"two columns of {quantity}: {', '.join(c for c in columns if quantity_of(c) == quantity)}"
            )
        values[quantity] = COLUMNS[column][1](np.asarray(given, dtype=np.float64), lengths)
    return values


def parse_quantity(name: str, text: str) -> tuple[str, float]:
    """The column and the number of a text such as ``10ppb``."""
    found = _QUANTITY.fullmatch(text)
    column = {"rv_mm_year": "rain_mm_year"}.get(name + _UNITS[found[2]], name + _UNITS[found[2]]) if found else ""
    try:
        if found is None or column not in COLUMNS:
            raise ValueError
        return column, float(found[1])
    except ValueError:
        raise ParameterError(f"{name}: {text} is not a number with a unit of {name}") from None


@dataclasses.dataclass(frozen=True)
class Epoch:
    """A stretch of time with its air and rain. What is left out takes the program's default.

    Attributes
    ----------
    days
        Its length, in whole days.
    so2, no2
        Concentrations: numbers in mol/cm3, or texts with a unit: ``"26ug/m3"``, ``"13ugS/m3"``, ``"10ppb"``.
    rv
        Rain: metres a year of 365 days, or a text: ``"780mm"``.
    rph
        The rain's acidity, a pH.
    offset, mean, sigma, smooth
        Mode 0 instead: constant offset, mean and spread of the random offset, in mm a day; smoothing, in mm2 a day.
    """

    days: int = 365
    so2: float | str | None = None
    no2: float | str | None = None
    rv: float | str | None = None
    rph: float | None = None
    offset: float | None = None
    mean: float | None = None
    sigma: float | None = None
    smooth: float | None = None

    def value(self, name: str) -> float | None:
        """A value in the model's unit."""
        given = getattr(self, name)
        if isinstance(given, str):
            column, number = parse_quantity(name, given)
            return float(to_model({column: number}, self.days)[name])
        return None if given is None else float(given)


Epochs = Sequence[Epoch] | str | os.PathLike[str] | ClimateTable | Mapping[str, ArrayLike]


@dataclasses.dataclass(frozen=True)
class EpochTable:
    """Epochs in columns.

    Attributes
    ----------
    days : array of float64, shape (E,)
    columns : dict of str to array of float64, shape (E,)
        By the names of the table's columns, in their units.
    end : array of datetime64[D], shape (E,), or None
        The last day of every epoch, where the table has dates.
    """

    days: Doubles
    columns: dict[str, Doubles]
    end: NDArray[np.datetime64] | None = None

    def replaced(self, values: Mapping[str, float]) -> EpochTable:
        """The same with values that hold for every epoch, in place of the columns of the same quantities."""
        gone = {quantity_of(name) for name in values}
        columns = {name: column for name, column in self.columns.items() if quantity_of(name) not in gone}
        columns.update({name: np.full(len(self.days), value) for name, value in values.items()})
        return EpochTable(self.days, columns, self.end)

    def arguments(self) -> list[str]:
        """The options of ``talvek run``."""
        arguments = ["--epochs", str(len(self.days)), "--days", ",".join(str(int(days)) for days in self.days)]
        for name, values in to_model(self.columns, self.days).items():
            arguments.append(f"--{name}={','.join(map(repr, values.tolist()))}")
        return arguments


def _lengths(columns: Columns, name: str) -> tuple[Doubles, NDArray[np.datetime64] | None]:
    """The lengths of epochs, and their last days where they have dates."""
    if "days" in columns:
        return columns["days"].astype(np.float64), None
    if "start" not in columns or "end" not in columns:
        raise ParameterError(f"{name}: no column days, and no columns start and end")
    start, end = (columns[key].astype("datetime64[D]") for key in ("start", "end"))
    days: Doubles = (end - start).astype(np.float64) + 1
    odd = np.flatnonzero(start[1:] != end[:-1] + np.timedelta64(1, "D"))
    if odd.size:
        raise ParameterError(
            f"{name}: epoch {odd[0] + 2} begins on {start[odd[0] + 1]}, not the day after {end[odd[0]]}"
        )
    return days, end


def make_table(columns: Mapping[str, ArrayLike], name: str = "epochs") -> EpochTable:
    """Make a table of columns, as arrays of numbers, dates or texts."""
    arrays: Columns = {column: np.asarray(values) for column, values in columns.items()}
    days, end = _lengths(arrays, name)
    odd = np.flatnonzero(~((days >= 1) & (days <= 1_000_000) & (days == np.floor(days))))
    if odd.size or not len(days):
        raise ParameterError(
            f"{name}: epoch {odd[0] + 1} has {days[odd[0]]:g} days" if odd.size else f"{name}: no epochs"
        )
    values: dict[str, Doubles] = {}
    for column, array in arrays.items():
        if column in _TIME_COLUMNS:
            continue
        values[column] = np.array([_cell(cell, column, i, name) for i, cell in enumerate(array.tolist(), start=1)])
        if values[column].shape != days.shape:
            raise ParameterError(f"{name}: {len(days)} epochs and {len(values[column])} values of {column}")
    to_model(values, days)
    return EpochTable(days, values, end)


def _cell(cell: Any, column: str, epoch: int, name: str) -> float:
    try:
        value = float(cell)
    except ValueError:
        value = np.nan
    if not np.isfinite(value) or value in (-9.0, -999.0):
        raise ParameterError(f"{name}: epoch {epoch}: {column} is {str(cell) or 'empty'}, not a value")
    return value


def _parse(lines: Sequence[str], mark: str) -> tuple[list[str], list[list[str]]]:
    rows = list(csv.reader(lines, delimiter=mark)) or [[]]
    return [column.strip() for column in rows[0]], rows[1:]


def read_table(path: str | os.PathLike[str]) -> EpochTable:
    """Read a table of epochs: CSV with commas, tabs, or semicolons and decimal commas; lines with # are passed over."""
    name = os.fspath(path)
    lines = [line for line in read_text(path).splitlines() if line.strip() and not line.startswith("#")]
    mark = next((mark for mark in (";", "\t") if lines and mark in lines[0]), ",")
    header, rows = _parse(lines, mark)
    if len(set(header)) != len(header):
        raise ParameterError(f"{name}: a column stands there twice")
    for number, row in enumerate(rows, start=1):
        if len(row) != len(header):
            raise ParameterError(f"{name}: epoch {number} has {len(row)} cells under {len(header)} columns")
    comma = "," if mark == ";" else "."
    cells = {
        column: [
            row[place].strip() if column in _TIME_COLUMNS else row[place].strip().replace(comma, ".") for row in rows
        ]
        for place, column in enumerate(header)
    }
    if "days" in cells:
        cells["days"] = [text or "nan" for text in cells["days"]]
    return make_table(cells, name)


def _table_of(epochs: Sequence[Epoch]) -> list[str]:
    """The options for epochs that are given one by one."""
    arguments = ["--epochs", str(len(epochs)), "--days", ",".join(str(epoch.days) for epoch in epochs)]
    for field in dataclasses.fields(Epoch)[1:]:
        values = [epoch.value(field.name) for epoch in epochs]
        if any(value is not None for value in values):
            if None in values:
                raise ParameterError(f"{field.name} is given for some epochs and not for others")
            arguments.append(f"--{field.name}={','.join(map(repr, values))}")
    return arguments


def as_arguments(epochs: Epochs) -> tuple[list[str], NDArray[np.datetime64] | None]:
    """The options of ``talvek run`` for epochs in any form, and their last days where they have dates."""
    if isinstance(epochs, str | os.PathLike):
        table = read_table(epochs)
    elif isinstance(epochs, ClimateTable):
        dates = {"start": epochs.start, "end": epochs.end}
        table = make_table({**dates, **epochs.columns})
    elif isinstance(epochs, Mapping):
        table = make_table(epochs)
    else:
        return _table_of(epochs), None
    return table.arguments(), table.end
