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
//   e2e_probe plan-loose         the topmost loose piece with its middle partly uncovered, else the topmost
//                                piece: "LOOSE i", "PRESS x y"
//   e2e_probe pair A B           prints "GROUPS: ga gb" and "FINISHED: f"
//   e2e_probe plan-place A X Y   the next piece to lay beside the pieces already laid round anchor A
//                                (A = -1: the topmost piece goes to table position X, Y); prints
//                                "PAIR moved A", "PRESS x y", "RELEASE x y", or "DONE"
//   e2e_probe state              prints the whole game as the table answers for it: "GAME rows cols elapsed
//                                hints finished", one "PIECE i view x y group lit depth" per piece and one
//                                "BOX k name" per piece box
//   e2e_probe changed            prints "CHANGED: 0|1", whether the game changed since its cut, save or load
//   e2e_probe client CLASS X Y   prints "AT x y": the desktop point of client point X, Y of that window
//   e2e_probe text CLASS         prints "TEXT: <text>" of the visible EDIT inside that top-level window
//   e2e_probe labels CLASS       prints "LABEL x y text" for every visible text label of that window
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

static BOOL CALLBACK PrintLabel(HWND child, LPARAM) {
    char name[64] = "", text[256] = "";
    GetClassNameA(child, name, sizeof name);
    RECT r;
    if (std::strcmp(name, "CQMTXT") || !IsWindowVisible(child) || !GetWindowRect(child, &r)) return TRUE;
    SendMessageA(child, WM_GETTEXT, sizeof text, reinterpret_cast<LPARAM>(text));
    std::printf("LABEL %ld %ld %s\n", r.left, r.top, text);
    return TRUE;
}

// Every visible text label of the window, with its desktop place.
static int Labels(const char* topClass) {
    HWND top = VisibleTopLevel(topClass);
    if (!top) return 1;
    EnumChildWindows(top, PrintLabel, 0);
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

// Sends a getter message (no arguments) to the visible control of a class under a screen point and
// prints its answer: the value of a volume slider, the frame of an animated button.
static int AskControl(const char* topClass, const char* childClass, int x, int y, unsigned message) {
    HWND child = VisibleChild(topClass, childClass, POINT{x, y});
    if (!child) {
        std::printf("ANSWER: none\n");
        return 1;
    }
    std::printf("ANSWER: %ld\n", long(SendMessageA(child, message, 0, 0)));
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

// The table's pieces as the probe sees them: the run topmost first, each piece's box, the grid and sizes.
struct TableView {
    HWND table;
    int rows, cols, count;
    POINT cell, margin, box;
    RECT area;
    std::vector<int> run;     // piece at each depth, topmost first
    std::vector<POINT> at;    // each piece's box
};

static bool ReadTable(TableView* t) {
    t->table = Table();
    if (!t->table || Ask(t->table, BOARD_ASK_GRID) == -1) return false;
    POINT grid = Pair(Ask(t->table, BOARD_ASK_GRID));
    t->cell = Pair(Ask(t->table, BOARD_ASK_CELL));
    t->margin = Pair(Ask(t->table, BOARD_ASK_MARGIN));
    t->box = Pair(Ask(t->table, BOARD_ASK_BOX));
    GetClientRect(t->table, &t->area);
    t->rows = grid.x;
    t->cols = grid.y;
    t->count = t->rows * t->cols;
    t->run.assign(size_t(t->count), -1);
    t->at.assign(size_t(t->count), POINT{0, 0});
    for (int i = 0; i < t->count; ++i) {
        t->at[size_t(i)] = Pair(Ask(t->table, BOARD_ASK_POSITION, i));
        LRESULT depth = Ask(t->table, BOARD_ASK_DEPTH, i);
        if (Ask(t->table, BOARD_ASK_VIEW, i) == 6 && depth >= 0 && depth < t->count) t->run[size_t(depth)] = i;
    }
    return true;
}

// Where to press the loose piece at that depth: a point of the middle of its cell (30 % to 70 % each way,
// clear of any tab cut into it) that no piece above covers, the very middle first; false when none is.
static bool UncoveredPress(const TableView& t, int depth, POINT* press) {
    const int moved = t.run[size_t(depth)];
    if (moved < 0 || Ask(t.table, BOARD_ASK_GROUP, moved) != 0) return false;
    const POINT from = t.at[size_t(moved)];
    const int tries[5] = {50, 30, 70, 40, 60};
    for (int fy : tries)
        for (int fx : tries) {
            *press = POINT{from.x + t.margin.x + t.cell.x * fx / 100, from.y + t.margin.y + t.cell.y * fy / 100};
            bool covered = false;
            for (int above = 0; above < depth && !covered; ++above) {
                const POINT b = t.at[size_t(t.run[size_t(above)])];
                covered = press->x >= b.x && press->x < b.x + t.box.x && press->y >= b.y && press->y < b.y + t.box.y;
            }
            if (!covered) return true;
        }
    return false;
}

// A loose piece of the table with a middle point no piece above it covers moves onto the place beside a true
// neighbour. The place must be one the table does not hold back (a piece may leave it by its tab margin
// on the left and top, never by its cell on the right and bottom), or the drop would fall short.
static int PlanJoin() {
    TableView t;
    if (!ReadTable(&t)) {
        std::printf("NOPLAN: no table\n");
        return 1;
    }
    const int dr[4] = {0, 0, -1, 1}, dc[4] = {-1, 1, 0, 0};
    for (int depth = 0; depth < t.count; ++depth) {
        POINT press;
        if (!UncoveredPress(t, depth, &press)) continue;
        const int moved = t.run[size_t(depth)];
        const POINT from = t.at[size_t(moved)];
        const int r = moved / t.cols, c = moved % t.cols;
        for (int k = 0; k < 4; ++k) {
            const int nr = r + dr[k], nc = c + dc[k];
            if (nr < 0 || nc < 0 || nr >= t.rows || nc >= t.cols) continue;
            const int anchor = nr * t.cols + nc;
            if (Ask(t.table, BOARD_ASK_VIEW, anchor) != 6) continue;
            // Where the moved piece belongs: the anchor's box shifted by one cell the other way.
            const POINT to = t.at[size_t(anchor)];
            const POINT target = {to.x - dc[k] * t.cell.x, to.y - dr[k] * t.cell.y};
            if (target.x < -t.margin.x || target.y < -t.margin.y || target.x + t.cell.x > t.area.right ||
                target.y + t.cell.y > t.area.bottom)
                continue;
            POINT release = {press.x + (target.x - from.x), press.y + (target.y - from.y)};
            ClientToScreen(t.table, &press);
            ClientToScreen(t.table, &release);
            std::printf("PAIR %d %d\nPRESS %ld %ld\nRELEASE %ld %ld\n", moved, anchor, press.x, press.y, release.x,
                        release.y);
            return 0;
        }
    }
    std::printf("NOPLAN: no uncovered loose piece has a neighbour it can be laid beside\n");
    return 1;
}

// The topmost loose piece of the table that can be pressed: "LOOSE i" and "PRESS x y".
static int PlanLoose() {
    TableView t;
    if (!ReadTable(&t)) return 1;
    for (int depth = 0; depth < t.count; ++depth) {
        POINT press;
        if (!UncoveredPress(t, depth, &press)) continue;
        ClientToScreen(t.table, &press);
        std::printf("LOOSE %d\nPRESS %ld %ld\n", t.run[size_t(depth)], press.x, press.y);
        return 0;
    }
    // A crowded scatter can bury every loose piece; the topmost piece is never covered, and its group
    // goes along wherever it is dragged.
    if (t.count > 0) {
        const POINT from = t.at[size_t(t.run[0])];
        POINT press = {from.x + t.margin.x + t.cell.x / 2, from.y + t.margin.y + t.cell.y / 2};
        ClientToScreen(t.table, &press);
        std::printf("LOOSE %d\nPRESS %ld %ld\n", t.run[0], press.x, press.y);
        return 0;
    }
    std::printf("NOPLAN: no piece on the table\n");
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

// The piece boxes are the top-level `CWNDBOX` windows; box k holds the tray view with control id 100 + k.
static HWND PieceBox(int k) {
    for (HWND box = FindWindowExA(nullptr, nullptr, "CWNDBOX", nullptr); box;
         box = FindWindowExA(nullptr, box, "CWNDBOX", nullptr)) {
        HWND view = GetDlgItem(box, 100 + k);
        char name[32] = "";
        if (view && GetClassNameA(view, name, sizeof name) && std::strcmp(name, "CWNDPUZZLE") == 0) return box;
    }
    return nullptr;
}

// Box names are asked of the boxes themselves (WM_GETTEXT), not read from the system's caption copy.
static std::string WindowText(HWND window) {
    char text[64] = "";
    DWORD_PTR ignored = 0;
    SendMessageTimeoutA(window, WM_GETTEXT, sizeof text, reinterpret_cast<LPARAM>(text), SMTO_BLOCK, 2000, &ignored);
    text[sizeof text - 1] = 0;
    return text;
}

static int State() {
    HWND table = Table();
    if (!table || Ask(table, BOARD_ASK_GRID) == -1) {
        std::printf("GAME none\n");
        return 1;
    }
    POINT grid = Pair(Ask(table, BOARD_ASK_GRID));
    const int count = grid.x * grid.y;
    std::printf("GAME %ld %ld %ld %ld %ld\n", grid.x, grid.y, long(Ask(table, BOARD_ASK_ELAPSED)),
                long(Ask(table, BOARD_ASK_HINTS)), long(Ask(table, BOARD_ASK_FINISHED)));
    for (int i = 0; i < count; ++i) {
        POINT at = Pair(Ask(table, BOARD_ASK_POSITION, i));
        std::printf("PIECE %d %ld %ld %ld %ld %ld %ld\n", i, long(Ask(table, BOARD_ASK_VIEW, i)), at.x, at.y,
                    long(Ask(table, BOARD_ASK_GROUP, i)), long(Ask(table, BOARD_ASK_LIT, i)),
                    long(Ask(table, BOARD_ASK_DEPTH, i)));
    }
    for (int k = 0; k < 6; ++k) {
        HWND box = PieceBox(k);
        std::printf("BOX %d %s\n", k, box ? WindowText(box).c_str() : "(none)");
    }
    return 0;
}

static int ClientPoint(const char* topClass, int x, int y) {
    HWND top = VisibleTopLevel(topClass);
    POINT at = {x, y};
    if (!top || !ClientToScreen(top, &at)) {
        std::printf("AT: none\n");
        return 1;
    }
    std::printf("AT: %ld %ld\n", at.x, at.y);
    return 0;
}

static int EditText(const char* topClass) {
    HWND edit = VisibleChild(topClass, "Edit", POINT{-1, -1});
    if (!edit) {
        std::printf("TEXT: none\n");
        return 1;
    }
    std::printf("TEXT: %s\n", WindowText(edit).c_str());
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
    if (verb == "ask" && argc >= 7)
        return AskControl(argv[2], argv[3], std::atoi(argv[4]), std::atoi(argv[5]), unsigned(std::atoi(argv[6])));
    if (verb == "wait-board") return WaitBoard(argc >= 3 ? std::atoi(argv[2]) : 60);
    if (verb == "plan-join") return PlanJoin();
    if (verb == "plan-loose") return PlanLoose();
    if (verb == "pair" && argc >= 4) return ShowPair(std::atoi(argv[2]), std::atoi(argv[3]));
    if (verb == "plan-place" && argc >= 5) return PlanPlace(std::atoi(argv[2]), std::atoi(argv[3]), std::atoi(argv[4]));
    if (verb == "state") return State();
    if (verb == "changed") {
        HWND table = Table();
        std::printf("CHANGED: %ld\n", table ? long(Ask(table, BOARD_ASK_CHANGED)) : -1L);
        return table ? 0 : 1;
    }
    if (verb == "text" && argc >= 3) return EditText(argv[2]);
    if (verb == "labels" && argc >= 3) return Labels(argv[2]);
    if (verb == "client" && argc >= 5) return ClientPoint(argv[2], std::atoi(argv[3]), std::atoi(argv[4]));
    if (verb == "screen") {
        HDC screen = GetDC(nullptr);
        std::printf("SCREEN: %d %d %d\n", GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN),
                    GetDeviceCaps(screen, BITSPIXEL));
        ReleaseDC(nullptr, screen);
        return 0;
    }
    std::fprintf(stderr, "usage: e2e_probe notice|windows|wait|wait-child|rect|child|slider|screen|wait-board|"
                         "plan-join|plan-loose|pair|plan-place|state|changed|text|labels|ask ...\n");
    return 2;
}
