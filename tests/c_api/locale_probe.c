/* Prints how this process's environment has texts ordered, such as
 *
 *   n < ñ = Ñ < O < z < ж = Ж ,
 *
 * and behind it the decimal sign that it has. */
#include <inttypes.h>
#include <stdio.h>
#include <string.h>

#include "orv2_geo/orv2_geo.h"

/* No more than 7: such a sort keeps the order of words that count as one. */
static const struct {
  uint16_t unit;
  const char* name;
} words[] = {{'z', "z"},    {0xf1, "ñ"},   {0xd1, "Ñ"}, {'n', "n"},
             {0x0436, "ж"}, {0x0416, "Ж"}, {'O', "O"}};
#define WORDS ((int32_t)(sizeof words / sizeof words[0]))

static orv2_handle sorts, texts;

static int failed(const char* what) {
  orv2_failure failure;
  orv2_last_failure(&failure);
  printf("%s: %" PRId32 " %s\n", what, failure.number, failure.description);
  return 1;
}

static int sort(int32_t* numbers, int32_t count) {
  orv2_handle index = 0;
  if (orv2_array_adopt(ORV2_LONG_ARRAY, numbers, 1, (uint32_t)count, NULL, NULL, &index) != 0) {
    return failed("adopt");
  }
  orv2_value arguments[2];
  memset(arguments, 0, sizeof arguments);
  arguments[0].tag = ORV2_STRING_ARRAY | ORV2_BYREF;
  arguments[0].as.handle = texts;
  arguments[1].tag = ORV2_LONG_ARRAY | ORV2_BYREF;
  arguments[1].as.handle = index;
  const int32_t status = orv2_call_name(sorts, "Ordena_StringIndexArray", arguments, 2, NULL);
  orv2_release(index);
  return status != 0 ? failed("sort") : 0;
}

/* Two words count as one where their order, turned round, stays so. */
static int print_sign_between(int32_t a, int32_t b) {
  int32_t turned[] = {b, a};
  if (sort(turned, 2) != 0) return 1;
  fputs(turned[0] == b ? " = " : " < ", stdout);
  return 0;
}

static int print_order(void) {
  if (orv2_create("Orv2_Geo.cgeo_Ordena", &sorts) != 0) return failed("create");
  if (orv2_array_make(ORV2_STRING_ARRAY, 1, (uint32_t)WORDS, 1, &texts) != 0) return failed("make");
  int32_t order[sizeof words / sizeof words[0]];
  for (int32_t i = 0; i < WORDS; ++i) {
    if (orv2_array_set_text(texts, i + 1, &words[i].unit, 1) != 0) return failed("set");
    order[i] = i + 1;
  }
  if (sort(order, WORDS) != 0) return 1;
  for (int32_t i = 0; i < WORDS; ++i) {
    if (i != 0 && print_sign_between(order[i - 1], order[i]) != 0) return 1;
    fputs(words[order[i] - 1].name, stdout);
  }
  orv2_release(texts);
  orv2_release(sorts);
  return 0;
}

/* A text is a number by the decimal sign of the environment alone. */
static int print_decimal_sign(void) {
  orv2_handle functions = 0;
  if (orv2_create("Orv2_Geo.cgeo_FuncDeriv", &functions) != 0) return failed("create");
  orv2_value text;
  memset(&text, 0, sizeof text);
  text.tag = ORV2_UTF8;
  for (const char* sign = ".,"; *sign != '\0'; ++sign) {
    char number[] = "0 5";
    number[1] = *sign;
    text.as.utf8 = number;
    if (orv2_call_name(functions, "F_LogN", &text, 1, NULL) == 0) printf(" %c", *sign);
  }
  putchar('\n');
  orv2_release(functions);
  return 0;
}

int main(void) { return print_order() || print_decimal_sign(); }
