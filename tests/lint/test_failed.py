"""Which failed tests ./test runs again."""
import subprocess

import pytest

from tree import ROOT

UNIT = '<testsuites><testsuite name="Hook"><testcase classname="Hook" name="Lost" status="run" result="completed">' \
       '<failure/></testcase><testcase classname="Instance/Key" name="Held/3" status="run">{}</testcase>' \
       '<testcase classname="Hook" name="Kept" status="run"/></testsuite></testsuites>'
E2E = '<testsuites><testsuite><testcase classname="e2e.test_slider" name="test_keys[0-1]"><{}/></testcase>' \
      '<testcase classname="e2e.test_slider" name="test_mouse"/></testsuite></testsuites>'
RULE = '<testsuites><testsuite><testcase classname="lint.test_docs" name="test_links"><failure/></testcase>' \
       '</testsuite></testsuites>'
LOST, HELD = "unit hotkey_test Hook.Lost", "unit hotkey_test Instance/Key.Held/3"
KEYS = "e2e tests/e2e/test_slider.py::test_keys[0-1]"


@pytest.mark.parametrize("reports, failed, again", [
    ({"hotkey_test": UNIT.format("")}, 1, [LOST]),
    ({"hotkey_test": UNIT.format("<failure/>"), "e2e": E2E.format("error")}, 3, [KEYS, LOST, HELD]),
    ({"hotkey_test": UNIT.format("")}, 2, []),  # a program that crashed, for example
    ({"hotkey_test": UNIT.format(""), "rules": RULE}, 2, []),
    ({"a_test": UNIT.format("<failure/>"), "b_test": UNIT.format("<failure/>")}, 4, []),
    ({"e2e": E2E.format("skipped")}, 0, []),
])
def test_only_few_tests_and_nothing_else(tmp_path, reports, failed, again):
    for name, report in reports.items():
        (tmp_path / f"{name}.xml").write_text(report)
    said = subprocess.run([ROOT / "tools" / "failed", str(failed), str(tmp_path)], check=True, capture_output=True,
                          text=True).stdout
    assert said.splitlines() == again
