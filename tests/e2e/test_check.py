"""FenwynCheck, for the owner of a machine: what it says, what it writes, and what it leaves alone."""
import subprocess

import pytest
from harness import places
from harness.desktop import LIST, MAKER, PRODUCT
from harness.functions import sample
from harness.waiting import wait_until
from test_faults import WAIT
from test_faults import offer as offer_bad

WELL, FAULTY, WRONG_USE, NOT_WRITTEN, NOTHING_TO_DO = range(5)
NOT_ALLOWED, REFUSES = 200, 202


def check(program, *arguments, answers=""):
    """Runs it in the program's folder; exit code and what it said."""
    done = subprocess.run([str(places.WINE), str(program.stage / "FenwynCheck.exe"), *arguments], cwd=program.folder,
                          env=program.desktop.environment, input=answers.encode(), capture_output=True, timeout=120,
                          check=False)
    return done.returncode, done.stdout.decode().replace("\r", "")


def sections(text):
    """The functions that it told of: name -> lines."""
    parts = text.split("\n\n")[1:-1]
    return {part.split()[0]: [line.strip() for line in part.strip().splitlines()] for part in parts}


def stored_list(program, root="HKLM"):
    return bytes(program.probe.get_value(root, LIST, "FuncList")).decode("utf-16-le").rstrip("\0")


def test_goes_through_the_family_beside_it_where_there_is_no_list(program):
    code, said = check(program, "--machine")
    assert code == WELL, said
    assert "Function list: none; these are the plug-ins beside this program\n" in said
    told = sections(said)
    assert set(told) == {file.stem.removeprefix("Win") for file in (program.stage / "plugins").glob("Win*.dll")}
    assert told["NumericOverlay"][0].endswith("F11 (0x57)")
    assert told["NumericOverlay"][2:4] == ["offered", "state: off"]
    assert told["NumericOverlay"][-1].startswith("calls: InitializeHotkeyDll ")
    assert "not offered: There is no optical drive (mounted images are none)." in told["ODD"]
    assert f"{len(told)} functions: " in said and " 0 at fault." in said


def test_names_the_export_that_does_not_return(program):
    offer_bad(program, InitializeHotkeyDll=WAIT)
    code, said = check(program, "--machine")
    assert code == FAULTY, said
    told = sections(said)
    assert told["Mute"][2:] == ["FAULT: InitializeHotkeyDll did not return within 18 seconds."]
    assert told["Zoom"][2] == "offered", "the others are looked at all the same"


def test_looks_at_the_list_in_force_and_changes_nothing(program):
    program.offer("Mute", "Lock", "Zoom")
    code, said = check(program, "--machine")
    assert code == WELL, said
    assert "Function list: the machine's (HKEY_LOCAL_MACHINE)\n" in said
    assert list(sections(said)) == ["Mute", "Lock", "Zoom"]
    assert not [call for call in program.calls() if call.export in ("SelectItem", "FocusItem")]


def test_a_picture_that_nobody_has_confirmed_is_left_to_fenwyn(program):
    """The display outputs take such a picture back when they start, but not in a check."""
    displays = PRODUCT + "\\Displays"
    program.probe.set_dword("HKCU", displays, "Unsettled", 1)
    # The probe writes no lists of texts.
    subprocess.run([str(places.WINE), "reg", "add", f"HKCU\\{displays}", "/v", "LastGood", "/t", "REG_MULTI_SZ",
                    "/d", "0 0 1280 800 nowhere", "/f"], env=program.desktop.environment, check=True, timeout=60,
                   capture_output=True)
    program.offer(*(function._replace(plugin=places.windows_path(program.stage / "plugins" / f"Win{function.name}.dll"))
                    for function in sample("Output", "Output_2")))
    code, said = check(program, "--machine", "--try")
    assert code == WELL, said
    assert list(sections(said)) == ["Output", "Output_2"]
    assert int.from_bytes(program.probe.get_value("HKCU", displays, "Unsettled"), "little") == 1
    program.start()
    wait_until(lambda: program.probe.get_value("HKCU", displays, "Unsettled")[0] == 0, "Fenwyn takes it back")


def test_a_plugin_that_crashes_or_cannot_be_loaded_does_not_keep_it_from_the_others(program):
    garbage = program.folder / "garbage.dll"
    garbage.write_bytes(b"no library")
    mute, lock, touchpad, zoom = sample("Mute", "Lock", "Touchpad", "Zoom")
    program.offer(mute._replace(plugin=places.windows_path(garbage)),
                  lock._replace(plugin=places.windows_path(places.PLUGINS / "CrashingPlugin.dll")),
                  touchpad._replace(plugin="C:\\nowhere\\x.dll"), zoom)
    code, said = check(program, "--machine")
    assert code == FAULTY
    told = sections(said)
    assert "FAULT: The library cannot be loaded: " in "\n".join(told["Mute"])
    assert "FAULT: The plug-in crashed (0xC0000005) in InitializeHotkeyDll." in told["Lock"]
    assert "FAULT: The library cannot be loaded: the file, or a library that it needs, is not there." in told["Touchpad"]
    assert "offered" in told["Zoom"]
    assert "4 functions: 1 offered, 0 not offered, 3 at fault." in said


def test_tries_what_is_harmless_after_a_yes_each(program):
    program.offer(*(function._replace(plugin=places.windows_path(program.stage / "plugins" / f"Win{function.name}.dll"))
                    for function in sample("Lock", "CursorOverlay", "NumericOverlay")))
    code, said = check(program, "--machine", "--try", answers="n\ny\n")
    assert code == WELL, said
    assert "Lock: " not in said
    assert "CursorOverlay: switch the cursor keys on or off, and back? [y/N] " in said
    assert said.count("off -> on: in effect after ") == 1, "no was the answer for the other"
    assert said.count("on -> off: in effect after ") == 1


def test_the_report_is_a_text_to_send(program):
    report = program.folder / "report.txt"
    code, said = check(program, "--machine", "--report", places.windows_path(report))
    assert code == WELL, said
    text = report.read_bytes().decode("utf-8-sig").replace("\r\n", "\n")
    assert text.startswith("FenwynCheck ")
    assert sections(text).keys() == sections(said).keys()
    code, said = check(program, "--machine", "--report", "C:\\no folder\\report.txt")
    assert code == NOT_WRITTEN


def has_list(program, root):
    try:
        return bool(stored_list(program, root))
    except AssertionError:  # there is no such value
        return False


@pytest.mark.parametrize("root, words", [("HKLM", []), ("HKCU", ["--user"])])
def test_registers_what_the_machine_offers_and_fenwyn_shows_it(program, root, words):
    program.probe.delete_key("HKLM", MAKER)
    code, said = check(program, "--register", *words)
    assert code == WELL, said
    names = stored_list(program, root).rstrip(";").split(";")
    assert {"Lock", "CursorOverlay", "NumericOverlay"} <= set(names)
    assert not {"ODD", "Touchpad", "Brightness"} & set(names)
    other = "HKCU" if root == "HKLM" else "HKLM"
    assert not has_list(program, other)
    assert program.probe.get_value(root, PRODUCT, "InstallPath")
    program.start()
    assert program.log_texts().count("ENTER CBlackCard::initialize") == len(names)
    program.end()
    assert check(program, "--register", *words)[0] == NOTHING_TO_DO
    assert check(program, "--unregister", *words)[0] == WELL
    assert not has_list(program, root)


def test_wrong_use_tells_the_right_one(program):
    code, said = check(program, "--registre")
    assert code == WRONG_USE
    assert said.startswith("FenwynCheck --machine")
    code, said = check(program, "--register", "--user", "--functions", "Mute;Lokc;")
    assert code == WRONG_USE
    assert said.startswith('There is no function "Lokc" for the list.')
    assert not has_list(program, "HKCU")


def test_a_screen_is_allowed_and_forbidden_and_one_that_cannot_be_changed_does_no_harm(program):
    code, said = check(program, "--screens")
    assert code == WELL, said
    path = said.splitlines()[1].strip()
    assert said.startswith("1  ") and path.startswith("\\\\?\\DISPLAY#")
    assert check(program, "--screen-brightness", path)[0] == NOT_ALLOWED
    assert check(program, "--allow-screen", "1")[0] == WELL
    assert check(program, "--screens")[1].splitlines()[0].endswith("  allowed")
    assert check(program, "--screen-brightness", path)[0] == REFUSES
    offer = sample("Brightness", "Lock")
    program.offer(*(function._replace(plugin=places.windows_path(program.stage / "plugins" / f"Win{function.name}.dll"))
                    for function in offer))
    program.start()
    assert ("Hotkey Brightness has no card: There is no built-in screen whose brightness the system can set, and no other "
            "that you allow.") in program.log_texts()
    assert check(program, "--forbid-screen", path)[0] == WELL
    assert check(program, "--screen-brightness", path)[0] == NOT_ALLOWED
    assert check(program, "--allow-screen", "7")[0] == NOTHING_TO_DO
