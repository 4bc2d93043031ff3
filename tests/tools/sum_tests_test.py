"""Reports written by hand: each outcome counts where it belongs."""
import pathlib
import subprocess
import sys
import tempfile
import unittest

PROGRAM = pathlib.Path(__file__).resolve().parents[2] / "tools/build/sum_tests.py"


def total(*reports):
    with tempfile.TemporaryDirectory() as folder:
        paths = []
        for index, cases in enumerate(reports):
            path = pathlib.Path(folder, f"{index}.xml")
            path.write_text(f"<testsuite>{cases}</testsuite>", encoding="utf-8")
            paths.append(str(path))
        run = subprocess.run(
            [sys.executable, str(PROGRAM), *paths], capture_output=True, text=True, check=False
        )
        return run.returncode, run.stdout.splitlines()[-1]


PASSED = '<testcase name="a" status="run"/>'
FAILED = '<testcase name="b" status="fail"><failure message=""/></testcase>'
SKIPPED = (
    '<testcase name="c" status="notrun">'
    '<skipped message="SKIP_REGULAR_EXPRESSION_MATCHED"/></testcase>'
)
MISSING = (
    '<testcase name="d" status="notrun"><skipped message="Unable to find executable"/></testcase>'
)


class SumTests(unittest.TestCase):
    def test_reports_add_up(self):
        self.assertEqual(total(PASSED * 2, PASSED + SKIPPED), (0, "3 passed, 0 failed, 1 skipped"))

    def test_a_failure_fails_the_whole(self):
        self.assertEqual(total(PASSED, FAILED), (1, "1 passed, 1 failed, 0 skipped"))

    def test_a_test_that_never_started_is_a_failure(self):
        self.assertEqual(total(MISSING), (1, "0 passed, 1 failed, 0 skipped"))

    def test_a_broken_report_is_a_failure(self):
        self.assertEqual(total("<"), (1, "0 passed, 1 failed, 0 skipped"))


if __name__ == "__main__":
    unittest.main()
