// ImageObject in both modes: construction, loading from the pack, block ownership, sizes, attaching
// bitmaps with their palettes, and what destroy gives back.
#include <gtest/gtest.h>
#include <windows.h>

#include <cstring>

#include "app/platform.h"
#include "gfx/dib.h"
#include "gfx/image_object_win32.h"
#include "gfx/pack.h"
#include "win32_support.h"

namespace {

constexpr uint32_t kEightBitId = 6000;
constexpr uint32_t kTrueColourId = 244;
constexpr uint32_t kAbsentId = 4321;

// The game's pack, opened on a small pack written for the test.
class PackedImage : public ::testing::Test {
protected:
    TempFolder folder;
    uint8_t* eightBit = nullptr;
    uint8_t* trueColour = nullptr;

    void SetUp() override {
        eightBit = MakeDib8(5, 3, 4, [](int x, int y) { return uint8_t((x + y) % 4); });
        trueColour = MakeDib24(3, 2, [](int x, int y) { return PatternColor(x, y, 5); });
        ASSERT_NE(eightBit, nullptr);
        ASSERT_NE(trueColour, nullptr);
        std::string path = folder.File("Tavirel.rf");
        ASSERT_TRUE(WriteTestPack(path, {{kEightBitId, eightBit}, {kTrueColourId, trueColour}}));
        ASSERT_TRUE(OpenPack(&g_pack, path.c_str()));
    }
    void TearDown() override {
        ClosePack(&g_pack);
        FreePackedDib(eightBit);
        FreePackedDib(trueColour);
    }
};

// An 8- or 4-bit DIB section whose colour table holds TestPaletteEntry(0..colors-1).
HBITMAP MakePaletteSection(int width, int height, int bits, int colors) {
    struct {
        BITMAPINFOHEADER header;
        RGBQUAD table[256];
    } info;
    std::memset(&info, 0, sizeof info);
    info.header.biSize = sizeof info.header;
    info.header.biWidth = width;
    info.header.biHeight = height;
    info.header.biPlanes = 1;
    info.header.biBitCount = WORD(bits);
    info.header.biClrUsed = DWORD(colors);
    for (int i = 0; i < colors; ++i) {
        COLORREF c = TestPaletteEntry(uint32_t(i));
        info.table[i] = RGBQUAD{GetBValue(c), GetGValue(c), GetRValue(c), 0};
    }
    void* pixels = nullptr;
    return CreateDIBSection(nullptr, reinterpret_cast<BITMAPINFO*>(&info), DIB_RGB_COLORS, &pixels, nullptr, 0);
}

HBITMAP MakeTrueColourSection(int width, int height) {
    BITMAPINFO info = {};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 24;
    void* bits = nullptr;
    return CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
}

void BitmapSize(HBITMAP bitmap, int* width, int* height) {
    BITMAP info = {};
    GetObjectA(bitmap, sizeof info, &info);
    *width = info.bmWidth;
    *height = info.bmHeight;
}

// True when the bitmap is selected into no DC: a bitmap can be selected into one DC at a time.
bool IsBitmapFree(HBITMAP bitmap) {
    HDC probe = CreateCompatibleDC(nullptr);
    HGDIOBJ old = SelectObject(probe, bitmap);
    bool selected = old != nullptr && old != HGDI_ERROR;
    if (selected) SelectObject(probe, old);
    DeleteDC(probe);
    return selected;
}

}  // namespace

TEST(ImageObject, PackedModeStartsAtOneByOneWithADc) {
    ImageObject image;
    ImageObject_Init(&image, false);
    EXPECT_EQ(image.memoryDcMode, 0);
    EXPECT_EQ(GetObjectType(image.dc), DWORD(OBJ_MEMDC));
    EXPECT_EQ(ImageObject_Dib(&image), nullptr);
    EXPECT_EQ(image.allocWidth, 1);
    EXPECT_EQ(image.allocHeight, 1);
    int32_t w = 0, h = 0;
    ImageObject_GetSize(&image, &w, &h);
    EXPECT_EQ(w, 1);
    EXPECT_EQ(h, 1);
    HDC dc = image.dc;
    ImageObject_Destroy(&image);
    EXPECT_EQ(GetObjectType(dc), 0u);
}

TEST(ImageObject, MemoryDcModeStartsAtOneByOneWithADc) {
    ImageObject image;
    ImageObject_Init(&image, true);
    EXPECT_EQ(image.memoryDcMode, 1);
    HDC dc = ImageObject_Dc(&image);
    EXPECT_EQ(GetObjectType(dc), DWORD(OBJ_MEMDC));
    EXPECT_EQ(image.allocWidth, 1);
    EXPECT_EQ(image.allocHeight, 1);
    int32_t w = 0, h = 0;
    ImageObject_GetSize(&image, &w, &h);
    EXPECT_EQ(w, 1);
    EXPECT_EQ(h, 1);
    EXPECT_EQ(image.savedBitmap, nullptr);
    EXPECT_EQ(image.savedPalette, nullptr);
    EXPECT_EQ(image.paletteShared, 0);
    // The DC still holds its own 1 x 1 bitmap.
    int bw = 0, bh = 0;
    BitmapSize(ImageObject_Bitmap(&image), &bw, &bh);
    EXPECT_EQ(bw, 1);
    EXPECT_EQ(bh, 1);
    ImageObject_Destroy(&image);
    EXPECT_EQ(GetObjectType(dc), 0u);
}

TEST_F(PackedImage, LoadsItemsByIdWithHeaderTableAndPixels) {
    ImageObject image;
    ImageObject_Init(&image, false);

    ASSERT_TRUE(ImageObject_LoadFromPack(&image, kEightBitId));
    const uint8_t* dib = ImageObject_Dib(&image);
    ASSERT_NE(dib, nullptr);
    const DibHeader* h = DibHeaderOf(dib);
    EXPECT_EQ(h->biSize, 40u);
    EXPECT_EQ(h->biWidth, 5);
    EXPECT_EQ(h->biHeight, 3);
    EXPECT_EQ(h->biBitCount, 8);
    EXPECT_EQ(h->biClrUsed, 4u);
    EXPECT_EQ(h->biSizeImage, 24u);
    EXPECT_EQ(std::memcmp(DibPalette(dib), DibPalette(eightBit), 4 * sizeof(DibColor)), 0);
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 5; ++x) EXPECT_EQ(DibAt(dib, x, y), uint32_t((x + y) % 4)) << x << "," << y;
    int32_t w = 0, hh = 0;
    ImageObject_GetSize(&image, &w, &hh);
    EXPECT_EQ(w, 5);
    EXPECT_EQ(hh, 3);

    ASSERT_TRUE(ImageObject_LoadFromPack(&image, kTrueColourId));
    dib = ImageObject_Dib(&image);
    h = DibHeaderOf(dib);
    EXPECT_EQ(h->biWidth, 3);
    EXPECT_EQ(h->biHeight, 2);
    EXPECT_EQ(h->biBitCount, 24);
    EXPECT_EQ(h->biClrUsed, 0u);
    EXPECT_EQ(h->biSizeImage, 24u);
    // Pixels start at 1,064 even with no colour table.
    EXPECT_EQ(std::memcmp(dib + 1064, DibPixels(trueColour), 24), 0);
    for (int y = 0; y < 2; ++y)
        for (int x = 0; x < 3; ++x) EXPECT_EQ(DibAt(dib, x, y), uint32_t(PatternColor(x, y, 5)));
    ImageObject_GetSize(&image, &w, &hh);
    EXPECT_EQ(w, 3);
    EXPECT_EQ(hh, 2);
    ImageObject_Destroy(&image);
}

TEST_F(PackedImage, AbsentIdFailsAndKeepsTheOldBlock) {
    ImageObject image;
    ImageObject_Init(&image, false);
    EXPECT_FALSE(ImageObject_LoadFromPack(&image, kAbsentId));
    EXPECT_EQ(ImageObject_Dib(&image), nullptr);

    ASSERT_TRUE(ImageObject_LoadFromPack(&image, kEightBitId));
    const uint8_t* before = ImageObject_Dib(&image);
    size_t live = SysLiveBlocks();
    EXPECT_FALSE(ImageObject_LoadFromPack(&image, kAbsentId));
    EXPECT_EQ(ImageObject_Dib(&image), before);
    EXPECT_EQ(SysLiveBlocks(), live);
    EXPECT_EQ(DibHeaderOf(before)->biWidth, 5);
    EXPECT_EQ(DibAt(before, 4, 2), uint32_t((4 + 2) % 4));
    ImageObject_Destroy(&image);
}

TEST_F(PackedImage, ReloadsAndResizesFreeThePreviousBlock) {
    size_t baseline = SysLiveBlocks();
    ImageObject image;
    ImageObject_Init(&image, false);
    EXPECT_EQ(SysLiveBlocks(), baseline);
    ASSERT_TRUE(ImageObject_LoadFromPack(&image, kEightBitId));
    EXPECT_EQ(SysLiveBlocks(), baseline + 1);
    for (int i = 0; i < 200; ++i) {
        ASSERT_TRUE(ImageObject_LoadFromPack(&image, i % 2 ? kEightBitId : kTrueColourId));
        ASSERT_TRUE(ImageObject_SetSize(&image, 1 + i % 7, 1 + i % 5, i % 2 == 0));
        ASSERT_FALSE(ImageObject_LoadFromPack(&image, kAbsentId));
        ASSERT_EQ(SysLiveBlocks(), baseline + 1) << "after round " << i;
    }
    ImageObject_Destroy(&image);
    EXPECT_EQ(SysLiveBlocks(), baseline);
}

TEST(ImageObject, PackedSetSizeMakesAFreshEightBitBlock) {
    ImageObject image;
    ImageObject_Init(&image, false);
    uint8_t* big = MakeDib24(9, 9, [](int, int) { return RGB(1, 2, 3); });
    ImageObject_SetDib(&image, big);

    const struct {
        int32_t width, height;
        uint32_t stride;
    } cases[] = {{5, 3, 8}, {4, 2, 4}, {1, 1, 4}, {7, 1, 8}, {8, 3, 8}, {13, 2, 16}};
    for (const auto& c : cases) {
        ASSERT_TRUE(ImageObject_SetSize(&image, c.width, c.height, false));
        const uint8_t* dib = ImageObject_Dib(&image);
        ASSERT_NE(dib, nullptr);
        const DibHeader* h = DibHeaderOf(dib);
        EXPECT_EQ(h->biSize, 40u);
        EXPECT_EQ(h->biWidth, c.width);
        EXPECT_EQ(h->biHeight, c.height);
        EXPECT_EQ(h->biPlanes, 1);
        EXPECT_EQ(h->biBitCount, 8);
        EXPECT_EQ(h->biCompression, 0u);
        EXPECT_EQ(h->biSizeImage, c.stride * uint32_t(c.height)) << c.width << " x " << c.height;
        EXPECT_EQ(h->biXPelsPerMeter, 0);
        EXPECT_EQ(h->biYPelsPerMeter, 0);
        EXPECT_EQ(h->biClrUsed, 0u);
        EXPECT_EQ(h->biClrImportant, 0u);
        int32_t w = 0, hh = 0;
        ImageObject_GetSize(&image, &w, &hh);
        EXPECT_EQ(w, c.width);
        EXPECT_EQ(hh, c.height);
    }
    // A size that cannot be made fails and leaves the block as it was.
    const uint8_t* kept = ImageObject_Dib(&image);
    EXPECT_FALSE(ImageObject_SetSize(&image, 0, 4, false));
    EXPECT_EQ(ImageObject_Dib(&image), kept);
    ImageObject_Destroy(&image);
}

TEST(ImageObject, AttachEightBitSectionBuildsItsPalette) {
    ImageObject image;
    ImageObject_Init(&image, true);
    HBITMAP section = MakePaletteSection(12, 7, 8, 256);
    ASSERT_NE(section, nullptr);
    ASSERT_TRUE(ImageObject_Attach(&image, section, true, 0));
    EXPECT_EQ(ImageObject_Bitmap(&image), section);
    EXPECT_EQ(image.width, 12);
    EXPECT_EQ(image.height, 7);
    EXPECT_EQ(image.allocWidth, 12);
    EXPECT_EQ(image.allocHeight, 7);

    HPALETTE palette = ImageObject_Palette(&image);
    ASSERT_NE(palette, nullptr);
    EXPECT_NE(palette, static_cast<HPALETTE>(GetStockObject(DEFAULT_PALETTE)));
    EXPECT_NE(image.savedPalette, nullptr);
    PALETTEENTRY entries[256];
    std::memset(entries, 0xAB, sizeof entries);
    ASSERT_EQ(GetPaletteEntries(palette, 0, 256, entries), 256u);
    EXPECT_EQ(GetPaletteEntries(palette, 0, 0, nullptr), 256u);
    for (int i = 0; i < 256; ++i) {
        COLORREF c = TestPaletteEntry(uint32_t(i));
        EXPECT_EQ(entries[i].peRed, GetRValue(c)) << "entry " << i;
        EXPECT_EQ(entries[i].peGreen, GetGValue(c)) << "entry " << i;
        EXPECT_EQ(entries[i].peBlue, GetBValue(c)) << "entry " << i;
        EXPECT_EQ(entries[i].peFlags, 0) << "entry " << i;
    }
    ImageObject_Destroy(&image);
    EXPECT_EQ(GetObjectType(section), 0u);
    EXPECT_EQ(GetObjectType(palette), 0u);
}

TEST(ImageObject, AttachFourBitSectionBuildsSixteenEntries) {
    ImageObject image;
    ImageObject_Init(&image, true);
    HBITMAP section = MakePaletteSection(6, 4, 4, 16);
    ASSERT_NE(section, nullptr);
    ASSERT_TRUE(ImageObject_Attach(&image, section, true, 0));
    HPALETTE palette = ImageObject_Palette(&image);
    ASSERT_EQ(GetPaletteEntries(palette, 0, 0, nullptr), 16u);
    PALETTEENTRY entries[16];
    ASSERT_EQ(GetPaletteEntries(palette, 0, 16, entries), 16u);
    for (int i = 0; i < 16; ++i) {
        COLORREF c = TestPaletteEntry(uint32_t(i));
        EXPECT_EQ(RGB(entries[i].peRed, entries[i].peGreen, entries[i].peBlue), c) << "entry " << i;
    }
    ImageObject_Destroy(&image);
}

TEST(ImageObject, AttachTrueColourBitmapMakesNoPalette) {
    ImageObject image;
    ImageObject_Init(&image, true);
    HPALETTE initial = ImageObject_Palette(&image);
    HBITMAP section = MakeTrueColourSection(10, 4);
    ASSERT_NE(section, nullptr);
    ASSERT_TRUE(ImageObject_Attach(&image, section, true, 256));
    EXPECT_EQ(ImageObject_Palette(&image), initial);
    EXPECT_EQ(image.savedPalette, nullptr);
    EXPECT_EQ(image.width, 10);
    EXPECT_EQ(image.height, 4);

    HDC screen = GetDC(nullptr);
    HBITMAP compatible = CreateCompatibleBitmap(screen, 3, 3);
    ReleaseDC(nullptr, screen);
    ASSERT_TRUE(ImageObject_Attach(&image, compatible, true, 256));
    EXPECT_EQ(ImageObject_Palette(&image), initial);
    EXPECT_EQ(GetObjectType(section), 0u);
    ImageObject_Destroy(&image);
    EXPECT_EQ(GetObjectType(compatible), 0u);
}

TEST(ImageObject, AttachDeletesOnlyOwnedReplacedBitmapsAndPalettes) {
    ImageObject image;
    ImageObject_Init(&image, true);
    HBITMAP owned = MakePaletteSection(4, 4, 8, 256);
    HBITMAP borrowed = MakePaletteSection(5, 5, 8, 256);
    HBITMAP last = MakeTrueColourSection(2, 2);
    ASSERT_TRUE(owned && borrowed && last);

    ASSERT_TRUE(ImageObject_Attach(&image, owned, true, 0));
    HPALETTE firstPalette = ImageObject_Palette(&image);
    ASSERT_TRUE(ImageObject_Attach(&image, borrowed, false, 0));
    EXPECT_EQ(GetObjectType(owned), 0u) << "the owned bitmap outlived its replacement";
    EXPECT_EQ(GetObjectType(firstPalette), 0u) << "the replaced palette was kept";
    HPALETTE secondPalette = ImageObject_Palette(&image);
    EXPECT_NE(secondPalette, firstPalette);

    // A palette marked as shared survives its replacement, and the mark is cleared.
    image.paletteShared = 1;
    HBITMAP again = MakePaletteSection(3, 3, 8, 256);
    ASSERT_TRUE(ImageObject_Attach(&image, again, true, 0));
    EXPECT_EQ(GetObjectType(secondPalette), DWORD(OBJ_PAL));
    EXPECT_EQ(image.paletteShared, 0);
    EXPECT_EQ(GetObjectType(borrowed), DWORD(OBJ_BITMAP)) << "a borrowed bitmap was deleted";
    EXPECT_TRUE(IsBitmapFree(borrowed));

    ASSERT_TRUE(ImageObject_Attach(&image, last, true, 0));
    EXPECT_EQ(GetObjectType(again), 0u);
    ImageObject_Destroy(&image);
    EXPECT_EQ(GetObjectType(last), 0u);
    DeleteObject(borrowed);
    DeleteObject(secondPalette);
}

TEST(ImageObject, AttachOfABitmapThatCannotBeSelectedFails) {
    ImageObject image;
    ImageObject_Init(&image, true);
    Canvas holder(4, 4, RGB(0, 0, 0));  // keeps its bitmap selected
    EXPECT_FALSE(ImageObject_Attach(&image, holder.bitmap, false, 0));
    EXPECT_EQ(GetObjectType(holder.bitmap), DWORD(OBJ_BITMAP));
    EXPECT_EQ(image.width, 1);
    ImageObject_Destroy(&image);
}

TEST(ImageObject, MemorySetSizeGrowsOnlyWhenItMust) {
    ImageObject image;
    ImageObject_Init(&image, true);
    int bw = 0, bh = 0;
    int32_t w = 0, h = 0;

    ASSERT_TRUE(ImageObject_SetSize(&image, 40, 30, false));
    HBITMAP first = ImageObject_Bitmap(&image);
    BitmapSize(first, &bw, &bh);
    EXPECT_EQ(bw, 40);
    EXPECT_EQ(bh, 30);

    // Inside the allocation: same bitmap, only the logical size moves.
    ASSERT_TRUE(ImageObject_SetSize(&image, 20, 10, false));
    EXPECT_EQ(ImageObject_Bitmap(&image), first);
    ImageObject_GetSize(&image, &w, &h);
    EXPECT_EQ(w, 20);
    EXPECT_EQ(h, 10);
    EXPECT_EQ(image.allocWidth, 40);
    EXPECT_EQ(image.allocHeight, 30);

    // Wider only: a new bitmap of max(requested, allocated) each way; the old one is deleted.
    ASSERT_TRUE(ImageObject_SetSize(&image, 50, 20, false));
    HBITMAP second = ImageObject_Bitmap(&image);
    EXPECT_NE(second, first);
    EXPECT_EQ(GetObjectType(first), 0u);
    BitmapSize(second, &bw, &bh);
    EXPECT_EQ(bw, 50);
    EXPECT_EQ(bh, 30);
    ImageObject_GetSize(&image, &w, &h);
    EXPECT_EQ(w, 50);
    EXPECT_EQ(h, 20);
    EXPECT_EQ(image.allocWidth, 50);
    EXPECT_EQ(image.allocHeight, 30);

    // Taller only.
    ASSERT_TRUE(ImageObject_SetSize(&image, 5, 45, false));
    BitmapSize(ImageObject_Bitmap(&image), &bw, &bh);
    EXPECT_EQ(bw, 50);
    EXPECT_EQ(bh, 45);

    // Exact: exactly the request, even inside the allocation.
    HBITMAP beforeExact = ImageObject_Bitmap(&image);
    ASSERT_TRUE(ImageObject_SetSize(&image, 10, 12, true));
    EXPECT_NE(ImageObject_Bitmap(&image), beforeExact);
    EXPECT_EQ(GetObjectType(beforeExact), 0u);
    BitmapSize(ImageObject_Bitmap(&image), &bw, &bh);
    EXPECT_EQ(bw, 10);
    EXPECT_EQ(bh, 12);
    EXPECT_EQ(image.allocWidth, 10);
    EXPECT_EQ(image.allocHeight, 12);
    ImageObject_GetSize(&image, &w, &h);
    EXPECT_EQ(w, 10);
    EXPECT_EQ(h, 12);

    HBITMAP lastHeld = ImageObject_Bitmap(&image);
    ImageObject_Destroy(&image);
    EXPECT_EQ(GetObjectType(lastHeld), 0u);
}

TEST(ImageObject, MemorySetSizeReplacesAnOwnedAttachedBitmapButNotABorrowedOne) {
    ImageObject image;
    ImageObject_Init(&image, true);
    HBITMAP borrowed = MakeTrueColourSection(8, 8);
    ASSERT_TRUE(ImageObject_Attach(&image, borrowed, false, 0));
    ASSERT_TRUE(ImageObject_SetSize(&image, 20, 4, false));
    EXPECT_EQ(GetObjectType(borrowed), DWORD(OBJ_BITMAP));
    EXPECT_TRUE(IsBitmapFree(borrowed));
    int bw = 0, bh = 0;
    BitmapSize(ImageObject_Bitmap(&image), &bw, &bh);
    EXPECT_EQ(bw, 20);
    EXPECT_EQ(bh, 8);
    ImageObject_Destroy(&image);
    DeleteObject(borrowed);
}

TEST(ImageObject, DestroyPutsTheDcsOwnObjectsBack) {
    // A borrowed bitmap and a shared palette are left alive and free to be selected elsewhere: the
    // DC gave them up for its own before it was deleted.
    ImageObject image;
    ImageObject_Init(&image, true);
    HBITMAP borrowed = MakePaletteSection(6, 6, 8, 256);
    ASSERT_TRUE(ImageObject_Attach(&image, borrowed, false, 0));
    HPALETTE palette = ImageObject_Palette(&image);
    image.paletteShared = 1;
    ImageObject_Destroy(&image);
    EXPECT_EQ(GetObjectType(borrowed), DWORD(OBJ_BITMAP));
    EXPECT_TRUE(IsBitmapFree(borrowed));
    EXPECT_EQ(GetObjectType(palette), DWORD(OBJ_PAL));
    DeleteObject(palette);
    DeleteObject(borrowed);

    // Owned ones go, which GDI allows only once they are no longer selected.
    ImageObject_Init(&image, true);
    HBITMAP owned = MakePaletteSection(6, 6, 8, 256);
    ASSERT_TRUE(ImageObject_Attach(&image, owned, true, 0));
    palette = ImageObject_Palette(&image);
    HDC dc = ImageObject_Dc(&image);
    ImageObject_Destroy(&image);
    EXPECT_EQ(GetObjectType(owned), 0u);
    EXPECT_EQ(GetObjectType(palette), 0u);
    EXPECT_EQ(GetObjectType(dc), 0u);
}

TEST(ImageObject, MemoryModeLoadOfAMissingResourceFailsAndKeepsTheBitmap) {
    ImageObject image;
    ImageObject_Init(&image, true);
    ASSERT_TRUE(ImageObject_SetSize(&image, 7, 3, true));
    HBITMAP held = ImageObject_Bitmap(&image);
    EXPECT_FALSE(ImageObject_LoadFromPack(&image, 0x7123));
    EXPECT_EQ(ImageObject_Bitmap(&image), held);
    int32_t w = 0, h = 0;
    ImageObject_GetSize(&image, &w, &h);
    EXPECT_EQ(w, 7);
    EXPECT_EQ(h, 3);
    ImageObject_Destroy(&image);
}
