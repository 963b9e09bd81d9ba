#!/usr/bin/env bash
# The main job: the protocols at work (every request of both protocols and decoded answers), then
# the driver stack against two simulated grippers.
set -euo pipefail
build_dir=${1:-build}
"$build_dir/tools/protocol_demo/protocol_demo"
echo
"$build_dir/tools/gripper_demo/gripper_demo"
