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

case "${1:-}" in
  deb) make_deb ;;
  windows) make_windows ;;
  *) echo "usage: tools/package.sh deb|windows" >&2; exit 2 ;;
esac
