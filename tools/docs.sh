#!/usr/bin/env bash
# Builds the documentation site in build/docs; open build/docs/index.html.
#
#   tools/docs.sh             the site; nothing of it comes over the network, then or later
#   tools/docs.sh pictures    draws the pictures of docs/pictures anew first, with the library of build/release
#   tools/docs.sh serve       shows it on this machine, where its search works too: in files opened by themselves it does not
set -euo pipefail
cd "$(dirname "$0")/.."
tools/setup.sh docs
if [ "${1:-}" = pictures ]; then
  cmake --preset release
  cmake --build --preset release --target orv2_geo orv2_geo_python_package
  PYTHONPATH=python /usr/bin/python3 docs/pictures/draw.py docs/pictures
fi
# A warning stops it; what it says besides is of interest only then.
mkdir -p build
/usr/bin/mkdocs build --strict --clean > build/docs.log 2>&1 || { cat build/docs.log >&2; exit 1; }
echo "build/docs/index.html"
if [ "${1:-}" = serve ]; then
  exec python3 -m http.server --bind 127.0.0.1 --directory build/docs 8000
fi
