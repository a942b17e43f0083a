#!/usr/bin/env bash
# Runs the benchmarks of two builds side by side on one collection and prints their figures in
# one table: each line's ratio to its peer (read_bench, walk_bench) or its time (cache_bench,
# the shuffles), best of the rounds, the old build's beside the new one's. The builds take
# turns, the one that goes first changing from round to round, so that a moment of load on the
# machine falls on both.
#
#   bench/compare.sh OLD_BUILD NEW_BUILD COLLECTION [ROUNDS] [-- BENCH OPTIONS]
#
# OLD_BUILD and NEW_BUILD are build folders configured with -DJUKARRA_BUILD_BENCH=ON (for the
# old one, e.g. `git worktree add /tmp/old <commit>` and a build there). ROUNDS is 3 by default.
# Options after "--" go to read_bench and walk_bench (e.g. --no-cold when the page cache can't
# be dropped). The raw outputs stay in a folder named at the end.
set -euo pipefail

if [ $# -lt 3 ]; then
    sed -n '2,13p' "$0" | sed 's/^# \{0,1\}//'
    exit 1
fi
old=$1
new=$2
collection=$3
rounds=${4:-3}
shift $(( $# >= 4 ? 4 : 3 ))
if [ "${1:-}" = "--" ]; then
    shift
fi
extra=("$@")

for build in "$old" "$new"; do
    for program in read_bench walk_bench cache_bench; do
        if [ ! -x "$build/bench/$program" ]; then
            echo "compare.sh: $build/bench/$program is missing (configure with -DJUKARRA_BUILD_BENCH=ON)" >&2
            exit 1
        fi
    done
done

out=$(mktemp -d /tmp/bench-compare.XXXXXX)
for round in $(seq 1 "$rounds"); do
    if [ $((round % 2)) -eq 1 ]; then order=(old new); else order=(new old); fi
    for program in read_bench walk_bench cache_bench; do
        for side in "${order[@]}"; do
            build=$old
            [ "$side" = new ] && build=$new
            echo "round $round: $side $program" >&2
            if [ "$program" = cache_bench ]; then
                "$build/bench/$program" > "$out/$side.$program.$round.txt"
            else
                "$build/bench/$program" "$collection" "${extra[@]}" > "$out/$side.$program.$round.txt"
            fi
        done
    done
done

python3 - "$out" "$rounds" <<'PYTHON'
import re
import sys

folder, rounds = sys.argv[1], int(sys.argv[2])
RATIO = re.compile(r"^  (\S.*?)\s{2,}[\d.]+\s+[\d.]+\s+([\d.]+)x(\s|$)")
TIMED = [
    (re.compile(r"^(save): \d+ records in ([\d.]+) ms"), "ms"),
    (re.compile(r"^(load): \d+ records in ([\d.]+) ms"), "ms"),
    (re.compile(r"^  (enhanced, [^:]+|quick, [^:]+): ([\d.]+) s"), "s"),
    (re.compile(r"^  (SaveList of \d+ rows \(relative paths\)): ([\d.]+) ms"), "ms"),
]


def figures(path):
    """(section, line) -> (value, kind) of one output; kind "ratio" (higher is better) or a unit."""
    found = {}
    section = ""
    for line in open(path, encoding="utf-8", errors="replace"):
        line = line.rstrip("\n")
        if line and not line.startswith(" ") and not line.startswith("collection") \
                and not line.startswith("machine"):
            section = line.split(":")[0] if line.startswith("page cache dropped") else line
        match = RATIO.match(line)
        if match:
            found[(section, match.group(1).strip())] = (float(match.group(2)), "ratio")
            continue
        for pattern, unit in TIMED:
            match = pattern.match(line)
            if match:
                found[(section if unit != "ms" or "SaveList" in line else "cache.dat",
                       match.group(1))] = (float(match.group(2)), unit)
    return found


print("%-60s %11s %11s %8s" % ("", "old", "new", "new/old"))
for program in ("read_bench", "walk_bench", "cache_bench"):
    best = {"old": {}, "new": {}}
    order = []
    for side in ("old", "new"):
        for r in range(1, rounds + 1):
            for key, (value, kind) in figures("%s/%s.%s.%d.txt" % (folder, side, program, r)).items():
                if key not in order:
                    order.append(key)
                previous = best[side].get(key)
                better = previous is None or (value > previous[0] if kind == "ratio"
                                              else value < previous[0])
                if better:
                    best[side][key] = (value, kind)
    print("\n%s (best of %d; ratios: higher is better, times: lower is better)" % (program, rounds))
    last = None
    for key in order:
        section, name = key
        if section != last:
            print("  %s" % section[:100])
            last = section
        o = best["old"].get(key)
        n = best["new"].get(key)
        kind = (o or n)[1]
        text = lambda v: "-" if v is None else ("%.2fx" % v[0] if kind == "ratio" else "%.3f %s" % (v[0], kind))
        change = "%.3f" % (n[0] / o[0]) if o and n and o[0] else "-"
        print("    %-56s %11s %11s %8s" % (name[:56], text(o), text(n), change))
print("\nraw outputs: %s" % folder)
PYTHON
