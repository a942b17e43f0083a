#!/usr/bin/env bash
# Runs the benchmarks of two builds side by side on one collection and prints their figures in
# one table: each line's ratio to its peer (read_bench, walk_bench) or its time (cache_bench,
# the shuffles), best of the rounds, the old build's beside the new one's, with the megabytes a
# pass from a dropped page cache read from the disk where the build's benchmark measures them
# (the whole device / the program alone), and the cold walk's bytes against the I/O floor's.
# The builds take turns, the one that goes first changing from round to round, so that a
# moment of load on the machine falls on both.
#
#   bench/compare.sh OLD_BUILD NEW_BUILD COLLECTION [ROUNDS] [-- BENCH OPTIONS]
#
# OLD_BUILD and NEW_BUILD are build folders configured with -DJUKARRA_BUILD_BENCH=ON (for the
# old one, e.g. `git worktree add /tmp/old <commit>` and a build there). ROUNDS is 3 by default.
# Options after "--" go to read_bench and walk_bench (e.g. --no-cold when the page cache can't
# be dropped). The raw outputs stay in a folder named at the end.
set -euo pipefail

if [ $# -lt 3 ]; then
    sed -n '2,15p' "$0" | sed 's/^# \{0,1\}//'
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
# A row of read_bench or walk_bench: name, files/s, seconds, ratio, then (read_bench) the CPU per
# file and (passes from a dropped page cache) the MB read by the whole device and by the program.
RATIO = re.compile(r"^  (\S.*?)\s{2,}[\d.]+\s+[\d.]+\s+([\d.]+)x(\s.*)?$")
TIMED = [
    (re.compile(r"^(save): \d+ records in ([\d.]+) ms"), "ms"),
    (re.compile(r"^(load): \d+ records in ([\d.]+) ms"), "ms"),
    (re.compile(r"^  (enhanced, [^:]+|quick, [^:]+): ([\d.]+) s"), "s"),
    (re.compile(r"^  (SaveList of \d+ rows \(relative paths\)): ([\d.]+) ms"), "ms"),
    (re.compile(r"^(peak memory)[^:]*: ([\d.]+) MiB"), "MiB"),
    (re.compile(r"^load: \d+ records in [\d.]+ ms, (peak memory) of the loading process ([\d.]+) MiB"),
     "MiB"),
]


def number(text):
    try:
        return float(text)
    except ValueError:
        return None


def figures(path):
    """(section, line) -> (value, kind, device MB, own MB) of one output; kind "ratio" (higher
    is better) or a unit (lower is better); the MBs are None where the line has none."""
    found = {}
    section = ""
    for line in open(path, encoding="utf-8", errors="replace"):
        line = line.rstrip("\n")
        if line and not line.startswith(" ") and not line.startswith("collection") \
                and not line.startswith("machine"):
            section = line.split(":")[0] if line.startswith("page cache dropped") else line
        match = RATIO.match(line)
        if match:
            rest = (match.group(3) or "").split()
            device = number(rest[-2]) if len(rest) >= 2 else None
            own = number(rest[-1]) if len(rest) >= 2 else None
            found[(section, match.group(1).strip())] = (float(match.group(2)), "ratio", device, own)
            continue
        for pattern, unit in TIMED:
            match = pattern.match(line)
            if match:
                where = "cache.dat" if line.startswith(("save", "load")) else \
                    "memory" if line.startswith("peak memory") else section
                found[(where, match.group(1))] = (float(match.group(2)), unit, None, None)
    return found


def least(a, b):
    return b if a is None else a if b is None else min(a, b)


def megabytes(value):
    return "-" if value is None else "%.0f" % value


COLD_OURS = ("RecurseDirReal into rows, song cache empty", "GetSongInfo, extensions on")
COLD_FLOOR = ("I/O floor walk (stat, 4 KB head, 256 B tail)", "I/O floor (stat, head, tail)")

print("%-56s %11s %11s %7s %13s %13s" % ("", "old", "new", "new/old", "MB disk old", "MB disk new"))
for program in ("read_bench", "walk_bench", "cache_bench"):
    # Per side: the best figure of the rounds, and the fewest bytes (the device is shared, so
    # the least a round saw is the nearest to the program's own).
    best = {"old": {}, "new": {}}
    order = []
    for side in ("new", "old"):
        for r in range(1, rounds + 1):
            path = "%s/%s.%s.%d.txt" % (folder, side, program, r)
            for key, (value, kind, device, own) in figures(path).items():
                if key not in order:
                    order.append(key)
                previous = best[side].get(key)
                if previous is None:
                    best[side][key] = [value, kind, device, own]
                    continue
                better = value > previous[0] if kind == "ratio" else value < previous[0]
                if better:
                    previous[0] = value
                previous[2] = least(previous[2], device)
                previous[3] = least(previous[3], own)
    print("\n%s (best of %d; ratios: higher is better, times: lower is better; MB read from the "
          "disk: the whole device / this program)" % (program, rounds))
    last = None
    for key in order:
        section, name = key
        if section != last:
            print("  %s" % section[:100])
            last = section
        o = best["old"].get(key)
        n = best["new"].get(key)
        kind = (o or n)[1]

        def text(v):
            if v is None:
                return "-"
            return "%.2fx" % v[0] if kind == "ratio" else "%.3f %s" % (v[0], kind)

        def disk(v):
            if v is None or (v[2] is None and v[3] is None):
                return ""
            return "%s / %s" % (megabytes(v[2]), megabytes(v[3]))

        change = "%.3f" % (n[0] / o[0]) if o and n and o[0] else "-"
        print("    %-52s %11s %11s %7s %13s %13s" % (name[:52], text(o), text(n), change, disk(o),
                                                    disk(n)))
    # The cold pass's bytes against the I/O floor's (stat, a 4 KB head, a 256 B tail).
    for side in ("old", "new"):
        rows = best[side]
        ours = next((v for (s, nm), v in rows.items() if s == "page cache dropped" and nm in COLD_OURS), None)
        floor = next((v for (s, nm), v in rows.items() if s == "page cache dropped" and nm in COLD_FLOOR), None)
        if ours and floor and ours[2] is not None and floor[2]:
            own = ("%.2fx" % (ours[3] / floor[3])) if ours[3] is not None and floor[3] else "-"
            print("  %s: cold pass read %.2fx the I/O floor's bytes from the device (%s by this "
                  "program)" % (side, ours[2] / floor[2], own))
print("\nraw outputs: %s" % folder)
PYTHON
