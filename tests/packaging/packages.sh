#!/usr/bin/env bash
# Checks the packages of a build tree: the same bytes as those of another, no faults that lintian knows, a port builds
# against them, and a clean Debian takes, upgrades and loses them.
# usage: packages.sh TREE OTHER_TREE
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
packages=$1/packages other=$2/packages
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

say() { echo "== packages: $*"; }
fail() {
  echo "packages.sh: $*" >&2
  exit 1
}

say "the same bytes twice"
diff <(cd "$packages" && sha256sum ./*.*deb) <(cd "$other" && sha256sum ./*.*deb) || fail "the two builds differ"
ls -sh "$packages"

say "lintian"
lintian --allow-root --fail-on error --suppress-tags initial-upload-closes-no-bugs "$packages"/*.deb

say "a port against the packages"
for package in "$packages"/libproductionrules*.deb; do
  dpkg-deb -x "$package" "$work/root"
done
/usr/bin/python3 "$here/port.py" "$work/root/usr"
include=$work/root/usr/include/productionrules
(cd "$include" && find . -name '*.h') | while read -r header; do
  g++ -std=c++17 -fsyntax-only -I "$include" -x c++ - <<<"#include \"$header\"" || fail "$header does not stand alone"
done
folder=$(dirname "$(find "$work/root" -name productionrules-port.pc)")
flags=$(PKG_CONFIG_PATH=$folder PKG_CONFIG_SYSROOT_DIR=$work/root pkg-config --cflags --libs productionrules-port)
# shellcheck disable=SC2086
g++ -std=c++17 "$here/../../examples/port/main.cpp" ${flags//"$work/root$work/root"/"$work/root"} -o "$work/port"

say "taken in by a project (add_subdirectory), without tests"
cmake -S "$here/taken_in" -B "$work/taken-in" -G Ninja -DCMAKE_BUILD_TYPE=Release >"$work/log" ||
  fail "$(cat "$work/log")"
cmake --build "$work/taken-in" --target host >"$work/log" || fail "$(cat "$work/log")"

say "a clean Debian"
if [[ $(id -u) -ne 0 ]] && ! unshare --user --map-auto true 2>/dev/null; then
  echo "skipped: this user may not make a root of its own"
  exit 0
fi
sources=/etc/apt/sources.list
for file in /etc/apt/sources.list.d/debian.sources /etc/apt/sources.list.d/*.sources; do
  if [[ -e $file ]]; then
    sources=$file
    break
  fi
done
. /etc/os-release
mkdir -p "$work/in/tests/packaging"
cp "$packages"/*.deb "$here/in_clean_root.sh" "$here/first_hour.sh" "$work/in"
cp "$here/port.py" "$work/in/tests/packaging"
mmdebstrap --quiet --variant=apt --customize-hook="cp -r '$work/in' \"\$1/packages\"" \
  --customize-hook='chroot "$1" /packages/in_clean_root.sh' "$VERSION_CODENAME" /dev/null "$sources"
