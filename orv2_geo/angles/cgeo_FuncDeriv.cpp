#include "orv2_geo/angles/cgeo_FuncDeriv.h"

#include "orv2_geo/frame/checked_math.h"

namespace orv2_geo {

namespace {

const Checked one = 1.0;

// The scaled argument of a trigonometric member, kept in binary64.
Checked scaled(double angle, double factor) { return Checked(angle) * factor; }

// sqrt(1 - t t), written so that t of exactly 1 gives a zero to divide by.
Checked other_side(Checked t) { return sqrt(-t * t + 1.0); }

}  // namespace

double cgeo_FuncDeriv::F_Log10(double X) const try {
  const Checked base = ln(Checked(10.0));
  return ln(Checked(X)) / base;
} catch (...) {
  leave_signed(registered_name);
}

double cgeo_FuncDeriv::F_LogN(double X) const try {
  // ln(exp(1)), not 1: the quotient carries its rounding.
  const Checked base = ln(exp(one));
  return ln(Checked(X)) / base;
} catch (...) {
  leave_signed(registered_name);
}

double cgeo_FuncDeriv::F_SenH(double X) const try {
  const Checked falling = exp(-Checked(X));
  const Checked rising = exp(Checked(X));
  return (rising - falling) / 2.0;
} catch (...) {
  leave_signed(registered_name);
}

double cgeo_FuncDeriv::F_CosH(double X) const try {
  const Checked falling = exp(-Checked(X));
  const Checked rising = exp(Checked(X));
  return (rising + falling) / 2.0;
} catch (...) {
  leave_signed(registered_name);
}

double cgeo_FuncDeriv::F_TanH(double X) const try {
  const Checked falling = exp(-Checked(X));
  const Checked rising = exp(Checked(X));
  return (rising - falling) / (falling + rising);
} catch (...) {
  leave_signed(registered_name);
}

double cgeo_FuncDeriv::F_ArcSen(double Angulo_Centec) const try {
  const Checked t = scaled(Angulo_Centec, RPi);
  return atan(t / other_side(t));
} catch (...) {
  leave_signed(registered_name);
}

double cgeo_FuncDeriv::F_ArcCos(double Angulo_Centec) const try {
  const Checked t = scaled(Angulo_Centec, RPi);
  const Checked side = other_side(t);
  const Checked half_right_angle = atan(one);
  return atan(-t / side) + (half_right_angle + half_right_angle);
} catch (...) {
  leave_signed(registered_name);
}

double cgeo_FuncDeriv::F_Sen(double Angulo_Centec) const try {
  return sin(scaled(Angulo_Centec, RPi));
} catch (...) {
  leave_signed(registered_name);
}

double cgeo_FuncDeriv::F_Cos(double Angulo_Centec) const try {
  return cos(scaled(Angulo_Centec, RPi));
} catch (...) {
  leave_signed(registered_name);
}

double cgeo_FuncDeriv::F_Tan(double Angulo_Centec) const try {
  return tan(scaled(Angulo_Centec, RPi));
} catch (...) {
  leave_signed(registered_name);
}

}  // namespace orv2_geo
