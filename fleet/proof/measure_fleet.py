"""Measures a Prometheus that scrapes a simulated fleet, and one that has a day of a small one.

measure_fleet.py fleet PORT TOTALS           that the answers are those of TOTALS; memory, ingestion
measure_fleet.py queries PORT RULES TIMES    what the rules and questions of this folder cost, with TIMES
                                             of them each; only those about a day where TIMES > 1

CPU time is that of Prometheus as a whole, as it says itself: it holds on a busy machine, too.
"""

import json
import pathlib
import re
import sys
import time
import urllib.parse
import urllib.request

import yaml


def get(port, path, **parameters):
    data = urllib.parse.urlencode(parameters).encode() or None
    with urllib.request.urlopen(f"http://127.0.0.1:{port}/{path}", data, timeout=120) as response:
        return response.read().decode()


def ask(port, query, **parameters):
    return json.loads(get(port, "api/v1/query", query=query, **parameters))["data"]["result"]


def gauges(port):
    """Prometheus about itself: {series: value}."""
    lines = (line.rpartition(" ") for line in get(port, "metrics").splitlines() if line[0] != "#")
    return {series: float(value) for series, _, value in lines}


def show(what, value, note=""):
    print(f"{what:38} {value:>9} {note}".rstrip())


def measure_fleet(port, totals_path):
    with open(totals_path, encoding="utf-8") as file:
        totals = json.load(file)
    for query, expected in totals.items():
        found = ask(port, query)
        value = float(found[0]["value"][1]) if found else 0
        if value != expected:
            sys.exit(f"{query} is {value:.0f}, expected {expected}")
    show("answers that were counted beforehand", len(totals), "as expected")

    before = gauges(port)
    time.sleep(30)
    after = gauges(port)
    cpu = after["process_cpu_seconds_total"] - before["process_cpu_seconds_total"]
    appended = 'prometheus_tsdb_head_samples_appended_total{type="float"}'
    samples = after[appended] - before[appended]
    series, resident = after["prometheus_tsdb_head_series"], after["process_resident_memory_bytes"]
    machines = totals["sum(up)"]
    show("series", f"{series:.0f}", f"{series / machines:.0f} of each of {machines} machines, 5 of them Prometheus' own")
    show("memory, resident", f"{resident / 1e6:.0f} MB", f"{resident / series:.0f} bytes a series")
    show("memory, in use", f"{after['go_memstats_heap_inuse_bytes'] / 1e6:.0f} MB")
    show("CPU time of a million samples scraped", f"{1e6 * cpu / samples:.2f} s",
         f"{samples / 30:.0f} samples a second took {cpu / 30:.2f} cores")


def expressions(folder):
    """Yields (kind, name, PromQL) of all questions and rules, the questions first: what is recorded gets old."""
    page = (folder / "questions.md").read_text(encoding="utf-8")
    for title, query in re.findall(r"^## (.*?)$.*?^```promql\n(.*?)^```$", page, re.M | re.S):
        yield "questions", title, query
    for path in ("kraid-recording.yml", "kraid-alerts.yml"):
        for group in yaml.safe_load((folder / path).read_text(encoding="utf-8"))["groups"]:
            for rule in group["rules"]:
                yield "rules", rule.get("alert") or rule["record"], rule["expr"]


def measure_queries(port, folder, times, at):
    rows = {"questions": [], "rules": []}
    for kind, name, query in expressions(pathlib.Path(folder)):
        # A day is read, or what was there a day before.
        if times > 1 and not re.search(r"\[1d\]|offset 1d", query):
            continue
        cpu, start = gauges(port)["process_cpu_seconds_total"], time.monotonic()
        for _ in range(times):
            answers = len(ask(port, query, **at))
        elapsed = time.monotonic() - start
        cpu = gauges(port)["process_cpu_seconds_total"] - cpu
        rows[kind].append((cpu / times, elapsed / times, answers, name))
    for kind, measured in rows.items():
        print(f"\n{kind:60} CPU s  elapsed s  answers")
        measured.sort(reverse=True)
        for cpu, elapsed, answers, name in measured if kind == "questions" else measured[:8]:
            print(f"  {name:57} {cpu:6.3f}  {elapsed:9.3f}  {answers:7}")
        total = sum(row[0] for row in measured), sum(row[1] for row in measured)
        print(f"  {'all ' + str(len(measured)):57} {total[0]:6.3f}  {total[1]:9.3f}")


def main():
    what, port, *rest = sys.argv[1:]
    if what == "fleet":
        measure_fleet(port, *rest)
    else:
        folder, times, *at = rest
        measure_queries(port, folder, int(times), {"time": at[0]} if at else {})


main()
