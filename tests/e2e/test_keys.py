"""The keyboard loop with real keys: hold the modifier, press, step, wrap, let go."""
import pytest
from harness import geometry
from harness.desktop import HOTKEY_EVENT
from harness.keyboard import CODES, MODIFIER
from harness.waiting import stays, wait_until

KEY_DOWN, KEY_UP = 0x100, 0x101
VK_F1, VK_F9 = 0x70, 0x78


def large_card_of(program, name):
    return geometry.large_card(program.desktop.work_area(), len(program.functions), program.index_of(name),
                               program.bottom)


def item_rects(program, name, items):
    return geometry.circle_items(program.desktop.work_area(), len(program.functions), program.index_of(name), items,
                                 program.bottom)


def expect_card(program, name, shown=True):
    rect = large_card_of(program, name)
    wait_until(lambda: bool(program.shown_with(rect)) == shown,
               lambda: f"the card of {name} is {'shown' if shown else 'hidden'} at {rect}: {program.shown_dialogs()}")


def selected(program, name, items):
    """Index of the item that shows its large picture, which fills the item; the pictures of the others are inset by 11
    pixels."""
    rects = item_rects(program, name, items)
    corners = {(w.rect.left, w.rect.top) for w in program.shown_layered()}
    large = [i for i, rect in enumerate(rects) if (rect.left, rect.top) in corners]
    small = [i for i, rect in enumerate(rects) if (rect.left + 11, rect.top + 11) in corners]
    return large[0] if len(large) == 1 and len(large) + len(small) == items else None


def expect_selected(program, name, items, index):
    wait_until(lambda: selected(program, name, items) == index,
               lambda: f"item {index} of {name} is selected: {program.shown_layered()}")


def test_holding_the_modifier_shows_the_strip_and_letting_go_hides_it(program):
    program.offer("Mute", "Lock", "Zoom")
    program.start()
    program.expect_strip(shown=False)
    program.hold()
    program.expect_strip()
    program.let_go()
    program.expect_strip(shown=False)
    wait_until(lambda: not program.shown_layered(), "nothing of the cards is left on the screen")
    assert not program.calls(export="SelectItem")


def test_first_press_shows_the_card_its_items_and_the_default_choice(program):
    program.offer("Lock", "Mute", "Zoom")
    program.machine("Mute", Item=0)
    program.start()
    program.hold()
    program.expect_strip()
    program.press("Mute")
    program.expect_strip(shown=False)
    expect_card(program, "Mute")
    for rect in item_rects(program, "Mute", 2):
        wait_until(lambda: program.shown_with(rect), lambda: f"an item at {rect}: {program.shown_dialogs()}")
    # 0 is the machine's state, so one press selects the other.
    expect_selected(program, "Mute", 2, 1)
    exports = [call.export for call in program.calls("Mute")]
    assert exports == ["InitializeHotkeyDll", "GetDisplayItemInfo", "GetCurrentItem"]
    assert not program.chosen("Mute")


@pytest.mark.parametrize("state, chosen", [(0, 1), (1, 0)])
def test_one_press_toggles_and_the_machine_takes_effect(program, state, chosen):
    program.offer("Mute", "Zoom")
    program.machine("Mute", Item=state)
    program.start()
    program.hold()
    program.press("Mute")
    program.let_go()
    wait_until(lambda: program.chosen("Mute") == [str(chosen)], lambda: f"Mute hears {chosen}: {program.calls()}")
    assert program.machine_item("Mute") == chosen
    expect_card(program, "Mute", shown=False)
    program.expect_strip(shown=False)
    assert not program.chosen("Zoom")


@pytest.mark.parametrize("presses, chosen", [(1, 1), (2, 2), (3, 0), (4, 1), (7, 1)])
def test_each_further_press_steps_and_the_last_wraps_to_the_first(program, presses, chosen):
    program.offer("Mute", "Zoom")
    program.machine("Zoom", Item=1)
    program.start()
    program.hold()
    for press in range(presses):
        program.press("Zoom")
        expect_selected(program, "Zoom", 3, (1 + press) % 3)
    program.let_go()
    wait_until(lambda: program.chosen("Zoom") == [str(chosen)], lambda: f"Zoom hears {chosen}: {program.calls()}")
    assert program.machine_item("Zoom") == chosen


def test_items_are_asked_for_once_per_sequence_and_kept_while_stepping(program):
    program.offer("Zoom")
    program.start()
    for _ in range(2):
        program.hold()
        program.press("Zoom")
        program.press("Zoom")
        program.let_go()
    assert len(program.calls("Zoom", "GetDisplayItemInfo")) == 2
    assert len(program.chosen("Zoom")) == 2


def test_a_single_item_stays_selected(program):
    program.offer("Zoom", "Mute")
    program.machine("Zoom", Items=1, Item=0)
    program.start()
    program.hold()
    for _ in range(3):
        program.press("Zoom")
        expect_selected(program, "Zoom", 1, 0)
    program.let_go()
    wait_until(lambda: program.chosen("Zoom") == ["0"], "the one item is chosen")


def test_items_that_do_not_exist_are_left_out(program):
    program.offer("Zoom")
    program.machine("Zoom", Items=5, Item=0)
    program.start()
    program.hold()
    program.press("Zoom")
    expect_selected(program, "Zoom", 2, 0)
    program.press("Zoom")
    expect_selected(program, "Zoom", 2, 1)
    program.let_go()
    # The position among the items that exist.
    wait_until(lambda: program.chosen("Zoom") == ["1"], "the second item is chosen")


def test_two_functions_in_turn_apply_only_the_last(program):
    program.offer("Mute", "Zoom", "Touchpad")
    program.start()
    program.hold()
    program.press("Mute")
    expect_card(program, "Mute")
    program.press("Zoom")
    expect_card(program, "Zoom")
    expect_card(program, "Mute", shown=False)
    program.press("Mute")
    expect_card(program, "Mute")
    expect_card(program, "Zoom", shown=False)
    program.let_go()
    wait_until(lambda: program.chosen("Mute"), "Mute hears the choice")
    assert len(program.chosen("Mute")) == 1
    assert not program.chosen("Zoom") and not program.chosen("Touchpad")


def test_a_function_left_and_taken_again_begins_with_its_default(program):
    program.offer("Zoom", "Mute")
    program.machine("Zoom", Item=0)
    program.start()
    program.hold()
    program.press("Zoom")
    program.press("Zoom")
    expect_selected(program, "Zoom", 3, 1)
    program.press("Mute")
    program.press("Zoom")
    expect_selected(program, "Zoom", 3, 0)
    program.let_go()


def test_the_choice_shows_at_the_next_press(program):
    program.offer("Touchpad")
    program.start()
    for expected in (1, 0, 1):
        program.machine("Touchpad", Item=1 - expected)
        program.hold()
        program.press("Touchpad")
        expect_selected(program, "Touchpad", 2, expected)
        program.let_go()
        wait_until(lambda: program.machine_item("Touchpad") == expected, "the machine has changed")
    assert program.chosen("Touchpad") == ["1", "0", "1"]


def test_a_key_that_no_card_has_changes_nothing(program):
    program.offer("Mute")
    program.start()
    program.hold()
    program.expect_strip()
    program.keyboard.press("F9")
    wait_until(lambda: any(f"make code of hotkey:{CODES['F9']:#x}" in text for text in program.log_texts()),
               "the key is reported")
    program.expect_strip_stays(True)
    program.let_go()
    program.expect_strip(shown=False)
    assert not program.chosen("Mute")


def test_keys_alone_belong_to_other_programs(program):
    program.offer("Mute")
    program.start()
    window = program.desktop.window
    program.probe.received(window)
    program.keyboard.press("F1")
    seen = []

    def arrived():
        seen.extend(program.probe.received(window))
        return (KEY_UP, VK_F1) in [entry[:2] for entry in seen]
    wait_until(arrived, "the other program has the key")
    assert (KEY_DOWN, VK_F1) in [entry[:2] for entry in seen]
    assert not any("Get hotkey code" in text for text in program.log_texts())
    program.expect_strip_stays(False)


def test_a_listed_key_with_the_modifier_is_swallowed_and_others_pass(program):
    program.configure(HideMainDlg=1)
    program.offer("Mute")
    program.start()
    window = program.desktop.window
    program.probe.received(window)
    program.hold()
    program.keyboard.press("F9")
    seen = []

    def arrived():
        seen.extend(entry[:2] for entry in program.probe.received(window))
        return (KEY_UP, VK_F9) in seen
    wait_until(arrived, "the key of nobody reaches the other program")
    program.press("Mute")
    program.let_go()
    seen.extend(entry[:2] for entry in program.probe.received(window))
    assert (KEY_DOWN, VK_F1) not in seen and (KEY_UP, VK_F1) not in seen


def test_a_held_key_is_one_press(program):
    program.offer("Zoom")
    program.machine("Zoom", Item=0)
    program.start()
    program.hold()
    program.keyboard.down("F1")
    expect_card(program, "Zoom")
    expect_selected(program, "Zoom", 3, 0)
    # Longer than the delay of the keyboard's auto-repeat.
    stays(lambda: selected(program, "Zoom", 3) == 0, "repeats step", 1.2)
    program.keyboard.up("F1")
    program.let_go()
    wait_until(lambda: program.chosen("Zoom") == ["0"], "the one press counts")


def test_modifier_released_before_the_key_applies_once(program):
    program.offer("Mute")
    program.machine("Mute", Item=1)
    program.start()
    program.hold()
    program.keyboard.down("F1")
    expect_card(program, "Mute")
    program.keyboard.up(MODIFIER)
    wait_until(lambda: program.chosen("Mute") == ["0"], "the choice is applied")
    expect_card(program, "Mute", shown=False)
    program.keyboard.up("F1")
    stays(lambda: program.chosen("Mute") == ["0"], "the late break of the key applies again")
    # No key stays stuck: the next sequence works like the first.
    program.hold()
    program.expect_strip()
    program.press("Mute")
    program.let_go()
    wait_until(lambda: program.chosen("Mute") == ["0", "1"], "the next sequence works")


def test_many_quick_presses_are_all_counted(program):
    program.offer("Zoom", "Mute")
    program.machine("Zoom", Item=0)
    program.start()
    program.hold()
    presses = 40
    for _ in range(presses):
        program.keyboard.press("F1")
    program.keyboard.up(MODIFIER)
    wait_until(lambda: program.chosen("Zoom") == [str((presses - 1) % 3)],
               lambda: f"{presses} presses: {program.chosen('Zoom')}")


def test_two_keys_of_one_function_both_count(program):
    from harness.functions import Function
    program.offer(Function("Zoom", "Zoom", None, "F6", (CODES["F6"], CODES["F7"]), 3))
    program.machine("Zoom", Item=0)
    program.start()
    program.hold()
    program.keyboard.press("F6")
    expect_selected(program, "Zoom", 3, 0)
    program.keyboard.press("F7")
    expect_selected(program, "Zoom", 3, 1)
    program.keyboard.press("F6")
    expect_selected(program, "Zoom", 3, 2)
    program.let_go()
    wait_until(lambda: program.chosen("Zoom") == ["2"], "the choice is applied")


def test_events_posted_to_the_strip_do_the_same_as_keys(program):
    """Codes that no keyboard has: another hotkey library would post them in the same way."""
    from harness.functions import Function
    program.offer(Function("Mute", "Mute", None, "F1", (0xABCD,), 2))
    program.machine("Mute", Item=1)
    program.start()
    strip = program.strip().hwnd
    for code, is_break in ((0, 0), (0xABCD, 0), (0xABCD, 1)):
        program.probe.post(strip, HOTKEY_EVENT, code, is_break)
    expect_card(program, "Mute")
    program.probe.post(strip, HOTKEY_EVENT, 0, 1)
    wait_until(lambda: program.chosen("Mute") == ["0"], "the choice is applied")


@pytest.mark.parametrize("function", ["Mute", "Lock", "Sleep", "Hibernate", "Touchpad", "Zoom", "KBB", "ODD",
                                      "CursorOverlay", "NumericOverlay"])
def test_every_circle_function_shows_steps_and_applies(program, function):
    from harness.functions import CIRCLE_ITEMS
    items = CIRCLE_ITEMS[function]
    program.offer("Lock" if function == "Mute" else "Mute", function)
    program.machine(function, Item=0)
    program.start()
    program.hold()
    program.press(function)
    expect_card(program, function)
    first = wait_until(lambda: [selected(program, function, items)] if selected(program, function, items) is not None
                       else None, "one item is selected")[0]
    program.press(function)
    second = (first + 1) % items
    expect_selected(program, function, items, second)
    program.let_go()
    wait_until(lambda: program.chosen(function) == [str(second)], lambda: f"item {second}: {program.calls(function)}")
    assert [call.result for call in program.calls(function, "SelectItem")] == [0]
    expect_card(program, function, shown=False)
