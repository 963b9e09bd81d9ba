#!/usr/bin/env bash
# Installs the Debian packages the build, the tests and the demo need, and only those missing.
set -euo pipefail

packages=(
    cmake g++ make pkg-config clang-format
    libgtest-dev libgmock-dev libbenchmark-dev
    qtbase5-dev libqt5serialport5-dev
    libspdlog-dev libfmt-dev nlohmann-json3-dev
    libmodbus-dev socat
    qttools5-dev qttools5-dev-tools fonts-dejavu-core fonts-wqy-microhei python3-clang-14 xvfb xauth
    help2man
)
# `install-deps.sh package`: also what `make package` needs to compute the .deb's dependencies
# and to check it.
if [ "${1:-}" = "package" ]; then
    packages+=(dpkg-dev file lintian)
fi

missing=()
for package in "${packages[@]}"; do
    if ! dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "install ok installed"; then
        missing+=("$package")
    fi
done

if [ ${#missing[@]} -eq 0 ]; then
    exit 0
fi

echo "Installing: ${missing[*]}"
sudo_cmd=()
if [ "$(id -u)" -ne 0 ]; then
    sudo_cmd=(sudo)
fi
"${sudo_cmd[@]}" apt-get update -qq
DEBIAN_FRONTEND=noninteractive "${sudo_cmd[@]}" apt-get install -y -qq "${missing[@]}"
