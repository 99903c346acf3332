// The function names in log lines, taken from the compiler's text of a function. They are made at compile time, so they
// are checked at compile time; the tests' bodies only keep the functions alive.
#include <gtest/gtest.h>

#include <map>
#include <string_view>
#include <vector>

#include "common/DebugLog.h"

namespace {

template <std::size_t N>
consteval bool plainIs(const char (&pretty)[N], std::wstring_view expected) {
    return std::wstring_view(dbglog::functionName(pretty).plain.c_str()) == expected;
}

template <std::size_t N>
consteval bool tagIs(const char (&pretty)[N], std::wstring_view expected) {
    return std::wstring_view(dbglog::functionName(pretty).tag.c_str()) == expected;
}

template <std::size_t N>
consteval bool pathIs(const char (&path)[N], std::wstring_view expected) {
    return std::wstring_view(dbglog::sourcePath(path).c_str()) == expected;
}

#define EXPECT_NAME(expected)                              \
    static_assert(plainIs(__PRETTY_FUNCTION__, expected)); \
    static_assert(tagIs(__PRETTY_FUNCTION__, L" (" expected L")"))

struct Local {
    int value = 0;
};

HRESULT unnamedFree(int) {
    EXPECT_NAME(L"unnamedFree");
    return S_OK;
}

Local* unnamedTypeAndFunction() {
    EXPECT_NAME(L"unnamedTypeAndFunction");
    return nullptr;
}

class CUnnamed {
 public:
    void run() const { EXPECT_NAME(L"CUnnamed::run"); }
};

}  // namespace

namespace logname {

int inNamespace() {
    EXPECT_NAME(L"logname::inNamespace");
    return 0;
}

namespace {
void unnamedInside() {
    EXPECT_NAME(L"logname::unnamedInside");
}
}  // namespace

class CSample {
 public:
    CSample() { EXPECT_NAME(L"logname::CSample::CSample"); }
    virtual ~CSample() { EXPECT_NAME(L"logname::CSample::~CSample"); }
    static HRESULT staticMember() {
        EXPECT_NAME(L"logname::CSample::staticMember");
        return S_OK;
    }
    virtual HRESULT virtualMember(const wchar_t*, std::vector<DWORD>&) const {
        EXPECT_NAME(L"logname::CSample::virtualMember");
        return S_OK;
    }
    const wchar_t* pointer() noexcept {
        EXPECT_NAME(L"logname::CSample::pointer");
        return L"";
    }
    CSample& reference() {
        EXPECT_NAME(L"logname::CSample::reference");
        return *this;
    }
    std::map<std::wstring_view, std::vector<unsigned long>> templated(std::map<int, int>) {
        EXPECT_NAME(L"logname::CSample::templated");
        return {};
    }
    HRESULT (*functionPointer(int))(wchar_t) {
        EXPECT_NAME(L"logname::CSample::functionPointer");
        return nullptr;
    }
    LRESULT CALLBACK callback(HWND, UINT, WPARAM, LPARAM) {
        EXPECT_NAME(L"logname::CSample::callback");
        return 0;
    }
    int withLambda() {
        return [](int x) {
            EXPECT_NAME(L"logname::CSample::withLambda");
            return x;
        }(1);
    }
};

template <typename T>
class CTemplate {
 public:
    T member() {
        EXPECT_NAME(L"logname::CTemplate<T>::member");
        return {};
    }
};

}  // namespace logname

// Another compiler's spelling of the unnamed namespace.
static_assert(plainIs("HRESULT a::(anonymous namespace)::CCard::show(BOOL)", L"a::CCard::show"));
static_assert(plainIs("void", L"void"));
static_assert(plainIs("", L""));

static_assert(pathIs("./common/LayeredWnd.cpp", L".\\common\\LayeredWnd.cpp"));
static_assert(pathIs("ZelMain.cpp", L"ZelMain.cpp"));

TEST(LogName, IsTheQualifiedNameOfEveryKindOfFunction) {
    logname::CSample sample;
    const CUnnamed unnamed;
    unnamed.run();
    unnamedFree(0);
    logname::inNamespace();
    logname::unnamedInside();
    EXPECT_EQ(unnamedTypeAndFunction(), nullptr);
    EXPECT_EQ(logname::CSample::staticMember(), S_OK);
    std::vector<DWORD> codes;
    EXPECT_EQ(sample.virtualMember(L"", codes), S_OK);
    EXPECT_STREQ(sample.pointer(), L"");
    EXPECT_EQ(&sample.reference(), &sample);
    EXPECT_TRUE(sample.templated({}).empty());
    EXPECT_EQ(sample.functionPointer(0), nullptr);
    EXPECT_EQ(sample.callback(nullptr, 0, 0, 0), 0);
    EXPECT_EQ(sample.withLambda(), 1);
    EXPECT_EQ(logname::CTemplate<int>().member(), 0);
}

TEST(LogName, SourcePathsOfThisTreeUseBackslashes) {
    static constexpr auto path = dbglog::sourcePath(__FILE__);
    EXPECT_STREQ(path.c_str(), L".\\tests\\unit\\common\\LogNameTest.cpp");
}
