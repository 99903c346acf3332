"""Screen readers: another process reads the windows of the cards, presses them, and hears what is announced while real
keys are pressed."""
from harness import geometry
from harness.functions import sample
from harness.mouse import middle
from harness.waiting import wait_until
from test_slider import DOWN, UP, heard, open_slider, press, slider_rect

TOOL_BAR, PUSH_BUTTON, LIST, LIST_ITEM, SLIDER, ALERT = 22, 43, 33, 34, 51, 8
SELECTED, FOCUSED, INVISIBLE, FOCUSABLE = 0x2, 0x4, 0x8000, 0x100000
ALERTED, SHOWN, HIDDEN, FOCUS, SELECTION, VALUE_CHANGED = 0x2, 0x8002, 0x8003, 0x8005, 0x8006, 0x800E
CLIENT = -4
S_OK, NOT_SUPPORTED, BUSY = 0, -2147352573, -2147024726
NAMES = ("Mute", "Zoom")
SIZES = ["Normal", "Larger", "Largest"]


def card_of(program, name):
    """The window of its enlarged card."""
    place = geometry.large_card(program.desktop.work_area(), len(program.functions), program.index_of(name),
                                program.bottom)
    wait_until(lambda: program.shown_with(place), lambda: f"the card at {place}: {program.shown_dialogs()}")
    return program.shown_with(place)[0]


def spoken(program, *events):
    """What a screen reader says of these events of accessible objects: (event, name), in order."""
    return [(entry.event, entry.name) for entry in program.probe.heard()
            if entry.event in events and entry.object == CLIENT and entry.name]


def opened(program, *names):
    program.offer(*names)
    program.machine("Zoom", Item=0)
    program.start()
    program.probe.listen()
    program.hold()


def test_the_strip_is_a_tool_bar_with_a_button_for_each_card(program):
    program.offer(*NAMES)
    program.start()
    hidden = program.probe.read(program.strip().hwnd)
    assert (hidden.role, hidden.name, hidden.state) == (TOOL_BAR, "Fenwyn", INVISIBLE)
    program.hold()
    strip = program.probe.read(program.strip().hwnd)
    assert strip.state == 0 and strip.rect == program.strip().rect
    assert [(card.role, card.name, card.action, card.state) for card in strip.children] == [
        (PUSH_BUTTON, name, "Press", 0) for name in NAMES]
    area = program.desktop.work_area()
    for index, card in enumerate(strip.children):
        assert card.rect == geometry.card_picture(area, len(NAMES), index, False)
        assert card.description
        # And it is found where it is seen.
        assert program.probe.read_at(*middle(card.rect)).name == card.name


def test_each_step_is_spoken_and_the_focus_goes_back_in_the_end(program):
    opened(program, *NAMES)
    for _ in range(3):
        program.press("Zoom")
    card = program.probe.read(card_of(program, "Zoom").hwnd)
    assert (card.role, card.name, card.value) == (LIST, "Zoom", "Normal")
    assert [(item.role, item.name, item.action) for item in card.children] == [
        (LIST_ITEM, size, "Press") for size in SIZES]
    assert [item.name for item in card.children if item.state & SELECTED] == [
        item.name for item in card.children if item.state & FOCUSED] == ["Largest"]
    assert [item.rect for item in card.children] == geometry.circle_items(program.desktop.work_area(), 2, 1, 3)
    assert not any(item.state & INVISIBLE for item in card.children)
    program.let_go()
    wait_until(lambda: (FOCUS, "Other program") in spoken(program, FOCUS), lambda: f"{program.probe.heard()}")
    assert spoken(program, FOCUS, SELECTION) == [
        entry for size in SIZES for entry in ((SELECTION, size), (FOCUS, size))] + [(FOCUS, "Other program")]
    # The system's own focus has never moved.
    assert program.desktop.probe.foreground() == program.desktop.window


def test_what_appears_and_disappears_is_announced(program):
    opened(program, *NAMES)
    strip = program.strip().hwnd
    program.press("Zoom")
    card = card_of(program, "Zoom").hwnd
    program.let_go()

    def announced(event):
        return [entry.hwnd for entry in program.probe.heard() if entry.event == event and entry.object == CLIENT]
    wait_until(lambda: card in announced(HIDDEN), lambda: f"the card's end: {program.probe.heard()}")
    assert announced(SHOWN)[:2] == [strip, card]
    assert announced(HIDDEN)[:2] == [strip, card]
    # The items follow: as many appear as disappear.
    assert sorted(announced(SHOWN)) == sorted(announced(HIDDEN))


def test_the_slider_speaks_its_levels_and_can_be_set(program):
    open_slider(program, level=5)
    program.probe.listen()
    place = slider_rect(program)
    window = program.shown_with(place)[0].hwnd
    slider = program.probe.read(window)
    assert (slider.role, slider.value, slider.rect) == (SLIDER, "5", place)
    assert slider.state == FOCUSED | FOCUSABLE and slider.name and not slider.action
    press(program, UP)
    press(program, UP)
    press(program, DOWN)

    def levels():
        return [entry.value for entry in program.probe.heard() if entry.event == VALUE_CHANGED and entry.hwnd == window]
    wait_until(lambda: levels() == ["6", "7", "6"], lambda: f"{levels()}")
    assert spoken(program, FOCUS) == [], "one item: its focus was announced when it was opened"
    assert program.probe.set_value(window, 9) == S_OK
    wait_until(lambda: heard(program) == [6, 7, 6, 9], lambda: f"{heard(program)}")
    assert program.probe.read(window).value == "9"


def test_a_notice_is_an_alert(program):
    program.offer(*sample("Mute", "Wireless"))
    program.machine("Wireless", ErrorMode=1)
    program.start()
    program.probe.listen()
    program.hold()
    program.press("Wireless")
    notice = program.probe.read(card_of(program, "Wireless").hwnd).children[0]
    assert notice.role == ALERT and notice.name and not notice.action
    wait_until(lambda: (ALERTED, notice.name) in spoken(program, ALERTED), lambda: f"{program.probe.heard()}")


def test_the_hover_strip_the_cards_and_the_items_can_be_pressed(program):
    program.configure(EnableHover=1, MouseEnterIdle=60000)
    program.offer(*NAMES)
    program.machine("Zoom", Item=0)
    program.start()
    hover = program.shown_with(geometry.hover_strip(program.desktop.work_area(), 2, False))[0].hwnd
    assert (program.probe.read(hover).role, program.probe.read(hover).action) == (PUSH_BUTTON, "Press")
    assert program.probe.press(program.strip().hwnd, 2) == BUSY, "there is nothing to press while it is hidden"
    assert program.probe.press(hover) == S_OK
    program.expect_strip()
    assert program.probe.press(program.strip().hwnd, 2) == S_OK
    card = card_of(program, "Zoom").hwnd
    assert program.probe.press(card) == NOT_SUPPORTED
    item = program.shown_with(geometry.circle_items(program.desktop.work_area(), 2, 1, 3)[2])[0].hwnd
    assert program.probe.press(item) == S_OK
    wait_until(lambda: program.chosen("Zoom") == ["2"], lambda: f"{program.chosen('Zoom')}")
    wait_until(lambda: not program.shown_with(geometry.large_card(program.desktop.work_area(), 2, 1, False)),
               "the card is gone")
