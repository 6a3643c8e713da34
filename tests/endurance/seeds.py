#!/usr/bin/env python3
"""Fills a folder with seeds for the fuzz targets, a folder each: recordings of ffmpeg, of GStreamer and of this project,
in the form that the target takes. Seeds of its own stand in fuzz/corpus besides."""

import argparse
import subprocess
import shutil
from pathlib import Path

from common import RECORDINGS, Scratch, make_recording

LARGEST = 256 << 10  # larger ones make a run too slow to try many
PICTURES = "-f lavfi -i testsrc2=s=64x64:r=25:d=0.24"

# Shorter ones of what is large, and further ways through the AVC analysis.
MORE = {
    "dv_short.mxf": RECORDINGS["dv.mxf"].replace("d=0.12", "d=0.04").replace("d=0.4", "d=0.04"),
    "d10_short.mxf": RECORDINGS["d10.mxf"].replace("-t 0.12", "-t 0.04"),
    "dnxhr.mxf": "-f lavfi -i testsrc2=s=256x120:r=25:d=0.08 -c:v dnxhd -profile:v dnxhr_lb -pix_fmt yuv422p -f mxf_opatom",
    "long_gop.264": f"{PICTURES} -c:v libx264 -bf 3 -x264-params b-pyramid=normal:keyint=6",
    "fields.264": "-f lavfi -i testsrc2=s=64x64:r=25:d=0.24 -c:v libx264 -flags +ildct+ilme -x264-params tff=1:bframes=2",
    "fake.264": f"{PICTURES} -c:v libx264 -x264-params fake-interlaced=1:slices=3",
    "high10.264": f"{PICTURES} -pix_fmt yuv422p10le -c:v libx264 -g 1 -x264-params cqm=jvt:aud=1",
    "lossless.264": f"{PICTURES} -pix_fmt yuv444p -c:v libx264 -qp 0 -x264-params vbv-maxrate=500:vbv-bufsize=500:nal-hrd=vbr",
}

VIDEO = "videotestsrc num-buffers=4 ! video/x-raw,width=64,height=64,framerate=25/1"
SOUND = "audiotestsrc num-buffers=4 samplesperbuffer=1920 ! audio/x-raw,rate=48000,channels=2,format=S16LE"
PIPELINES = {
    "gst_raw.mxf": f"{VIDEO},format=RGB ! mxfmux name=m {SOUND} ! m.",
    "gst_sound.mxf": f"{SOUND} ! mxfmux",
    "gst_two.mxf": f"{SOUND} ! mxfmux name=m {SOUND} ! m.",
    "gst_raw.mov": f"{VIDEO},format=UYVY ! qtmux name=m {SOUND} ! m.",
    "gst_faststart.mov": f"{VIDEO},format=UYVY ! qtmux faststart=true name=m {SOUND} ! m.",
    "gst_fragments.mov": f"{VIDEO},format=UYVY ! qtmux fragment-duration=80",
}


def make_recordings(folder: Path, samples: Path):
    for name, how in {**RECORDINGS, **MORE}.items():
        make_recording(folder / name, how)
    for name, pipeline in PIPELINES.items():
        done = subprocess.run(["gst-launch-1.0", "-q", *pipeline.split(), "!", "filesink", f"location={folder / name}"]
                              if " name=m" not in pipeline else
                              ["gst-launch-1.0", "-q", *pipeline.split(), "m.", "!", "filesink", f"location={folder / name}"],
                              capture_output=True, timeout=60)
        if done.returncode:
            print(f"GStreamer makes no {name}: {done.stderr.decode(errors='replace').strip()[-200:]}")
            (folder / name).unlink(missing_ok=True)
    for path in samples.glob("*.mov"):
        shutil.copy(path, folder / f"sample_{path.name}")


def write(folder: Path, target: str, name: str, data: bytes):
    place = folder / target
    place.mkdir(parents=True, exist_ok=True)
    if 0 < len(data) <= LARGEST:
        (place / name).write_bytes(data)


def make_seeds(folder: Path, made: Path, zanfcp: Path, samples: Path):
    for path in sorted(made.iterdir()):
        data = path.read_bytes()
        if path.suffix == ".mov":
            write(folder, "quicktime_reader", path.name, data)
        elif path.suffix == ".264":
            write(folder, "avc", path.name, b"\0" + data)
        elif path.suffix == ".mxf":
            for target in ("mxf_open", "mxf_essence", "mxf_partitions", "mxf_index"):
                write(folder, target, path.name, data)
            write(folder, "mxf_push", path.name, bytes([0, 100, 130, 12, 137, 255, 3, 140, 64]) + data)
            write(folder, "mxf_push", path.name + "_thread", bytes([1, 142, 140, 139, 141, 255, 138, 140, 143]) + data)
    movies = [str(path) for path in sorted(samples.glob("*.mov"))]
    shows = [subprocess.run([zanfcp, "build", *movies, *more], capture_output=True, check=True).stdout
             for more in ([], ["--multiclip"], ["--sequence"])]
    for number, show in enumerate(shows):
        write(folder, "project_document", f"show_{number}", show)
        write(folder, "project_document", f"shows_{number}", show + b"\0" + shows[number - 1])
    for path in samples.glob("*.json"):
        write(folder, "options_json", path.name, path.read_bytes())


def main():
    options = argparse.ArgumentParser(description=__doc__)
    options.add_argument("zanfcp", type=Path)
    options.add_argument("samples", type=Path)
    options.add_argument("folder", type=Path)
    arguments = options.parse_args()
    with Scratch() as made:
        make_recordings(made, arguments.samples)
        make_seeds(arguments.folder, made, arguments.zanfcp, arguments.samples)
    for target in sorted(arguments.folder.iterdir()):
        seeds = list(target.iterdir())
        print(f"{target.name:22} {len(seeds)} seeds, {sum(seed.stat().st_size for seed in seeds) >> 10} KiB")


if __name__ == "__main__":
    main()
