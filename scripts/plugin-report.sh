#!/usr/bin/env bash
# What a built plug-in library needs from the system it is loaded on: the libraries it names
# (readelf -d), the highest GLIBC and GLIBCXX symbol versions it needs, and the Qt version its
# plug-in metadata records. Fails when it names a library other than Qt 5, the C and C++
# runtimes and ExtensionSystem: a pendant has no other.
set -euo pipefail
library=${1:?usage: plugin-report.sh LIBRARY}

allowed='^(libQt5[A-Za-z]+\.so\.5|libExtensionSystem\.so(\.[0-9.]+)?|libstdc\+\+\.so\.6|libgcc_s\.so\.1|libc\.so\.6|libm\.so\.6|libpthread\.so\.0|libdl\.so\.2|librt\.so\.1|ld-linux[-a-z0-9_.]*\.so\.[0-9]+)$'
needed=$(readelf -d "$library" | sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p')
echo "$library needs (readelf -d):"
others=0
for name in $needed; do
    if [[ $name =~ $allowed ]]; then
        echo "  $name"
    else
        echo "  $name    <- not Qt 5, the C or C++ runtime, or ExtensionSystem"
        others=1
    fi
done

highest() {
    readelf -V --wide "$library" | grep -o "Name: $1_[0-9.]*" | sed 's/Name: //' | sort -uV | tail -n 1
}
echo "highest GLIBC version needed:     $(highest GLIBC)"
echo "highest GLIBCXX version needed:   $(highest GLIBCXX)"

# The Qt version of the plug-in metadata after "QTMETADATA": from Qt 5.13 on, "QTMETADATA !", a
# format byte, then the major and minor version; before, "QTMETADATA  " and binary JSON whose key
# "version" holds QT_VERSION in the upper 27 bits of the 32-bit value header in front of the key.
metadata_qt_version() {
    local start header qt
    start=$(LC_ALL=C grep -obUa 'QTMETADATA' "$library" | sed -n '1s/:.*//p')
    [ -n "$start" ] || return 1
    if [ "$(od -An -c -j $((start + 11)) -N1 "$library" | tr -d ' ')" = "!" ]; then
        od -An -tu1 -j $((start + 13)) -N2 "$library" | awk '{ print $1 "." $2 }'
        return 0
    fi
    start=$(LC_ALL=C grep -obUaP '\x07\x00version' "$library" |
        awk -F: -v from="$start" '$1 > from { print $1; exit }')
    [ -n "$start" ] || return 1
    header=$(od -An -tu4 -j $((start - 4)) -N4 "$library" | tr -d ' ')
    qt=$((header >> 5))
    echo "$((qt >> 16)).$(((qt >> 8) & 255)).$((qt & 255))"
}
echo "Qt version in the plug-in metadata: $(metadata_qt_version || echo "none (not a Qt 5 plug-in)")"
exit $others
