#!/bin/sh
# Stands in for the terminal's LED script: reports its arguments.
exec /run/simulator/announce led "$*"
