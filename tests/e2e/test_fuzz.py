"""The shipped program among nonsense: messages of another process to each of its windows, and an image library, a list,
settings and command lines that make no sense. Most inputs go to the code itself (tests/fuzz)."""
import os
import random
import subprocess

from harness import places
from harness.desktop import HOTKEY_EVENT
from harness.waiting import wait_until
from test_failures import the_other_card_works
from test_frame import RELOAD

MESSAGES = int(os.environ.get("FENWYN_FUZZ_MESSAGES", 2000))
STARTS = int(os.environ.get("FENWYN_FUZZ_STARTS", 2))


def random_of_run():
    seed = int(os.environ.get("FENWYN_TEST_SEED", random.SystemRandom().randrange(1 << 32)))
    print(f"FENWYN_TEST_SEED={seed}")
    return random.Random(seed)


def programs(program):
    return sorted(entry["file"] for entry in program.probe.ask("processes") if entry["file"] != "winedbg.exe")


def test_messages_of_another_process_are_harmless(program):
    chance = random_of_run()
    program.write_log_settings(Level=0)
    program.log_file.unlink(missing_ok=True)
    program.configure(EnableHover=1)
    program.offer("Mute", "Zoom", "Lock")
    program.start()
    pid, before = program.pid, programs(program)
    for _ in range(MESSAGES // 500):
        program.probe.send_nonsense(pid, chance.randrange(1 << 32), 500)
        # It answers, and is what it was.
        program.probe.send(program.frame().hwnd, RELOAD)
        assert program.pid == pid
    assert programs(program) == before, "a program was started"
    program.end()


# What the system's own procedures answer with a message loop of theirs, or with a capture of the mouse, until somebody
# moves the mouse, releases a button or leaves a menu: first parameters by message.
WM_NCLBUTTONDOWN, WM_NCLBUTTONDBLCLK, WM_NCRBUTTONDOWN, WM_NCRBUTTONUP = 0xA1, 0xA3, 0xA4, 0xA5
WM_SYSKEYDOWN, WM_SYSKEYUP, WM_SYSCOMMAND = 0x104, 0x105, 0x112
WM_CONTEXTMENU, WM_POPUPSYSTEMMENU = 0x7B, 0x313
# The title, its menu and buttons, scroll bars, and two borders.
HIT_TESTS = (2, 3, 5, 6, 7, 8, 9, 10, 17, 20, 21)
# All but the screen saver and the power of the display, which are the system's; sizing and moving with the mouse.
SYSTEM_COMMANDS = (*range(0xF000, 0xF0A0, 0x10), 0xF100, 0xF110, 0xF120, 0xF130, 0xF150, 0xF160, 0xF180, 0xF001, 0xF012)
VK_MENU, VK_F10 = 0x12, 0x79
INSIDE = 12 << 16 | 100  # a point in the title of the program's frame, which has the corner of the screen
LOOPS = {WM_NCLBUTTONDOWN: HIT_TESTS, WM_NCLBUTTONDBLCLK: HIT_TESTS, WM_NCRBUTTONDOWN: HIT_TESTS, WM_NCRBUTTONUP: HIT_TESTS,
         WM_SYSCOMMAND: SYSTEM_COMMANDS, WM_SYSKEYDOWN: (VK_MENU, VK_F10), WM_SYSKEYUP: (VK_MENU, VK_F10),
         WM_POPUPSYSTEMMENU: (0,), WM_CONTEXTMENU: (0,)}


def test_no_message_starts_a_loop_of_the_system(program):
    program.write_log_settings(Level=0)
    program.log_file.unlink(missing_ok=True)
    program.configure(EnableHover=1)
    program.offer("Mute", "Brightness", "Output")
    program.start()
    strip = program.strip().hwnd
    program.probe.play_rounds(strip, [function.codes[0] for function in program.functions])
    windows = [window.hwnd for window in program.windows()]
    windows += [control.hwnd for window in windows for control in program.probe.controls(window)]
    for message, parameters in LOOPS.items():
        for w_param in parameters:
            for window in windows:
                program.probe.post(window, message, w_param, INSIDE)
            try:
                program.probe.play_rounds(strip, [0])
            except AssertionError as error:
                raise AssertionError(f"0x{message:x} 0x{w_param:x}: {error}") from error
    program.end()


def damaged(chance, data):
    """Some bytes are different, or the rest is missing."""
    data = bytearray(data)
    for _ in range(chance.randrange(1, 40)):
        data[chance.randrange(0x400, len(data))] = chance.randrange(256)
    return bytes(data[:chance.randrange(0x400, len(data))] if chance.randrange(3) == 0 else data)


def test_a_damaged_image_library_costs_pictures_at_most(program):
    chance = random_of_run()
    art = program.stage / "CardArt.dll"
    good = art.read_bytes()
    program.offer("Mute", "Zoom")
    for _ in range(STARTS):
        art.unlink()
        art.write_bytes(damaged(chance, good))
        process = program.launch()
        wait_until(lambda: process.poll() is not None or program.is_up(), "it runs, or has ended because it has no pictures")
        if process.poll() is None:
            program.probe.send(program.strip().hwnd, HOTKEY_EVENT, 0, 0)
            program.probe.send(program.strip().hwnd, HOTKEY_EVENT, 0x3C, 0)
            program.probe.send(program.strip().hwnd, HOTKEY_EVENT, 0, 1)
            program.end()
        program.log_file.unlink(missing_ok=True)
    art.unlink()
    art.write_bytes(good)
    program.start()
    the_other_card_works(program)


def test_outputsetup_ends_at_nonsense(program):
    chance = random_of_run()
    words = ["\\OutputConf", "\\Save", "-1", "99999999999", "%s%n", "..\\x.exe", "\"", "ä" * 300, "x" * 3000]
    before = programs(program)
    for _ in range(STARTS):
        arguments = [chance.choice(words) for _ in range(chance.randrange(4))]
        process = subprocess.Popen([str(places.WINE), str(program.stage / "OutputSetup.exe"), *arguments],
                                   env=program.desktop.environment, stdin=subprocess.DEVNULL,
                                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        try:
            assert process.wait(3) < 128, arguments
        except subprocess.TimeoutExpired:  # a request that makes sense has a window
            for window in program.probe.windows():
                if window.pid in program.probe.processes("OutputSetup.exe"):
                    program.probe.post(window.hwnd, 0x10)
            assert process.wait(10) < 128, arguments
    assert programs(program) == before, "a program was started"
