#!/bin/sh
# What the shared library shows to the outside, and what it needs from there.
#   shared_library_test.sh exports|needs|soname|hardened LIBRARY [HEADER]
set -u
export LC_ALL=C
library=$2

# Prints the lines of standard input under a title and fails, when there are any.
refuse() {
  unwanted=$(cat)
  [ -z "$unwanted" ] && return 0
  printf '%s:\n%s\n' "$1" "$unwanted"
  return 1
}

# Without the versions, which are names of their own too.
exported() { nm -D --defined-only --demangle "$library" | grep -v ' A ' |
  sed 's/^[0-9a-f]* . //; s/@@ORV2_.*//'; }

# The functions that the header declares, and the ones that the library has.
declared() { tr '\n' ' ' <"$1" | grep -o 'ORV2_CALL [a-z0-9_]* orv2_[a-z_]*(' |
  sed 's/.* //; s/(//' | sort; }
has() { exported | grep '^orv2_[a-z_]*$' | sort; }

test_exports() {
  names=$(mktemp -d) || exit 1
  trap 'rm -rf "$names"' EXIT
  declared "$1" >"$names/declared"
  has >"$names/has"
  [ -s "$names/declared" ] || { echo "no functions in $1"; exit 1; }
  status=0
  exported | grep -Ev '^orv2_[a-z_]+$|^((typeinfo|typeinfo name|vtable) for )?orv2_geo::' |
    refuse "exported, but of no one's interface" || status=1
  comm -23 "$names/declared" "$names/has" | refuse "declared, but not exported" || status=1
  comm -13 "$names/declared" "$names/has" | refuse "exported, but not declared" || status=1
  exit $status
}

test_needs() {
  needed=$(ldd "$library") || { echo "ldd failed: $needed"; exit 1; }
  printf '%s\n' "$needed" | grep -q 'libc\.' || { echo "no libc in: $needed"; exit 1; }
  printf '%s\n' "$needed" |
    grep -Ev '^[[:space:]]*((linux-vdso|linux-gate|libstdc\+\+|libm|libgcc_s|libc)\.so|/.*/ld-linux)' |
    refuse "needed, but not everywhere to be had" || exit 1
}

test_soname() {
  readelf -d "$library" | grep -q 'SONAME.*\[liborv2_geo\.so\.2\]' && exit 0
  echo "soname is not liborv2_geo.so.2:"
  readelf -d "$library" | grep SONAME
  exit 1
}

# Tables are filled on loading and not writable from then on, neither stack nor texts of code can
# be written and run, and functions with blocks on the stack look whether they were overrun.
test_hardened() {
  status=0
  for wanted in GNU_RELRO BIND_NOW; do
    readelf -lW -d "$library" | grep -q "$wanted" || { echo "no $wanted"; status=1; }
  done
  readelf -lW "$library" | grep -E 'GNU_STACK.* RWE|LOAD.* RWE' | refuse "can be written and run" || status=1
  readelf -dW "$library" | grep -E 'TEXTREL|RPATH|RUNPATH' | refuse "not wanted" || status=1
  nm -D --undefined-only "$library" | grep -q __stack_chk_fail || { echo "no stack protector"; status=1; }
  exit $status
}

case $1 in
  exports) test_exports "$3" ;;
  needs) test_needs ;;
  soname) test_soname ;;
  hardened) test_hardened ;;
  *) echo "what is $1?"; exit 1 ;;
esac
