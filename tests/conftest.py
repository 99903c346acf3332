"""What all Python tests share: the tally that ./test adds up."""


def pytest_addoption(parser):
    parser.addoption("--tally", action="store_true", help="end with a line 'N passed, N failed'")


def pytest_unconfigure(config):
    # A parallel worker has no terminal; the process that started it counts.
    if config.getoption("--tally") and not hasattr(config, "workerinput"):
        stats = config.pluginmanager.get_plugin("terminalreporter").stats
        failed = len(stats.get("failed", [])) + len(stats.get("error", []))
        print(f"\n{len(stats.get('passed', []))} passed, {failed} failed")
