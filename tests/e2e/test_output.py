"""Display output with favourites: entries, the preview under the chosen one, and the display-configuration program."""
import subprocess

import pytest
from harness import geometry, places
from harness.desktop import PRODUCT
from harness.functions import sample
from harness.probe import WM_CLOSE, WM_USER, Rect
from harness.waiting import stays, wait_until
from test_functions import state_text
from test_keys import expect_card

OUTPUT_CLASS, SAVE_CLASS, CONFIG_CLASS = "_DCWNDCLS_OUTPUT_", "_DCWNDCLS_SAVE_", "_DCWNDCLS_CONFIG_"
SETUP_CLASSES = (OUTPUT_CLASS, SAVE_CLASS, CONFIG_CLASS)
FAVOURITES = "SOFTWARE\\KESTOVA\\Fenwyn\\Favourites"
CLOSE_SETUP = WM_USER + 101
EDGE = (0xA9, 0xA9, 0xA9)

# The entries of a new machine: the number of displays of each.
INTERNAL, CLONE, EXTEND, EXTERNAL, NEEDS_SETUP, DESK, CONFIGURE, SAVE = range(8)
ROWS = {INTERNAL: 1, CLONE: 2, EXTEND: 2, EXTERNAL: 1, NEEDS_SETUP: 0, DESK: 2, CONFIGURE: 0, SAVE: 0}
ENTRIES = len(ROWS)


@pytest.fixture
def machine(program):
    """The program with the output card between two others; afterwards, closes the windows of the display-configuration
    program."""
    program.offer(*sample("Mute", "Output_2", "Zoom"))
    yield program
    for window in setup_windows(program):
        program.probe.post(window.hwnd, WM_CLOSE)
    wait_until(lambda: not setup_windows(program) and not program.probe.processes("OutputSetup.exe"),
               "the display-configuration program has ended")


def setup_windows(program, classes=SETUP_CLASSES):
    return [w for w in program.probe.windows() if w.cls in classes]


def expect_setup(program, window_class):
    return wait_until(lambda: next((w for w in setup_windows(program, (window_class,)) if w.visible), None),
                      lambda: f"a window {window_class}: {setup_windows(program)}", 20)


def expect_no_setup(program):
    wait_until(lambda: not setup_windows(program), lambda: f"its window goes: {setup_windows(program)}")


def expect_focus(program, window):
    """Keys reach the window: the screen gives it the focus a moment after the system does."""
    def focused():
        name = subprocess.run(["xdotool", "getwindowfocus", "getwindowname"], env=program.desktop.environment, check=False,
                              capture_output=True, text=True, timeout=10).stdout.strip()
        return program.probe.foreground() == window.hwnd and name == window.title
    wait_until(focused, f"{window.title!r} has the focus")


def items(program, count=ENTRIES):
    return geometry.output_items(program.desktop.work_area(), len(program.functions), 1, count, program.bottom)


def selected(program, count=ENTRIES):
    corners = {(w.rect.left, w.rect.top) for w in program.shown_layered()}
    places = items(program, count)
    large = [i for i, rect in enumerate(places) if (rect.left, rect.top) in corners]
    small = [i for i, rect in enumerate(places) if (rect.left + 11, rect.top + 11) in corners]
    return large[0] if len(large) == 1 and len(large) + len(small) == count else None


def step_to(program, index, count=ENTRIES, current=INTERNAL):
    """Opens the card and presses its key until the entry is selected. The modifier is held."""
    program.press("Output_2")
    expect_card(program, "Output_2")
    for _ in range(index - current):
        program.press("Output_2")
    wait_until(lambda: selected(program, count) == index,
               lambda: f"entry {index} is selected: {program.shown_layered()}")


def preview_rect(program, index, rows=None):
    return geometry.preview(program.desktop.work_area(), items(program)[index], rows or ROWS[index], program.bottom)


def previews(program):
    """Visible windows that are as wide as a preview and as high as one to three rows."""
    sizes = [(geometry.PREVIEW_WIDTH, geometry.PREVIEW_ROW * rows) for rows in (1, 2, 3)]
    return [w.rect for w in program.shown_dialogs() if w.size in sizes]


def expect_preview(program, index):
    wanted = [preview_rect(program, index)] if ROWS[index] else []
    wait_until(lambda: previews(program) == wanted, lambda: f"the preview {wanted}: {previews(program)}")


def is_dark(rgb):
    return max(rgb) < 0x60


def row_of(rect, row):
    return Rect(rect.left, rect.top + 40 * row, rect.right, rect.top + 40 * (row + 1))


def expect_rows_drawn(program, rect, rows, resolution):
    """A grey frame, a separator above each row, and in each row its number, its name, perhaps its resolution, a
    picture."""
    screen = program.desktop.screen

    def drawn():
        picture = screen.picture(rect)
        edges = [picture.at(rect.left, rect.top + 20), picture.at(rect.right - 1, rect.top + 20),
                 picture.at(rect.left + 60, rect.bottom - 1)]
        # At their left end, because the item's caption covers the middle of the first one.
        lines = [picture.at(rect.left + 5, rect.top + 40 * row) for row in range(rows)]
        return all(rgb == EDGE for rgb in edges + lines)
    wait_until(drawn, f"frame and separators of {rect}")
    picture = screen.picture(rect)
    for row in range(rows):
        band = row_of(rect, row)
        ground = picture.at(band.left + 2, band.top + 2)
        assert min(ground) > 0xC0, "a light ground"
        connector = Rect(band.right - 36, band.top + 12, band.right - 4, band.top + 36)
        assert picture.share_of(connector, lambda rgb: rgb != ground) > 0.1, f"picture of row {row}"
        number = Rect(band.left + 4, band.top + 12, band.left + 16, band.bottom - 8)
        name = Rect(band.left + 18, band.top + 12, band.right - 40, band.top + 26)
        below = Rect(band.left + 18, band.bottom - 10, band.right - 40, band.bottom - 4)
        for part, written in ((number, True), (name, True), (below, resolution)):
            assert (picture.share_of(part, is_dark) > 0.01) == written, f"row {row}: {part}"


@pytest.mark.parametrize("position", [0, 1])
def test_the_preview_lists_the_displays_of_the_selected_entry(machine, position):
    machine.configure(Position=position)
    machine.start()
    machine.hold()
    step_to(machine, INTERNAL)
    wait_until(lambda: set(items(machine)) <= {w.rect for w in machine.shown_dialogs()}, "eight entries in a row")
    pictures = {}
    for index in range(ENTRIES):
        wait_until(lambda: selected(machine) == index, lambda: f"entry {index}: {machine.shown_layered()}")
        expect_preview(machine, index)
        if ROWS[index]:
            rect = preview_rect(machine, index)
            expect_rows_drawn(machine, rect, ROWS[index], resolution=index != CLONE)
            # The resolution and the lower half of the connector: the caption never extends that far down.
            first = Rect(rect.left + 2, rect.top + 29, rect.right - 2, rect.top + 38)
            pictures[index] = machine.desktop.screen.picture(first).data
        machine.press("Output_2")
    # The rows' contents: the built-in screen comes first, except on the second screen alone.
    assert pictures[INTERNAL] == pictures[EXTEND] == pictures[DESK]
    assert pictures[EXTERNAL] != pictures[INTERNAL]
    expect_preview(machine, INTERNAL)
    rect = preview_rect(machine, INTERNAL)
    machine.let_go()
    wait_until(lambda: not previews(machine), "the preview goes with its card")
    wait_until(lambda: machine.desktop.screen.picture(rect).is_plain(rect), "nothing of it is left")
    assert machine.chosen("Output_2") == ["0"]


def test_the_preview_never_has_the_focus(machine):
    machine.start()
    machine.hold()
    step_to(machine, CLONE)
    expect_preview(machine, CLONE)
    window = next(w for w in machine.shown_dialogs() if w.rect == preview_rect(machine, CLONE))
    assert window.exstyle & 0x8, "topmost"
    assert machine.probe.foreground() != window.hwnd
    machine.probe.focus(window.hwnd)
    wait_until(lambda: machine.probe.ask("foreground")["focus"] != window.hwnd, "the focus is given back")
    machine.let_go()


def test_an_entry_that_needs_setup_opens_the_program_and_stays(machine):
    machine.start()
    machine.hold()
    step_to(machine, NEEDS_SETUP)
    machine.let_go()
    # Arrangement 6 of the arrangements {6}.
    parameter = "\\OutputConf %d" % (6 << 16 | 1 << 6)
    wait_until(lambda: f"Parameter for calling OutputSetup.exe: {parameter}." in machine.log_texts(), "it is started")
    expect_setup(machine, OUTPUT_CLASS)
    assert not machine.chosen("Output_2")
    expect_card(machine, "Output_2")
    # The window belongs to the entry: both disappear when another function is selected.
    machine.hold()
    machine.press("Mute")
    expect_card(machine, "Output_2", shown=False)
    expect_no_setup(machine)
    machine.let_go()
    wait_until(lambda: machine.chosen("Mute"), "the other function works")


def test_display_settings_open_and_the_card_goes(machine):
    machine.start()
    machine.hold()
    step_to(machine, CONFIGURE)
    machine.let_go()
    expect_setup(machine, CONFIG_CLASS)
    expect_card(machine, "Output_2", shown=False)
    assert not machine.chosen("Output_2")
    # Unlike the other two, this window belongs to the user and stays.
    stays(lambda: setup_windows(machine, (CONFIG_CLASS,)), "the settings go with the card", 0.5)


def test_saving_opens_the_program_whose_window_goes_with_the_card(machine):
    machine.start()
    machine.hold()
    step_to(machine, SAVE)
    machine.let_go()
    expect_setup(machine, SAVE_CLASS)
    expect_card(machine, "Output_2")
    machine.hold()
    machine.press("Zoom")
    expect_no_setup(machine)
    machine.let_go()


def test_a_favourite_that_is_saved_is_offered_from_then_on(machine):
    machine.start()
    machine.hold()
    step_to(machine, SAVE)
    machine.let_go()
    window = expect_setup(machine, SAVE_CLASS)
    expect_focus(machine, window)
    machine.keyboard.press("Control_L+a")
    machine.keyboard.type("Kitchen")
    machine.keyboard.press("Return")
    expect_no_setup(machine)
    wait_until(lambda: machine.probe.get_value("HKCU", f"{FAVOURITES}\\1", "Text").decode("utf-16-le") == "Kitchen\0",
               "the favourite is kept under its name")
    # The card is still open: close it.
    machine.hold()
    machine.press("Mute")
    expect_card(machine, "Output_2", shown=False)
    machine.let_go()
    machine.hold()
    step_to(machine, INTERNAL, ENTRIES + 1)
    before = state_text(machine, "Output_2")
    for _ in range(DESK + 1):
        machine.press("Output_2")
    wait_until(lambda: selected(machine, ENTRIES + 1) == DESK + 1, "the new favourite, after the one there was")
    machine.let_go()
    wait_until(lambda: machine.chosen("Output_2") == [str(DESK + 1)], "it is chosen")
    assert machine.machine_item("Output_2") == DESK + 1
    machine.hold()
    machine.press("Output_2")
    expect_card(machine, "Output_2")
    assert state_text(machine, "Output_2") != before, "its name stands on the card"
    machine.let_go()


@pytest.fixture
def with_source(machine):
    """The display-configuration program asks the simulated notebook for the displays, as in the sample settings."""
    machine.probe.set_text("HKLM", PRODUCT, "DisplaySource",
                           places.windows_path(machine.stage / "plugins" / "SimDisplays.dll"))
    return machine


def displays_of(data):
    """(connector, width, height) of the display records of a favourite."""
    return [(data[at:at + 64].decode("utf-16-le").rstrip("\0"), *(int.from_bytes(data[at + i:at + i + 4], "little")
             for i in (68, 72))) for at in range(0, len(data), 76)]


def test_a_favourite_has_the_displays_that_the_card_has_set_up(with_source):
    machine = with_source
    machine.machine("Output_2", Item=EXTEND)
    machine.start()
    machine.hold()
    machine.press("Output_2")
    expect_card(machine, "Output_2")
    for _ in range(SAVE - EXTEND):
        machine.press("Output_2")
    wait_until(lambda: selected(machine) == SAVE, "saving is selected")
    machine.let_go()
    window = expect_setup(machine, SAVE_CLASS)
    expect_focus(machine, window)
    machine.keyboard.press("Return")
    expect_no_setup(machine)
    displays = machine.probe.get_value("HKCU", f"{FAVOURITES}\\1", "Displays")
    assert displays_of(displays) == [("LCD", 1920, 1080), ("HDMI 1", 2560, 1440)]
    assert int.from_bytes(machine.probe.get_value("HKCU", f"{FAVOURITES}\\1", "Mode"), "little") == 4


def test_what_the_program_sets_up_is_current_on_the_card(with_source):
    machine = with_source
    machine.start()
    machine.hold()
    step_to(machine, NEEDS_SETUP)
    machine.let_go()
    window = expect_setup(machine, OUTPUT_CLASS)
    expect_focus(machine, window)
    machine.keyboard.press("Return")
    expect_no_setup(machine)
    assert machine.machine_item("Output_2") == NEEDS_SETUP
    # The card is still there: away with it, and up again.
    machine.hold()
    machine.press("Mute")
    expect_card(machine, "Output_2", shown=False)
    machine.let_go()
    machine.hold()
    machine.press("Output_2")
    expect_card(machine, "Output_2")
    wait_until(lambda: selected(machine) == NEEDS_SETUP, lambda: f"it is current: {machine.shown_layered()}")
    machine.press("Mute")
    expect_card(machine, "Output_2", shown=False)
    machine.let_go()


def test_favourites_that_do_not_fit_the_screen_are_left_out(machine):
    """Eighteen entries would be wider than the screen: the last favourites are omitted, the current one stays."""
    record = "HDMI 1".encode("utf-16-le").ljust(64, b"\0") + b"".join(n.to_bytes(4, "little") for n in (0, 1920, 1080))
    favourites = 16
    for number in range(favourites):
        key = f"{FAVOURITES}\\{number}"
        machine.probe.set_text("HKCU", key, "Text", f"Favourite {number}")
        machine.probe.set_dword("HKCU", key, "Mode", 0)
        machine.probe.set_binary("HKCU", key, "Displays", record)
    current = 5 + favourites - 1
    machine.machine("Output_2", Item=current)
    machine.start()
    machine.hold()
    machine.press("Output_2")
    expect_card(machine, "Output_2")
    area = machine.desktop.work_area()
    most = (area.right - area.left) // 82
    assert f"Maximal items count is {most}:" in machine.log_texts()
    # Five built-in entries, seven of the first favourites, the current one, and the program's two.
    wait_until(lambda: selected(machine, most) == most - 3, lambda: f"the current one: {machine.shown_layered()}")
    assert set(items(machine, most)) <= {w.rect for w in machine.shown_dialogs()}
    machine.let_go()
    wait_until(lambda: machine.chosen("Output_2") == [str(current)], "it is the plug-in's own number that is chosen")
