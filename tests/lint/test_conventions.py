"""The conventions of CONTRIBUTING.md that a compiler does not check."""
import posixpath
import re

import cpp
import pytest
import tree

UNIT = "tests/unit/"
CODE = ("src/", "framework/", "companions/", "plugins/", "settings/")

# Private methods with names that the design gives them.
DESIGN_METHODS = {
    "CBlackCard": ["clearItems", "createItemDlgs", "createLargeCardDlg", "handleHotkeyFirstTime", "refreshItemDlgs",
                   "setItemDlgPos", "setLargeCardDlgPos"],
    "CCircleItemDlg": ["showFakeWnd"],
    "CErrorItemDlg": ["getErrStringRect"],
    "CFxOutput": ["getCircleItemRatio"],
    "CFxOutput_2": ["getItemCount", "getAvailableItems", "filterFavItems", "getDefaultItemName", "getImageIDInRes",
                    "showOutputConfDlg"],
    "CFxOutputItemDlg": ["showPreviewWnd"],
    "CFxPowerPlan": ["addItem", "getPowerPlanItemName"],
    "CFxWireless": ["addItem", "addErrorItem"],
    "CItemDescDlg": ["drawDescString", "measureDescRect"],
    "CLayeredWnd": ["drawImage", "updateLyrWnd"],
    "CSliderItemDlg": ["updateBrightness", "updateStatus"],
    "CZelMainApp": ["checkMultiInstance", "createSysMsgHandlerFrame", "hideQrdWhenPrtsc", "installPrtscHook"],
    "CZelMainDlg": ["calcRatioForPng", "createBlackCards", "initHotKeyDll", "isHotkeyDesired", "setBlackCardsPos",
                    "showBlackCards", "showOnModifier"],
}
# And the one that is not private although it is named as if.
DESIGN_UNDERSCORES = {"CZelConfig": ["_initQrdConfig"]}
# Functions with tests and without a source in src/Logic/FuncX.
DESCRIBED_FUNCTIONS = {"Overlay", "PowerPlan", "Wireless"}
# Classes of src/common and interfaces that the design names otherwise.
DESIGN_CLASSES = {"CLayeredWnd", "StorageInterface"}


def code_files(*suffixes):
    return [path for path in tree.files(*suffixes) if path.startswith(CODE)]


def functions_of(path, text):
    """(declaration, what stands before the name, name) of every function that a source declares."""
    for declaration in cpp.parse(text)[1]:
        function = declaration.function()
        if function is not None and "::" not in function[1]:
            yield (declaration, *function)


def unknown_test_folders(paths):
    """Folders below tests/unit that are no folder of the sources: those of src without that name, the others with theirs."""
    folders, sources = set(), set()
    for path in paths:
        folder = posixpath.dirname(path)
        while folder:
            (folders if folder.startswith(UNIT) else sources).add(folder)
            folder = posixpath.dirname(folder)
    names = {folder.removeprefix(UNIT) for folder in folders}
    return sorted(name for name in names if not {name, "src/" + name} & sources)


def test_unit_tests_lie_in_folders_named_as_those_of_the_sources():
    assert not unknown_test_folders(tree.files())


@pytest.mark.parametrize(
    "test, wrong",
    [
        ("tests/unit/ATest.cpp", []),
        ("tests/unit/UI/ATest.cpp", []),
        ("tests/unit/UI/ItemDlg/ATest.cpp", []),
        ("tests/unit/companions/ATest.cpp", []),
        ("tests/unit/companions/hotkey/ATest.cpp", []),
        ("tests/unit/items/ATest.cpp", ["items"]),
        ("tests/unit/hotkey/ATest.cpp", ["hotkey"]),
        ("tests/unit/UI/cards/ATest.cpp", ["UI/cards"]),
        ("tests/unit/old/hotkey/ATest.cpp", ["old", "old/hotkey"]),
    ],
)
def test_the_rule_of_the_folders_sees_a_wrong_one(test, wrong):
    assert unknown_test_folders(["src/UI/ItemDlg/A.h", "companions/hotkey/A.h", test]) == wrong


def misplaced_tests(paths):
    """Tests that are named after a source and lie in a folder of another name. What headers and sources of a library share
    the folder of, include/... and src, says nothing."""
    sources = {}
    for path in paths:
        if path.startswith(CODE) and path.endswith((".h", ".cpp")):
            name = posixpath.splitext(posixpath.basename(path))[0]
            folder = re.sub(r"(?<=/)(include(/.*)?|src)$", "", posixpath.dirname(path)).rstrip("/")
            sources.setdefault(name, set()).add(folder.removeprefix("src/"))
    found = []
    for path in paths:
        name = posixpath.basename(path).removesuffix("Test.cpp")
        # The test of FxOutput is OutputTest, that of CircleItemDlg CircleItemTest.
        names = [name, "Fx" + name, name + "Dlg", name + "Wnd"]
        folders = set().union(*(sources.get(other, set()) for other in names))
        # A function that its description specifies completely has no source of its own.
        described = {"Logic/FuncX"} if name in DESCRIBED_FUNCTIONS else set()
        folder = posixpath.dirname(path).removeprefix(UNIT)
        if path.startswith(UNIT) and path.endswith("Test.cpp") and folders and folder not in folders | described:
            found.append(path)
    return found


def test_tests_lie_in_the_folder_of_the_source_that_they_are_named_after():
    assert not misplaced_tests(tree.files())


@pytest.mark.parametrize(
    "source, test, wrong",
    [
        ("src/UI/A.cpp", "tests/unit/UI/ATest.cpp", False),
        ("src/UI/A.cpp", "tests/unit/ATest.cpp", True),
        ("src/UI/ItemDlg/A.cpp", "tests/unit/UI/ATest.cpp", True),
        ("framework/include/framework/A.h", "tests/unit/framework/ATest.cpp", False),
        ("companions/keyboard/src/A.cpp", "tests/unit/companions/keyboard/ATest.cpp", False),
        ("companions/OutputSetup/store/A.cpp", "tests/unit/companions/OutputSetup/ATest.cpp", True),
        ("src/UI/A.cpp", "tests/unit/Data/StepsOfATest.cpp", False),
        ("src/UI/A.cpp", "tests/unit/Logic/FuncX/ATest.cpp", True),
        ("src/UI/ItemDlg/ADlg.cpp", "tests/unit/UI/ATest.cpp", True),
        ("plugins/windows/libraries/PowerPlan.cpp", "tests/unit/Logic/FuncX/PowerPlanTest.cpp", False),
    ],
)
def test_the_rule_of_the_places_sees_a_wrong_one(source, test, wrong):
    assert misplaced_tests([source, test]) == ([test] if wrong else [])


def statuses_to_ignore(path, text, declared=frozenset()):
    """Functions whose status the compiler lets a caller ignore, except those `declared` elsewhere."""
    return [f"{path}:{declaration.line}: {name}" for declaration, before, name in functions_of(path, text)
            if re.search(r"\bHRESULT\b(?!\s*[*&])", before) and "[[nodiscard]]" not in before and name not in declared]


def test_no_status_is_ignored_unseen():
    headers = code_files(".h")
    # Definitions of what a header or the system's headers declare: the exports of the libraries among them.
    declared = {name for path in headers for _, _, name in functions_of(path, tree.text(path))}
    found = [hit for path in headers for hit in statuses_to_ignore(path, tree.text(path))]
    found += [hit for path in code_files(".cpp") for hit in statuses_to_ignore(path, tree.text(path), declared)]
    assert not found, "write [[nodiscard]] before:\n" + "\n".join(found)


@pytest.mark.parametrize(
    "text, wrong",
    [
        ("HRESULT a();", True),
        ("class C {\n    virtual HRESULT a(int b = f({1})) = 0;\n};", True),
        ("namespace n {\nstatic HRESULT WINAPI a(\n    int b);\n}", True),
        ("struct C {\n    C() : m_a{1} {}\n    HRESULT a() const override { return S_OK; }\n};", True),
        ("template <typename T>\ninline HRESULT a(T b) {\n    return b();\n}", True),
        ('extern "C" {\nHRESULT a();\n}', True),
        ("[[nodiscard]] HRESULT a();", False),
        ("class C {\n    [[nodiscard]] virtual HRESULT a(const HRESULT& b) = 0;\n};", False),
        ("void a(HRESULT b);\nHRESULT* c();\n// HRESULT d();\nusing E = HRESULT (*)(int);", False),
        ("HRESULT g_a = b();\nstd::function<HRESULT(int)> g_b;\nHRESULT (*g_c)(int);", False),
        ("inline void a() {\n    HRESULT b();\n}", False),
        ('[[nodiscard]] HRESULT a(const char* b = "HRESULT c();");', False),
    ],
)
def test_the_rule_of_the_statuses_sees_one_that_may_be_ignored(text, wrong):
    assert bool(statuses_to_ignore("a.h", text)) == wrong


def misnamed_methods(path, text):
    """Private methods without an underscore, and others with one."""
    found = []
    for declaration, before, name in functions_of(path, text):
        if not declaration.owner or name.startswith("~"):
            continue
        private = declaration.access == "private"
        owner = declaration.owner[-1]
        # What overrides has its base's name, what handles a message that of the message.
        free = re.search(r"\boverride\b", declaration.text) or re.match(r"On[A-Z]", name) or name == owner
        listed = DESIGN_METHODS if private else DESIGN_UNDERSCORES
        if private != name.startswith("_") and not free and name not in listed.get(owner, ()):
            found.append(f"{path}:{declaration.line}: {owner}::{name}")
    return found


def test_private_methods_begin_with_an_underscore_and_no_others():
    found = [hit for path in code_files(".h", ".cpp") for hit in misnamed_methods(path, tree.text(path))]
    assert not found, "\n" + "\n".join(found)


def test_every_method_that_the_design_names_is_there():
    there = {(declaration.owner[-1], name) for path in code_files(".h")
             for declaration, _, name in functions_of(path, tree.text(path)) if declaration.owner}
    listed = {(owner, name) for names in (DESIGN_METHODS, DESIGN_UNDERSCORES) for owner in names for name in names[owner]}
    assert listed <= there, sorted(listed - there)


@pytest.mark.parametrize(
    "text, wrong",
    [
        ("class CA {\n    void b();\n};", ["CA::b"]),
        ("class CA {\n public:\n    int b() const { return {}; }\n\n private:\n    [[nodiscard]] static int c();\n};", ["CA::c"]),
        ("class CA {\n public:\n    void _b();\n};", ["CA::_b"]),
        ("class CA {\n protected:\n    void _b();\n    void c();\n};", ["CA::_b"]),
        ("class CA {\n    class CB {\n        void c();\n    };\n    void _d();\n};", ["CB::c"]),
        ("class CFxPowerPlan {\n    void addItem();\n    void addItems();\n};", ["CFxPowerPlan::addItems"]),
        ("class CA : public CB<int> {\n    explicit CA(int b);\n    ~CA();\n    CA& operator=(const CA&) = delete;\n};", []),
        ("class CA {\n    void OnTimer();\n    void b() override;\n    void _c();\n    friend void d();\n};", []),
        ("class CA {\n    std::function<void(int)> m_b;\n    void (*m_c)(int) = nullptr;\n    int m_d = f(1);\n};", []),
        ("struct A {\n    void b();\n};\nclass CB;\nvoid c();", []),
    ],
)
def test_the_rule_of_the_methods_sees_a_wrong_name(text, wrong):
    assert [hit.split(": ")[1] for hit in misnamed_methods("a.h", text)] == wrong


def misnamed_classes(path, text):
    """Classes with a prefix that the kind of class, or its place, does not have."""
    found = []
    for declared in cpp.parse(text)[0]:
        if declared.kind != "class" or declared.outer or declared.name in DESIGN_CLASSES:
            continue
        prefix = re.match(r"[CI](?=[A-Z])", declared.name)
        if prefix is None if not path.startswith("src/common/") else prefix is not None and prefix[0] == "C":
            found.append(f"{path}: {declared.name}")
    return found


def test_classes_carry_the_prefix_of_their_place():
    found = [hit for path in code_files(".h", ".cpp") for hit in misnamed_classes(path, tree.text(path))]
    assert not found, "\n" + "\n".join(found)


@pytest.mark.parametrize(
    "path, text, wrong",
    [
        ("src/Logic/A.h", "class A {\n};", True),
        ("src/Logic/A.h", "namespace n {\nclass Cut final : public IA {\n};\n}", True),
        ("src/Logic/A.h", "class CA final : public IA {\n    class Scope {\n    };\n};", False),
        ("src/Logic/A.h", "class A;\nenum class B { C };\nstruct D {\n};\nclass IE {\n};", False),
        ("src/common/A.h", "class CA {\n};", True),
        ("src/common/A.h", "template <typename T, typename U = std::less<T>>\nclass CA {\n};", True),
        ("src/common/A.h", "class Caught {\n};\nclass ILineSink {\n};\nclass CLayeredWnd {\n};", False),
    ],
)
def test_the_rule_of_the_classes_sees_a_wrong_prefix(path, text, wrong):
    assert bool(misnamed_classes(path, text)) == wrong


def misnamed_statuses(path, text):
    """Statuses that are not called so."""
    named = re.compile(r"\bHRESULT\s+(?:const\s+)?(\w+)\s*[=;{,)]")
    return [f"{path}:{number}: {name}" for number, line in enumerate(cpp.code(text).splitlines(), 1)
            for name in named.findall(line) + re.findall(r"\bauto\s+(hr)\b", line)
            if not re.search(r"(?:^|m_)status$|Status$|^k[A-Z]|^[A-Z_]+$", name)]


def test_a_status_is_called_status():
    found = [hit for path in code_files(".h", ".cpp") for hit in misnamed_statuses(path, tree.text(path))]
    assert not found, "\n" + "\n".join(found)


@pytest.mark.parametrize(
    "text, wrong",
    [
        ("HRESULT hr = a();", True),
        ("const HRESULT result{a()};", True),
        ("auto hr = a();", True),
        ("void a(int b, HRESULT hr);", True),
        ("HRESULT m_hr;", True),
        ("const HRESULT status = a();\nHRESULT m_status = S_OK;\nHRESULT functionStatus;", False),
        ("constexpr HRESULT kNone = 1;\nconstexpr HRESULT FUNCX_S_OK = S_OK;\nHRESULT a(HRESULT* pStatus);", False),
        ("// HRESULT hr = a();\n", False),
    ],
)
def test_the_rule_of_the_statuses_sees_another_name(text, wrong):
    assert bool(misnamed_statuses("a.cpp", text)) == wrong


# A message table, and how a header declares that its class has one.
MESSAGE_TABLE = re.compile(
    r"^const MessageMap& \w+::messageMap\(\) const \{\n"
    r"    static constexpr MessageEntry kEntries\[\] = \{\n"
    r"(?:        [^\n]+\n)+"
    r"    \};\n"
    r"    static const MessageMap kMap\{&\w+::messageMap\(\), kEntries\};\n"
    r"    return kMap;\n"
    r"\}\n", re.M)
MESSAGE_MAP_DECLARED = "[[nodiscard]] const MessageMap& messageMap() const override;"
# What the tables are made of, and the end of their chain.
MESSAGE_MAP_ITSELF = {"framework/include/framework/MessageMap.h", "framework/include/framework/Wnd.h",
                      "framework/src/Wnd.cpp"}


def sources():
    return [name for name in tree.files(".h", ".cpp") if name.startswith(CODE)]


def other_message_tables(source):
    """The lines of a source that deal with message tables in any other way than the one that is written down."""
    rest = MESSAGE_TABLE.sub("", source).replace(MESSAGE_MAP_DECLARED, "")
    code = [line.split("//")[0].strip() for line in rest.splitlines()]
    return [line for line in code if re.search(r"\bMessage(Entry|Map)\b", line) and not line.startswith("#include")]


def test_message_tables_are_written_in_one_way():
    wrong = {name: lines for name in sources() if name not in MESSAGE_MAP_ITSELF
             and (lines := other_message_tables(tree.text(name)))}
    assert not wrong, f"write the table inside messageMap(), as CONTRIBUTING.md says: {wrong}"


def test_every_class_that_declares_a_message_map_has_its_table():
    declared = sum(tree.text(name).count(MESSAGE_MAP_DECLARED) for name in sources())
    tables = sum(len(MESSAGE_TABLE.findall(tree.text(name))) for name in sources())
    assert declared == tables > 10


GOOD_TABLE = """\
const MessageMap& CAWnd::messageMap() const {
    static constexpr MessageEntry kEntries[] = {
        onPaint<&CAWnd::OnPaint>(),
    };
    static const MessageMap kMap{&CWnd::messageMap(), kEntries};
    return kMap;
}
"""


def test_the_way_to_write_a_message_table_is_accepted():
    assert not other_message_tables(GOOD_TABLE)


@pytest.mark.parametrize("wrong", [
    GOOD_TABLE.replace("&CWnd::messageMap()", "nullptr"),
    GOOD_TABLE.replace("static const MessageMap", "static constexpr MessageMap"),
    GOOD_TABLE + "const MessageMap CAWnd::kMap{nullptr, Entries::kEntries};\n",
    "struct Entries {\n    static constexpr MessageEntry kEntries[] = {\n        onPaint<&CAWnd::OnPaint>(),\n    };\n};\n",
    "    static const MessageEntry kEntries[];\n",
    MESSAGE_MAP_DECLARED.replace(";", " { return kMap; }"),
], ids=["no base", "constexpr", "member", "struct", "declared", "inline"])
def test_another_way_to_write_a_message_table_is_found(wrong):
    assert other_message_tables(wrong)


# Drawing that may scale; the system does it slowly and differently everywhere. Who may call it, and why.
SCALING = re.compile(r"\b(StretchBlt|StretchDIBits|TransparentBlt|AlphaBlend|GdiAlphaBlend|DrawIconEx|DrawImage)\s*\(")
SCALING_CALLS = {
    "src/common/PictureStore.cpp": 2,  # decodes at the picture's own size; draws a picture that has been scaled
    "src/common/OutlineText.cpp": 1,  # shows a text at its own size
    "src/UI/FaultNotice.cpp": 1,  # the system's own icon, in a window that is no card
}


def calls_that_may_scale(texts):
    found = {path: len(SCALING.findall(cpp.code(text))) for path, text in texts.items()}
    return {path: count for path, count in found.items() if count}


def test_pictures_are_scaled_and_drawn_in_one_place():
    assert calls_that_may_scale({path: tree.text(path) for path in code_files(".cpp", ".h")}) == SCALING_CALLS


def test_the_rule_of_scaling_sees_a_call():
    assert calls_that_may_scale({"a.cpp": "::StretchBlt(dc, 0);  // AlphaBlend(x)\n", "b.cpp": "// DrawImage(1)\n"}) == {"a.cpp": 1}


# A named object that others of the session can open.
NAMED = re.compile(r"\bCreate(?:Mutex|Event|Semaphore|FileMapping)(?:Ex)?W\(([^;]*?)\);", re.DOTALL)


def unprotected(text):
    """The calls that give an object a name and not the security of the user's own."""
    calls = [" ".join(call.split()) for call in NAMED.findall(text)]
    named = [call for call in calls if re.search(r"\b(?:k[A-Z]\w*(?:Name|Event|Mutex)\w*|ZEL_\w+|className|name)\b", call)]
    return [call for call in named if "common::OnlyForTheUser().get()" not in call]


def test_named_objects_are_the_users_own():
    wrong = [f"{path}: {call}" for path in tree.files(".cpp", ".h")
             if path.startswith(("src/", "companions/", "plugins/", "settings/")) for call in unprotected(tree.text(path))]
    assert not wrong, "\\n".join(wrong)


@pytest.mark.parametrize("text, wrong", [
    ("x.reset(::CreateEventW(nullptr, TRUE, FALSE, kQuestionEvent));", True),
    ("x.reset(::CreateEventW(nullptr, TRUE, FALSE,\\n    ZEL_END_EVENT));", True),
    ("x.reset(::CreateEventW(common::OnlyForTheUser().get(), TRUE, FALSE, kQuestionEvent));", False),
    ("x.reset(::CreateEventW(nullptr, TRUE, FALSE, nullptr));", False),
])
def test_the_rule_of_named_objects_sees_an_open_one(text, wrong):
    assert bool(unprotected(text)) == wrong


# Some systems expand a text before they look at its type, and read behind the end of one that has no end.
READ_CALL = re.compile(r"\bRegGetValueW\([^;]*;")


def expanding(text):
    return [call for call in READ_CALL.findall(text) if not re.search(r"\bRRF_NOEXPAND\b|\bkAsStored\b", call)]


def test_no_registry_value_is_expanded_while_it_is_read():
    assert {path: calls for path in code_files(".cpp", ".h") if (calls := expanding(tree.text(path)))} == {}


@pytest.mark.parametrize("text, wrong", [
    ("RegGetValueW(root, key, name, RRF_RT_REG_DWORD | RRF_NOEXPAND, nullptr, &number, &bytes);", 0),
    ("x = ::RegGetValueW(root, key, name, kAsStored, nullptr,\n nullptr, &bytes) == 0;", 0),
    ("x = ::RegGetValueW(root, key, name, RRF_RT_REG_BINARY, nullptr,\n nullptr, &bytes) == 0;", 1),
])
def test_the_rule_of_reading_sees_a_value_that_is_expanded(text, wrong):
    assert len(expanding(text)) == wrong
