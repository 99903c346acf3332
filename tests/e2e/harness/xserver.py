"""Queries and commands to the X server without a process in between: who has the keyboard focus, and sending keys."""
import ctypes

PRESSED, RELEASED = 1, 0


class _ClassHint(ctypes.Structure):
    _fields_ = [("name", ctypes.c_void_p), ("cls", ctypes.c_void_p)]


class XServer:
    def __init__(self, display):
        self._x, self._test = ctypes.CDLL("libX11.so.6"), ctypes.CDLL("libXtst.so.6")
        self._x.XOpenDisplay.restype = ctypes.c_void_p
        self._x.XStringToKeysym.restype = ctypes.c_ulong
        self._x.XKeysymToKeycode.restype = ctypes.c_ubyte
        self._x.XGetKeyboardMapping.restype = ctypes.POINTER(ctypes.c_ulong)
        self._display = ctypes.c_void_p(self._x.XOpenDisplay(display.encode()))
        assert self._display, f"the X server {display} does not answer"
        self._lent = {}  # keysym -> the key code that was free

    def close(self):
        self._x.XCloseDisplay(self._display)

    def key(self, name, action):
        """Sends a key event, whether or not a program receives it."""
        keysym = ctypes.c_ulong(self._x.XStringToKeysym(name.encode()))
        code = self._x.XKeysymToKeycode(self._display, keysym) or self._lend(keysym)
        assert code, f"no such key: {name}"
        self._test.XTestFakeKeyEvent(self._display, ctypes.c_uint(code), action, ctypes.c_ulong(0))
        self._x.XSync(self._display, 0)

    def _lend(self, keysym):
        """A key that the server's keyboard lacks, such as F13, gets a code that means nothing else."""
        if not keysym.value:
            return 0
        if keysym.value not in self._lent:
            self._lent[keysym.value] = code = self._free_code()
            self._x.XChangeKeyboardMapping(self._display, code, 1, ctypes.byref(keysym), 1)
            self._x.XSync(self._display, 0)
        return self._lent[keysym.value]

    def _free_code(self):
        first, last, width = ctypes.c_int(), ctypes.c_int(), ctypes.c_int()
        self._x.XDisplayKeycodes(self._display, ctypes.byref(first), ctypes.byref(last))
        count = last.value - first.value + 1
        table = self._x.XGetKeyboardMapping(self._display, ctypes.c_ubyte(first.value), count, ctypes.byref(width))
        try:
            free = [first.value + i for i in range(count) if not any(table[i * width.value:(i + 1) * width.value])]
        finally:
            self._x.XFree(table)
        return next(code for code in reversed(free) if code not in self._lent.values())

    def key_if_heard(self, name, action):
        """The same, if a Windows program has the focus and receives it; returns whether it had."""
        # The server handles nobody else meanwhile, so the focus cannot move between the query and the key.
        self._x.XGrabServer(self._display)
        try:
            heard = self._hears(self._focused_class())
            if heard:
                self.key(name, action)
        finally:
            self._x.XUngrabServer(self._display)
            self._x.XSync(self._display, 0)
        return heard

    @staticmethod
    def _hears(cls):
        # A console has the focus for a moment, and receives nothing once its program has ended.
        return cls.endswith(b".exe") and cls != b"conhost.exe"

    def _focused_class(self):
        """The class of the window with the focus: Wine names it after the program."""
        window, revert, hint = ctypes.c_ulong(), ctypes.c_int(), _ClassHint()
        self._x.XGetInputFocus(self._display, ctypes.byref(window), ctypes.byref(revert))
        # 0 is nobody, 1 is the window under the mouse.
        if window.value <= 1 or not self._x.XGetClassHint(self._display, window, ctypes.byref(hint)):
            return b""
        try:
            return ctypes.string_at(hint.cls)
        finally:
            for text in (hint.name, hint.cls):
                self._x.XFree(ctypes.c_void_p(text))
