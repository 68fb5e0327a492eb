"""Exports of the monitoring networks: small files of their forms, with what real ones have wrong with them."""

import csv

import numpy as np
import pytest

from talvek import climate
from talvek.errors import ClimateError

PARQUET = (
    "Samplingpoint,Pollutant,Start,End,Value,Unit,AggType,Validity,Verification,ResultTime,DataCapture,"
    "FkObservationLog\n"
)
OLDER = (
    "Countrycode,Namespace,AirQualityNetwork,AirQualityStation,AirQualityStationEoICode,SamplingPoint,SamplingProcess,"
    "Sample,AirPollutant,AirPollutantCode,AveragingTime,Concentration,UnitOfMeasurement,DatetimeBegin,DatetimeEnd,"
    "Validity,Verification\n"
)


def parquet_row(value, day, validity=1, pollutant=1, unit="ug.m-3", point="DE/SPO.A"):
    times = f"2020-01-{day:02} 00:00:00,2020-01-{day + 1:02} 00:00:00"
    return f"{point},{pollutant},{times},{value},{unit},day,{validity},1,,,x\n"


def older_row(value, hour, validity=1):
    return (
        "DE,DE.UBA,NET.A,STA.A,DEUB001,SPO.A,SPP.A,SAM.A,NO2,http://dd.eionet.europa.eu/vocabulary/aq/pollutant/8,hour,"
        f"{value},\u00b5g/m3,2018-03-01 {hour:02}:00:00 +01:00,2018-03-01 {hour + 1:02}:00:00 +01:00,{validity},1\n"
    )


def write(path, text, encoding="utf-8"):
    path.write_text(text, encoding=encoding)
    return path


def test_eea_parquet_columns(tmp_path):
    rows = parquet_row(10, 1) + parquet_row(20, 2, validity=3) + parquet_row(99, 3, validity=-1) + parquet_row("", 4)
    file = write(tmp_path / "so2.csv", PARQUET + rows + parquet_row(7, 1, pollutant=5))
    [series] = climate.read_eea(file)
    assert series.column == "so2_ug_m3"
    assert series.value.tolist() == [10, 20]
    assert series.dropped == 2


@pytest.mark.parametrize("encoding", ["utf-8", "utf-8-sig", "utf-16", "latin-1"])
def test_eea_older_csv_in_every_encoding(tmp_path, encoding):
    file = write(tmp_path / "no2.csv", OLDER + older_row(30.5, 0) + older_row(-999, 1) + older_row(4, 2, -99), encoding)
    [series] = climate.read_eea(file)
    assert (series.column, series.value.tolist(), series.dropped) == ("no2_ug_m3", [30.5], 2)
    assert str(series.start[0]) == "2018-03-01T00:00:00"


def test_eea_files_of_one_pollutant_are_joined_in_the_order_of_time(tmp_path):
    second = write(tmp_path / "b.csv", PARQUET + parquet_row(2, 2))
    first = write(tmp_path / "a.csv", PARQUET + parquet_row(1, 1))
    [series] = climate.read_eea(second, first)
    assert series.value.tolist() == [1, 2]


@pytest.mark.parametrize(
    ("text", "message"),
    [
        ("a,b\n1,2\n", "not an export of the EEA: no column aggtype"),
        (PARQUET + parquet_row(1, 1, unit="mg.m-3"), "line 2: concentrations in mg.m-3"),
        (PARQUET + parquet_row(1, 1) + parquet_row(2, 1), "two measurements of so2_ug_m3 for 2020-01-01"),
        (PARQUET + parquet_row(1, 1) + parquet_row(2, 2, point="B"), "several sampling points: B, DE/SPO.A"),
        (PARQUET + parquet_row("1,5".replace(",", ";"), 1), "line 2: could not convert"),
    ],
)
def test_eea_files_that_are_not_what_was_meant(tmp_path, text, message):
    with pytest.raises(ClimateError, match=message):
        climate.read_eea(write(tmp_path / "x.csv", text))


def ebas(names, missing, rows, extra=()):
    """A file with the end time and the given variables."""
    normal = [f"{key}: {value}" for key, value in extra] + ["starttime endtime values"]
    count = len(names) + 1
    lines = ["Doe, Jane", "NO01L, Institute", "Doe, Jane", "EMEP", "1 1", "1990 01 01 2001 05 05", "7"]
    lines += ["Days from the file reference point (start_time)", str(count), " ".join(["1"] * count)]
    lines += [" ".join(["9999.999", *missing]), "end_time of measurement, days from the file reference point", *names]
    lines += ["0", str(len(normal)), *normal]
    return "\n".join([f"{len(lines) + 1} 1001", *lines, *rows]) + "\n"


def test_ebas_units_flags_and_missing_values(tmp_path):
    names = ["sulphur_dioxide, ug S/m3, Matrix=air", "numflag sulphur_dioxide, no unit"]
    rows = ["0.0 7.0 2.5 0.000", "7.0 14.0 99.99 0.999", "14.0 21.0 4.5 0.459", "21.0 28.0 1.5 0.147780"]
    rows += ["28.0 35.0 0.5 0.459100000"]
    [series] = climate.read_ebas(write(tmp_path / "a.nas", ebas(names, ["99.99", "9.999"], rows)))
    assert series.column == "so2_ugS_m3"
    assert series.value.tolist() == [2.5, 1.5, 0.5]
    assert series.dropped == 2
    assert str(series.end[0]) == "1990-01-08T00:00:00"


def test_ebas_one_column_of_flags_for_several_variables(tmp_path):
    names = [
        "precipitation_amount, mm",
        "pH, pH units",
        "numflag, no unit",
        "sulphate_total, mg S/l",
        "numflag, no unit",
    ]
    rows = ["0.0 7.0 12.0 4.5 0.000 1.0 0.459", "7.0 14.0 3.0 5.0 0.899 1.0 0.000"]
    missing = ["999.9", "9.99", "9.999", "9.9", "9.999"]
    rain, ph = climate.read_ebas(write(tmp_path / "p.nas", ebas(names, missing, rows)))
    assert (rain.column, rain.value.tolist()) == ("rain_mm", [12.0])
    assert (ph.column, ph.value.tolist()) == ("ph", [4.5])


def test_ebas_files_of_the_first_form_name_the_component_in_the_header(tmp_path):
    extra = [("Component", "nitrogen_dioxide"), ("Unit", "ug N/m3")]
    text = ebas(["value, ug N/m3", "numflag, no unit"], ["99.99", "9.999"], ["0 1 3.5 0.000"], extra)
    [series] = climate.read_ebas(write(tmp_path / "n.nas", text))
    assert (series.column, series.value.tolist()) == ("no2_ugN_m3", [3.5])


def test_ebas_refuses_what_it_does_not_know(tmp_path):
    with pytest.raises(ClimateError, match="not a NASA Ames 1001 file"):
        climate.read_ebas(write(tmp_path / "x.nas", "no header\n"))
    text = ebas(["sulphur_dioxide, mg/m3", "numflag, no unit"], ["99.99", "9.999"], ["0 1 3.5 0.000"])
    with pytest.raises(ClimateError, match="sulphur_dioxide in mg/m3"):
        climate.read_ebas(write(tmp_path / "u.nas", text))


NADP = "siteID,dateOn,dateOff,yrmonth,ph,SO4,svol,ppt,subppt,valcode,invalcode\n"


def test_nadp_weeks(tmp_path):
    rows = "MI09,2019-01-01 15:00,2019-01-08 15:00,201901,4.80,1.0,500,20.0,19.0,w,\n"
    rows += "MI09,2019-01-08 15:00,2019-01-15 15:00,201901,-9.00,-9,-9,0.0,-9,d,\n"
    rows += "MI09,2019-01-15 15:00,2019-01-22 15:00,201901,6.90,1.0,500,5.0,4.0,,c\n"
    rows += "MI09,1/22/2019 15:00,1/29/2019 15:00,201901,5.10,1.0,500,-9.99,7.5,w,\n"
    rain, ph = climate.read_nadp(write(tmp_path / "w.csv", NADP + rows))
    assert rain.value.tolist() == [20.0, 0.0, 5.0, 7.5]
    assert ph.value.tolist() == [4.8, 5.1]
    assert ph.dropped == 2
    with pytest.raises(ClimateError, match="several sites: MI09, MI10"):
        climate.read_nadp(write(tmp_path / "s.csv", NADP + rows + rows.replace("MI09", "MI10")))


def series(column, days, values):
    """Measurements that begin at the given days of 2020 and last until the next."""
    times = np.datetime64("2020-01-01", "s") + np.array(days) * np.timedelta64(86400, "s")
    return climate.Series(column, times[:-1], times[1:], np.array(values, dtype=float), 0, "made")


def test_gases_are_means_over_the_time_measured():
    table = climate.epoch_table([series("so2_ug_m3", [0, 91, 366], [10, 20])])
    assert len(table) == 1
    assert table.days.tolist() == [366]
    assert table.columns["so2_ug_m3"][0] == pytest.approx((10 * 91 + 20 * 275) / 366)
    assert table.warnings == ()


def test_rain_is_summed_and_shared_between_epochs_by_time():
    table = climate.epoch_table([series("rain_mm", [0, 21, 41, 60], [7, 20, 5])], period="month")
    assert table.columns["rain_mm"].tolist() == [7 + 10, 10 + 5]


def test_ph_is_weighted_by_the_rain_of_each_sample():
    rain = series("rain_mm", [0, 10, 366], [30, 10])
    table = climate.epoch_table([rain, series("ph", [0, 10, 366], [4.0, 5.0])])
    assert table.columns["ph"][0] == pytest.approx(-np.log10((30e-4 + 10e-5) / 40))
    assert table.coverage["ph"][0] == pytest.approx(1.0)


def test_ph_counts_the_rain_of_its_own_samples_alone():
    rain = series("rain_mm", [0, 10, 20, 366], [30, 50, 20])
    table = climate.epoch_table([rain, series("ph", [10, 20], [4.5])])
    assert table.columns["ph"][0] == pytest.approx(4.5)
    assert table.coverage["ph"][0] == pytest.approx(0.5)
    assert "ph is covered to 50%" in table.warnings[0]


def test_coverage_below_three_quarters_is_told(tmp_path):
    table = climate.epoch_table([series("so2_ug_m3", [0, 250], [10])])
    [warning] = table.warnings
    assert warning == "epoch 1, from 2020-01-01: so2_ug_m3 is covered to 68%, below 75%"
    table.write(tmp_path / "climate.csv")
    [row] = csv.DictReader((tmp_path / "climate.csv").open())
    assert row == {"start": "2020-01-01", "end": "2020-12-31", "so2_ug_m3": "10.0", "note": "so2_ug_m3 68% covered"}


def test_an_epoch_without_measurements_has_an_empty_cell(tmp_path):
    bounds = ["2020-01-01", "2020-02-01", "2020-03-01"]
    climate.epoch_table([series("so2_ug_m3", [0, 31], [10])], bounds).write(tmp_path / "climate.csv")
    rows = list(csv.DictReader((tmp_path / "climate.csv").open()))
    assert [row["so2_ug_m3"] for row in rows] == ["10.0", ""]


@pytest.mark.parametrize(
    ("parts", "message"),
    [
        ([series("so2_ug_m3", [0, 1], [1]), series("so2_ugS_m3", [0, 1], [1])], "two series of so2"),
        ([series("ph", [0, 1], [4])], "needs the rain"),
        ([], "no valid measurement"),
    ],
)
def test_series_that_do_not_make_a_table(parts, message):
    with pytest.raises(ClimateError, match=message):
        climate.epoch_table(parts)
