"""What other programs of the same user can do to the named objects of the program, and what it does then."""
from harness.functions import sample
from harness.waiting import wait_until
from test_failures import the_other_card_works

# Of the hotkey library, the display output, the overlays and the question about a changed picture.
NAMES = ["Local\\KESTOVA_Fenwyn_End", "FnF5Panic", "Local\\FenwynOverlay", "Local\\FenwynOverlayCursorChanged",
         "Local\\FenwynOverlayNumericChanged", "Local\\KESTOVA_Fenwyn_Display_Question",
         "KESTOVA_SimulatedNotebook_Record"]
WM_CLOSE = 0x10


def test_names_that_somebody_else_has_taken_for_something_else_cost_no_card(program):
    for name in NAMES:
        program.probe.hold("semaphore", name)
    program.offer(*sample("Mute", "Output_2", "Zoom"))
    process = program.start()
    the_other_card_works(program)
    program.hold()
    program.press("Output_2")
    program.let_go()
    program.probe.post(program.frame().hwnd, WM_CLOSE)
    assert program.wait_end(process) == 0


def test_names_that_somebody_else_has_made_first_are_shared(program):
    for name in NAMES:
        if "Overlay" not in name or name.endswith("Changed"):
            program.probe.hold("mutex" if name.endswith("Record") else "event", name)
    program.offer(*sample("Mute", "Output_2", "Zoom"))
    program.start()
    # Whoever sets the event of the held output key has a picture brought back, and no more than that.
    program.probe.set_event("FnF5Panic")
    wait_until(lambda: program.calls("Output_2", "FnF5_SetCurrentForPanic"), "a picture is brought back")
    the_other_card_works(program)
    assert not program.calls("Output_2", "SelectItem")
