"""Numbers of about 106 bits, held as pairs of arrays of doubles whose sum they are.

The operations are the library's own, step by step, so that what is made of them has its bits.
"""

from __future__ import annotations

import numpy as np
from numpy.typing import NDArray

Array = NDArray[np.float64]
DoubleDouble = tuple[Array, Array]


def quick_two_sum(a: Array, b: Array) -> DoubleDouble:
    """``a + b``, exactly, for a ``b`` that is no larger than ``a``."""
    total = a + b
    return total, b - (total - a)


def two_sum(a: Array, b: Array) -> DoubleDouble:
    """``a + b``, exactly."""
    total = a + b
    share_of_b = total - a
    return total, (a - (total - share_of_b)) + (b - share_of_b)


def split(a: Array) -> DoubleDouble:
    """``a`` in two parts of 26 bits, whose products with other such parts are exact."""
    scaled = 134217729.0 * a
    high = scaled - (scaled - a)
    return high, a - high


def two_product(a: Array, b: Array) -> DoubleDouble:
    """``a * b``, exactly."""
    product = a * b
    x, x_low = split(a)
    y, y_low = split(b)
    return product, ((x * y - product) + x * y_low + x_low * y) + x_low * y_low


def add(a: DoubleDouble, b: DoubleDouble) -> DoubleDouble:
    """``a + b``."""
    high, high_rest = two_sum(a[0], b[0])
    low, low_rest = two_sum(a[1], b[1])
    total, rest = quick_two_sum(high, high_rest + low)
    return quick_two_sum(total, rest + low_rest)


def add_number(a: DoubleDouble, b: Array) -> DoubleDouble:
    """``a + b`` for a double ``b``."""
    total, rest = two_sum(a[0], b)
    return quick_two_sum(total, rest + a[1])


def negate(a: DoubleDouble) -> DoubleDouble:
    """``-a``."""
    return -a[0], -a[1]


def multiply(a: DoubleDouble, b: DoubleDouble) -> DoubleDouble:
    """``a * b``."""
    product, rest = two_product(a[0], b[0])
    return quick_two_sum(product, rest + (a[0] * b[1] + a[1] * b[0]))


def multiply_number(a: DoubleDouble, b: Array) -> DoubleDouble:
    """``a * b`` for a double ``b``."""
    product, rest = two_product(a[0], b)
    return quick_two_sum(product, rest + a[1] * b)


def divide(a: DoubleDouble, b: DoubleDouble) -> DoubleDouble:
    """``a / b``."""
    first = a[0] / b[0]
    rest = add(a, negate(multiply_number(b, first)))
    second = rest[0] / b[0]
    third = add(rest, negate(multiply_number(b, second)))[0] / b[0]
    return add_number(quick_two_sum(first, second), third)


def number(value: float) -> DoubleDouble:
    """A double as a pair."""
    return np.float64(value) * np.ones(()), np.zeros(())


def add_to_odd(a: Array, b: Array) -> Array:
    """``a + b``; where that is not a double, the neighbour with an odd last bit.

    Adding the result to a much larger number then rounds as the exact sum would have been rounded.
    """
    total, rest = two_sum(a, b)
    bits = total.view(np.int64)
    step = np.where((rest > 0.0) == (total > 0.0), 1, -1)
    moves = (rest != 0.0) & ((bits & 1) == 0)
    result: Array = (bits + np.where(moves, step, 0)).view(np.float64)
    return result
