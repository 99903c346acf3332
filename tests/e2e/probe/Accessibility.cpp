// Reads windows as a screen reader does: from another process, through the system's accessible objects, and by the
// events that programs announce.
#include <windows.h>

#include <oleacc.h>

#include <functional>

#include "Commands.h"
#include "Json.h"

namespace probe {

namespace {

constexpr LONG kDeepest = 4;

// Releases what it holds.
template <typename Interface>
class Held {
 public:
    Held() = default;
    ~Held() { reset(); }
    Held(const Held&) = delete;
    Held& operator=(const Held&) = delete;

    void reset(Interface* value = nullptr) {
        if (m_value != nullptr) {
            m_value->Release();
        }
        m_value = value;
    }
    [[nodiscard]] Interface** put() {
        reset();
        return &m_value;
    }
    [[nodiscard]] Interface* get() const { return m_value; }
    Interface* operator->() const { return m_value; }
    explicit operator bool() const { return m_value != nullptr; }

 private:
    Interface* m_value = nullptr;
};

using Object = Held<IAccessible>;

VARIANT numbered(LONG value) {
    VARIANT result{};
    result.vt = VT_I4;
    result.lVal = value;
    return result;
}

HWND toWindow(const std::wstring& text) {
    return reinterpret_cast<HWND>(static_cast<LONG_PTR>(toNumber(text)));
}

HRESULT objectOf(HWND window, Object& object) {
    return ::AccessibleObjectFromWindow(window, static_cast<DWORD>(OBJID_CLIENT), __uuidof(IAccessible),
                                        reinterpret_cast<void**>(object.put()));
}

using TextOf = HRESULT (STDMETHODCALLTYPE IAccessible::*)(VARIANT, BSTR*);

std::string textOf(IAccessible* object, LONG part, TextOf get) {
    BSTR value = nullptr;
    (object->*get)(numbered(part), &value);
    const std::string answer = quoted(value == nullptr ? L"" : value);
    ::SysFreeString(value);
    return answer;
}

using NumberOf = HRESULT (STDMETHODCALLTYPE IAccessible::*)(VARIANT, VARIANT*);

std::string numberOf(IAccessible* object, LONG part, NumberOf get) {
    VARIANT value{};
    (object->*get)(numbered(part), &value);
    return number(value.vt == VT_I4 ? value.lVal : -1);
}

std::string describe(IAccessible* object, LONG part, LONG depth);

// A child is a part of the object, or an object itself.
std::string describeChild(IAccessible* object, LONG child, LONG depth) {
    Held<IDispatch> dispatch;
    object->get_accChild(numbered(child), dispatch.put());
    Object own;
    if (dispatch) {
        dispatch->QueryInterface(__uuidof(IAccessible), reinterpret_cast<void**>(own.put()));
    }
    return own ? describe(own.get(), CHILDID_SELF, depth) : describe(object, child, depth);
}

std::string children(IAccessible* object, LONG depth) {
    long count = 0;
    object->get_accChildCount(&count);
    std::vector<std::string> list;
    for (LONG child = 1; child <= count && depth < kDeepest; ++child) {
        list.push_back(describeChild(object, child, depth + 1));
    }
    return array(list);
}

std::string describe(IAccessible* object, LONG part, LONG depth) {
    long left = 0;
    long top = 0;
    long width = 0;
    long height = 0;
    object->accLocation(&left, &top, &width, &height, numbered(part));
    return probe::object({
        {"role", numberOf(object, part, &IAccessible::get_accRole)},
        {"name", textOf(object, part, &IAccessible::get_accName)},
        {"value", textOf(object, part, &IAccessible::get_accValue)},
        {"description", textOf(object, part, &IAccessible::get_accDescription)},
        {"state", numberOf(object, part, &IAccessible::get_accState)},
        {"action", textOf(object, part, &IAccessible::get_accDefaultAction)},
        {"rect", array({number(left), number(top), number(left + width), number(top + height)})},
        {"children", part == CHILDID_SELF ? children(object, depth) : array({})},
    });
}

// Objects of other processes are asked on a thread of their own: the window thread is answering a message meanwhile.
std::string onThreadOfItsOwn(const std::function<std::string()>& work) {
    struct Job {
        const std::function<std::string()>& work;
        std::string answer;
    } job{work, {}};
    const HANDLE thread = ::CreateThread(
        nullptr, 0,
        [](void* parameter) -> DWORD {
            auto& own = *static_cast<Job*>(parameter);
            const HRESULT status = ::CoInitializeEx(nullptr, COINIT_MULTITHREADED);
            own.answer = FAILED(status) ? error(L"no COM") : own.work();
            ::CoUninitialize();
            return 0;
        },
        &job, 0, nullptr);
    if (thread == nullptr) {
        return error(L"no thread");
    }
    ::WaitForSingleObject(thread, INFINITE);
    ::CloseHandle(thread);
    return job.answer;
}

// Calls the operation on the object of the window, whose number is the first argument.
std::string withObject(const Arguments& arguments, const std::function<std::string(IAccessible*)>& work) {
    return onThreadOfItsOwn([&] {
        Object object;
        const HRESULT status = objectOf(toWindow(arguments[0]), object);
        return FAILED(status) ? error(L"no object: " + std::to_wstring(status)) : work(object.get());
    });
}

// What happened, as a screen reader hears it.
std::vector<std::string>& heard() {
    static std::vector<std::string> all;
    return all;
}

void CALLBACK hear(HWINEVENTHOOK, DWORD event, HWND window, LONG objectId, LONG child, DWORD, DWORD) {
    if (window == nullptr || (objectId != OBJID_CLIENT && objectId != OBJID_WINDOW)) {
        return;
    }
    DWORD process = 0;
    ::GetWindowThreadProcessId(window, &process);
    // This thread cannot answer for its own windows meanwhile.
    const bool readable = objectId == OBJID_CLIENT && process != ::GetCurrentProcessId();
    wchar_t title[64] = L"";
    ::InternalGetWindowText(window, title, static_cast<int>(std::size(title)));
    // At once, as a screen reader does. Elsewhere, because events that come while this thread waits for a call are
    // lost.
    heard().push_back(onThreadOfItsOwn([&] {
        VARIANT part{};
        Object object;
        const HRESULT status = readable ? ::AccessibleObjectFromEvent(window, static_cast<DWORD>(objectId),
                                                                      static_cast<DWORD>(child), object.put(), &part)
                                        : E_FAIL;
        const auto say = [&](TextOf get) {
            return FAILED(status) ? quoted(title) : textOf(object.get(), part.lVal, get);
        };
        return probe::object({{"event", number(event)},
                              {"hwnd", number(reinterpret_cast<LONG_PTR>(window))},
                              {"object", number(objectId)},
                              {"child", number(child)},
                              {"name", say(&IAccessible::get_accName)},
                              {"value", say(&IAccessible::get_accValue)}});
    }));
}

}  // namespace

std::string readAccessible(const Arguments& arguments) {
    return withObject(arguments, [](IAccessible* object) { return describe(object, CHILDID_SELF, 0); });
}

std::string pressAccessible(const Arguments& arguments) {
    const auto part = static_cast<LONG>(toNumber(arguments[1]));
    return withObject(arguments,
                      [&](IAccessible* object) { return number(object->accDoDefaultAction(numbered(part))); });
}

std::string setAccessible(const Arguments& arguments) {
    return withObject(arguments, [&](IAccessible* object) {
        const BSTR value = ::SysAllocString(arguments[1].c_str());
        const HRESULT status = object->put_accValue(numbered(CHILDID_SELF), value);
        ::SysFreeString(value);
        return number(status);
    });
}

std::string accessibleAt(const Arguments& arguments) {
    return onThreadOfItsOwn([&] {
        const POINT point{static_cast<LONG>(toNumber(arguments[0])), static_cast<LONG>(toNumber(arguments[1]))};
        Object object;
        VARIANT part{};
        const HRESULT status = ::AccessibleObjectFromPoint(point, object.put(), &part);
        return FAILED(status) ? error(L"nothing there") : describe(object.get(), part.lVal, kDeepest);
    });
}

std::string listen(const Arguments& /*arguments*/) {
    static HWINEVENTHOOK hook = nullptr;
    if (hook == nullptr) {
        ::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);  // the events are told on this thread
        hook = ::SetWinEventHook(EVENT_MIN, EVENT_MAX, nullptr, hear, 0, 0,
                                 WINEVENT_OUTOFCONTEXT | WINEVENT_SKIPOWNPROCESS);
    }
    heard().clear();
    return boolean(hook != nullptr);
}

std::string heardEvents(const Arguments& /*arguments*/) {
    return array(heard());
}

}  // namespace probe
