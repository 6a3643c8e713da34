#!/usr/bin/env python3
"""Replays corpora through the fuzz targets that count lines, and prints how much each reaches of what it is meant for."""

import argparse
import json
import os
import subprocess
from pathlib import Path

from common import Scratch

ROOT = Path(__file__).resolve().parent.parent.parent

# What each target is meant for: folders and files. Headers count as well; what is not linked into the target does not.
MEANT = {
    "avc": ["mxf/avc/"],
    "event_message": ["fcp/EventCodec", "fcp/EventMessage"],
    "labels_file": ["xml/LabelFile", "xml/Horspool"],
    "mxf_essence": ["mxf/essence/", "mxf/demuxer/Delivery", "mxf/demuxer/Essence", "mxf/demuxer/MxfDemuxerEssence"],
    "mxf_index": ["mxf/index/"],
    "mxf_open": ["mxf/metadata/Met", "mxf/metadata/Primer", "mxf/metadata/Values", "mxf/model/",
                 "mxf/demuxer/Frameworks", "mxf/demuxer/Record", "mxf/demuxer/MxfDemuxer."],
    "mxf_partitions": ["mxf/klv/", "mxf/metadata/ValueText", "mxf/metadata/HeaderSets"],
    "mxf_push": ["mxf/stream/"],
    "options_json": ["cli/Json", "cli/Option"],
    "project_document": ["fcp/ProjectDocument"],
    "quicktime_reader": ["media/quicktime/"],
    "timecode_parser": ["timecode/"],
}


def tool(name: str) -> str:
    return f"{name}-14" if any(Path(place, f"{name}-14").exists() for place in os.get_exec_path()) else name


def replay(program: Path, corpora: list, folder: Path) -> dict:
    """Name of each source and its counts."""
    raw, profile = folder / f"{program.name}.profraw", folder / f"{program.name}.profdata"
    subprocess.run([program, "-runs=0", *corpora], check=True, stderr=subprocess.DEVNULL, cwd=folder,
                   env={**os.environ, "LLVM_PROFILE_FILE": str(raw)})
    subprocess.run([tool("llvm-profdata"), "merge", "-sparse", raw, "-o", profile], check=True)
    page = subprocess.run([tool("llvm-cov"), "export", "-summary-only", f"-instr-profile={profile}", program],
                          check=True, capture_output=True).stdout
    return {os.path.relpath(entry["filename"], ROOT): entry["summary"] for entry in json.loads(page)["data"][0]["files"]}


def share(files: list, what: str) -> str:
    count = sum(summary[what]["count"] for summary in files)
    covered = sum(summary[what]["covered"] for summary in files)
    return f"{100 * covered / count:.0f} % of {count}" if count else "none"


def main():
    options = argparse.ArgumentParser(description=__doc__)
    options.add_argument("programs", type=Path, help="the folder with the fuzz targets")
    options.add_argument("corpora", type=Path, nargs="+", help="folders that have a folder for each target")
    options.add_argument("--target", choices=sorted(MEANT), action="append", help="only this one, with each of its sources")
    arguments = options.parse_args()
    with Scratch() as folder:
        for target in arguments.target or sorted(MEANT):
            corpora = [(corpus / target).resolve() for corpus in arguments.corpora if (corpus / target).is_dir()]
            sources = {name: summary for name, summary in
                       replay((arguments.programs / f"fuzz_{target}").resolve(), corpora, folder).items()
                       if name.startswith(tuple(MEANT[target]))}
            inputs = sum(1 for corpus in corpora for _ in corpus.iterdir())
            files = list(sources.values())
            print(f"{target:18} {inputs:6} inputs; lines: {share(files, 'lines')}; branches: {share(files, 'branches')}; "
                  + " ".join(MEANT[target]), flush=True)
            if arguments.target:
                for name, summary in sorted(sources.items(), key=lambda entry: entry[1]["lines"]["percent"]):
                    print(f"  {name:44} lines {share([summary], 'lines'):14} branches {share([summary], 'branches')}")


if __name__ == "__main__":
    main()
