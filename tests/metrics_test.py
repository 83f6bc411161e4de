#!/usr/bin/python3
"""metrics_test.py BUILD_DIR SOURCE_DIR: the metrics of any machine are taken by parsers that others
wrote, the one of OpenMetrics and the older one, and tell of every failure; docs/fleet.md explains
each of them."""

import glob
import os
import re
import resource
import signal
import subprocess
import sys
import tempfile
import time

from prometheus_client import parser as older
from prometheus_client.openmetrics import parser as openmetrics

build, source = map(os.path.abspath, sys.argv[1:3])
command = [build + "/bin/kraid-inventory", "--trust-tools", "--format", "openmetrics"]
folder = tempfile.mkdtemp()
os.chdir(folder)
failures = 0


def expect(condition, what):
    global failures
    if not condition:
        print("FAILED:", what)
        failures += 1


def samples(text):
    """By name and labels; what both parsers say."""
    read = [
        {(s.name, tuple(sorted(s.labels.items()))): s.value for family in parse(text) for s in family.samples}
        for parse in (openmetrics.text_string_to_metric_families, older.text_string_to_metric_families)
    ]
    expect(read[0] == read[1], "the two parsers read different samples")
    expect(len(read[0]) == len(re.findall("^[^#]", text, re.M)), "samples of the same labels")
    return read[0]


# Each machine behind the sample's tools, and the sample as it was recorded.
seen = set()
for machine in (source + "/demo", *glob.glob(source + "/tests/machines/*/")):
    os.makedirs("root/kraid")
    for file in (*glob.glob(source + "/demo/kraid/*[!.]?"), *glob.glob(machine + "/kraid/*.d")):
        os.symlink(file, "root/kraid/" + os.path.basename(file))
    ran = subprocess.run([*command, "--root", "root"], capture_output=True, text=True)
    seen |= {name for name, _ in samples(ran.stdout)}
    subprocess.run(["rm", "-r", "root"])
with open(source + "/docs/fleet.md") as file:
    page = file.read().split("\n## The series\n")[1]
explained = set(re.findall(r"^\| `(kraid_\w+)", page, re.M))
expect(seen == explained, f"docs/fleet.md lacks {seen - explained}, and has {explained - seen}")

# Whatever fails, the file says so, and nothing is left of what it held before.
os.makedirs("kraid")
with open("kraid/kelvcmd", "w") as tool:
    tool.write("#!/bin/sh\necho >running\nexec sleep 60\n")
os.chmod("kraid/kelvcmd", 0o755)
failed = (
    (["--replay", source + "/demo", "--max-age", "1"], 1, "collection_failed", "was recorded at"),
    (["--replay", source + "/demo", "--controller", "9"], 1, "collection_failed", "has the number 9"),
    (["--replay", "kraid"], 1, "collection_failed", "recording.json"),
    (["--replay", "absent"], 2, "collection_failed", "not there"),
    (["--max-age=1"], 2, "collection_failed", "wrong"),
    (["--format", "openmetrics"], 2, "collection_failed", "wrong"),
    (["--log", "absent/log"], 3, "collection_failed", "cannot write"),
    (["--log", "kraid/log", "--record", "kraid"], 3, "collection_failed", "replaces the folder"),
    (["--plugin", source + "/README.md"], 1, "plugin_failed", ""),
    (["--tool-timeout", "0.1"], 0, "run_timed_out", "time limit"),
    (["--replay", source + "/demo", "--record", "/dev/full/new"], 3, "collection_failed", "cannot write"),
    (signal.SIGTERM, -signal.SIGTERM, "collection_failed", "signal"),
)
for arguments, status, kind, why in failed:
    for to_file in (True, False):
        with open("file", "w") as file:
            file.write("before")
        os.chmod("file", 0o604)
        run = command + (["--output", "file"] if to_file else [])
        if arguments is not signal.SIGTERM:
            run += arguments
        started = subprocess.Popen(run, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
        if arguments is signal.SIGTERM:
            while not os.path.exists("running"):
                time.sleep(0.01)
            started.send_signal(arguments)
        text, error = started.communicate()
        if to_file:
            text = open("file").read()
        expect(started.returncode == status, f"{run}: {started.returncode} {error}")
        read = samples(text)
        expect(read[("kraid_collection_complete", ())] == 0, f"{run} is complete")
        expect(read[("kraid_collection_problems", (("kind", kind),))] >= 1, f"{run}: no {kind}")
        whys = [dict(labels)["why"] for name, labels in read if name == "kraid_collection_problem_info"]
        expect(any(why in text for text in whys), f"{run}: {whys}")
        expect(os.stat("file").st_mode & 0o777 == 0o604, f"{run}: permissions")
        expect(sorted(os.listdir()) in (["file", "kraid"], ["file", "kraid", "running"]), os.listdir())
        if os.path.exists("running"):
            os.remove("running")

# Also where there is no room for the metrics.
subprocess.run(
    [*command, "--output", "file", "--replay", source + "/demo"],
    preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (8192, 8192)),
    stderr=subprocess.DEVNULL,
)
with open("file") as file:
    expect(samples(file.read())[("kraid_collection_complete", ())] == 0, "old metrics where there is no room")

subprocess.run(["rm", "-r", folder])
sys.exit(failures > 0)
