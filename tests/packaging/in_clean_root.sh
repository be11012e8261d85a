#!/usr/bin/env bash
# Runs inside a clean system, beside the packages: they are installed, upgraded, removed and purged.
set -euo pipefail
cd "$(dirname "$0")"
export DEBIAN_FRONTEND=noninteractive LC_ALL=C.UTF-8

expect() {
  "$@" >/tmp/log 2>&1 || {
    echo "in a clean system, not so: $*" >&2
    cat /tmp/log >&2
    exit 1
  }
}
absent() { [[ ! -e $1 ]]; }
apt_get() { expect apt-get -qq --no-install-recommends -o Dpkg::Options::=--force-confold "$@"; }

unit=/etc/systemd/system/multi-user.target.wants/productionrulesd.service
mkdir old
for package in productionrules libproductionrules0; do
  dpkg-deb -R ${package}_*.deb old/tree
  sed -i -E 's/^(Version: |Depends: .*libproductionrules0 \(= )[^),]*/\10.0.9-1/' old/tree/DEBIAN/control
  for file in old/tree/etc/fyn.conf old/tree/etc/default/productionrulesd; do
    [[ ! -e $file ]] || echo "# of the old version" >>"$file"
  done
  expect dpkg-deb --root-owner-group -b old/tree old/$package.deb
  rm -rf old/tree
done

echo "install"
apt_get install ./old/*.deb
expect test -e $unit
expect getent passwd productionrules
expect grep "old version" /etc/fyn.conf
expect sed -i 's/^persist.feature.steadyframing=.*/persist.feature.steadyframing=0/' /etc/fyn.conf

echo "upgrade"
apt_get install ./*.deb
expect dpkg -s productionrules
expect grep -x "persist.feature.steadyframing=0" /etc/fyn.conf
expect cmp /etc/default/productionrulesd <(dpkg-deb --fsys-tarfile productionrules_*.deb | tar -xO ./etc/default/productionrulesd)
mkdir -p /etc/systemd/system/productionrulesd.service.d
expect cp /usr/share/doc/productionrules/metrics.conf /etc/systemd/system/productionrulesd.service.d
expect systemd-analyze verify /usr/lib/systemd/system/productionrulesd.service
rm -r /etc/systemd/system/productionrulesd.service.d
expect productionrulesd --version
expect productionrulesd --check --properties memory --config /etc/fyn.conf
expect bash -c 'prb simulate --seed 1 --minutes 1 -o meeting.jsonl && prb replay meeting.jsonl | grep -q /PRBOut'
for page in productionrulesd prb prb-replay; do
  expect test -s /usr/share/man/man1/$page.1.gz
done
expect bash -c '. /usr/share/bash-completion/completions/prb && complete -p prb'

echo "the first hour"
apt_get install cmake dbus g++ make mosquitto python3-dasbus python3-gi python3-paho-mqtt
./first_hour.sh

echo "remove"
apt_get remove productionrules 'libproductionrules*' productionrules-tools productionrules-video
expect absent /usr/bin/productionrulesd
expect grep -x "persist.feature.steadyframing=0" /etc/fyn.conf
mkdir -p /var/lib/productionrules

echo "purge"
# Of all that were removed and left something.
apt_get purge '~c'
left=$(find / -xdev \( -name '*productionrules*' -o -name 'fyn.conf*' \) -not -path '/packages/*' -not -path '/proc/*')
[[ -z $left ]] || {
  echo "left behind: $left" >&2
  exit 1
}
