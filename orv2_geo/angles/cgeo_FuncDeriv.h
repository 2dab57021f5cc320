// cgeo_FuncDeriv.h: logarithms, hyperbolic and scaled trigonometric functions.
#pragma once

#include "orv2_geo/frame/class_description.h"
#include "orv2_geo/frame/export.h"

namespace orv2_geo {

/// Functions built from the elementary ones by textbook formulas. The
/// trigonometric members take their argument in any unit: it is multiplied by
/// RPi, which the host sets. Every argument is by value and nothing is written;
/// failures go to the caller.
///
/// Expects the usual floating-point settings: see UsualFloatingPoint.
class ORV2_PUBLIC cgeo_FuncDeriv {
 public:
  static constexpr char registered_name[] = "Orv2_Geo.cgeo_FuncDeriv";

  /// The members in interface order.
  static const ClassDescription& description();

  /// Storage for the host; nothing in the class reads it.
  double Pi = 0.0;

  /// Radians in one unit of Angulo_Centec, such as 0.01570796327 for
  /// centesimal angles. 0.0 until the host sets it; not checked.
  double RPi = 0.0;

  /// Decimal logarithm, ln(X) / ln(10). Failure 5 for X of zero or below.
  double F_Log10(double X) const;

  /// Natural logarithm, ln(X) / ln(exp(1)). Failure 5 for X of zero or below.
  double F_LogN(double X) const;

  /// Hyperbolic sine, (exp(X) - exp(-X)) / 2. Failure 6 for |X| above about 709.78.
  double F_SenH(double X) const;

  /// Hyperbolic cosine, (exp(X) + exp(-X)) / 2. Failure 6 for |X| above about 709.78.
  double F_CosH(double X) const;

  /// Hyperbolic tangent, (exp(X) - exp(-X)) / (exp(-X) + exp(X)). It does not
  /// settle at 1 or -1: failure 6 for |X| above about 709.78.
  double F_TanH(double X) const;

  /// Arc sine in radians of the ratio t = Angulo_Centec x RPi: the ratio is
  /// scaled like an angle, the answer is not. Failures: 5 for |t| above 1; 11
  /// for t of exactly 1 or -1; 6 when t overflows.
  /// Source: atan(t / sqrt(1 - t t)).
  double F_ArcSen(double Angulo_Centec) const;

  /// Arc cosine in radians of the ratio t = Angulo_Centec x RPi, with 2 atan(1)
  /// for a right angle. Failures as for F_ArcSen.
  double F_ArcCos(double Angulo_Centec) const;

  /// Sine, cosine and tangent of Angulo_Centec x RPi radians. Failure 6 when
  /// the product overflows. At an odd multiple of a right angle F_Tan gives a
  /// large finite number.
  double F_Sen(double Angulo_Centec) const;
  double F_Cos(double Angulo_Centec) const;
  double F_Tan(double Angulo_Centec) const;
};

}  // namespace orv2_geo
