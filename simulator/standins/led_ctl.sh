#!/bin/sh
# Stands in for the terminal's LED script: shows what was asked for. While the simulator keeps a
# status in led.fails, it fails with that.
fails=/run/simulator/led.fails
if [ -e "$fails" ]; then
    read -r status <"$fails"
    echo "led script fails: $*" >/run/simulator/events
    exit "$status"
fi
echo "led $*" >/run/simulator/events
