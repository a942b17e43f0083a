#!/usr/bin/env bash
# Installs what is missing, builds, and runs every check CI makes, one section per build: the
# formatting; the normal build and its tests; clang-tidy over src/ on that build's compile
# database; the same tests under AddressSanitizer and UndefinedBehaviorSanitizer; the core,
# platform and command-line tests under ThreadSanitizer in a build without the desktop program;
# each fuzzer for a while. Every build treats warnings as errors. Each section's time is printed
# as it ends, and all of them at the end.
set -euo pipefail
cd "$(dirname "$0")/.."

# Per fuzzer; four of them at 30 s keep the section near two minutes on CI's two cores.
FUZZ_SECONDS="${FUZZ_SECONDS:-30}"
jobs="$(nproc)"
# Each build's options: warnings as errors and line tables in all; unity batches in the ASan,
# TSan and fuzz builds.
source scripts/ci-config.sh
start=$(date +%s)

# Each section's wall time, and the processor time its programs took (user and system, both
# cores together): on a machine shared with other work the second is the steadier figure.
timings=()
section_name=""
section_start=0
section_cpu=0
cpu=0
cpu_file=$(mktemp)
trap 'rm -f "$cpu_file"' EXIT
read_cpu() {  # sets cpu to the processor time of the finished child processes so far, in seconds
    times >"$cpu_file"  # in this shell: a subshell would count only its own children
    cpu=$(awk 'END { t = 0; for (i = 1; i <= 2; i++) { split($i, p, /[ms]/); t += p[1] * 60 + p[2] }
                     printf "%d\n", t }' "$cpu_file")
}
end_section() {
    if [ -n "$section_name" ]; then
        read_cpu
        local took=$(($(date +%s) - section_start)) used=$((cpu - section_cpu))
        echo "-- $section_name: ${took}s (processor ${used}s)"
        timings+=("$(printf '%6ss %8ss  %s' "$took" "$used" "$section_name")")
    fi
    section_name=""
}
section() {  # section NAME: ends the section under way and begins the next
    end_section
    section_name="$1"
    section_start=$(date +%s)
    read_cpu
    section_cpu=$cpu
    echo "== $1"
}

section "packages"
scripts/install-deps.sh

if git rev-parse --is-inside-work-tree >/dev/null 2>&1; then
    section "formatting"
    git ls-files -z '*.cpp' '*.h' | xargs -0 clang-format --dry-run --Werror
fi

section "build and test (RelWithDebInfo)"
cmake -S . -B build "${ci_config[@]}" "${normal_config[@]}" >/dev/null
cmake --build build -j "$jobs"
(cd build && ctest --output-on-failure -j "$jobs")

section "clang-tidy over src/"
# On the normal build's compile database (its moc files are generated, so windows parse); the
# files under build/ that moc and autogen write are left out by the path.
run-clang-tidy -p build -j "$jobs" -quiet "^$PWD/src/" >build/clang-tidy.log 2>&1 || {
    grep -v -E '^(clang-tidy|[0-9]+ warnings? (generated|treated))' build/clang-tidy.log >&2
    echo "clang-tidy found the above (the whole log is build/clang-tidy.log)" >&2
    exit 1
}

section "build and test with ASan and UBSan"
cmake -S . -B build-asan "${ci_config[@]}" "${asan_config[@]}" >/dev/null
cmake --build build-asan -j "$jobs"
(cd build-asan && ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 \
    UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 ctest --output-on-failure -j "$jobs")

section "build and test with TSan, without the desktop program"
# Also the check that the core, the command-line tool and their tests build with no GUI at all.
# The tests labelled "threads" run: those of the read-ahead, the walks, the finders' index, the
# disc mounts, the players' bridge and the command-line tests that walk folders. The rest run
# one thread and are run in both builds above; vdrive_crash_safety among them, whose catalogue
# writes run on one thread and are killed from outside, where ThreadSanitizer has nothing to see.
cmake -S . -B build-tsan "${ci_config[@]}" "${tsan_config[@]}" >/dev/null
cmake --build build-tsan -j "$jobs"
# GCC 12's ThreadSanitizer cannot map its shadow memory under the wider address randomisation
# of newer kernels; there the tests run with randomisation off.
no_aslr=()
if [ "$(cat /proc/sys/vm/mmap_rnd_bits 2>/dev/null || echo 28)" -gt 28 ]; then
    no_aslr=(setarch "$(uname -m)" -R)
fi
# The D-Bus tests stay in the two builds above: Debian's Qt, libdbus and GLib are not built with
# ThreadSanitizer, so their own hand-offs between the bus thread and ours read as races.
(cd build-tsan && TSAN_OPTIONS=halt_on_error=1:second_deadlock_stack=1 \
    "${no_aslr[@]}" ctest --output-on-failure -j "$jobs" -L threads \
    -E '^(player_tests|SessionMprisBus\..*)$')

if [ -d fuzz ] && [ "$FUZZ_SECONDS" -gt 0 ]; then
    section "fuzzers, ${FUZZ_SECONDS}s each"
    cmake -S . -B build-fuzz "${ci_config[@]}" "${fuzz_config[@]}" >/dev/null
    cmake --build build-fuzz -j "$jobs" --target "${fuzz_targets[@]}"
    for fuzzer in build-fuzz/fuzz/fuzz_*; do
        [ -x "$fuzzer" ] || continue
        name=$(basename "$fuzzer")
        # What a run finds lands in build-fuzz/crashes; keep it under fuzz/crashes with a name
        # that says what broke (the fuzz_replay tests run it in every build).
        corpus="build-fuzz/corpus/$name"
        mkdir -p "$corpus" build-fuzz/crashes
        seeds=()
        [ -d "fuzz/seeds/$name" ] && seeds+=("fuzz/seeds/$name")
        echo "-- $name"
        "$fuzzer" -max_total_time="$FUZZ_SECONDS" -timeout=10 -rss_limit_mb=2048 \
            -artifact_prefix="build-fuzz/crashes/${name#fuzz_}-" -print_final_stats=0 \
            "$corpus" "${seeds[@]}" 2>&1 | tail -n 3
    done
fi

end_section
read_cpu
echo "== all tests passed in $(($(date +%s) - start))s (processor ${cpu}s)"
printf '%7s %9s  %s\n' wall processor section
printf '%s\n' "${timings[@]}"
