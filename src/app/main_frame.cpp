// The walnut frame of the playing screen: uncovered areas of the main window and the table's rail.
#include "app/main_frame.h"

#include <algorithm>

#include "extras/bar_layout.h"

namespace {

bool IsEmpty(const FrameBox& r) { return r.right <= r.left || r.bottom <= r.top; }

FrameBox FromBar(const BarRect& b) { return FrameBox{b.x, b.y, b.x + b.width, b.y + b.height}; }

}  // namespace

bool RectsOverlap(const FrameBox& a, const FrameBox& b) { return !IsEmpty(IntersectRects(a, b)); }

FrameBox IntersectRects(const FrameBox& a, const FrameBox& b) {
    FrameBox r{std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
                std::min(a.bottom, b.bottom)};
    if (IsEmpty(r)) {
        r.right = r.left;
        r.bottom = r.top;
    }
    return r;
}

FrameBox TableRect(int32_t screenWidth, int32_t screenHeight) {
    return FrameBox{kFrameTableLeft, kFrameTableTop, kFrameTableLeft + screenWidth - kFrameTableSpareWidth,
                     kFrameTableTop + screenHeight - kFrameTableSpareHeight};
}

FrameBox RailRing(int32_t screenWidth, int32_t screenHeight, int d) {
    FrameBox t = TableRect(screenWidth, screenHeight);
    return FrameBox{t.left - d, t.top - d, t.right + d, t.bottom + d};
}

std::vector<FrameBox> MainWindowChildren(int32_t screenWidth, int32_t screenHeight, const FrameChildren& children) {
    std::vector<FrameBox> covered;
    covered.push_back(FrameBox{0, 0, screenWidth, kFrameTitleHeight});
    covered.push_back(FromBar(ToolsBarRect(screenWidth, screenHeight)));
    covered.push_back(FromBar(OptionsBarRect(screenWidth, screenHeight)));
    covered.push_back(TableRect(screenWidth, screenHeight));
    for (int i = 0; i < kFrameSideButtons; ++i) {
        // The same place the main window gives its side buttons: the halving truncates toward zero.
        int32_t x = screenWidth - 25, y = screenHeight / 2 - 112 + 46 * i;
        covered.push_back(FrameBox{x, y, x + children.sideButtonWidth, y + children.sideButtonHeight});
    }
    int32_t infoX = screenWidth - children.infoWidth;
    covered.push_back(FrameBox{infoX, kFrameInfoTop, infoX + children.infoWidth, kFrameInfoTop + children.infoHeight});
    return covered;
}

std::vector<FrameBox> UncoveredRects(const FrameBox& area, const std::vector<FrameBox>& covered) {
    std::vector<FrameBox> out;
    if (IsEmpty(area)) return out;
    std::vector<FrameBox> cuts;  // the covered rectangles within the area
    std::vector<int32_t> edges = {area.top, area.bottom};
    for (const FrameBox& c : covered) {
        FrameBox in = IntersectRects(c, area);
        if (IsEmpty(in)) continue;
        cuts.push_back(in);
        edges.push_back(in.top);
        edges.push_back(in.bottom);
    }
    std::sort(edges.begin(), edges.end());
    edges.erase(std::unique(edges.begin(), edges.end()), edges.end());

    std::vector<size_t> open;  // pieces ending at the previous band's bottom, which may grow downwards
    std::vector<std::pair<int32_t, int32_t>> spans;
    for (size_t b = 0; b + 1 < edges.size(); ++b) {
        int32_t top = edges[b], bottom = edges[b + 1];
        // Every cut reaching into the band spans all of it: its edges are among the band edges.
        spans.clear();
        for (const FrameBox& c : cuts)
            if (c.top <= top && c.bottom >= bottom) spans.push_back({c.left, c.right});
        std::sort(spans.begin(), spans.end());
        std::vector<size_t> nowOpen;
        int32_t x = area.left;
        auto emit = [&](int32_t left, int32_t right) {
            for (size_t i : open) {
                FrameBox& r = out[i];
                if (r.left == left && r.right == right && r.bottom == top) {
                    r.bottom = bottom;
                    nowOpen.push_back(i);
                    return;
                }
            }
            out.push_back(FrameBox{left, top, right, bottom});
            nowOpen.push_back(out.size() - 1);
        };
        for (const auto& s : spans) {
            if (s.first > x) emit(x, s.first);
            x = std::max(x, s.second);
        }
        if (x < area.right) emit(x, area.right);
        open.swap(nowOpen);
    }
    return out;
}

std::vector<FrameArea> MainFrameAreas(int32_t screenWidth, int32_t screenHeight, const FrameChildren& children) {
    std::vector<FrameArea> areas;
    FrameBox screen{0, 0, screenWidth, screenHeight};
    for (const FrameBox& r : UncoveredRects(screen, MainWindowChildren(screenWidth, screenHeight, children))) {
        FrameGrain grain = (r.bottom - r.top) > (r.right - r.left) ? kGrainUpright : kGrainAcross;
        areas.push_back(FrameArea{r, grain});
    }
    return areas;
}
