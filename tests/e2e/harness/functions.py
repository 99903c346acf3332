"""The functions that tests put on the strip."""
import collections

from .keyboard import CODES

Function = collections.namedtuple("Function", "name caption plugin key codes items")

# The circle functions of the simulated notebook and how many items each shows there.
CIRCLE_ITEMS = {"Mute": 2, "Lock": 2, "Sleep": 2, "Hibernate": 2, "Touchpad": 2, "Zoom": 3, "KBB": 3, "ODD": 5,
                "CursorOverlay": 2, "NumericOverlay": 2}


def numbered(names):
    """The functions with F1, F2, ... as their keys, in order."""
    keys = ["F1", "F2", "F3", "F4", "F5", "F6", "F7", "F8", "F9", "F10", "F11", "F12", "a", "b", "e"]
    assert len(names) <= len(keys)
    return [Function(name, name, None, key, (CODES[key],), CIRCLE_ITEMS.get(name)) for name, key in zip(names, keys)]


# The strip that the simulated notebook registers, whole: name, caption, key, further key, number of items. In the
# order in which it stands there.
SAMPLE = [Function(name, caption, None, keys[0], tuple(CODES[key] for key in keys), items)
          for name, caption, keys, items in [
              ("Mute", "Mute", ["F1"], 2),
              ("Lock", "Lock", ["F2"], 2),
              ("PowerPlan", "Power plan", ["F3"], 4),
              ("Sleep", "Sleep", ["F4"], 2),
              ("Output_2", "Display output", ["F5"], 8),
              ("Brightness", "Brightness", ["F6", "F7"], 1),
              ("Wireless", "Wireless", ["F8"], 3),
              ("Touchpad", "Touchpad", ["F9"], 2),
              ("CursorOverlay", "Cursor keys", ["F10"], 2),
              ("NumericOverlay", "Number pad", ["F11"], 2),
              ("Hibernate", "Hibernate", ["F12"], 2),
              ("Zoom", "Zoom", ["space"], 3),
              ("KBB", "Keyboard light", ["b"], 3),
              ("ODD", "Optical drive", ["e"], 5),
              ("Output", "Older output", ["p"], 6)]]


def sample(*names):
    """Some of them, in the order asked for."""
    return [next(function for function in SAMPLE if function.name == name) for name in names]
