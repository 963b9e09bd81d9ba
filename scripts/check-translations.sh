#!/usr/bin/env bash
# Every text an operator reads has a finished translation in the plug-in's three catalogues:
# lupdate over the sources, into a temporary copy of the catalogues, finds no new text and no
# unfinished translation. The committed catalogues are not touched (the build turns them into
# .qm files). Texts no longer in the sources may stay in the catalogues.
set -euo pipefail
cd "$(dirname "$0")/.."

lupdate=/usr/lib/qt5/bin/lupdate
if [ ! -x "$lupdate" ]; then
    lupdate=lupdate
fi
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cp src/plugins/templateplugin/translations/*.ts "$work/"
if ! "$lupdate" -locations none gripper_main/userinterface_logic src/plugins/templateplugin \
    -ts "$work"/*.ts > "$work/lupdate.log" 2>&1; then
    cat "$work/lupdate.log"
    exit 1
fi

failed=0
for catalogue in "$work"/*.ts; do
    name=$(basename "$catalogue")
    messages=$(grep -c '<message' "$catalogue" || true)
    unfinished=$(grep -c 'type="unfinished"' "$catalogue" || true)
    if [ "$unfinished" -gt 0 ]; then
        echo "$name: $unfinished text(s) new or without a finished translation:"
        grep -B1 'type="unfinished"' "$catalogue" | grep '<source>' | sed 's/^ */    /'
        failed=1
    else
        echo "$name: $messages messages, every one translated"
    fi
done
exit "$failed"
