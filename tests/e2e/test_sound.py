"""Mute of a real machine, with a sound server of the test's own and without one."""
import os
import pathlib
import subprocess

import pytest
from harness import places
from harness.waiting import wait_until

OFFERED, DECLINED = 0, 10


@pytest.fixture
def sound_server(tmp_path):
    """The address of a server whose only output goes nowhere."""
    socket = tmp_path / "socket"
    home = dict(os.environ, HOME=str(tmp_path), XDG_RUNTIME_DIR=str(tmp_path))
    with (tmp_path / "server.txt").open("wb") as output:
        server = subprocess.Popen(
            ["pulseaudio", "-n", "--daemonize=no", "--use-pid-file=no", "--exit-idle-time=-1",
             "-L", f"module-native-protocol-unix auth-anonymous=1 socket={socket}", "-L", "module-null-sink"],
            env=home, stdout=output, stderr=output, stdin=subprocess.DEVNULL)
    try:
        wait_until(lambda: socket.exists() or server.poll() is not None, "the sound server runs")
        assert server.poll() is None, (tmp_path / "server.txt").read_text()
        yield f"unix:{socket}"
    finally:
        server.terminate()
        server.wait(20)


def inspect(program, server):
    """What FenwynCheck says of the mute function: its exit code and its lines."""
    library = places.windows_path(program.stage / "plugins" / "WinMute.dll")
    done = subprocess.run([str(places.WINE), str(program.stage / "FenwynCheck.exe"), "--inspect", "Mute", library],
                          cwd=program.folder, env=dict(program.desktop.environment, PULSE_SERVER=server),
                          capture_output=True, timeout=120, check=False)
    return done.returncode, done.stdout.decode().replace("\r", "").splitlines()


def test_with_a_sound_output_mute_is_offered_and_tells_its_state(program, sound_server):
    code, lines = inspect(program, sound_server)
    assert code == OFFERED, lines
    assert lines[:2] == ["offered", "state: sound on"]


@pytest.mark.skipif(pathlib.Path("/dev/snd").exists(), reason="this machine has a sound card, which counts too")
def test_without_a_sound_output_there_is_no_mute_and_a_reason(program):
    code, lines = inspect(program, "unix:/nonexistent")
    assert code == DECLINED, lines
    assert lines[0] == "not offered: There is no sound output device."
