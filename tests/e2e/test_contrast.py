"""High contrast, switched while the program runs: the cards on the screen in the system's colours, and as before
afterwards. Wine cannot switch it; there, the stored setting counts."""
import pytest
from harness import geometry
from harness.mouse import card_picture
from harness.waiting import wait_until

SETTING = "Control Panel\\Accessibility\\HighContrast"
WM_SYSCOLORCHANGE, WM_SETTINGCHANGE, WM_THEMECHANGED, SPI_SETHIGHCONTRAST = 0x15, 0x1A, 0x31A, 0x43
# Wine's colours of windows and of their texts.
GROUND, INK = (255, 255, 255), (0, 0, 0)


def tell(program, on, message=WM_SETTINGCHANGE, w_param=SPI_SETHIGHCONTRAST):
    """Switches it, as the system does, with the message to every window; here the frame is enough."""
    program.probe.set_text("HKCU", SETTING, "Flags", "127" if on else "126")
    program.probe.send(program.frame().hwnd, message, w_param)


@pytest.fixture
def setting(desktop):
    yield
    desktop.probe.set_text("HKCU", SETTING, "Flags", "126")


def settled(program, rect):
    """The picture when two in succession are the same."""
    pictures = [program.desktop.screen.picture(rect)]

    def same():
        pictures.append(program.desktop.screen.picture(rect))
        return pictures[-1] == pictures[-2]
    wait_until(same, "the picture stays")
    return pictures[-1]


def share(program, rect, colour):
    return program.desktop.screen.picture(rect).share_of(rect, lambda rgb: rgb == colour)


def test_shown_cards_change_at_once_and_back(program, setting):
    program.offer("Mute", "Zoom", "Lock")
    program.start()
    program.hold()
    program.expect_strip()
    card = card_picture(program, 1)
    wait_until(lambda: share(program, card, GROUND) < 0.05, "the cards are drawn")
    before = settled(program, card)
    for message, w_param in ((WM_SETTINGCHANGE, SPI_SETHIGHCONTRAST), (WM_SYSCOLORCHANGE, 0), (WM_THEMECHANGED, 0)):
        tell(program, True, message, w_param)
        # Opaque: nothing of the screen comes through.
        wait_until(lambda: share(program, card, GROUND) > 0.5 and share(program, card, INK) > 0.02,
                   lambda: f"{share(program, card, GROUND)} ground, {share(program, card, INK)} ink")
        tell(program, False, message, w_param)
        wait_until(lambda: share(program, card, GROUND) < 0.05, "the own look again")
    assert settled(program, card) == before
    assert program.strip_shown()


def test_a_start_and_an_open_card_use_it(program, setting):
    program.probe.set_text("HKCU", SETTING, "Flags", "127")
    program.offer("Mute", "Zoom")
    program.start()
    program.hold()
    program.press("Zoom")
    area = program.desktop.work_area()
    card = geometry.large_card(area, 2, 1)
    wait_until(lambda: share(program, card, GROUND) > 0.5, lambda: f"{share(program, card, GROUND)}")
    other = geometry.circle_items(area, 2, 1, 3)[2]
    wait_until(lambda: share(program, other, GROUND) > 0.2, lambda: f"{share(program, other, GROUND)}")
    # It changes with the open card, too.
    tell(program, False)
    wait_until(lambda: share(program, card, GROUND) < 0.05, "the own look")
