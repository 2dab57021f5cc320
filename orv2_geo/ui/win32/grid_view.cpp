#include <windows.h>

#include <commctrl.h>

#include <algorithm>
#include <string>
#include <vector>

#include "orv2_geo/platform/grid_columns.h"
#include "orv2_geo/ui/win32/cell_selection.h"
#include "orv2_geo/ui/win32/clipboard.h"
#include "orv2_geo/ui/win32/control_view.h"

namespace orv2_geo::win32 {

namespace {

Letters grid_letters(const Grid& grid, const Scale& scale) {
  LOGFONTW description{};
  description.lfHeight = scale.letter_height(grid.font_points);
  description.lfWeight = static_cast<LONG>(grid.font_weight);
  description.lfCharSet = DEFAULT_CHARSET;
  description.lfPitchAndFamily = FIXED_PITCH | FF_MODERN;
  const std::size_t units = std::min<std::size_t>(grid.font.size(), LF_FACESIZE - 1);
  std::copy_n(grid.font.begin(), units, description.lfFaceName);
  return Letters(description);
}

UINT drawn_alignment(std::int16_t alignment) {
  switch (static_cast<CellAlignment>(alignment)) {
    case CellAlignment::centre: return DT_CENTER;
    case CellAlignment::right: return DT_RIGHT;
    case CellAlignment::left: break;
  }
  return DT_LEFT;
}

std::wstring trimmed(const std::wstring& text) {
  const std::size_t first = text.find_first_not_of(L' ');
  if (first == std::wstring::npos) return {};
  return text.substr(first, text.find_last_not_of(L' ') - first + 1);
}

bool is_down(int key) { return GetKeyState(key) < 0; }

// The list lends columns, rows and scrolling; what stands in the cells is drawn here, as
// the list knows no cells that are fixed or selected one by one.
class GridView final : public ControlView {
 public:
  GridView(const Surroundings& around, Control& control)
      : ControlView(around, control), cells_(grid_letters(control.grid(), scale())) {
    make(WC_LISTVIEWW, LVS_REPORT | LVS_OWNERDATA | LVS_NOCOLUMNHEADER | LVS_SINGLESEL | WS_TABSTOP,
         WS_EX_CLIENTEDGE);
    ListView_SetExtendedListViewStyle(window(), LVS_EX_DOUBLEBUFFER);
    SendMessageW(window(), WM_SETFONT, reinterpret_cast<WPARAM>(cells_.font()), FALSE);
    set_row_height();
    make_tip();
    SetWindowLongPtrW(window(), GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    procedure_of_list_ = reinterpret_cast<WNDPROC>(SetWindowLongPtrW(
        window(), GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&GridView::procedure)));
  }

  void show_content() override {
    if (shows_the_same()) return;
    shown_ = grid();
    selection_.fit({grid().rows, grid().cols}, {grid().fixed_rows, grid().fixed_cols});
    SendMessageW(window(), LVM_SETITEMCOUNT, static_cast<WPARAM>(grid().rows), 0);
    set_columns();
    InvalidateRect(window(), nullptr, TRUE);
  }

  std::optional<LRESULT> notified(NMHDR& told) override {
    if (told.code == NM_CUSTOMDRAW) return drawn(reinterpret_cast<NMLVCUSTOMDRAW&>(told).nmcd);
    if (told.code == LVN_GETDISPINFOW) {
      tell_text(reinterpret_cast<NMLVDISPINFOW&>(told).item);
      return 0;
    }
    return std::nullopt;
  }

 private:
  const Grid& grid() const noexcept { return control().grid(); }
  std::wstring text_of(Cell cell) const { return shown(grid().cell(cell.row, cell.col)); }

  bool shows_the_same() const {
    const Grid& now = grid();
    return shown_.rows == now.rows && shown_.cols == now.cols && shown_.cells == now.cells &&
           shown_.alignments == now.alignments && shown_.fixed_rows == now.fixed_rows &&
           shown_.fixed_cols == now.fixed_cols;
  }

  // ---- Rows and columns

  int margin() const { return scale().grown(2); }

  // A list's rows are as high as its pictures.
  void set_row_height() {
    const int height = cells_.height() + scale().grown(5);
    HIMAGELIST const pictures = ImageList_Create(1, height, ILC_COLOR, 1, 0);
    ListView_SetImageList(window(), pictures, LVSIL_SMALL);
  }

  int room_for(Cell cell) const {
    return static_cast<int>(cells_.room_for(text_of(cell)).cx) + 2 * margin();
  }

  void set_columns() {
    while (SendMessageW(window(), LVM_DELETECOLUMN, 0, 0) != FALSE) {
    }
    std::vector<ColumnWish> wishes;
    for (std::int32_t col = 0; col < grid().cols; ++col) {
      int longest = 0;
      for (std::int32_t row = 0; row < grid().rows; ++row) {
        longest = std::max(longest, room_for({row, col}));
      }
      wishes.push_back({grid().rows > 0 ? room_for({0, col}) : 0, longest});
    }
    int col = 0;
    for (const int width : column_widths(wishes, width_of_list())) {
      LVCOLUMNW column{};
      column.mask = LVCF_WIDTH;
      column.cx = width;
      ListView_InsertColumn(window(), col++, &column);
    }
    widths_are_known();
  }

  void widths_are_known() {
    edges_.assign(1, 0);
    for (int col = 0; col < grid().cols; ++col) {
      edges_.push_back(edges_.back() + ListView_GetColumnWidth(window(), col));
    }
  }

  // As much as stands side by side.
  int width_of_list() const {
    RECT inside{};
    GetClientRect(window(), &inside);
    return static_cast<int>(inside.right);
  }

  RECT row_place(int row) const {
    RECT place{};
    ListView_GetItemRect(window(), row, &place, LVIR_BOUNDS);
    return place;
  }

  RECT cell_place(Cell cell) const {
    RECT place = row_place(cell.row);
    const auto col = static_cast<std::size_t>(cell.col);
    place.right = place.left + edges_[col + 1];
    place.left += edges_[col];
    return place;
  }

  Cell cell_at(POINT point) const {
    for (std::int32_t row = 0; row < grid().rows; ++row) {
      for (std::int32_t col = 0; col < grid().cols; ++col) {
        const RECT place = cell_place({row, col});
        if (PtInRect(&place, point)) return {row, col};
      }
    }
    return no_cell;
  }

  // ---- Drawing

  LRESULT drawn(const NMCUSTOMDRAW& stage) {
    if (stage.dwDrawStage == CDDS_PREPAINT) return CDRF_NOTIFYITEMDRAW;
    if (stage.dwDrawStage != CDDS_ITEMPREPAINT) return CDRF_DODEFAULT;
    const auto row = static_cast<std::int32_t>(stage.dwItemSpec);
    const HGDIOBJ before = SelectObject(stage.hdc, cells_.font());
    SetBkMode(stage.hdc, TRANSPARENT);
    for (std::int32_t col = 0; col < grid().cols; ++col) draw_cell(stage.hdc, {row, col});
    SelectObject(stage.hdc, before);
    return CDRF_SKIPDEFAULT;
  }

  void draw_cell(HDC surface, Cell cell) const {
    const bool fixed = selection_.is_fixed(cell);
    const bool selected = selection_.holds(cell);
    const int ground = fixed ? COLOR_3DFACE : selected ? COLOR_HIGHLIGHT : COLOR_WINDOW;
    const int ink = fixed ? COLOR_BTNTEXT : selected ? COLOR_HIGHLIGHTTEXT : COLOR_WINDOWTEXT;
    RECT place = cell_place(cell);
    FillRect(surface, &place, GetSysColorBrush(fixed ? COLOR_3DSHADOW : COLOR_3DLIGHT));
    --place.right;  // the lines between the cells
    --place.bottom;
    FillRect(surface, &place, GetSysColorBrush(ground));
    SetTextColor(surface, GetSysColor(ink));
    if (cell == selection_.current() && GetFocus() == window()) DrawFocusRect(surface, &place);
    InflateRect(&place, -margin(), 0);
    ++place.right;
    const std::wstring text = text_of(cell);
    DrawTextW(surface, text.c_str(), static_cast<int>(text.size()), &place,
              drawn_alignment(grid().alignment(cell.col)) | DT_SINGLELINE | DT_VCENTER |
                  DT_NOPREFIX | DT_END_ELLIPSIS);
  }

  // For programs that read the screen aloud.
  void tell_text(LVITEMW& item) const {
    if ((item.mask & LVIF_TEXT) == 0 || item.cchTextMax <= 0) return;
    const std::wstring text = text_of({item.iItem, item.iSubItem});
    const std::size_t units = std::min(text.size(), static_cast<std::size_t>(item.cchTextMax - 1));
    std::copy_n(text.begin(), units, item.pszText);
    item.pszText[units] = L'\0';
  }

  // ---- Tips: what a narrow column cuts off

  void make_tip() {
    tip_ = CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_NOPREFIX, 0, 0,
                           0, 0, window(), nullptr, nullptr, nullptr);
    TOOLINFOW tool = this_tool();
    tool.lpszText = LPSTR_TEXTCALLBACKW;
    SendMessageW(tip_, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
    SendMessageW(tip_, WM_SETFONT, reinterpret_cast<WPARAM>(letters().font()), FALSE);
  }

  TOOLINFOW this_tool() const {
    TOOLINFOW tool{};
    tool.cbSize = TTTOOLINFOW_V1_SIZE;  // known to every version
    tool.uFlags = TTF_IDISHWND;
    tool.hwnd = window();
    tool.uId = reinterpret_cast<UINT_PTR>(window());
    return tool;
  }

  void relay_to_tip(UINT message, WPARAM w, LPARAM l) {
    if (message == WM_MOUSEMOVE) {
      const Cell here = cell_at({static_cast<short>(LOWORD(l)), static_cast<short>(HIWORD(l))});
      if (here != tip_cell_) SendMessageW(tip_, TTM_POP, 0, 0);
      tip_cell_ = here;
    }
    MSG told{};
    told.hwnd = window();
    told.message = message;
    told.wParam = w;
    told.lParam = l;
    SendMessageW(tip_, TTM_RELAYEVENT, 0, reinterpret_cast<LPARAM>(&told));
  }

  void tell_tip(NMTTDISPINFOW& asked) {
    tip_text_.clear();
    if (tip_cell_ != no_cell) {
      const RECT place = cell_place(tip_cell_);
      const bool cut = room_for(tip_cell_) > place.right - place.left;
      if (cut) tip_text_ = trimmed(text_of(tip_cell_));
    }
    asked.lpszText = tip_text_.data();
  }

  // ---- The person's clicks and keys

  static LRESULT CALLBACK procedure(HWND list, UINT message, WPARAM w, LPARAM l) noexcept {
    auto* const view = reinterpret_cast<GridView*>(GetWindowLongPtrW(list, GWLP_USERDATA));
    WNDPROC const rest = view->procedure_of_list_;
    try {
      if (view->takes(message, w, l)) return 0;
    } catch (...) {
      return 0;  // without memory the key or the click is lost, and nothing else
    }
    return CallWindowProcW(rest, list, message, w, l);
  }

  bool takes(UINT message, WPARAM w, LPARAM l) {
    if (message >= WM_MOUSEFIRST && message <= WM_MOUSELAST) relay_to_tip(message, w, l);
    const POINT point = {static_cast<short>(LOWORD(l)), static_cast<short>(HIWORD(l))};
    switch (message) {
      case WM_LBUTTONDOWN:
      case WM_LBUTTONDBLCLK: return pressed_at(point, (w & MK_SHIFT) != 0), true;
      case WM_MOUSEMOVE:
        if (GetCapture() == window()) select(cell_at(point), true);
        return false;
      case WM_LBUTTONUP:
        if (GetCapture() == window()) ReleaseCapture();
        return true;
      case WM_RBUTTONDOWN: return SetFocus(window()), true;
      case WM_KEYDOWN: return take_key(w);
      case WM_CHAR: return true;  // a list would look for the row that begins so
      case WM_SETFOCUS:
      case WM_KILLFOCUS: return InvalidateRect(window(), nullptr, FALSE), false;
      case WM_NOTIFY: return asks_for_tip(*reinterpret_cast<NMHDR*>(l));
      default: return false;
    }
  }

  bool asks_for_tip(NMHDR& told) {
    if (told.hwndFrom != tip_ || told.code != TTN_GETDISPINFOW) return false;
    tell_tip(reinterpret_cast<NMTTDISPINFOW&>(told));
    return true;
  }

  void pressed_at(POINT point, bool further) {
    SetFocus(window());
    if (select(cell_at(point), further)) SetCapture(window());
  }

  bool select(Cell cell, bool further) {
    if (!selection_.move_to(cell, further)) return false;
    InvalidateRect(window(), nullptr, FALSE);
    return true;
  }

  bool take_key(WPARAM key) {
    const bool further = is_down(VK_SHIFT);
    switch (key) {
      case VK_LEFT: return step(0, -1, further);
      case VK_RIGHT: return step(0, 1, further);
      case VK_UP: return step(-1, 0, further);
      case VK_DOWN: return step(1, 0, further);
      case 'A': return is_down(VK_CONTROL) && select_all();
      case 'C':
      case VK_INSERT: return is_down(VK_CONTROL) && copy();
      default: return key != VK_TAB && key != VK_PRIOR && key != VK_NEXT;
    }
  }

  bool step(std::int32_t rows, std::int32_t cols, bool further) {
    if (!select(selection_.beside(rows, cols), further)) return true;
    ListView_EnsureVisible(window(), selection_.current().row, FALSE);
    const RECT place = cell_place(selection_.current());
    const int beyond = static_cast<int>(place.right) - width_of_list();
    const int before = static_cast<int>(place.left);
    const int by = before < 0 ? before : std::max(std::min(beyond, before), 0);
    if (by != 0) ListView_Scroll(window(), by, 0);
    return true;
  }

  bool select_all() {
    selection_.select_all();
    InvalidateRect(window(), nullptr, FALSE);
    return true;
  }

  // A line a row and a tab between the columns.
  bool copy() const {
    const CellRange range = selection_.range();
    std::wstring copied;
    for (std::int32_t row = range.first.row; row <= range.last.row; ++row) {
      if (row != range.first.row) copied += L"\r\n";
      for (std::int32_t col = range.first.col; col <= range.last.col; ++col) {
        if (col != range.first.col) copied += L'\t';
        copied += trimmed(text_of({row, col}));
      }
    }
    if (!range.is_empty()) put_on_clipboard(window(), copied);
    return true;
  }

  Letters cells_;
  Grid shown_;
  CellSelection selection_;
  std::vector<int> edges_ = {0};  // of the columns, from the row's left edge
  WNDPROC procedure_of_list_ = nullptr;
  HWND tip_ = nullptr;
  Cell tip_cell_ = no_cell;
  std::wstring tip_text_;
};

}  // namespace

std::unique_ptr<ControlView> make_grid_view(const Surroundings& around, Control& control) {
  return std::make_unique<GridView>(around, control);
}

}  // namespace orv2_geo::win32
