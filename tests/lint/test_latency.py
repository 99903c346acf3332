"""What bench/latency makes of its measurements."""
import sys

import pytest
import tree

sys.path.insert(0, str(tree.ROOT / "bench" / "latency"))

import latency  # noqa: E402
from screen import alike  # noqa: E402


@pytest.mark.parametrize("row, wanted, same", [
    (b"\x10\x20\x30\xff", b"\x10\x20\x30\xff", True),
    (b"\x10\x20\x30\xff", b"\x11\x1f\x30\xff", True),
    (b"\x37\x80\x00\xff", b"\x38\x7f\x01\xfe", True),
    (b"\x10\x20\x30\xff", b"\x10\x20\x40\xff", False),
    (b"\x00\xff\x00\xff", b"\xff\x00\x00\xff", False),
])
def test_rows_are_alike_when_no_byte_differs_by_more_than_a_few_steps(row, wanted, same):
    assert alike(row * 100, wanted * 100) == same
    assert alike(wanted, row) == same


def results(ours, theirs):
    return {row: latency.judged(row, {"ours": ours, "theirs": theirs}) for row in ("hide", "first-press")}


def test_a_row_is_too_slow_only_at_one_and_a_half_times_what_it_is_held_at():
    assert latency.too_slow(results([5.0, 5.0, 900.0], [4.0, 4.0, 4.0])) == []
    slow = latency.too_slow(results([12.0], [4.0]))
    assert len(slow) == 1 and slow[0].startswith("strip hides: 3.00 times")
    assert len(latency.too_slow(results([60.0], [4.0]))) == 2


def test_a_row_meets_its_goal_with_its_ratio_and_its_limit():
    def met(row, ours, theirs):
        return latency.judged(row, {"ours": ours, "theirs": theirs})["met"]
    assert met("show", [6.0] * 100, [4.0])
    assert not met("show", [6.1] * 100, [4.0])
    assert not met("show", [6.0] * 97 + [17.0] * 3, [4.0]), "the 99th percentile is longer than a frame"
    assert met("memory", [14.0], [7.0]) and not met("memory", [14.1], [14.0])
