"""Files of the database EBAS, in the format NASA Ames 1001.

Units are those that the file states with each variable: gases of the precipitation networks stand in ug S/m3 and
ug N/m3, which count the sulphur and the nitrogen alone.
"""

from __future__ import annotations

import dataclasses
import os

import numpy as np

from talvek.climate.series import Path, Series, join_series, make_series, read_text
from talvek.errors import ClimateError

_COLUMNS = {
    ("sulphur_dioxide", "ug s/m3"): "so2_ugS_m3",
    ("sulphur_dioxide", "ug/m3"): "so2_ug_m3",
    ("sulphur_dioxide", "nmol/mol"): "so2_ppb",
    ("nitrogen_dioxide", "ug n/m3"): "no2_ugN_m3",
    ("nitrogen_dioxide", "ug/m3"): "no2_ug_m3",
    ("nitrogen_dioxide", "nmol/mol"): "no2_ppb",
    ("precipitation_amount", "mm"): "rain_mm",
    ("ph", "ph units"): "ph",
}
_QUANTITIES = {quantity for quantity, _ in _COLUMNS}

# Flags of values that are hidden, missing or not valid; with flag 100 a value is valid whatever the others say.
_INVALID_FLAGS = frozenset(
    [251, 256, 259, 260, 277, 278, 389, 391, 393, 395, 451, 452, 456, 459, 460, 471, 477, 478, 530, 533, 534, 540, 541]
    + [549, 565, 566, 567, 568, 578, 591, 593, 599, 620, 635, 641, 646, 658, 659, 663, 664, 666, 669, 670, 677, 681]
    + [682, 683, 684, 685, 699, 701, 750, 783, 784, 799, 890, 899, 900, 980, 990, 999]
)
_OVERRIDING_FLAG = 100


@dataclasses.dataclass(frozen=True)
class _Variable:
    """A column of the file: what it holds, and where its flags stand."""

    place: int
    column: str
    scale: float
    missing: float
    flags: int | None


@dataclasses.dataclass(frozen=True)
class _Header:
    reference: np.datetime64
    variables: list[_Variable]
    length: int


def _metadata(lines: list[str]) -> dict[str, str]:
    """The "name: value" lines at the end of the header."""
    pairs = (line.partition(":") for line in lines)
    return {name.strip().lower(): value.strip() for name, colon, value in pairs if colon}


def _column_of(name: str, metadata: dict[str, str], path: str) -> str | None:
    """The column of an epoch table for a line that names a variable; none for what no table has."""
    parts = [part.strip() for part in name.split(",")]
    component, unit = parts[0].lower(), parts[1].lower() if len(parts) > 1 else ""
    statistics = [part.partition("=")[2].lower() for part in parts[2:] if part.lower().startswith("statistics")]
    if component == "value":
        component, unit = metadata.get("component", "").lower(), metadata.get("unit", unit).lower()
    if component not in _QUANTITIES or (statistics and statistics[0] != "arithmetic mean"):
        return None
    if (component, unit) not in _COLUMNS:
        raise ClimateError(f"{path}: {component} in {unit or 'no unit'}, which no epoch table takes")
    return _COLUMNS[component, unit]


def _read_header(lines: list[str], path: str) -> _Header:
    first = lines[0].split() if lines else []
    if len(first) != 2 or first[1] != "1001" or not first[0].isdigit() or len(lines) < int(first[0]):
        raise ClimateError(f"{path}: not a NASA Ames 1001 file")
    length = int(first[0])
    date = [int(part) for part in lines[6].split()[:3]]
    reference = np.datetime64(f"{date[0]:04}-{date[1]:02}-{date[2]:02}T00:00:00", "s")
    count = int(lines[9])
    scales = [float(scale) for scale in lines[10].split()]
    missing = [float(marker) for marker in lines[11].split()]
    names = lines[12 : 12 + count]
    metadata = _metadata(lines[12 + count : length])
    flag_places = [place for place, name in enumerate(names) if name.strip().lower().startswith("numflag")]
    variables = []
    for place, name in enumerate(names):
        column = _column_of(name, metadata, path)
        if column is not None:
            flags = next((flag + 1 for flag in flag_places if flag > place), None)
            variables.append(_Variable(place + 1, column, scales[place], missing[place], flags))
    return _Header(reference, variables, length)


def _is_valid(flags: str) -> bool:
    """Whether flags, three digits each behind the decimal point, leave a value valid."""
    digits = flags.partition(".")[2]
    numbers = {int(digits[i : i + 3].ljust(3, "0")) for i in range(0, len(digits), 3)}
    return _OVERRIDING_FLAG in numbers or not numbers & _INVALID_FLAGS


def _read_file(path: Path) -> list[Series]:
    name = os.fspath(path)
    lines = read_text(path).splitlines()
    try:
        header = _read_header(lines, name)
        return [_read_variable(lines[header.length :], header, variable, name) for variable in header.variables]
    except (ValueError, IndexError) as error:
        raise ClimateError(f"{name}: not a NASA Ames 1001 file as EBAS writes them: {error}") from error


def _read_variable(lines: list[str], header: _Header, variable: _Variable, path: str) -> Series:
    rows = []
    dropped = 0
    for line in lines:
        cells = line.split()
        if not cells:
            continue
        value = float(cells[variable.place])
        has_bad_flags = variable.flags is not None and not _is_valid(cells[variable.flags])
        if value == variable.missing or not np.isfinite(value) or has_bad_flags:
            dropped += 1
            continue
        start, end = (header.reference + np.timedelta64(round(float(days) * 86400), "s") for days in cells[:2])
        rows.append((start, end, value * variable.scale))
    return make_series(variable.column, rows, dropped, path)


def read_ebas(*paths: Path) -> list[Series]:
    """Read files of EBAS.

    Parameters
    ----------
    *paths
        Files of one station; those with the same quantity in the same unit are joined.

    Returns
    -------
    list of Series
        What the files hold of SO2 (ug S/m3, ug/m3, nmol/mol), NO2 (ug N/m3, ug/m3, nmol/mol), precipitation (mm) and
        pH. Values whose flags say that they are missing, hidden or invalid are dropped.
    """
    return join_series([series for path in paths for series in _read_file(path)])
