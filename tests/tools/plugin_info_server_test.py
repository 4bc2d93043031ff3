"""The small server behind the update check: its one answer, and everything else."""
import json
import pathlib
import socket
import subprocess
import sys
import unittest
import urllib.error
import urllib.request

PROGRAM = pathlib.Path(__file__).resolve().parents[2] / "tools/server/plugin_info_server.py"
OPENER = urllib.request.build_opener(urllib.request.ProxyHandler({}))


def free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


class PluginInfoServer(unittest.TestCase):
    def setUp(self):
        self.port = free_port()
        command = [sys.executable, str(PROGRAM), "0.25", "https://example.org/get", str(self.port)]
        self.server = subprocess.Popen(
            command, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True
        )
        self.addCleanup(self.server.stdout.close)
        self.addCleanup(self.server.wait)
        self.addCleanup(self.server.terminate)
        self.line = self.server.stdout.readline()

    def get(self, path):
        return OPENER.open(f"http://127.0.0.1:{self.port}{path}", timeout=10)

    def test_it_says_where_and_what_it_serves(self):
        self.assertEqual(self.line, f"http://127.0.0.1:{self.port}/plugin_info/ says 0.25\n")

    def test_the_answer(self):
        for _ in range(2):
            with self.get("/plugin_info/") as answer:
                self.assertEqual(answer.headers["Content-Type"], "application/json")
                expected = {"version": "0.25", "download_url": "https://example.org/get"}
                self.assertEqual(json.load(answer), expected)

    def test_anything_else_is_not_found(self):
        for path in ("/", "/plugin_info", "/plugin_info/x"):
            with self.subTest(path=path), self.assertRaises(urllib.error.HTTPError) as refusal:
                self.get(path)
            self.assertEqual(refusal.exception.code, 404)
            refusal.exception.close()


if __name__ == "__main__":
    unittest.main()
