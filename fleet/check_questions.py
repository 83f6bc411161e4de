#!/usr/bin/python3
"""Asks the questions of questions.md, and what the alerts look at, and compares the whole answers.

    check_questions.py URL TIME      a Prometheus with the simulated fleet, and the time to ask for

Answers are one line a series, as `{label="text", ...} number`, in questions.expected. With
KRAID_UPDATE_EXPECTED=1 in the environment it is written anew: read the difference.
"""

import difflib
import json
import os
import pathlib
import re
import sys
import urllib.parse
import urllib.request

import yaml

FLEET = pathlib.Path(__file__).resolve().parent
QUESTION = re.compile(r"^## (.*?)$.*?^```promql\n(.*?)^```$", re.M | re.S)


def questions():
    """Yields (title, query). A title without a query, or a query beside the titles, ends it all."""
    page = (FLEET / "questions.md").read_text(encoding="utf-8")
    found = QUESTION.findall(page)
    if not found or len(found) != page.count("```promql") or len(found) != page.count("\n## "):
        sys.exit("check_questions: questions.md: each title needs one query, each query a title")
    yield from found
    rules = yaml.safe_load((FLEET / "kraid-alerts.yml").read_text(encoding="utf-8"))
    for group in rules["groups"]:
        for rule in group["rules"]:
            yield rule["alert"], rule["expr"]


def ask(url, time, query):
    data = urllib.parse.urlencode({"query": query, "time": time}).encode()
    try:
        with urllib.request.urlopen(f"{url}/api/v1/query", data, timeout=60) as response:
            result = json.load(response)["data"]["result"]
    except urllib.error.HTTPError as error:
        return [json.load(error).get("error", str(error))]
    lines = []
    for series in result:
        labels = ", ".join(f'{name}="{text}"' for name, text in sorted(series["metric"].items())
                           if name not in ("__name__", "job"))
        lines.append(f"{{{labels}}} {float(series['value'][1]):.6g}")
    return sorted(lines)


def main():
    url, time = sys.argv[1:]
    answers, unanswered, count = [], [], 0
    for title, query in questions():
        count += 1
        lines = ask(url, time, query)
        if not lines:
            unanswered.append(title)
        answers += [f"# {title}", *lines, ""]
    path = FLEET / "questions.expected"
    got = "\n".join(answers)
    if os.environ.get("KRAID_UPDATE_EXPECTED") == "1":
        path.write_text(got, encoding="utf-8")
    expected = path.read_text(encoding="utf-8")
    if got != expected:
        difference = difflib.unified_diff(expected.splitlines(), got.splitlines(),
                                          "questions.expected", "answers", n=2, lineterm="")
        print(*difference, sep="\n", file=sys.stderr)
        sys.exit("check_questions: the answers are not those that are expected")
    if unanswered:
        sys.exit("check_questions: no series at all answers: " + "; ".join(unanswered))
    print(f"check_questions: {count} questions and alerts are answered as expected")


if __name__ == "__main__":
    main()
