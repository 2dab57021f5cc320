#!/usr/bin/env bash
# For a nightly run: installs the Debian packages in a minimal root as a user would, runs what they bring there,
# builds other projects against them, removes them, and looks for what they left. It takes the rights of the
# machine's administrator, and the packages of tools/package.sh deb.
#
#   tools/package_root.sh [DIR]
#
# DIR, else build/package/root, holds the root; a plain one is kept beside it for the next run.
set -euo pipefail

here=$(cd "$(dirname "$0")/.." && pwd)
. "$here/tools/minimal_root.sh"
root=$(realpath -m "${1:-$here/build/package/root}")
[ "$(id -u)" -eq 0 ] || { echo "package_root: not run by the machine's administrator" >&2; exit 1; }
ls "$here"/build/package/deb/*.deb > /dev/null
"$here/tools/setup.sh" packages

if [ ! -d "$root.plain" ]; then
  bootstrap "$root.unfinished" "$(dpkg --print-architecture)" ca-certificates
  mv "$root.unfinished" "$root.plain"
fi
rm -rf --one-file-system "$root"
cp -a "$root.plain" "$root"
# The root asks the same servers as the machine.
rm -f "$root/etc/apt/sources.list"
cp -r /etc/apt/apt.conf.d /etc/apt/sources.list* /etc/apt/trusted.gpg.d "$root/etc/apt/"
cp /etc/resolv.conf "$root/etc/" 2> /dev/null || true
take_proxies
inside() {
  env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C.UTF-8 DEBIAN_FRONTEND=noninteractive \
    ${http_proxy:+http_proxy="$http_proxy"} ${https_proxy:+https_proxy="$https_proxy"} \
    "$(command -v chroot)" "$root" "$@"
}
# Files that are not of the package system's own books.
files() { (cd "$root" && find . -xdev \( -path ./var -o -path ./proc -o -path ./sys -o -path ./root -o -path ./tried \) \
  -prune -o -print | sort); }
apt() { inside apt-get install -y -q --no-install-recommends "$@" > "$root.log" 2>&1 || { tail -n 30 "$root.log" >&2; exit 1; }; }

mkdir "$root/tried"
cp "$here"/build/package/deb/*.deb "$root/tried"
cp -r "$here"/tests/packaging/consumer "$here"/tests/packaging/consumer_in_c "$root/tried"
cp "$here"/tests/packaging/*.py "$here/README.md" "$here/examples/survey_report/sample_survey.csv" "$root/tried"
inside apt-get update -q > "$root.log"

# Each with what it names itself, and nothing else.
alone() {  # WHAT TO TRY, PACKAGES...
  local try=$1
  shift
  echo "Alone: $*"
  apt $(for package; do (cd "$root" && ls ./tried/"$package"_*.deb); done)
  inside sh -ec "$try"
  inside apt-get purge -y -q "$@" > "$root.log" 2>&1
  inside apt-get autoremove -y -q --purge > "$root.log" 2>&1
}
whole='! ldd $1 | grep "not found"'
libraries="/usr/lib/$(inside uname -m)-linux-gnu"
alone "${whole/\$1/$libraries/liborv2_geo.so.2}" liborv2-geo2
alone "${whole/\$1/$libraries/orv2_geo/*.so}" liborv2-geo2 liborv2-geo-qt
alone "test -f /usr/include/orv2_geo/orv2_geo.h; test -e $libraries/liborv2_geo.so" liborv2-geo2 liborv2-geo-dev
alone "python3 -c 'import orv2_geo; print(orv2_geo.version())'" liborv2-geo2 python3-orv2-geo
alone "survey_report /tried/sample_survey.csv | sed -n 4p" liborv2-geo2 orv2-survey-report

# What others bring stays when ours go, so it comes first.
apt python3 libqt6widgets6 libgeos-c1v5 g++ cmake make pkgconf
files > "$root.before"

echo "Installing the packages"
apt $(cd "$root" && ls ./tried/*.deb)
echo "survey_report:"
inside survey_report /tried/sample_survey.csv | sed -n 1,6p
echo "Python:"
inside python3 -c '
import orv2_geo
azimuth = orv2_geo.Ref(0.0)
orv2_geo.create("Orv2_Geo.cgeo_Algorismos").Azimut(-1.0, 0.0, azimuth)
print(orv2_geo.version(), azimuth.value)
assert azimuth.value == 300.0'
python3 "$here/tests/packaging/readme_examples.py" chroot "$root" /usr/bin/python3
echo "A project in C++ and C, shared and as an archive, one in C, and pkg-config:"
for kind in shared static; do
  inside cmake -S /tried/consumer -B /tried/$kind -Dkind=$kind > "$root.log"
  inside cmake --build /tried/$kind > "$root.log"
  inside /tried/$kind/consumer_cpp
  inside /tried/$kind/consumer_c
done
inside cmake -S /tried/consumer_in_c -B /tried/in_c > "$root.log"
inside cmake --build /tried/in_c > "$root.log"
inside /tried/in_c/consumer_c
inside sh -c 'cc /tried/consumer/consumer.c $(pkg-config --cflags --libs orv2_geo) -o /tried/by_pkg_config'
inside /tried/by_pkg_config

echo "Removing them"
inside sh -c 'apt-get purge -y -q $(dpkg-query -W -f "\${Package}\n" "*orv2*")' > "$root.log" 2>&1
find "$root/usr/lib/python3" -name __pycache__ -path '*orv2_geo*' | (! grep .)
files > "$root.after"
if ! diff "$root.before" "$root.after"; then
  echo "package_root: removed, the packages leave what is listed above" >&2
  exit 1
fi
echo "Nothing is left of them"
