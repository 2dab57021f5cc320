#!/usr/bin/env bash
# Makes packages of what stands here:
#
#   tools/package.sh deb       Debian packages, in build/package/deb, looked at by lintian
#   tools/package.sh windows   the zip for Windows, in build/package/windows
#
# What was compiled before is taken from the compiler cache, where one is set up.
set -euo pipefail
cd "$(dirname "$0")/.."
source_folder=$PWD
version=$(sed -n 's/#define ORV2_VERSION_[MP][A-Z]* //p' orv2_geo/version.h | paste -sd.)

make_deb() {
  local work=build/package/deb
  for group in build screen python packages; do tools/setup.sh "$group"; done
  rm -rf "$work"
  mkdir -p "$work/orv2-geo-$version"
  cp -r packaging/debian "$work/orv2-geo-$version/debian"
  cp CHANGELOG.md "$work/orv2-geo-$version/"
  (
    cd "$work/orv2-geo-$version"
    [ "$(dpkg-parsechangelog -S Version)" = "$version" ] ||
      { echo "packaging/debian/changelog is not of $version" >&2; exit 1; }
    ORV2_SOURCE=$source_folder dpkg-buildpackage --build=binary --no-sign > ../build.log 2>&1 ||
      { tail -n 60 ../build.log >&2; exit 1; }
  )
  lintian --fail-on error --tag-display-limit 0 "$work"/*.changes
  ls "$work"/*.deb
}

# The server's entry points for a client's linker, under the names that the processor's calls have.
entry_points() {
  awk -v sized="$1" '
    BEGIN { sizes["DllGetClassObject"] = 12 }
    $2 == "PRIVATE" { print $1 (sized ? "@" sizes[$1] + 0 : ""); next }
    { print }' orv2_geo/com/Orv2_Geo.def
}

# make_server WORD GCC_MACHINE MSVC_MACHINE SIZED: builds that server and puts it into its folder.
make_server() {
  local build=build/windows-$1 folder=$work/$name/$1 gcc=$2 msvc=$3
  cmake --preset "windows-$1" -DORV2_WARNINGS_ARE_ERRORS="${ORV2_WARNINGS_ARE_ERRORS:-OFF}"
  cmake --build --preset "windows-$1" --target orv2_geo
  mkdir -p "$folder/lib"
  cp "$build"/bin/Orv2_Geo.{dll,manifest,tlb} "$folder"
  "$gcc-strip" "$folder/Orv2_Geo.dll"
  entry_points "$4" > "$folder/lib/entry_points.def"
  "$gcc-dlltool" --kill-at -d "$folder/lib/entry_points.def" -l "$folder/lib/libOrv2_Geo.dll.a"
  llvm-dlltool --kill-at -m "$msvc" -d "$folder/lib/entry_points.def" -l "$folder/lib/Orv2_Geo.lib"
  rm "$folder/lib/entry_points.def"
}

make_windows() {
  local work=build/package/windows name=orv2-geo-$version-windows
  tools/setup.sh windows
  tools/setup.sh packages
  rm -rf "$work"
  mkdir -p "$work/$name/include" "$work/$name/examples"
  {
    make_server x64 x86_64-w64-mingw32 i386:x86-64 ''
    make_server x86 i686-w64-mingw32 i386 1
  } > "$work/build.log" 2>&1 || { tail -n 60 "$work/build.log" >&2; exit 1; }
  cp build/windows-x64/com/Orv2_Geo{_h.h,.idl} "$work/$name/include"
  cp examples/windows/{survey_report.vbs,client.cpp,sample_report.txt,client_output.txt} \
    examples/survey_report/sample_survey.csv "$work/$name/examples"
  # With the line ends that the system's own editors and its command interpreter ask for.
  for file in packaging/windows/*; do sed 's/$/\r/' "$file" > "$work/$name/$(basename "$file")"; done
  sed 's/$/\r/' LICENSE > "$work/$name/LICENSE.txt"
  sed 's|docs/policy.md|policy.md|g; s/$/\r/' CHANGELOG.md > "$work/$name/CHANGELOG.md"
  sed 's/$/\r/' docs/policy.md > "$work/$name/policy.md"
  (cd "$work" && zip -q -r "$name.zip" "$name")
  ls "$work/$name.zip"
}

case "${1:-}" in
  deb) make_deb ;;
  windows) make_windows ;;
  *) echo "usage: tools/package.sh deb|windows" >&2; exit 2 ;;
esac
