#!/usr/bin/env bash
# Benchmarks: round trips beside libmodbus on a pseudo-terminal and on paced serial lines, the
# cost of polling connected grippers beside libmodbus (docs/benchmarks.md), then the plug-in,
# then the end of a move per update period and the automatic reconnect.
set -euo pipefail
build_dir=${1:-build}
"$build_dir/bench/link_round_trip/link_round_trip_bench"
"$build_dir/bench/plugin/plugin_bench"
"$build_dir/bench/plugin/link_heal_bench"
