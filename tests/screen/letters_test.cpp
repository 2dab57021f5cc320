// The lines of a box's text.
#include "orv2_geo/ui/qt/letters.h"

#include <gtest/gtest.h>

#include <QFontMetrics>
#include <QGuiApplication>
#include <QStringList>

namespace orv2_geo::qt {
namespace {

QStringList lines(const QString& text, int width) {
  return in_even_lines(text, form_font(), width).split('\n');
}

TEST(EvenLines, BreakNoWordThatHasRoom) {
  const QString text =
      "m_Indice_de_Puntos_sin_Repetir_ORDENADOS_EN_X - Error 91:Variable de objeto no establecida";
  const QStringList broken = lines(text, 400);
  ASSERT_EQ(broken.size(), 2);
  EXPECT_TRUE(broken[0].startsWith("m_Indice_de_Puntos_sin_Repetir_ORDENADOS_EN_X "))
      << broken[0].toStdString();
  EXPECT_EQ(broken.join(""), text);
}

TEST(EvenLines, BreakAWordThatHasNone) {
  const QString word(200, 'x');
  const QStringList broken = lines(word, 100);
  EXPECT_GT(broken.size(), 5);
  EXPECT_EQ(broken.join(""), word);
}

TEST(EvenLines, EndWithNoLoneWord) {
  const QFontMetrics metrics(form_font());
  const QString text =
      "una frase que no cabe en una sola y que deja una palabra sola al final si no";
  const int width = metrics.horizontalAdvance(text) - 2;
  const QStringList broken = lines(text, width);
  ASSERT_EQ(broken.size(), 2);
  EXPECT_GT(metrics.horizontalAdvance(broken[1]), width / 3) << broken[1].toStdString();
}

TEST(EvenLines, KeepTheTextsOwn) {
  EXPECT_EQ(lines("uno\n\ndos", 400), QStringList({"uno", "", "dos"}));
  EXPECT_EQ(lines("", 400), QStringList({""}));
}

}  // namespace
}  // namespace orv2_geo::qt

int main(int count, char** words) {
  const QGuiApplication application(count, words);
  ::testing::InitGoogleTest(&count, words);
  return RUN_ALL_TESTS();
}
