"""Serves a file as OpenMetrics, whatever is asked for: serve_openmetrics.py FILE."""

import http.server
import sys


class Handler(http.server.BaseHTTPRequestHandler):
    def do_GET(self):
        with open(sys.argv[1], "rb") as file:
            text = file.read()
        self.send_response(200)
        self.send_header("Content-Type", "application/openmetrics-text; version=1.0.0; charset=utf-8")
        self.send_header("Content-Length", str(len(text)))
        self.end_headers()
        self.wfile.write(text)

    def log_message(self, *_):
        pass


server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Handler)
print(f'msg="Listening on" address=127.0.0.1:{server.server_address[1]}', flush=True)
server.serve_forever()
