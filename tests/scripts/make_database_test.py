#!/usr/bin/env python3
"""Tests of the parts of scripts/make_database.py."""

import sys
import tempfile
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "scripts"))

from database.families import DATABASES, LIMITS
from database.parameters import load_parameters, parameters_of
from database.placement import Layout, LayoutError, place_registers

ALL_CHANNEL = [("*", "channel")]


def constant(name, value):
    return {"name": name, "kind": "constant", "value": value}


def logic(name):
    return {"name": name, "kind": "logic"}


def whole(name, *fields):
    return {"name": name, "kind": "register", "fields": list(fields)}


def places(fields, **decisions):
    layout = Layout(block_types=ALL_CHANNEL, **decisions)
    return place_registers([whole("A_CFG", *fields)], layout)["A_CFG"]["fields"]


class Placement(unittest.TestCase):
    def test_fields_follow_each_other_with_the_bits_they_need(self):
        made = places([constant("X", 0), constant("Y", 6), constant("Z", 1)])
        self.assertEqual(made, {"A_CFG.X": [0, 1], "A_CFG.Y": [1, 3], "A_CFG.Z": [4, 1]})

    def test_a_copied_flag_has_one_bit(self):
        flag = {"name": "ENABLE", "kind": "copy", "source": "PCIE_ENABLE"}
        self.assertEqual(places([flag]), {"A_CFG.ENABLE": [0, 1]})

    def test_a_constant_may_fill_the_word(self):
        self.assertEqual(places([constant("X", 2**32 - 1)]), {"A_CFG.X": [0, 32]})

    def test_a_decided_width_leaves_room(self):
        made = places([constant("X", 1), constant("Y", 1)], widths={"A_CFG.X": 8})
        self.assertEqual(made, {"A_CFG.X": [0, 8], "A_CFG.Y": [8, 1]})

    def test_others_flow_around_pinned_fields_and_order_stays(self):
        made = places(
            [constant("X", 7), constant("Y", 7), constant("PIN", 1)], pinned={"A_CFG.PIN": (3, 2)}
        )
        self.assertEqual(list(made.items()), [
            ("A_CFG.X", [0, 3]), ("A_CFG.Y", [5, 3]), ("A_CFG.PIN", [3, 2])])

    def test_a_narrowed_constant_of_a_full_word_keeps_its_width(self):
        made = places([constant("X", 2**30 - 1), constant("Y", 99)], narrowed={"A_CFG.Y": 2})
        self.assertEqual(made, {"A_CFG.X": [0, 30], "A_CFG.Y": [30, 2]})

    def test_narrowing_that_narrows_nothing_is_refused(self):
        # 99 needs seven bits, a computed field any width.
        for width in (7, 8, 32):
            with self.assertRaisesRegex(LayoutError, "A_CFG.X"):
                places([constant("X", 99)], narrowed={"A_CFG.X": width})
        with self.assertRaisesRegex(LayoutError, "A_CFG.X"):
            places([logic("X")], narrowed={"A_CFG.X": 1})

    def test_narrowing_to_no_bit_is_refused(self):
        for width in (0, -1):
            with self.assertRaisesRegex(LayoutError, "A_CFG.Y"):
                places([constant("X", 2**32 - 1), constant("Y", 99)], narrowed={"A_CFG.Y": width})

    def test_narrowing_in_a_word_with_free_bits_is_refused(self):
        with self.assertRaisesRegex(LayoutError, "A_CFG.Y is narrowed, yet A_CFG has free bits"):
            places([constant("X", 2**29 - 1), constant("Y", 99)], narrowed={"A_CFG.Y": 2})

    def test_two_widths_for_a_field_are_refused(self):
        pinned = {"A_CFG.X": (0, 8)}
        for decisions in (
            {"pinned": pinned, "widths": {"A_CFG.X": 9}},
            {"pinned": pinned, "narrowed": {"A_CFG.X": 2}},
            {"widths": {"A_CFG.X": 8}, "narrowed": {"A_CFG.X": 2}},
        ):
            with self.assertRaisesRegex(LayoutError, "A_CFG.X .* another decided width"):
                places([constant("X", 99)], **decisions)

    def test_shared_pins_of_fields_that_are_not_there_do_nothing(self):
        self.assertEqual(places([constant("X", 1)], pinned={"A_CFG.Y": (0, 8)}), {"A_CFG.X": [0, 1]})

    def test_widths_and_narrowing_of_fields_that_are_not_there_are_refused(self):
        for name in ("A_CFG.Y", "A_CFG.x", "B_CFG.X", "A_CFG", "X"):
            with self.assertRaisesRegex(LayoutError, f"widths .*: {name}$"):
                places([constant("X", 1)], widths={"A_CFG.X": 2, name: 8})
            with self.assertRaisesRegex(LayoutError, f"narrowed .*: {name}$"):
                places([constant("X", 1)], narrowed={name: 1})

    def test_a_computed_field_needs_a_decided_width(self):
        self.assertEqual(places([logic("X")], widths={"A_CFG.X": 5}), {"A_CFG.X": [0, 5]})
        with self.assertRaisesRegex(LayoutError, "A_CFG.X"):
            places([logic("X")])

    def test_a_width_below_the_constant_is_refused(self):
        with self.assertRaisesRegex(LayoutError, "A_CFG.X"):
            places([constant("X", 8)], widths={"A_CFG.X": 3})
        with self.assertRaisesRegex(LayoutError, "A_CFG.X"):
            places([constant("X", 8)], pinned={"A_CFG.X": (0, 3)})

    def test_a_word_that_overflows_is_refused(self):
        with self.assertRaisesRegex(LayoutError, "A_CFG.Y"):
            places([constant("X", 2**31), constant("Y", 0)])

    def test_pins_that_collide_or_leave_the_word_are_refused(self):
        fields = [constant("X", 1), constant("Y", 1)]
        with self.assertRaisesRegex(LayoutError, "A_CFG.Y"):
            places(fields, pinned={"A_CFG.X": (0, 2), "A_CFG.Y": (1, 1)})
        with self.assertRaisesRegex(LayoutError, "A_CFG.Y"):
            places(fields, pinned={"A_CFG.Y": (30, 4)})

    def test_a_field_that_stands_twice_is_refused(self):
        with self.assertRaisesRegex(LayoutError, "A_CFG"):
            places([constant("X", 1), constant("X", 2)])

    def test_registers_count_on_over_the_blocks_and_steps_are_none(self):
        layout = Layout(block_types=[("A_*", "ctrl_0"), ("*", "channel")])
        made = place_registers([
            {"name": "solver", "kind": "step"},
            {"name": "B_CFG", "kind": "fields", "fields": [constant("X", 1)]},
            whole("A_CFG"),
            {"name": "B_CFG", "kind": "fields", "fields": [constant("Y", 1)]},
            {"name": "B_CFG", "kind": "word"},
            {"name": "C_CFG", "kind": "constantWord", "value": 7},
        ], layout)
        self.assertEqual(made, {
            "B_CFG": {"dstSubBlock": "channel", "Offset": "0x00",
                      "fields": {"B_CFG.X": [0, 1], "B_CFG.Y": [1, 1]}},
            "A_CFG": {"dstSubBlock": "ctrl_0", "Offset": "0x01", "fields": {}},
            "C_CFG": {"dstSubBlock": "channel", "Offset": "0x02", "fields": {}},
        })

    def test_ports_follow_the_registers_without_fields(self):
        layout = Layout(block_types=ALL_CHANNEL, ports={"SELECT": "CH_PORT"})
        made = place_registers([whole("A_CFG", constant("X", 1))], layout)
        self.assertEqual(list(made.items()), [
            ("A_CFG", {"dstSubBlock": "channel", "Offset": "0x00", "fields": {"A_CFG.X": [0, 1]}}),
            ("SELECT", {"dstSubBlock": "CH_PORT", "Offset": "0x01", "fields": {}})])

    def test_a_port_with_the_name_of_a_register_is_refused(self):
        layout = Layout(block_types=ALL_CHANNEL, ports={"A_CFG": "CH_PORT"})
        with self.assertRaisesRegex(LayoutError, "port"):
            place_registers([whole("A_CFG")], layout)

    def test_a_register_without_a_block_type_is_refused(self):
        with self.assertRaisesRegex(LayoutError, "B_CFG"):
            place_registers([whole("B_CFG")], Layout(block_types=[("A_*", "channel")]))

    def test_more_registers_than_offsets_are_refused(self):
        entries = [whole(f"R{number}") for number in range(257)]
        layout = Layout(block_types=ALL_CHANNEL)
        self.assertEqual(place_registers(entries[:256], layout)["R255"]["Offset"], "0xFF")
        with self.assertRaises(LayoutError):
            place_registers(entries, layout)


class Parameters(unittest.TestCase):
    def test_rows_expand_over_channels_and_sequences_and_name_the_unit(self):
        rows = [
            {"name": "RX_CH{n}_POSITION", "type": "string", "unit": "", "default": "single",
             "families": "SXB SXC", "description": "Channel {n}"},
            {"name": "RX_CC_K_{s}_{n}", "type": "bool", "unit": "", "default": "false",
             "families": "SXB", "description": "Sequence {s}, element {n}"},
            {"name": "RX_LINE_RATE", "type": "double", "unit": "Gb/s", "default": "10.3125",
             "families": "SXA SXC", "description": "Line rate"},
        ]
        made = parameters_of("SXC", rows)
        self.assertEqual(list(made), [f"RX_CH{n}_POSITION" for n in range(4)] + ["RX_LINE_RATE"])
        self.assertEqual(made["RX_CH3_POSITION"]["description"], "Channel 3")
        self.assertEqual(made["RX_LINE_RATE"], {
            "type": "double", "description": "Line rate (Gb/s)", "default_value": "10.3125"})
        sequences = parameters_of("SXB", rows)
        self.assertEqual(len(sequences), 4 + 8)
        self.assertEqual(sequences["RX_CC_K_1_2"]["description"], "Sequence 1, element 2")

    def test_a_database_may_have_other_defaults_of_parameters_that_are_there(self):
        rows = [{"name": name, "type": "bool", "unit": "", "default": "false", "families": "SXB",
                 "description": "Use"} for name in ("TX_IN_USE", "RX_IN_USE")]
        made = parameters_of("SXB", rows, {"TX_IN_USE": "true"})
        self.assertEqual(made["TX_IN_USE"]["default_value"], "true")
        self.assertEqual(made["RX_IN_USE"]["default_value"], "false")
        with self.assertRaisesRegex(KeyError, "TX_USED"):
            parameters_of("SXB", rows, {"TX_USED": "true"})

    def test_the_table_has_every_parameter_of_a_family_once_with_known_types_and_families(self):
        rows = load_parameters()
        names = [(row["name"], family) for row in rows for family in row["families"].split()]
        self.assertEqual(len(names), len(set(names)))
        for row in rows:
            self.assertIn(row["type"], ("string", "int", "bool", "float", "double"), row["name"])
            self.assertTrue(set(row["families"].split()) <= {"SXA", "SXB", "SXC", "SXD4"})
            self.assertTrue(row["description"] and row["default"], row["name"])

    def test_each_family_has_its_count(self):
        rows = load_parameters()
        counts = {f: len(parameters_of(f, rows)) for f in ("SXA", "SXB", "SXC", "SXD4")}
        self.assertEqual(counts, {"SXA": 14, "SXB": 171, "SXC": 167, "SXD4": 41})


class Limits(unittest.TestCase):
    def test_families_of_two_plls_have_a_range_for_each_in_gigahertz(self):
        for family in ("SXA", "SXB", "SXC"):
            self.assertEqual(LIMITS[family], {
                "FLCPLLRANGE_MIN": "8.0", "FLCPLLRANGE_MAX": "16.375",
                "FRPLLRANGE_MIN": "4.0", "FRPLLRANGE_MAX": "8.0"}, family)

    def test_the_family_of_one_pll_has_its_range_and_the_halving_threshold(self):
        self.assertEqual(LIMITS["SXD4"], {
            "FLCPLLRANGE_MIN": "9.8", "FLCPLLRANGE_MAX": "14.5", "FSXDLCRANGE_MIN": "9.8"})

    def test_no_other_family_has_limits(self):
        self.assertEqual(set(LIMITS), {"SXA", "SXB", "SXC", "SXD4"})

    def test_a_database_has_the_limits_of_its_family(self):
        for name, database in DATABASES.items():
            self.assertEqual(database.limits, LIMITS[database.family], name)


class Command(unittest.TestCase):
    def test_a_failing_program_is_reported_and_nothing_is_written(self):
        import subprocess

        script = Path(__file__).resolve().parents[2] / "scripts" / "make_database.py"
        with tempfile.TemporaryDirectory() as folder:
            run = subprocess.run(
                [sys.executable, script, "--catalogue-dump", "/bin/false", "--output", folder],
                stderr=subprocess.PIPE, encoding="utf-8")
            self.assertEqual(run.returncode, 1)
            self.assertIn("make_database: ", run.stderr)
            self.assertEqual(list(Path(folder).iterdir()), [])

    def test_families_are_those_that_have_data(self):
        data = Path(__file__).resolve().parents[2] / "data"
        folders = {path.parent.name for path in data.glob("*/registers.json")}
        self.assertEqual(set(DATABASES), folders)


if __name__ == "__main__":
    unittest.main()
