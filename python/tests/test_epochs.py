"""Epochs in their units, and tables of them."""

import csv
import io
import subprocess

import numpy as np
import pytest
from programs import PROGRAM

from talvek.epochs import COLUMNS, Epoch, make_table, parse_quantity, read_table, to_model
from talvek.errors import ParameterError


def test_units_of_gases():
    # 10 and 25 ppb at 25 degrees and 1 atm are the defaults of the program.
    assert to_model({"so2_ppb": 10, "no2_ppb": 25}, 365) == {
        "so2": pytest.approx(4.09e-13, rel=1e-3),
        "no2": pytest.approx(1.023e-12, rel=2e-3),
    }
    assert to_model({"so2_ug_m3": 10}, 365)["so2"] == pytest.approx(1.561e-13, rel=1e-3)
    # Half of the gas's mass is sulphur, and 30 % of NO2's is nitrogen.
    assert to_model({"so2_ugS_m3": 5.0046}, 365)["so2"] == pytest.approx(1.561e-13, rel=1e-3)
    assert to_model({"no2_ugN_m3": 14.007}, 365)["no2"] == pytest.approx(1e-12)
    assert to_model({"no2_ug_m3": 46.005}, 365)["no2"] == pytest.approx(1e-12)


def test_units_of_rain():
    assert to_model({"rain_mm_year": 780}, 365)["rv"] == pytest.approx(0.78)
    assert to_model({"rain_mm": [100, 100]}, [365, 73])["rv"] == pytest.approx([0.1, 0.5])


def test_texts_with_units():
    assert parse_quantity("so2", "10ppb") == ("so2_ppb", 10)
    assert parse_quantity("so2", "4.09e-13") == ("so2", 4.09e-13)
    assert Epoch(rv="780mm").value("rv") == pytest.approx(0.78)
    assert Epoch(so2="26 ug/m3").value("so2") == pytest.approx(26e-12 / 64.058)
    for name, text in (
        ("so2", "10ugN/m3"),
        ("no2", "10mm"),
        ("rv", "1ppb"),
        ("so2", "ppb"),
        ("so2", "1e"),
        ("so2", "x"),
    ):
        with pytest.raises(ParameterError, match="is not a number with a unit of"):
            Epoch(**{name: text}).value(name)


@pytest.mark.parametrize("column", sorted(COLUMNS))
def test_units_are_the_programs(tmp_path, column):
    values, days = [4.5, 0.3, 7.25], [365, 366, 1000]
    table = tmp_path / "epochs.csv"
    scale = 1e-13 if column in ("so2", "no2") else 1
    rows = [f"{length},{value * scale}\n" for length, value in zip(days, values, strict=True)]
    table.write_text(f"days,{column}\n" + "".join(rows))
    shown = subprocess.run([PROGRAM, "rates", "--epoch-table", table], capture_output=True, text=True, check=True)
    theirs = list(csv.DictReader(io.StringIO(shown.stdout)))
    ours = read_table(table)
    [(name, converted)] = to_model(ours.columns, ours.days).items()
    assert [np.float32(row[name]) for row in theirs] == converted.astype(np.float32).tolist()


@pytest.mark.parametrize(
    "text",
    [
        "days,so2,note\n365,1e-13,dry\n366,2.5e-13,wet\n",
        "\ufeff# a remark\r\ndays\tso2\r\n365\t1e-13\r\n366\t2.5e-13\r\n",
        "start;end;so2\n2001-01-01;2001-12-31;1e-13\n2002-01-01;2003-01-01;2,5e-13\n",
    ],
)
def test_tables_in_every_form(tmp_path, text):
    (tmp_path / "epochs.csv").write_bytes(text.encode())
    table = read_table(tmp_path / "epochs.csv")
    assert table.days.tolist() == [365, 366]
    assert table.columns["so2"].tolist() == [1e-13, 2.5e-13]
    assert (table.end is None) == ("start" not in text)
    assert table.arguments() == ["--epochs", "2", "--days", "365,366", "--so2=1e-13,2.5e-13"]


def test_values_that_replace_a_columns_quantity():
    table = make_table({"days": [365, 366], "so2_ug_m3": [1, 2], "ph": [4, 5]}).replaced({"so2_ppb": 10.0})
    assert table.columns["so2_ppb"].tolist() == [10, 10]
    assert "so2_ug_m3" not in table.columns and "ph" in table.columns


@pytest.mark.parametrize(
    ("text", "message"),
    [
        ("so2\n1\n", "no column days, and no columns start and end"),
        ("days,so3\n1,1\n", "unknown column so3; there are days, start"),
        ("days,so2,so2_ppb\n1,1,1\n", "two columns of so2: so2, so2_ppb"),
        ("days,so2,so2\n1,1,1\n", "stands there twice"),
        ("days,ph\n1,4\n2,\n", "epoch 2: ph is empty, not a value"),
        ("days,ph\n1,-9\n", "epoch 1: ph is -9"),
        ("days,ph\n1,4\n1.5,4\n", "epoch 2 has 1.5 days"),
        ("days,ph\n1\n", "epoch 1 has 1 cells under 2 columns"),
        ("days,ph\n", "no epochs"),
        ("", "no column days"),
        (
            "start,end\n2001-01-01,2001-12-31\n2002-01-02,2002-12-31\n",
            "epoch 2 begins on 2002-01-02, not the day after",
        ),
    ],
)
def test_tables_that_are_refused(tmp_path, text, message):
    (tmp_path / "epochs.csv").write_text(text)
    with pytest.raises(ParameterError, match=message):
        read_table(tmp_path / "epochs.csv")


def test_columns_of_different_lengths_are_refused():
    with pytest.raises(ParameterError, match="2 epochs and 3 values of ph"):
        make_table({"days": [1, 2], "ph": np.array([4.0, 5.0, 6.0])})
