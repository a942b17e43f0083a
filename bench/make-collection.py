#!/usr/bin/python3
"""Makes a test collection of MP3 files for the benchmarks.

Real MPEG frames come from Debian's lame (a handful of short encodings made once: CBR at several
rates, VBR with a Xing header, MPEG-2, mono); each song is one of them behind and ahead of tags of
a random kind: none, ID3v1, ID3v1.1, ID3v2.3 or ID3v2.4 (some with a 100 KB picture), Lyrics3 2.00.
Folders are nested artist/album. The same seed gives the same collection.

    bench/make-collection.py DEST --songs 20000 [--seed 1]
"""

import argparse
import os
import random
import shutil
import struct
import subprocess
import sys
import tempfile

WORDS = ("love night dream fire blue heart rain city road light dance shadow river gold "
         "summer stone angel wild time ocean electric silver morning thunder ghost paper "
         "velvet crystal echo midnight sugar iron winter garden Björk Motörhead Café Señor "
         "Ærø Ñandú Zoë Łódź").split()

BASES = [
    # (name, sox synth args, lame args)
    ("cbr128", ["3", "sine", "440"], ["-b", "128"]),
    ("cbr192", ["4", "sine", "330"], ["-b", "192"]),
    ("cbr320", ["2.5", "sine", "550"], ["-b", "320"]),
    ("vbr", ["5", "pinknoise"], ["-V", "2"]),
    ("vbr_fast", ["3.5", "brownnoise"], ["-V", "5"]),
    ("mpeg2", ["4", "sine", "220"], ["-b", "64", "--resample", "22.05"]),
    ("mono", ["3", "sine", "660"], ["-b", "96", "-m", "m"]),
]


def make_bases(work):
    """Encodes each base stream once; returns name -> bytes of the bare MPEG stream."""
    out = {}
    for name, synth, lame_args in BASES:
        wav = os.path.join(work, name + ".wav")
        mp3 = os.path.join(work, name + ".mp3")
        channels = "1" if "-m" in lame_args else "2"
        subprocess.run(["sox", "-n", "-r", "44100", "-c", channels, "-b", "16", wav, "synth"]
                       + synth + ["vol", "0.3"], check=True)
        subprocess.run(["lame", "--quiet", "--noreplaygain", "--id3v2-only", "--tt", "x"]
                       + lame_args + [wav, mp3], check=True)
        data = open(mp3, "rb").read()
        out[name] = strip_id3v2(data)
    return out


def strip_id3v2(data):
    if data[:3] == b"ID3":
        size = (data[6] << 21) | (data[7] << 14) | (data[8] << 7) | data[9]
        return data[10 + size:]
    return data


def words(rng, lo, hi):
    return " ".join(rng.choice(WORDS).capitalize() for _ in range(rng.randint(lo, hi)))


def latin1_field(text, width):
    raw = text.encode("cp1252", errors="replace")[:width]
    return raw + b"\0" * (width - len(raw))


def id3v1(title, artist, album, year, comment, track, genre):
    body = b"TAG" + latin1_field(title, 30) + latin1_field(artist, 30) + latin1_field(album, 30)
    body += year.encode("ascii")[:4].ljust(4, b"\0")
    if track:
        body += latin1_field(comment, 28) + b"\0" + bytes([track])
    else:
        body += latin1_field(comment, 30)
    return body + bytes([genre])


def syncsafe(n):
    return bytes([(n >> 21) & 0x7F, (n >> 14) & 0x7F, (n >> 7) & 0x7F, n & 0x7F])


def id3v2(version, frames, picture):
    body = b""
    for fid, text in frames:
        if version == 4:
            payload = b"\x03" + text.encode("utf-8")
            size = syncsafe(len(payload))
        else:
            payload = b"\x01" + text.encode("utf-16")
            size = struct.pack(">I", len(payload))
        body += fid.encode("ascii") + size + b"\0\0" + payload
    if picture:
        payload = b"\x00image/jpeg\x00\x03\x00" + picture
        size = syncsafe(len(payload)) if version == 4 else struct.pack(">I", len(payload))
        body += b"APIC" + size + b"\0\0" + payload
    body += b"\0" * 256  # padding, as taggers leave
    return b"ID3" + bytes([version, 0, 0]) + syncsafe(len(body)) + body


def lyrics3(title, artist, album):
    fields = b"IND" + b"00002" + b"00"
    for fid, text in (("ETT", title), ("EAR", artist), ("EAL", album)):
        raw = text.encode("cp1252", errors="replace")
        fields += fid.encode() + b"%05d" % len(raw) + raw
    block = b"LYRICSBEGIN" + fields
    return block + b"%06d" % len(block) + b"LYRICS200"


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("dest")
    parser.add_argument("--songs", type=int, default=20000)
    parser.add_argument("--seed", type=int, default=1)
    args = parser.parse_args()

    rng = random.Random(args.seed)
    with tempfile.TemporaryDirectory() as work:
        bases = make_bases(work)
    base_names = list(bases)
    picture = bytes(rng.getrandbits(8) for _ in range(100 * 1024))

    os.makedirs(args.dest, exist_ok=True)
    made = 0
    artist_no = 0
    while made < args.songs:
        artist_no += 1
        artist = words(rng, 1, 3) + " %d" % artist_no
        for album_no in range(rng.randint(1, 4)):
            album = words(rng, 1, 4)
            year = str(rng.randint(1960, 2025))
            folder = os.path.join(args.dest, artist, "%s (%s)" % (album, year))
            os.makedirs(folder, exist_ok=True)
            for track in range(1, rng.randint(6, 16) + 1):
                if made >= args.songs:
                    break
                title = words(rng, 1, 7)
                stream = bases[rng.choice(base_names)]
                kind = rng.random()
                genre = rng.randint(0, 147)
                head = b""
                tail = b""
                if kind < 0.05:
                    pass  # untagged
                elif kind < 0.25:
                    tail = id3v1(title, artist, album, year, "", 0, genre)
                elif kind < 0.50:
                    tail = id3v1(title, artist, album, year, "ripped", track, genre)
                elif kind < 0.90:
                    version = 3 if kind < 0.75 else 4
                    frames = [("TIT2", title), ("TPE1", artist), ("TALB", album),
                              ("TYER" if version == 3 else "TDRC", year),
                              ("TRCK", "%d/16" % track), ("TCON", "(%d)" % genre)]
                    pic = picture if rng.random() < 0.03 else None
                    head = id3v2(version, frames, pic)
                    if rng.random() < 0.6:
                        tail = id3v1(title, artist, album, year, "", track, genre)
                else:
                    long_title = title + " " + words(rng, 4, 8)
                    tail = lyrics3(long_title, artist, album) + \
                        id3v1(long_title, artist, album, year, "", track, genre)
                name = "%02d - %s.mp3" % (track, title)
                with open(os.path.join(folder, name), "wb") as f:
                    f.write(head + stream + tail)
                made += 1
                if made % 5000 == 0:
                    print("%d songs" % made, file=sys.stderr)
    print("%d songs in %s" % (made, args.dest), file=sys.stderr)


if __name__ == "__main__":
    main()
