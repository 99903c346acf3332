"""Brightness: the slider under its card, moved with the keys and with the mouse."""
import itertools

import pytest
from harness import geometry
from harness.functions import numbered, sample
from harness.probe import Rect
from harness.waiting import stays, wait_until
from test_functions import state_text
from test_keys import expect_card, large_card_of

DOWN, UP = "F6", "F7"
LEVELS = 10
MAGENTA = (0xFF, 0x00, 0xFF)
FACE_END = 0x99  # the grey of the face at its ends
OTHERS = ["Mute", "Lock", "Sleep", "Hibernate", "Touchpad", "Zoom", "KBB", "ODD", "CursorOverlay", "NumericOverlay",
          "PowerPlan", "Output", "Wireless", "Output_2"]
CHOOSER = "CSliderItemDlg::switchItem"


def is_pure_white(rgb):
    return rgb == (0xFF, 0xFF, 0xFF)


def is_grey(rgb):
    return max(rgb) - min(rgb) <= 2


def heard(program):
    """The levels that the plug-in received."""
    return [int(call.arguments) for call in program.calls("Brightness", "FocusItem")]


def slider_rect(program):
    return geometry.slider(program.desktop.work_area(), len(program.functions), program.index_of("Brightness"),
                           program.bottom)


def open_slider(program, *others, position=0, level=5):
    """The card of brightness with its slider, the modifier held. A first press only shows it."""
    if position:
        program.configure(Position=position)
    # The others have codes that no key of these tests has.
    strangers = [function._replace(codes=(0x1000 + i,)) for i, function in enumerate(numbered(others))]
    program.offer(*strangers, *sample("Brightness"))
    program.machine("Brightness", Item=level)
    program.start()
    program.hold()
    press(program, DOWN)
    expect_card(program, "Brightness")
    rect = slider_rect(program)
    wait_until(lambda: program.shown_with(rect), lambda: f"the slider at {rect}: {program.shown_dialogs()}")
    assert not heard(program)


def press(program, key):
    """The function has two keys; Program.press() knows the first."""
    for action in (program.keyboard.down, program.keyboard.up):
        seen = program.count_of("CZelMainDlg::handleHotkey", "LEAVE")
        action(key)
        wait_until(lambda: program.count_of("CZelMainDlg::handleHotkey", "LEAVE") > seen, "the key is handled")


def white_run(picture, points):
    """The longest run of white points: first and last, None while there is none."""
    runs = [list(run) for white, run in itertools.groupby(points, lambda point: is_pure_white(picture.at(*point)))
            if white]
    longest = max(runs, key=len, default=[])
    return (longest[0], longest[-1]) if longest else None


def thumb(picture, rect):
    """Left and right end of the thumb's white face; None while there is none."""
    y = (rect.top + rect.bottom) // 2
    run = white_run(picture, [(x, y) for x in range(rect.left, rect.right)])
    return run and (run[0][0], run[1][0] + 1)


def seen_thumb(program):
    rect = slider_rect(program)
    return thumb(program.desktop.screen.picture(rect), rect)


def expect_pixels(program):
    """The slider fills its window in shades of grey, except for its round corners, which are between its face and the
    screen behind; no pixel of the colour key is visible."""
    rect = slider_rect(program)
    around = Rect(rect.left - 60, rect.top - 40, rect.right + 60, rect.bottom + 40)
    screen = program.desktop.screen
    wait_until(lambda: thumb(screen.picture(rect), rect), "the thumb is drawn")
    picture = screen.picture(around)
    assert picture.share_of(around, lambda rgb: rgb == MAGENTA) == 0
    corner = (rect.bottom - rect.top) // 8 + 1
    rows = Rect(rect.left, rect.top + corner, rect.right, rect.bottom - corner)
    columns = Rect(rect.left + corner, rect.top, rect.right - corner, rect.bottom)
    for part in (rows, columns):
        assert picture.share_of(part, is_grey) == 1.0, "only the slider within its window"
    behind = picture.at(rect.right + 10, rect.top)
    smooth = 0
    for x, y in itertools.product([*range(corner), *range(-corner, 0)], repeat=2):
        place = (rect.left if x >= 0 else rect.right) + x, (rect.top if y >= 0 else rect.bottom) + y
        for value, ground in zip(picture.at(*place), behind):
            assert min(ground, FACE_END) - 6 <= value <= max(ground, FACE_END) + 8, f"no mixture of both at {place}"
            smooth += min(abs(value - ground), abs(value - FACE_END)) > 8
    assert smooth, "corners like stairs"
    # Grey face, nothing of the screen's blue in the middle rows.
    middle = Rect(rect.left + 2, rect.top + 2, rect.right - 2, rect.bottom - 2)
    assert picture.share_of(middle, lambda rgb: min(rgb) > 0x40) > 0.95
    beside = Rect(rect.right + 2, rect.top, rect.right + 20, rect.bottom)
    assert picture.is_plain(beside)


@pytest.mark.parametrize("position, others", [(0, 1), (1, 1), (0, 14), (1, 14)])
def test_keys_step_the_slider_and_the_text_follows(program, position, others):
    open_slider(program, *OTHERS[:others], position=position, level=8)
    expect_pixels(program)
    rect = slider_rect(program)
    places, texts = [seen_thumb(program)], [state_text(program, "Brightness")]
    # Both ends: the highest level is the last, and the lowest that keys reach is 1.
    for key, level in [(UP, 9), (UP, 10), (UP, None), (DOWN, 9)]:
        before = heard(program)
        press(program, key)
        wait_until(lambda: heard(program) == before + ([level] if level else []), lambda: f"{level}: {heard(program)}")
        if level:
            wait_until(lambda: seen_thumb(program) not in (None, places[-1]), "the thumb moves")
            wait_until(lambda: state_text(program, "Brightness") != texts[-1], "the text follows")
        places.append(seen_thumb(program))
        texts.append(state_text(program, "Brightness"))
    assert places[0] < places[1] < places[2] == places[3] > places[4] == places[1]
    assert texts[1] == texts[4] and texts[2] == texts[3] and texts[0] not in texts[1:3] and texts[1] != texts[2]
    # At the highest level the thumb is at the end of the track, and still inside.
    assert rect.left < places[2][0] and rect.right - 15 <= places[2][1] <= rect.right
    expect_pixels(program)
    program.let_go()
    # Releasing the keys sends a choice without a level.
    wait_until(lambda: heard(program) == [9, 10, 9, -1], lambda: f"levels: {heard(program)}")
    assert program.machine_item("Brightness") == 9
    expect_card(program, "Brightness", shown=False)
    wait_until(lambda: program.desktop.screen.picture(rect).is_plain(rect), "nothing of the slider is left")


def test_the_lowest_level_that_keys_reach_is_one(program):
    open_slider(program, level=2)
    for _ in range(3):
        press(program, DOWN)
    press(program, UP)
    assert heard(program) == [1, 2]
    told = [text for text in program.log_texts() if "brightness level to" in text]
    assert told == ["Decrease brightness level to 1.", "Increase brightness level to 2."]


@pytest.mark.parametrize("position, others", [(0, 1), (1, 14)])
def test_the_mouse_drags_the_slider_through_all_levels(program, position, others):
    open_slider(program, *OTHERS[:others], position=position, level=5)
    expect_pixels(program)
    rect = slider_rect(program)
    start = state_text(program, "Brightness")
    keyboard, y = program.keyboard, (rect.top + rect.bottom) // 2
    fifth = wait_until(lambda: seen_thumb(program), "the thumb")
    press(program, UP)
    sixth = wait_until(lambda: seen_thumb(program) != fifth and seen_thumb(program), "the thumb one level on")
    x, pitch = (sixth[0] + sixth[1]) // 2, sixth[0] - fifth[0]
    way = [*range(7, LEVELS + 1), *range(LEVELS - 1, 0, -1)]
    keyboard.mouse_down(x, y)
    try:
        for level in way:
            keyboard.move(x + (level - 6) * pitch, y)
            wait_until(lambda: heard(program)[-1] == level, lambda: f"the slider is at {level}: {heard(program)}")
    finally:
        keyboard.mouse_up()
    wait_until(lambda: program.machine_item("Brightness") == 1, "the machine has the last level")
    # Once each, in order and without a gap.
    assert heard(program) == [6, *way], heard(program)
    wait_until(lambda: state_text(program, "Brightness") != start, "the text follows")
    expect_card(program, "Brightness")
    # The keys continue from there.
    press(program, UP)
    wait_until(lambda: heard(program)[-1] == 2, lambda: f"from 1 to 2: {heard(program)}")
    program.let_go()
    expect_card(program, "Brightness", shown=False)


def test_the_button_held_beside_the_thumb_brings_it_there(program):
    open_slider(program, "Mute", level=5)
    rect = slider_rect(program)
    before = wait_until(lambda: seen_thumb(program), "the thumb")
    program.keyboard.mouse_down(rect.right - 30, (rect.top + rect.bottom) // 2)
    try:
        wait_until(lambda: heard(program)[:3] == [6, 7, 8], lambda: f"level by level: {heard(program)}")
    finally:
        program.keyboard.mouse_up()
    wait_until(lambda: (seen_thumb(program) or before) > before, "the thumb moves")


def test_a_level_that_the_plugin_refuses_moves_nothing(program):
    open_slider(program, "Mute", level=5)
    before = wait_until(lambda: seen_thumb(program), "the thumb")
    text = state_text(program, "Brightness")
    program.machine("Brightness", FocusItem__Result=1)
    press(program, UP)
    wait_until(lambda: [(call.arguments, call.result) for call in program.calls("Brightness", "FocusItem")] ==
               [("6", 1)], lambda: f"{program.calls('Brightness')}")
    wait_until(lambda: [line for line in program.errors() if line.function == CHOOSER], "the slider hears of it")
    assert "ERR CBlackCard::executeFunx: Error Code: 0x80004005" in [line.short for line in program.log()]
    assert seen_thumb(program) == before, "the slider tells the level that the machine has"
    assert state_text(program, "Brightness") == text
    # Only one call was to fail.
    program.machine("Brightness", FocusItem__Result=0)
    press(program, UP)
    wait_until(lambda: program.machine_item("Brightness") == 6, "the same level is asked for again, and taken")
    wait_until(lambda: (seen_thumb(program) or before) > before, "the slider follows")
    wait_until(lambda: state_text(program, "Brightness") != text, "and so does the text")


def test_two_screens_show_two_levels_and_no_slider(program):
    program.offer(*sample("Mute", "Brightness"))
    program.machine("Brightness", Dual=1, Item=5, Item2=3)
    program.start()
    program.hold()
    press(program, DOWN)
    expect_card(program, "Brightness")
    card = large_card_of(program, "Brightness")
    text = state_text(program, "Brightness")
    assert [w.rect for w in program.shown_dialogs()] == [card], "no slider"
    # Two lines: two bands of rows with letters, none in between.
    area = geometry.large_card_text(program.desktop.work_area(), 2, 1)
    rows = [y in {row for _, row in text} for y in range(area.top, area.bottom)]
    assert len([written for written, _ in itertools.groupby(rows) if written]) >= 2
    assert "Individual brightness adjust for dual-screen" in program.log_texts()
    for key in (DOWN, UP):
        press(program, key)
    stays(lambda: not heard(program), "a level is set", 0.3)
    program.let_go()
    expect_card(program, "Brightness", shown=False)
    assert not heard(program)
    assert program.machine_item("Brightness") == 5


@pytest.mark.parametrize("thumb_size", [12, 40])
def test_the_size_of_the_thumb_is_a_setting(program, thumb_size):
    program.configure(SliderThumbSize=thumb_size)
    program.offer(*sample("Mute", "Brightness"))
    program.start()
    program.hold()
    press(program, DOWN)
    rect = geometry.slider(program.desktop.work_area(), 2, 1, thumb=thumb_size)
    wait_until(lambda: program.shown_with(rect), lambda: f"the slider at {rect}: {program.shown_dialogs()}")
    assert rect.bottom - rect.top == int(1.2 * thumb_size)

    def face():
        picture = program.desktop.screen.picture(rect)
        place = thumb(picture, rect)
        x = place and (place[0] + place[1]) // 2
        run = place and white_run(picture, [(x, y) for y in range(rect.top, rect.bottom)])
        return run and run[1][1] + 1 - run[0][1]
    # The grey edge takes two pixels above and below.
    wait_until(lambda: face() and abs(face() - (thumb_size - 4)) <= 1, lambda: f"the height of the thumb: {face()}")
