#include "survey_report/dxf.h"

#include <gtest/gtest.h>

namespace survey_report {
namespace {

struct TextRow {
  const char* rule;
  std::string_view text;
  std::string_view written;
};

const TextRow text_rows[] = {
    {"plain", "POZO 60x60, \"A\" <b>", "POZO 60x60, \"A\" <b>"},
    {"other scripts", "SE\u00D1AL \u20AC",
     "SE\xD1"
     "AL \\U+20AC"},
    {"beyond 16 bits", "\U0001F332", "?"},
    {"line ends and controls are blanks", "a\nb\x01", "a b "},
    {"a backslash is no command", "\\U+0041", "\\U+005CU+0041"},
    {"a caret is no control", "a^J", "a^ J"},
    {"one percent sign is one", "5% d", "5% d"},
    {"two begin no command", "20%%d", "20%%%%%%d"},
    {"nor do three", "%%%", "%%%%%%%%%"},
    {"bytes that are no UTF-8", "a\xFF", "a?"},
};

TEST(Dxf, Texts) {
  for (const TextRow& row : text_rows) EXPECT_EQ(dxf_text(row.text), row.written) << row.rule;
}

struct LayerRow {
  const char* rule;
  std::string_view text;
  std::string_view name;
};

// In this order: names are taken.
const LayerRow layer_rows[] = {
    {"capitals and digits", "POZO-60$", "POZO-60$"},
    {"small letters", "eje", "EJE"},
    {"accents", "Se\u00F1al \u00E1\u00C9", "SENAL_AE"},
    {"taken", "EJE", "EJE_2"},
    {"taken again", "Eje", "EJE_3"},
    {"marks", "a<b>|\"'\\", "A_B_____"},
    {"nothing", "", "_"},
    {"the layer that every drawing has", "0", "0_2"},
    {"too long", "ABCDEFGHIJKLMNOPQRSTUVWXYZ123456789", "ABCDEFGHIJKLMNOPQRSTUVWXYZ12345"},
    {"too long and taken", "ABCDEFGHIJKLMNOPQRSTUVWXYZ12345X", "ABCDEFGHIJKLMNOPQRSTUVWXYZ123_2"},
};

TEST(Dxf, LayersHaveNamesOfTheirOwn) {
  LayerNames names;
  for (const LayerRow& row : layer_rows) EXPECT_EQ(names.name_for(row.text), row.name) << row.rule;
}

}  // namespace
}  // namespace survey_report
