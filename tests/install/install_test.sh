#!/usr/bin/env bash
# install_test.sh BUILD CMAKE MAN_PAGES(ON|OFF)
# Installs BUILD into a temporary folder and runs the installed programs from there: the emulator,
# given no folder, loads the installed plug-in and starts the installed simulators; the doctor
# finds the installed simulator's gripper.
set -euo pipefail
build=$1
cmake=$2
man_pages=$3

root=$(mktemp -d)
simulator=
cleanup() {
    if [ -n "$simulator" ]; then
        kill "$simulator" 2>/dev/null || true
        wait "$simulator" 2>/dev/null || true
    fi
    rm -rf "$root"
}
trap cleanup EXIT
fail() {
    echo "FAILED: $*"
    exit 1
}

DESTDIR=$root "$cmake" --install "$build" --prefix /usr > "$root/install.log"
bin=$root/usr/bin
for program in gripper-doctor gripper-sim pendant-emulator; do
    [ -x "$bin/$program" ] || fail "$program is not installed"
    [ -f "$root/usr/share/man/man1/$program.1.gz" ] || [ "$man_pages" = OFF ] ||
        fail "no manual page of $program"
done
[ -f "$root/usr/share/doc/gripper-tools/docs/pendant-build.md" ] || fail "the guides are not installed"

# The dynamic loader names every library it loads: the plug-in must come from the install.
LD_DEBUG=files "$bin/pendant-emulator" --screenshot "$root/page.png" > "$root/emulator.out" 2>&1 ||
    fail "the installed emulator failed: $(tail -n 5 "$root/emulator.out")"
grep -q "file=$root/usr/lib/gripper/plugins/libZanther2F.so " "$root/emulator.out" ||
    fail "the installed emulator did not load the installed plug-in"
[ -s "$root/page.png" ] || fail "no picture of the emulator's window"

coproc SIMULATOR { exec "$bin/gripper-sim" --announce - --modbus; }
simulator=$SIMULATOR_PID
read -r -t 10 announcement <&"${SIMULATOR[0]}" || fail "the installed simulator announced no port"
port=${announcement#PTY is }
report=$("$bin/gripper-doctor" --timeout 5 "$port") || fail "the installed doctor: $report"
grep -q "result        OK: the gripper answers" <<< "$report" || fail "the doctor said: $report"
