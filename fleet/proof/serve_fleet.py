"""Serves the last samples of a simulated fleet, each machine under a path of its own.

serve_fleet.py TEXT TARGETS TOTALS: TEXT is what simulated_fleet.py wrote. Writes the targets, for
Prometheus' file_sd_configs, to TARGETS, and what it has counted itself to TOTALS: {PromQL: number}. The
collections are always half a minute old, but for those that were old.
"""

import http.server
import json
import re
import socketserver
import sys
import time

LINE = re.compile(r'(\w+)\{instance="([^"]*)",job="[^"]*",site="([^"]*)",?(.*)\} (\S+) (\d+)$')


def read_fleet(path):
    """Returns {instance: (site, is up, age in seconds, text)}, of each machine's last time."""
    machines, last, lines = {}, None, []

    def keep():
        if last is None:
            return
        instance, site, stamp = last
        text, up, age = [], True, 0
        for name, labels, value in lines:
            if name == "up":
                up = value == "1"
            elif name == "kraid_collection_start_time_seconds":
                age = int(stamp) - float(value)
            elif name.startswith("kraid_"):
                text.append(f"{name}{{{labels}}} {value}\n")
        machines[instance] = (site, up, age, "".join(text).encode())

    with open(path, encoding="utf-8") as file:
        for line in file:
            match = LINE.match(line)
            if not match:
                continue
            name, instance, site, labels, value, stamp = match.groups()
            if (instance, site, stamp) != last:
                if last and last[0] != instance:
                    keep()
                last, lines = (instance, site, stamp), []
            lines.append((name, labels, value))
    keep()
    return machines


class Handler(http.server.BaseHTTPRequestHandler):
    def do_GET(self):
        _, up, age, text = fleet.get(self.path[1:], ("", False, 0, b""))
        start = time.time() - (30 if age < 1800 else age)
        body = text and text + f"kraid_collection_start_time_seconds {start}\n".encode()
        self.send_response(200 if up else 503)
        self.send_header("Content-Type", "text/plain; version=0.0.4")
        self.send_header("Content-Length", str(len(body)))
        self.end_headers()
        self.wfile.write(body)

    def log_message(self, *_):
        pass


class Server(socketserver.ThreadingMixIn, http.server.HTTPServer):
    daemon_threads = True
    request_queue_size = 1024


fleet = read_fleet(sys.argv[1])
everything = b"".join(text for _, up, _, text in fleet.values() if up)


def count(pattern):
    return len(re.findall(pattern, everything, re.M))


totals = {
    "count(up)": len(fleet),
    "sum(up)": sum(up for _, up, _, _ in fleet.values()),
    # The server adds each collection's start time.
    'count({__name__=~"kraid_.*"}) - count(kraid_collection_start_time_seconds)': count(b"^kraid_"),
    'count(kraid_device_state{state="critical"} == 1)':
        count(rb'^kraid_device_state\{.*state="critical".*\} 1$'),
    "count(kraid_collection_complete == 0)": count(rb"^kraid_collection_complete\{.*\} 0$"),
    'sum(kraid_findings{severity="critical"})':
        sum(map(int, re.findall(rb'^kraid_findings\{.*severity="critical".*\} (\d+)$', everything, re.M))),
}
server = Server(("127.0.0.1", 0), Handler)
address = f"127.0.0.1:{server.server_address[1]}"
with open(sys.argv[2], "w", encoding="utf-8") as file:
    json.dump([{"targets": [address],
                "labels": {"instance": instance, "site": site, "__metrics_path__": f"/{instance}"}}
               for instance, (site, *_) in fleet.items()], file)
with open(sys.argv[3], "w", encoding="utf-8") as file:
    json.dump(totals, file)
print(f'msg="Listening on" address={address}', flush=True)
server.serve_forever()
