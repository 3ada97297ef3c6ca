#!/bin/sh
# Looks into a package, a .deb or an .ipk: whether it holds all that is to be installed and nothing
# that acts by itself. Usage: check-package.sh PACKAGE
set -eu
# Prints the difference and ends when the input is not the text: expect WHAT TEXT
expect() {
  seen=$(cat)
  [ "$seen" = "$2" ] || { printf '%s:\n%s\ninstead of\n%s\n' "$1" "$seen" "$2"; exit 1; }
}
# What opkg reads: these three, with gzip.
ar t "$1" | expect archive "debian-binary
control.tar.gz
data.tar.gz"
dpkg-deb -c "$1" | grep -v '^drwxr-xr-x root/root ' | awk '{ print $1, $2, $6 }' |
  expect files "-rwxr-xr-x root/root ./etc/init.d/keldra-monitor
-rwxr-xr-x root/root ./usr/sbin/keldra_monitor
-rw-r--r-- root/root ./usr/share/doc/keldra-monitor/changelog.gz
-rw-r--r-- root/root ./usr/share/doc/keldra-monitor/copyright
-rw-r--r-- root/root ./usr/share/doc/keldra-monitor/copyright.jsoncpp
-rw-r--r-- root/root ./usr/share/man/man8/keldra_monitor.8.gz"
# No script runs at an installation, which must neither start nor stop a monitor.
dpkg-deb --ctrl-tarfile "$1" | tar t | LC_ALL=C sort | expect control "./
./conffiles
./control
./md5sums"
dpkg-deb -I "$1" conffiles | expect conffiles /etc/init.d/keldra-monitor
dpkg-deb -f "$1" Depends | sed 's/[0-9][0-9.]*)/N)/g' | grep -o 'lib\(c6\|stdc++6\) (>= N)' |
  expect dependencies "libc6 (>= N)
libstdc++6 (>= N)"
