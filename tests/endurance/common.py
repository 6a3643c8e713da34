"""What the endurance scripts share: recordings made by ffmpeg, a bounded run of the program, a look at its output."""

import os
import resource
import shutil
import signal
import subprocess
import sys
import tempfile
from dataclasses import dataclass
from pathlib import Path

MIB = 1 << 20
PICTURES = "-f lavfi -i testsrc2=s=64x64:r=25:d=0.4"
BROADCAST = "-f lavfi -i testsrc2=s=720x576:r=25:d=0.12"
FULL_HD = "-f lavfi -i testsrc2=s=1920x1080:r=25:d=0.08"
TONE = "-f lavfi -i sine=sample_rate=48000:d=0.4"
START = "-timecode 10:00:00:00"

# Name of the file and what ffmpeg makes it with: containers, wrappings and codecs that take different ways in the readers.
RECORDINGS = {
    "h264.mov": f"{PICTURES} {TONE} -c:v libx264 -bf 2 -pix_fmt yuv420p -c:a pcm_s16le {START} -metadata reel_name=A001",
    "prores.mov": f"{PICTURES} {TONE} {TONE} -map 0 -map 1 -map 2 -c:v prores -c:a pcm_s24le {START}",
    "mjpeg.mov": f"{PICTURES} -c:v mjpeg -pix_fmt yuvj420p",
    "fragments.mov": f"{PICTURES} {TONE} -c:v libx264 -pix_fmt yuv420p -g 5 -c:a aac -movflags +frag_keyframe+empty_moov",
    "faststart.mov": f"{PICTURES} {TONE} -c:v mpeg2video -c:a aac -movflags +faststart {START}",
    "sound.mov": f"{TONE} -c:a pcm_s16be {START}",
    "longgop.mxf": f"{PICTURES} {TONE} {TONE} -map 0 -map 1 -map 2 -c:v mpeg2video -bf 2 -g 6 -c:a pcm_s16le {START}",
    "avc.mxf": f"{PICTURES} {TONE} -c:v libx264 -bf 2 -g 5 -pix_fmt yuv420p -c:a pcm_s24le {START}",
    "prores.mxf": f"{PICTURES} {TONE} -c:v prores -c:a pcm_s16le",
    "jpeg2000.mxf": f"{PICTURES} -c:v jpeg2000",
    "dv.mxf": f"{BROADCAST} {TONE} -pix_fmt yuv420p -c:v dvvideo -c:a pcm_s16le {START}",
    "d10.mxf": f"{BROADCAST},noise=alls=60:allf=t {TONE} -c:v mpeg2video -intra_vlc 1 -non_linear_quant 1 -g 1 -bf 0 -b:v 30M -minrate 30M "
               "-maxrate 30M -bufsize 1200k -pix_fmt yuv422p -rc_init_occupancy 1200k "
               f"-dc 10 -qmin 1 -qmax 12 -ps 1 -c:a pcm_s16le -t 0.12 {START} -f mxf_d10",
    "opatom.mxf": f"{FULL_HD} -c:v dnxhd -b:v 36M -pix_fmt yuv422p -f mxf_opatom",
    "atomsound.mxf": f"{TONE} -c:a pcm_s16le -ar 48000 -f mxf_opatom",
}


def make_recording(path: Path, arguments: str) -> Path:
    subprocess.run(["ffmpeg", "-v", "error", "-nostdin", "-y", *arguments.split(), "-fflags", "+bitexact",
                    "-flags", "+bitexact", "-threads", "1", str(path)], check=True)
    return path


@dataclass
class Outcome:
    code: int  # negative: the number of the signal that ended it
    out: bytes
    err: str
    hung: bool = False


def run(command, limits=(), stdin=None, stdout=subprocess.PIPE, wall_seconds=120, environment=None, **more) -> Outcome:
    """Runs `command` to its end, or for `wall_seconds`. limits: pairs of a resource and its limit."""

    def restrict():
        for kind, amount in limits:
            resource.setrlimit(kind, (amount, amount + (1 if kind == resource.RLIMIT_CPU else 0)))

    with open(stdin or os.devnull, "rb") as source:
        process = subprocess.Popen([str(word) for word in command], stdin=source, stdout=stdout,
                                   stderr=subprocess.PIPE, preexec_fn=restrict,
                                   env={**os.environ, **(environment or {})}, **more)
        try:
            out, err = process.communicate(timeout=wall_seconds)
            return Outcome(process.returncode, out or b"", err.decode(errors="replace"))
        except subprocess.TimeoutExpired:
            process.kill()
            out, err = process.communicate()
            return Outcome(process.returncode, out or b"", err.decode(errors="replace"), hung=True)


def named(code: int) -> str:
    return signal.Signals(-code).name if code < 0 else f"exit code {code}"


class Scratch:
    """A folder that goes with the block, below TMPDIR, else in memory. The signals that ask for an end leave the block."""

    NEEDED = 512 * MIB  # with less, programs would fail for want of room, and that would look like what is looked for

    def __enter__(self) -> Path:
        for number in (signal.SIGTERM, signal.SIGHUP):
            signal.signal(number, lambda number, _: sys.exit(128 + number))
        places = [os.environ["TMPDIR"]] if "TMPDIR" in os.environ else ["/dev/shm", tempfile.gettempdir()]
        places = [place for place in places
                  if os.access(place, os.W_OK) and shutil.disk_usage(place).free >= self.NEEDED]
        if not places:
            sys.exit(f"no folder with {self.NEEDED // MIB} MiB for scratch files; set TMPDIR to one")
        self.path = Path(tempfile.mkdtemp(prefix="endure-", dir=places[0]))
        self.path.chmod(0o755)
        return self.path

    def __exit__(self, *_):
        shutil.rmtree(self.path, ignore_errors=True)


def finish(findings: int):
    print("no finding" if not findings else f"{findings} findings")
    sys.exit(1 if findings else 0)
