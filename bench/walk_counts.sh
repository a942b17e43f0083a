#!/usr/bin/env bash
# Counts what a walk of a collection costs the machine, for two builds side by side, with the
# page cache warm: CPU time, context switches and migrations (perf stat), and system calls by
# name (strace -c -f), each per song. These counts move little with the load of the machine,
# unlike the times of compare.sh. The walk is `jukarra-cli scan --recurse` (the read-ahead and
# the song reader as the program runs them), once with the song cache empty and once warm.
#
#   bench/walk_counts.sh OLD_BUILD NEW_BUILD COLLECTION [ROUNDS]
#
# The builds need jukarra-cli; perf and strace must be installed. ROUNDS (3 by default) runs of
# each walk are counted by perf; the smallest CPU time is kept with the counts of that run.
set -euo pipefail

source "$(dirname "$0")/two-builds.sh"
two_builds "$0" "$@"
for tool in perf strace; do
    command -v "$tool" >/dev/null || { echo "walk_counts.sh: $tool is not installed" >&2; exit 1; }
done

# System calls by name, counted by perf where the kernel's tracepoints are open to it: unlike
# strace, whose every stop slows the threads and so changes how often they wait for each other.
events=task-clock,context-switches,cpu-migrations
calls=(futex openat close newfstatat pread64 preadv2 fadvise64 getdents64)
if perf stat -e raw_syscalls:sys_enter true >/dev/null 2>&1; then
    events+=,raw_syscalls:sys_enter
    for call in "${calls[@]}"; do
        events+=,syscalls:sys_enter_$call
    done
fi

out=$(mktemp -d /tmp/walk-counts.XXXXXX)
# Brings the collection into the page cache.
find "$collection" -type f -exec cat {} + >/dev/null

# scan BUILD SIDE MODE PREFIX...: one walk under PREFIX, in a data folder of its own whose song
# cache is empty ("empty") or filled by a walk before ("warm").
scan() {
    local build=$1 side=$2 mode=$3
    shift 3
    local data=$out/data.$side.$mode
    rm -rf "$data"
    mkdir -p "$data"
    if [ "$mode" = warm ]; then
        "$build/jukarra-cli" --data-dir "$data" scan --recurse "$collection" >/dev/null
    fi
    "$@" "$build/jukarra-cli" --data-dir "$data" scan --recurse "$collection" >/dev/null
}

for round in $(seq 1 "$rounds"); do
    for side in old new; do
        build=$old
        [ "$side" = new ] && build=$new
        for mode in empty warm; do
            echo "round $round: $side, song cache $mode" >&2
            scan "$build" "$side" "$mode" perf stat -x, -e "$events" -o "$out/perf.$side.$mode.$round.txt"
        done
    done
done
for side in old new; do
    build=$old
    [ "$side" = new ] && build=$new
    for mode in empty warm; do
        echo "strace: $side, song cache $mode" >&2
        scan "$build" "$side" "$mode" strace -f -c -o "$out/strace.$side.$mode.txt"
    done
done
songs=$(find "$collection" -type f -iname '*.mp3' | wc -l)

python3 - "$out" "$rounds" "$songs" <<'PYTHON'
import sys

folder, rounds, songs = sys.argv[1], int(sys.argv[2]), int(sys.argv[3])


def perf(side, mode):
    best = None
    for round in range(1, rounds + 1):
        counts = {}
        with open(f"{folder}/perf.{side}.{mode}.{round}.txt") as text:
            for line in text:
                fields = line.strip().split(",")
                if len(fields) > 3 and fields[0] and fields[0][0].isdigit():
                    counts[fields[2]] = float(fields[0])
        if best is None or counts.get("task-clock", 1e18) < best.get("task-clock", 1e18):
            best = counts
    return best


def syscalls(side, mode):
    calls = {}
    with open(f"{folder}/strace.{side}.{mode}.txt") as text:
        for line in text:
            fields = line.split()
            if len(fields) >= 5 and fields[0][0].isdigit() and fields[-1] != "total":
                calls[fields[-1]] = int(fields[3])
    return calls


print(f"{songs} songs; page cache warm; per song (perf: the run of least CPU of {rounds}; strace:"
      " one run, its stops slow the threads, so its futex count is high)")
for mode in ("empty", "warm"):
    print(f"\nsong cache {mode}            old         new")
    old, new = perf("old", mode), perf("new", mode)
    for event in ["task-clock", "context-switches", "cpu-migrations", "raw_syscalls:sys_enter"] + [
            e for e in sorted(old) if e.startswith("syscalls:")]:
        if event not in old and event not in new:
            continue
        scale = 1000 if event == "task-clock" else 1  # task-clock is in milliseconds
        name = {"task-clock": "CPU us", "raw_syscalls:sys_enter": "system calls (perf)"}.get(
            event, event.replace("syscalls:sys_enter_", "  "))
        print(f"  {name:22} {old.get(event, 0) * scale / songs:9.3f} "
              f"{new.get(event, 0) * scale / songs:11.3f}")
    old, new = syscalls("old", mode), syscalls("new", mode)
    print(f"  {'system calls (strace)':22} {sum(old.values()) / songs:9.3f} "
          f"{sum(new.values()) / songs:11.3f}")
    for name in sorted(set(old) | set(new), key=lambda n: -(old.get(n, 0) + new.get(n, 0))):
        if (old.get(name, 0) + new.get(name, 0)) / songs >= 0.01:
            print(f"    {name:20} {old.get(name, 0) / songs:9.3f} {new.get(name, 0) / songs:11.3f}")
print(f"\n(raw outputs in {folder})")
PYTHON
