#!/usr/bin/env bash
# End-to-end tests of "jukarra-cli settings" on fresh data folders.
# Usage: test_settings.sh PATH_TO_JUKARRA_CLI
set -u

CLI=${1:?usage: test_settings.sh PATH_TO_JUKARRA_CLI}
# shellcheck source=cli_test_support.sh
. "$(dirname "$0")/cli_test_support.sh"

# run COMMAND...: leaves OUT, ERR and RC.
run() { capture "$@"; }

# A usage or work error prints nothing on standard output and one line on standard error.
expect_error_only() {  # expect_error_only WHAT
    [ -z "$OUT" ] || fail "$1: unexpected output '$OUT'"
    expect_one_error_line "$1"
}

# --- help and version ---
run "$CLI" --help
expect_rc 0 "--help"
grep -q '^  settings \[--json\]' <<<"$OUT" || fail "--help does not list settings"
grep -q '^  settings set SECTION.KEY VALUE' <<<"$OUT" || fail "--help does not list settings set"
run "$CLI" settings --help
expect_rc 0 "settings --help"
grep -qF '{"section":"Options","key":"IntroLength","value":7}' <<<"$OUT" ||
    fail "settings --help does not document --json"
run "$CLI" --version
expect_rc 0 "--version"
[ "$OUT" = "2.62" ] || fail "--version printed '$OUT'"

# --- a first run on an empty data folder shows the defaults and writes nothing ---
DATA="$WORK/data"
mkdir -p "$DATA"
run "$CLI" --data-dir "$DATA" settings
expect_rc 0 "first run"
[ "$(wc -l <<<"$OUT")" -eq 366 ] || fail "first run: $(wc -l <<<"$OUT") settings, wanted 366"
[ "$(head -n 1 <<<"$OUT")" = "INIexists.Check=0" ] || fail "first run: the list does not start with Check"
for line in "Options.IntroLength=7" "Options.MaxCache=7" "Options.ShowTips=1" \
    "Options.RememberList=0" "HTML.HTMLFontName=Arial" "HTML.HTMLHeadBack=15132390" \
    "HTML.HTMLHTMLPath=http://www.example.com/lists" "HTML.HTMLRootPath=$HOME/Music/mp3" \
    "Options.HTMLFile1=$HOME/Downloads/test.html" "Options.HTMLTemplate1=list#.html /index.html" \
    "ColumnOrder.Playlist= 12x 0x 1x 2x 3x 4x 5x 6x 7x 8x 9x 10x 11x 13x" \
    "Options.HTMLoptions=111111111111" "WindowPosition.Width=8550" "Options.SplitLeft=3240" \
    "Rename.RenExportTemplates16=\$title.mp3" "Options.TagCodepage=windows-1252"; do
    expect_line "$line" "first run"
done
grep -qE '^Player\.PlayerExe1=.+' <<<"$OUT" || fail "first run: no player path"
[ -z "$(ls -A "$DATA")" ] || fail "first run: listing the settings wrote $(ls -A "$DATA")"

# --- JSON lines ---
run "$CLI" --data-dir "$DATA" settings --json
expect_rc 0 "settings --json"
[ "$(wc -l <<<"$OUT")" -eq 366 ] || fail "--json: not one object per setting"
expect_line '{"section":"Options","key":"IntroLength","value":7}' "--json"
expect_line '{"section":"Options","key":"ShowTips","value":"1"}' "--json"
if command -v python3 >/dev/null; then
    python3 -c '
import json, sys
for line in sys.stdin:
    record = json.loads(line)
    assert set(record) == {"section", "key", "value"}, record
' <"$WORK/out" || fail "--json: a line is not a JSON object of section, key and value"
fi

# --- settings set writes the whole file; a later run reads it ---
run "$CLI" --data-dir "$DATA" settings set Options.IntroLength 12
expect_rc 0 "settings set"
[ "$OUT" = "Options.IntroLength=12" ] || fail "settings set printed '$OUT'"
[ -f "$DATA/jukarra2.ini" ] || fail "settings set wrote no jukarra2.ini"
grep -q $'^IntroLength=12\r$' "$DATA/jukarra2.ini" || fail "jukarra2.ini lacks IntroLength=12 with CR LF"
grep -q $'^\[INIexists\]\r$' "$DATA/jukarra2.ini" || fail "jukarra2.ini lacks [INIexists]"
run "$CLI" --data-dir "$DATA" settings
expect_line "Options.IntroLength=12" "after settings set"
expect_line "INIexists.Check=1" "after settings set"

run "$CLI" --data-dir "$DATA" settings set introlength 2.5   # bare key, any case; rounds to even
expect_rc 0 "settings set with a bare key"
run "$CLI" --data-dir "$DATA" settings set Options.LastDestination "/music/a b"
expect_rc 0 "settings set of a text"
run "$CLI" --data-dir "$DATA" settings
expect_line "Options.IntroLength=2" "bare key"
expect_line "Options.LastDestination=/music/a b" "text value"

# --- --set overrides this run only ---
run "$CLI" --data-dir "$DATA" --set IntroLength=30 --set view.files=0 settings
expect_rc 0 "--set"
expect_line "Options.IntroLength=30" "--set"
expect_line "View.Files=0" "--set with Section.Key"
run "$CLI" --data-dir "$DATA" settings
expect_line "Options.IntroLength=2" "--set is not saved"

# --- $JUKARRA_HOME, $XDG_DATA_HOME and a portable install choose the data folder ---
JUKARRA_HOME="$WORK/jhome" run "$CLI" settings set MaxCache 3
expect_rc 0 "JUKARRA_HOME"
grep -q $'^MaxCache=3\r$' "$WORK/jhome/jukarra2.ini" 2>/dev/null || fail "JUKARRA_HOME was not used"
XDG_DATA_HOME="$WORK/xdg" run "$CLI" settings set MaxCache 4
grep -q $'^MaxCache=4\r$' "$WORK/xdg/jukarra/jukarra2.ini" 2>/dev/null || fail "XDG_DATA_HOME was not used"
run "$CLI" settings set MaxCache 5
grep -q $'^MaxCache=5\r$' "$HOME/.local/share/jukarra/jukarra2.ini" 2>/dev/null ||
    fail "~/.local/share/jukarra was not used"
mkdir -p "$WORK/portable"
cp "$CLI" "$WORK/portable/jukarra-cli"
printf '[INIexists]\r\nCheck=1\r\n[Options]\r\nIntroLength=44\r\n' >"$WORK/portable/jukarra2.ini"
run "$WORK/portable/jukarra-cli" settings
expect_line "Options.IntroLength=44" "portable install"

# --- refused while the desktop program holds the data folder ---
hold_data_folder "$DATA"
run "$CLI" --data-dir "$DATA" settings set IntroLength 9
expect_rc 2 "settings set while the desktop program runs"
expect_error_only "settings set while the desktop program runs"
run "$CLI" --data-dir "$DATA" settings
expect_rc 0 "reading while the desktop program runs"
expect_line "Options.IntroLength=2" "reading while the desktop program runs"
release_data_folder
run "$CLI" --data-dir "$DATA" settings set IntroLength 9   # a holder that died holds nothing
expect_rc 0 "settings set after the holder died"

# --- a data folder that cannot be created ---
touch "$WORK/plain-file"
run "$CLI" --data-dir "$WORK/plain-file/data" settings
expect_rc 2 "uncreatable data folder"
expect_error_only "uncreatable data folder"
grep -q "data folder" <<<"$ERR" || fail "uncreatable data folder: the message does not say so"

# --- bad usage ---
for args in "" "frobnicate" "--bogus settings" "--data-dir" "settings --xml" "settings set" \
    "settings set IntroLength" "settings set NoSuchKey 1" "settings set Files 1" \
    "--set NoSuchKey=1 settings" "--set IntroLength settings" "--set =1 settings"; do
    # shellcheck disable=SC2086
    run "$CLI" --data-dir "$DATA" $args
    expect_rc 1 "bad usage '$args'"
    expect_error_only "bad usage '$args'"
done

finish "settings"
