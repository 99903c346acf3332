"""The log lines that the program must write, built from small pieces, so that each test states a whole sequence."""
from .desktop import CONFIG, LIST, MACHINE, SETTINGS, USER

FILE_NOT_FOUND, E_POINTER, E_FAIL = 0x80070002, 0x80004003, 0x80004005

USER_SETTINGS = [setting.name for setting in SETTINGS if setting.scope == USER]
MACHINE_SETTINGS = [setting.name for setting in SETTINGS if setting.scope == MACHINE]


def scope(function, *inside):
    """ENTER, the lines in between, LEAVE."""
    lines = [f"TRC {function}: ENTER {function}"]
    for entry in inside:
        lines += entry if isinstance(entry, list) else [entry]
    return lines + [f"TRC {function}: LEAVE {function}"]


def trace(function, text):
    return f"TRC {function}: {text}"


def info(function, text):
    return f"INF {function}: {text}"


def failure(function, status):
    return f"ERR {function}: Error Code: {status:#x}"


# Registry
def key_opened(path, missing=False):
    name = "RegConfigAccess::Open"
    return scope(name, trace(name, f"pszSubKey = {path}"), [failure(name, FILE_NOT_FOUND)] if missing else [])


def key_closed():
    return scope("RegConfigAccess::Close")


def text_read(value):
    name = "RegConfigAccess::GetValue"
    return scope(name, trace(name, f"pszName = {value}"))


codes_read = text_read


def number_read(value):
    return scope("RegConfigAccess::GetValue", text_read(value))


def all_of(entries, piece):
    return [line for entry in entries for line in piece(entry)]


def configuration_read():
    return scope("CZelConfig::_initQrdConfig", key_opened(CONFIG, missing=True), key_opened(CONFIG),
                 all_of(USER_SETTINGS, number_read), key_closed(), key_opened(CONFIG),
                 all_of(MACHINE_SETTINGS, number_read), key_closed())


def mouse_operating(value=0):
    return trace("CZelMainApp::mouseOperating", f"m_bMouseOperating = {value}")


# Start-up
def card_made(function, plugin):
    return scope("CZelMainDlg::processHotkeyInfo",
                 trace("CZelMainDlg::processHotkeyInfo", f"pHotkeyInfo->strFuncName.c_str() = {function.name}"),
                 scope("CZelMainDlg::initHotKeyDll",
                       scope("CBlackCard::initialize", info("CFuncX::initHotkeyDll", f"Dll path:{plugin}"),
                             info("CFuncX::isFuncSupported", f"Hotkey {function.caption} is supported."))))


def list_read(functions, plugin_of):
    def one(function):
        return (key_opened(function.name) + text_read("Caption") + codes_read("Code") + text_read("FuncDll")
                + card_made(function, plugin_of(function)) + key_closed())
    return scope("CHotkeyConfig::enumHotkeyConfigs", key_opened(LIST), text_read("FuncList"),
                 all_of(functions, one), key_closed())


def cards_put_away(large_cards):
    """hideLargeCardDlg of each card; large_cards says which have an enlarged card."""
    name = "CBlackCard::hideLargeCardDlg"
    return [line for has in large_cards for line in scope(name, [] if has else [trace(name, f"Error Code: {E_POINTER:#x}")])]


def strip_hidden(large_cards, cancel_sticky):
    name = "CZelMainApp::_cancelFnSticky"
    return scope("CZelMainApp::showMainDlg", cards_put_away(large_cards),
                 scope(name, failure(name, E_POINTER)) if cancel_sticky else [])


def strip_placed(work, card_width, ratio):
    place = "CZelMainDlg::setBlackCardsPos"
    calc = "CZelMainDlg::calcRatioForPng"
    return scope(place, scope(calc, trace(calc, f"Card width:{card_width:f}, Ratio:{ratio:f}")),
                 trace(place, f"The work area is: left {work.left},top {work.top}, right {work.right}, "
                              f"bottom {work.bottom}"))


def hover_strip_placed(work):
    name = "CZelHideDlg::_setDlgPos"
    width, height = work.right - work.left, work.bottom - work.top
    return scope(name, trace(name, f"rectWorkArea = ({work.left}, {work.top}) - ({work.right}, {work.bottom}), "
                                   f"{width} * {height}"))


def start_up(functions, plugin_of, work, card_width, ratio):
    return scope(
        "CZelMainApp::InitInstance",
        scope("CHotkeyEventHandler::cancelHotkeyIOEvent"),
        scope("CZelMainApp::checkMultiInstance"),
        scope("CZelMainApp::installPrtscHook"),
        scope("CHotkeyEventHandler::startHotkeyEventLoop"),
        scope("CZelMainApp::createSysMsgHandlerFrame"),
        scope("CZelMainApp::_setWndClsName"),
        scope("CZelMainDlg::initialize", configuration_read(),
              scope("CZelMainDlg::createBlackCards", list_read(functions, plugin_of))),
        scope("CZelMainDlg::OnInitDialog", strip_placed(work, card_width, ratio)),
        scope("CZelHideDlg::OnInitDialog", hover_strip_placed(work)),
        strip_hidden([False] * len(functions), cancel_sticky=False))


# Keys. The lines of the library's thread and those of the windows' thread, each in its own order.
def reported(code, is_break):
    word = "break" if is_break else "make"
    return [info("CHotkeyEventHandler::_hotkeyNotify", f"Get hotkey code:{code:#x}, modifier:{int(is_break):#x}"),
            info("CZelMainApp::handleHotkey", f"Get {word} code of hotkey:{code:#x}"),
            info("CZelMainApp::cancelScreenSaver", "Screensaver is not running.")]


def not_touched(cards):
    """Cards that a key does not belong to: notifyHotkey does nothing."""
    return scope("CBlackCard::notifyHotkey") * cards


def circle_item_made():
    return scope("CCircleItemDlg::initialize") + scope("CCircleItemDlg::OnInitDialog")


def first_press_of_toggle(other_cards, current, left_max, right_max):
    """Make of a two-item function's key, the function first on the strip, the strip visible, no card open."""
    return scope(
        "CZelMainDlg::handleHotkey",
        # Hiding the strip hides every enlarged card; the key then hides those of the other functions.
        scope("CZelMainDlg::OnShowWindow", cards_put_away([False] * (1 + other_cards))),
        cards_put_away([False] * other_cards),
        scope("CBlackCard::notifyHotkey",
              scope("CBlackCard::showLargeCardDlg",
                    scope("CFuncX::getDisplayItemInfo",
                          info("CFuncX::getDisplayItemInfo",
                               "GetDisplayItemInfo returns 3(0x00000003), 0(0x00000000).")),
                    circle_item_made() * 2,
                    scope("CFuncX::getCurrentItem", info("CFuncX::getCurrentItem", f"Current item: {current}.")),
                    trace("CBlackCard::setItemDlgPos",
                          f"Left max item count:{left_max:f}, right max item count:{right_max:f}."),
                    mouse_operating())),
        not_touched(other_cards))


def key_released(other_cards):
    """Break of a function's key."""
    return scope("CZelMainDlg::handleHotkey", cards_put_away([False] * other_cards), not_touched(1 + other_cards))


def choice_applied(other_cards, item):
    """Break of the modifier while the first card of the strip is open."""
    return scope(
        "CZelMainDlg::handleHotkey",
        scope("CZelMainDlg::showOnModifier", mouse_operating()),
        scope("CBlackCard::notifyHotkey",
              scope("CBlackCard::executeFunx", info("CFuncX::selectItem", f"Select item:{item}."),
                    strip_hidden([True] + [False] * other_cards, cancel_sticky=True))),
        scope("CBlackCard::notifyHotkey", scope("CBlackCard::executeFunx")) * other_cards)
