#include "UI/ItemDlg/ItemsFixture.h"
#include "common/Rendering.h"
#include "support/LeakCheck.h"

namespace items {
namespace {

FenwynDisplayRecord record(const std::wstring& connector, ULONG index = 0, ULONG width = 1920, ULONG height = 1080) {
    FenwynDisplayRecord result{};
    connector.copy(result.szConnector, FENWYN_CONNECTOR_CHARS);
    result.uDisplayIndex = index;
    result.uWidth = width;
    result.uHeight = height;
    return result;
}

struct Connector {
    const wchar_t* name;
    UINT image;  // 0: none
};
class OutputConnector : public ItemTest, public testing::WithParamInterface<Connector> {};

TEST_P(OutputConnector, FirstWordOfTheListThatTheNameContainsDecides) {
    UINT image = 7;
    EXPECT_EQ(COutputPreviewWnd::getConnectorImageID(GetParam().name, &image), GetParam().image != 0 ? S_OK : E_FAIL);
    EXPECT_EQ(image, GetParam().image != 0 ? GetParam().image : 7);
}

INSTANTIATE_TEST_SUITE_P(Names, OutputConnector,
                         testing::Values(Connector{L"LCD", 296}, Connector{L"RGB", 297}, Connector{L"DVI", 299},
                                         Connector{L"HDMI", 298}, Connector{L"DisplayPort", 300},
                                         Connector{L"HDMI-DVI", 299}, Connector{L"DisplayPort HDMI", 298},
                                         Connector{L"RGB over LCD", 296}, Connector{L"Internal LCD 2", 296},
                                         Connector{L"hdmi", 0}, Connector{L"Displayport", 0}, Connector{L"", 0}));

class OutputPreview : public ItemTest {
 protected:
    COutputPreviewWnd& make(const std::vector<FenwynDisplayRecord>& records, bool resolutions = false) {
        m_pPreview =
            std::make_unique<COutputPreviewWnd>(records.data(), static_cast<DWORD>(records.size()), resolutions);
        return *m_pPreview;
    }
    [[nodiscard]] const OutputPreviewSeam::Rows& rows() const { return OutputPreviewSeam::rows(*m_pPreview); }
    // Creates the window, shows it, and returns its pixels.
    std::unique_ptr<rendering::Canvas> painted() {
        EXPECT_TRUE(m_pPreview->Create(nullptr));
        EXPECT_EQ(m_pPreview->setWndPos(&kItem, m_room.placement()), S_OK);
        ::ShowWindow(m_pPreview->m_hWnd, SW_SHOWNOACTIVATE);
        paintNow(m_pPreview->m_hWnd);
        auto canvas = std::make_unique<rendering::Canvas>(120, 200);
        const common::WindowDc dc(m_pPreview->m_hWnd);
        ::BitBlt(canvas->dc(), 0, 0, 120, 200, dc.get(), 0, 0, SRCCOPY);
        return canvas;
    }

    std::unique_ptr<COutputPreviewWnd> m_pPreview;
};

TEST_F(OutputPreview, IsPlacedWithoutTakingTheFocus) {
    const HWND other = ::CreateWindowExW(0, L"STATIC", L"", WS_POPUP | WS_VISIBLE, 900, 500, 50, 50, nullptr, nullptr,
                                         nullptr, nullptr);
    ::SetActiveWindow(other);
    static_cast<void>(make({record(L"LCD")}));
    painted();
    EXPECT_EQ(::GetActiveWindow(), other);
    ::DestroyWindow(other);
}

// Dark pixels of the area, such as text.
int ink(const rendering::Canvas& canvas, const RECT& area) {
    int count = 0;
    for (int y = area.top; y < area.bottom; ++y) {
        for (int x = area.left; x < area.right; ++x) {
            count += (canvas.at(x, y) & 0xFFU) < 0x60 ? 1 : 0;
        }
    }
    return count;
}

TEST_F(OutputPreview, ConnectorNeedsBothPointers) {
    UINT image = 0;
    EXPECT_TRUE(FAILED(COutputPreviewWnd::getConnectorImageID(nullptr, &image)));
    EXPECT_TRUE(FAILED(COutputPreviewWnd::getConnectorImageID(L"LCD", nullptr)));
    const std::wstring line =
        L"[ERR] (COutputPreviewWnd::getConnectorImageID): ASSERT( (NULL != pszConnectorName) && (NULL != puImageID) )";
    EXPECT_EQ(errors(), (std::vector<std::wstring>{line, line}));
}

TEST_F(OutputPreview, UnknownConnectorIsLoggedWithItsFirstFortyNineCharacters) {
    UINT image = 0;
    const std::wstring name(60, L'x');
    m_log.clear();
    EXPECT_EQ(COutputPreviewWnd::getConnectorImageID(name.c_str(), &image), E_FAIL);
    const std::wstring tag = L"(COutputPreviewWnd::getConnectorImageID): ";
    EXPECT_EQ(m_log.lines(), (std::vector<std::wstring>{
                                 L"[ERR] " + tag + L"Cannot find the connector type: " + name.substr(0, 49) + L".",
                                 L"[ERR] " + tag + L"ASSERT( !\"Cannot find the connector type.\" )"}));
}

TEST_F(OutputPreview, HasARowForEachKnownConnectorWithItsOwnNumber) {
    make({record(L"LCD", 0, 1366, 768), record(L"hdmi", 1), record(L"HDMI 2", 2, 3840, 2160)});
    ASSERT_EQ(rows().size(), 2U);
    EXPECT_EQ(rows()[0]->strNumber, L"1");
    EXPECT_EQ(rows()[0]->strConnector, L"LCD");
    EXPECT_EQ(rows()[0]->strResolution, L"1366x768");
    EXPECT_NE(rows()[0]->pConnectorImage, nullptr);
    EXPECT_EQ(rows()[1]->strNumber, L"3");
    EXPECT_EQ(rows()[1]->strConnector, L"HDMI 2");
    EXPECT_EQ(rows()[1]->strResolution, L"3840x2160");
    EXPECT_TRUE(logged(L"[ERR] (COutputPreviewWnd::getConnectorImageID): Cannot find the connector type: hdmi."));

    ASSERT_TRUE(m_pPreview->Create(nullptr));
    ASSERT_EQ(m_pPreview->setWndPos(&kItem, m_room.placement()), S_OK);
    EXPECT_EQ(windowRect(m_pPreview->m_hWnd), rect(276, 282, 396, 362));
}

TEST_F(OutputPreview, NumbersAndResolutionsAreCut) {
    make({record(L"LCD", 123455, 0x7FFFFFFF, 0x7FFFFFFF), record(L"LCD", 0xFFFFFFFF, 0xFFFFFFFF, 0x80000000)});
    ASSERT_EQ(rows().size(), 2U);
    EXPECT_EQ(rows()[0]->strNumber, L"12345");
    EXPECT_EQ(rows()[0]->strResolution, L"2147483647x214748364");
    EXPECT_EQ(rows()[1]->strNumber, L"0");
    EXPECT_EQ(rows()[1]->strResolution, L"-1x-2147483648");
}

TEST_F(OutputPreview, NameWithoutAnEndStopsWhereItsFieldDoes) {
    const std::wstring name = L"LCD" + std::wstring(FENWYN_CONNECTOR_CHARS - 3, L'y');
    FenwynDisplayRecord unterminated = record(name, 0x00410041);
    make({unterminated});
    ASSERT_EQ(rows().size(), 1U);
    EXPECT_EQ(rows()[0]->strConnector, name);
}

TEST_F(OutputPreview, RecordsAreCopied) {
    std::vector<FenwynDisplayRecord> records{record(L"DVI")};
    make(records);
    records[0] = record(L"LCD");
    EXPECT_EQ(rows()[0]->strConnector, L"DVI");
}

TEST_F(OutputPreview, MissingRecordsAndAbsurdCountsAreHarmless) {
    const COutputPreviewWnd none(nullptr, 5, true);
    EXPECT_TRUE(OutputPreviewSeam::rows(none).empty());
    EXPECT_EQ(FENWYN_MAX_RECORDS, 64U);
    const std::vector<FenwynDisplayRecord> many(FENWYN_MAX_RECORDS, record(L"LCD"));
    const COutputPreviewWnd bounded(many.data(), 0xFFFFFFFF, true);
    EXPECT_EQ(OutputPreviewSeam::rows(bounded).size(), 64U);
}

TEST_F(OutputPreview, WithoutPicturesThereAreNoRows) {
    m_room.withoutPictures();
    make({record(L"LCD")});
    EXPECT_TRUE(rows().empty());
    EXPECT_TRUE(logged(L"[ERR] (CZelMainApp::getPngDll): ASSERT( m_hPngDll )"));
}

TEST_F(OutputPreview, PictureThatCannotBeDecodedGivesNoRow) {
    const std::wstring library = instr::InstrumentedPlugin::pathOf(L"siblings\\CardArt");
    ZelMainSeam::pngDll().reset(::LoadLibraryExW(library.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE));
    ASSERT_TRUE(ZelMainSeam::pngDll());
    m_log.clear();
    make({record(L"LCD", 0), record(L"HDMI", 1)});
    ASSERT_EQ(rows().size(), 1U);
    EXPECT_EQ(rows()[0]->strConnector, L"HDMI");
    EXPECT_EQ(errors(), std::vector<std::wstring>{L"[ERR] (makeRow): The picture 296 cannot be decoded."});
}

TEST_F(OutputPreview, LiesAboveTheCardsAtTheBottom) {
    m_room.setBottom(true);
    make({record(L"LCD"), record(L"DVI", 1)});
    ASSERT_TRUE(m_pPreview->Create(nullptr));
    ASSERT_EQ(m_pPreview->setWndPos(&kItem, m_room.placement()), S_OK);
    RECT workArea{};
    ::SystemParametersInfoW(SPI_GETWORKAREA, 0, &workArea, 0);
    const RECT place = windowRect(m_pPreview->m_hWnd);
    EXPECT_EQ(place.top, workArea.bottom - 390);
    EXPECT_EQ(place.bottom - place.top, 80);
    EXPECT_EQ(place.left, 276);
}

TEST_F(OutputPreview, CentreLeftOfTheScreenIsHalvedTowardZero) {
    make({record(L"LCD")});
    ASSERT_TRUE(m_pPreview->Create(nullptr));
    const RECT item{-100, 0, -29, 72};
    ASSERT_EQ(m_pPreview->setWndPos(&item, m_room.placement()), S_OK);
    EXPECT_EQ(windowRect(m_pPreview->m_hWnd).left, -64 - 60);
}

TEST_F(OutputPreview, NoPlaceIsAnError) {
    make({});
    EXPECT_EQ(m_pPreview->setWndPos(nullptr, m_room.placement()), E_POINTER);
    EXPECT_EQ(errors(), std::vector<std::wstring>{L"[ERR] (COutputPreviewWnd::setWndPos): Error Code: 0x80004003"});
}

TEST_F(OutputPreview, DrawsBorderAndSeparators) {
    make({record(L"LCD"), record(L"DVI", 1)});
    const auto canvas = painted();
    constexpr DWORD kLine = 0xA9A9A9;
    const auto at = [&](int x, int y) { return canvas->at(x, y) & 0xFFFFFFU; };
    EXPECT_EQ(at(0, 0), kLine);
    EXPECT_EQ(at(119, 30), kLine);
    EXPECT_EQ(at(60, 79), kLine);
    EXPECT_EQ(at(0, 60), kLine);
    EXPECT_EQ(at(60, 40), kLine);
    EXPECT_EQ(at(5, 40), kLine);
    EXPECT_NE(at(2, 40), kLine) << "separators stay four pixels off the edges";
    EXPECT_NE(at(60, 20), kLine);
}

TEST_F(OutputPreview, EachRowHasNumberNameAndPicture) {
    make({record(L"LCD"), record(L"DVI", 1)});
    const auto canvas = painted();
    for (const int top : {0, 40}) {
        EXPECT_GT(ink(*canvas, {5, top + 10, 17, top + 32}), 3) << "number";
        EXPECT_GT(ink(*canvas, {19, top + 12, 80, top + 30}), 10) << "name, in the middle without a resolution";
        int picture = 0;
        const DWORD ground = canvas->at(100, top + 2);
        for (int y = top + 4; y < top + 36; ++y) {
            for (int x = 84; x < 116; ++x) {
                picture += canvas->at(x, y) != ground ? 1 : 0;
            }
        }
        EXPECT_GT(picture, 60);
    }
}

TEST_F(OutputPreview, ResolutionSharesTheRowWithTheName) {
    make({record(L"LCD", 0, 1920, 1080)}, true);
    const auto canvas = painted();
    EXPECT_GT(ink(*canvas, {19, 4, 80, 19}), 10) << "name at the top";
    EXPECT_GT(ink(*canvas, {19, 21, 80, 37}), 10) << "resolution at the bottom";
    EXPECT_EQ(ink(*canvas, {1, 36, 80, 39}), 0) << "four pixels off the next row";
}

TEST_F(OutputPreview, LeaksNothing) {
    testsupport::expectNoLeak(10, 100, [this](int) {
        make({record(L"LCD"), record(L"DVI", 1), record(L"nothing")}, true);
        painted();
        m_pPreview.reset();
        support::pump();
        m_log.clear();
    });
}

}  // namespace
}  // namespace items
