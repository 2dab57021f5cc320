#!/usr/bin/env bash
# Installs what building, testing and looking at this project takes on Debian 12.
set -euo pipefail

wanted=(
  g++ cmake ninja-build python3 python3-dev locales
  libgtest-dev
  libcli11-dev libgeos-dev
)
# For the checks of a developer: formats, lint, sanitizers under both compilers.
checks=(clang clang-format clang-tidy libclang-rt-14-dev ccache valgrind cppcheck)
# For the benchmarks.
bench=(libbenchmark-dev libcgal-dev libboost-dev libgeos-dev libgeos++-dev libicu-dev libnanoflann-dev)
# For forms on a screen, and for tests that press their buttons on one without a person.
screen=(qt6-base-dev qt6-translations-l10n libxcb1-dev xvfb openbox twm xdotool xclip x11-utils
  libxfixes3 fonts-liberation)
# For wheels of the Python package, and for its tests with other packages.
python=(python3-setuptools python3-wheel python3-venv python3-pip python3-numpy python3-matplotlib mypy debootstrap)
# For reading the survey report's CAD drawings back, and for its page in a browser. A machine may
# have node and npm from elsewhere, which their packages here would push out.
report=(python3-ezdxf chromium poppler-utils)
command -v node > /dev/null || report+=(nodejs)
command -v npm > /dev/null || report+=(npm)
# For the documentation site and its pictures.
docs=(mkdocs mkdocs-material python3-pymdownx python3-matplotlib fonts-dejavu-core)
# For packages, for what they promise, and for the zip of what belongs to Windows.
packages=(debhelper dh-python lintian fakeroot pkgconf gdb help2man zip unzip clang llvm lld
  debootstrap)
# For other processors.
cross=(g++-aarch64-linux-gnu g++-i686-linux-gnu g++-s390x-linux-gnu qemu-user googletest)
# For what belongs to Windows.
windows=(g++-mingw-w64-x86-64-posix g++-mingw-w64-i686-posix mingw-w64-tools googletest
  wine wine64 libwine-dev debootstrap xvfb openbox xdotool xclip x11-utils fonts-liberation fonts-wine)

# Those that `all` brings; what is for other processors is asked for by its name.
groups=(checks bench screen python report docs packages windows)
group="${1:-build}"
case "$group" in
  build) chosen=() ;;
  all) chosen=("${groups[@]}") ;;
  cross) chosen=(cross) ;;
  *)
    if [[ " ${groups[*]} " != *" $group "* ]]; then
      (IFS='|'; echo "usage: tools/setup.sh [build|${groups[*]}|cross|all]" >&2)
      exit 2
    fi
    chosen=("$group")
    ;;
esac
for name in "${chosen[@]}"; do
  declare -n list="$name"
  wanted+=("${list[@]}")
done

as_root() {
  if [ "$(id -u)" -eq 0 ]; then "$@"; else sudo "$@"; fi
}

missing=()
for package in "${wanted[@]}"; do
  dpkg-query -W -f '${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || missing+=("$package")
done
if [ ${#missing[@]} -ne 0 ]; then
  echo "Installing ${missing[*]}" >&2
  as_root apt-get update -q
  as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -q --no-install-recommends "${missing[@]}"
fi

# A locale with a comma as decimal sign, for the tests.
if ! locale -a 2>/dev/null | grep -qi '^es_ES\.utf-\?8$'; then
  as_root localedef -i es_ES -f UTF-8 es_ES.UTF-8
fi
