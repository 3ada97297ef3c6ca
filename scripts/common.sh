# Sourced by each script here. Prints the script's first comment for --help, and has the functions
# that several scripts need.
# shellcheck shell=bash
set -euo pipefail

me=${0##*/}
case " $* " in
  *" -h "* | *" --help "*)
    sed -n '2,/^[^#]/s/^# \{0,1\}//p' "$0"
    exit 0
    ;;
esac
# shellcheck disable=SC2034 # the sourcing scripts read it
root=$(cd "$(dirname "$0")/.." && pwd)
readonly root

say() { echo "$me: $*"; }
# die MESSAGE [STATUS]
die() {
  echo "$me: $1" >&2
  exit "${2:-1}"
}

# On a terminal, each line replaces the one before.
is_moving() { [ -t 1 ] && [ "${TERM:-dumb}" != dumb ]; }
show_line() { printf '\r\e[K%.79s' "$1"; }

# Ends the script when build/ cannot be written, or has less than 1 MB left.
check_room() {
  local complaint
  complaint=$({ mkdir -p "$root/build" && head -c 1000000 /dev/zero >"$root/build/room.$$"; } 2>&1) || {
    rm -f "$root/build/room.$$"
    die "cannot write to $root/build: ${complaint##*: }"
  }
  rm "$root/build/room.$$"
}

# One run at a time changes build/: the others wait here. Descriptor 9 holds the lock until
# release_build; programs that may outlive the script must not inherit it.
hold_build() {
  check_room
  exec 9>"$root/build/lock"
  flock -n 9 || {
    say "waiting for another run in this folder"
    flock 9
  }
}
release_build() { exec 9>&-; }
