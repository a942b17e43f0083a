#!/usr/bin/env bash
# Makes the small real MP3 files the metadata tests read, with Debian's sox and lame (and
# mutagen's mid3v2 for an ID3v2.4 tag).
#
#   scripts/make-test-mp3s.sh OUT_FOLDER [--large]
#
# Without --large only the small files (a few KB each, kept under tests/data/songs) are made;
# --large adds one with a 100 KB picture in its ID3v2 tag, for the peer check.
set -euo pipefail

out=${1:?usage: make-test-mp3s.sh OUT_FOLDER [--large]}
large=${2:-}
for tool in sox lame; do
    command -v "$tool" >/dev/null || { echo "make-test-mp3s: $tool is missing" >&2; exit 2; }
done
mkdir -p "$out"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

tone() {  # tone NAME RATE CHANNELS SECONDS FREQUENCY
    sox -q -n -r "$2" -c "$3" -b 16 "$work/$1.wav" synth "$4" sine "$5" vol 0.3
}
encode() {  # encode WAV OUT lame-options...
    local wav=$1 target=$2
    shift 2
    lame --quiet "$@" "$work/$wav.wav" "$out/$target"
}

tone stereo44 44100 2 0.5 440
tone stereo44long 44100 2 2.5 330
tone mono22 22050 1 1.5 220
tone stereo16 16000 2 2 550

# Constant rate without an Info frame and with an ID3v1.1 tag only.
encode stereo44 cbr64-id3v1.mp3 --cbr -b 64 -t --id3v1-only \
    --tt "Plain Title" --ta "Plain Artist" --tl "Plain Album" --ty 1998 --tc "v1 comment" \
    --tn 4 --tg Rock
# Constant rate with LAME's Info frame and an ID3v2 tag alone.
encode stereo44 cbr32-info-id3v2.mp3 --cbr -b 32 --id3v2-only \
    --tt "A title longer than thirty characters in all" --ta "Info Artist" --tl "Info Album" \
    --ty 2003 --tn 7/12 --tg Jazz
# Variable rate with a Xing frame and both tags.
encode stereo44long vbr-xing.mp3 -V 9 --add-id3v2 \
    --tt "Variable" --ta "Xing Artist" --tl "Xing Album" --ty 2010 --tg "Ambient"
# MPEG-2 Layer III (16 kHz), no tags.
encode stereo16 mpeg2-untagged.mp3 --cbr -b 24 -t
# Mono MPEG-2 at 22050 Hz with an Info frame and ID3v1.
encode mono22 mono22-id3v1.mp3 --cbr -b 16 -m m --id3v1-only --tt "Mono" --ta "One Channel"
# An ID3v2.4 tag with UTF-8 text, written by mutagen.
encode stereo44 id3v24-utf8.mp3 --cbr -b 32 -t
if command -v mid3v2 >/dev/null; then
    mid3v2 --quiet -t "Ünïcödé Tïtlé" -a "Ärtist" -A "Ålbum" -y 2021 -g "Trance" -T 11 \
        -c "comment in v2.4" "$out/id3v24-utf8.mp3" >/dev/null
fi

if [[ "$large" == "--large" ]]; then
    # A picture of 100 KB: a PNG signature ahead of random bytes is all lame looks at.
    { printf '\x89PNG\r\n\x1a\n'; head -c 102392 /dev/urandom; } > "$work/cover.png"
    encode stereo44long picture-100k.mp3 --cbr -b 128 --id3v2-only --ti "$work/cover.png" \
        --tt "Pictured" --ta "Cover Artist" --tl "Cover Album" --ty 2015
fi
