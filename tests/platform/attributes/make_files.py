#!/usr/bin/env python3
"""Makes the media files of the attribute tests: honest ones by ffmpeg, odd and hostile ones by hand."""

import os
import struct
import subprocess
import sys
import zlib

OUT = sys.argv[1]
TITLE, ARTIST, ALBUM, GENRE, COMMENT = "Tïtle 春", "Ärtist", "Albüm", "Rock", "Cömment"
TEXTS = ["-metadata", f"title={TITLE}", "-metadata", f"artist={ARTIST}", "-metadata", f"album={ALBUM}",
         "-metadata", f"genre={GENRE}", "-metadata", f"comment={COMMENT}"]


def path(name):
    return os.path.join(OUT, name)


def write(name, data):
    with open(path(name), "wb") as file:
        file.write(data)


def read(name):
    with open(path(name), "rb") as file:
        return file.read()


def ffmpeg(name, *args, seconds=4, video=False, texts=True):
    command = ["ffmpeg", "-nostdin", "-v", "error", "-y", "-f", "lavfi", "-i", f"sine=440:duration={seconds}"]
    if video:
        command += ["-f", "lavfi", "-i", f"testsrc=size=160x120:rate=10:duration={seconds}"]
    subprocess.run(command + (TEXTS if texts else []) + list(args) + [path(name)], check=True)


def honest():
    ffmpeg("plain.mp3", "-b:a", "128k", "-id3v2_version", "3", "-write_id3v1", "1")
    ffmpeg("plain.wma", "-c:a", "wmav2", "-b:a", "64k")
    ffmpeg("plain.wav")
    ffmpeg("plain.flac")
    ffmpeg("plain.ogg", "-c:a", "libvorbis")
    ffmpeg("plain.opus", "-c:a", "libopus")
    ffmpeg("plain.m4a", "-c:a", "aac")
    ffmpeg("plain.wv", "-c:a", "wavpack")
    ffmpeg("plain.aiff", "-write_id3v2", "1")
    ffmpeg("video.mp4", "-c:a", "aac", "-c:v", "mpeg4", video=True)
    ffmpeg("video_moov_first.mp4", "-c:a", "aac", "-c:v", "mpeg4", "-movflags", "faststart", video=True)
    ffmpeg("fragmented.mp4", "-c:a", "aac", "-movflags", "frag_keyframe+empty_moov")
    ffmpeg("video.avi", "-c:a", "mp3", "-c:v", "mpeg4", video=True)
    ffmpeg("video.mpg", "-c:a", "mp2", "-c:v", "mpeg1video", "-r", "25", video=True)
    ffmpeg("video.wmv", "-c:a", "wmav2", "-c:v", "wmv2", video=True)
    ffmpeg("video.mkv", "-c:a", "mp3", "-c:v", "mpeg4", video=True)
    ffmpeg("bare.mp3", "-write_xing", "0", "-id3v2_version", "0", "-b:a", "128k", texts=False)
    for rate in ("64k", "160k"):
        ffmpeg(f"rate{rate}.mp3", "-write_xing", "0", "-id3v2_version", "0", "-b:a", rate, "-ar", "44100", texts=False)
    write("variable.mp3", read("rate64k.mp3") + read("rate160k.mp3"))


def id3v2(frames, version=3):
    body = b"".join(frames)
    size = bytes((len(body) >> shift) & 0x7F for shift in (21, 14, 7, 0))
    return b"ID3" + bytes([version, 0, 0]) + size + body


def frame(name, data, flags=0):
    return name.encode() + struct.pack(">IH", len(data), flags) + data


def id3v1(title=b"", artist=b"", album=b"", comment=b"", genre=255):
    def field(text, size):
        return text[:size].ljust(size, b"\0")
    return b"TAG" + field(title, 30) + field(artist, 30) + field(album, 30) + field(b"", 4) + field(comment, 30) + bytes([genre])


def atom(name, data):
    return struct.pack(">I", len(data) + 8) + name + data


def odd():
    sound = read("bare.mp3")
    gbk_title, gbk_comment = "\u6625\u6c5f\u82b1\u6708\u591c".encode("gbk"), "\u53e4\u7b5d\u72ec\u594f\u66f2".encode("gbk")
    write("gbk_id3v1.mp3", sound + id3v1(gbk_title, gbk_title, b"", gbk_comment))
    write("gbk_id3v2.mp3", id3v2([frame("TIT2", b"\0" + gbk_title)]) + sound)
    for page, text in ((936, "春江花月夜"), (950, "春江花月夜"), (932, "さくらの歌"), (949, "아리랑"), (1251, "Калинка")):
        title = text.encode(f"cp{page}")
        write(f"legacy_v1_{page}.mp3", sound + id3v1(title, b"", b"", title))
        write(f"legacy_v2_{page}.mp3", id3v2([frame("TIT2", b"\0" + title)]) + sound)
    write("utf8_id3v1.mp3", sound + id3v1("\u6625\u6c5f".encode("utf-8")))
    normal = b"\0eng" + b"iTunNORM\0" + b" 00000A2C 00000A2C"
    write("machine_comment.mp3", id3v2([frame("COMM", normal), frame("COMM", b"\0eng\0by hand")]) + sound)
    write("only_machine_comment.mp3", id3v2([frame("COMM", normal), frame("TIT2", b"\0t")]) + sound)
    write("wma_named.mp3", read("plain.wma"))
    write("mp3_named.wma", read("plain.mp3"))
    wave = read("plain.wav")
    write("tag_before_wave.mp3", id3v2([frame("TIT2", b"\0in front")]) + wave)
    tag = id3v2([frame("TIT2", b"\0from id3"), frame("APIC", b"\0image/png\0\3\0" + b"p" * 5000)])
    chunk = b"id3 " + struct.pack("<I", len(tag)) + tag + (b"\0" if len(tag) % 2 else b"")
    both = wave + chunk
    write("id3_and_info.wav", both[:4] + struct.pack("<I", len(both) - 8) + both[8:])
    info = b"INFO" + b"INAM" + struct.pack("<I", 6) + gbk_title[:6]
    plain = read_bare_wave()
    gbk_info = plain + b"LIST" + struct.pack("<I", len(info)) + info
    write("gbk_info.wav", gbk_info[:4] + struct.pack("<I", len(gbk_info) - 8) + gbk_info[8:])
    streamed = bytearray(plain)
    streamed[4:8] = b"\xff\xff\xff\xff"
    at = streamed.find(b"data")
    streamed[at + 4:at + 8] = b"\xff\xff\xff\xff"
    write("streamed_sizes.wav", bytes(streamed))
    write("song.midi", b"MThd" + struct.pack(">IHHH", 6, 0, 1, 96) + b"MTrk" + struct.pack(">I", 4) + b"\0\xff\x2f\0")
    write("text.mp3", b"this is no music at all\n" * 50)
    write("empty.mp3", b"")
    slow, fast = b"\xff\xfb\x90\x64" + bytes(413), b"\xff\xfb\xa0\x64" + bytes(518)
    with open(path("hollow.mp3"), "wb") as file:  # Next to no sound in a great many bytes.
        file.write(slow + fast + slow)
        file.truncate(70_000_000)
        file.seek(0, os.SEEK_END)
        file.write(slow + slow)


def read_bare_wave():
    ffmpeg("bare_wave.wav", "-bitexact", texts=False)
    return read("bare_wave.wav")


def hostile():
    canary = os.path.abspath(path("canary.avi"))
    write("canary.avi", read("video.avi"))
    write("concat.avi", f"ffconcat version 1.0\nfile '{canary}'\nduration 1234\n".encode())
    write("list.avi", f"#EXTM3U\n#EXT-X-TARGETDURATION:10\n#EXTINF:1234,\n{canary}\n#EXT-X-ENDLIST\n".encode())
    deep = b"".join(struct.pack(">I", 8 * (200_000 - i)) + b"moov" for i in range(200_000))
    write("nested.mp4", atom(b"ftyp", b"isom\0\0\2\0isom") + deep)
    with open(path("zeros.mp3"), "wb") as file:
        file.truncate(500 * 1024 * 1024)
    write("frames.mp3", b"\xff\xfb\x90\x64" * (34 * 1024 * 1024 // 4))
    bomb = zlib.compress(b"\0" * (1 << 30), 9)
    write("inflates.mp3", id3v2([frame("TIT2", struct.pack(">I", 1 << 30) + bomb, flags=0x80)]) + read("bare.mp3"))
    write("inflates.flac", id3v2([frame("TIT2", struct.pack(">I", 1 << 30) + bomb, flags=0x80)]) + read("plain.flac"))
    write("chunks.wav", b"RIFF" + struct.pack("<I", 8_000_004) + b"WAVE" + (b"abcd" + b"\0\0\0\0") * 1_000_000)
    tiny = frame("TXXX", b"\0a\0b")
    write("tiny_frames.mp3", id3v2([tiny * (16 * 1024 * 1024 // len(tiny))]) + read("bare.mp3"))
    items = b"".join(struct.pack("<II", 1, 0) + f"k{i:07d}".encode() + b"\0v" for i in range(500_000))
    footer = b"APETAGEX" + struct.pack("<IIII", 2000, len(items) + 32, 500_000, 0) + b"\0" * 8
    write("items.ape", b"MAC " + b"\0" * 200 + items + footer)
    attribute = struct.pack("<H", 4) + "a".encode("utf-16-le") + b"\0\0" + struct.pack("<HH", 0, 4) + "v".encode("utf-16-le") + b"\0\0"
    count = 60_000
    guid = bytes.fromhex("40a4d0d207e3d21197f000a0c95ea850")
    body = struct.pack("<H", count) + attribute * count
    extended = (guid + struct.pack("<Q", len(body) + 24) + body) * 16
    header = bytes.fromhex("3026b2758e66cf11a6d900aa0062ce6c")
    write("attributes.wma", header + struct.pack("<QIBB", len(extended) + 30, 16, 1, 2) + extended)
    counted = guid + struct.pack("<QH", 26, 65535)
    write("counted.wma", header + struct.pack("<QIBB", 56, 1, 1, 2) + counted)
    comments = b"".join(struct.pack("<I", 5) + b"A=bcd" for _ in range(1_500_000))
    vorbis = struct.pack("<I", 0) + struct.pack("<I", 1_500_000) + comments
    block = b"\x84" + struct.pack(">I", len(vorbis))[1:] + vorbis
    streaminfo = read("plain.flac")[4:42]
    write("comments.flac", b"fLaC" + bytes([streaminfo[0] & 0x7F]) + streaminfo[1:] + block)
    os.mkfifo(path("pipe.mp3"))


def ogg_page(segments, data, number):
    return b"OggS\0\0" + bytes(8) + struct.pack("<III", 1, number, 0) + bytes([len(segments)]) + bytes(segments) + data


def ogg(packets):
    """A stream of full pages behind a short one: a packet begins in the page where the last ends."""
    lacing, data = [], b"".join(packets)
    for packet in packets:
        lacing += [255] * (len(packet) // 255) + [len(packet) % 255]
    pages, at = [], 0
    ends = [0, 5, *range(260, len(lacing), 255), len(lacing)]
    for number, (first, end) in enumerate(zip(ends, ends[1:])):
        segments = lacing[first:end]
        pages.append(ogg_page(segments, data[at:at + sum(segments)], number))
        at += sum(segments)
    return b"".join(pages)


def mib(count):
    return count * 1024 * 1024


def crowded():
    """A great deal of what is honest in small numbers, each just below the bound on a block."""
    sound = read("bare.mp3")
    count = mib(4) // 15 - 100
    items = b"".join(struct.pack("<II", 1, 0) + f"{i:04x}".encode() + b"\0v" for i in range(count))
    footer = b"APETAGEX" + struct.pack("<IIII", 2000, len(items) + 32, count, 0) + b"\0" * 8
    write("crowded_ape.mp3", sound + items + footer)
    fields = b"".join(f"{i:04X}".encode()[:4] + struct.pack("<I", 2) + b"v\0" for i in range(65536)) * 6
    info = b"INFO" + fields[:mib(4) - 4096]
    wave = read("bare_wave.wav") + b"LIST" + struct.pack("<I", len(info)) + info
    write("crowded_info.wav", wave[:4] + struct.pack("<I", len(wave) - 8) + wave[8:])
    comments = struct.pack("<II", 0, 1_000_000) + (struct.pack("<I", 5) + b"A=bcd") * 1_000_000
    long_text = struct.pack("<III", 0, 1, mib(15) + 6) + b"TITLE=" + b"t" * mib(15)
    vorbis = b"\x01vorbis" + struct.pack("<IBIIIIBB", 0, 2, 44100, 0, 128000, 0, 0xB8, 1)
    write("crowded.ogg", ogg([vorbis, b"\x03vorbis" + comments, b"\x05vorbis"]))
    write("long_text.ogg", ogg([vorbis, b"\x03vorbis" + long_text, b"\x05vorbis"]))
    write("padded.ogg", ogg([vorbis, b"\x03vorbis" + bytes(mib(60)), b"\x05vorbis"]))
    streaminfo = b"\0\0\0\x22" + read("plain.flac")[8:42]
    mapping = b"\x7fFLAC\1\0\0\3fLaC" + streaminfo
    header = b"\x84\0\0\0"
    write("crowded_flac.ogg", ogg([mapping, b"\1\0\0\4" + bytes(4), header + comments]))
    block = b"\x84" + struct.pack(">I", len(long_text))[1:] + long_text
    write("long_text.flac", b"fLaC" + streaminfo + block)
    picture = struct.pack(">III", 3, 0, 0) + struct.pack(">IIIII", 0, 0, 0, 0, mib(15)) + bytes(mib(15))
    pictures = b"".join(b"\6" + struct.pack(">I", len(picture))[1:] + picture for _ in range(4))
    write("pictures.flac", b"fLaC" + streaminfo + pictures + b"\x81\0\0\0")
    large = b"\1\xff\xfe" + "t".encode("utf-16-le") * (mib(30) // 2)
    write("long_text.mp3", id3v2([frame("TIT2", large)]) + sound)
    latin = b"\0" + b"t" * mib(30)
    write("long_latin.mp3", id3v2([frame("TPE1", latin)]) + sound)
    value = atom(b"data", struct.pack(">II", 1, 0) + b"t" * (mib(4) - 64))
    names = [b"\xa9nam", b"\xa9ART", b"\xa9alb", b"\xa9gen", b"\xa9cmt"] * 3
    texts = atom(b"ilst", b"".join(atom(name, value) for name in names))
    small = atom(b"data", struct.pack(">II", 1, 0))
    parts = atom(b"ilst", atom(b"\xa9nam", small * ((mib(4) - 64) // len(small))))
    for name, ilst in (("long_texts.m4a", texts), ("crowded.m4a", parts)):
        meta = atom(b"meta", bytes(4) + atom(b"hdlr", bytes(8) + b"mdirappl" + bytes(9)) + ilst)
        write(name, atom(b"ftyp", b"M4A \0\0\2\0isom") + atom(b"moov", atom(b"udta", meta)))
    guid = bytes.fromhex("eacbf8c5af5b77488467aa8c44fa4cca")
    name, text = "Title\0".encode("utf-16-le"), b"t\0" * (mib(3) // 2)
    one = struct.pack("<HHHHI", 0, 0, len(name), 0, len(text)) + name + text
    library = guid + struct.pack("<QH", 26 + 12 * len(one), 12) + one * 12
    extension = bytes.fromhex("b503bf5f2ea9cf118ee300c00c205365") + struct.pack("<Q", len(library) + 46)
    extension += bytes.fromhex("11d2d3abbaa9cf118ee600c00c205365") + struct.pack("<HI", 6, len(library)) + library
    header = bytes.fromhex("3026b2758e66cf11a6d900aa0062ce6c")
    write("long_texts.wma", header + struct.pack("<QIBB", len(extension) + 30, 1, 1, 2) + extension)


os.makedirs(OUT, exist_ok=True)
honest()
odd()
hostile()
crowded()
