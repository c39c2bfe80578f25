"""Decisions about the register layout, family by family.

Where nothing is decided here, a constant gets the bits that it needs, a copied flag one bit, and
fields follow each other from bit 0 upwards in the order of the catalogue.
"""

from dataclasses import replace

from database.placement import Layout
from database.sxb_stable_widths import SXB_STABLE_WIDTHS
from database.sxb_widths import SXB_WIDTHS
from database.sxd4_widths import SXD4_WIDTHS

CHANNELS = range(4)


def reset_enables():
    """Reset enables of the master: fields that a master copies from its own channel to those that
    follow it, at fixed distances from channel to channel."""
    places = {}
    for channel in CHANNELS:
        register = f"MST_RESET_CFG.CH{channel}_"
        places[register + "LCPLL_RESET_EN"] = (channel, 1)
        places[register + "RPLL_RESET_EN"] = (4 + channel, 1)
        group = 8 + 5 * channel
        places[register + "ILO_RESET_EN"] = (group, 1)
        places[register + "TX_PROGDIV_RESET_EN"] = (group + 1, 1)
        places[register + "TX_CH_RESET_EN"] = (group + 2, 1)
        places[register + "RX_PROGDIV_RESET_EN"] = (group + 3, 1)
        places[register + "RX_CH_RESET_EN"] = (group + 4, 1)
        places[register + "RX_LCPLL_RESET_EN"] = (28 + channel, 1)
        places[f"CTRL_RSV_CFG0.CH{channel}_RX_RPLL_RESET_EN"] = (28 + channel, 1)
    return places


# Places on which the arithmetic of the rate table depends.
PINNED = {
    # The low half belongs to dual 0, the high half to dual 1.
    "A_CFG1.A_HS0_LCPLLFBDIV": (0, 8),
    "A_CFG1.A_HS0_RPLLFBDIV": (8, 8),
    "A_CFG1.A_HS1_LCPLLFBDIV": (16, 8),
    "A_CFG1.A_HS1_RPLLFBDIV": (24, 8),
    # A rate change always writes the output clock selects, under the masks 0x7007 and 0x7000.
    "PIPE_CTRL_CFG7.TXOUTCLKCTL": (0, 3),
    "PIPE_CTRL_CFG7.RXOUTCLKCTL": (12, 3),
    **reset_enables(),
}

SXA_LAYOUT = Layout(
    block_types=[
        ("RCALBG_*", "rcalbg_0"),
        ("LCPLL_*", "hs_clk_0"),
        ("RPLL_*", "hs_clk_0"),
        ("UB_CFG*", "ctrl_0"),
        ("POR_CFG", "ctrl_0"),
        ("SYS_RST_MASK_CFG", "ctrl_0"),
        ("PIN_CFG*", "ctrl_0"),
        ("A_CFG*", "ctrl_0"),
        ("*", "channel"),
    ],
    pinned=PINNED,
    # These registers have more bits of constants than a word. As few fields as possible give way,
    # and they hold the low bits of their constants.
    narrowed={
        "ADAPT_DFE_CFG1.h8_initdac": 2,
        "ADAPT_DFE_CFG1.h9_initdac": 2,
        "ADAPT_DFE_CFG2.hf_initdac": 3,
        # Beside 24 selects of one bit none of the three has its seven bits.
        "ADAPT_GEN_CFG3.sel_caldac": 3,
        "ADAPT_GEN_CFG3.sel_vp0dac": 3,
        "ADAPT_GEN_CFG3.sel_vp1dac": 2,
    },
)

SXB_LAYOUT = Layout(
    block_types=[
        ("LCPLL_REFCLK_IPS", "hs_clk_ips"),
        ("RPLL_REFCLK_IPS", "hs_clk_ips"),
        ("LCPLL_*", "hs_clk_0"),
        ("RPLL_*", "hs_clk_0"),
        ("HSDIST_CFG", "hs_clk_0"),
        # Bias and calibration. A part of it follows the PLL, and blocks of type rcalbg have no
        # place for a register that changes with the rate of every channel.
        ("CFG[0-5]", "ctrl_0"),
        ("A_CFG*", "ctrl_0"),
        ("UB_CFG*", "ctrl_0"),
        ("POR_CFG", "ctrl_0"),
        ("PIN_CFG*", "ctrl_0"),
        # Registers with a field for each channel.
        ("MST_RESET_CFG", "ctrl_0"),
        ("CTRL_RSV_CFG*", "ctrl_0"),
        ("?XRSTDONE_DIST_SEL", "ctrl_0"),
        ("*", "channel"),
    ],
    pinned={
        **PINNED,
        # Their names say where they are.
        "CHCLK_ILO_CFG.RESERVED_BIT15": (15, 1),
        "CHCLK_ILO_CFG.RESERVED_BIT17": (17, 1),
    },
    widths=SXB_WIDTHS,
)

# The frozen rules of SXB: other calibration registers, and the reference clock words of both duals
# as memory cells of the first and of the last block of the quad.
SXB_STABLE_LAYOUT = replace(
    SXB_LAYOUT,
    block_types=[
        ("RCALBG_*", "rcalbg_0"),
        ("MEMCELLX0C*", "ctrl_0"),
        ("MEMCELLX0F*", "ctrl_3"),
        *SXB_LAYOUT.block_types,
    ],
    widths=SXB_STABLE_WIDTHS,
)

# Fields that both families have are as wide as in SXB, whether computed or constant here.
SXC_LAYOUT = Layout(
    block_types=SXB_LAYOUT.block_types,
    pinned=PINNED,
    widths={
        **SXB_WIDTHS,
        "HSDIST_CFG.HSDIST_CTRL": 3,
        "RESET_CFG.TX_PLLLOCK_SEL": 1,
        "RESET_CFG.RX_PLLLOCK_SEL": 1,
        "CHL_RSV_CFG2.EB128B130B_64_EN": 1,
        "ADAPT_APT_CFG.divider_data": 1,
    },
)

SXD4_LAYOUT = Layout(
    block_types=[
        # The PLL of the block.
        ("A_CFG", "hs_clk_0"),
        ("PLL_*", "hs_clk_0"),
        ("*SDM_*", "hs_clk_0"),
        ("RST_PLL_CFG0", "hs_clk_0"),
        # What the two channels share.
        ("FEC_CFG*", "ctrl_0"),
        ("BIAS_CFG*", "ctrl_0"),
        ("RST_CFG", "ctrl_0"),
        ("DRPEN_CFG", "ctrl_0"),
        ("SAP_CFG0", "ctrl_0"),
        ("*", "channel"),
    ],
    widths=SXD4_WIDTHS,
    ports={
        "TXOUTCLKSEL": "CH_PORT",
        "RXOUTCLKSEL": "CH_PORT",
        "TXPCSRESETMASK": "CH_PORT",
        "TXPMARESETMASK": "CH_PORT",
        "RXPCSRESETMASK": "CH_PORT",
        "RXPMARESETMASK": "CH_PORT",
    },
)
