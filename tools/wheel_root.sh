#!/usr/bin/env bash
# For a nightly run, as it compiles everything: installs the Python package from a clean clone of this
# repository's last commit with pip, and its wheel in a minimal root with Python and nothing of a developer's.
# The README's example runs in both. It takes the rights of the machine's administrator.
#
#   tools/wheel_root.sh [DIR]
#
# DIR, else build/wheel_root of the repository, holds the clone and the root, which is kept for the next run.
set -euo pipefail

here=$(cd "$(dirname "$0")/.." && pwd)
. "$here/tools/minimal_root.sh"
work=$(realpath -m "${1:-$here/build/wheel_root}")
root="$work/root"
python=/usr/bin/python3
example="$here/tests/packaging/readme_examples.py"

[ "$(id -u)" -eq 0 ] || { echo "wheel_root: not run by the machine's administrator" >&2; exit 1; }
"$here/tools/setup.sh" python
mkdir -p "$work"

echo "Installing from a clean clone"
rm -rf "$work/clone" "$work/environment" "$work/wheel"
git clone --quiet --no-hardlinks "$here" "$work/clone"
cd "$work/clone"
"$python" -m venv --system-site-packages "$work/environment"
"$work/environment/bin/pip" install --quiet --no-index --no-build-isolation .
"$python" "$example" "$work/environment/bin/python3"

echo "Making the wheel"
"$python" -m pip wheel --quiet --no-index --no-build-isolation --no-deps --wheel-dir "$work/wheel" .
cd "$work"

if [ ! -d "$root" ]; then
  bootstrap "$root.unfinished" "$(dpkg --print-architecture)" python3,python3-venv,libstdc++6
  mv "$root.unfinished" "$root"
fi
echo "Installing the wheel in a minimal root of $(. "$root/etc/os-release" && echo "$PRETTY_NAME")"
rm -rf "$root/tried"
mkdir "$root/tried"
cp "$work"/wheel/*.whl "$root/tried"
inside() { env -i PATH=/usr/bin:/bin:/usr/sbin:/sbin "$(command -v chroot)" "$root" "$@"; }
developers=$(cd "$root/usr" && ls -d bin/cc bin/c++ bin/cmake include/python3* 2>/dev/null || true)
[ -z "$developers" ] || { echo "wheel_root: not minimal, it has" $developers >&2; exit 1; }
inside "$python" -m venv /tried/environment
inside /bin/sh -c '/tried/environment/bin/pip install --quiet --no-index --no-deps /tried/*.whl'
"$python" "$example" chroot "$root" /tried/environment/bin/python3
