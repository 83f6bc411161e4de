#!/usr/bin/python3
"""What promtool does not see: rules without a test, and names that do not fit together.

Of each alert there has to be a test in which it fires and one in which it does not, of each
recorded series one with samples and one without. Each alert has a severity, a summary that names
the machine and a description; alertmanager.yml names no other alerts; docs/fleet.md has each of
them, and each recorded series. Prints what is missing; status 1 then.
"""

import pathlib
import re
import sys

import yaml

FLEET = pathlib.Path(__file__).resolve().parent
SEVERITIES = ("critical", "warning", "info")
# Of the info series of one thing only the newest is taken: more would be an error of the rule.
PLACE = r"\((job, instance, controller(?:, device|, logical_drive)?)\)"
NEWEST = rf"topk by {PLACE} \(1,\s*timestamp\(kraid_\w+_info(?:\{{[^}}]*\}})?\)"
JOIN = rf"on {PLACE} group_left \([^)]*\)\s*(?:\(|label_replace\(\s*){NEWEST}\) > bool 0"


def load(name):
    return yaml.safe_load((FLEET / name).read_text(encoding="utf-8"))


def rules(name):
    return [rule for group in load(name)["groups"] for rule in group["rules"]]


def seen_in_tests():
    """Returns the pairs (alert or recorded series, whether it was there) that the tests expect."""
    seen = set()
    for path in sorted((FLEET / "tests").glob("*.yml")):
        for test in load(path)["tests"]:
            for case in test.get("alert_rule_test", []):
                seen.add((case["alertname"], bool(case.get("exp_alerts"))))
            for case in test.get("promql_expr_test", []):
                for name in re.findall(r"[a-z_]+:[a-z_]+:[a-z0-9]+", case["expr"]):
                    seen.add((name, bool(case.get("exp_samples"))))
    return seen


def without_test(names):
    seen = seen_in_tests()
    for name in names:
        for expected, word in ((True, "is there"), (False, "is not there")):
            if (name, expected) not in seen:
                yield f"no test in tests/ in which {name} {word}"


def bad_alerts(alerts):
    page = (FLEET.parent / "docs" / "fleet.md").read_text(encoding="utf-8")
    for alert in alerts:
        name, annotations = alert["alert"], alert.get("annotations", {})
        severity = alert.get("labels", {}).get("severity")
        if severity not in SEVERITIES:
            yield f"{name}: the severity is none of {', '.join(SEVERITIES)}"
        if "$labels.instance" not in annotations.get("summary", ""):
            yield f"{name}: the summary does not name the machine"
        if not annotations.get("description"):
            yield f"{name}: no description"
        waits, outlasts = alert.get("for"), alert.get("keep_firing_for")
        if waits not in ("5m", "10m", "15m", "1h") or outlasts not in ("15m", "90m"):
            yield f"{name}: it does not outlast a lost scrape, or collections that fail, as the others do"
        if not re.search(rf"^\| `{name}` \|.*\| {severity} \|", page, re.M):
            yield f"{name}: docs/fleet.md has no row with it and its severity"


def bad_joins(all_rules):
    for rule in all_rules:
        text, name = rule["expr"], rule.get("alert") or rule["record"]
        joins = re.findall(JOIN, text)
        if len(joins) != text.count("group_left") or any(left != right for left, right in joins):
            yield f"{name}: an info series is not joined as elsewhere"
        if len(re.findall(NEWEST, text)) != len(re.findall("(?:top|bottom)k", text)):
            yield f"{name}: it does not take the newest of each info series"


def unknown_inhibitions(alerts):
    names = [alert["alert"] for alert in alerts]
    for rule in load("alertmanager.yml")["inhibit_rules"]:
        for matcher in rule["source_matchers"] + rule["target_matchers"]:
            operator, text = re.fullmatch(r'alertname (=~?) "(.*)"', matcher).groups()
            for pattern in text.split("|") if operator == "=~" else [re.escape(text)]:
                if not any(re.fullmatch(pattern, name) for name in names):
                    yield f"alertmanager.yml: there is no alert {pattern}"


def main():
    alerts = rules("kraid-alerts.yml")
    recorded = [rule["record"] for rule in rules("kraid-recording.yml")]
    page = (FLEET.parent / "docs" / "fleet.md").read_text(encoding="utf-8")
    unexplained = [name for name in recorded if f"`{name}`" not in page]
    faults = [
        *without_test([alert["alert"] for alert in alerts] + recorded),
        *bad_alerts(alerts),
        *bad_joins(alerts + rules("kraid-recording.yml")),
        *unknown_inhibitions(alerts),
        *(f"{name}: docs/fleet.md does not explain it" for name in unexplained),
    ]
    for fault in faults:
        print(f"check_tests: {fault}", file=sys.stderr)
    if faults:
        sys.exit(1)
    print(f"check_tests: {len(alerts)} alerts and {len(recorded)} recorded series have their tests")


if __name__ == "__main__":
    main()
