"""Prints the samples of a file as JSON, one a line, if both reference parsers read the same in it.

parse_both.py FILE: with the parser for OpenMetrics and with that for the older text format.
"""

import json
import sys

import prometheus_client.openmetrics.parser
import prometheus_client.parser


def samples(parser, text):
    """What the parser makes of it: a set of (name, labels in order, value)."""
    found = [(sample.name, tuple(sorted(sample.labels.items())), float(sample.value))
             for family in parser.text_string_to_metric_families(text) for sample in family.samples]
    if len(found) != len(set(sample[:2] for sample in found)):
        sys.exit("a series stands there twice")
    return set(found)


with open(sys.argv[1], encoding="utf-8", newline="") as file:
    text = file.read()
openmetrics = samples(prometheus_client.openmetrics.parser, text)
older = samples(prometheus_client.parser, text)
if openmetrics != older:
    sys.exit(f"the parsers differ: {sorted(openmetrics ^ older)[:5]}")
for name, labels, value in openmetrics:
    print(json.dumps({**dict(labels), "what": name, "value": value}))
