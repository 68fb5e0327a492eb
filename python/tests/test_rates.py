"""Rates against the library's own, in every bit."""

import numpy as np
import pytest

import talvek
from talvek import rates
from talvek.ensembles import distances


SAMPLES = 500


def random_epochs(seed):
    """Epochs over the whole range of what is plausible, and what is not."""
    random = np.random.default_rng(seed)
    return {
        "days": random.integers(1, 40000, SAMPLES),
        "so2": 10.0 ** random.uniform(-16, -10, SAMPLES),
        "no2": 10.0 ** random.uniform(-16, -10, SAMPLES),
        "rv": random.uniform(0, 5, SAMPLES),
        "rph": np.where(random.random(SAMPLES) < 0.2, random.integers(2, 8, SAMPLES), random.uniform(2, 9, SAMPLES)),
    }


def run_of(tmp_path, epochs, model, material=None):
    """A run of a triangle, of which only the record matters."""
    triangle = (np.array([[0, 0, 0], [100, 0, 0], [0, 100, 0]]), np.array([[0, 1, 2]]))
    return talvek.run(triangle, tmp_path, model=model, epochs=epochs, material=material, frames="none")


@pytest.mark.parametrize("model", [1, 2, 3])
@pytest.mark.parametrize("material", [{}, {"kr": 1234.5, "de": 0.3, "den": 0.07, "db": 2.2, "ksn": 500, "hd": 60}])
def test_rates_are_the_librarys_to_the_last_bit(tmp_path, model, material):
    columns = random_epochs(10 * model + len(material))
    result = run_of(tmp_path, columns, model, material)
    environment = {name: values for name, values in columns.items() if name != "days"}
    deltas = rates.delta(model, columns["days"], material=rates.Material(**material), **environment)
    assert len(deltas) == SAMPLES
    assert result.delta.tolist() == deltas.tolist()
    assert distances(model, columns["days"], {**environment, **material}) == np.cumsum(result.delta)[-1]


def test_defaults_are_the_programs(tmp_path):
    assert run_of(tmp_path, None, 3).delta[0] == rates.delta(3, 365)


def test_values_of_samples_and_epochs_broadcast():
    kr = np.array([[2000.0], [3000.0]])
    so2 = np.array([1e-13, 2e-13, 3e-13])
    deltas = rates.delta(3, np.array([365, 730, 365]), so2=so2, material=rates.Material(kr=kr))
    assert deltas.shape == (2, 3)
    assert deltas[1, 2] == rates.delta(3, 365, so2=3e-13, material=rates.Material(kr=3000.0))
    assert distances(3, [365, 730, 365], {"so2": so2, "kr": kr}).tolist() == np.cumsum(deltas, axis=1)[:, -1].tolist()


def test_models_of_other_modes_are_refused():
    with pytest.raises(ValueError, match="not a weathering model"):
        rates.delta(0, 365)
