#!/usr/bin/env python3
"""Makes a music collection of 10,000 files in 1,000 folders for the import benchmark.

usage: make_tree.py FOLDER [FILES]

Half of it is mp3, the rest flac, ogg, m4a and wma; every second mp3, flac and m4a bears a cover.
ffmpeg makes a few files whose texts hold placeholders of fixed width; each copy gets texts of its
own in their place. A tree that is there already is left as it is.
"""
import os
import struct
import subprocess
import sys
import zlib

FILES_A_FOLDER = 10
SECONDS = 6
TITLE, ARTIST, ALBUM = "Title @@@@@@", "Artist ####", "Album %%%%"

# Extension, encoder options, whether the container takes a cover.
FORMATS = {
    "mp3": (["-c:a", "libmp3lame", "-b:a", "128k"], True),
    "flac": (["-c:a", "flac"], True),
    "ogg": (["-c:a", "libvorbis", "-b:a", "112k"], False),
    "m4a": (["-c:a", "aac", "-b:a", "128k"], True),
    "wma": (["-c:a", "wmav2", "-b:a", "128k"], False),
}
SEQUENCE = ["mp3", "flac", "mp3", "ogg", "mp3", "m4a", "mp3", "wma", "mp3", "flac"]


def run(*arguments):
    subprocess.run(["ffmpeg", "-v", "error", "-y", *arguments], check=True)


def make_base(work, extension, with_cover):
    options, takes_cover = FORMATS[extension]
    path = os.path.join(work, f"base{'-cover' if with_cover else ''}.{extension}")
    arguments = ["-f", "lavfi", "-i", f"anoisesrc=d={SECONDS}:c=pink:r=44100:a=0.3"]
    if with_cover and takes_cover:
        arguments += ["-i", os.path.join(work, "cover.jpg"), "-map", "0:a", "-map", "1:v",
                      "-c:v", "copy", "-disposition:v", "attached_pic"]
    arguments += ["-ac", "2", *options, "-id3v2_version", "3", "-write_id3v1", "1",
                  "-metadata", f"title={TITLE}", "-metadata", f"artist={ARTIST}",
                  "-metadata", f"album={ALBUM}", "-metadata", "genre=Rock", path]
    run(*arguments)
    with open(path, "rb") as file:
        return file.read()


def ogg_crc_table():
    table = []
    for i in range(256):
        value = i << 24
        for _ in range(8):
            value = (value << 1) ^ (0x04C11DB7 if value & 0x80000000 else 0)
        table.append(value & 0xFFFFFFFF)
    return table


CRC_TABLE = ogg_crc_table()


def mend_ogg(data):
    """Computes the checksum of the pages that hold the texts: the first three."""
    data = bytearray(data)
    start = 0
    for _ in range(3):
        segments = data[start + 26]
        end = start + 27 + segments + sum(data[start + 27:start + 27 + segments])
        data[start + 22:start + 26] = bytes(4)
        crc = 0
        for byte in data[start:end]:
            crc = ((crc << 8) & 0xFFFFFFFF) ^ CRC_TABLE[(crc >> 24) ^ byte]
        data[start + 22:start + 26] = struct.pack("<I", crc)
        start = end
    return bytes(data)


def fill_in(data, extension, number):
    texts = {TITLE: f"Title {number:06d}", ARTIST: f"Artist {number // 100:04d}",
             ALBUM: f"Album {number // 10:04d}"}
    for old, new in texts.items():
        for coding in ("utf-8", "utf-16-le"):
            data = data.replace(old.encode(coding), new.encode(coding))
    return mend_ogg(data) if extension == "ogg" else data


def main():
    tree = sys.argv[1]
    count = int(sys.argv[2]) if len(sys.argv) > 2 else 10_000
    mark = os.path.join(tree, "..", os.path.basename(tree.rstrip("/")) + f".{count}.done")
    if os.path.exists(mark):
        return
    work = tree.rstrip("/") + ".work"
    os.makedirs(work, exist_ok=True)
    run("-f", "lavfi", "-i", "testsrc=s=400x400", "-frames:v", "1", "-q:v", "2",
        os.path.join(work, "cover.jpg"))
    # Real covers don't compress that well.
    with open(os.path.join(work, "cover.jpg"), "ab") as cover:
        cover.write(zlib.compress(os.urandom(30_000)))
    bases = {(extension, cover): make_base(work, extension, cover)
             for extension in FORMATS for cover in (False, True)}
    for number in range(count):
        extension = SEQUENCE[number % len(SEQUENCE)]
        cover = number // len(SEQUENCE) % 2 == 1
        folder = os.path.join(tree, f"Artist {number // 100:04d}",
                              f"Album {number // FILES_A_FOLDER:04d}")
        os.makedirs(folder, exist_ok=True)
        path = os.path.join(folder, f"{number % 10:02d} Title {number:06d}.{extension}")
        with open(path, "wb") as file:
            file.write(fill_in(bases[extension, cover], extension, number))
    os.sync()
    open(mark, "w").close()


if __name__ == "__main__":
    main()
