"""The weathering models: by how many millimetres a surface moves in an epoch.

The results are the library's in all 53 bits, for as many epochs and samples at once as there is memory for.
"""

from __future__ import annotations

import dataclasses
from typing import Any

import numpy as np
from numpy.typing import ArrayLike, NDArray

from talvek.exact_power import power, power_of_ten

Array = NDArray[np.float64]

SO2_CRUST = 1
SO2_NO2_CRUST = 2
ACID_RAIN = 3


def _single(value: ArrayLike) -> Array:
    """Values as the library holds them: in single precision."""
    return np.asarray(value, dtype=np.float64).astype(np.float32).astype(np.float64)


# The concentrations of the program's defaults, as it computes them.
DEFAULT_SO2 = float(np.float32(1e-13) * np.float32(4.09))
DEFAULT_NO2 = float(np.float32(1e-13) * np.float32(10.23))

_SO2_EXPONENT = float(np.float32(0.7))
_NO2_EXPONENT = float(np.float32(0.3))
_MIXED_GAS_FACTOR = float(np.float32(4.2))
_ACIDITY = float(np.float32(27.38))
_CARBONIC_ACIDITY = float(np.float32(6.56))


@dataclasses.dataclass(frozen=True)
class Material:
    """The stone. Every value may be a number or an array that broadcasts against those of the epochs.

    Attributes
    ----------
    de, den
        Diffusion coefficients of the SO2 and the SO2+NO2 crust, in cm2/h.
    hd, ks, ksn, kr
        Velocities of the SO2 crust (two), of the SO2+NO2 crust and of dry recession, in cm/h.
    mb
        What a deposited mol weighs, in g/mol.
    db
        Density, in g/cm3.
    """

    de: Any = 0.14
    den: Any = 0.11
    hd: Any = 544.3
    ks: Any = 312.0
    ksn: Any = 375.0
    kr: Any = 2452.0
    mb: Any = 100.9
    db: Any = 2.714

    def single(self) -> Material:
        """The same with every value in single precision, as the library holds it."""
        return Material(*(_single(getattr(self, field.name)) for field in dataclasses.fields(self)))


def _crust_thickness(a: Array, b: Array, s: Array) -> Array:
    """Ten times the positive root of ``a x^2 + b x - s = 0``; 0 without one."""
    discriminant = b * b - (-s) * (a * 4)
    has_root = discriminant >= 0
    thickness = (np.sqrt(np.where(has_root, discriminant, 0.0)) - b) * 10 / (2 * a)
    return np.where(has_root, thickness, 0.0)


def _so2_crust(stone: Material, days: Array, so2: Array) -> Array:
    hours = days * 24.0
    a = 1 / (2 * stone.de)
    b = 1 / stone.hd + 1 / stone.ks
    return _crust_thickness(a, b, so2 * stone.mb * hours / stone.db)


def _so2_no2_crust(stone: Material, days: Array, so2: Array, no2: Array) -> Array:
    hours = days * 24.0
    gases = power(so2, _SO2_EXPONENT) * _MIXED_GAS_FACTOR * power(no2, _NO2_EXPONENT)
    return _crust_thickness(1 / (2 * stone.den), 1 / stone.ksn, gases * stone.mb * hours / stone.db)


def _acid_rain(stone: Material, days: Array, so2: Array, no2: Array, rv: Array, rph: Array) -> Array:
    hours = days * 24.0
    years = days / 365.0
    dry = 10000.0 * (2 * stone.kr) * power(so2, _SO2_EXPONENT) * power(no2, _NO2_EXPONENT)
    dry = dry * stone.mb * hours / stone.db
    wet = (_ACIDITY * power_of_ten(3 - rph) + _CARBONIC_ACIDITY) * rv * years
    result: Array = (dry + wet) / -1000.0
    return result


def delta(
    model: int,
    days: ArrayLike,
    *,
    so2: ArrayLike = DEFAULT_SO2,
    no2: ArrayLike = DEFAULT_NO2,
    rv: ArrayLike = 1.13,
    rph: ArrayLike = 4.5,
    material: Material | None = None,
) -> Array:
    """The distance by which a homogeneous surface moves in every epoch.

    Parameters
    ----------
    model : int
        1 SO2 crust, 2 SO2+NO2 crust, 3 acid rain.
    days : array_like
        Length of an epoch, in whole days.
    so2, no2 : array_like
        Concentrations in air, in mol/cm3.
    rv : array_like
        Rain, in metres a year of 365 days.
    rph : array_like
        Acidity of the rain, as a pH.
    material : Material, optional
        The stone; the program's sandstone otherwise.

    Returns
    -------
    array of float64, in mm
        Positive for growth, negative for recession, of the shape to which the arguments broadcast.
    """
    stone = (material or Material()).single()
    length = np.floor(np.asarray(days, dtype=np.float64))
    gas = (_single(so2), _single(no2))
    with np.errstate(divide="ignore", invalid="ignore", over="ignore"):
        if model == SO2_CRUST:
            return _so2_crust(stone, length, gas[0])
        if model == SO2_NO2_CRUST:
            return _so2_no2_crust(stone, length, *gas)
        if model == ACID_RAIN:
            return _acid_rain(stone, length, *gas, _single(rv), _single(rph))
    raise ValueError(f"model {model} is not a weathering model: 1 SO2 crust, 2 SO2+NO2 crust, 3 acid rain")
