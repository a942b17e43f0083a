#!/usr/bin/env bash
# jukarra-cli dupes of two builds over one generated catalogue (finders_bench's songs, written as
# master.dat), by each key and for each source shown, in tab-separated and in JSON form: the
# outputs and the statistics lines must be the same byte for byte. Each run's wall and CPU
# seconds are printed beside, best of ROUNDS (3) for the run by title.
#
#   bench/dupes_identity.sh OLD_BUILD NEW_BUILD [SONGS (1000000)] [ROUNDS]
#
# OLD_BUILD and NEW_BUILD are build folders configured with -DJUKARRA_BUILD_BENCH=ON (the new
# one writes the catalogue).
set -euo pipefail

if [ $# -lt 2 ]; then
    sed -n '2,10p' "$0" | sed 's/^# \{0,1\}//'
    exit 1
fi
old=$1
new=$2
songs=${3:-1000000}
rounds=${4:-3}
for build in "$old" "$new"; do
    if [ ! -x "$build/jukarra-cli" ]; then
        echo "$(basename "$0"): $build/jukarra-cli is missing" >&2
        exit 1
    fi
done
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir -p "$work/catalogue"
"$new/bench/finders_bench" "$songs" --master "$work/catalogue" > /dev/null

# run NAME BUILD ARGS...: the output in $work/NAME.out and .err, the times in $work/NAME.time
run() {
    local name=$1 build=$2
    shift 2
    rm -rf "$work/data-$name"
    cp -r "$work/catalogue" "$work/data-$name"
    /usr/bin/time -f '%e %U %S' -o "$work/$name.time" \
        "$build/jukarra-cli" --data-dir "$work/data-$name" dupes --virtual "$@" \
        > "$work/$name.out" 2> "$work/$name.err"
}
# seconds NAME: "wall s wall, cpu s CPU" of the run
seconds() {
    awk '{ printf "%.2f s wall, %.2f s CPU", $1, $2 + $3 }' "$work/$1.time"
}

failed=0
for by in title artist album size filename; do
    for show in virtual folder; do
        for form in tab json; do
            extra=()
            [ "$form" = json ] && extra=(--json)
            args=(--by "$by" --show "$show" "${extra[@]}")
            run old "$old" "${args[@]}"
            run new "$new" "${args[@]}"
            if cmp -s "$work/old.out" "$work/new.out" && cmp -s "$work/old.err" "$work/new.err"; then
                verdict=same
            else
                verdict=DIFFERENT
                failed=1
            fi
            printf '%-8s %-7s %-4s %9s: %s lines, %s | old %s | new %s\n' "$by" "$show" "$form" \
                "$verdict" "$(wc -l < "$work/new.out")" "$(cat "$work/new.err")" \
                "$(seconds old)" "$(seconds new)"
        done
    done
done

# The run by title timed again, the builds taking turns.
best() {  # best NAME: the least wall and CPU over the rounds so far, from $work/NAME.best
    sort -n "$work/$1.walls" | head -1 | tr '\n' ' '
    sort -n "$work/$1.cpus" | head -1
}
for round in $(seq "$rounds"); do
    for name in old new; do
        build=$old
        [ "$name" = new ] && build=$new
        run "$name" "$build" --by title --show virtual
        awk '{ print $1 }' "$work/$name.time" >> "$work/$name.walls"
        awk '{ print $2 + $3 }' "$work/$name.time" >> "$work/$name.cpus"
    done
done
echo "dupes --virtual --by title --show virtual, $songs songs, best of $rounds (wall s, CPU s):" \
    "old $(best old)| new $(best new)"
exit "$failed"
