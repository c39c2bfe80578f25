#!/bin/sh
# Puts the rate table of a quad into the firmware ELF of its embedded controller.
#
# Usage: update_elf.sh TOOL ELF_FILE WORK_DIR_BASE RATE_TABLE_FILE INSTANCE_NAME
#
#   TOOL             object-copy tool of the controller's tool chain
#   ELF_FILE         firmware to change in place; a relative path counts from WORK_DIR_BASE
#   WORK_DIR_BASE    directory that the generated files end up in
#   RATE_TABLE_FILE  text of binary digits, 32 for a word, most significant first
#   INSTANCE_NAME    named in the messages
#
# Each word goes into the section .rate_table with its least significant byte first. The section
# keeps its size: what the table does not fill is 0, and a table that does not fit is refused. The
# ELF file stays as it is unless all has worked out. Messages go to the standard outputs, which the
# library keeps in elfUpdator.log.
set -eu
# Digits are bytes, whatever the language of the caller.
LC_ALL=C
export LC_ALL

section=.rate_table
instance='?'

fail() {
    printf 'update_elf: %s: %s\n' "$instance" "$1" >&2
    exit 1
}

# Standard input is lines of 32 binary digits; gives each byte as an octal escape, the least
# significant byte of a word first.
octal_escapes() {
    awk '
        length($0) != 32 || /[^01]/ { exit 1 }
        {
            for (first = 25; first >= 1; first -= 8) {
                byte = 0
                for (bit = first; bit < first + 8; ++bit)
                    byte = 2 * byte + substr($0, bit, 1)
                printf "\\%03o", byte
            }
        }'
}

size_of() {
    wc -c <"$1" | tr -d ' '
}

# Writes the bytes of the digit text $1 to the file $2.
write_words() {
    [ -s "$1" ] || fail "the rate table $1 is empty"
    escapes=$(fold -w 32 "$1" | octal_escapes) ||
        fail "the rate table $1 is not made of words of 32 binary digits"
    # The escapes are the format itself, so that bytes of 0 come out too.
    # shellcheck disable=SC2059
    printf "$escapes" >"$2"
}

# Appends bytes of 0 to the file $1 until it has $2 bytes.
fill_up() {
    missing=$(($2 - $(size_of "$1")))
    [ "$missing" -eq 0 ] || head -c "$missing" /dev/zero >>"$1"
}

[ $# -eq 5 ] || fail "expected 5 arguments, got $#"
tool=$1
elf_file=$2
work_dir_base=$3
rate_table_file=$4
instance=$5

case $elf_file in
    /*) ;;
    *) elf_file=$work_dir_base/$elf_file ;;
esac
[ -f "$elf_file" ] || fail "there is no ELF file $elf_file"
[ -f "$rate_table_file" ] || fail "there is no rate table $rate_table_file"

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

write_words "$rate_table_file" "$scratch/table"
table_size=$(size_of "$scratch/table")

"$tool" --dump-section "$section=$scratch/section" "$elf_file" "$scratch/unchanged" &&
    [ -f "$scratch/section" ] || fail "can't read the section $section of $elf_file"
section_size=$(size_of "$scratch/section")
[ "$table_size" -le "$section_size" ] ||
    fail "the rate table has $table_size bytes, the section $section of $elf_file $section_size"

fill_up "$scratch/table" "$section_size"
"$tool" --update-section "$section=$scratch/table" "$elf_file" "$scratch/updated" ||
    fail "can't replace the section $section of $elf_file"
# Writing into the file keeps its owner, its permissions and its links.
cat "$scratch/updated" >"$elf_file" || fail "can't write $elf_file"
printf 'update_elf: %s: put a rate table of %s bytes into %s\n' \
    "$instance" "$table_size" "$elf_file"
