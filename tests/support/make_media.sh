#!/bin/bash
# Makes the media files that tests play, into the folder given. Quick: everything is short and small.
set -euo pipefail

out=$1
mkdir -p "$out"
cd "$out"

make() { ffmpeg -nostdin -loglevel error -y "$@"; }
tone() { echo "sine=frequency=440:sample_rate=44100:duration=$1"; }
picture() { echo "testsrc=size=$1:rate=25:duration=$2"; }

# One of each kind that is played, 0.6 s.
make -f lavfi -i "$(tone 0.6)" -ac 2 tone.wav
make -i tone.wav -b:a 64k -metadata title="A Tone" -metadata artist="Its Maker" -metadata album="Tones" tone.mp3
make -i tone.wav -c:a libvorbis tone.ogg
make -i tone.wav -c:a libopus tone.opus
make -i tone.wav tone.flac
make -i tone.wav -c:a wmav2 tone.wma
make -i tone.wav -c:a aac tone.m4a
av=(-f lavfi -i "$(picture 64x48 0.6)" -i tone.wav)
make "${av[@]}" -c:v libx264 -pix_fmt yuv420p -c:a aac tone.mp4
make "${av[@]}" -c:v mpeg4 -c:a libmp3lame tone.avi
make "${av[@]}" -c:v mpeg1video -c:a mp2 -f mpeg tone.mpg
make "${av[@]}" -c:v libx264 -pix_fmt yuv420p -c:a libvorbis tone.mkv

# Very short, and long enough to pause and seek in.
make -f lavfi -i "$(tone 0.02)" tiny.wav
make -f lavfi -i "$(tone 0.1)" -b:a 64k tiny.mp3
make -f lavfi -i "$(tone 30)" -ac 1 -b:a 32k long.mp3
make -f lavfi -i "$(picture 320x240 20)" -f lavfi -i "$(tone 20)" -c:v libx264 -preset ultrafast -pix_fmt yuv420p -c:a aac long.mp4
make -f lavfi -i "$(tone 0.5)" -ac 1 -ar 22050 mono.wav

# Pictures that are none, and pictures that aren't shown as they are stored.
make -f lavfi -i "$(picture 100x100 0.04)" -frames:v 1 cover.png
for kind in mp3 flac m4a; do
  make -i "tone.$kind" -i cover.png -map 0:a -map 1:v -c copy -disposition:v attached_pic "cover.$kind"
done
make -f lavfi -i "$(picture 72x58 0.6)" -i tone.wav -vf setsar=64/45 -c:v libx264 -pix_fmt yuv420p -c:a aac anamorphic.mp4
make -f lavfi -i "$(picture 64x48 0.6)" -c:v libx264 -pix_fmt yuv420p silent.mp4
make -f lavfi -i "color=red:size=64x48:rate=25:duration=20" -c:v libx264 -preset ultrafast -pix_fmt yuv420p red.mp4
# As films are: 1080p, 30 pictures a second, 8 Mbit/s, with sound.
make -f lavfi -i "testsrc2=size=1920x1080:rate=30:duration=9,noise=alls=8:allf=t" -f lavfi -i "$(tone 9)" -c:v libx264 -preset veryfast -b:v 8M -pix_fmt yuv420p -c:a aac hd.mp4
# A picture every four seconds beside a steady sound.
make -f lavfi -i "testsrc=size=64x48:rate=1/4:duration=12" -f lavfi -i "$(tone 12)" -c:v libx264 -pix_fmt yuv420p -c:a aac slides.mp4

# Lengths that are odd to find.
make -i tone.wav -q:a 5 -write_xing 0 vbr.mp3
make "${av[@]}" -c:v libx264 -pix_fmt yuv420p -c:a libvorbis -f matroska - | cat >nolength.mkv
make -f lavfi -i "$(picture 64x48 0.6)" -c:v libx264 -pix_fmt yuv420p -f h264 nolength.h264

# A list of segments as radio stations serve it.
mkdir -p hls
make -f lavfi -i "$(tone 3)" -ac 1 -c:a aac -b:a 32k -f hls -hls_time 1 -hls_list_size 0 -hls_segment_filename hls/part%d.ts hls/list.m3u8

# Not played at all.
: >empty.mp3
echo "This is a text and nothing else, however it is called." >text.mp3
head -c 20000 /dev/zero >zeros.mp3
make -i cover.png -c copy -f image2 picture.mp3

touch .done
