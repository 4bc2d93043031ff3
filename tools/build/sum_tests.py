#!/usr/bin/env python3
"""tools/build/sum_tests.py REPORT.xml ...

Adds up ctest's JUnit reports and prints `N passed, N failed, N skipped`. A test that could not be
started, and a report that is missing, count as failed. Leaves with 1 when any failed.
"""
import sys
import xml.etree.ElementTree as ElementTree


def outcome(case):
    skipped = case.find("skipped")
    if skipped is not None:
        # Only a test that chose to skip says so; others were not run for a fault.
        return "skipped" if skipped.get("message", "").startswith("SKIP_") else "failed"
    if case.get("status") == "disabled":
        return "skipped"
    return "failed" if case.find("failure") is not None or case.get("status") == "fail" else "passed"


def main(reports):
    totals = {"passed": 0, "failed": 0, "skipped": 0}
    for report in reports:
        try:
            cases = ElementTree.parse(report).getroot().iter("testcase")
        except (OSError, ElementTree.ParseError) as error:
            print(f"{report}: {error}")
            totals["failed"] += 1
            continue
        for case in cases:
            totals[outcome(case)] += 1
    print(", ".join(f"{count} {name}" for name, count in totals.items()))
    return 1 if totals["failed"] else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
