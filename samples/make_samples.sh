#!/usr/bin/env bash
# Makes the sample recording beside this script: three cameras and a sound recorder of one short talk, in PAL frames
# (25 a second), each started at another moment. Needs ffmpeg with libx264. The files are committed; run this only to
# change them.
set -euo pipefail
cd "$(dirname "$0")"

# camera NAME START SECONDS REEL PICTURE
camera() {
    ffmpeg -hide_banner -loglevel error -y \
        -f lavfi -i "$5" -f lavfi -i "sine=frequency=220:sample_rate=48000:duration=$3" \
        -t "$3" -timecode "$2" -metadata:s:v reel_name="$4" -map_metadata -1 -fflags +bitexact \
        -c:v libx264 -preset veryslow -crf 30 -pix_fmt yuv420p -g 25 -flags:v +bitexact \
        -c:a aac -b:a 32k -flags:a +bitexact "$1"
}

# Test bars with a white box that moves, so that frames can be told apart.
bars() { # SOURCE ROW
    echo "$1=size=1280x720:rate=25[bars];color=white:size=64x64:rate=25[box];[bars][box]overlay=x='mod(n*16,W)':y=$2"
}

camera CAM_A.mov 10:00:00:05 4   A001 "$(bars smptehdbars 80)"
camera CAM_B.mov 10:00:00:10 3.4 B001 "$(bars pal75bars 240)"
camera CAM_C.mov 10:00:00:00 3.8 C001 "$(bars pal100bars 400)"

# A recorder writes no picture, and ffmpeg makes a timecode track for pictures only: give it one, then leave it out.
temporary=$(mktemp -d)
trap 'rm -rf "$temporary"' EXIT
ffmpeg -hide_banner -loglevel error -y \
    -f lavfi -i "color=size=32x32:rate=25" \
    -f lavfi -i "sine=frequency=440:sample_rate=48000" -f lavfi -i "sine=frequency=660:sample_rate=48000" \
    -t 4 -timecode 10:00:00:00 -metadata:s:v reel_name=SND1 -map 0:v -map 1:a -map 2:a -map_metadata -1 \
    -fflags +bitexact -c:v mjpeg -c:a pcm_s16le -flags:a +bitexact "$temporary/with_picture.mov"
ffmpeg -hide_banner -loglevel error -y -i "$temporary/with_picture.mov" \
    -map 0:a -map 0:d -c copy -fflags +bitexact SOUND.mov
