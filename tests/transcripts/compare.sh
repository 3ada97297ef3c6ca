#!/bin/sh
# compare.sh TRANSCRIPT PROGRAM...
#
# A transcript is a session with a program as a person would type and read it. This script types the
# lines behind "> " into the program and compares the session with the transcript. Some texts differ
# from run to run, and the transcript has words for them: ADDRESS, the LINE of a script, N in the numbers of
# a loopback address and for a PID or a heartbeat's count in the log of a story, a date of letters, and
# dots for all but the first two of seven digits of remaining milliseconds.
transcript=$1
shift
# In one write, shorter than a pipe's atomic limit: each turn of the loop then finds its line.
typed=$(sed -n 's/^> //p' "$transcript")
{
  printf '%s\n' "$typed" | { "$@" 2>&1; echo "exit status $?"; }
} | sed -E 's/0x[0-9a-f]{5,}/ADDRESS/
  s/[0-9]{4}-[0-9]{2}-[0-9]{2} [0-9]{2}:[0-9]{2}:[0-9]{2}\.[0-9]{3}/YYYY-MM-DD hh:mm:ss.mmm/
  s/( -> [0-9]{2})[0-9]{5}$/\1...../
  s/127(\.[0-9]+){2}\.17/127.N.N.17/
  s/keldra-monitor: [0-9]+: /keldra-monitor: LINE: /
  /^log: /s/((Keldra|PID|PID changed to) )[0-9]+|(received: )[0-9]+/\1\3N/' | diff -u "$transcript" -
