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
STARTS = int(os.environ.get("FENWYN_FUZZ_STARTS", 4))


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
