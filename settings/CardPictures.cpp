#include "CardPictures.h"

#include <objidl.h>
#include <wincodec.h>

#include <algorithm>
#include <iterator>
#include <memory>

#include "FenwynFunctions.h"
#include "Logic/FuncX/FunctionTables.h"
#include "common/Picture.h"
#include "common/ProgramPath.h"
#include "common/ResourceFunc.h"

namespace settings {
namespace {

struct Release {
    void operator()(IUnknown* object) const noexcept { object->Release(); }
};
template <typename Interface>
using Com = std::unique_ptr<Interface, Release>;

template <typename Interface, typename Call>
Com<Interface> made(Call call) {
    Interface* object = nullptr;
    return Com<Interface>(SUCCEEDED(call(&object)) ? object : nullptr);
}

class CComScope {
 public:
    CComScope() : m_bStarted(SUCCEEDED(::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) {}
    ~CComScope() {
        if (m_bStarted) {
            ::CoUninitialize();
        }
    }
    CComScope(const CComScope&) = delete;
    CComScope& operator=(const CComScope&) = delete;

 private:
    bool m_bStarted;
};

struct FunctionPicture {
    std::wstring_view function;
    UINT id;
};
constexpr FunctionPicture kPictures[] = {
    {L"Mute", functiontables::kMute.look.uSmallPngId},
    {L"Lock", functiontables::kLock.look.uSmallPngId},
    {L"PowerPlan", functiontables::kPowerPlanLook.uSmallPngId},
    {L"Sleep", functiontables::kSleep.look.uSmallPngId},
    {L"Hibernate", functiontables::kHibernate.look.uSmallPngId},
    {L"Output", functiontables::kOutputLook.uSmallPngId},
    {L"Output_2", functiontables::kOutputLook.uSmallPngId},
    {L"Brightness", functiontables::kBrightnessLook.uSmallPngId},
    {L"Wireless", functiontables::kWirelessLook.uSmallPngId},
    {L"Touchpad", functiontables::kTouchpad.look.uSmallPngId},
    {L"Zoom", functiontables::kZoom.look.uSmallPngId},
    {L"CursorOverlay", functiontables::kCursorOverlay.circle.look.uSmallPngId},
    {L"NumericOverlay", functiontables::kNumOverlay.circle.look.uSmallPngId},
    {L"ODD", functiontables::kOdd.look.uSmallPngId},
    {L"KBB", functiontables::kKbb.look.uSmallPngId},
};

// By the imaging component of the system, which is loaded for this alone: the icon of the notification area, which is the
// same program, must not carry GDI+ about.
Picture decoded(IWICImagingFactory& factory, void* bytes, DWORD size) {
    Picture picture;
    const auto stream = made<IWICStream>([&](auto** out) { return factory.CreateStream(out); });
    if (!stream || FAILED(stream->InitializeFromMemory(static_cast<BYTE*>(bytes), size))) {
        return picture;
    }
    const auto decoder = made<IWICBitmapDecoder>([&](auto** out) {
        return factory.CreateDecoderFromStream(stream.get(), nullptr, WICDecodeMetadataCacheOnDemand, out);
    });
    const auto frame =
        made<IWICBitmapFrameDecode>([&](auto** out) { return decoder ? decoder->GetFrame(0, out) : E_FAIL; });
    const auto converter = made<IWICFormatConverter>([&](auto** out) { return factory.CreateFormatConverter(out); });
    UINT width = 0;
    UINT height = 0;
    if (!frame || !converter ||
        FAILED(converter->Initialize(frame.get(), GUID_WICPixelFormat32bppPBGRA, WICBitmapDitherTypeNone, nullptr, 0,
                                     WICBitmapPaletteTypeCustom)) ||
        FAILED(converter->GetSize(&width, &height))) {
        return picture;
    }
    std::vector<DWORD> pixels(std::size_t{width} * height);
    if (SUCCEEDED(converter->CopyPixels(nullptr, width * sizeof(DWORD),
                                        static_cast<UINT>(pixels.size() * sizeof(DWORD)),
                                        reinterpret_cast<BYTE*>(pixels.data())))) {
        picture = {static_cast<int>(width), static_cast<int>(height), std::move(pixels)};
    }
    return picture;
}

Picture pictureOf(IWICImagingFactory& factory, HMODULE library, UINT id) {
    const HRSRC resource = ::FindResourceW(library, MAKEINTRESOURCEW(id), kPngResourceType);
    const HGLOBAL loaded = resource != nullptr ? ::LoadResource(library, resource) : nullptr;
    return loaded != nullptr ? decoded(factory, ::LockResource(loaded), ::SizeofResource(library, resource)) : Picture{};
}

// The part of a card's picture around its glyph, in pixels.
constexpr RECT kGlyph{18, 22, 78, 62};

common::UniqueBitmap bitmapOf(const Picture& picture, SIZE size) {
    BITMAPINFO info{};
    info.bmiHeader = {sizeof info.bmiHeader, size.cx, -size.cy, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    void* bits = nullptr;
    common::UniqueBitmap bitmap(::CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0));
    if (!bitmap || picture.width == 0) {
        return bitmap;
    }
    const FramePixels frame{static_cast<DWORD*>(bits), size.cx, size.cx, size.cy};
    blendPicture(frame, scalePicture(picture, kGlyph, size), 0, 0, 255);
    return bitmap;
}

}  // namespace

UniqueImageList cardPictures(SIZE size) {
    const CComScope com;
    UniqueImageList images(
        ::ImageList_Create(size.cx, size.cy, ILC_COLOR32, static_cast<int>(std::size(fenwyn::kFunctions)), 0));
    const auto factory = made<IWICImagingFactory>([](IWICImagingFactory** out) {
        return ::CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER, IID_IWICImagingFactory,
                                  reinterpret_cast<void**>(out));
    });
    const common::UniqueModule library(
        ::LoadLibraryExW((common::programFolder() + L"\\CardArt.dll").c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE));
    for (const FunctionPicture& row : kPictures) {
        const common::UniqueBitmap bitmap =
            bitmapOf(factory && library ? pictureOf(*factory, library.get(), row.id) : Picture{}, size);
        ::ImageList_Add(images.get(), bitmap.get(), nullptr);
    }
    return images;
}

int cardPictureOf(std::wstring_view function) {
    const auto found = std::ranges::find_if(
        kPictures, [&](const FunctionPicture& row) { return fenwyn::equalNames(row.function, function); });
    return found != std::end(kPictures) ? static_cast<int>(found - std::begin(kPictures)) : -1;
}

}  // namespace settings
