"""Places the fields of a rule catalogue in register words."""

from dataclasses import dataclass, field
from fnmatch import fnmatchcase

WORD_BITS = 32
# Blocks start 256 words apart, so registers of different blocks never share an address.
LAST_OFFSET = 0xFF


class LayoutError(Exception):
    """The layout data does not fit the catalogue."""


@dataclass(frozen=True)
class Layout:
    """What is decided about a family's registers; all else follows from its constants."""

    # (pattern of register names, block type); the first that matches counts.
    block_types: list
    # "REGISTER.FIELD" to (bit offset, width), for fields whose place something depends on. Families
    # share them, so a family may lack some; the names below have to be there.
    pinned: dict = field(default_factory=dict)
    # "REGISTER.FIELD" to width, for computed fields and for constants with room to grow.
    widths: dict = field(default_factory=dict)
    # "REGISTER.FIELD" to width, for constants that can't all fit their register.
    narrowed: dict = field(default_factory=dict)
    # Name to block type, for ports: variables that are reported like words and have no fields.
    ports: dict = field(default_factory=dict)


def registers_of(entries):
    """Register names with their fields, in the order of first appearance."""
    registers = {}
    for entry in entries:
        if entry["kind"] != "step":
            registers.setdefault(entry["name"], []).extend(entry.get("fields", []))
    return registers


def block_type_of(register, layout):
    for pattern, block_type in layout.block_types:
        if fnmatchcase(register, pattern):
            return block_type
    raise LayoutError(f"no block type for register {register}")


def narrowed_width(name, needed, layout):
    width = layout.narrowed[name]
    if name in layout.pinned or name in layout.widths:
        raise LayoutError(f"{name} is narrowed and has another decided width too")
    if not 1 <= width < needed:
        raise LayoutError(f"{name} needs {needed} bits, {width} do not narrow it")
    return width


def width_of(name, entry, layout):
    needed = max(1, entry.get("value", 0).bit_length())
    if name in layout.narrowed:
        return narrowed_width(name, needed, layout)
    if name in layout.pinned and name in layout.widths:
        raise LayoutError(f"{name} is pinned and has another decided width too")
    decided = layout.pinned[name][1] if name in layout.pinned else layout.widths.get(name)
    if decided is None and entry["kind"] in ("logic", "shared"):
        raise LayoutError(f"the computed field {name} needs a width in the layout")
    if decided is not None and decided < needed:
        raise LayoutError(f"{name} needs {needed} bits, the layout gives it {decided}")
    return decided or needed


def bits_of(place):
    offset, width = place
    return ((1 << width) - 1) << offset


def first_free(width, used, name):
    for offset in range(WORD_BITS - width + 1):
        if not used & bits_of((offset, width)):
            return offset
    raise LayoutError(f"no room for the {width} bits of {name}")


def place_fields(register, fields, layout):
    """Pinned fields where they belong, the others from bit 0 upwards in catalogue order."""
    places = {}
    used = 0

    def take(name, place):
        nonlocal used
        if bits_of(place) >> WORD_BITS or used & bits_of(place):
            raise LayoutError(f"the pinned place of {name} is outside the word or taken")
        used |= bits_of(place)
        places[name] = place

    names = {f"{register}.{entry['name']}": entry for entry in fields}
    if len(names) != len(fields):
        raise LayoutError(f"a field of {register} stands twice")
    widths = {name: width_of(name, entry, layout) for name, entry in names.items()}
    for name in names:
        if name in layout.pinned:
            take(name, layout.pinned[name])
    for name, width in widths.items():
        if name not in places:
            take(name, (first_free(width, used, name), width))
    needless = sorted(names.keys() & layout.narrowed.keys())
    if needless and used != bits_of((0, WORD_BITS)):
        raise LayoutError(f"{needless[0]} is narrowed, yet {register} has free bits")
    return {name: list(places[name]) for name in names}


def refuse_unknown_names(registers, layout):
    """A misspelt name would leave its field without the decision."""
    known = {
        f"{register}.{entry['name']}" for register, fields in registers.items() for entry in fields
    }
    for decision, names in (("widths", layout.widths), ("narrowed", layout.narrowed)):
        unknown = sorted(names.keys() - known)
        if unknown:
            raise LayoutError(f"{decision} names fields that are not there: {', '.join(unknown)}")


def place_registers(entries, layout):
    """The content of registers.json. Offsets count on over all blocks of the family, and over its
    ports behind them."""
    placed = {}
    registers = registers_of(entries)
    refuse_unknown_names(registers, layout)
    types = {register: block_type_of(register, layout) for register in registers} | layout.ports
    if len(types) != len(registers) + len(layout.ports):
        raise LayoutError("a port has the name of a register")
    for offset, (register, block_type) in enumerate(types.items()):
        if offset > LAST_OFFSET:
            raise LayoutError("more registers than a block has offsets")
        placed[register] = {
            "dstSubBlock": block_type,
            "Offset": f"0x{offset:02X}",
            "fields": place_fields(register, registers.get(register, []), layout),
        }
    return placed
