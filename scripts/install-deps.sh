#!/usr/bin/env bash
# Installs the Debian 12 packages the project needs to build, run and test, when any is missing.
set -euo pipefail

packages=(
    build-essential cmake ninja-build pkg-config git
    qt6-base-dev qt6-base-dev-tools libgl-dev libqt6svg6 breeze-icon-theme desktop-file-utils
    libtag1-dev libsqlite3-dev libblkid-dev
    libgtest-dev libgmock-dev libbenchmark-dev
    clang libclang-rt-14-dev clang-format clang-tidy
    lame sox mpv mpv-mpris dbus-daemon xvfb xauth
    python3 python3-mutagen
    dosfstools e2fsprogs
)

missing=()
for p in "${packages[@]}"; do
    if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
        missing+=("$p")
    fi
done

if [ "${#missing[@]}" -eq 0 ]; then
    exit 0
fi

echo "Installing: ${missing[*]}" >&2
sudo_cmd=()
if [ "$(id -u)" -ne 0 ]; then
    sudo_cmd=(sudo)
fi
export DEBIAN_FRONTEND=noninteractive
"${sudo_cmd[@]}" apt-get update -qq
"${sudo_cmd[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"
