#!/bin/sh
# Checks a package, a .deb or an .ipk: it has all files to install, and no script that starts or
# stops anything. Usage: check-package.sh PACKAGE [unoptimised]
set -eu
# expect WHAT TEXT: if standard input is not the text, prints both and ends.
expect() {
  seen=$(cat)
  [ "$seen" = "$2" ] || { printf '%s:\n%s\ninstead of\n%s\n' "$1" "$seen" "$2"; exit 1; }
}
case $1 in
  *.deb)
    unit="
-rw-r--r-- root/root ./usr/lib/systemd/system/keldra-monitor.service"
    history="
-rw-r--r-- root/root ./usr/share/doc/keldra-monitor/changelog.Debian.gz"
    overrides="
-rw-r--r-- root/root ./usr/share/lintian/overrides/keldra-monitor"
    terminal=''
    workstation="
-rw-r--r-- root/root ./usr/share/keldra-monitor/keldra_monitor.default"
    scripts="
./postinst
./postrm"
    ;;
  *)
    unit='' history='' overrides='' workstation='' scripts=''
    terminal=/etc/default/keldra_monitor
    ;;
esac
# opkg reads these three members, compressed with gzip.
ar t "$1" | expect archive "debian-binary
control.tar.gz
data.tar.gz"
dpkg-deb -c "$1" | grep -v '^drwxr-xr-x root/root ' | awk '{ print $1, $2, $6 }' |
  expect files "${terminal:+-rw-r--r-- root/root .$terminal
}-rwxr-xr-x root/root ./etc/init.d/keldra-metrics
-rwxr-xr-x root/root ./etc/init.d/keldra-monitor$unit
-rwxr-xr-x root/root ./usr/sbin/keldra-metrics
-rwxr-xr-x root/root ./usr/sbin/keldra_monitor$history
-rw-r--r-- root/root ./usr/share/doc/keldra-monitor/changelog.gz
-rw-r--r-- root/root ./usr/share/doc/keldra-monitor/copyright
-rw-r--r-- root/root ./usr/share/doc/keldra-monitor/copyright.jsoncpp
-rwxr-xr-x root/root ./usr/share/doc/keldra-monitor/examples/keep-reboot-reason.sh$workstation$overrides
-rw-r--r-- root/root ./usr/share/man/man8/keldra-metrics.8.gz
-rw-r--r-- root/root ./usr/share/man/man8/keldra_monitor.8.gz"
# No script of an installation starts or stops a monitor.
dpkg-deb --ctrl-tarfile "$1" | tar t | LC_ALL=C sort | expect control "./
./conffiles
./control
./md5sums$scripts"
dpkg-deb -I "$1" conffiles | expect conffiles "/etc/init.d/keldra-metrics
/etc/init.d/keldra-monitor${terminal:+
$terminal}"
dpkg-deb -f "$1" Depends | sed 's/[0-9][0-9.]*)/N)/g' | grep -o 'lib\(c6\|stdc++6\) (>= N)' |
  expect dependencies "libc6 (>= N)
libstdc++6 (>= N)"
# The commit that the daemon names is the package's, and the next one's package is newer.
version=$(dpkg-deb -f "$1" Version)
commit=${version##*-}
scratch=$(mktemp -d)
trap 'rm -r "$scratch"' EXIT
dpkg-deb --fsys-tarfile "$1" | tar xO ./usr/sbin/keldra_monitor >"$scratch/daemon"
grep -aoE 'quenda_core-[0-9.]+-[0-9]+' "$scratch/daemon" |
  expect version "quenda_core-${version%-*}.$commit-$commit"
dpkg --compare-versions "${version%-*}-$((commit + 1))" gt "$version"
# The daemon runs as root: no address of it is known beforehand, its call table is read-only, stacks
# and, if the compiler optimises, copies are checked.
checked=__vsnprintf_chk
[ -z "${2-}" ] || checked=
readelf -hldW --dyn-syms "$scratch/daemon" |
  grep -woE 'DYN|GNU_RELRO|BIND_NOW|__stack_chk_fail|__vsnprintf_chk' | sort -u |
  expect hardening "BIND_NOW
DYN
GNU_RELRO
__stack_chk_fail${checked:+
$checked}"
# Under systemd, too, Keldra and sshd outlive the monitor, and one that fails comes back. The script
# writes the monitor's PID to that file.
if [ -n "$unit" ]; then
  dpkg-deb --fsys-tarfile "$1" | tar xO "./${unit##* ./}" |
    grep -E '^(PIDFile|KillMode|SendSIGKILL|Restart|OOMPolicy)=' | expect unit "PIDFile=/run/keldra_monitor.pid
KillMode=process
SendSIGKILL=no
Restart=on-failure
OOMPolicy=continue"
fi
# dpkg's calls: the settings are made once, and kept until a purge. The purge comes last, after all
# files have been removed, and removes the dangling start links.
if [ -n "$scripts" ]; then
  export DPKG_ROOT="$scratch/root"
  mkdir -p "$DPKG_ROOT/etc/rc5.d" "$DPKG_ROOT/etc/systemd/system/multi-user.target.wants"
  ln -s ../init.d/keldra-monitor "$DPKG_ROOT/etc/rc5.d/S90keldra-monitor"
  ln -s ../init.d/other "$DPKG_ROOT/etc/rc5.d/S90other"
  ln -s "$DPKG_ROOT/absent" \
    "$DPKG_ROOT/etc/systemd/system/multi-user.target.wants/keldra-monitor.service"
  mkdir -p "$DPKG_ROOT/usr/share/keldra-monitor" "$DPKG_ROOT/var/lib/keldra-monitor"
  echo offered >"$DPKG_ROOT/usr/share/keldra-monitor/keldra_monitor.default"
  dpkg-deb -I "$1" postinst | (umask 077; sh -s configure '')
  settings=$DPKG_ROOT/etc/default/keldra_monitor
  stat -c %a "$settings" | cat - "$settings" | expect "settings of an installation" "644
offered"
  echo changed >"$settings"
  dpkg-deb -I "$1" postinst | sh -s configure ''
  dpkg-deb -I "$1" postrm | sh -s remove
  expect "settings after it" changed <"$settings"
  find "$DPKG_ROOT" -type l | wc -l | expect "links after a removal" 3
  rm "$settings"
  dpkg-deb -I "$1" postinst | sh -s configure 1.0.0-1
  find "$DPKG_ROOT" -path "$settings" | expect "settings that somebody deleted" ""
  touch "$settings" "$DPKG_ROOT/var/lib/keldra-monitor/settings"
  dpkg-deb -I "$1" postrm | sh -s purge
  find "$DPKG_ROOT" -type l -o -name '*keldra*monitor' ! -path '*/usr/*' |
    expect "what a purge leaves" "$DPKG_ROOT/etc/rc5.d/S90other"
fi
