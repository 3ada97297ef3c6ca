#!/bin/sh
# Stands in for the terminal's LED script: shows what was asked for.
exec /run/simulator/announce led "$@"
