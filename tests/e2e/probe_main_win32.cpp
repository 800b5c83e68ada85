// e2e_probe.exe: looks into a running game from a second Wine process in the same desktop, for the
// end-to-end scripts. Positions it prints are in the desktop's coordinates.
//   e2e_probe notice [seconds]   waits for the start-up notice, prints "NOTICE: <text>" and the classes of
//                                the other top-level windows, then presses OK
//   e2e_probe windows            prints the class of every visible top-level window
//   e2e_probe wait CLASS [s]     waits until a visible top-level window of that class exists
//   e2e_probe rect CLASS         prints "RECT: left top right bottom" of that top-level window
//   e2e_probe child CLASS ID     prints "CENTRE: x y" of the child with that control id (and class
//                                CQMCHECK, CQMANIM, CQMSROLL, CWNDPREVFS... given as ID@CLASS)
//   e2e_probe screen             prints "SCREEN: <width> <height> <bits per pixel>"
//   e2e_probe wait-child TOP CHILD [s]  waits until TOP has a visible child window of class CHILD
//   e2e_probe slider TOP X Y     prints "SLIDER: position minimum maximum" of the visible CQMSROLL of
//                                TOP under the desktop point X, Y
//   e2e_probe wait-board [s]     waits until the new-puzzle screen is gone and the table holds a puzzle;
//                                prints "BOARD: rows cols"
//   e2e_probe plan-join          picks the topmost loose piece on the table and one of its true
//                                neighbours; prints "PAIR moved anchor", "PRESS x y", "RELEASE x y"
//   e2e_probe pair A B           prints "GROUPS: ga gb" and "FINISHED: f"
//   e2e_probe plan-place A X Y   the next piece to lay beside the pieces already laid round anchor A
//                                (A = -1: the topmost piece goes to table position X, Y); prints
//                                "PAIR moved A", "PRESS x y", "RELEASE x y", or "DONE"
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "controls/control_messages.h"
#include "puzzle/board_window_win32.h"

static BOOL CALLBACK PrintWindowClass(HWND window, LPARAM) {
    if (!IsWindowVisible(window)) return TRUE;
    char name[128] = "";
    GetClassNameA(window, name, sizeof name);
    std::printf("WINDOW: %s\n", name);
    return TRUE;
}

static int Notice(int seconds) {
    HWND dialog = nullptr;
    for (int waited = 0; waited < seconds * 10 && !dialog; ++waited) {
        dialog = FindWindowA("#32770", "Tavirel Puzzle");
        if (!dialog) Sleep(100);
    }
    if (!dialog) {
        std::printf("NOTICE: none\n");
        EnumWindows(PrintWindowClass, 0);
        return 1;
    }
    char text[400] = "";
    GetDlgItemTextA(dialog, 1000, text, sizeof text);
    std::string oneLine;
    for (const char* c = text; *c; ++c) oneLine += (*c == '\r' || *c == '\n') ? ' ' : *c;
    std::printf("NOTICE: %s\n", oneLine.c_str());
    EnumWindows(PrintWindowClass, 0);
    std::fflush(stdout);
    PostMessageA(dialog, WM_COMMAND, MAKEWPARAM(IDOK, BN_CLICKED), 0);
    return 0;
}

static HWND VisibleTopLevel(const char* className) {
    for (HWND window = FindWindowExA(nullptr, nullptr, className, nullptr); window;
         window = FindWindowExA(nullptr, window, className, nullptr))
        if (IsWindowVisible(window)) return window;
    return nullptr;
}

static int Wait(const char* className, int seconds) {
    for (int waited = 0; waited < seconds * 10; ++waited) {
        if (VisibleTopLevel(className)) {
            std::printf("FOUND: %s\n", className);
            return 0;
        }
        Sleep(100);
    }
    std::printf("MISSING: %s\n", className);
    EnumWindows(PrintWindowClass, 0);
    return 1;
}

static int Rect(const char* className) {
    HWND window = VisibleTopLevel(className);
    RECT r;
    if (!window || !GetWindowRect(window, &r)) return 1;
    std::printf("RECT: %ld %ld %ld %ld\n", r.left, r.top, r.right, r.bottom);
    return 0;
}

// A child of a top-level window: by control id (-1: any), class (null: any), visibility and a desktop
// point inside it (x < 0: anywhere).
struct ChildSearch {
    int id;
    const char* className;
    bool visibleOnly;
    POINT point;
    HWND found;
};

static BOOL CALLBACK MatchChild(HWND child, LPARAM context) {
    ChildSearch* search = reinterpret_cast<ChildSearch*>(context);
    char name[64] = "";
    GetClassNameA(child, name, sizeof name);
    RECT r;
    if ((search->id != -1 && GetDlgCtrlID(child) != search->id) ||
        (search->className && std::strcmp(name, search->className)) ||
        (search->visibleOnly && !IsWindowVisible(child)) ||
        (search->point.x >= 0 && (!GetWindowRect(child, &r) || !PtInRect(&r, search->point))))
        return TRUE;
    search->found = child;
    return FALSE;
}

static HWND FindChild(const char* topClass, ChildSearch search) {
    HWND top = VisibleTopLevel(topClass);
    if (!top) return nullptr;
    EnumChildWindows(top, MatchChild, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

// "300@CQMCHECK" names the control with id 300 among the check boxes.
static int Child(const char* topClass, const char* idAndClass) {
    std::string wanted(idAndClass);
    size_t at = wanted.find('@');
    std::string className = at == std::string::npos ? "" : wanted.substr(at + 1);
    const char* onlyClass = className.empty() ? nullptr : className.c_str();
    HWND found = FindChild(topClass, ChildSearch{std::atoi(wanted.c_str()), onlyClass, false, POINT{-1, -1}, nullptr});
    RECT r;
    if (!found || !GetWindowRect(found, &r)) return 1;
    std::printf("CENTRE: %ld %ld\n", (r.left + r.right) / 2, (r.top + r.bottom) / 2);
    return 0;
}

static HWND VisibleChild(const char* topClass, const char* childClass, POINT point) {
    return FindChild(topClass, ChildSearch{-1, childClass, true, point, nullptr});
}

static int WaitChild(const char* topClass, const char* childClass, int seconds) {
    for (int waited = 0; waited < seconds * 10; ++waited) {
        if (VisibleChild(topClass, childClass, POINT{-1, -1})) {
            std::printf("FOUND: %s\n", childClass);
            return 0;
        }
        Sleep(100);
    }
    std::printf("MISSING: %s\n", childClass);
    return 1;
}

static int Slider(const char* topClass, int x, int y) {
    HWND slider = VisibleChild(topClass, "CQMSROLL", POINT{x, y});
    if (!slider) {
        std::printf("SLIDER: none\n");
        return 1;
    }
    std::printf("SLIDER: %ld %ld %ld\n", long(SendMessageA(slider, PM_SCR_GETPOSITION, 0, 0)),
                long(SendMessageA(slider, PM_SCR_GETMINIMUM, 0, 0)),
                long(SendMessageA(slider, PM_SCR_GETMAXIMUM, 0, 0)));
    return 0;
}

static HWND Table() {
    HWND main = VisibleTopLevel("CWNDBACK");
    return main ? GetDlgItem(main, kTableControlId) : nullptr;
}

static LRESULT Ask(HWND table, int question, int piece = 0) {
    return SendMessageA(table, PM_BOARD_QUERY, WPARAM((unsigned(question) << 24) | unsigned(piece)), 0);
}

static POINT Pair(LRESULT answer) {
    POINT p = {short(LOWORD(answer)), short(HIWORD(answer))};
    return p;
}

// Cutting runs inside the game's message loop, so the table answers once the puzzle is laid out.
static int WaitBoard(int seconds) {
    for (int waited = 0; waited < seconds * 10; ++waited) {
        HWND table = Table();
        if (table && !VisibleTopLevel("CWNDNEW") && Ask(table, BOARD_ASK_GRID) != -1) {
            POINT grid = Pair(Ask(table, BOARD_ASK_GRID));
            std::printf("BOARD: %ld %ld\n", grid.x, grid.y);
            return 0;
        }
        Sleep(100);
    }
    std::printf("BOARD: none\n");
    EnumWindows(PrintWindowClass, 0);
    return 1;
}

// A loose piece of the table whose middle no piece above it covers moves onto the place beside a true
// neighbour. The place must be one the table does not hold back (a piece may leave it by its tab margin
// on the left and top, never by its cell on the right and bottom), or the drop would fall short.
static int PlanJoin() {
    HWND table = Table();
    if (!table || Ask(table, BOARD_ASK_GRID) == -1) {
        std::printf("NOPLAN: table %p\n", static_cast<void*>(table));
        return 1;
    }
    POINT grid = Pair(Ask(table, BOARD_ASK_GRID)), cell = Pair(Ask(table, BOARD_ASK_CELL));
    POINT margin = Pair(Ask(table, BOARD_ASK_MARGIN)), box = Pair(Ask(table, BOARD_ASK_BOX));
    RECT area;
    GetClientRect(table, &area);
    const int rows = grid.x, cols = grid.y, count = rows * cols;
    // The table's run, topmost first, and each piece's box.
    std::vector<int> run(size_t(count), -1);
    std::vector<POINT> at(static_cast<size_t>(count));
    for (int i = 0; i < count; ++i) {
        at[size_t(i)] = Pair(Ask(table, BOARD_ASK_POSITION, i));
        LRESULT depth = Ask(table, BOARD_ASK_DEPTH, i);
        if (Ask(table, BOARD_ASK_VIEW, i) == 6 && depth >= 0 && depth < count) run[size_t(depth)] = i;
    }
    const int dr[4] = {0, 0, -1, 1}, dc[4] = {-1, 1, 0, 0};
    for (int depth = 0; depth < count; ++depth) {
        const int moved = run[size_t(depth)];
        if (moved < 0 || Ask(table, BOARD_ASK_GROUP, moved) != 0) continue;
        const POINT from = at[size_t(moved)];
        POINT press = {from.x + margin.x + cell.x / 2, from.y + margin.y + cell.y / 2};
        bool covered = false;
        for (int above = 0; above < depth && !covered; ++above) {
            const POINT b = at[size_t(run[size_t(above)])];
            covered = press.x >= b.x && press.x < b.x + box.x && press.y >= b.y && press.y < b.y + box.y;
        }
        if (covered) continue;
        const int r = moved / cols, c = moved % cols;
        for (int k = 0; k < 4; ++k) {
            const int nr = r + dr[k], nc = c + dc[k];
            if (nr < 0 || nc < 0 || nr >= rows || nc >= cols) continue;
            const int anchor = nr * cols + nc;
            if (Ask(table, BOARD_ASK_VIEW, anchor) != 6) continue;
            // Where the moved piece belongs: the anchor's box shifted by one cell the other way.
            const POINT to = at[size_t(anchor)];
            const POINT target = {to.x - dc[k] * cell.x, to.y - dr[k] * cell.y};
            if (target.x < -margin.x || target.y < -margin.y || target.x + cell.x > area.right ||
                target.y + cell.y > area.bottom)
                continue;
            POINT release = {press.x + (target.x - from.x), press.y + (target.y - from.y)};
            ClientToScreen(table, &press);
            ClientToScreen(table, &release);
            std::printf("PAIR %d %d\nPRESS %ld %ld\nRELEASE %ld %ld\n", moved, anchor, press.x, press.y, release.x,
                        release.y);
            return 0;
        }
    }
    std::printf("NOPLAN: no uncovered loose piece has a neighbour it can be laid beside\n");
    return 1;
}

// Anchor a's set: a itself and the pieces of its group.
static bool InSet(HWND table, int piece, int anchor) {
    if (piece == anchor) return true;
    LRESULT g = Ask(table, BOARD_ASK_GROUP, anchor);
    return g != 0 && Ask(table, BOARD_ASK_GROUP, piece) == g;
}

static int PlanPlace(int anchor, int x, int y) {
    HWND table = Table();
    if (!table || Ask(table, BOARD_ASK_GRID) == -1) return 1;
    POINT grid = Pair(Ask(table, BOARD_ASK_GRID)), cell = Pair(Ask(table, BOARD_ASK_CELL));
    POINT margin = Pair(Ask(table, BOARD_ASK_MARGIN));
    int rows = grid.x, cols = grid.y, count = rows * cols;
    int best = -1;
    LRESULT bestDepth = 0x7FFFFFFF;
    for (int i = 0; i < count; ++i) {
        if (Ask(table, BOARD_ASK_VIEW, i) != 6) continue;
        if (anchor >= 0) {
            if (InSet(table, i, anchor)) continue;
            // Only a piece with a laid neighbour can join the laid pieces.
            int r = i / cols, c = i % cols;
            bool touches = (c > 0 && InSet(table, i - 1, anchor)) || (c + 1 < cols && InSet(table, i + 1, anchor)) ||
                           (r > 0 && InSet(table, i - cols, anchor)) ||
                           (r + 1 < rows && InSet(table, i + cols, anchor));
            if (!touches) continue;
        }
        LRESULT depth = Ask(table, BOARD_ASK_DEPTH, i);
        if (depth < bestDepth) {
            bestDepth = depth;
            best = i;
        }
    }
    if (best < 0) {
        std::printf("DONE\n");
        return 0;
    }
    POINT from = Pair(Ask(table, BOARD_ASK_POSITION, best)), target = {x, y};
    if (anchor >= 0) {
        POINT at = Pair(Ask(table, BOARD_ASK_POSITION, anchor));
        target.x = at.x + (best % cols - anchor % cols) * cell.x;
        target.y = at.y + (best / cols - anchor / cols) * cell.y;
    }
    POINT press = {from.x + margin.x + cell.x / 2, from.y + margin.y + cell.y / 2};
    POINT release = {press.x + (target.x - from.x), press.y + (target.y - from.y)};
    ClientToScreen(table, &press);
    ClientToScreen(table, &release);
    std::printf("PAIR %d %d\nPRESS %ld %ld\nRELEASE %ld %ld\n", best, anchor, press.x, press.y, release.x, release.y);
    return 0;
}

static int ShowPair(int a, int b) {
    HWND table = Table();
    if (!table) return 1;
    std::printf("GROUPS: %ld %ld\nFINISHED: %ld\n", long(Ask(table, BOARD_ASK_GROUP, a)),
                long(Ask(table, BOARD_ASK_GROUP, b)), long(Ask(table, BOARD_ASK_FINISHED)));
    return 0;
}

int main(int argc, char** argv) {
    std::string verb = argc >= 2 ? argv[1] : "";
    if (verb == "notice") return Notice(argc >= 3 ? std::atoi(argv[2]) : 20);
    if (verb == "windows") {
        EnumWindows(PrintWindowClass, 0);
        return 0;
    }
    if (verb == "wait" && argc >= 3) return Wait(argv[2], argc >= 4 ? std::atoi(argv[3]) : 20);
    if (verb == "rect" && argc >= 3) return Rect(argv[2]);
    if (verb == "child" && argc >= 4) return Child(argv[2], argv[3]);
    if (verb == "wait-child" && argc >= 4) return WaitChild(argv[2], argv[3], argc >= 5 ? std::atoi(argv[4]) : 20);
    if (verb == "slider" && argc >= 5) return Slider(argv[2], std::atoi(argv[3]), std::atoi(argv[4]));
    if (verb == "wait-board") return WaitBoard(argc >= 3 ? std::atoi(argv[2]) : 60);
    if (verb == "plan-join") return PlanJoin();
    if (verb == "pair" && argc >= 4) return ShowPair(std::atoi(argv[2]), std::atoi(argv[3]));
    if (verb == "plan-place" && argc >= 5) return PlanPlace(std::atoi(argv[2]), std::atoi(argv[3]), std::atoi(argv[4]));
    if (verb == "screen") {
        HDC screen = GetDC(nullptr);
        std::printf("SCREEN: %d %d %d\n", GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN),
                    GetDeviceCaps(screen, BITSPIXEL));
        ReleaseDC(nullptr, screen);
        return 0;
    }
    std::fprintf(stderr, "usage: e2e_probe notice|windows|wait|wait-child|rect|child|slider|screen|wait-board|"
                         "plan-join|pair|plan-place ...\n");
    return 2;
}
