"""From the files of monitoring networks to a table of epochs.

``read_eea``, ``read_ebas`` and ``read_nadp`` read what three networks export, each in the units that it states;
``epoch_table`` makes one row an epoch of them, in the form that ``talvek run --epoch-table`` takes.
"""

from talvek.climate.ebas import read_ebas
from talvek.climate.eea import read_eea
from talvek.climate.nadp import read_nadp
from talvek.climate.series import Series
from talvek.climate.table import ClimateTable, epoch_table

__all__ = ["ClimateTable", "Series", "epoch_table", "read_ebas", "read_eea", "read_nadp"]
