#!/usr/bin/env bash
# Installs what is missing, builds, and runs the whole test suite: the normal build, the same
# tests under AddressSanitizer and UndefinedBehaviorSanitizer, and each fuzzer for a while.
set -euo pipefail
cd "$(dirname "$0")/.."

FUZZ_SECONDS="${FUZZ_SECONDS:-60}"
jobs="$(nproc)"
start=$(date +%s)

scripts/install-deps.sh

if git rev-parse --is-inside-work-tree >/dev/null 2>&1; then
    echo "== formatting"
    git ls-files -z '*.cpp' '*.h' | xargs -0 clang-format --dry-run --Werror
fi

echo "== build and test (RelWithDebInfo)"
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DJUKARRA_BUILD_BENCH=ON >/dev/null
cmake --build build -j "$jobs"
(cd build && ctest --output-on-failure -j "$jobs")

echo "== build and test with ASan and UBSan"
cmake -S . -B build-asan -G Ninja -DCMAKE_BUILD_TYPE=Debug -DJUKARRA_SANITIZE=ON >/dev/null
cmake --build build-asan -j "$jobs"
(cd build-asan && ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 \
    UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 ctest --output-on-failure -j "$jobs")

if [ -d fuzz ] && [ "$FUZZ_SECONDS" -gt 0 ]; then
    echo "== fuzzers, ${FUZZ_SECONDS}s each"
    cmake -S . -B build-fuzz -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
        -DCMAKE_CXX_COMPILER=clang++ -DJUKARRA_BUILD_FUZZ=ON -DJUKARRA_BUILD_GUI=OFF \
        -DJUKARRA_BUILD_TESTS=OFF >/dev/null
    fuzz_targets=()
    for source in fuzz/*.cpp; do
        fuzz_targets+=("$(basename "$source" .cpp)")
    done
    cmake --build build-fuzz -j "$jobs" --target "${fuzz_targets[@]}"
    for fuzzer in build-fuzz/fuzz/fuzz_*; do
        [ -x "$fuzzer" ] || continue
        name=$(basename "$fuzzer")
        corpus="build-fuzz/corpus/$name"
        mkdir -p "$corpus"
        seeds=()
        [ -d "fuzz/seeds/$name" ] && seeds+=("fuzz/seeds/$name")
        echo "-- $name"
        "$fuzzer" -max_total_time="$FUZZ_SECONDS" -timeout=10 -rss_limit_mb=2048 \
            -print_final_stats=0 "$corpus" "${seeds[@]}" 2>&1 | tail -n 3
    done
fi

echo "== all tests passed in $(( $(date +%s) - start ))s"
