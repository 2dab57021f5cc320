// identifiers.h: the identifiers under which component hosts know the library, its
// classes and their interfaces. They never change, and no other thing ever gets one.
#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace orv2_geo::com {

/// An identifier as component hosts lay it out in memory.
struct Identifier {
  std::uint32_t first;
  std::uint16_t second;
  std::uint16_t third;
  std::array<std::uint8_t, 8> rest;

  friend bool operator==(const Identifier&, const Identifier&) = default;
};

struct ClassIdentifiers {
  Identifier of_class;
  Identifier of_interface;
};

inline constexpr Identifier library_identifier = {
    0x2b215cc0, 0xa8e5, 0x5dfa, {0xaa, 0x9d, 0xc9, 0x14, 0x04, 0xb6, 0x94, 0xe9}};

/// In the order of the catalogue.
inline constexpr std::array<ClassIdentifiers, 7> class_identifiers{
    {{{0x2fbced31,
       0x6a9d,
       0x54ce,
       {0xa0, 0x21, 0x5f, 0xc1, 0xe3, 0x0b, 0x7a, 0x18}},  // cgeo_Algorismos
      {0xea93456e, 0x7caa, 0x55e6, {0xa7, 0xd2, 0x5f, 0xde, 0x9b, 0xcc, 0xa0, 0x88}}},
     {{0x81252673,
       0x5fab,
       0x515f,
       {0x85, 0x26, 0xef, 0x23, 0x83, 0x79, 0xe8, 0xbf}},  // cgeo_FuncDeriv
      {0x873277d3, 0x0519, 0x5bad, {0xb4, 0xd7, 0x0e, 0x55, 0xec, 0x40, 0xfc, 0xb1}}},
     {{0xf43339af,
       0xd2c8,
       0x5305,
       {0xa9, 0xe7, 0x9e, 0xfa, 0xea, 0xdc, 0x56, 0xdb}},  // cgeo_Terreno
      {0x6e54fb56, 0x510f, 0x55bd, {0xa0, 0x75, 0x98, 0x56, 0x88, 0x0b, 0xe7, 0xc5}}},
     {{0xf13e8122, 0xa4f7, 0x5213, {0x91, 0x64, 0x22, 0x9a, 0xfc, 0x33, 0x3d, 0x8f}},  // cgeo_api
      {0x5d975cb8, 0x785c, 0x5f78, {0x9c, 0x86, 0xeb, 0x86, 0xf5, 0x97, 0xa7, 0xdb}}},
     {{0x83567dbc,
       0xc5d2,
       0x54d7,
       {0x8b, 0xf5, 0x4c, 0x3e, 0x00, 0x56, 0xee, 0x40}},  // cgeo_Ordena
      {0xf7ef9883, 0x9abb, 0x5471, {0xb0, 0xc4, 0x7a, 0xb2, 0x6d, 0xe9, 0x6d, 0xd9}}},
     {{0x70b933d5,
       0xbaf4,
       0x5b71,
       {0xa4, 0x4a, 0x20, 0x1c, 0x58, 0xd2, 0xa3, 0x11}},  // cgeo_Geometria
      {0xecffe558, 0xc285, 0x59c9, {0xa9, 0x49, 0xc6, 0xa0, 0x40, 0xf8, 0x89, 0x13}}},
     {{0x44957de7,
       0x17a0,
       0x59ce,
       {0xa3, 0x0c, 0x80, 0xca, 0x49, 0xbc, 0xd0, 0x3c}},  // cgeo_Matrices
      {0x0d3650c9, 0x9d59, 0x5042, {0x9a, 0xed, 0x8a, 0x7b, 0x38, 0xc8, 0xb4, 0xe4}}}}};

inline constexpr int library_major = 2;
inline constexpr int library_minor = 0;
inline constexpr int library_locale = 1033;
inline constexpr char library_help[] = "Orv3-> Geo";

/// The first member's number for late-bound calls; those of the others follow in the
/// order of the table. The two sides of a property share the first one's.
inline constexpr std::int32_t first_dispatch_number = 1;

/// "01234567-89ab-cdef-0123-456789abcdef", without braces.
inline std::string spelled(const Identifier& identifier) {
  std::string text;
  const auto put = [&](std::uint32_t value, int digits) {
    while (digits-- > 0) text.push_back("0123456789abcdef"[value >> 4 * digits & 0xf]);
  };
  put(identifier.first, 8);
  text.push_back('-');
  put(identifier.second, 4);
  text.push_back('-');
  put(identifier.third, 4);
  for (std::size_t i = 0; i < identifier.rest.size(); ++i) {
    if (i == 0 || i == 2) text.push_back('-');
    put(identifier.rest[i], 2);
  }
  return text;
}

}  // namespace orv2_geo::com
