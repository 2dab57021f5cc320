#!/usr/bin/env bash
# Runs a program for Windows: tools/wine.sh PROGRAM [WORD...]. The system that it sees
# stands in WINEPREFIX, or in wine/ of the build tree around the program, and is made
# with the first run; ORV2_DPI are then its screen's dots per inch. Without DISPLAY it has
# no screen.
set -euo pipefail
if [ $# -eq 0 ]; then
  echo "usage: tools/wine.sh PROGRAM [WORD...]" >&2
  exit 2
fi
if [ -z "${WINEPREFIX:-}" ]; then
  folder="$(cd "$(dirname "$1")" && pwd)"
  while [ "$folder" != / ] && [ ! -e "$folder/CMakeCache.txt" ]; do folder="$(dirname "$folder")"; done
  if [ "$folder" = / ]; then folder="${TMPDIR:-/tmp}/orv2_geo_$(id -u)"; fi
  export WINEPREFIX="$folder/wine"
fi
export WINEDEBUG="${WINEDEBUG:--all}" WINEARCH=win64
# Neither a browser, a run-time of other languages nor the menus of a desktop are asked for.
export WINEDLLOVERRIDES="${WINEDLLOVERRIDES:-mscoree,mshtml=;winemenubuilder.exe=d}"
wine="$(command -v wine64 || command -v /usr/lib/wine/wine64)"

# One makes it, others wait.
made="$WINEPREFIX/made_by_orv2_geo"
if [ ! -e "$made" ]; then
  mkdir -p "$WINEPREFIX"
  exec 9> "$WINEPREFIX/lock"
  flock 9
  if [ ! -e "$made" ]; then
    env -u DISPLAY "$wine" wineboot --init >> "$WINEPREFIX/made.log" 2>&1 9>&-
    # A window manager gives its windows the keyboard as any others.
    env -u DISPLAY "$wine" reg add 'HKCU\Software\Wine\X11 Driver' /v UseTakeFocus /d N \
      /f >> "$WINEPREFIX/made.log" 2>&1 9>&-
    if [ -n "${ORV2_DPI:-}" ]; then
      env -u DISPLAY "$wine" reg add 'HKCU\Control Panel\Desktop' /v LogPixels /t REG_DWORD \
        /d "$ORV2_DPI" /f >> "$WINEPREFIX/made.log" 2>&1 9>&-
    fi
    env -u DISPLAY "$(command -v wineserver)" --wait 9>&-
    touch "$made"
  fi
  exec 9>&-
fi
if [ "${ORV2_WINE_ONLY_MADE:-}" ]; then exit 0; fi
exec "$wine" "$@"
