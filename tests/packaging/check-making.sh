#!/bin/sh
# Makes packages as another user and for a given time, and for a terminal with an older libstdc++
# than this machine's. Usage: check-making.sh MAKE-PACKAGE ARCHITECTURE BUILD-DIRECTORY
# JSONCPP-DIRECTORY. Exits with 77 where root cannot become another user.
set -eu
scratch=$(mktemp -d)
trap 'rm -r "$scratch"' EXIT
other='unshare --user --map-user=1000 --map-group=1000'
$other true || exit 77
export SOURCE_DATE_EPOCH=2100000000 TZ=UTC
$other "$@" "$scratch/keldra.deb"
for archive in fsys ctrl; do
  dpkg-deb "--$archive-tarfile" "$scratch/keldra.deb" | tar tv | awk '{ print $2, $4, $5 }' | sort -u
done >"$scratch/seen"
[ "$(uniq "$scratch/seen")" = 'root/root 2036-07-18 13:20' ] || { cat "$scratch/seen"; exit 1; }
# A list of libstdc++'s symbols that has none of those that the daemon needs.
printf '#!/bin/sh\necho /dev/null\n' >"$scratch/dpkg-query"
chmod 755 "$scratch/dpkg-query"
if PATH=$scratch:$PATH "$@" "$scratch/keldra.ipk" 2>"$scratch/said"; then exit 1; fi
grep "^make-package: this machine's libstdc++6 is older " "$scratch/said"
[ ! -e "$scratch/keldra.ipk" ]
