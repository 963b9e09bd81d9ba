#!/usr/bin/env bash
# The main job: the gripper plug-in in the pendant emulator, against two simulated grippers.
# With a display the emulator's window opens and the tour runs in it; the window stays open
# afterwards (close it to finish). Without one the tour runs on the offscreen platform. Either
# way the command ends with status 0 only when every stage of the tour passed. Pictures (the
# page also at 1280x800) and the transcript go to <build>/demo/.
set -euo pipefail
build_dir=${1:-build}
emulator="$build_dir/tools/pendant_emulator/pendant-emulator"
demo_dir="$(cd "$build_dir" && pwd)/demo"
rm -rf "$demo_dir"
mkdir -p "$demo_dir"

if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
    "$emulator" --tour "$demo_dir" --keep-open
else
    QT_QPA_PLATFORM=offscreen "$emulator" --tour "$demo_dir"
fi
QT_QPA_PLATFORM=offscreen "$emulator" --no-simulators --resolution 1280x800 \
    --screenshot "$demo_dir/page-1280x800.png" 2>/dev/null
echo "Pictures and transcript: $demo_dir"
