#!/usr/bin/env python3
"""Writes where there is no room, or no permission: the old file stays, nothing lies beside it, the message names the
output and the reason, and the exit code is 1.
"""

import argparse
import os
import resource
import subprocess
from pathlib import Path

from common import Scratch, finish, make_recording, run

OLD = b"what was there before\n"


class Places:
    """Folders that take no new file, each with an output that is there already."""

    def __init__(self, folder: Path):
        self.folder = folder
        self.mounted = []
        self.listed = []  # name, folder, words of which the message has one, more for subprocess
        if os.geteuid() != 0:
            print("file systems that are full or read-only: not tried, only root can mount them")
        else:
            full = self.mount("full", "size=64k")
            if full:
                (full / "ballast").write_bytes(bytes(40 * 1024))
                self.listed.append(("full file system", full, ["No space left on device"], {}))
            bare = self.mount("read-only", "size=64k")
            if bare:
                subprocess.run(["mount", "-o", "remount,ro", str(bare)], check=True)
                self.listed.append(("read-only file system", bare, ["Read-only file system"], {}))
        limited = self.make("limited")
        self.listed.append(("limit on file sizes", limited, ["File too large"], {"limits": [(resource.RLIMIT_FSIZE, 16384)]}))
        closed = self.make("closed")
        closed.chmod(0o555)
        nobody = {"user": 65534} if os.geteuid() == 0 else {}
        self.listed.append(("closed folder", closed, ["Permission denied"], nobody))

    def make(self, name: str) -> Path:
        place = self.folder / name
        place.mkdir()
        return self.fill(place)

    @staticmethod
    def fill(place: Path) -> Path:
        for output in ("old.xml", "old.m2v", "old.wav"):
            (place / output).write_bytes(OLD)
        return place

    def mount(self, name: str, options: str):
        place = self.folder / name
        place.mkdir()
        if subprocess.run(["mount", "-t", "tmpfs", "-o", options, "tmpfs", str(place)],
                          stderr=subprocess.DEVNULL).returncode != 0:
            place.rmdir()
            return None
        self.mounted.append(place)
        return self.fill(place)

    def close(self):
        for place in self.mounted:
            subprocess.run(["umount", str(place)], check=True)
        (self.folder / "closed").chmod(0o755)  # else only root could remove what is in it


def content(folder: Path) -> dict:
    return {entry.name: entry.read_bytes() for entry in folder.iterdir()}


def main():
    options = argparse.ArgumentParser(description=__doc__)
    options.add_argument("zanfcp", type=Path)
    options.add_argument("samples", type=Path)
    arguments = options.parse_args()
    findings = checks = 0

    def finding(what: str, err: str):
        nonlocal findings
        findings += 1
        print(f"FINDING {what}\n{err}")

    with Scratch() as folder:
        recording = make_recording(folder / "a.mxf", "-f lavfi -i testsrc2=s=320x240:r=25:d=2 -f lavfi -i sine=sample_rate=48000:d=2 "
                                   "-c:v mpeg2video -b:v 8M -c:a pcm_s16le")
        movies = sorted(arguments.samples.glob("*.mov"))
        commands = [(".xml", ["build", *movies, "--sequence", "--cuts", arguments.samples / "cuts.json"]),
                    (".m2v", ["mxf", "extract", recording, "--stream", "0"]),
                    (".wav", ["mxf", "extract", recording, "--stream", "1"])]
        places = Places(folder)
        try:
            for name, place, words, more in places.listed:
                for suffix, command in commands:
                    for stem in ("old", "new"):
                        output = place / (stem + suffix)
                        before = content(place)
                        outcome = run([arguments.zanfcp, *command, "-o", output], **more)
                        what = f"{name}: {command[0:2]} -o {output.name}: exit code {outcome.code}"
                        checks += 1
                        if outcome.code != 1:
                            finding(what, outcome.err)
                        elif content(place) != before:
                            finding(f"{what}, but the folder has changed: {sorted(content(place))}", outcome.err)
                        elif str(output) not in outcome.err or not any(word in outcome.err for word in words):
                            finding(f"{what}, but the message does not say why", outcome.err)
                print(f"{name}: done", flush=True)
        finally:
            places.close()
        pages = [command for _, command in commands[:1]] + [
            [*commands[1][1], "-o", "-"], [*commands[2][1], "-o", "-"], ["inspect", *movies], ["labels"],
            ["inspect", "--json", recording], ["mxf", "info", recording], ["mxf", "info", "--json", recording],
            ["mxf", "dump", recording], ["mxf", "samples", recording], ["mxf", "samples", "--json", recording]]
        for command in pages:
            with open("/dev/full", "wb") as sink:
                outcome = run([arguments.zanfcp, *command], stdout=sink)
            checks += 1
            if outcome.code != 1 or "No space left on device" not in outcome.err:
                finding(f"{command[0:2]} to a full device: exit code {outcome.code}", outcome.err)
        print("standard output to a full device: done")
    print(f"{checks} checks")
    finish(findings)


if __name__ == "__main__":
    main()
