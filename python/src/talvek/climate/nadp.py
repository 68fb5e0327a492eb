"""Weekly exports of the National Atmospheric Deposition Program's National Trends Network.

CSV with the columns siteID, dateOn, dateOff, ph, ppt or subppt (both in mm), valcode and invalcode; negative numbers
stand for missing ones.
"""

from __future__ import annotations

import csv
import datetime
import io
import os

import numpy as np

from talvek.climate.series import Path, Series, join_series, make_series, read_text
from talvek.errors import ClimateError

_TIME_FORMATS = ("%Y-%m-%d %H:%M", "%Y-%m-%d %H:%M:%S", "%Y-%m-%d", "%m/%d/%Y %H:%M", "%m/%d/%Y %H:%M:%S", "%m/%d/%Y")


def _time(text: str) -> np.datetime64:
    for form in _TIME_FORMATS:
        try:
            return np.datetime64(datetime.datetime.strptime(text.strip(), form), "s")
        except ValueError:
            continue
    raise ValueError(f"{text} is not a date")


def _number(cells: dict[str, str], name: str) -> float | None:
    text = cells.get(name, "").strip()
    return float(text) if text and float(text) >= 0 else None


def _rain(cells: dict[str, str]) -> float | None:
    """What the rain gauge caught, or else what the sampler did."""
    gauge = _number(cells, "ppt")
    return gauge if gauge is not None else _number(cells, "subppt")


def _ph(cells: dict[str, str]) -> float | None:
    """The laboratory's pH, where the sample is valid."""
    return None if cells.get("invalcode", "").strip() else _number(cells, "ph")


def _read_file(path: Path, site: str | None) -> list[Series]:
    name = os.fspath(path)
    reader = csv.reader(io.StringIO(read_text(path)))
    header = [cell.strip().lower() for cell in next(reader, [])]
    if not {"siteid", "dateon", "dateoff", "ph"} <= set(header) or not {"ppt", "subppt"} & set(header):
        raise ClimateError(
            f"{name}: not a weekly export of the NADP: no column siteID, dateOn, dateOff, ph, ppt or subppt"
        )
    readers = {"rain_mm": _rain, "ph": _ph}
    rows: dict[str, list[tuple[np.datetime64, np.datetime64, float]]] = {column: [] for column in readers}
    dropped = dict.fromkeys(readers, 0)
    sites = set()
    for row in reader:
        cells = dict(zip(header, row, strict=False))
        if not row or (site is not None and cells["siteid"].strip() != site):
            continue
        sites.add(cells["siteid"].strip())
        try:
            start, end = _time(cells["dateon"]), _time(cells["dateoff"])
            for column, read in readers.items():
                value = read(cells)
                if value is None:
                    dropped[column] += 1
                else:
                    rows[column].append((start, end, value))
        except (KeyError, ValueError) as error:
            raise ClimateError(f"{name}: line {reader.line_num}: {error}") from error
    if len(sites) > 1:
        raise ClimateError(f"{name}: several sites: {', '.join(sorted(sites))}; choose one with site=")
    return [make_series(column, rows[column], dropped[column], name) for column in readers]


def read_nadp(*paths: Path, site: str | None = None) -> list[Series]:
    """Read weekly exports of the NADP's National Trends Network.

    Parameters
    ----------
    *paths
        Files of one site, or of several with `site`; they are joined.
    site : str, optional
        The site to take.

    Returns
    -------
    list of Series
        Rain in mm, from the gauge or else from the sampler, and the laboratory's pH. The pH of samples with an
        invalidation code is dropped; their rain, which the gauge measures, is kept.
    """
    return join_series([series for path in paths for series in _read_file(path, site)])
