#!/usr/bin/env python3
"""Answers the plug-in's update check.

    tools/server/plugin_info_server.py [VERSION [DOWNLOAD_URL [PORT]]]

Serves GET /plugin_info/ on the loopback interface until it is interrupted; anything else is a 404.
"""
import http.server
import json
import sys

VERSION, URL, PORT = (sys.argv[1:] + ["0.20", "https://example.org/torvel", "8024"][len(sys.argv) - 1:])[:3]


class PluginInfo(http.server.BaseHTTPRequestHandler):
    def do_GET(self):
        found = self.path == "/plugin_info/"
        body = json.dumps({"version": VERSION, "download_url": URL} if found else {}).encode()
        self.send_response(200 if found else 404)
        self.send_header("Content-Type", "application/json")
        self.send_header("Content-Length", str(len(body)))
        self.end_headers()
        self.wfile.write(body)


server = http.server.HTTPServer(("127.0.0.1", int(PORT)), PluginInfo)
print(f"http://127.0.0.1:{PORT}/plugin_info/ says {VERSION}", flush=True)
try:
    server.serve_forever()
except KeyboardInterrupt:
    pass
