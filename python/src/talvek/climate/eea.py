"""Exports of the European Environment Agency's air quality portal.

Two forms: the columns of the Parquet files, written as CSV (Samplingpoint, Pollutant, Start, End, Value, Unit, AggType,
Validity, ...), and the older CSV (SamplingPoint, AirPollutant, AveragingTime, Concentration, UnitOfMeasurement,
DatetimeBegin, DatetimeEnd, Validity, ...). Concentrations are in ug/m3, of the gas, in both.
"""

from __future__ import annotations

import csv
import io
import os

import numpy as np

from talvek.climate.series import Path, Series, join_series, make_series, read_text
from talvek.errors import ClimateError

# Names of the columns in the two forms, in lower case.
_PARQUET = {
    "point": "samplingpoint",
    "pollutant": "pollutant",
    "averaging": "aggtype",
    "value": "value",
    "unit": "unit",
    "start": "start",
    "end": "end",
    "validity": "validity",
}
_OLDER = {
    "point": "samplingpoint",
    "pollutant": "airpollutant",
    "averaging": "averagingtime",
    "value": "concentration",
    "unit": "unitofmeasurement",
    "start": "datetimebegin",
    "end": "datetimeend",
    "validity": "validity",
}

# By number in the agency's vocabulary, and by name.
_POLLUTANTS = {"1": "so2_ug_m3", "so2": "so2_ug_m3", "8": "no2_ug_m3", "no2": "no2_ug_m3"}
_UNITS = {"ug.m-3", "ug/m3", "µg/m3", "μg/m3", "µg.m-3"}
_AVERAGING_TIMES = ("hour", "day", "var")
_LOWEST_VALUE = -90.0


def _columns_of(header: list[str], path: Path) -> dict[str, int]:
    """Where the columns stand."""
    places = {name.strip().lower(): place for place, name in enumerate(header)}
    for form in (_PARQUET, _OLDER):
        if all(name in places for name in form.values()):
            return {meaning: places[name] for meaning, name in form.items()}
    missing = sorted(set(_PARQUET.values()) - set(places))
    raise ClimateError(f"{os.fspath(path)}: not an export of the EEA: no column {', '.join(missing)}")


def _time(text: str) -> np.datetime64:
    """A time in the agency's fixed zone, whose offset some files state behind it."""
    return np.datetime64(text.strip()[:19].replace(" ", "T"), "s")


class _Rows:
    """The rows of one file, by pollutant and averaging time."""

    def __init__(self, path: Path) -> None:
        self.path = os.fspath(path)
        self.values: dict[tuple[str, str], list[tuple[np.datetime64, np.datetime64, float]]] = {}
        self.dropped: dict[tuple[str, str], int] = {}
        self.points: set[str] = set()

    def take(self, cells: dict[str, str], line: int, point: str | None) -> None:
        """Take one row if it is of a pollutant and a sampling point that is asked for."""
        column = _POLLUTANTS.get(cells["pollutant"].strip().rpartition("/")[2].lower())
        if column is None or (point is not None and cells["point"] != point):
            return
        self.points.add(cells["point"])
        key = (column, cells["averaging"].strip().lower())
        text = cells["value"].strip()
        if int(cells["validity"]) < 1 or not text or float(text) <= _LOWEST_VALUE:
            self.dropped[key] = self.dropped.get(key, 0) + 1
            return
        if cells["unit"].strip().lower() not in _UNITS:
            raise ClimateError(f"{self.path}: line {line}: concentrations in {cells['unit']}, not in ug/m3")
        self.values.setdefault(key, []).append((_time(cells["start"]), _time(cells["end"]), float(text)))

    def series(self) -> list[Series]:
        """One series a pollutant, of the shortest averaging time that the file has for it."""
        if len(self.points) > 1:
            raise ClimateError(
                f"{self.path}: several sampling points: {', '.join(sorted(self.points))}; choose one with point="
            )
        found = []
        for column in dict.fromkeys(column for column, _ in self.values):
            averaging = next((time for time in _AVERAGING_TIMES if (column, time) in self.values), None)
            if averaging is None:
                raise ClimateError(f"{self.path}: {column} is averaged over neither hours nor days")
            key = (column, averaging)
            found.append(make_series(column, self.values[key], self.dropped.get(key, 0), self.path))
        return found


def _read_file(path: Path, point: str | None) -> list[Series]:
    reader = csv.reader(io.StringIO(read_text(path)))
    columns = _columns_of(next(reader, []), path)
    rows = _Rows(path)
    for row in reader:
        if len(row) <= max(columns.values()):
            continue
        try:
            rows.take({meaning: row[place] for meaning, place in columns.items()}, reader.line_num, point)
        except ValueError as error:
            raise ClimateError(f"{rows.path}: line {reader.line_num}: {error}") from error
    return rows.series()


def read_eea(*paths: Path, point: str | None = None) -> list[Series]:
    """Read exports of the European Environment Agency.

    Parameters
    ----------
    *paths
        Files of one sampling point each, or of several with `point`; those of one pollutant are joined.
    point : str, optional
        The sampling point to take.

    Returns
    -------
    list of Series
        SO2 and NO2 in ug/m3. Rows whose validity is below 1 are dropped, values below the detection limit are kept.
    """
    return join_series([series for path in paths for series in _read_file(path, point)])
