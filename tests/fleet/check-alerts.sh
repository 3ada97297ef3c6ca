#!/bin/sh
# Checks examples/fleet with Prometheus's own tool. Exit status 77: the tool is not installed.
set -eu
cd "$(dirname "$0")/../../examples/fleet"
promtool=$(command -v promtool) || promtool=../../third_party/prometheus/promtool
[ -x "$promtool" ] || { echo "promtool is missing; scripts/setup fleet fetches it"; exit 77; }
"$promtool" check config prometheus.yml
"$promtool" test rules alerts-test.yml
