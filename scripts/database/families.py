"""What the reference database of each family holds."""

from dataclasses import dataclass, field

from database.layout import (
    SXA_LAYOUT,
    SXB_LAYOUT,
    SXB_STABLE_LAYOUT,
    SXC_LAYOUT,
    SXD4_LAYOUT,
)
from database.placement import Layout

TWO_PLLS = {
    "FLCPLLRANGE_MIN": "8.0",
    "FLCPLLRANGE_MAX": "16.375",
    "FRPLLRANGE_MIN": "4.0",
    "FRPLLRANGE_MAX": "8.0",
}

# Limits of the PLL clocks in GHz, by family word.
LIMITS = {
    "SXA": TWO_PLLS,
    "SXB": TWO_PLLS,
    "SXC": TWO_PLLS,
    "SXD4": {
        "FLCPLLRANGE_MIN": "9.8",
        "FLCPLLRANGE_MAX": "14.5",
        # From this symbol rate on, in Gbaud, the oscillator runs at half of it.
        "FSXDLCRANGE_MIN": "9.8",
    },
}


@dataclass(frozen=True)
class Database:
    """One folder of data/; its name is that of the rule catalogue."""

    family: str  # the family word, by which parameters and limits are chosen
    layout: Layout
    # Defaults of user parameters that are not those of the family.
    defaults: dict = field(default_factory=dict)

    @property
    def limits(self):
        return LIMITS[self.family]


# Only families whose rules are there: the registers come from the rules.
DATABASES = {
    "SXA": Database(family="SXA", layout=SXA_LAYOUT),
    "SXB": Database(family="SXB", layout=SXB_LAYOUT),
    # No frozen rule or service finds out whether a direction is in use.
    "SXB-stable": Database(
        family="SXB",
        layout=SXB_STABLE_LAYOUT,
        defaults={"TX_IN_USE": "true", "RX_IN_USE": "true"},
    ),
    "SXC": Database(family="SXC", layout=SXC_LAYOUT),
    "SXD4": Database(family="SXD4", layout=SXD4_LAYOUT),
}
