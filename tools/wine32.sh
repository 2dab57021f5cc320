#!/usr/bin/env bash
# Runs 32-bit programs for Windows on a machine that has 64-bit packages only: under the wine of a small
# 32-bit root, which is made once (a minute or two, 1.5 GB).
#
#   tools/wine32.sh --setup [DIR]        makes the root, if it is not there yet
#   tools/wine32.sh PROGRAM [ARGS...]    runs a program by its path, or one of wine's own: regsvr32, cscript
#
# DIR, else ORV2_WINE32_ROOT, else build/wine32 of the repository is the root's folder. The program sees the
# repository, the folder that it lies in and those of ORV2_WINE32_FOLDERS (parted by colons) at the paths that
# they have outside, which wine also takes as Z:\path. What it registers stays in the root:
# ORV2_WINE32_PREFIX names another set of registrations. Runs of one root wait for one another. It takes the
# rights of the machine's administrator.
set -euo pipefail

here=$(cd "$(dirname "$0")/.." && pwd)
. "$here/tools/minimal_root.sh"

usage() {
  sed -n '2,/^set /{/^set /d;s/^# \{0,1\}//;p}' "$0" >&2
  exit 2
}

make_root() {
  local unfinished="$root.unfinished"
  rm -rf --one-file-system "$root"
  bootstrap "$unfinished" i386 wine32,wine
  mkdir -p "$unfinished/prefixes"
  mv "$unfinished" "$root"
}

# In mount and process namespaces of its own: with the program everything that it started and all that is
# mounted below is gone. What it registered is written when wine's server is told to end.
inside='
  set -eu
  root=$1 folders=$2; shift 2
  mount -t proc proc "$root/proc"
  mount --rbind /dev "$root/dev"
  IFS=:
  for folder in $folders; do
    if [ -d "$folder" ]; then mkdir -p "$root$folder"; mount --bind "$folder" "$root$folder"; fi
  done
  unset IFS
  exec chroot "$root" /bin/sh -c '\''
    cd "$1" 2>/dev/null || cd /; shift
    status=0; wine "$@" || status=$?
    wineserver -k || true
    exit $status'\'' sh "$PWD" "$@"
'

run() {
  local folders="$here:/tmp/.X11-unix:${ORV2_WINE32_FOLDERS:-}"
  if [ -f "$1" ]; then
    local program
    program=$(realpath "$1")
    folders="$folders:$(dirname "$program")"
    shift
    set -- "$program" "$@"
  fi
  env -u TMPDIR -u XDG_RUNTIME_DIR HOME=/root PATH=/usr/bin:/bin:/usr/sbin:/sbin LC_ALL="${LC_ALL:-C.UTF-8}" \
    WINEPREFIX="/prefixes/${ORV2_WINE32_PREFIX:-default}" WINEDEBUG="${WINEDEBUG:--all}" \
    WINEDLLOVERRIDES="${WINEDLLOVERRIDES:-mscoree,mshtml=}" \
    unshare --mount --propagation private --pid --fork --kill-child \
    /bin/sh -c "$inside" sh "$root" "$folders" "$@" 9>&-
}

[ $# -ge 1 ] || usage
root=${ORV2_WINE32_ROOT:-$here/build/wine32}
setup_only=false
case "$1" in
  --setup) setup_only=true; root=${2:-$root} ;;
  -*) usage ;;
esac
[ "$(id -u)" -eq 0 ] || { echo "wine32: not run by the machine's administrator" >&2; exit 1; }
mkdir -p "$(dirname "$root")"
root=$(realpath -m "$root")

exec 9>"$root.lock"
flock 9
if [ ! -d "$root" ]; then make_root; fi
if $setup_only; then run wineboot -i; else run "$@"; fi
