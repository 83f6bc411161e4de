"""Receives what Icinga 2 has made of check results, and compares it with what is expected.

recorded_checks.py EXPECTED PORT_FILE SECONDS MACHINES FOLDER: listens on a free port, which it writes
to PORT_FILE, for the JSON messages of a GelfWriter, and ends when each service of EXPECTED has been
heard of, or after so many seconds. Exit status 0: each service was as EXPECTED has it.
"""

import json
import os
import socket
import sys
import time

FIGURES = ("controllers logical_drives devices failed_devices degraded_drives predicted_failures "
           "drives_with_bad_stripes rebuilds").split()


def read_expected(path, machines, folder):
    expected = {}
    for line in open(path, encoding="utf-8"):
        if not line.startswith("#"):
            line = line.rstrip("\n").replace("MACHINES", machines).replace("FOLDER", folder)
            service, state, output, figures = line.split("|")
            expected[service] = (state, output, dict(zip(FIGURES, map(float, figures.split()))))
    return expected


def messages(server, end):
    """The documents that are sent until `end`, which have a NUL behind each; None while all is silent."""
    server.settimeout(0.5)
    waiting, connection = b"", None
    while time.monotonic() < end:
        try:
            if connection is None:
                connection = server.accept()[0]
                connection.settimeout(0.5)
            received = connection.recv(1 << 16)
        except TimeoutError:
            yield None
            continue
        if not received:
            waiting, connection = b"", None
        *whole, waiting = (waiting + received).split(b"\0")
        yield from (json.loads(document) for document in whole)


def differences(document, state, output, figures):
    """What is not as expected in one result: lines of text."""
    if document["_service_state"] != state:
        yield f"state {document['_service_state']}, expected {state}"
    if not document["full_message"].startswith(output):
        yield f"output {document['full_message']!r}, expected {output!r} ..."
    # Each figure is given with its least value, 0, which tells it from the engine's own fields.
    found = {name[1:-4]: document[name[:-4]] for name in document if name.endswith("_min")}
    if found != figures:
        yield f"figures {found}, expected {figures}"
    least = {document[name] for name in document if name.endswith("_min")}
    if least - {0}:
        yield f"least values {least}"


def main():
    expected_path, port_file, seconds, machines, folder = sys.argv[1:]
    expected = read_expected(expected_path, machines, folder)
    server = socket.create_server(("127.0.0.1", 0))
    with open(port_file + ".new", "w", encoding="ascii") as file:
        file.write(str(server.getsockname()[1]))
    os.rename(port_file + ".new", port_file)

    heard, wrong = set(), 0
    for document in messages(server, time.monotonic() + float(seconds)):
        if document is None or document.get("_type") != "CHECK RESULT":
            continue
        service = document["_service_name"]
        if service in heard:
            continue
        heard.add(service)
        told = list(differences(document, *expected[service])) if service in expected else ["not expected"]
        print(f"{service:17} {document['_service_state']:9} {1000 * document['_execution_time']:4.0f} ms  "
              + ("as expected" if not told else "; ".join(told)), flush=True)
        wrong += bool(told)
        if heard >= set(expected):
            break
    for service in sorted(set(expected) - heard):
        print(f"{service:17} was never heard of")
        wrong += 1
    sys.exit(1 if wrong else 0)


main()
