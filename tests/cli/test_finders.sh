#!/usr/bin/env bash
# End-to-end tests of the finders' commands of jukarra-cli (search, select, dupes) on a fresh
# data folder, over a small tree of MP3 files tagged by the tool itself.
# Usage: test_finders.sh PATH_TO_JUKARRA_CLI
set -u

CLI=${1:?usage: test_finders.sh PATH_TO_JUKARRA_CLI}
CLI="$(cd "$(dirname "$CLI")" && pwd)/$(basename "$CLI")"
SONGS="$(cd "$(dirname "$0")/../data/songs" && pwd)"
# shellcheck source=cli_test_support.sh
. "$(dirname "$0")/cli_test_support.sh"
DATA="$WORK/data"
MUSIC="$WORK/music"
HIDDEN="$MUSIC/Jazz/Temporary Internet Files"
mkdir -p "$DATA" "$MUSIC/Rock" "$HIDDEN"
export TZ=UTC

run() { capture "$CLI" --data-dir "$DATA" "$@"; }

# rows: the result rows printed (the lines under the header).
rows() { tail -n +2 <<<"$OUT" | grep -c . ; }
# column N: the Nth tab-separated column of every result row.
column() { tail -n +2 <<<"$OUT" | cut -f"$1"; }

# song SOURCE DEST [tag set options...]: a song with only the tags given.
song() {
    local source=$1 dest=$2
    shift 2
    cp "$SONGS/$source" "$dest"
    "$CLI" --data-dir "$DATA" tag strip "$dest" >/dev/null 2>&1
    [ $# -eq 0 ] || "$CLI" --data-dir "$DATA" tag set "$@" "$dest" >/dev/null ||
        fail "could not tag $dest"
}
song cbr64-id3v1.mp3 "$MUSIC/Rock/Blue.mp3" --title "Blue Sky" --artist "The Band" --year 1995
song cbr32-info-id3v2.mp3 "$MUSIC/Rock/Blue2.mp3" --title "BLUE SKY" --artist "the band" \
    --year 1999
song cbr64-id3v1.mp3 "$MUSIC/Rock/Other.mp3" --title "Other" --artist "The Band"
song cbr64-id3v1.mp3 "$MUSIC/Jazz/Green.mp3" --title "Green" --artist "Trio" --year 2001
song cbr64-id3v1.mp3 "$HIDDEN/Hidden.mp3" --title "Blue hidden"
song cbr64-id3v1.mp3 "$MUSIC/Top.mp3" --title "Straße Süd" --artist "Ünal"
song mpeg2-untagged.mp3 "$MUSIC/Untitled.mp3"
# Every song written on the first days of 2001, the last one on 2 January.
touch -d "2001-01-01 12:00" "$MUSIC"/*.mp3 "$MUSIC"/*/*.mp3 "$HIDDEN"/*.mp3
touch -d "2001-01-02 12:00" "$MUSIC/Jazz/Green.mp3"

# --- help ---
"$CLI" --help >"$WORK/out" 2>&1
for usage in "search \[OPTIONS\] QUERY" "select \[--in FIELDS\]" "dupes \[--by KEY\]" \
    "dupes ... --propose"; do
    grep -q "^  $usage" "$WORK/out" || fail "--help does not list '$usage'"
done

# --- search: the folder's own files unless --subfolders; the header and the statistics ---
run search Blue "$MUSIC"
expect_rc 0 "search without subfolders"
[ "$(rows)" -eq 0 ] || fail "search without subfolders found songs below: $OUT"
[ "$(head -1 <<<"$OUT")" = "$(printf 'Title\tArtist\tAlbum\tYear\tGenre\tTime\tBitrate\tFilename\tComment\tSize\tDate\tVolume')" ] ||
    fail "search: the header is not the twelve columns: $(head -1 <<<"$OUT")"
[ "$ERR" = " No results." ] || fail "search with no hit: stderr '$ERR'"

run search --subfolders Blue "$MUSIC"
expect_rc 0 "search with subfolders"
[ "$(column 8 | sort | tr '\n' ' ')" = "$MUSIC/Rock/Blue.mp3 $MUSIC/Rock/Blue2.mp3 " ] ||
    fail "search with subfolders: not the two Rock songs (Temporary Internet Files is passed over): $OUT"
[[ "$ERR" == " 2 songs - "*", 0.01 MB" ]] || fail "search: statistics '$ERR'"

run search --subfolders Blue "$HIDDEN"
[ "$(column 1)" = "Blue hidden" ] || fail "a search that starts in Temporary Internet Files searches it: $OUT"

# Fields, case, the query as it stands, Unicode letters folded one by one.
while IFS='|' read -r what args want; do
    eval "run search --subfolders $args \"\$MUSIC\""
    expect_rc 0 "search $what"
    got=$(column 1 | sort | tr '\n' ',')
    [ "$got" = "$want" ] || fail "search $what: titles '$got', wanted '$want'"
done <<'EOF'
title only, any case|--in title blue|BLUE SKY,Blue Sky,
case-sensitive|--in title --case Blue|Blue Sky,
artist|--in artist BAND|BLUE SKY,Blue Sky,Other,
non-ASCII letters ignoring case|--in artist ünal|Straße Süd,
a leading blank is kept|--in title ' Sky'|BLUE SKY,Blue Sky,
a leading blank matches no field start|--in title ' Blue'|
empty query: every non-empty year|--in year ''|BLUE SKY,Blue Sky,Green,
a decade by substring|--in year 199|BLUE SKY,Blue Sky,
nine flags|--in 000100000 2001|Green,
no field checked|--in 000000000 ''|
untagged: the bare name stands for the title|--in filename Untitled|Untitled,
EOF

# Size and date: kilobytes of 1024, the date box needed beside a size, between both inclusive.
while IFS='|' read -r what args want; do
    eval "run search --in filename --subfolders $args .mp3 \"\$MUSIC\""
    got=$(rows)
    [ "$got" -eq "$want" ] || fail "search $what: $got rows, wanted $want ($ERR)"
done <<'EOF'
greater than 1 KB after a day|--size gt:1 --after 2000-12-31|6
greater than 100 KB|--size gt:100 --after 2000-12-31|0
before a day|--before 2001-01-02|5
after a day|--after 2001-01-01|1
between, both ends inclusive|--between '2001-01-01 - 2001-01-02'|6
between, the middle word not read|--between '1/1/01 and 1/1/01'|5
between with one blank|--between '2001-01-01 2001-01-02'|0
within two days|--within 2:days|0
EOF

run search --in filename --size lt:5000 .mp3 "$MUSIC"
[ "$(rows)" -eq 0 ] || fail "a size beside a non-date finds something: $OUT"
grep -q -- "--size finds nothing" <<<"$ERR" || fail "a size without a date is not explained: $ERR"

touch "$MUSIC/Top.mp3"
run search --in filename --within 1:hours .mp3 "$MUSIC"
[ "$(column 1)" = "Straße Süd" ] || fail "within an hour: $OUT"

run search --json --in title Green --subfolders "$MUSIC"
[ "$(python3 -c 'import json,sys; r=json.loads(sys.stdin.readline()); print(r["Title"], r["Year"])' <<<"$OUT")" = "Green 2001" ] ||
    fail "search --json: $OUT"

run search --virtual ""
expect_rc 0 "search of an empty catalogue"
[ "$ERR" = " No results." ] || fail "search of an empty catalogue: '$ERR'"

# The catalogue: the Rock folder catalogued as a disc "Discs". A virtual folder is a prefix of
# text and always takes in what lies below it.
run vdrive create --name Discs "$MUSIC/Rock"
expect_rc 0 "vdrive create"
run search --in title blue --virtual
[ "$(column 12 | sort -u)" = "Discs" ] && [ "$(rows)" -eq 2 ] ||
    fail "search --virtual: the two Blue songs on Discs: $OUT"
run search --in title blue Discs
[ "$(rows)" -eq 2 ] || fail "a catalogued folder by its volume: $OUT"
# The volume is found ignoring case, and its label is the one typed.
run search --in title blue discs
[ "$(rows)" -eq 2 ] || fail "a catalogued folder named in other case: $OUT"
run search --in title other Discs/nowhere
[ "$(rows)" -eq 0 ] || fail "a catalogued folder that is not there: $OUT"
run dupes --virtual --by title --show virtual
[ "$(rows)" -eq 2 ] || fail "dupes --virtual: the Blue pair of the catalogue: $OUT"

# Bad usage: one line, exit 1; a folder that is not there: exit 2.
for args in "" "--size xx:3 a" "--within 3:years a" "--all --real a" "a --virtual /tmp" \
    "--before 2001-01-01 --after 2001-01-01 a" "--in nofield a" "--between 'x - 1/1/01' a"; do
    eval "run search $args"
    expect_rc 1 "search $args"
    expect_one_error_line "search $args"
done
run search a "$WORK/gone"
expect_rc 2 "search of a missing folder"
expect_one_error_line "search of a missing folder"

# Odd queries never break a search.
run search --subfolders "$(head -c 10240 /dev/zero | tr '\0' 'x')" "$MUSIC"
expect_rc 0 "a 10 KB query"
run search --subfolders "$(printf '\x01\x02\xff\xfe')" "$MUSIC"
expect_rc 0 "a query of control bytes and no UTF-8"

# --- select: the rows of a list the Selection wizard selects ---
printf '%s\n' Rock/Blue.mp3 Rock/Other.mp3 Jazz/Green.mp3 >"$MUSIC/list.m3u"
while IFS='|' read -r what args want; do
    eval "run select $args"
    expect_rc 0 "select $what"
    got=$(column 1 | tr '\n' ',')
    [ "$got" = "$want" ] || fail "select $what: '$got', wanted '$want'"
done <<'EOF'
any field|blue "$MUSIC/list.m3u"|Blue Sky,
artist|--in artist band "$MUSIC/list.m3u"|Blue Sky,Other,
case-sensitive|--case BLUE "$MUSIC/list.m3u"|
time, which search has not|--in time '' "$MUSIC/list.m3u"|Blue Sky,Other,Green,
EOF
run select a "$WORK/none.m3u"
expect_rc 2 "select on a missing list"
run select onlyquery
expect_rc 1 "select without a list"

# --- dupes ---
run dupes
expect_rc 1 "dupes without a source"
expect_one_error_line "dupes without a source"

run dupes --folder "$MUSIC/Rock" --by title
expect_rc 0 "dupes by title"
[ "$(column 8 | sort | tr '\n' ' ')" = "$MUSIC/Rock/Blue.mp3 $MUSIC/Rock/Blue2.mp3 " ] ||
    fail "dupes by title ignoring case: $OUT"
[[ "$ERR" == " 2 songs - "* ]] || fail "dupes statistics: '$ERR'"

run dupes --folder "$MUSIC/Rock" --by artist
[ "$(rows)" -eq 3 ] || fail "dupes by artist: $OUT"

# One file in the list and in the folder: a group of the same path; the run right behind a
# group (Blue2.mp3) never starts one.
run dupes --folder "$MUSIC/Rock" --playlist "$MUSIC/list.m3u" --by filename --show playlist
[ "$(column 8 | tr '\n' ' ')" = "$MUSIC/Rock/Blue.mp3 $MUSIC/Rock/Blue.mp3 $MUSIC/Rock/Other.mp3 $MUSIC/Rock/Other.mp3 " ] ||
    fail "dupes by filename over list and folder: $OUT"

run dupes --folder "$MUSIC/Rock" --by title --json
[ "$(python3 -c 'import json,sys; print(sorted({json.loads(l)["Group"] for l in sys.stdin}))' <<<"$OUT")" = "[1]" ] ||
    fail "dupes --json: one group numbered 1: $OUT"

# The proposal keeps the higher bitrate and deletes nothing until --trash --yes.
run dupes --folder "$MUSIC/Rock" --by title --propose
expect_rc 0 "dupes --propose"
[ "$(tail -n +2 <<<"$OUT" | cut -f1,9 | sort | tr '\t\n' ': ')" = "keep:$MUSIC/Rock/Blue.mp3 trash:$MUSIC/Rock/Blue2.mp3 " ] ||
    fail "dupes --propose: $OUT"
[ "$(head -1 <<<"$OUT" | cut -f1)" = "Proposal" ] || fail "dupes --propose: header $OUT"
run dupes --folder "$MUSIC/Rock" --by title --propose --trash
expect_rc 1 "dupes --trash without --yes"
[ -f "$MUSIC/Rock/Blue2.mp3" ] || fail "dupes --trash without --yes moved a file"
run dupes --folder "$MUSIC/Rock" --by title --trash --yes
expect_rc 1 "dupes --trash without --propose"

export XDG_DATA_HOME="$WORK/xdg"
run dupes --folder "$MUSIC/Rock" --by title --propose --trash --yes
expect_rc 0 "dupes --propose --trash --yes"
[ ! -e "$MUSIC/Rock/Blue2.mp3" ] || fail "the proposed copy is still in its folder"
[ -f "$MUSIC/Rock/Blue.mp3" ] || fail "the kept copy went away"
[ -f "$XDG_DATA_HOME/Trash/files/Blue2.mp3" ] || fail "the proposed copy is not in the trash"
[ -f "$XDG_DATA_HOME/Trash/info/Blue2.mp3.trashinfo" ] || fail "the trash does not know where it came from"
grep -q "1 file(s) moved to the trash" <<<"$ERR" || fail "dupes --trash: '$ERR'"
unset XDG_DATA_HOME

finish "finders"
