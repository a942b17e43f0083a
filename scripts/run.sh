#!/usr/bin/env bash
# Installs what is missing, builds the desktop program and starts it.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build build --target jukarra jukarra-cli
exec build/jukarra "$@"
