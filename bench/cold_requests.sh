#!/usr/bin/env bash
# A cold walk of two builds side by side, through the command-line tool's recursive scan with an
# empty song cache: for each pass from a dropped page cache, its wall time, the processor time it
# took (user and system) and its context switches, and the read requests the device served
# meanwhile (how many, their average size, how many were in flight on average, the MB read).
# The processor figures move little with other work on the machine; the wall time does.
# The builds take turns, the one that goes first changing from round to round.
#
#   bench/cold_requests.sh OLD_BUILD NEW_BUILD COLLECTION [ROUNDS]
#
# Run as root (it writes /proc/sys/vm/drop_caches). ROUNDS is 3 by default.
set -euo pipefail

source "$(dirname "$0")/two-builds.sh"
two_builds "$0" "$@"
source=$(df --output=source "$collection" | tail -1)
device=$(lsblk -no PKNAME "$source" 2>/dev/null || true)
[ -n "$device" ] || device=$(basename "$source")
if [ ! -r "/sys/block/$device/stat" ]; then
    echo "cold_requests.sh: no /sys/block/$device/stat for $collection" >&2
    exit 1
fi
data=$(mktemp -d /tmp/cold-requests.XXXXXX)
trap 'rm -rf "$data"' EXIT

pass() {  # build side
    rm -rf "${data:?}/$2"
    mkdir -p "$data/$2"
    sync
    echo 3 > /proc/sys/vm/drop_caches
    local before after start end
    before=$(cat "/sys/block/$device/stat")
    start=$(date +%s.%N)
    /usr/bin/time -f '%U %S %c %w' -o "$data/time" \
        "$1/jukarra-cli" --data-dir "$data/$2" scan --recurse "$collection" > /dev/null
    end=$(date +%s.%N)
    after=$(cat "/sys/block/$device/stat")
    python3 - "$2" "$start" "$end" "$(cat "$data/time")" "$before" "$after" <<'PYTHON'
import sys
side, start, end = sys.argv[1], float(sys.argv[2]), float(sys.argv[3])
user, system, involuntary, voluntary = sys.argv[4].split()
before = [int(v) for v in sys.argv[5].split()]
after = [int(v) for v in sys.argv[6].split()]
reads, merged, sectors, read_ms = (after[i] - before[i] for i in range(4))
wall = end - start
print("%-4s wall %6.3f s  cpu %5.2f user + %5.2f sys  switches %6s + %5s  requests %6d "
      "(%5d merged) of %5.1f KB, %4.1f in flight, %6.0f MB" % (
          side, wall, float(user), float(system), voluntary, involuntary, reads, merged,
          sectors * 512 / 1024 / reads if reads else 0, read_ms / 1000 / wall, sectors * 512 / 1e6))
PYTHON
}

for round in $(seq 1 "$rounds"); do
    if [ $((round % 2)) -eq 1 ]; then
        pass "$old" old
        pass "$new" new
    else
        pass "$new" new
        pass "$old" old
    fi
done
