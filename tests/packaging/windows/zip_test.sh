#!/usr/bin/env bash
# Uses the zip for Windows as somebody who has nothing else:
#
#   zip_test.sh RUNNER WORD GCC CLANG_TARGET WORK
#
# RUNNER is tools/wine.sh or tools/wine32.sh, WORD the folder of its servers, x64 or x86.
set -euo pipefail
runner=$1 word=$2 gcc=$3 clang_target=$4 work=$5
here=$(cd "$(dirname "$0")" && pwd)
export LC_ALL=C.UTF-8
rm -rf "$work"
mkdir -p "$work"
unzip -q "$here"/../../../build/package/windows/*.zip -d "$work"
cd "$work"/orv2-geo-*-windows
trap '"$runner" cmd /c unregister.cmd /s > /dev/null 2>&1 || true' EXIT

# said STATUS COMMAND...: a run that is to end with that status; its words.
said() {
  local wanted=$1 status=0 words
  shift
  words=$("$runner" "$@" 2>&1) || status=$?
  [ "$status" -eq "$wanted" ] || { echo "$* ended with $status, not $wanted: $words" >&2; exit 1; }
  tr -d '\r' <<< "$words"
}
ok() { echo "ok $*"; }

for file in *.cmd *.md *.txt; do
  [ "$(grep -c $'\r$' "$file")" -eq "$(wc -l < "$file")" ] || { echo "$file has other line ends" >&2; exit 1; }
done
ok "line ends"

said 0 cmd /c register.cmd /s > /dev/null
cd examples
diff sample_report.txt <(said 0 cscript //nologo survey_report.vbs sample_survey.csv)
ok "registered, the script's report"
cd ..
said 0 cmd /c unregister.cmd /s > /dev/null
cd examples
said 3 cscript //nologo survey_report.vbs sample_survey.csv > /dev/null
ok "no longer registered"
cd ..

"$gcc" -std=c++20 -static -Iinclude examples/client.cpp -o "$word/client.exe" -lole32 -loleaut32 -luuid
diff examples/client_output.txt <(said 0 "$word/client.exe")
ok "the client in C++, by its manifest"

identifier=$(sed -n '/coclass cgeo_Algorismos/{x;p;};h' include/Orv2_Geo.idl | sed 's/.*uuid(\([^)]*\)).*/\1/')
[[ $identifier =~ ^(.{8})-(.{4})-(.{4})-(..)(..)-(..)(..)(..)(..)(..)(..)$ ]]
m=("${BASH_REMATCH[@]}")
algorithms="{0x${m[1]}, 0x${m[2]}, 0x${m[3]}, {0x${m[4]}, 0x${m[5]}, 0x${m[6]}, 0x${m[7]}, 0x${m[8]}, 0x${m[9]}, 0x${m[10]}, 0x${m[11]}}}"
entry=start
[ "$word" = x64 ] || entry=_start
"$gcc" -O1 -ffreestanding -nostdlib "-DALGORITHMS=$algorithms" -Wl,-e,$entry -x c "$here/linked.c" -x none \
  -L"$word/lib" -lOrv2_Geo -lkernel32 -o "$word/linked.exe"
said 42 "$word/linked.exe"
ok "linked by gcc's import library"
clang --target="$clang_target" -O1 -ffreestanding "-DALGORITHMS=$algorithms" -c "$here/linked.c" -o "$work/linked.obj"
kernel=$("$gcc" -print-file-name=libkernel32.a)
lld-link /nodefaultlib /subsystem:console /entry:start /safeseh:no "/out:$word/linked_too.exe" \
  "$work/linked.obj" "$word/lib/Orv2_Geo.lib" "$kernel"
said 42 "$word/linked_too.exe"
ok "linked by MSVC's import library"
