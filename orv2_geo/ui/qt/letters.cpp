#include "orv2_geo/ui/qt/letters.h"

#include <QFontMetrics>
#include <QStringList>
#include <QTextLayout>
#include <algorithm>

namespace orv2_geo::qt {

namespace {

QStringList lines_of(const QString& paragraph, const QFont& font, int width) {
  QTextLayout layout(paragraph, font);
  QTextOption option;
  option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  layout.setTextOption(option);
  QStringList lines;
  layout.beginLayout();
  for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
    line.setLineWidth(width);
    lines << paragraph.mid(line.textStart(), line.textLength());
  }
  layout.endLayout();
  return lines;
}

int widest_word(const QString& paragraph, const QFont& font) {
  int widest = 0;
  for (const QString& word : paragraph.split(' ')) {
    widest = std::max(widest, QFontMetrics(font).horizontalAdvance(word));
  }
  return widest;
}

}  // namespace

QFont form_font() {
  QFont font;
  font.setFamilies({"Liberation Sans", "Arial", "Helvetica"});
  font.setStyleHint(QFont::SansSerif);
  font.setPixelSize(11);
  return font;
}

QString in_even_lines(const QString& text, const QFont& font, int width) {
  QStringList all;
  for (const QString& paragraph : text.split('\n')) {
    const qsizetype count = lines_of(paragraph, font, width).size();
    // The narrowest width at which there are no more lines, and no word is broken that
    // need not be.
    int too_narrow = std::min(widest_word(paragraph, font), width - 1);
    int enough = width;
    while (enough - too_narrow > 1) {
      const int middle = (too_narrow + enough) / 2;
      (lines_of(paragraph, font, middle).size() > count ? too_narrow : enough) = middle;
    }
    all << lines_of(paragraph, font, enough);
  }
  return all.join('\n');
}

}  // namespace orv2_geo::qt
