"""What all Python tests share: the tally that ./test adds up."""


def pytest_addoption(parser):
    parser.addoption("--tally", action="store_true", help="end with a line 'N passed, N failed'")


def pytest_unconfigure(config):
    if config.getoption("--tally"):
        stats = config.pluginmanager.get_plugin("terminalreporter").stats
        failed = len(stats.get("failed", [])) + len(stats.get("error", []))
        print(f"\n{len(stats.get('passed', []))} passed, {failed} failed")
