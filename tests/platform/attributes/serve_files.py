#!/usr/bin/env python3
"""Serves one folder on loopback for the stream tests: plain files, an endless radio with titles, and silence.

Prints its port, then runs until its standard input is closed.
"""

import http.server
import os
import sys
import threading
import time

ROOT = sys.argv[1]
METAINT = 8000


class Handler(http.server.BaseHTTPRequestHandler):
    def do_GET(self):
        try:
            if self.path == "/silent":
                time.sleep(20)
            elif self.path == "/radio":
                self.radio()
            else:
                self.file(self.path.lstrip("/"))
        except OSError:
            pass

    def file(self, name):
        full = os.path.join(ROOT, os.path.basename(name))
        if not os.path.isfile(full):
            self.send_error(404)
            return
        with open(full, "rb") as file:
            data = file.read()
        self.send_response(200)
        self.send_header("Content-Type", "audio/mpeg")
        self.send_header("Content-Length", str(len(data)))
        self.end_headers()
        self.wfile.write(data)

    def radio(self):
        with open(os.path.join(ROOT, "bare.mp3"), "rb") as file:
            data = file.read()
        self.send_response(200)
        self.send_header("Content-Type", "audio/mpeg")
        self.send_header("icy-name", "Loopback FM")
        self.send_header("icy-metaint", str(METAINT))
        self.end_headers()
        sent = 0
        for number in range(50):
            block = (data * 2)[sent % len(data):][:METAINT]
            title = f"StreamTitle='Song {number // 5}';".encode()
            title += b"\0" * (-len(title) % 16)
            self.wfile.write(block + bytes([len(title) // 16]) + title)
            sent += METAINT
            time.sleep(0.02)

    def log_message(self, *arguments):
        pass


server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Handler)
server.daemon_threads = True
threading.Thread(target=server.serve_forever, daemon=True).start()
print(server.server_address[1], flush=True)
sys.stdin.read()
