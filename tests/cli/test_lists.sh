#!/usr/bin/env bash
# End-to-end tests of the browsing and playlist commands of jukarra-cli (drives, scan,
# playlist show and add, shuffle) on a fresh data folder, with small MP3 files copied from the
# test data.
# Usage: test_lists.sh PATH_TO_JUKARRA_CLI
set -u

CLI=${1:?usage: test_lists.sh PATH_TO_JUKARRA_CLI}
CLI="$(cd "$(dirname "$CLI")" && pwd)/$(basename "$CLI")"
SONGS="$(cd "$(dirname "$0")/../data/songs" && pwd)"
# shellcheck source=cli_test_support.sh
. "$(dirname "$0")/cli_test_support.sh"
DATA="$WORK/data"
MUSIC="$WORK/music"
LISTS="$WORK/lists"
mkdir -p "$DATA" "$MUSIC" "$LISTS"

# run ARGS...: runs the tool on the data folder, leaving OUT, ERR and RC.
run() { capture "$CLI" --data-dir "$DATA" "$@"; }

# column N: prints column N (1-based) of the tab-separated rows in OUT, header left out.
column() { tail -n +2 <<<"$OUT" | cut -f "$1"; }

# The songs of a folder walk in the file system's own order (what readdir gives, as `ls -U`
# shows it): the .mp3 files of a folder, then each sub-folder the same way.
walk_order() {
    python3 - "$1" "${2:-}" <<'EOF'
import os, sys
def walk(folder, recurse):
    names = os.listdir(folder)  # readdir order, not sorted
    for name in names:
        path = os.path.join(folder, name)
        if not os.path.isdir(path) and name.lower().endswith(".mp3"):
            print(path)
    if recurse:
        for name in names:
            path = os.path.join(folder, name)
            if os.path.isdir(path) and not os.path.islink(path):
                walk(path, recurse)
walk(sys.argv[1], sys.argv[2] == "recurse")
EOF
}

# A small collection whose files and folders are made in a known order; the file system may
# list them in another.
for name in one two three four five six; do
    cp "$SONGS/cbr64-id3v1.mp3" "$MUSIC/$name.mp3"
done
cp "$SONGS/vbr-xing.mp3" "$MUSIC/xing song.mp3"
cp "$SONGS/mpeg2-untagged.mp3" "$MUSIC/untagged_song.mp3"
# Long enough to be read as a song when the filter lets every file through.
head -c 400 /dev/zero | tr '\0' 'x' >"$MUSIC/notes.txt"
for sub in zeta alpha mid; do
    mkdir -p "$MUSIC/$sub/inner"
    cp "$SONGS/id3v24-utf8.mp3" "$MUSIC/$sub/$sub-a.mp3"
    cp "$SONGS/mono22-id3v1.mp3" "$MUSIC/$sub/$sub-b.mp3"
    cp "$SONGS/cbr32-info-id3v2.mp3" "$MUSIC/$sub/inner/$sub-deep.mp3"
done
ln -s "$MUSIC/alpha" "$MUSIC/link-to-alpha"

# --- help ---
"$CLI" --help >"$WORK/out" 2>&1
for usage in "drives \[--json\]" "scan \[--recurse\] \[--json\] FOLDER" "playlist show" \
    "playlist add FILE PATH" "shuffle \[--quick|--enhanced\]"; do
    grep -q "^  $usage" "$WORK/out" || fail "--help does not list '$usage'"
done

# --- drives: "/" first, as the tree shows it ---
run drives
expect_rc 0 "drives"
[ "$(head -n 1 <<<"$OUT")" = $'Root\tLabel\tType\tShortcut' ] || fail "drives: no header line: $OUT"
[ "$(sed -n 2p <<<"$OUT" | cut -f 1)" = "/" ] || fail "drives: / is not the first root: $OUT"
grep -qE $'^/\t\t[1345]\t$' <<<"$OUT" || fail "drives: / has no type or a label: $OUT"
grep -qxF "$HOME"$'\thome\t'"$(grep -E $'^/\t' <<<"$OUT" | cut -f 3)"$'\thome' <<<"$OUT" ||
    fail "drives: the home shortcut is not marked: $OUT"
run drives --json
expect_rc 0 "drives --json"
python3 -c '
import json, sys
lines = [json.loads(l) for l in sys.stdin]
assert lines[0]["Root"] == "/" and lines[0]["HomeShortcut"] is False, lines[0]
assert all(list(d) == ["Root", "Text", "Label", "Type", "HomeShortcut"] for d in lines), lines
assert all(isinstance(d["Type"], int) and d["Type"] in (1, 3, 4, 5) for d in lines), lines
assert [d["HomeShortcut"] for d in lines].count(True) == 1 and lines[-1]["HomeShortcut"], lines
' <"$WORK/out" || fail "drives --json: $OUT"

# --- scan of one folder: the files pane, in the file system's order ---
run scan "$MUSIC"
expect_rc 0 "scan"
[ "$(head -n 1 <<<"$OUT")" = $'Title\tArtist\tAlbum\tYear\tGenre\tTime\tBitrate\tFilename\tComment\tSize\tDate\tVolume' ] ||
    fail "scan: the header line is wrong: $(head -n 1 <<<"$OUT")"
[ "$(column 8)" = "$(walk_order "$MUSIC")" ] || fail "scan: not the listing order: $(column 8)"
grep -q $'^Plain Title\tPlain Artist\tPlain Album - 04\t1998\tRock\t00:01\t' <<<"$OUT" ||
    fail "scan: a song's columns are wrong"
grep -qF $'untagged song\t\t\t\t' <<<"$OUT" || fail "scan: an untagged song is not named by its file"
[ -z "$ERR" ] || fail "scan: unexpected stderr '$ERR'"
(cd "$WORK" && "$CLI" --data-dir "$DATA" scan --json music) >"$WORK/out" 2>"$WORK/err"
python3 - "$MUSIC" "$WORK/out" <<'EOF' || fail "scan --json of a relative folder"
import json, sys
names = ["Title", "Artist", "Album", "Year", "Genre", "Time", "Bitrate", "Filename", "Comment",
         "Size", "Date", "Volume"]
rows = [json.loads(line) for line in open(sys.argv[2], encoding="utf-8")]
assert len(rows) == 8, rows
assert all(list(r) == names for r in rows), rows
assert all(r["Filename"].startswith(sys.argv[1] + "/") for r in rows), rows
EOF
run cache stats
grep -qx "Cache size: 8 / Infinity" <<<"$OUT" || fail "scan did not save the cache: $OUT"

# --- scan --recurse: a folder's songs before its sub-folders, links to folders not followed ---
run scan --recurse "$MUSIC/"
expect_rc 0 "scan --recurse"
[ "$(column 8)" = "$(walk_order "$MUSIC" recurse)" ] ||
    fail "scan --recurse: not the walk order: $(column 8)"
[ "$(($(wc -l <<<"$OUT") - 1))" -eq 17 ] || fail "scan --recurse: not 17 songs: $OUT"
run --set FilterMode=2 scan "$MUSIC"
grep -qF "$MUSIC/notes.txt" <<<"$OUT" || fail "scan with FilterMode=2 left out a text file"
run scan "$MUSIC/no-such-folder"
expect_rc 2 "scan of a missing folder"
expect_one_error_line "scan of a missing folder"

# --- playlist add, then show ---
LIST="$LISTS/mix.m3u"
run playlist add "$LIST" "$MUSIC/one.mp3" "$MUSIC/alpha" "$MUSIC/two.mp3"
expect_rc 0 "playlist add"
[ -z "$OUT$ERR" ] || fail "playlist add printed '$OUT$ERR'"
EXPECTED=$(printf '%s\n' "$MUSIC/one.mp3" "$(walk_order "$MUSIC/alpha" recurse)" "$MUSIC/two.mp3")
[ "$(tr -d '\r' <"$LIST")" = "$EXPECTED" ] || fail "playlist add wrote: $(cat "$LIST")"
[ "$(grep -c $'\r$' "$LIST")" -eq 5 ] || fail "playlist add: lines do not end in CR LF"
run playlist show "$LIST"
expect_rc 0 "playlist show"
[ "$(column 8)" = "$EXPECTED" ] || fail "playlist show: $(column 8)"
grep -q $'^Plain Title\t' <<<"$OUT" || fail "playlist show: the songs are not read"

# A second add keeps what the list holds; a list file adds its songs.
printf '#EXTM3U\r\n#EXTINF:1,x\r\n%s\r\n' "$MUSIC/three.mp3" >"$LISTS/extra.m3u"
run playlist add "$LIST" "$LISTS/extra.m3u"
expect_rc 0 "playlist add of a list"
[ "$(tr -d '\r' <"$LIST" | tail -n 1)" = "$MUSIC/three.mp3" ] || fail "a list's songs were not added"
[ "$(wc -l <"$LIST")" -eq 6 ] || fail "a second add did not keep the list: $(cat "$LIST")"

# A PATH that can't be added leaves the list as it was.
BEFORE=$(checksum "$LIST")
run playlist add "$LIST" "$MUSIC/four.mp3" "$MUSIC/missing.mp3"
expect_rc 2 "playlist add of a missing song"
expect_one_error_line "playlist add of a missing song"
grep -qF "$MUSIC/missing.mp3" <<<"$ERR" || fail "the missing song is not named: $ERR"
[ "$(checksum "$LIST")" = "$BEFORE" ] || fail "a failed add changed the list"
run playlist add "$LIST" "$MUSIC/notes.txt"
expect_rc 2 "playlist add of a file the filter leaves out"
run playlist add "$LISTS/new.m3u" "$MUSIC/missing.mp3"
expect_rc 2 "playlist add of a missing song to a new list"
[ -e "$LISTS/new.m3u" ] && fail "a failed add created the list"

# --- relative paths: written relative to the list, read back as the same full paths ---
REL="$LISTS/rel.m3u"
cp "$SONGS/cbr64-id3v1.mp3" "$LISTS/here.mp3"
run --set RelativePaths=1 playlist add "$REL" "$LISTS/here.mp3" "$MUSIC/five.mp3" "$MUSIC/mid/inner"
expect_rc 0 "playlist add with RelativePaths=1"
[ "$(cat "$REL")" = $'here.mp3\r\n../music/five.mp3\r\n../music/mid/inner/mid-deep.mp3\r' ] ||
    fail "relative paths written as: $(cat -A "$REL")"
run playlist show "$REL"
[ "$(column 8)" = "$(printf '%s\n' "$LISTS/here.mp3" "$MUSIC/five.mp3" "$MUSIC/mid/inner/mid-deep.mp3")" ] ||
    fail "relative paths read back as: $(column 8)"
run playlist add "$REL" "$MUSIC/six.mp3"
[ "$(tr -d '\r' <"$REL")" = "$(printf '%s\n' "$LISTS/here.mp3" "$MUSIC/five.mp3" "$MUSIC/mid/inner/mid-deep.mp3" "$MUSIC/six.mp3")" ] ||
    fail "RelativePaths=0 did not write full paths: $(cat "$REL")"

# --- ghosts: a line that points nowhere keeps its path; HideGhosts drops it ---
GHOSTS="$LISTS/ghosts.m3u"
printf '%s\r\n%s\r\n%s\r\n' "$MUSIC/one.mp3" "$MUSIC/gone_away.mp3" "$MUSIC/two.mp3" >"$GHOSTS"
run playlist show "$GHOSTS"
expect_rc 0 "playlist show with a ghost"
grep -qxF "* gone away"$'\t\t\t\t\t\t\t'"$MUSIC/gone_away.mp3"$'\t\t\t\t' <<<"$OUT" ||
    fail "playlist show: no ghost row: $OUT"
[ "$(($(wc -l <<<"$OUT") - 1))" -eq 3 ] || fail "playlist show: ghosts not shown"
run --set Options.HideGhosts=1 playlist show --json "$GHOSTS"
expect_rc 0 "playlist show with HideGhosts"
[ "$(wc -l <<<"$OUT")" -eq 2 ] || fail "HideGhosts=1 kept the ghost: $OUT"
grep -q "gone_away" <<<"$OUT" && fail "HideGhosts=1 kept the ghost"
run playlist show "$LISTS/no-such-list.m3u"
expect_rc 2 "playlist show of a missing list"
expect_one_error_line "playlist show of a missing list"
[ -z "$OUT" ] || fail "playlist show of a missing list printed '$OUT'"

# --- shuffle: the same seed gives the same order; a permutation either way ---
SORTED=$(tr -d '\r' <"$LIST" | sort)
run shuffle --seed 42 "$LIST"
expect_rc 0 "shuffle --seed"
FIRST=$OUT
run shuffle --seed 42 "$LIST"
[ "$OUT" = "$FIRST" ] || fail "shuffle --seed 42 gave two orders"
[ "$(sort <<<"$FIRST")" = "$SORTED" ] || fail "shuffle is not a permutation: $FIRST"
DIFFERENT=0
for seed in 1 2 3 4 5; do
    for kind in --quick --enhanced; do
        run shuffle "$kind" --seed "$seed" "$LIST"
        expect_rc 0 "shuffle $kind --seed $seed"
        [ "$(sort <<<"$OUT")" = "$SORTED" ] || fail "shuffle $kind --seed $seed is not a permutation"
        [ "$OUT" != "$FIRST" ] && DIFFERENT=1
    done
done
[ "$DIFFERENT" -eq 1 ] || fail "shuffle gave one order for every seed"
run --set QuickShuffle=1 shuffle --seed 7 "$LIST"
QUICK=$OUT
run shuffle --quick --seed 7 "$LIST"
[ "$OUT" = "$QUICK" ] || fail "QuickShuffle=1 is not the plain shuffle"
run --set QuickShuffle=0 shuffle --seed 7 "$LIST"
ENHANCED=$OUT
run shuffle --enhanced --seed 7 "$LIST"
[ "$OUT" = "$ENHANCED" ] || fail "QuickShuffle=0 is not the enhanced shuffle"

# --write saves the order printed, as a list is saved.
cp "$LIST" "$LISTS/shuffled.m3u"
run shuffle --seed 9 --write "$LISTS/shuffled.m3u"
expect_rc 0 "shuffle --write"
[ "$(tr -d '\r' <"$LISTS/shuffled.m3u")" = "$OUT" ] || fail "shuffle --write did not save the order printed"
[ "$(grep -c $'\r$' "$LISTS/shuffled.m3u")" -eq 6 ] || fail "shuffle --write: lines do not end in CR LF"

# --- a list that can't be written: one line, exit 2, the old file untouched ---
run playlist add "$LISTS/here.mp3/list.m3u" "$MUSIC/one.mp3"
expect_rc 2 "playlist add into a path through a file"
expect_one_error_line "playlist add into a path through a file"
grep -qF "Uh-oh... Current playlist could not be saved successfully." <<<"$ERR" ||
    fail "an unwritable list does not say Uh-oh: $ERR"
# A song more than 40 folders deep can't be written relative to the list.
DEEP="$WORK/d"
for i in $(seq 1 41); do DEEP="$DEEP/f$i"; done
mkdir -p "$DEEP"
cp "$SONGS/cbr64-id3v1.mp3" "$DEEP/deep.mp3"
BEFORE=$(checksum "$REL")
run --set RelativePaths=1 playlist add "$REL" "$DEEP/deep.mp3"
expect_rc 2 "playlist add of a song too deep to write"
expect_one_error_line "playlist add of a song too deep to write"
grep -q "Uh-oh" <<<"$ERR" || fail "a list too deep to write does not say Uh-oh: $ERR"
[ "$(checksum "$REL")" = "$BEFORE" ] || fail "a failed save changed the old list"
ls "$LISTS" | grep -qv '\.m3u$\|\.mp3$' && fail "a failed save left a file behind: $(ls "$LISTS")"

# --- Ctrl-C stops a walk between songs: the rows so far are printed and cached ---
MANY="$WORK/many"
mkdir -p "$MANY"
# Enough rows to fill the pipe. One tee writes a few hundred copies at once: a cp for each
# would start 1,500 processes, most of this test's time on a loaded machine.
for first in 1 301 601 901 1201; do
    copies=()
    for ((i = first; i < first + 300; i++)); do copies+=("$MANY/song$i.mp3"); done
    tee "${copies[@]}" <"$SONGS/cbr64-id3v1.mp3" >/dev/null
done
rm -f "$DATA/cache.dat"
mkfifo "$WORK/pipe"
set -m  # a job of its own, so that SIGINT is not ignored in the background
"$CLI" --data-dir "$DATA" scan "$MANY" >"$WORK/pipe" 2>"$WORK/err" &
SCANNER=$!
set +m
exec 3<"$WORK/pipe"
# The scan fills the pipe and waits; the interrupt reaches it mid-walk.
read -r HEADER <&3
kill -INT "$SCANNER"
cat <&3 >"$WORK/out"
exec 3<&-
wait "$SCANNER"
RC=$?
[ "$RC" -eq 130 ] || fail "an interrupted scan exited $RC"
ROWS=$(wc -l <"$WORK/out")
[ "$ROWS" -gt 0 ] && [ "$ROWS" -lt 1500 ] || fail "an interrupted scan printed $ROWS rows"
[[ "$HEADER" == Title* ]] || fail "an interrupted scan printed no header"
run cache stats
grep -qx "Cache size: $ROWS / Infinity" <<<"$OUT" ||
    fail "an interrupted scan cached other than its $ROWS rows: $OUT"

# --- while the desktop program holds the data folder ---
hold_data_folder "$DATA"
CACHE_BEFORE=$(checksum "$DATA/cache.dat")
run scan "$MUSIC"
expect_rc 0 "scan while the desktop program runs"
[ "$(($(wc -l <<<"$OUT") - 1))" -eq 8 ] || fail "scan while the desktop program runs printed no songs"
expect_one_error_line "scan while the desktop program runs"
grep -q "not saved" <<<"$ERR" || fail "scan while the desktop program runs does not say so: $ERR"
[ "$(checksum "$DATA/cache.dat")" = "$CACHE_BEFORE" ] || fail "scan saved the cache under the desktop program"
LIST_BEFORE=$(checksum "$LIST")
for args in "playlist add $LIST $MUSIC/one.mp3" "shuffle --write $LIST"; do
    # shellcheck disable=SC2086
    run $args
    expect_rc 2 "'$args' while the desktop program runs"
    expect_one_error_line "'$args' while the desktop program runs"
    [ -z "$OUT" ] || fail "'$args' while the desktop program runs printed '$OUT'"
done
[ "$(checksum "$LIST")" = "$LIST_BEFORE" ] || fail "a list was written under the desktop program"
run shuffle --seed 1 "$LIST"
expect_rc 0 "shuffle while the desktop program runs"
run playlist show "$LIST"
expect_rc 0 "playlist show while the desktop program runs"
release_data_folder

# --- bad usage ---
for args in "drives extra" "drives --json=1" "scan" "scan a b" "scan --bogus $MUSIC" "playlist" \
    "playlist frob" "playlist show" "playlist show a.m3u b.m3u" "playlist add $LIST" \
    "playlist add --json $LIST $MUSIC" "shuffle" "shuffle --quick --enhanced $LIST" \
    "shuffle --seed abc $LIST" "shuffle --seed -1 $LIST" "shuffle --seed" "shuffle a.m3u b.m3u"; do
    # shellcheck disable=SC2086
    run $args
    expect_rc 1 "bad usage '$args'"
    expect_one_error_line "bad usage '$args'"
    [ -z "$OUT" ] || fail "bad usage '$args': unexpected output '$OUT'"
done

finish "list command"
