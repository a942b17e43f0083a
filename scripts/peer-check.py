#!/usr/bin/python3
"""Compares what our song reader makes of real MP3 files with mutagen's reading of them.

The ID3v2 texts (after our merge rule with the ID3v1 tag), the playing time and the bitrate of
the exact-times reading are checked. Files come from the committed test songs and, when lame
and sox are there, from a fresh run of make-test-mp3s.sh with its large file.

    peer-check.py --dump SONG_DUMP [--songs FOLDER] [--make MAKE_SCRIPT] [FILE...]
"""

import argparse
import glob
import json
import os
import shutil
import subprocess
import sys
import tempfile

try:
    from mutagen.id3 import ID3NoHeaderError
    from mutagen.mp3 import MP3, BitrateMode, HeaderNotFoundError
except ImportError:  # pragma: no cover - the check can't run without its peer
    print("peer-check: python3-mutagen is missing", file=sys.stderr)
    sys.exit(2)

GENRES_UNKNOWN = "Unknown"


def id3v1_texts(path):
    """Title, artist and album of the ID3v1 tag as our reader cuts them (windows-1252)."""
    with open(path, "rb") as f:
        f.seek(0, os.SEEK_END)
        if f.tell() < 128:
            return None
        f.seek(-128, os.SEEK_END)
        tag = f.read(128)
    if tag[:3] != b"TAG":
        return None

    def field(raw):
        return raw.strip(b" ").split(b"\0", 1)[0].decode("cp1252", "replace")

    return {"Title": field(tag[3:33]), "Artist": field(tag[33:63]), "Album": field(tag[63:93])}


def merged(v1_text, v2_text):
    """Our merge rule: the ID3v2 text fills an empty field or completes a cut one."""
    if not v2_text:
        return v1_text
    if not v1_text or (len(v1_text) == 30 and v2_text.startswith(v1_text)):
        return v2_text
    return v1_text


def first_text(tags, frame_id):
    frame = tags.get(frame_id) if tags is not None else None
    if frame is None or not frame.text:
        return ""
    return str(frame.text[0]).split("\0", 1)[0].strip(" ")


def expected_for(path):
    audio = MP3(path)
    tags = audio.tags
    expected = {}
    v1 = id3v1_texts(path) or {"Title": "", "Artist": "", "Album": ""}
    for field, frame_id in (("Title", "TIT2"), ("Artist", "TPE1"), ("Album", "TALB")):
        expected[field] = merged(v1[field], first_text(tags, frame_id))
    if tags is not None:
        # The comment without a description, else the first that is not iTunes' own.
        comments = tags.getall("COMM")
        chosen = [c for c in comments if c.desc == ""] or [
            c for c in comments if not c.desc.startswith("iTun")]
        if chosen and id3v1_texts(path) is None:
            expected["Comment"] = str(chosen[0].text[0]) if chosen[0].text else ""
        year = first_text(tags, "TDRC")
        if year and id3v1_texts(path) is None:
            expected["Year"] = year[:4]
        track = first_text(tags, "TRCK").split("/", 1)[0]
        if track.isdigit() and id3v1_texts(path) is None:
            expected["Track"] = int(track)
        tcon = tags.get("TCON")
        if tcon is not None and tcon.genres and id3v1_texts(path) is None:
            expected["Genre"] = tcon.genres[0]
    seconds = audio.info.length
    kbps = audio.info.bitrate / 1000.0
    vbr = audio.info.bitrate_mode == BitrateMode.VBR
    return expected, seconds, kbps, vbr


def seconds_of(time_text):
    minutes, _, seconds = time_text.rpartition(":")
    return int(minutes) * 60 + int(seconds)


def check(path, ours, report):
    try:
        expected, seconds, kbps, vbr = expected_for(path)
    except (HeaderNotFoundError, ID3NoHeaderError) as error:
        report(path, "mutagen could not read it (%s)" % error, False)
        return
    name = os.path.basename(path)
    for field, value in expected.items():
        report(name, "%s %r vs mutagen %r" % (field, ours[field], value), ours[field] == value)
    our_seconds = seconds_of(ours["Time"])
    report(name, "time %d s vs mutagen %.2f s" % (our_seconds, seconds),
           abs(our_seconds - seconds) <= 1.0)
    tolerance = 3 if vbr else 1
    our_kbps = int(ours["Bitrate"])
    report(name, "bitrate %d vs mutagen %.1f kbit/s" % (our_kbps, kbps),
           abs(our_kbps - kbps) <= tolerance)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--dump", required=True, help="the song_dump program")
    parser.add_argument("--songs", help="a folder of committed test songs")
    parser.add_argument("--make", help="make-test-mp3s.sh, to make fresh files with --large")
    parser.add_argument("files", nargs="*")
    args = parser.parse_args()

    files = list(args.files)
    if args.songs:
        files += sorted(glob.glob(os.path.join(args.songs, "*.mp3")))
    scratch = tempfile.mkdtemp(prefix="peer-check-")
    try:
        if args.make and shutil.which("lame") and shutil.which("sox"):
            subprocess.run(["bash", args.make, scratch, "--large"], check=True)
            files += sorted(glob.glob(os.path.join(scratch, "*.mp3")))
        if not files:
            print("peer-check: no files to check", file=sys.stderr)
            return 2
        lines = subprocess.run([args.dump] + files, check=True, capture_output=True,
                               text=True).stdout.splitlines()
        results = {"passed": 0, "failed": 0}

        def report(name, what, ok):
            results["passed" if ok else "failed"] += 1
            print("%-9s %s: %s" % ("ok" if ok else "MISMATCH", name, what))

        for path, line in zip(files, lines):
            check(path, json.loads(line), report)
        print("%d passed, %d failed" % (results["passed"], results["failed"]))
        return 0 if results["failed"] == 0 else 1
    finally:
        shutil.rmtree(scratch, ignore_errors=True)


if __name__ == "__main__":
    sys.exit(main())
