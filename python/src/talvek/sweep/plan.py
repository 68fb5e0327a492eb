"""What is to be run: a plan in TOML, and the table of runs that it makes."""

from __future__ import annotations

import dataclasses
import itertools
import tomllib
from collections.abc import Callable, Mapping
from pathlib import Path
from typing import Any

import numpy as np
from numpy.typing import NDArray

from talvek.epochs import COLUMNS, quantity_of
from talvek.errors import ParameterError

MATERIAL = ("de", "den", "hd", "ks", "ksn", "kr", "mb", "db")
OFFSETS = ("offset", "mean", "sigma", "smooth")
KEEP = ("none", "last", "all")

_SWEEP_KEYS = {"mesh", "mode", "model", "epoch_table", "epochs", "days", "samples", "seed", "keep", "unit"}


@dataclasses.dataclass(frozen=True)
class Vary:
    """How one quantity varies: over given values, or as a distribution that is sampled."""

    name: str
    values: tuple[float, ...] = ()
    quantile: Callable[[NDArray[np.float64]], NDArray[np.float64]] | None = None


@dataclasses.dataclass(frozen=True)
class Plan:
    """A plan as its file states it; paths are absolute."""

    meshes: tuple[Path, ...]
    mode: int
    model: int
    epoch_table: Path | None
    epochs: int
    days: int
    samples: int
    seed: int
    keep: str
    unit: str | None
    vary: tuple[Vary, ...]

    @property
    def names(self) -> tuple[str, ...]:
        """What varies, in the order of the plan."""
        return tuple(vary.name for vary in self.vary)


def _lognormal(name: str, median: float, sigma: float) -> Vary:
    from scipy.special import ndtri

    if median <= 0 or sigma < 0:
        raise ParameterError(
            f"[vary.{name}]: lognormal takes a median above 0 and a sigma of the logarithm of at least 0"
        )

    def quantile(share: NDArray[np.float64]) -> NDArray[np.float64]:
        values: NDArray[np.float64] = median * np.exp(sigma * ndtri(share))
        return values

    return Vary(name, quantile=quantile)


def _uniform(name: str, low: float, high: float) -> Vary:
    if not low <= high:
        raise ParameterError(f"[vary.{name}]: uniform takes the lower bound first")
    return Vary(name, quantile=lambda share: low + (high - low) * share)


def _read_vary(name: str, table: Any, mode: int) -> Vary:
    allowed = (*MATERIAL, *COLUMNS) if mode != 0 else OFFSETS
    if name not in allowed:
        raise ParameterError(f"[vary.{name}]: in mode {mode} one of {', '.join(allowed)} can vary")
    kinds = {"values", "lognormal", "uniform"} & set(table) if isinstance(table, dict) else set()
    if len(kinds) != 1 or len(table) != 1:
        raise ParameterError(f"[vary.{name}]: one of values = [...], lognormal = [median, sigma], uniform = [a, b]")
    [kind] = kinds
    numbers = table[kind]
    if not isinstance(numbers, list) or not numbers or not all(isinstance(n, int | float) for n in numbers):
        raise ParameterError(f"[vary.{name}]: {kind} takes numbers in brackets")
    if kind == "values":
        return Vary(name, values=tuple(float(n) for n in numbers))
    if len(numbers) != 2:
        raise ParameterError(f"[vary.{name}]: {kind} takes two numbers")
    return (_lognormal if kind == "lognormal" else _uniform)(name, float(numbers[0]), float(numbers[1]))


def _check_quantities(names: tuple[str, ...]) -> None:
    columns = [name for name in names if name in COLUMNS]
    for quantity in {quantity_of(name) for name in columns}:
        both = [name for name in columns if quantity_of(name) == quantity]
        if len(both) > 1:
            raise ParameterError(f"[vary.{both[0]}] and [vary.{both[1]}] are both {quantity}")


def parse_plan(text: str, folder: Path) -> Plan:
    """Read a plan in TOML; its paths are relative to `folder`."""
    try:
        return make_plan(tomllib.loads(text), folder)
    except tomllib.TOMLDecodeError as error:
        raise ParameterError(f"not a plan in TOML: {error}") from error


def make_plan(content: Mapping[str, Any], folder: Path) -> Plan:
    """Make a plan of the content of its file; its paths are relative to `folder`."""
    sweep = content.get("sweep", {})
    unknown = sorted((set(content) - {"sweep", "vary"}) | (set(sweep) - _SWEEP_KEYS))
    if unknown or not isinstance(sweep.get("mesh", []), list):
        raise ParameterError(f"unknown in a plan: {', '.join(unknown)}" if unknown else "[sweep]: mesh takes a list")
    mode, model = int(sweep.get("mode", 1)), int(sweep.get("model", 3 if sweep.get("mode", 1) != 0 else 0))
    vary = tuple(_read_vary(name, table, mode) for name, table in content.get("vary", {}).items())
    keep = sweep.get("keep", "none")
    if keep not in KEEP:
        raise ParameterError(f"[sweep]: keep = {keep!r}; one of {', '.join(KEEP)}")
    if mode == 0 and model == 1:
        raise ParameterError(
            "random offsets are the same in every run: each process draws the same numbers, so that a sweep of them "
            "says nothing about chance"
        )
    table = sweep.get("epoch_table")
    plan = Plan(
        meshes=tuple((folder / mesh).resolve() for mesh in sweep.get("mesh", [])),
        mode=mode,
        model=model,
        epoch_table=(folder / table).resolve() if table is not None else None,
        epochs=int(sweep.get("epochs", 1)),
        days=int(sweep.get("days", 365)),
        samples=int(sweep.get("samples", 1)),
        seed=int(sweep.get("seed", 1)),
        keep=keep,
        unit=sweep.get("unit"),
        vary=vary,
    )
    _check_quantities(plan.names)
    if plan.samples < 1 or (plan.samples > 1 and not any(one.quantile for one in vary)):
        raise ParameterError("[sweep]: samples needs a quantity that is lognormal or uniform, and at least 1 of them")
    return plan


def sample(plan: Plan) -> dict[str, NDArray[np.float64]]:
    """The samples of the quantities that have a distribution, by Latin hypercube: one of each in every stratum.

    Returns
    -------
    dict of str to array of float64, shape (samples,)
    """
    from scipy.stats import qmc

    sampled = [one for one in plan.vary if one.quantile is not None]
    if not sampled:
        return {}
    shares = qmc.LatinHypercube(len(sampled), seed=plan.seed).random(plan.samples)
    return {one.name: one.quantile(shares[:, i]) for i, one in enumerate(sampled) if one.quantile is not None}


def sample_table(plan: Plan) -> dict[str, NDArray[np.float64]]:
    """What varies, for every combination of given values and every sample: arrays of shape (S,)."""
    samples = sample(plan)
    count = plan.samples if samples else 1
    grids = {one.name: one.values for one in plan.vary if one.quantile is None}
    combinations = list(itertools.product(*grids.values()))
    table = {name: np.tile(values, len(combinations)) for name, values in samples.items()}
    for place, name in enumerate(grids):
        table[name] = np.repeat([combination[place] for combination in combinations], count)
    return table


@dataclasses.dataclass(frozen=True)
class PlannedRun:
    """One run: its number from 1 on, its mesh, and the values of what varies."""

    number: int
    mesh: str
    values: tuple[float, ...]


def plan_runs(plan: Plan) -> list[PlannedRun]:
    """Every mesh with every combination of given values and every sample, in this order."""
    table = sample_table(plan)
    columns = [table[name].tolist() for name in plan.names]
    rows = list(zip(*columns, strict=True)) if columns else [()]
    pairs = itertools.product(plan.meshes, rows)
    return [PlannedRun(number, str(mesh), values) for number, (mesh, values) in enumerate(pairs, start=1)]
