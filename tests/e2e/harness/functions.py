"""The functions that tests put on the strip."""
import collections
import json

from . import places
from .keyboard import CODES

Function = collections.namedtuple("Function", "name caption plugin key codes items")

# The simulated notebook's table, as written by the build.
TABLE = [row for row in json.loads((places.OUT / "functions.json").read_text(encoding="utf-8")) if row]
# What the cards of these kinds show on a new machine; for all others the items are the bits of their masks.
SHOWN = {"Slider": 1, "Radios": 3, "Favourites": 8}


def item_count(row):
    masks = [int(row[mask], 0) for mask in ("items", "items2")]
    return SHOWN.get(row["kind"]) or sum(bin(mask).count("1") for mask in masks)


def key_name(name):
    """The key's name for the keyboard: letters and the space bar are lower case."""
    return name if name in CODES else name.lower()


# The circle functions of the simulated notebook and the number of items of each.
CIRCLE_KINDS = ("Toggle", "Action", "Positions", "Backlight", "Drive")
CIRCLE_ITEMS = {row["name"]: item_count(row) for row in TABLE if row["kind"] in CIRCLE_KINDS}
KINDS = {row["name"]: row["kind"] for row in TABLE}


def numbered(names):
    """The functions with F1, F2, ... as their keys, in order."""
    keys = ["F1", "F2", "F3", "F4", "F5", "F6", "F7", "F8", "F9", "F10", "F11", "F12", "a", "b", "e"]
    assert len(names) <= len(keys)
    return [Function(name, name, None, key, (CODES[key],), CIRCLE_ITEMS.get(name)) for name, key in zip(names, keys)]


def registered(row):
    keys = [key_name(key) for key in row["keys"] if key]
    codes = tuple(int(code, 0) for code in row["codes"] if int(code, 0))
    assert codes == tuple(CODES[key] for key in keys), row
    return Function(row["name"], row["caption"], None, keys[0], codes, item_count(row))


# The complete strip that the simulated notebook registers, in its order.
SAMPLE = [registered(row) for row in TABLE]


def sample(*names):
    """Some of them, in the given order."""
    return [next(function for function in SAMPLE if function.name == name) for name in names]
