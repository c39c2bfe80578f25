"""What the reference database of each family holds."""

from dataclasses import dataclass

from database.layout import SXA_LAYOUT
from database.placement import Layout

# Ranges of the PLL clocks in GHz.
LIMITS = {
    "FLCPLLRANGE_MIN": "8.0",
    "FLCPLLRANGE_MAX": "16.375",
    "FRPLLRANGE_MIN": "4.0",
    "FRPLLRANGE_MAX": "8.0",
}


@dataclass(frozen=True)
class Database:
    """One folder of data/; its name is that of the rule catalogue."""

    family: str  # the family word, by which parameters are chosen
    layout: Layout
    limits: dict


DATABASES = {
    "SXA": Database(family="SXA", layout=SXA_LAYOUT, limits=LIMITS),
}
