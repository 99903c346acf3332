"""If anything around the program is missing or broken, it continues with the rest or shuts down properly."""
import shutil

import pytest
from harness import geometry, places
from harness.functions import Function
from harness.keyboard import CODES
from harness.waiting import SOON, stays, wait_until
from test_keys import expect_card, large_card_of

INSTRUMENTED = "SOFTWARE\\KESTOVA\\Fenwyn Test\\Plugin"


def the_other_card_works(program):
    program.hold()
    program.press("Zoom")
    program.press("Zoom")
    before = len(program.chosen("Zoom"))
    program.let_go()
    wait_until(lambda: len(program.chosen("Zoom")) == before + 1, "the other function works")


def expect_cards(program, count):
    assert program.strip().rect == geometry.strip(program.desktop.work_area(), count)


# Exports that fail

def test_a_function_that_is_not_supported_gets_no_card(program):
    program.offer("Mute", "Zoom")
    program.machine("Mute", InitializeHotkeyDll__Result=1)
    program.start()
    expect_cards(program, 1)
    assert "Hotkey Mute is not supported." in program.log_texts()
    assert [call.export for call in program.calls("Mute")] == ["InitializeHotkeyDll", "FinalizeHotkeyDll"]
    program.functions = program.functions[1:]
    the_other_card_works(program)


@pytest.mark.parametrize("export, result", [("GetDisplayItemInfo", 0xFFFFFFFF), ("GetDisplayItemInfo", 1),
                                            ("GetCurrentItem", 1), ("GetCurrentItem", 0xFFFFFFFF)])
def test_a_function_without_items_shows_its_card_and_applies_nothing(program, export, result):
    program.offer("Mute", "Zoom")
    program.machine("Mute", **{f"{export}__Result": result})
    program.start()
    program.hold()
    program.press("Mute")
    expect_card(program, "Mute")
    card = large_card_of(program, "Mute")
    assert [w.rect for w in program.shown_dialogs()] == [card], "no items"
    # Another press tries again.
    asked = len(program.calls("Mute", "GetDisplayItemInfo"))
    program.press("Mute")
    assert len(program.calls("Mute", "GetDisplayItemInfo")) == asked + 1
    program.let_go()
    expect_card(program, "Mute", shown=False)
    assert not program.chosen("Mute")
    the_other_card_works(program)


def test_a_choice_that_fails_is_logged_and_the_cards_go(program):
    program.offer("Mute", "Zoom")
    program.machine("Mute", SelectItem__Result=5, Item=1)
    program.start()
    program.hold()
    program.press("Mute")
    program.let_go()
    expect_card(program, "Mute", shown=False)
    assert [(call.arguments, call.result) for call in program.calls("Mute", "SelectItem")] == [("0", 5)]
    assert program.machine_item("Mute") == 1
    assert "ERR CBlackCard::executeFunx: Error Code: 0x80004005" in [line.short for line in program.log()]
    the_other_card_works(program)


def test_a_plugin_that_cannot_end_well_is_unloaded_all_the_same(program):
    program.offer("Mute", "Zoom")
    program.machine("Mute", FinalizeHotkeyDll__Result=1)
    program.start()
    program.end()
    assert len(program.calls("Zoom", "FinalizeHotkeyDll")) == 1


@pytest.mark.parametrize("info", [0, 1, 2, 7, 0xFFFFFFFF])
def test_nonsense_about_the_items_of_a_toggle_gives_none(program, info):
    program.offer("Mute", "Zoom")
    program.machine("Mute", Items=info)
    program.start()
    program.hold()
    program.press("Mute")
    expect_card(program, "Mute")
    assert [w.rect for w in program.shown_dialogs()] == [large_card_of(program, "Mute")]
    program.let_go()
    assert not program.chosen("Mute")
    the_other_card_works(program)


@pytest.mark.parametrize("item", [2, 7, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF])
def test_nonsense_about_the_current_item_selects_nothing(program, item):
    program.offer("Mute", "Zoom")
    program.machine("Mute", Item=item)
    program.start()
    program.hold()
    program.press("Mute")
    expect_card(program, "Mute")
    program.let_go()
    expect_card(program, "Mute", shown=False)
    assert not program.chosen("Mute")
    the_other_card_works(program)


@pytest.mark.parametrize("mask", [0, 0xFFFFFFFF])
def test_nonsense_masks_of_items(program, mask):
    program.offer("ODD", "Zoom")
    program.machine("ODD", Items=mask, Item=0)
    program.start()
    program.hold()
    program.press("ODD")
    expect_card(program, "ODD")
    assert len(program.shown_dialogs()) >= 1
    program.let_go()
    the_other_card_works(program)


def test_a_slow_choice_loses_no_key(program):
    program.offer("Mute", "Zoom")
    program.machine("Mute", SelectItem__Delay=1500, Item=1)
    program.machine("Zoom", Item=0)
    program.start()
    program.hold()
    program.press("Mute")
    program.keyboard.up("Control_R")
    # While the choice is being applied:
    program.keyboard.down("Control_R")
    program.keyboard.press("F2")
    program.keyboard.press("F2")
    program.keyboard.up("Control_R")
    wait_until(lambda: program.chosen("Zoom") == ["1"], lambda: f"both presses count: {program.chosen('Zoom')}")
    assert program.chosen("Mute") == ["0"]


# Exports that are missing

def instrumented(program, missing):
    name = f"InstrNo{missing}"
    program.probe.set_text("HKCU", f"{INSTRUMENTED}\\{name}", "RecordFile", places.windows_path(program.record_file))
    plugin = places.windows_path(places.PLUGINS / f"{name}.dll")
    program.offer(Function("Mute", "Mute", plugin, "F1", (CODES["F1"],), 2),
                  Function("Zoom", "Zoom", None, "F2", (CODES["F2"],), 3))
    return name


def test_without_initialize_a_function_gets_no_card(program):
    instrumented(program, "InitializeHotkeyDll")
    program.start()
    expect_cards(program, 1)
    program.functions = program.functions[1:]
    the_other_card_works(program)


@pytest.mark.parametrize("missing", ["GetDisplayItemInfo", "GetCurrentItem"])
def test_without_questions_a_function_shows_no_items(program, missing):
    instrumented(program, missing)
    program.start()
    program.hold()
    program.press("Mute")
    expect_card(program, "Mute")
    assert [w.rect for w in program.shown_dialogs()] == [large_card_of(program, "Mute")]
    assert any(line.text == "Error Code: 0x80004003" and missing.lower() in line.function.lower().replace("::", "")
               for line in program.errors())
    program.let_go()
    the_other_card_works(program)


def test_without_select_item_the_choice_has_no_effect(program):
    name = instrumented(program, "SelectItem")
    program.start()
    program.hold()
    program.press("Mute")
    expect_card(program, "Mute")
    program.let_go()
    expect_card(program, "Mute", shown=False)
    assert not program.chosen(name)
    assert "ERR CFuncX::selectItem: Error Code: 0x80004003" in [line.short for line in program.log()]
    the_other_card_works(program)


def test_without_finalize_the_library_is_unloaded_all_the_same(program):
    instrumented(program, "FinalizeHotkeyDll")
    program.start()
    program.end()
    assert "ERR CFuncX::finalize: ASSERT( NULL != pfFinalize )" in [line.short for line in program.log()]
    assert len(program.calls("Zoom", "FinalizeHotkeyDll")) == 1


# Libraries and list entries

@pytest.mark.parametrize("plugin", ["", "Z:\\no such folder\\x.dll", "garbage", "too long", "%FENWYN_NOT_SET%\\x.dll"])
def test_a_plugin_that_cannot_be_loaded_costs_only_its_card(program, plugin):
    if plugin == "too long":
        plugin = "Z:\\" + "x" * 400
    if plugin == "garbage":
        (program.folder / "garbage.dll").write_bytes(b"MZ this is no library" * 99)
        plugin = places.windows_path(program.folder / "garbage.dll")
    program.offer(Function("Mute", "Mute", plugin or None, "F1", (CODES["F1"],), 2),
                  Function("Zoom", "Zoom", None, "F2", (CODES["F2"],), 3))
    if not plugin:
        program.probe.set_text("HKLM", "SOFTWARE\\KESTOVA\\Fenwyn\\HotKey\\Mute", "FuncDll", "")
    program.start()
    expect_cards(program, 1)
    program.functions = program.functions[1:]
    the_other_card_works(program)


def test_environment_references_in_a_plugin_path(program):
    program.desktop.environment["FENWYN_TEST_PLUGINS_HERE"] = places.windows_path(program.stage / "plugins")
    try:
        program.offer(Function("Zoom", "Zoom", "%FENWYN_TEST_PLUGINS_HERE%\\SimZoom.dll", "F1", (CODES["F1"],), 3))
        program.start()
    finally:
        del program.desktop.environment["FENWYN_TEST_PLUGINS_HERE"]
    expect_cards(program, 1)
    the_other_card_works(program)


def test_a_function_that_nobody_knows_gets_no_card(program):
    program.offer(Function("Coffee", "Coffee", None, "F1", (CODES["F1"],), 2),
                  Function("Zoom", "Zoom", None, "F2", (CODES["F2"],), 3))
    program.start()
    expect_cards(program, 1)
    assert 'ASSERT( !"Error hotkey function!" )' in program.log_texts()
    program.functions = program.functions[1:]
    the_other_card_works(program)


@pytest.mark.parametrize("text, cards", [("Mute;Zoom", 1), (";Mute;", 1), ("Mute;;Zoom;", 2), ("mute;ZOOM;", 2),
                                         ("Mute", 0), (";;;", 0), ("No Such Key;Mute;", 1)])
def test_the_function_list_as_people_write_it(program, text, cards):
    program.offer("Mute", "Zoom")
    program.probe.set_text("HKLM", "SOFTWARE\\KESTOVA\\Fenwyn\\HotKey", "FuncList", text)
    program.start()
    area = program.desktop.work_area()
    assert program.strip().rect == (geometry.strip(area, cards) if cards else program.strip().rect)
    made = program.log_texts().count("ENTER CBlackCard::initialize")
    assert made == cards


# The companion libraries

@pytest.mark.parametrize("library", ["CardArt.dll", "ZelMain.dll"])
@pytest.mark.parametrize("how", ["missing", "garbage", "elsewhere"])
def test_without_its_pictures_or_keys_the_program_does_not_start(program, library, how):
    program.offer("Mute")
    if how == "elsewhere":
        # The current folder is never searched for libraries.
        shutil.copy2(program.stage / library, program.folder / library)
    (program.stage / library).unlink()
    if how == "garbage":
        (program.stage / library).write_bytes(b"MZ" + b"\0" * 999)
    process = program.launch()
    program.wait_end(process)
    assert not program.windows()
    assert program.log_texts()[-1] == "LEAVE CZelMainApp::ExitInstance"
    assert "ERR CZelMainApp::InitInstance: Error Code: 0x0" in [line.short for line in program.log()]


@pytest.mark.parametrize("library", ["PrtHook.dll", "ZelEvnt.dll"])
def test_without_the_lesser_libraries_the_program_runs(program, library):
    program.offer("Zoom")
    (program.stage / library).unlink()
    program.start()
    assert program.errors()
    the_other_card_works(program)
    program.end()


@pytest.mark.parametrize("library, export, starts", [
    ("ZelMain.dll", "Start", False), ("ZelMain.dll", "EnableHotkey", False), ("ZelMain.dll", "Stop", True),
    ("ZelEvnt.dll", "CancelQueryEvent", True), ("PrtHook.dll", "InstallHook", True)])
def test_a_library_that_lacks_an_export(program, library, export, starts):
    program.offer("Zoom")
    (program.stage / library).unlink()
    shutil.copy2(places.PLUGINS / "siblings" / f"no-{export}" / library, program.stage / library)
    process = program.launch()
    if starts:
        wait_until(program.is_up, "the program runs", 20)
        program.probe.post(program.frame().hwnd, 0x10)
    program.wait_end(process)
    assert program.errors()
    assert program.log_texts()[-1] == "LEAVE CZelMainApp::ExitInstance"


def enlarge_every_item(program, name):
    """Steps through a function's items until each of them was shown enlarged."""

    def newly_enlarged():
        pictures = {window.rect for window in program.shown_layered()}
        return next((item.hwnd for item in items() if item.rect in pictures and item.hwnd not in seen), None)

    def items():
        return [window for window in program.shown_dialogs() if window.size[0] == window.size[1]]

    seen = set()
    program.hold()
    program.press(name)
    seen.add(wait_until(newly_enlarged, "an item is enlarged"))
    while len(seen) < len(items()):
        program.press(name)
        seen.add(wait_until(newly_enlarged, "the next item is enlarged"))
    program.let_go()


def test_nothing_leaks_over_many_sequences(program):
    program.offer("Zoom", "Mute", "ODD")
    program.start()
    pid = program.pid

    def use(times):
        wanted = len(program.chosen("ODD")) + times + 1  # every turn applies its last card once
        for _ in range(times):
            program.keyboard.down("Control_R")
            for key in ("F1", "F1", "F2", "F3"):
                program.keyboard.press(key)
            program.keyboard.up("Control_R")
        program.hold()
        program.press("ODD")
        program.let_go()
        wait_until(lambda: len(program.chosen("ODD")) == wanted, "all keys are handled", 3 * SOON)
        wait_until(lambda: not program.shown_layered(), "the cards are gone")
        stays(lambda: not program.shown_layered(), "the cards came back", 0.2)
        return program.probe.handles(pid)

    # What is made once and kept: the windows of every item, small and enlarged, and what the first turns need.
    for name in ("Zoom", "Mute", "ODD"):
        enlarge_every_item(program, name)
    for _ in range(3):
        before = use(5)
    after = use(25)
    # Far below one object for each of the 25 sequences; caches of fonts and the like still change a little.
    assert after["gdi"] <= before["gdi"] + 10, (before, after)
    assert after["kernel"] <= before["kernel"] + 10, (before, after)
