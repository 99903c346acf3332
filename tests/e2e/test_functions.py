"""All functions of the simulated notebook: each card is shown, stepped through and applied with its own key."""
import collections
import subprocess

import pytest
from harness import geometry, places
from harness.functions import KINDS, SAMPLE, sample
from harness.probe import Rect
from harness.waiting import wait_until
from test_keys import expect_card, item_rects, large_card_of

INFO, CURRENT, SELECT = "GetDisplayItemInfo", "GetCurrentItem", "SelectItem"
PLAN, DUAL, FOCUS = "GetCustomItemText", "IsDualBrtCtrl", "FocusItem"
COUNT, ENTRY = "FnF5_GetDisplayItemCount", "FnF5_GetDisplayItemInfo"

# What a new machine does when a function's key is pressed twice: the applied choices, the calls from the press to the
# choice, and the change of the text on the card.
Expected = collections.namedtuple("Expected", "choices calls text")
NO_TEXT, STAYS, CHANGES = "no text", "stays", "changes"
TOGGLE = [INFO, CURRENT, SELECT]
ACTION = [INFO, SELECT]
EXPECTED = {
    "Mute": Expected(["1"], TOGGLE, STAYS),
    "Lock": Expected(["1"], ACTION, NO_TEXT),
    "PowerPlan": Expected(["2"], [INFO, *[PLAN] * 4, CURRENT, PLAN, SELECT], CHANGES),
    "Sleep": Expected(["1"], ACTION, NO_TEXT),
    "Output_2": Expected(["1"], [COUNT, CURRENT, *[ENTRY] * 8, SELECT], CHANGES),
    "Brightness": Expected(["6", "-1"], [INFO, CURRENT, DUAL, DUAL, FOCUS, FOCUS], CHANGES),
    "Wireless": Expected(["0"], ACTION, CHANGES),
    "Touchpad": Expected(["0"], TOGGLE, STAYS),
    "CursorOverlay": Expected(["0"], TOGGLE, CHANGES),
    "NumericOverlay": Expected(["0"], TOGGLE, CHANGES),
    "Hibernate": Expected(["1"], ACTION, NO_TEXT),
    "Zoom": Expected(["1"], TOGGLE, CHANGES),
    "KBB": Expected(["0"], TOGGLE, CHANGES),
    "ODD": Expected(["2"], TOGGLE, CHANGES),
    "Output": Expected(["1"], TOGGLE, CHANGES),
}
# A function without a row behaves like its kind.
BY_KIND = {"Positions": Expected(["1"], TOGGLE, CHANGES), "Action": Expected(["1"], ACTION, NO_TEXT)}
EXPECTED.update({name: BY_KIND[kind] for name, kind in KINDS.items() if name not in EXPECTED})
# No user settings, no sticky modifier to cancel.
HARMLESS = {"RegConfigAccess::Open", "CZelMainApp::_cancelFnSticky"}
OVERLAYS = ("CursorOverlay", "NumericOverlay")


def item_places(program, name):
    area, index = program.desktop.work_area(), program.index_of(name)
    cards, items = len(program.functions), program.functions[index].items
    if name == "Brightness":
        return [geometry.slider(area, cards, index)]
    if name == "Output_2":
        return geometry.output_items(area, cards, index, items)
    return item_rects(program, name, items)


def is_white(rgb):
    return min(rgb) > 0xB0


def state_text(program, name):
    """The white points of the text on the enlarged card, once it is drawn and stable."""
    rect = geometry.large_card_text(program.desktop.work_area(), len(program.functions), program.index_of(name),
                                    program.bottom)
    has_text = EXPECTED[name].text != NO_TEXT
    seen = [None]

    def stands():
        picture = program.desktop.screen.picture(rect)
        seen.append({(x, y) for y in range(rect.top, rect.bottom) for x in range(rect.left, rect.right)
                     if is_white(picture.at(x, y))})
        return seen[-1] == seen[-2] and not picture.is_plain(rect) and bool(seen[-1]) == has_text
    wait_until(stands, f"{'a' if has_text else 'no'} text on the card of {name}")
    return seen[-1]


def relevant(program, name, since):
    """The exports called since then. The overlays are also asked for their state whenever the strip is drawn."""
    exports = [call.export for call in program.calls(name)[since:]]
    if name in OVERLAYS:
        exports = [export for i, export in enumerate(exports) if export != CURRENT or exports[i - 1] == INFO]
    return exports


def show_step_apply(program, name):
    expected = EXPECTED[name]
    choice = FOCUS if name == "Brightness" else SELECT
    before = len(program.calls(name))
    program.hold()
    program.press(name)
    expect_card(program, name)
    places = set(item_places(program, name))
    wait_until(lambda: places <= {w.rect for w in program.shown_dialogs()},
               lambda: f"items of {name} at {places}: {program.shown_dialogs()}")
    text = state_text(program, name)
    program.press(name)
    program.let_go()
    wait_until(lambda: [call.arguments for call in program.calls(name, choice)] == expected.choices,
               lambda: f"{name} hears {expected.choices}: {program.calls(name)}")
    assert all(call.result == 0 for call in program.calls(name))
    assert relevant(program, name, before) == expected.calls
    expect_card(program, name, shown=False)
    return text


def test_every_function_of_the_sample_shows_steps_and_applies(program):
    subprocess.run([str(places.WINE), str(program.stage / "NotebookSim.exe"), "/register", "/all"], check=True,
                   env=program.desktop.environment, timeout=60)
    program.functions = SAMPLE
    program.start()
    assert program.strip().rect == geometry.strip(program.desktop.work_area(), len(SAMPLE))
    texts = {function.name: show_step_apply(program, function.name) for function in SAMPLE}
    # A changed state changes the text; an unchanged one does not (Mute stands for those).
    for name in [name for name in EXPECTED if EXPECTED[name].text == CHANGES] + ["Mute"]:
        program.hold()
        program.press(name)
        expect_card(program, name)
        assert (state_text(program, name) != texts[name]) == (EXPECTED[name].text == CHANGES), name
        program.let_go()
    program.end()
    for function in SAMPLE:
        assert [call.export for call in program.calls(function.name)][-1] == "FinalizeHotkeyDll", function.name
    assert len({call.thread for call in program.calls()}) == 1, "all on one thread"
    assert {line.function for line in program.errors()} <= HARMLESS, program.errors()


# Power plan

def caption_boxes(program, name, items):
    """The boxes under the items, in which the selected item shows its name."""
    known = [large_card_of(program, name), *item_rects(program, name, items)]
    return [w.rect for w in program.shown_dialogs() if w.rect not in known]


def test_power_plans_have_the_names_of_the_plugin(program):
    program.offer(*sample("Mute", "PowerPlan"))
    for plan, text in enumerate(["I", "I", "A plan with a long name"]):
        program.probe.set_text("HKCU", "SOFTWARE\\KESTOVA\\Simulated Notebook\\PowerPlan", f"Name{plan}", text)
    program.machine("PowerPlan", Items=0x5, Item=0)
    program.start()
    program.hold()
    program.press("PowerPlan")
    expect_card(program, "PowerPlan")
    items = item_rects(program, "PowerPlan", 2)
    widths = []
    for item in items:
        def box_below():
            boxes = caption_boxes(program, "PowerPlan", 2)
            return boxes[0] if len(boxes) == 1 and boxes[0].top == item.bottom + 5 \
                and abs((boxes[0].left + boxes[0].right) - (item.left + item.right)) <= 2 else None
        box = wait_until(box_below, lambda: f"one box under {item}: {program.shown_dialogs()}")
        widths.append(box.right - box.left)
        inside = Rect(box.left + 1, box.top + 1, box.right - 1, box.bottom - 1)
        wait_until(lambda: program.desktop.screen.picture(inside).share_of(inside, lambda rgb: max(rgb) < 0x50) > 0.01,
                   "the name in black")
        program.press("PowerPlan")
    # The third plan is at the second position.
    assert widths[0] < 20 < 60 < widths[1]
    program.press("PowerPlan")
    program.let_go()
    wait_until(lambda: program.chosen("PowerPlan") == ["2"], "the plan behind the place is chosen")
    asked = [call.arguments.split(", ")[0] for call in program.calls("PowerPlan", PLAN)]
    assert asked == ["0", "2", "0"], "two items, and the text on the card"


@pytest.mark.parametrize("result", [1, 0xFFFFFFFF])
def test_power_plans_without_names_are_no_items(program, result):
    program.offer(*sample("Mute", "PowerPlan"))
    program.machine("PowerPlan", GetCustomItemText__Result=result)
    program.start()
    program.hold()
    program.press("PowerPlan")
    expect_card(program, "PowerPlan")
    assert [w.rect for w in program.shown_dialogs()] == [large_card_of(program, "PowerPlan")]
    program.let_go()
    expect_card(program, "PowerPlan", shown=False)
    assert not program.chosen("PowerPlan")
