#include "orv2_geo/ui/qt/control_view.h"

#include <QCheckBox>
#include <QClipboard>
#include <QColor>
#include <QEvent>
#include <QFont>
#include <QGroupBox>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QStyleOptionButton>
#include <QStylePainter>
#include <QTableWidget>
#include <algorithm>
#include <cmath>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "orv2_geo/platform/grid_columns.h"
#include "orv2_geo/ui/qt/pointer.h"

namespace orv2_geo::qt {

namespace {

Qt::Alignment aligned(std::int16_t alignment) {
  switch (static_cast<CellAlignment>(alignment)) {
    case CellAlignment::centre: return Qt::AlignHCenter;
    case CellAlignment::right: return Qt::AlignRight;
    case CellAlignment::left: break;
  }
  return Qt::AlignLeft;
}

// In a caption a single ampersand would underline the letter behind it.
QString caption_of(const Control& control) {
  return to_qstring(control.text()).replace('&', QStringLiteral("&&"));
}

QRect place_of(const ControlDesign& design) {
  return {pixels(design.left), pixels(design.top), pixels(design.width), pixels(design.height)};
}

// ---- Labels ----------------------------------------------------------------

// A label that sizes itself holds the edge, or the middle, that its text is
// aligned to.
void fit_to_text(QLabel& label, const ControlDesign& design) {
  const QRect place = place_of(design);
  QRect fitted(place.topLeft(), label.sizeHint());
  if (design.alignment == CellAlignment::centre) {
    fitted.moveLeft(place.left() + (place.width() - fitted.width()) / 2);
  } else if (design.alignment == CellAlignment::right) {
    fitted.moveRight(place.right());
  }
  label.setGeometry(fitted);
}

void colour(QLabel& label, std::int32_t background) {
  const QColor colour = QColor::fromRgb(static_cast<QRgb>(background));
  QPalette palette = label.palette();
  palette.setColor(QPalette::Window, colour);
  palette.setColor(QPalette::WindowText, colour.lightness() < 100 ? Qt::white : Qt::black);
  label.setPalette(palette);
  label.setAutoFillBackground(true);
  label.setContentsMargins(4, 2, 4, 2);
}

// Tells of a click on a widget that is no button.
class ClickFilter final : public QObject {
 public:
  ClickFilter(QObject* watched, std::function<void()> clicked)
      : QObject(watched), clicked_(std::move(clicked)) {
    watched->installEventFilter(this);
  }
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::MouseButtonRelease) clicked_();
    return QObject::eventFilter(watched, event);
  }

 private:
  std::function<void()> clicked_;
};

std::function<void()> fill(QLabel* label, const Control& control) {
  const ControlDesign& design = control.design();
  label->setTextFormat(Qt::PlainText);
  label->setAlignment(aligned(static_cast<std::int16_t>(design.alignment)) | Qt::AlignTop);
  label->setWordWrap(!design.sizes_itself);
  if (design.background >= 0) colour(*label, design.background);
  return [label, &control] {
    label->setText(to_qstring(control.text()));
    if (control.design().sizes_itself) fit_to_text(*label, control.design());
  };
}

// ---- Frames ----------------------------------------------------------------

// The title stands in the upper edge, whatever the desktop's way, so that it
// leaves the design's room to what the frame holds.
constexpr const char* frame_look =
    "QGroupBox { border: 1px solid palette(mid); border-radius: 2px; margin-top: 6px; }"
    "QGroupBox::title { subcontrol-origin: margin; left: 8px; padding: 0 2px; }";

// ---- Progress bars ---------------------------------------------------------

constexpr int progress_steps = 1000;

int step_of(const Control& control) {
  const double done = (control.value() - control.min()) / (control.max() - control.min());
  if (std::isnan(done)) return 0;
  return static_cast<int>(std::clamp(done, 0.0, 1.0) * progress_steps);
}

// ---- Grids -----------------------------------------------------------------

QFont grid_font(const Grid& grid) {
  QFont font;
  font.setFamilies({QString::fromLatin1(grid.font.data(), static_cast<qsizetype>(grid.font.size())),
                    "Liberation Mono", "DejaVu Sans Mono"});
  font.setStyleHint(QFont::Monospace);
  font.setFixedPitch(true);
  font.setPixelSize(11);  // 8.25 points
  return font;
}

// Cells can be selected, and Ctrl+C takes them along.
class Table final : public QTableWidget {
 public:
  using QTableWidget::QTableWidget;

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    if (!event->matches(QKeySequence::Copy)) return QTableWidget::keyPressEvent(event);
    if (!selectedIndexes().isEmpty()) QGuiApplication::clipboard()->setText(selected_text());
  }

 private:
  // A line a row and a tab between the columns of the rectangle that holds them
  // all, without the cells in between that are not selected.
  QString selected_text() const {
    std::map<int, std::map<int, QString>> rows;
    std::set<int> cols;
    for (const QModelIndex& index : selectedIndexes()) {
      rows[index.row()][index.column()] = index.data().toString().trimmed();
      cols.insert(index.column());
    }
    QStringList lines;
    for (auto& [row, cells] : rows) {
      QStringList line;
      for (const int col : cols) line << cells[col];
      lines << line.join('\t');
    }
    return lines.join('\n');
  }
};

constexpr int cell_margins = 8;

// An item that is there already stays, and stays selected.
void fill_cell(QTableWidget& table, const Grid& grid, int row, int col) {
  if (table.item(row, col) == nullptr) table.setItem(row, col, new QTableWidgetItem);
  QTableWidgetItem& item = *table.item(row, col);
  const bool fixed = row < grid.fixed_rows || col < grid.fixed_cols;
  item.setText(to_qstring(grid.cell(row, col)));
  item.setFlags(fixed ? Qt::ItemIsEnabled : Qt::ItemIsEnabled | Qt::ItemIsSelectable);
  item.setTextAlignment(aligned(grid.alignment(col)) | Qt::AlignVCenter);
  if (!fixed) return;
  item.setBackground(table.palette().brush(QPalette::Button));
  item.setForeground(table.palette().brush(QPalette::ButtonText));
}

int room_for(const QTableWidget& table, const QString& text) {
  return table.fontMetrics().horizontalAdvance(text) + cell_margins;
}

// As much as stands side by side in the table.
int whole_width(const QTableWidget& table) {
  int rows = 0;
  for (int row = 0; row < table.rowCount(); ++row) rows += table.rowHeight(row);
  const QSize room = table.maximumViewportSize();
  const bool scrolls = rows > room.height();
  return room.width() - (scrolls ? table.style()->pixelMetric(QStyle::PM_ScrollBarExtent) : 0);
}

void set_widths(QTableWidget& table) {
  std::vector<ColumnWish> wishes;
  for (int col = 0; col < table.columnCount(); ++col) {
    int longest = 0;
    for (int row = 0; row < table.rowCount(); ++row) {
      longest = std::max(longest, room_for(table, table.item(row, col)->text()));
    }
    const int header = table.rowCount() > 0 ? room_for(table, table.item(0, col)->text()) : 0;
    wishes.push_back({header, longest});
  }
  const std::vector<int> widths = column_widths(wishes, whole_width(table));
  for (std::size_t col = 0; col < widths.size(); ++col) {
    table.setColumnWidth(static_cast<int>(col), widths[col]);
  }
}

// A tip only where a narrow column cuts a text off.
void set_tips(QTableWidget& table) {
  for (int col = 0; col < table.columnCount(); ++col) {
    for (int row = 0; row < table.rowCount(); ++row) {
      QTableWidgetItem& item = *table.item(row, col);
      const bool cut = room_for(table, item.text()) > table.columnWidth(col);
      item.setToolTip(cut ? item.text().trimmed() : QString());
    }
  }
}

void fill_table(QTableWidget& table, const Grid& grid) {
  table.setRowCount(grid.rows);
  table.setColumnCount(grid.cols);
  for (int col = 0; col < grid.cols; ++col) {
    for (int row = 0; row < grid.rows; ++row) {
      fill_cell(table, grid, row, col);
    }
  }
  set_widths(table);
  set_tips(table);
}

std::function<void()> fill(QTableWidget* table, const Grid& grid) {
  table->setFont(grid_font(grid));
  table->horizontalHeader()->hide();
  table->verticalHeader()->hide();
  table->verticalHeader()->setMinimumSectionSize(1);
  table->verticalHeader()->setDefaultSectionSize(table->fontMetrics().height() + 6);
  table->horizontalHeader()->setMinimumSectionSize(1);
  table->setEditTriggers(QAbstractItemView::NoEditTriggers);
  table->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
  table->setTabKeyNavigation(false);
  table->setWordWrap(false);
  return [table, &grid] { fill_table(*table, grid); };
}

// ---- Buttons of all kinds --------------------------------------------------

std::function<void()> fill(QAbstractButton* button, const Control& control) {
  return [button, &control] {
    button->setText(caption_of(control));
    if (button->isCheckable()) button->setChecked(control.value() != 0.0);
  };
}

// The frame tells which button Enter presses, dots inside it which one has the
// focus: many desktops draw both alike.
class Button final : public QPushButton {
 public:
  using QPushButton::QPushButton;

 protected:
  void paintEvent(QPaintEvent*) override {
    QStylePainter painter(this);
    QStyleOptionButton option;
    initStyleOption(&option);
    option.state &= ~QStyle::State_HasFocus;
    painter.drawControl(QStyle::CE_PushButton, option);
    if (!hasFocus()) return;
    QPen dots(option.palette.color(QPalette::ButtonText), 1);
    dots.setDashPattern({1, 1});
    dots.setCapStyle(Qt::FlatCap);
    painter.setPen(dots);
    constexpr int inside = 3;
    painter.drawRect(
        QRectF(rect()).adjusted(inside + 0.5, inside + 0.5, -inside - 0.5, -inside - 0.5));
  }
};

// Indicator and letters are not cut off where the design leaves them little
// height.
void give_height(QWidget& widget) {
  const int more = widget.sizeHint().height() - widget.height();
  if (more > 0) widget.setGeometry(widget.geometry().adjusted(0, -(more / 2), 0, more - more / 2));
}

}  // namespace

int pixels(std::int32_t twips) { return static_cast<int>(std::lround(twips / 15.0)); }

QString to_qstring(const Text& text) {
  return QString::fromUtf16(text.data(), static_cast<qsizetype>(text.size()));
}

void ControlView::refresh() const {
  show_content();
  widget->setEnabled(control->enabled());
  widget->setVisible(control->visible());
}

ControlView make_view(Form& form, Control& control, QWidget* parent, const Act& act) {
  const ControlDesign& design = control.design();
  const std::string name(design.name);
  const auto click = [&form, act, name] {
    act([&] {
      const BusyPointer busy;
      form.click(name);
    });
  };
  ControlView view{&control, nullptr, {}};
  const auto as = [&](auto* widget) {
    view.widget = widget;
    widget->setGeometry(place_of(design));
    return widget;
  };
  const auto as_button = [&](QAbstractButton* button) {
    QObject::connect(button, &QAbstractButton::clicked, click);
    view.show_content = fill(as(button), control);
  };
  switch (design.kind) {
    case ControlKind::label: {
      auto* const label = as(new QLabel(parent));
      new ClickFilter(label, click);
      view.show_content = fill(label, control);
      break;
    }
    case ControlKind::text_box: {
      auto* const box = as(new QLineEdit(parent));
      QObject::connect(box, &QLineEdit::textEdited, [&form, act, name](const QString& text) {
        const Text typed(std::u16string_view(text.toStdU16String()));
        act([&] { form.set_text(name, typed); });
      });
      view.show_content = [box, &control] {
        const QString text = to_qstring(control.text());
        if (box->text() != text) box->setText(text);  // the cursor stays where it is
      };
      break;
    }
    case ControlKind::check_box: as_button(new QCheckBox(parent)); break;
    case ControlKind::option_button: as_button(new QRadioButton(parent)); break;
    case ControlKind::button: {
      auto* const button = new Button(parent);
      button->setAutoDefault(false);
      as_button(button);
      break;
    }
    case ControlKind::frame: {
      auto* const frame = as(new QGroupBox(parent));
      frame->setStyleSheet(frame_look);
      view.show_content = [frame, &control] { frame->setTitle(caption_of(control)); };
      break;
    }
    case ControlKind::progress_bar: {
      auto* const bar = as(new QProgressBar(parent));
      bar->setTextVisible(false);
      bar->setRange(0, progress_steps);
      view.show_content = [bar, &control] { bar->setValue(step_of(control)); };
      break;
    }
    case ControlKind::grid: view.show_content = fill(as(new Table(parent)), control.grid()); break;
  }
  const bool is_choice =
      design.kind == ControlKind::check_box || design.kind == ControlKind::option_button;
  if (is_choice) give_height(*view.widget);
  return view;
}

}  // namespace orv2_geo::qt
