"""Powers against decimal arithmetic of fifty digits, which leaves nothing to round wrongly."""

import decimal

import numpy as np
import pytest

from talvek.exact_power import power, power_of_ten

decimal.getcontext().prec = 50


def exact(base, exponent):
    return float(decimal.Decimal(base) ** decimal.Decimal(exponent))


@pytest.mark.parametrize("exponent", [float(np.float32(0.7)), float(np.float32(0.3))])
def test_powers_of_gases_are_rounded_correctly(exponent):
    random = np.random.default_rng(7)
    bases = (10.0 ** random.uniform(-38, 3, 600)).astype(np.float32).astype(np.float64)
    powers = power(bases, exponent)
    assert powers.tolist() == [exact(base, exponent) for base in bases.tolist()]


def test_powers_of_ten_are_rounded_correctly():
    random = np.random.default_rng(8)
    exponents = 3 - random.uniform(0, 14, 600).astype(np.float32).astype(np.float64)
    assert power_of_ten(exponents).tolist() == [exact(10.0, value) for value in exponents.tolist()]


def test_whole_powers_of_ten_are_exact():
    exponents = np.arange(-11.0, 34.0)
    assert power_of_ten(exponents).tolist() == [float(f"1e{int(value)}") for value in exponents]


def test_no_gas_and_values_that_are_no_numbers():
    values = power(np.array([0.0, 1.0, np.nan, -1.0, np.inf]), 0.7)
    assert values[:2].tolist() == [0.0, 1.0]
    assert np.isnan(values[2:4]).all()
    assert values[4] == np.inf


def test_numbers_beyond_one_block_keep_their_places():
    bases = np.arange(1.0, 20001.0)
    powers = power(bases.reshape(100, 200), 0.3)
    assert powers.shape == (100, 200)
    assert powers[99, 199] == exact(20000.0, 0.3)


def test_exponents_with_powers_between_two_doubles_are_refused():
    with pytest.raises(ValueError, match="exponent"):
        power(np.ones(1), 0.5)
