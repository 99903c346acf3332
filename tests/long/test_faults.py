"""Every export of a plug-in with every fault: about a hundred crashes, ends and hangs."""
import os
import pathlib
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]


def test_every_export_with_every_fault():
    done = subprocess.run([sys.executable, "-m", "pytest", "-q", "-p", "no:cacheprovider", "tests/e2e/test_faults.py"],
                          cwd=ROOT, env=dict(os.environ, FENWYN_ALL_FAULTS="1"), stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, text=True, timeout=1800)
    assert done.returncode == 0, done.stdout[-8000:]
