"""Widths of the frozen SXB rules' fields, as differences over those of the current rules."""

from database.sxb_widths import REFERENCE_CLOCK, SXB_WIDTHS

# Fields that only the current rules have.
CURRENT_ONLY = {
    "LCPLL_CFG2.LCPLL_LFT_CP1",
    "LCPLL_CFG2.LCPLL_LFT_CP2",
    "LCPLL_CFG2.LCPLL_LFT_RP",
    "LCPLL_CFG2.LCPLL_LFT_RZ",
    "LCPLL_LGC_CFG2.REFCLK_ID",
    "RPLL_CFG0.RPLL_CP1CFG",
    "RPLL_CFG0.RPLL_CP2CFG",
    "RPLL_CFG1.RPLL_DOUBLER_BYPASSB",
    "RPLL_CFG2.RPLL_DOUBLER_BAND_SEL",
    "RPLL_CFG2.RPLL_DOUBLER_REG_PDB",
    "RPLL_LGC_CFG2.REFCLK_ID",
    "CFG4.ibg_vc_50u_rpll1_ctrl",
    "PIPE_CTRL_CFG7.RATE_USE_LCPLL_OUTCLK_ESM56",
    "PIPE_CTRL_CFG7.RXPD_IND_CONTROL",
    "RX_CDR_CFG0.LOWLATENCY_OVR",
    "RX_CTLE_CFG1.CDR2APT_SCANMODE1",
    *(name for name in SXB_WIDTHS if name.startswith(("LCPLL_REFCLK_IPS.", "RPLL_REFCLK_IPS."))),
}

# Words of the memory cells, with the PLL whose reference clock they select.
MEMORY_CELLS = {
    "MEMCELLX0C12": "HS0_LCPLL",
    "MEMCELLX0F12": "HS1_LCPLL",
    "MEMCELLX0C13": "HS0_RPLL",
    "MEMCELLX0F13": "HS1_RPLL",
}


def memory_cell_widths():
    """All eight entries of a map are alike."""
    widths = {}
    for register, pll in MEMORY_CELLS.items():
        widths[f"{register}.{pll}_IPS_REFCLK_SEL"] = REFERENCE_CLOCK
        for entry in range(8):
            widths[f"{register}.{pll}_REFCLK_MAP{entry}"] = REFERENCE_CLOCK
    return widths


def without(widths, names):
    unknown = sorted(names - widths.keys())
    if unknown:
        raise KeyError(f"there is no width to leave out of {', '.join(unknown)}")
    return {name: width for name, width in widths.items() if name not in names}


SXB_STABLE_WIDTHS = without(SXB_WIDTHS, CURRENT_ONLY) | memory_cell_widths()
