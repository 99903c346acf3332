"""Fixtures of the end-to-end tests."""
import os
import pathlib
import re
import shutil
import sys

import pytest

sys.path.insert(0, str(pathlib.Path(__file__).parent))

from harness import places  # noqa: E402
from harness.desktop import Desktop, Program  # noqa: E402


@pytest.fixture(scope="session")
def desktop():
    made = Desktop()
    yield made
    made.close()


def pytest_collection_modifyitems(items):
    """The longest test first, so that the other worker has enough to do meanwhile."""
    items.sort(key=lambda item: item.name != "test_nothing_grows")


@pytest.hookimpl(hookwrapper=True)
def pytest_runtest_makereport(item):
    outcome = yield
    report = outcome.get_result()
    if report.when == "call":
        item.failed_in_call = report.failed


@pytest.fixture
def program(desktop, request):
    """Fenwyn, not started yet, on a clean desktop where a window of another program has the focus."""
    desktop.reset()
    desktop.take_focus()
    made = Program(desktop, places.TESTS / re.sub(r"\W+", "_", request.node.name))
    made.configure()
    yield made
    try:
        if getattr(request.node, "failed_in_call", False):
            desktop.screen.save(made.folder / "screen.png")
            print(f"what it left: {made.folder}")
            print("\n".join(repr(window) for window in made.windows()))
            print("\n".join(line.raw for line in made.log()[-60:]))
    finally:
        made.cleanup()
        desktop.reset()
    # What a failed test leaves is needed to find the cause; the rest would only take space.
    if not getattr(request.node, "failed_in_call", True):
        shutil.rmtree(made.folder, ignore_errors=True)
