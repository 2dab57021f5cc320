// letters.h: the letters of boxes and forms.
#pragma once

#include <QFont>
#include <QString>

namespace orv2_geo::qt {

/// The letters that the places of a form's controls are made for: 8.25 points.
QFont form_font();

/// `text` in lines no wider than `width`, broken so that they are of nearly one
/// length: none ends with one lone word.
QString in_even_lines(const QString& text, const QFont& font, int width);

}  // namespace orv2_geo::qt
