#!/usr/bin/env bash
# Benchmarks: round trips against the simulator beside libmodbus, and the CPU cost of idle grippers.
set -euo pipefail
build_dir=${1:-build}
"$build_dir/bench/link_round_trip/link_round_trip_bench"
"$build_dir/bench/plugin/plugin_bench"
