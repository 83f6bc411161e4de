#!/usr/bin/env python3
"""documents_test.py BUILD_DIR SOURCE_DIR: every JSON document is what the schema says, as a validator
that others wrote has it; and the examples of the documentation give the answers that it shows."""

import copy
import glob
import json
import os
import re
import shutil
import subprocess
import sys
import tempfile

import jsonschema

build, source = map(os.path.abspath, sys.argv[1:3])
command = build + "/bin/kraid-inventory"
failures = 0


def expect(condition, what):
    global failures
    if not condition:
        print("FAILED:", what)
        failures += 1


def document(*arguments):
    return json.loads(subprocess.run([command, "--trust-tools", "--format", "json", *arguments], capture_output=True).stdout)


with open(source + "/schema/inventory.schema.json") as file:
    schema = json.load(file)
jsonschema.Draft202012Validator.check_schema(schema)
validator = jsonschema.Draft202012Validator(schema)
folder = tempfile.mkdtemp()
sample = source + "/demo"

# Every machine behind the sample's tools; one without tools; the options that change a document.
documents = {}
for machine in [sample, *glob.glob(source + "/tests/machines/*/")]:
    root = os.path.join(folder, "root")
    os.makedirs(root + "/kraid")
    for tool in ("kelvcmd", "hrconf", "arcconf", "answer.sh"):
        shutil.copy(sample + "/kraid/" + tool, root + "/kraid")
    for texts in glob.glob(machine + "/kraid/*.d"):
        shutil.copytree(texts, root + "/kraid/" + os.path.basename(texts))
    documents[machine] = document("--root", root)
    shutil.rmtree(root)
documents["no tools"] = document("--root", folder, "--runs", "all")
shutil.copytree(sample, folder + "/other")
with open(folder + "/other/kraid/kelvcmd.d/2/getevent-device.txt", "r+b") as file:
    # A second row about the same device, in which nothing has grown.
    second = b"   2 |       1 |       2 |      0 |    1 |    0 |   0 |    0 |\n"
    text = file.read().replace(b" 114 |", b" 9007199254740993 |")
    text = text.replace(b"   2 |       1 |       3 |", second + b"   2 |       1 |       3 |")
    file.seek(0)
    file.write(text)
shutil.rmtree(folder + "/other/kraid/arcconf.d")
with open(folder + "/sample.json", "w") as file:
    json.dump(document("--replay", sample), file)
for options in (
    ["--runs", "all"],
    ["--no-instances"],
    ["--controller", "2"],
    ["KVXSG_krDiskDrive", "KVXSG_krProtocolControllerForPhysicalDisk", "Unknown"],
):
    documents[" ".join(options)] = document("--replay", sample, *options)
compared = document("--root", folder + "/other", "--compare", folder + "/sample.json")
documents["--compare"] = compared
for name, checked in documents.items():
    errors = [e.json_path + ": " + e.message[:200] for e in validator.iter_errors(checked)]
    expect(not errors, f"{name}: {errors[:3]}")
expect("instances" not in documents["--no-instances"], "--no-instances")
expect(len(documents["--controller 2"]["machine"]["controllers"]) == 1, "--controller")
big = [d["counters"] for c in compared["machine"]["controllers"] for d in c["devices"] if d["counters"]]
expect(any(c.get("soft_s") == "9007199254740993" for c in big), "a number beyond 2^53")
codes = {(c["code"], c["subject"]["kind"], c["subject"]["tool"]) for c in compared["changes"] if c["subject"]}
expected = {("gone", "controller", "arcconf"), ("counter_grown", "device", "kelvcmd")}
expect(expected <= codes, f"changes {codes}")

# The schema is strict: a document that is changed in one place is none.
def changed(*path, value):
    other = copy.deepcopy(documents["--no-instances"])
    at = other
    for step in path[:-1]:
        at = at[step]
    if value is KeyError:
        del at[path[-1]]
    else:
        at[path[-1]] = value
    return other


drive = ("machine", "controllers", 1, "devices", 0)
for broken in (
    changed("format_version", value=[2, 0]),
    changed("machine", "more", value=1),
    changed(*drive, "more", value=1),
    changed(*drive, "size_bytes", value="70006 MB"),
    changed(*drive, "serial_number", value=KeyError),
    changed(*drive, "state", "judgement", value="good"),
    changed(*drive, "counters", "soft", value=-1),
    changed(*drive, "place", value="1,0"),
    changed("machine", "manager_log", "last", 0, "time", value="2005-03-14 13:31:09 -0500"),
    changed("findings", 0, "subject", "kind", value="disk"),
    changed("problems", value=KeyError),
):
    expect(not validator.is_valid(broken), "a broken document is valid")

# The examples: each block of shell is run, and prints the block of text behind it.
with open(folder + "/kraid-inventory", "w") as file:
    file.write(f"#!/bin/sh\nexec '{command}' --replay '{sample}' \"$@\"\n")
os.chmod(folder + "/kraid-inventory", 0o755)
environment = dict(os.environ, PATH=folder + ":" + os.environ["PATH"], LC_ALL="C.UTF-8")


def check_example(shell, expected):
    ran = subprocess.run(["sh", "-c", shell], cwd=folder, env=environment, text=True, capture_output=True)
    expect(ran.returncode == 0 and ran.stdout == expected, f"{shell}\n{ran.stdout}{ran.stderr}instead of\n{expected}")
    expect("tonumber" not in shell, "tonumber in " + shell)


examples = 0
for page in ("json", "recordings"):
    with open(f"{source}/docs/{page}.md") as file:
        for shell, expected in re.findall(r"```sh\n(.*?)```\n```text\n(.*?)```", file.read(), re.S):
            check_example(shell, expected)
            examples += 1
with open(source + "/docs/kraid-inventory.1") as file:
    for shell, expected in re.findall(r"\.\\\" run:\n\.Bd[^\n]*\n(.*?)\.Ed\n.*?\.\\\" prints:\n\.Bd[^\n]*\n(.*?)\.Ed\n", file.read(), re.S):
        check_example(shell.replace("\\-", "-").replace("\\e", "\\"), expected.replace("\\-", "-"))
        examples += 1
expect(examples >= 8, f"only {examples} examples")

shutil.rmtree(folder)
sys.exit(failures > 0)
