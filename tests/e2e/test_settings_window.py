"""The settings program, end to end: real keys and a real mouse, and a running Fenwyn that follows."""
import pytest
from harness import geometry, places
from harness.desktop import CONFIG, LIST
from harness.settings_window import APPLY, CANCEL, IDS, OK, opening
from harness.waiting import wait_until

POSITION, HOVER, HOVER_DELAY = 1, 5, 6  # rows of the page Behaviour
AUTO_HIDE_DELAY = 12
WITH_WINDOWS, HIDE_CAPTION = 16, 18
HEADINGS = 0, 3, 17
RUN = "Software\\Microsoft\\Windows\\CurrentVersion\\Run"
REPAIR = 6


@pytest.fixture
def settings(program):
    """Opens the window when it is called; closes it after the test."""
    with opening(program) as open_window:
        yield open_window


def has_value(program, root, key, name):
    try:
        return program.probe.get_value(root, key, name)
    except AssertionError:
        return None


def tab_to(window, row):
    """From the first row of the page Behaviour; headings are passed over."""
    for _ in range(row - sum(heading < row for heading in HEADINGS)):
        window.keyboard.press("Tab")


def expect_strip_at(program, bottom):
    wanted = geometry.strip(program.desktop.work_area(), len(program.functions), bottom=bottom)
    wait_until(lambda: program.strip() and program.strip().rect == wanted, lambda: f"{wanted}: {program.strip()}", 20)


def test_a_changed_place_is_seen_at_once_and_cancel_puts_it_back(program, settings):
    program.offer("Mute", "Zoom")
    program.start()
    window = settings()
    window.turn_to("Behaviour")
    window.keyboard.press("Down")
    expect_strip_at(program, bottom=True)
    assert has_value(program, "HKCU", CONFIG, "Position") == b"\1\0\0\0"
    window.keyboard.press("Escape")
    window.expect_end()
    expect_strip_at(program, bottom=False)
    assert has_value(program, "HKCU", CONFIG, "Position") is None

    def held_strip_is_shown():
        program.hold()
        shown = program.strip_shown()
        program.let_go()
        return shown
    # The former value was written before it was removed; the removal may take effect, and hide the strip, a little later.
    wait_until(held_strip_is_shown, "the strip is shown again", 20)


def test_the_mouse_switches_on_the_hover_strip_and_ok_keeps_it(program, settings):
    program.configure(MouseEnterIdle=700)
    program.offer("Mute", "Zoom")
    program.start()
    window = settings()
    window.turn_to("Behaviour")
    window.click(window.row(HOVER))
    wait_until(lambda: has_value(program, "HKCU", CONFIG, "EnableHover") == b"\1\0\0\0", "it is written")
    assert has_value(program, "HKCU", CONFIG, "MouseEnterIdle") == (700).to_bytes(4, "little"), "taken over"
    wait_until(lambda: program.shown_with(geometry.hover_strip(program.desktop.work_area(), 2, False)),
               lambda: f"the hover strip appears: {program.shown_dialogs()}")
    window.click(OK)
    window.expect_end()
    assert has_value(program, "HKCU", CONFIG, "EnableHover") == b"\1\0\0\0"


def test_a_card_that_is_switched_off_is_gone_after_apply(program, settings):
    program.offer("Mute", "Zoom")
    first = program.start()
    window = settings()
    window.keyboard.press("space")
    window.click(APPLY)
    wait_until(lambda: first.poll() is not None, "Fenwyn ends", 20)
    program.functions = program.functions[1:]
    wait_until(program.is_up, "Fenwyn is up again", 20)
    expect_strip_at(program, bottom=False)
    assert has_value(program, "HKLM", LIST, "FuncList").decode("utf-16-le").rstrip("\0") == "Zoom;"
    window.click(CANCEL)
    window.expect_end()
    program.desktop.take_focus()
    program.hold()
    program.expect_strip()


def test_cards_change_places_by_keys_and_by_mouse(program, settings):
    program.offer("Mute", "Lock", "Zoom")
    window = settings()
    window.keyboard.press("Alt_L+Down")
    listed = window.control(IDS["IDC_CARDS"]).rect

    def row(index):
        return listed.left + 100, listed.top + 32 + 25 * index
    window.click(APPLY)

    def order():
        return has_value(program, "HKLM", LIST, "FuncList").decode("utf-16-le").rstrip("\0")
    wait_until(lambda: order() == "Lock;Mute;Zoom;", lambda: f"the order by keys: {order()}")
    window.keyboard.mouse_down(*row(2))
    window.keyboard.move(row(1)[0] + 8, row(1)[1] + 4)
    window.keyboard.move(*row(0))
    window.keyboard.mouse_up()
    window.click(APPLY)
    wait_until(lambda: order() == "Zoom;Lock;Mute;", lambda: f"the order by mouse: {order()}")


def test_every_press_of_ctrl_and_tab_turns_one_page(program, settings):
    program.offer("Mute", "Zoom")
    program.start("/hide")
    window = settings()
    # As fast as they can be pressed: no page has been drawn before the next press. Four turns end on a page that was not
    # shown on the way.
    for page in ["Log", "Buttons", "Behaviour", "Keys", "Cards"]:
        for _ in range(4):
            window.keyboard.press("Control_L+Tab")
        window.expect_page(page)
    for _ in range(4):
        window.keyboard.press("Control_L+Shift_L+Tab")
    window.expect_page("Keys")


def test_a_bad_value_is_shown_as_it_is_and_repaired_on_request(program, settings):
    program.offer("Mute")
    program.probe.set_text("HKLM", CONFIG, "AutoHideDelayTime", "soon")
    window = settings()
    window.turn_to("Behaviour")
    tab_to(window, AUTO_HIDE_DELAY)
    window.keyboard.press("Tab")  # the button beside what is wrong
    bad = wait_until(lambda: window.control(window.row(AUTO_HIDE_DELAY, REPAIR - 1)), "what is wrong is said")
    assert "\u201csoon\u201d" in bad.title
    window.keyboard.press("space")
    wait_until(lambda: not window.control(window.row(AUTO_HIDE_DELAY, REPAIR)), "nothing is wrong any more")
    assert has_value(program, "HKLM", CONFIG, "AutoHideDelayTime") == "soon\0".encode("utf-16-le")
    window.click(OK)
    window.expect_end()
    assert has_value(program, "HKLM", CONFIG, "AutoHideDelayTime") == (2000).to_bytes(4, "little")


def test_a_second_start_shows_the_first_window(program, settings):
    program.offer("Mute")
    window = settings()
    second = window.start()
    wait_until(lambda: second.poll() is not None, "the second one ends", 20)
    assert second.returncode == 0
    assert len(window.windows()) == 1
    window.click(CANCEL)
    window.expect_end()


def test_captions_that_are_hidden_are_gone_after_apply(program, settings):
    program.offer("Mute")
    first = program.start()
    assert "pszName = Caption" in program.log_texts()
    window = settings()
    window.turn_to("Behaviour")
    tab_to(window, HIDE_CAPTION)
    window.keyboard.press("space")
    window.click(APPLY)
    wait_until(lambda: first.poll() is not None, "Fenwyn ends", 20)
    wait_until(program.is_up, "Fenwyn is up again", 20)
    assert has_value(program, "HKLM", CONFIG, "HideCaption") == b"\1\0\0\0"
    assert "pszName = Caption" not in program.log_texts()


def test_the_start_with_windows_is_switched(program, settings):
    program.offer("Mute")
    command = f'"{places.windows_path(program.stage)}\\Fenwyn.exe"'

    def run_value(root):
        data = has_value(program, root, RUN, "Fenwyn")
        return data and data.decode("utf-16-le").rstrip("\0")

    def switch():
        window = settings()
        window.turn_to("Behaviour")
        tab_to(window, WITH_WINDOWS)
        window.keyboard.press("space")
        return window
    try:
        assert run_value("HKCU") is None
        window = switch()
        window.keyboard.press("Escape")
        window.expect_end()
        assert run_value("HKCU") is None
        for written in command, None:
            window = switch()
            window.click(OK)
            window.expect_end()
            assert run_value("HKCU") == written
        program.probe.set_text("HKLM", RUN, "Fenwyn", command)  # of everybody
        window = switch()
        window.click(OK)
        window.expect_end()
        assert run_value("HKLM") is None
    finally:
        for root in "HKCU", "HKLM":
            if run_value(root) is not None:
                program.probe.delete_value(root, RUN, "Fenwyn")


def test_why_a_card_is_missing_is_told_with_a_remedy(program, settings):
    no_export = places.windows_path(places.PLUGINS / "InstrNoInitializeHotkeyDll.dll")
    program.offer("Mute", "Zoom")
    program.probe.set_text("HKLM", f"{LIST}\\Mute", "FuncDll", "C:\\nowhere.dll")
    program.probe.set_text("HKLM", f"{LIST}\\Zoom", "FuncDll", no_export)
    window = settings()

    def why():
        return window.control(IDS["IDC_CARD_WHY"]).title

    def remedy():
        return window.control(IDS["IDC_CARD_REMEDY"]).title
    wait_until(lambda: "not where it should be" in why(), why)
    assert remedy() == "Choose the plug-in..."
    window.keyboard.press("Down")
    wait_until(lambda: "The export InitializeHotkeyDll is missing." in why(), why, 30)
    window.keyboard.press("Down")
    wait_until(lambda: "switched off" in why(), why)
    assert remedy() == "Switch it on"
    window.click(IDS["IDC_CARD_REMEDY"])
    window.click(OK)
    window.expect_end()
    assert has_value(program, "HKLM", LIST, "FuncList").decode("utf-16-le").rstrip("\0") == "Mute;Zoom;Lock;"
