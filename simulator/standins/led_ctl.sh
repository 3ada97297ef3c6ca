#!/bin/sh
# Stands in for the terminal's LED script: shows what was asked for. While there is a
# status in led.fails, it fails with that.
fails=/run/simulator/led.fails
if [ -s "$fails" ]; then
    read -r status <"$fails"
    /run/simulator/announce led "script fails: $*"
    exit "$status"
fi
exec /run/simulator/announce led "$@"
