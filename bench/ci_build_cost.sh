#!/usr/bin/env bash
# The processor time of one of CI's builds made from nothing, without the compiler cache:
#   bench/ci_build_cost.sh SECTION BUILD_DIR [CMAKE_OPTION...]
# SECTION is normal, asan, tsan or fuzz; BUILD_DIR is removed and configured as scripts/test.sh
# configures that section's build (scripts/ci-config.sh), with the CMAKE_OPTIONs after, then
# built with -j$(nproc). Prints the build's user, system and wall seconds. E.g. the ASan build
# file by file against the same in unity batches of 16:
#   bench/ci_build_cost.sh asan /tmp/asan-files -DJUKARRA_UNITY_BUILD=OFF
#   bench/ci_build_cost.sh asan /tmp/asan-16 -DJUKARRA_UNITY_BATCH_SIZE=16
# User plus system time is the figure to compare: other work on the machine barely moves it.
set -euo pipefail
if [ $# -lt 2 ]; then
    sed -n '2,10p' "$0" | sed 's/^# \{0,1\}//'
    exit 1
fi
section=$1
build=$2
shift 2
cd "$(dirname "$0")/.."
source scripts/ci-config.sh
case "$section" in
    normal) options=("${normal_config[@]}") targets=() ;;
    asan) options=("${asan_config[@]}") targets=() ;;
    tsan) options=("${tsan_config[@]}") targets=() ;;
    fuzz) options=("${fuzz_config[@]}") targets=(--target "${fuzz_targets[@]}") ;;
    *) echo "ci_build_cost.sh: SECTION is normal, asan, tsan or fuzz" >&2; exit 1 ;;
esac
rm -rf "$build"
export CCACHE_DISABLE=1
cmake -S . -B "$build" "${ci_config[@]}" "${options[@]}" "$@" >/dev/null
times=$(mktemp)
trap 'rm -f "$times"' EXIT
/usr/bin/time -o "$times" -f '%U %S %e' cmake --build "$build" -j "$(nproc)" "${targets[@]}" \
    >"$build/build.log" 2>&1 || { tail -n 40 "$build/build.log" >&2; exit 1; }
read -r user sys wall <"$times"
printf '%s build of %s: processor %.0f s (user %s, system %s), wall %s s\n' \
    "$section" "$build" "$(echo "$user + $sys" | bc)" "$user" "$sys" "$wall"
