#!/bin/sh
# Makes a small ELF file to try update_elf.sh on, with the assembler and linker of this machine.
#
# Usage: make_elf.sh OUTPUT [SECTION_BYTES]
#
# It has a little code at 0x8050 and the section .rate_table at 0x16000, filled with 0xa5. The
# section has room for SECTION_BYTES, by default 8192, the size of the controller's table memory.
set -eu

if [ $# -lt 1 ] || [ $# -gt 2 ]; then
    echo "usage: make_elf.sh OUTPUT [SECTION_BYTES]" >&2
    exit 2
fi
case $1 in
    -*) output=./$1 ;;
    *) output=$1 ;;
esac
section_bytes=${2:-8192}

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

"${AS:-as}" -o "$scratch/firmware.o" - <<SOURCE
    .section .text
    .globl _start
_start:
    .long 0xfe008050
    .section .rate_table, "aw"
    .fill $section_bytes, 1, 0xa5
SOURCE
"${LD:-ld}" --section-start=.text=0x8050 --section-start=.rate_table=0x16000 \
    -o "$output" "$scratch/firmware.o"
