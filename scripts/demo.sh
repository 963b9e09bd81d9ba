#!/usr/bin/env bash
# The main job: for now, the protocols at work (every request of both protocols and decoded answers).
set -euo pipefail
build_dir=${1:-build}
"$build_dir/tools/protocol_demo/protocol_demo"
