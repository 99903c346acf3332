"""The recipes of CONTRIBUTING.md, followed on a copy of the tree."""
import pathlib
import re
import shutil
import subprocess

ROOT = pathlib.Path(__file__).resolve().parents[2]

NAME, KEY = "Example", ("0x1E", "A")
DESCRIPTION = "Show how a card is made"
ITEMS = ["One", "Two", "Three"]
PICTURES = {"card": 801, "large-card": 800, "item": 803, "large-item": 802}


class Copy:
    """A copy of the tree as git has it, in `folder`, whose former contents are lost."""

    def __init__(self, folder):
        self.folder = folder
        if folder.exists():
            shutil.rmtree(folder)
        folder.mkdir(parents=True)
        listed = subprocess.run(["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard"], cwd=ROOT,
                                check=True, capture_output=True).stdout.decode().split("\0")
        for name in filter(None, listed):
            if (ROOT / name).is_file():
                (folder / name).parent.mkdir(parents=True, exist_ok=True)
                shutil.copy2(ROOT / name, folder / name)
        self.run("git", "init", "-q")
        self.touched()

    def run(self, *command, timeout=3600):
        done = subprocess.run([str(part) for part in command], cwd=self.folder, timeout=timeout,
                              stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                              errors="replace")
        assert done.returncode == 0, f"{command}:\n{done.stdout[-8000:]}"
        return done.stdout

    def touched(self):
        """The files changed since the last call; commits them."""
        self.run("git", "add", "-A")
        files = self.run("git", "diff", "--cached", "--name-only").split()
        self.run("git", "-c", "user.name=recipe", "-c", "user.email=recipe@localhost", "commit", "-qm", "recipe")
        return files

    def insert(self, path, before, text):
        """Inserts the text before the last occurrence of `before`."""
        file = self.folder / path
        content = file.read_text(encoding="utf-8")
        assert before in content, f"{path} has no {before!r} any more"
        at = content.rindex(before)
        file.write_text(content[:at] + text + content[at:], encoding="utf-8")

    def append(self, path, text):
        with open(self.folder / path, "a", encoding="utf-8") as file:
            file.write(text)


def add_function(copy):
    copy.insert("plugins/sdk/FenwynFunctions.h", "};\n// clang-format on",
                f'    {{L"{NAME}", {{FENWYN_EXPORTS_STATE}}, InfoRule::Mask, 0x7, 0, CurrentRule::State, 3}},\n')
    copy.append("plugins/simulated/Functions.inc",
                f'FUNCTION({NAME}, "{NAME}", {KEY[0]}, "{KEY[1]}", 0, "", Positions, 0x7, 0, 0, 1, L"one", L"two", '
                'L"three")\n'
                "".join(f'WORD_ROW("{item.lower()}", "{item} (de)")\n' for item in ITEMS))
    table = "src/Logic/FuncX/FunctionTables.h"
    rows = "".join(f"    {{0x{1 << i:x}, {i}, IDS_EXAMPLE_{item.upper()}, {PICTURES['item'] + 2 * i}, "
                   f"{PICTURES['large-item'] + 2 * i}}},\n" for i, item in enumerate(ITEMS))
    status = ", ".join(f"IDS_EXAMPLE_{item.upper()}" for item in ITEMS)
    copy.insert(table, "// The functions that their description specifies completely",
                f"inline constexpr std::array<Item, 3> kExampleItems{{{{\n{rows}}}}};\n"
                f"inline constexpr std::array<UINT, 3> kExampleStatus{{{status}}};\n"
                f'inline constexpr CircleDescription kExample{{.pszName = L"{NAME}",\n'
                f'.pszClass = L"CFx{NAME}",\n'
                f".look = {{{PICTURES['card']}, {PICTURES['large-card']}, IDS_EXAMPLE_DESC}},\n"
                ".itemRule = ItemRule::Mask,\n.items = kExampleItems,\n.defaultRule = DefaultRule::Current,\n"
                ".statusTexts = kExampleStatus};\n\n")
    copy.insert(table, "};\ninline constexpr std::array kExtendedFunctions", ", &kExample")
    copy.append("src/res/StringIds.h", "".join(f"#define IDS_EXAMPLE_{name} {591 + i}\n" for i, name in
                                               enumerate(["DESC", *(item.upper() for item in ITEMS)])))
    copy.append("companions/captions/CaptionIds.h", "#define IDS_CAPTION_EXAMPLE 721\n")
    copy.insert("companions/captions/Captions.cpp", "};\n\n}  // namespace", f'    {{L"{NAME}", IDS_CAPTION_EXAMPLE}},\n')
    for path in sorted((copy.folder / "src/res/strings").glob("*.rc")):
        language = path.stem
        mark = "" if language == "en" else f" ({language})"
        name = f"src/res/strings/{path.name}"
        copy.insert(name, "END", f'    IDS_EXAMPLE_DESC, "{DESCRIPTION if not mark else "Example" + mark}"\n' + "".join(
            f'    IDS_EXAMPLE_{item.upper()}, "{item}{mark}"\n' for item in ITEMS))
        copy.insert(name, "END\n\n#else", f'    IDS_CAPTION_EXAMPLE, "{NAME}"\n')
    badges = ["star", "setup", ""]
    copy.append("art/images.csv",
                f"{PICTURES['large-card']},large-card,moon,,,{NAME}\n{PICTURES['card']},card,moon,,,{NAME}\n" +
                "".join(f"{PICTURES[kind] + 2 * i},{kind},scale,on,{badges[i]},{NAME} {item}\n"
                        for i, item in enumerate(ITEMS) for kind in ("large-item", "item")))
    copy.insert("docs/plugin-guide.md", "| ODD | B,",
                f"| {NAME} | B, `GetCurrentItem`, `SelectItem` | bits 0–2: items that exist | 0–2 | position among "
                "those that exist |\n")


def add_setting(copy):
    copy.insert("src/Data/ZelConfig.h", "    CConfigValue bLoaded;",
                "    CConfigValue uExample;  // a value that nothing uses\n\n")
    copy.insert("src/Data/ZelConfig.cpp", "};\n\nvoid readSettings",
                '    {L"ExampleSetting", &QrdConfig::uExample, 17, Scope::Machine},\n')
    copy.insert("docs/configuration.md", "| `HideMainUIWhenLostFocus`",
                "| `ExampleSetting` | milliseconds | 17 | machine | none |\n")
    copy.insert("tests/e2e/harness/desktop.py", "]\nCONFIG_DEFAULTS", '    Setting("ExampleSetting", 17, MACHINE),\n')
    copy.insert("tests/unit/Data/ZelConfigTest.cpp", "};\n\nDWORD rowOf(",
                '    {L"ExampleSetting", &QrdConfig::uExample, 17, false},\n')
    copy.insert("settings/Values.cpp", "\n    {L\"HideCaption\"",
                '    {L"ExampleSetting", Machine, Kind::Milliseconds, 17, 0, 100, Group::Showing, IDS_EXAMPLE},\n')
    copy.insert("settings/SettingsIds.h", "#define IDS_GROUP_PLACE",
                "#define IDS_EXAMPLE 290\n#define IDS_EXAMPLE_MORE 291\n")
    for file in sorted((copy.folder / "settings/strings").glob("*.rc")):
        copy.insert(f"settings/strings/{file.name}", "    IDS_GROUP_PLACE,",
                    '    IDS_EXAMPLE, "Example"\n    IDS_EXAMPLE_MORE, "A value that nothing uses."\n')


def add_language(copy):
    for folder in ("src/res/strings", "companions/OutputSetup/strings", "settings/strings"):
        english = (copy.folder / folder / "en.rc").read_text(encoding="utf-8")
        danish, count = re.subn(r"^LANGUAGE .*$", "LANGUAGE LANG_DANISH, SUBLANG_DEFAULT", english, flags=re.M)
        assert count == 1
        (copy.folder / folder / "da.rc").write_text(danish, encoding="utf-8")
    copy.insert("settings/Allowed.cpp", 'L"ko"};', 'L"da", ')
    copy.append("src/res/Languages.rc", "#include <strings/da.rc>     // 0x406\n")


# Each recipe with the number of files that it may touch. A function and a setting have a text in every language.
LANGUAGES = len(list((ROOT / "src/res/strings").glob("*.rc")))
RECIPES = {"function": (add_function, 8 + LANGUAGES), "setting": (add_setting, 7 + LANGUAGES),
           "language": (add_language, 5)}
