"""Widths of the SXB family's fields that rules compute, and of constants with room to grow.

Register by register; a field is as wide as the largest value that its rule gives, or that its
parameter may have.
"""

# A fraction of the feedback divider, in 2^24 parts.
FRACTION = 24
# A character of ten bits: disparity, control flag and eight bits of data.
CHARACTER = 10
REFERENCE_CLOCK_ID = 8
# Divider of a fabric clock buffer, less 1.
BUFFER_DIVIDER = 4
# Which of seven inputs drives a reference clock.
REFERENCE_CLOCK = 3


def flags(*names):
    return dict.fromkeys(names, 1)


def reference_clock_map(pll):
    """All eight entries are alike; two of them follow the dual."""
    return {f"{pll}_IPS_REFCLK_SEL": REFERENCE_CLOCK} | {
        f"{pll}_REFCLK_MAP{entry}": REFERENCE_CLOCK for entry in range(8)
    }


def reset_done_selects():
    return {
        f"CH{channel}_{select}_SEL": 2
        for channel in range(4)
        for select in ("DISTNORTH", "DISTSOUTH", "CONSUMPT")
    }


PLL_WIDTHS = {
    "HSDIST_CFG": flags("HSDIST_DIV2SEL"),
    "LCPLL_CFG0": {"LCPLL_PREDIV": 3, "LCPLL_CP": 8},
    "LCPLL_CFG2": {"LCPLL_LFT_CP2": 2, "LCPLL_LFT_RP": 1, "LCPLL_LFT_CP1": 1, "LCPLL_LFT_RZ": 8},
    "RPLL_CFG2": {
        "RPLL_DOUBLER_BAND_SEL": 3,
        "RPLL_DOUBLER_REG_PDB": 1,
        "RPLL_IF_CTRL_RZ": 6,
    },
    "A_CFG2": {"A_HS0_LCPLLPD": 1, "A_HS0_LCPLLSDMDATA": FRACTION},
    "A_CFG3": {"A_HS0_RPLLPD": 1, "A_HS0_RPLLSDMDATA": FRACTION},
    "A_CFG4": {"A_HS1_LCPLLPD": 1, "A_HS1_LCPLLSDMDATA": FRACTION},
    "A_CFG5": {"A_HS1_RPLLPD": 1, "A_HS1_RPLLSDMDATA": FRACTION},
    "A_CFG0": flags("A_BGRCALOVRD_EN"),
    "LCPLL_LGC_CFG1": {"PLL_RESET_DLY_TIME": 8, "BYPASS": 1},
    "LCPLL_LGC_CFG2": {"REFCLK_ID": REFERENCE_CLOCK_ID},
    "RPLL_CFG0": {"RPLL_CP2CFG": 3, "RPLL_CP1CFG": 2, "RPLL_CPEN": 9, "RPLL_REFDIV": 3},
    "RPLL_CFG1": flags("RPLL_DOUBLER_BYPASSB"),
    "RPLL_LGC_CFG1": flags("BYPASS"),
    "RPLL_LGC_CFG2": {"REFCLK_ID": REFERENCE_CLOCK_ID},
    "CFG4": {"ibg_vc_50u_rpll1_ctrl": 2},
    "PIPE_CTRL_CFG7": {
        "TX_DABYP_DIVSEL": 4,
        "TX_DA_DIVSEL": 4,
        "RX_DA_DIVSEL": 4,
        "RX_DABYP_DIVSEL": 4,
        **flags("TX_DA_BYP", "RX_DA_BYP", "RATE_USE_LCPLL_OUTCLK_ESM56", "RXPD_IND_CONTROL"),
    },
    "PIPE_CTRL_CFG3": {"TXOUT_DIV": 3, "RXOUT_DIV": 3, "PIPE_FUND_RST_UB_BYPASS": 1},
    "PIPE_CTRL_CFG8": {
        "RXPROGDIVSEL": 10,
        "TXPROGDIVSEL": 10,
        **flags(
            "CDR_CTRL_HOLDCDR_RX_PHALIGN",
            "CDR_CTRL_EN",
            "CDR_CTRL_REFCLK_MODE",
            "PMA_OOB_CLKDIV_VAL",
        ),
    },
    "PIPE_CTRL_CFG0": {
        "RX_PCSCLK_SEL": 2,
        "TX_PCSCLK_SEL": 2,
        "PCIE_MODE": 1,
        "RX_ELECIDLE_MODE": 2,
    },
    "PIPE_CTRL_CFG1": flags(
        "TXSYNC_EN", "RXSYNC_EN", "RPLL_EN", "OOB_PD", "PIPE_FUND_RST_EN", "UCORE_PLL_ILO_CAL_EN"
    ),
    "PIPE_CTRL_CFG10": {
        "PIPE_TXSYNC_RST_MASK": 1,
        "PIPE_RXSYNC_RST_MASK": 1,
        "PIPE_TXDAPI_RST_MASK": 2,
    },
    "PIPE_CTRL_CFG4": flags("RX_RATE_EN"),
    "PIPE_CTRL_CFG5": {
        "BUFGTDIV_USERCLK2": BUFFER_DIVIDER,
        "BUFGTDIV_G1_PIPECLK": BUFFER_DIVIDER,
        "BUFGTDIV_G4_PIPECLK": BUFFER_DIVIDER,
        "BUFGTDIV_G2_PIPECLK": BUFFER_DIVIDER,
        "BUFGTDIV_USERCLK": BUFFER_DIVIDER,
        "BUFGTDIV_G3_PIPECLK": BUFFER_DIVIDER,
    },
    "PIPE_CTRL_CFG6": {
        "BUFGTDIV_PIPECLK_OVRD": BUFFER_DIVIDER,
        "PIPE_DISTNORTH_SEL": 2,
        "RXOOB_CLKDIV_VAL": 6,
        "PIPE_DISTSOUTH_SEL": 2,
        "PIPE_CONSUMPT_SEL": 2,
    },
    "PIPE_CTRL_CFG9": {
        "TXSYNCDONE_DISTNORTH_SEL": 2,
        "TXSYNCDONE_DISTSOUTH_SEL": 2,
        "TXSYNCDONE_CONSUMPT_SEL": 3,
        "RXSYNCDONE_DISTNORTH_SEL": 2,
        "RXSYNCDONE_DISTSOUTH_SEL": 2,
        "RXSYNCDONE_CONSUMPT_SEL": 3,
        "TXSYNCDONE_DIST_IN_SEL": 1,
    },
    "RESET_CFG": flags("ILORESET_PLLLOCK_SEL"),
    "FABRIC_INTF_CFG0": flags("PERSTB_PIN_EN", "USRRDY_PIN_EN", "APT_PIN_EN"),
    "FABRIC_INTF_CFG1": {"A_RXPD": 2, "A_RXLPMEN": 1},
    "FABRIC_INTF_CFG2": flags("A_TXUSRRDY", "A_RXUSRRDY"),
    "FABRIC_INTF_CFG3": {
        "A_TXPD": 2,
        "A_TX_PHALIGN_RESETMASK": 1,
        "A_RX_PHALIGN_RESETMASK": 1,
    },
    "PIN_CFG0": flags("UCORE_FABRIC_PIN_EN", "GTREFCLK1_PD_PIN_EN", "GTREFCLK0_PD_PIN_EN"),
    "CHCLK_ILO_CFG": flags("CHCLK_CLKSRCMUX_SEL"),
    "CHCLK_MISC_CFG": {"CHCLK_FBDIV_VAL": 5},
    "CHCLK_RXPI_CFG": {"RXPI_BAND_SEL": 2},
    "CHCLK_TXPI_CFG0": {
        "TX_PROGCLK_SEL": 2,
        "TXPI_BAND_SEL": 2,
        "TX_PLLCLK_SEL": 1,
        "TXPI_BYPASS": 1,
    },
    "DA_CFG": flags(
        "TX_DA_REFCLK_SEL",
        "TX_DA_RANGE",
        "RX_DA_RANGE",
        "RX_DA_PWRDNB",
        "TX_DA_PWRDNB",
        "RX_DA_REFCLK_SEL",
    ),
    "LCPLL_REFCLK_IPS": reference_clock_map("LCPLL"),
    "RPLL_REFCLK_IPS": reference_clock_map("RPLL"),
}

RX_WIDTHS = {
    "RX_PCS_CFG0": {
        "RX_DATA_WIDTH": 4,
        "RX_INT_DATA_WIDTH": 2,
        "RX_ALIGN_PCOMMA_VAL": CHARACTER,
        "RX_ALIGN_MCOMMA_VAL": CHARACTER,
        **flags(
            "RX_COMMADETEN",
            "RX_MCOMMA_ALIGNEN",
            "RX_PCOMMA_ALIGNEN",
            "RX_ALIGN_PCOMMA_DET",
            "RX_ALIGN_MCOMMA_DET",
        ),
    },
    "RX_PCS_CFG1": {
        "RX_ALIGN_COMMA_WORD": 3,
        "RX_SLIDE_MODE": 2,
        "RX_ALIGN_COMMA_ENABLE": CHARACTER,
        "RX_SHOW_REALIGN_COMMA": 1,
        "RX_FABRIC_DATA_SEL": 3,
        "RX_FIFO_DATA_SEL": 3,
    },
    "RX_PCS_CFG2": {
        "RX_EIEOS_PATTERN_SEL": 2,
        "FIFO_INIT_RD_ADDR": 4,
        "MODE": 5,
        **flags(
            "RX_DEC_PCOMMA_DET",
            "RX_DEC_MCOMMA_DET",
            "RX_8B10B_EN",
            "USE_GB",
            "RX_PHASE_BUFFER_USE",
            "RX_CBCC_DATA_SEL",
        ),
    },
    "RX_PCS_CFG4": flags("RXVALID_GEN_EN"),
    "ADAPT_GEN_CFG0": flags("gc1_disloop"),
    "ADAPT_KH_CFG0": {"khcdeg_mshift": 4},
    "ADAPT_KL_CFG0": {"kl_mshift": 4, "kl_initdac": 5},
    "EYESCAN_CFG16": {
        "RXPMA_WIDTH_OVRD_EN": 1,
        "RXPMA_ADAP_WIDTH_OVRD": 4,
        "RXPMA_CDR_WIDTH_OVRD": 4,
        "RXPMA_DES_WIDTH_OVRD": 4,
    },
    "RX_CDR_CFG0": {
        "DATAWIDTH_OVR": 3,
        **flags(
            "CDRENF", "SELMODE", "LOWLATENCY_OVR", "D_SEL_Y", "D_SEL_P", "Y_SEL_X", "X_SEL_Y"
        ),
    },
    "RX_CDR_CFG2": {"PDIVFAC": 4, "PMULFAC": 3, "FDIVFAC": 3, "VOTEWX": 3, "VOTEWY": 3},
    "RX_CTLE_CFG0": flags("RX_AGC1_LOW_PWR", "RX_AGC2_LOW_PWR", "RX_CTLE1_LOW_PWR"),
    "RX_CTLE_CFG1": {"RCAL_OS_PAD": 4, "CDR2APT_SCANMODE1": 1},
    # Depths of the elastic buffer fill the word to its last bit.
    "RX_ELASTIC_BUF_CFG0": {
        "EB8B10B_CLK_COR_MAX_LAT": 7,
        "EB8B10B_CLK_COR_REPEAT_WAIT": 5,
        "EB8B10B_OVFL_THRESH": 6,
        "EB8B10B_UDFL_THRESH": 4,
        "EB8B10B_CLK_COR_MIN_LAT": 7,
        **flags("ELASTICBUF_8B10B_EN", "EB8B10B_CLK_COR_USE", "EB8B10B_THRESH_OVRD"),
    },
    "RX_ELASTIC_BUF_CFG1": {
        "EB8B10B_CLK_COR_KEEP_IDLE": 1,
        "EB8B10B_CLK_COR_PRECEDENCE": 1,
        "EB8B10B_CLK_COR_SEQ_1_1": CHARACTER,
        "EB8B10B_CLK_COR_SEQ_1_2": CHARACTER,
        "EB8B10B_CLK_COR_SEQ_1_3": CHARACTER,
    },
    "RX_ELASTIC_BUF_CFG2": {
        "EB8B10B_CLK_COR_SEQ_LEN": 2,
        "EB8B10B_CLK_COR_SEQ_1_4": CHARACTER,
        "EB8B10B_CLK_COR_SEQ_2_1": CHARACTER,
        "EB8B10B_CLK_COR_SEQ_2_2": CHARACTER,
    },
    "RX_ELASTIC_BUF_CFG3": {
        "EB8B10B_CLK_COR_SEQ_1_EN": 4,
        "EB8B10B_DATA_SOURCE_SEL": 1,
        "EB8B10B_CLK_COR_SEQ_2_USE": 1,
        "EB8B10B_CLK_COR_SEQ_2_3": CHARACTER,
        "EB8B10B_CLK_COR_SEQ_2_4": CHARACTER,
        "EB8B10B_CLK_COR_SEQ_2_EN": 4,
    },
    "RX_ELASTIC_BUF_CFG4": {
        "EB8B10B_CHAN_BOND_SEQ_LEN": 2,
        "EB8B10B_CHAN_BOND_SEQ_1_1": CHARACTER,
        "EB8B10B_CHAN_BOND_SEQ_1_2": CHARACTER,
        "EB8B10B_CHAN_BOND_SEQ_1_3": CHARACTER,
    },
    "RX_ELASTIC_BUF_CFG5": {
        "EB8B10B_CHAN_BOND_SEQ_2_2": CHARACTER,
        "EB8B10B_CHAN_BOND_SEQ_2_USE": 1,
        "EB8B10B_CHAN_BOND_SEQ_2_1": CHARACTER,
        "EB8B10B_CHAN_BOND_SEQ_1_4": CHARACTER,
    },
    "RX_ELASTIC_BUF_CFG6": {
        "EB8B10B_CHAN_BOND_SEQ_2_EN": 4,
        "EB8B10B_CHAN_BOND_SEQ_2_4": CHARACTER,
        "EB8B10B_CHAN_BOND_SEQ_1_EN": 4,
        "EB8B10B_CHAN_BOND_SEQ_2_3": CHARACTER,
    },
    "RX_ELASTIC_BUF_CFG7": {
        "EB8B10B_ADDR_MODE": 1,
        "EB8B10B_CHAN_BOND_EN": 1,
        "EB8B10B_CHAN_BOND_MAX_SKEW": 4,
    },
    "RX_ELASTIC_BUF_CFG8": flags("ELASTICBUF_128B130B_EN"),
    "RX_ELASTIC_BUF_CFG9": flags("EB128B130B_16_EN"),
    "RX_MISC_CFG0": flags("RX_XMODE_SEL"),
    "RX_PHALIGN_CFG0": {
        "DAPI_BUFG_DIV": 10,
        "SYNC_MODE": 2,
        **flags("DLY_ALIGN_EN", "PH_ALIGN_EN", "RXBUF_BYPASS_MODE", "SYNC_MULTI_LANE"),
    },
    "RX_PHALIGN_CFG1": {"SETINIT_PH_CNT": 5, "ASYNC_GBOX_PHALIGN_EN": 1, "CHAIN_MODE": 2},
    "RX_PHALIGN_CFG3": {"MLDLY_SETINIT_PH_CNT": 5},
    "RX_PHALIGN_CFG4": flags("FINE_ALIGN_BYPASS"),
    "RX_PHALIGN_CFG5": {
        "RX_BUFBYPASS_ML_NEGEDGE_MODE": 1,
        "CMN_FAB_CLK_PHALIGN_MODE": 2,
        "TX_BUFBYPASS_ML_NEGEDGE_MODE": 1,
    },
    "RXRSTDONE_DIST_SEL": reset_done_selects(),
}

TX_WIDTHS = {
    "TX_PCS_CFG0": {
        "TX_DATA_WIDTH": 4,
        "TX_INT_DATA_WIDTH": 2,
        "TX_8B10B_EN": 1,
        "TX_PMA_DATA_SEL": 3,
        "FIFO_INIT_RD_ADDR": 4,
        "USE_GB": 1,
        "MODE": 5,
    },
    "PIPE_TX_EQ_CFG0": {"TX_DRIVE_MODE": 2},
    "PIPE_TX_EQ_CFG3": {"TX_DEEMPH_0": 5, "TX_DEEMPH_1": 5, "TX_DEEMPH_2": 5, "TX_DEEMPH_3": 5},
    "TX_DRV_CFG0": {"TX_CTL_DRV_EN": 3},
    "TX_PCS_CFG3": flags("TX_PHASE_BUFFER_USE", "TX_DEDICATED_CCIX_CHICO_PATH_EN"),
    "TX_PHALIGN_CFG0": {
        "DAPI_BUFG_DIV": 10,
        "SYNC_MODE": 2,
        **flags("DLY_ALIGN_EN", "PH_ALIGN_EN", "TXBUF_BYPASS_MODE", "SYNC_MULTI_LANE"),
    },
    "TX_PHALIGN_CFG1": {"SETINIT_PH_CNT": 5, "ASYNC_GBOX_PHALIGN_EN": 1, "CHAIN_MODE": 2},
    "TX_PHALIGN_CFG2": {"TXPI_SETINIT_PH_CNT": 5},
    "TX_PHALIGN_CFG4": {"MLDLY_SETINIT_PH_CNT": 5},
    "TX_PHALIGN_CFG5": {"TXPI_PMA_DIV": 11},
    "TXRSTDONE_DIST_SEL": reset_done_selects(),
}

SXB_WIDTHS = {
    f"{register}.{field}": width
    for rule_set in (RX_WIDTHS, TX_WIDTHS, PLL_WIDTHS)
    for register, fields in rule_set.items()
    for field, width in fields.items()
}
