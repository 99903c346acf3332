"""The display output of a real machine on two monitors: one goes off, comes back, changes sides; the question whether
the picture stays; and the picture that a held key brings back. What is on is asked of the X server."""
import collections
import os
import re
import signal
import struct
import subprocess
import time

import pytest
from harness import geometry, places
from harness.functions import sample
from harness.waiting import stays, wait_until
from test_monitors import FIRST, SECOND, desktop, work_on  # noqa: F401
from test_real_functions import offer_real

QUESTION, SECONDS = "Keep this picture?", 15
EXTEND_RIGHT = 4  # FENWYN_MODE_...
HELD = 3  # seconds until a held key brings a picture back

# Where the two outputs lie on the X screen, whose corner is never negative; None is off.
Outputs = collections.namedtuple("Outputs", "first second")
RIGHT, LEFT, ALONE = Outputs((0, 0), (1280, 0)), Outputs((1024, 0), (0, 0)), Outputs((0, 0), None)
# The entries of the card, as many as this system's interface can set up.
ENTRIES = ["alone", "right", "left", "configure", "save"]


@pytest.fixture(autouse=True)
def as_before(desktop):
    yield
    subprocess.run(["xrandr", "--output", "DUMMY0", "--mode", "1280x800", "--pos", "0x0", "--primary",
                    "--output", "DUMMY1", "--mode", "1024x768", "--pos", "1280x0"],
                   env=desktop.environment, check=True, timeout=20)


def outputs(desktop):
    text = subprocess.run(["xrandr", "--query"], env=desktop.environment, capture_output=True, text=True, check=True,
                          timeout=20).stdout
    corners = [re.search(rf"^{name} connected (?:primary )?\d+x\d+\+(\d+)\+(\d+)", text, re.M)
               for name in ("DUMMY0", "DUMMY1")]
    return Outputs(*(corner and (int(corner[1]), int(corner[2])) for corner in corners))


def expect_outputs(program, wanted, deadline=30):
    wait_until(lambda: outputs(program.desktop) == wanted, lambda: f"{wanted}: {outputs(program.desktop)}", deadline)


def question(program):
    return next((w for w in program.probe.windows("#32770", visible=True) if w.title == QUESTION), None)


def expect_question(program):
    wait_until(lambda: question(program), lambda: f"the question: {program.probe.windows(visible=True)}", 30)
    return question(program)


def begin(program, **settings):
    if settings:
        program.configure(**settings)
    offer_real(program, "Output_2")
    program.start()
    assert outputs(program.desktop) == RIGHT


def choose(program, now, wanted):
    """Opens the card, steps from the entry in force to the wanted one, and applies it."""
    program.hold()
    for _ in range(1 + (ENTRIES.index(wanted) - ENTRIES.index(now)) % len(ENTRIES)):
        program.press("Output_2")
    program.let_go()


def keep(program):
    """By keys, as a person without a mouse does."""
    window = expect_question(program)
    wait_until(lambda: program.probe.foreground() == window.hwnd, "the question has the focus")

    def answered():
        # While monitors change places, the window manager here may give the focus to another window.
        subprocess.run(["xdotool", "search", "--onlyvisible", "--name", f"^{QUESTION[:-1]}", "windowfocus"],
                       env=program.desktop.environment, check=False, timeout=20)
        program.keyboard.press("k")
        return not question(program)
    wait_until(answered, "the question is answered")
    program.desktop.focus(program.desktop.window)


def relaid(program):
    """How often the cards were laid out anew because the displays had changed."""
    texts = program.log_texts()
    return sum(1 for number, text in enumerate(texts) if text == "ENTER CSysMsgHandlerFrame::OnDisplayChange"
               and "LEAVE CZelMainApp::refreshCards" in texts[number:])


def test_a_monitor_goes_off_comes_back_on_the_left_and_on_the_right(program):
    begin(program)
    for now, wanted, expected in [("right", "alone", ALONE), ("alone", "left", LEFT), ("left", "right", RIGHT)]:
        before = relaid(program)
        choose(program, now, wanted)
        expect_outputs(program, expected)
        keep(program)
        wait_until(lambda: relaid(program) > before, "the cards are laid out anew")
        stays(lambda: outputs(program.desktop) == expected, lambda: f"not kept: {outputs(program.desktop)}", 0.5)


def store_favourite(program, name, *corners):
    """A favourite of both monitors in their sizes, with these upper left corners."""
    key = "SOFTWARE\\KESTOVA\\Fenwyn\\Favourites\\0"
    said = subprocess.run([str(places.WINE), str(program.stage / "FenwynCheck.exe"), "--screens"],
                          env=program.desktop.environment, capture_output=True, check=True, timeout=60).stdout.decode()
    paths = re.findall(r"\\\\\?\\DISPLAY#\S+", said)
    assert len(paths) == len(corners), said
    records = [connector.encode("utf-16-le").ljust(64, b"\0") + struct.pack("<3I", index, right - left, bottom - top)
               for index, (connector, (left, top, right, bottom)) in enumerate([("LCD", FIRST), ("RGB 1", SECOND)])]
    program.probe.set_text("HKCU", key, "Text", name)
    program.probe.set_dword("HKCU", key, "Mode", EXTEND_RIGHT)
    program.probe.set_binary("HKCU", key, "Displays", b"".join(records))
    program.probe.set_binary("HKCU", key, "Corners", b"".join(struct.pack("<2i", *corner) for corner in corners))
    # The probe writes no lists of texts.
    subprocess.run([str(places.WINE), "reg", "add", f"HKCU\\{key}", "/v", "Monitors", "/t", "REG_MULTI_SZ",
                    "/d", "\\0".join(paths), "/f"], env=program.desktop.environment, check=True, timeout=60,
                   capture_output=True)


def test_a_favourite_moves_a_monitor_within_an_arrangement_of_the_same_kind(program):
    store_favourite(program, "Lower", (0, 0), (1280, 200))
    begin(program)
    program.hold()
    for _ in range(3):  # the card opens with "right" selected; after "left" come the favourites
        program.press("Output_2")
    program.let_go()
    expect_outputs(program, Outputs((0, 0), (1280, 200)))
    keep(program)
    stays(lambda: outputs(program.desktop).second == (1280, 200), lambda: f"not kept: {outputs(program.desktop)}", 0.5)


def test_cards_of_a_monitor_that_goes_off_lie_on_the_other(program):
    begin(program, MonitorOfActiveWindow=1)
    work_on(program, SECOND)
    program.hold()
    wait_until(lambda: program.strip().rect == geometry.strip(SECOND, 1), lambda: f"the strip: {program.strip()}")
    program.let_go()
    choose(program, "right", "alone")
    expect_outputs(program, ALONE)
    keep(program)
    program.hold()
    program.expect_strip()
    wait_until(lambda: program.strip().rect == geometry.strip(FIRST, 1), lambda: f"the strip: {program.strip()}")


def test_a_picture_that_nobody_keeps_goes_back_by_itself(program):
    begin(program)
    choose(program, "right", "alone")
    window = expect_question(program)
    asked = time.monotonic()
    expect_outputs(program, ALONE)
    # It is on the screen that is on, and says so in a picture.
    assert FIRST.left <= window.rect.left and window.rect.right <= FIRST.right
    assert FIRST.top <= window.rect.top and window.rect.bottom <= FIRST.bottom
    pictures = program.desktop.screen
    first = pictures.picture(window.rect)
    wait_until(lambda: pictures.picture(window.rect) != first, "the countdown is drawn")
    wait_until(lambda: not question(program), "its time is up", SECONDS + 15)
    assert SECONDS - 2 < time.monotonic() - asked < SECONDS + 10
    expect_outputs(program, RIGHT)


def test_escape_goes_back_while_another_program_has_the_focus(program):
    begin(program)
    choose(program, "right", "alone")
    expect_question(program)
    program.desktop.focus(program.desktop.window)
    program.keyboard.press("Escape")
    wait_until(lambda: not question(program), "the question is answered")
    expect_outputs(program, RIGHT)


def test_a_held_key_brings_a_picture_back_without_a_question(program):
    begin(program)
    choose(program, "right", "left")
    expect_question(program)
    expect_outputs(program, LEFT)
    program.hold()
    before = relaid(program)
    program.keyboard.down(program.key_of("Output_2"))
    wait_until(lambda: not question(program), "nothing is asked any more", HELD + 20)
    expect_outputs(program, ALONE)
    # The change of the screen takes the cards away, so that letting go applies no choice of theirs.
    wait_until(lambda: relaid(program) > before, "the cards are laid out anew")
    program.keyboard.up(program.key_of("Output_2"))
    program.keyboard.release_all()
    assert not [line for line in program.errors() if "FUNCX_S_OK" in line.text], "it tells that it was done"
    stays(lambda: outputs(program.desktop) == ALONE and not question(program), "it stays", 1)


def test_an_end_without_notice_while_the_question_is_open_is_made_good_at_the_next_start(program):
    begin(program)
    choose(program, "right", "alone")
    expect_question(program)
    expect_outputs(program, ALONE)
    process = program.running()[0]
    os.killpg(process.pid, signal.SIGKILL)
    process.wait(10)
    wait_until(lambda: not program.probe.processes("Fenwyn.exe"), "it is gone")
    assert outputs(program.desktop) == ALONE
    program.start()
    expect_outputs(program, RIGHT)


def test_the_older_output_has_the_same_question(program):
    program.offer(*(function._replace(plugin=places.windows_path(program.stage / "plugins" / "WinOutput.dll"))
                    for function in sample("Output")))
    program.start()
    program.hold()
    for _ in range(2):
        program.press("Output")
    program.let_go()
    expect_outputs(program, ALONE)
    keep(program)
    stays(lambda: outputs(program.desktop) == ALONE, "it stays", 0.5)
