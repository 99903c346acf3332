"""The log of the running program: whole sequences line by line, and every setting of DbgLog.ini to the byte."""
import re

import pytest
from harness import expected, geometry, log, places
from harness.desktop import MUTEX
from harness.waiting import wait_until

# Focus changes depend on the window manager, so those scopes are removed from the sequences.
FOCUS = re.compile(r"::On(Set|Kill)Focus$")
LIBRARY_THREAD = ("CHotkeyEventHandler::_hotkeyNotify", "CZelMainApp::handleHotkey", "CZelMainApp::cancelScreenSaver")


def sequence(lines):
    """(of the windows' thread, of the hotkey library's thread) as short texts, without focus scopes."""
    windows, library, inside = [], [], 0
    for line in lines:
        if FOCUS.search(line.function) and line.text.startswith("ENTER "):
            inside += 1
        if line.function in LIBRARY_THREAD:
            library.append(line.short)
        elif inside == 0:
            windows.append(line.short)
        if FOCUS.search(line.function) and line.text.startswith("LEAVE "):
            inside -= 1
    return windows, library


def same(found, wanted):
    """Compares long lists in such a way that the first difference is readable."""
    for number, (one, other) in enumerate(zip(found, wanted)):
        assert one == other, f"line {number}: found {one!r}, wanted {other!r}, after {found[max(0, number - 5):number]}"
    assert len(found) == len(wanted), (found[len(wanted):], wanted[len(found):])


def test_the_start_up_sequence_line_by_line(program):
    program.offer("Mute", "Lock", "Zoom")
    program.start()
    area = program.desktop.work_area()
    end = "TRC CZelMainApp::InitInstance: LEAVE CZelMainApp::InitInstance"
    windows, library = sequence(program.log())
    wanted = expected.start_up(
        program.functions, lambda f: places.windows_path(program.stage / "plugins" / f"Sim{f.name}.dll"), area,
        (area.right - area.left) * 0.85 / 3, geometry.ratio(area, 3))
    same(windows[:windows.index(end) + 1], wanted)
    assert not library


def test_cards_that_were_never_enlarged_leave_no_error(program):
    """The default log of a resident program contains only lines that docs/log.md lists as harmless."""
    program.offer("Mute", "Lock", "Zoom")
    program.start()
    for _ in range(3):
        program.hold()
        program.expect_strip()
        program.let_go()
        program.expect_strip(shown=False)
    assert {line.function for line in program.errors()} <= {"RegConfigAccess::Open", "CZelMainApp::_cancelFnSticky"}


def test_one_whole_key_press_line_by_line(program):
    program.offer("Mute", "Lock", "Zoom")
    program.machine("Mute", Item=1)
    program.start()
    program.hold()
    program.expect_strip()
    wait_until(lambda: program.count_of("CZelMainDlg::OnPaint", "LEAVE") > 0, "the strip is painted")
    before = len(program.log())
    program.press("Mute")
    program.let_go()
    wait_until(lambda: program.chosen("Mute") == ["0"], "the choice is applied")
    windows, library = sequence(program.log()[before:])

    area = program.desktop.work_area()
    ratio = geometry.ratio(area, 3)
    large = geometry.large_card(area, 3, 0)
    centre = large.left + (large.right - large.left) // 2
    side, gap = int(ratio * 72), int(ratio * 10)
    overhang = geometry.overhang(side)
    same(windows,
         expected.first_press_of_toggle(2, 1, (centre - area.left - overhang) / (side + gap),
                                        (area.right - centre - overhang) / (side + gap))
         + expected.key_released(2) + expected.choice_applied(2, 0))
    same(library, expected.reported(0x3B, False) + expected.reported(0x3B, True) + expected.reported(0, True))


# The settings. A start that finds another instance without a window is a short run of known lines and opens no window.
SHORT_RUN = [
    ("ZelMain.cpp", "TRC CZelMainApp::InitInstance: ENTER CZelMainApp::InitInstance"),
    ("HotkeyEventHandler.cpp", "TRC CHotkeyEventHandler::cancelHotkeyIOEvent: "
                               "ENTER CHotkeyEventHandler::cancelHotkeyIOEvent"),
    ("HotkeyEventHandler.cpp", "TRC CHotkeyEventHandler::cancelHotkeyIOEvent: "
                               "LEAVE CHotkeyEventHandler::cancelHotkeyIOEvent"),
    ("ZelMain.cpp", "TRC CZelMainApp::checkMultiInstance: ENTER CZelMainApp::checkMultiInstance"),
    ("ZelMain.cpp", "INF CZelMainApp::checkMultiInstance: Mutex already exists."),
    ("ZelMain.cpp", "INF CZelMainApp::checkMultiInstance: Mutex really exists."),
    ("ZelMain.cpp", "TRC CZelMainApp::checkMultiInstance: LEAVE CZelMainApp::checkMultiInstance"),
    ("ZelMain.cpp", "ERR CZelMainApp::InitInstance: Error Code: 0x0"),
    ("ZelMain.cpp", "TRC CZelMainApp::InitInstance: LEAVE CZelMainApp::InitInstance"),
    ("ZelMain.cpp", "TRC CZelMainApp::ExitInstance: ENTER CZelMainApp::ExitInstance"),
    ("HotkeyEventHandler.cpp", "TRC CHotkeyEventHandler::stopHotkeyEventLoop: "
                               "ENTER CHotkeyEventHandler::stopHotkeyEventLoop"),
    ("HotkeyEventHandler.cpp", "TRC CHotkeyEventHandler::stopHotkeyEventLoop: "
                               "LEAVE CHotkeyEventHandler::stopHotkeyEventLoop"),
    ("ZelMain.cpp", "TRC CZelMainApp::ExitInstance: LEAVE CZelMainApp::ExitInstance"),
]
LEVELS = ["ERR", "WRN", "INF", "TRC"]
FOLDERS = {"ZelMain.cpp": ".\\ZelMain.cpp", "HotkeyEventHandler.cpp": ".\\Logic\\HotkeyEventHandler.cpp"}


def bytes_wanted(level=3, full_path=False, stamp="", line_end="\r\n"):
    """A regular expression for the whole output that ignores only line numbers and the time."""
    lines = []
    for file, short in SHORT_RUN:
        name, function, text = re.match(r"(\w+) ([^ ]+): (.*)", short).groups()
        if LEVELS.index(name) <= level:
            source = re.escape(FOLDERS[file] if full_path else file)
            lines.append(f"{stamp}{source}\\(\\d+\\):  " + re.escape(f"[{name}] ({function}): {text}{line_end}"))
    return re.compile("".join(lines).encode() + rb"\Z")


@pytest.fixture
def short_run(program):
    """Writes DbgLog.ini (None: no such file), runs the program once, returns the log file's bytes."""
    program.configure()
    program.probe.hold("mutex", MUTEX)

    def run(settings, file=program.log_file):
        if settings is None:
            (program.stage / "DbgLog.ini").unlink(missing_ok=True)
        else:
            if "LogFile" not in settings:
                settings = dict(settings, LogFile=places.windows_path(file))
            program.write_log_settings(**settings)
        program.wait_end(program.launch())
        return file.read_bytes() if file.exists() else None
    run.program = program
    return run


def matches(data, pattern):
    assert data is not None, "no log file"
    assert pattern.match(data), data.decode("utf-8", "replace")


@pytest.mark.parametrize("level, counts_as", [(0, 0), (1, 1), (2, 2), (3, 3), (4, 0), (7, 0), (-1, 0), ("x", 0)])
def test_level(short_run, level, counts_as):
    matches(short_run({"Level": level}), bytes_wanted(counts_as))


def test_without_settings_only_errors_are_written_where_the_user_has_his_data(short_run):
    users = places.PREFIX / "drive_c" / "users"
    own = [user for user in users.iterdir() if user.name != "Public"][0]
    file = own / "AppData" / "Local" / "KESTOVA" / "Fenwyn" / "log.txt"
    if file.exists():
        file.unlink()
    try:
        matches(short_run(None, file), bytes_wanted(0))
    finally:
        file.unlink(missing_ok=True)
    if file.parent.exists() and not list(file.parent.iterdir()):
        file.parent.rmdir()


def test_an_empty_settings_file_gives_the_level_of_errors(short_run):
    matches(short_run({}), bytes_wanted(0))


def test_destination_0_writes_nothing(short_run):
    assert short_run({"Level": 3, "Destination": 0}) is None
    assert not (short_run.program.folder / "output.txt").read_bytes()


@pytest.mark.parametrize("destination", [2, 9, 5, -1])
def test_destination_2_begins_the_file_anew(short_run, destination):
    for _ in range(2):
        matches(short_run({"Level": 3, "Destination": destination}), bytes_wanted())


def test_destination_3_appends(short_run):
    once = bytes_wanted().pattern[:-len(rb"\Z")]
    matches(short_run({"Level": 3, "Destination": 3}), re.compile(once + rb"\Z"))
    matches(short_run({"Level": 3, "Destination": 3}), re.compile(once * 2 + rb"\Z"))


def test_destination_4_is_the_standard_error_stream(short_run):
    assert short_run({"Level": 3, "Destination": 4}) is None
    output = (short_run.program.folder / "output.txt").read_bytes()
    matches(output, bytes_wanted())


def test_destination_1_reaches_a_debugger_and_no_file(short_run):
    program = short_run.program
    program.desktop.environment["WINEDEBUG"] = "-all,warn+seh"
    try:
        assert short_run({"Level": 2, "Destination": 1}) is None
    finally:
        del program.desktop.environment["WINEDEBUG"]
    output = (program.folder / "output.txt").read_text(errors="replace")
    for file, short in SHORT_RUN:
        level, function, text = re.match(r"(\w+) ([^ ]+): (.*)", short).groups()
        assert (f"[{level}] ({function}): {text}\\n" in output) == (level != "TRC"), output


@pytest.mark.parametrize("value, full_path", [(0, False), (1, True), (2, False), (-1, False)])
def test_source_file_format(short_run, value, full_path):
    matches(short_run({"Level": 3, "SourceFileFormat": value}), bytes_wanted(full_path=full_path))


STAMPS = {1: r"\d\d:\d\d:\d\d\.\d{3}: ", 2: r"\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3}: ", 3: r"\d+\.\d{3}: "}


@pytest.mark.parametrize("value", [0, 1, 2, 3, 4, 5, -1])
def test_time_date_format(short_run, value):
    stamp = STAMPS.get(value, "")
    data = short_run({"Level": 3, "TimeDateFormat": value})
    matches(data, bytes_wanted(stamp=stamp))
    if value == 3:
        assert data.startswith(b"0.000: ")
        stamps = [float(line.stamp.rstrip(": ")) for line in log.parse(data)]
        assert stamps == sorted(stamps)
        # The program waits 200 ms between its two checks for the other instance.
        assert 0.19 < stamps[-1] < 10


@pytest.mark.parametrize("value", [0, 1])
def test_flush_changes_when_and_never_what(short_run, value):
    matches(short_run({"Level": 3, "Flush": value}), bytes_wanted())


def test_flush_1_writes_each_line_at_once(program):
    program.offer("Mute")
    program.start()
    # The default of these tests is Flush=1: every line of the running program is completely on disk.
    assert program.log_file.read_bytes().endswith(b"\r\n")
    program.hold()
    assert program.log()[-1].raw


def test_environment_references_and_missing_folders_of_the_log_file(short_run):
    program = short_run.program
    program.desktop.environment["FENWYN_TEST_FOLDER"] = places.windows_path(program.folder)
    try:
        file = program.folder / "a" / "b c" / "log file.txt"
        matches(short_run({"Level": 3, "LogFile": "%FENWYN_TEST_FOLDER%\\a\\b c\\log file.txt"}, file), bytes_wanted())
    finally:
        del program.desktop.environment["FENWYN_TEST_FOLDER"]


def test_a_log_file_that_cannot_be_opened_is_left_out(short_run):
    program = short_run.program
    (program.folder / "folder").mkdir()
    short_run({"Level": 3, "LogFile": places.windows_path(program.folder / "folder")})
    assert not list((program.folder / "folder").iterdir())
