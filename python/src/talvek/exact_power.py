"""Powers that are rounded correctly, for arrays.

The rates of the library are made of such powers, and those of a C library differ from them in the last bit.
"""

from __future__ import annotations

import functools
from collections.abc import Callable

import numpy as np

from talvek.double_double import (
    Array,
    DoubleDouble,
    add,
    add_number,
    add_to_odd,
    divide,
    multiply,
    multiply_number,
    negate,
    number,
    two_sum,
)

# ln 2 as a number of 38 bits, whose products with small integers are exact, and the rest.
_LN2_HIGH = float.fromhex("0x1.62e42fefa0000p-1")
_LN2_LOW = (np.array(float.fromhex("0x1.cf79abc9e3b3ap-40")), np.array(float.fromhex("-0x1.ff0342542fc33p-94")))

_NODES_PER_UNIT = 32.0
_FIRST_NODE = 23
_ROOTS_PER_OCTAVE = 16

# So many numbers at once stay in the processor's cache.
_BLOCK = 4096


@functools.cache
def _odd_reciprocal(i: int) -> DoubleDouble:
    return divide(number(1.0), number(2.0 * i + 1.0))


@functools.cache
def _reciprocal_factorial(i: int) -> DoubleDouble:
    return number(1.0) if i == 0 else divide(_reciprocal_factorial(i - 1), number(float(i)))


def _arc_tangent_series(u: DoubleDouble, z: DoubleDouble, terms: int) -> DoubleDouble:
    """``u + u z/3 + u z^2/5 + ...`` up to the power ``terms`` of z."""
    total = number(0.0)
    for i in range(terms, 0, -1):
        total = multiply(add(total, _odd_reciprocal(i)), z)
    return add(u, multiply(u, total))


def _exponential_series(x: DoubleDouble, terms: int) -> DoubleDouble:
    """``e^x - 1`` from the terms up to x^terms."""
    total = number(0.0)
    for i in range(terms, 1, -1):
        total = multiply(add(total, _reciprocal_factorial(i)), x)
    return add(x, multiply(x, total))


@functools.cache
def _node_logarithms() -> DoubleDouble:
    """The natural logarithms of 23/32, 24/32, ... 45/32."""
    node = np.arange(_FIRST_NODE, 46, dtype=np.float64)
    u = divide((node - _NODES_PER_UNIT, np.zeros_like(node)), (node + _NODES_PER_UNIT, np.zeros_like(node)))
    return multiply_number(_arc_tangent_series(u, multiply(u, u), 22), np.array(2.0))


@functools.cache
def _roots() -> DoubleDouble:
    """2^(0/16), 2^(1/16), ... 2^(15/16)."""
    part = np.arange(_ROOTS_PER_OCTAVE, dtype=np.float64) / _ROOTS_PER_OCTAVE
    logarithm = add_number(multiply_number(_LN2_LOW, part), _LN2_HIGH * part)
    return add_number(_exponential_series(logarithm, 28), np.array(1.0))


def _logarithm(x: Array) -> DoubleDouble:
    """The natural logarithm of finite numbers above zero, with a relative error of about 2^-103."""
    mantissa, exponent = np.frexp(x)
    fraction = mantissa * 2.0
    is_high = (fraction > 1.40625).astype(np.float64)
    fraction = fraction * (1.0 - 0.5 * is_high)
    exponents = exponent - 1.0 + is_high
    node_number = ((2.0 * _NODES_PER_UNIT * fraction).astype(np.int64) + 1) // 2
    node = node_number / _NODES_PER_UNIT
    high, low = _node_logarithms()
    at_node = (high[node_number - _FIRST_NODE], low[node_number - _FIRST_NODE])
    u = divide((fraction - node, np.zeros_like(node)), two_sum(fraction, node))
    series = multiply_number(_arc_tangent_series(u, multiply(u, u), 9), np.array(2.0))
    total = add(add(series, at_node), multiply_number(_LN2_LOW, exponents))
    return add_number(total, _LN2_HIGH * exponents)


def _exponential(x: DoubleDouble) -> Array:
    """``e^x`` rounded to doubles, for results between 2^-900 and the largest double."""
    steps = np.floor(x[0] * (_ROOTS_PER_OCTAVE / _LN2_HIGH) + 0.5)
    octaves = steps / _ROOTS_PER_OCTAVE
    whole = np.floor(octaves)
    index = ((octaves - whole) * _ROOTS_PER_OCTAVE).astype(np.int64)
    high, low = _roots()
    root = (high[index], low[index])
    reduced = add(add_number(x, -_LN2_HIGH * octaves), negate(multiply_number(_LN2_LOW, octaves)))
    growth = multiply(root, _exponential_series(reduced, 14))
    total, rest = two_sum(root[0], growth[0])
    return np.ldexp(total + add_to_odd(rest, growth[1] + root[1]), whole.astype(np.int64))


def _in_blocks(function: Callable[[Array], Array], values: Array) -> Array:
    flat = np.ascontiguousarray(values, dtype=np.float64).ravel()
    result = np.empty_like(flat)
    for start in range(0, flat.size, _BLOCK):
        block = slice(start, start + _BLOCK)
        result[block] = function(flat[block])
    return result.reshape(np.shape(values))


def power(base: Array, exponent: float) -> Array:
    """Correctly rounded powers of many bases.

    Parameters
    ----------
    base : array of float64, any shape
        Single-precision values; not a number and negative ones give not a number, 0 gives 0.
    exponent : float
        Above 0, at most 1, and no multiple of 1/32: no such power of a single-precision number but that of 1 lies
        on a double or in the middle between two.

    Returns
    -------
    array of float64, of the shape of `base`
    """
    if not 0.0 < exponent <= 1.0 or (exponent * 32.0).is_integer():
        raise ValueError(f"an exponent of {exponent} is not of this function's kind")

    def of_block(bases: Array) -> Array:
        usable = (bases > 0.0) & np.isfinite(bases) & (bases != 1.0)
        result = _exponential(multiply_number(_logarithm(np.where(usable, bases, 2.0)), np.array(exponent)))
        result[~usable] = np.where(bases[~usable] >= 0.0, bases[~usable], np.nan)
        return result

    return _in_blocks(of_block, base)


def power_of_ten(exponent: Array) -> Array:
    """``10^x``, correctly rounded.

    Parameters
    ----------
    exponent : array of float64, any shape
        Between -250 and 300.

    Returns
    -------
    array of float64, of the shape of `exponent`
    """
    if exponent.size and not (np.min(exponent) >= -250.0 and np.max(exponent) <= 300.0):
        raise ValueError("exponents of ten have to lie between -250 and 300")
    logarithm = _logarithm(np.array([10.0]))

    def of_block(exponents: Array) -> Array:
        result = _exponential(multiply_number(logarithm, exponents))
        # Whole powers are doubles or, as 10^23, the middle between two, which an approximation cannot tell.
        whole = (exponents == np.floor(exponents)) & (exponents >= 0.0)
        result[whole] = [float(10 ** int(value)) for value in exponents[whole]]
        return result

    return _in_blocks(of_block, exponent)
