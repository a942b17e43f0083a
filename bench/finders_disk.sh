#!/usr/bin/env bash
# The Search wizard's search of a collection on disk with the song cache empty (jukarra-cli
# search --subfolders, a fresh data folder each round, all nine fields), beside TagLib's FileRef
# walk of the same tree and our own reading (read_bench), all with a warm page cache; best of
# ROUNDS. The goal: the search at least 1.5x as fast as the TagLib walk.
#
#   bench/finders_disk.sh BUILD COLLECTION [ROUNDS]
#
# BUILD is a build folder configured with -DJUKARRA_BUILD_BENCH=ON; COLLECTION e.g. the one
# bench/make-collection.py makes with --songs 20000.
set -euo pipefail

if [ $# -lt 2 ]; then
    sed -n '2,10p' "$0" | sed 's/^# \{0,1\}//'
    exit 1
fi
build=$1
collection=$2
rounds=${3:-3}
cli="$build/jukarra-cli"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# The page cache warmed once, as the TagLib walk finds it.
find "$collection" -type f -name '*.mp3' -exec cat {} + > /dev/null

best_wall=""
best_cpu=""
for round in $(seq "$rounds"); do
    rm -rf "$work/data"
    mkdir -p "$work/data"
    TIMEFORMAT='%R %U %S'
    timing=$( { time "$cli" --data-dir "$work/data" search --subfolders "qzxq" "$collection" \
        > "$work/rows" 2> /dev/null; } 2>&1 )
    read -r wall user sys <<< "$timing"
    cpu=$(echo "$user + $sys" | bc)
    if [ -z "$best_wall" ] || [ "$(echo "$wall < $best_wall" | bc)" = 1 ]; then
        best_wall=$wall
    fi
    if [ -z "$best_cpu" ] || [ "$(echo "$cpu < $best_cpu" | bc)" = 1 ]; then
        best_cpu=$cpu
    fi
    echo "round $round: search ${wall} s wall, ${cpu} s CPU"
done
echo "search of $collection, song cache empty (best of $rounds): ${best_wall} s wall, ${best_cpu} s CPU"
echo "the same tree read by read_bench (warm page cache, empty song cache):"
"$build/bench/read_bench" "$collection" --passes "$rounds" --no-cold | grep -E "GetSongInfo|TagLib|songs|files" || true
