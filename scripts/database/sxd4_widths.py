"""Widths of the SXD4 family's fields that rules compute, and of constants with room to grow.

Register by register; a field is as wide as the largest value that its rule gives, or that its
parameter may have. Fields whose rule is not known have the room that their name calls for.
"""

# An error correction mode by its number.
CORRECTION_MODE = 4
# Words in a frame of the error correction.
FRAME_LENGTH = 16
# Step of the equaliser, whose tables count at most 12.
EQUALISER_STEP = 4
# Start value of an adaptation loop.
LOOP_START = 7
# One of the reset loops 0 to 7.
RESET_LOOP = 3


def flags(*names):
    return dict.fromkeys(names, 1)


def alignment_markers():
    """Four lanes of each of six virtual lanes' markers, a word for each."""
    virtual_lanes = (0, 1, 4, 5, 6, 7)
    return {
        f"FEC_CFG{4 + 4 * index + lane}": {f"LN_ALGN_MRK_ID{virtual_lane}_{lane}": 32}
        for index, virtual_lane in enumerate(virtual_lanes)
        for lane in range(4)
    }


def coding_layer(direction):
    return {
        f"{direction}_DATA_WIDTH": 4,
        f"{direction}_INT_DATA_WIDTH": 2,
        **flags(
            f"{direction}_GRAY_ENDIAN",
            f"{direction}_GRAY_BYP_EN",
            f"{direction}_PRECODE_ENDIAN",
            f"{direction}_PRECODE_BYP_EN",
        ),
    }


PLL_WIDTHS = {
    # The fraction of the feedback divider, 24 bits in two words.
    "A_SDM_DATA_CFG0": {"A_SDM_DATA": 16},
    "A_SDM_DATA_CFG1": {"A_SDM_DATA": 8},
    "SDM_CFG0": flags("BYPASS"),
    "A_CFG": {"A_PLLFBDIV": 8, "A_PLLRESETMASK": 2},
    "PLL_CFG1": {"LCPLL_REFCLK_DIV": 3},
    "PLL_CFG0": {"LCPLLCLKOUT_RATE": 1, "PPF_MUX_CRNT_CTRL": 3, "PPF_MUX_TERM_CTRL": 3},
    "FEC_CFG0": {
        "CTL_RX0_MODE": CORRECTION_MODE,
        "CTL_RX1_MODE": CORRECTION_MODE,
        "CTL_TX0_MODE": CORRECTION_MODE,
        "CTL_TX1_MODE": CORRECTION_MODE,
    },
    "FEC_CFG3": flags(
        "FEC_RX0_BYPASS",
        "FEC_RX1_BYPASS",
        "FEC_TX0_BYPASS",
        "FEC_TX1_BYPASS",
        "FEC_RX1_CLK_MODE",
        "FEC_TX1_CLK_MODE",
    ),
    "FEC_CFG1": {"FRM_LNGTH_SLICE0": FRAME_LENGTH},
    "FEC_CFG2": {"FRM_LNGTH_SLICE1": FRAME_LENGTH},
    **alignment_markers(),
    "A_CH_CFG0": flags("RX_FABINT_USRCLK_FLOP"),
    "A_CH_CFG4": {"A_TXOUTCLKSEL": 3},
    "A_CH_CFG6": {"A_RXOUTCLKSEL": 3},
    "PLL_CFG4": {"LCPLL_CP": 8},
    "PLL_CFG5": {"LCPLL_LPF": 10, "LCPLL_LPF_PCIE_RES": 4, "LCPLL_LOW_RES": 1},
    "RST_LP_CFG1": {"RX_DSP_RESET_LOOP_ID": RESET_LOOP, "RX_DFE_RESET_LOOP_ID": RESET_LOOP},
    "RST_LP_CFG3": {"RX_PRBS_RESET_LOOP_ID": RESET_LOOP, "RX_PCS_RESET_LOOP_ID": RESET_LOOP},
    "RST_LP_ID_CFG0": {"RX_PCS_LOOPER_END_ID": RESET_LOOP, "RX_PMA_LOOPER_END_ID": RESET_LOOP},
}

RX_WIDTHS = {
    "RX_APT_CFG21B": flags("NRZFORM"),
    "RX_APT_CTRL_CFG2": flags("RX_NRZ"),
    "RX_CDR_CFG1B": flags("NRZMODE"),
    "RX_APT_CFG23A": {"DLN_INITDAC": LOOP_START},
    "RX_APT_CFG8A": {"DLP_INITDAC": LOOP_START},
    "RX_APT_CFG19B": {"H0_INITDAC": LOOP_START},
    "RX_APT_CFG28B": flags("H0MODE"),
    "RX_PCS_CFG0": coding_layer("RX"),
    "RX_ANA_CFG1": {"PROGDIV_FBDIV": 2, "PROGDIV_SELFR": 1},
    "RX_PAD_CFG0": {"PAD_RTERM_VCOM_LVL": 4},
    "RX_ANA_CFG0": flags(
        "CTLE_HF1_RDEG_RCAL_ENB",
        "CTLE_HF2_RDEG_RCAL_ENB",
        "CTLE_HF2_RCAL_ENB",
        "CTLE_HF1_RCAL_ENB",
        "CTLE_MF_RCAL_ENB",
    ),
    "RX_APT_CFG11A": {"RATIO_ADJ": EQUALISER_STEP},
    "RX_APT_CFG16B": flags("HYSTEN"),
    "RX_APT_CFG18A": {"GC_INITDAC": LOOP_START, "KH_INITDAC": LOOP_START},
    "RX_APT_CFG23B": {"DHN_INITDAC": LOOP_START},
    "RX_APT_CFG28A": flags("OS_OVWREN_ENABLE", "OVWREN"),
    "RX_APT_CFG8B": {"DHP_INITDAC": LOOP_START},
    "RX_APT_CFG9B": {"SHIFT": 4},
    "RX_APT_CTRL_CFG3": {"RCALOFFSET": 4, "SNRMODTARGET": 4},
    "RX_CDR_CFG0A": flags("CDRENF"),
    "RX_CDR_CFG2A": {"PDIVFAC": 4, "FDIVFAC": 3},
    "RX_CLKGN_CFG0": {
        "CLKGN_DRP_PI_CURRENT_BOOST": 2,
        "CLKGN_CLK_RATE_SEL": 2,
        "CLKGN_DRP_PI_DAC_MIXER_ICAP": 3,
    },
    "RX_CLKGN_CFG1": {
        "CLKGN_SA_RXPI_BOOST": 2,
        "CLKGN_PI_PRE_ZERO_CAPCTRL": 3,
        "CLKGN_PI_LA_ZERO_CAPCTRL": 3,
        "CLKGN_PI_MIX_ZERO_CAPCTRL": 3,
    },
    "RX_CTLE_CFG0": {
        "CTLE_BIAS_CTRL_CODE": EQUALISER_STEP,
        "AGC_BIAS_CTRL": 4,
        "CTLE_BIAS_CTRL": 4,
        **flags("AGC_RCAL_ENB", "CTLE_LBEN_LV"),
    },
    "RX_CTLE_CFG1": {
        "AGC_EXT_RL_CTRL": EQUALISER_STEP,
        "CTLE_MF_EXT_RL_CTRL": EQUALISER_STEP,
        "CTLE_EXT_RL_CTRL": EQUALISER_STEP,
    },
    "RX_CTLE_CFG2": {"CTLE_EXT_RDEG_CTRL": EQUALISER_STEP, "AGC_OCAP_EXT_EN": 1},
    "RX_CTLE_CFG3": {"AGC_OS_MIRROR_CODE": 4},
}

TX_WIDTHS = {
    "TX_ANA_CFG1": {"CTL_PAM2_HIBT": 1, "PROGDIV_CLK_ENB": 1, "TX_PDIVSEL": 2},
    "TX_PCS_CFG0": coding_layer("TX"),
    "TX_DRV_CFG4": {"PROGDIV_PDBV_DIV": 1, "PROGDIV_FBKDIV": 2, "PROGDIV_SEL_FULLRATE": 1},
}

SXD4_WIDTHS = {
    f"{register}.{field}": width
    for rule_set in (RX_WIDTHS, TX_WIDTHS, PLL_WIDTHS)
    for register, fields in rule_set.items()
    for field, width in fields.items()
}
