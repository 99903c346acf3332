"""Tests of the harness itself: a test that cannot fail proves nothing."""
import pytest
from harness import log, places
from harness.probe import Rect
from harness.screen import BACKGROUND
from harness.waiting import wait_until


def test_windows_of_another_program_are_seen(desktop):
    window = desktop.probe.make_window(title="Seen", rect=Rect(100, 200, 400, 500))
    try:
        found = [w for w in desktop.probe.windows() if w.hwnd == window]
        assert len(found) == 1
        assert found[0].title == "Seen" and found[0].visible
        assert found[0].size == (300, 300)
    finally:
        desktop.probe.destroy(window)
    assert not [w for w in desktop.probe.windows() if w.hwnd == window]


def test_real_keys_reach_a_window_with_the_focus(desktop):
    desktop.reset()
    desktop.take_focus()
    desktop.probe.received(desktop.window)
    desktop.keyboard.press("a")
    seen = []

    def arrived():
        seen.extend(message for message, w_param, _ in desktop.probe.received(desktop.window) if w_param == 0x41)
        return 0x100 in seen and 0x101 in seen
    wait_until(arrived, "key down and up of A")
    desktop.reset()


def test_the_background_is_plain(desktop):
    desktop.reset()
    assert desktop.screen.picture(Rect(0, 0, 200, 50)).is_plain(Rect(0, 0, 200, 50), BACKGROUND)


def test_registry_values_come_back(desktop):
    probe, key = desktop.probe, "SOFTWARE\\KESTOVA\\Test"
    probe.set_dword("HKCU", key, "Number", 0x80000001)
    probe.set_text("HKCU", key, "Text", "Größe \\ ;")
    probe.set_binary("HKCU", key, "Bytes", b"\x00\xff\x10")
    try:
        assert probe.get_value("HKCU", key, "Number") == b"\x01\x00\x00\x80"
        assert probe.get_value("HKCU", key, "Text").decode("utf-16-le") == "Größe \\ ;\0"
        assert probe.get_value("HKCU", key, "Bytes") == b"\x00\xff\x10"
    finally:
        probe.delete_key("HKCU", key)
    with pytest.raises(AssertionError):
        probe.get_value("HKCU", key, "Number")


def test_handle_counts_see_a_deliberate_leak(desktop):
    pid = desktop.probe.processes(places.PROBE.name)[0]
    # The first count and the first named object make the probe itself open handles.
    desktop.probe.handles(pid)
    desktop.probe.hold("event", "FenwynTestsFirst")
    desktop.probe.release()
    before = desktop.probe.handles(pid)
    assert before["kernel"] > 0 and before["gdi"] > 0
    for number in range(10):
        desktop.probe.hold("event", f"FenwynTestsDeliberateLeak{number}")
    assert desktop.probe.handles(pid)["kernel"] == before["kernel"] + 10
    desktop.probe.release()
    assert desktop.probe.handles(pid)["kernel"] == before["kernel"]


def test_a_growing_log_is_read_to_its_last_whole_line(tmp_path):
    file = tmp_path / "log.txt"
    growing = log.Growing(file)
    texts = []
    for written in (None, b"", b"a.cpp(1):  [INF] (A::b): one\r\na.cpp(2):  [INF] (A::b): t", b"wo\r\n",
                    b"a.cpp(3):  [INF] (A::b): with\na break\r\n"):
        if written is not None:
            file.write_bytes((file.read_bytes() if file.exists() else b"") + written)
        texts.append([line.text for line in growing.lines()])
    assert texts == [[], [], ["one"], ["one", "two"], ["one", "two", "with\na break"]]
    # Another start truncates the file; the old lines are forgotten.
    file.write_bytes(b"a.cpp(1):  [INF] (A::b): anew\r\n" * 9)
    assert [line.text for line in growing.lines()] == ["anew"] * 9
    file.unlink()
    assert not growing.lines()


def test_log_lines_are_taken_apart():
    raw = "2011-04-27 14:03:07.045: BlackCard.cpp(50):  [TRC] (CBlackCard::notifyHotkey): LEAVE x (y): z"
    line = log.Line(raw)
    assert (line.stamp, line.file, line.line, line.level) == ("2011-04-27 14:03:07.045: ", "BlackCard.cpp", 50, "TRC")
    assert (line.function, line.text) == ("CBlackCard::notifyHotkey", "LEAVE x (y): z")
    with pytest.raises(AssertionError):
        log.Line("BlackCard.cpp(50): [TRC] (A::b): one blank is missing")
