#include "survey_report/points.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <locale>
#include <random>

#include "tests/survey_report/written.h"

namespace survey_report {

void PrintTo(const SurveyPoint& p, std::ostream* out) {
  *out << p.number << ' ' << p.x << ' ' << p.y << ' ' << p.z << " [" << p.code << "] line "
       << p.line;
}

bool operator==(const SurveyPoint& a, const SurveyPoint& b) {
  return a.number == b.number && a.x == b.x && a.y == b.y && a.z == b.z && a.code == b.code &&
         a.line == b.line;
}

namespace {

using Points = std::vector<SurveyPoint>;

using std::string_view_literals::operator""sv;

struct GoodRow {
  const char* rule;
  std::string_view text;
  Points points;
};

const GoodRow good_rows[] = {
    {"an empty file holds no points", "", {}},
    {"a point a line",
     "1,2,3,4,EJE\n5,6,7,8,POZO\n",
     {{"1", 2, 3, 4, "EJE", 1}, {"5", 6, 7, 8, "POZO", 2}}},
    {"the last line may have no end", "1,2,3,4,EJE", {{"1", 2, 3, 4, "EJE", 1}}},
    {"lines may end in CRLF",
     "1,2,3,4,EJE\r\n5,6,7,8\r\n",
     {{"1", 2, 3, 4, "EJE", 1}, {"5", 6, 7, 8, "", 2}}},
    {"a UTF-8 mark is passed over",
     "\xEF\xBB\xBF"
     "1,2,3,4,EJE\n",
     {{"1", 2, 3, 4, "EJE", 1}}},
    {"a UTF-8 mark before a header",
     "\xEF\xBB\xBF"
     "Number,X,Y,Z,Code\n1,2,3,4,EJE\n",
     {{"1", 2, 3, 4, "EJE", 2}}},
    {"blank lines are passed over, and counted",
     "\n1,2,3,4,EJE\n \t\r\n\n5,6,7,8,\n",
     {{"1", 2, 3, 4, "EJE", 2}, {"5", 6, 7, 8, "", 5}}},
    {"comments are passed over, and counted",
     "# a\n1,2,3,4,EJE\n  # b,c\n5,6,7,8,\n",
     {{"1", 2, 3, 4, "EJE", 2}, {"5", 6, 7, 8, "", 4}}},
    {"a file of comments holds no points", "# one\n# two\n", {}},
    {"a header line", "Number,X,Y,Z,Code\n1,2,3,4,EJE\n", {{"1", 2, 3, 4, "EJE", 2}}},
    {"a header without a code", "P,Este,Norte,Cota\n1,2,3,4\n", {{"1", 2, 3, 4, "", 2}}},
    {"a header in quotes", "\"P\",\"X\",\"Y\",\"Z\"\n1,2,3,4\n", {{"1", 2, 3, 4, "", 2}}},
    {"a header with more titles than fields",
     "P,X,Y,Z,Code,Note\n1,2,3,4\n",
     {{"1", 2, 3, 4, "", 2}}},
    {"a header after comments and blank lines",
     "# a\n\nP,X,Y,Z\n1,2,3,4\n",
     {{"1", 2, 3, 4, "", 4}}},
    {"a header alone is no point", "P,X,Y,Z,Code\n", {}},
    {"blanks around fields are ignored", " 1 ,\t2, 3 ,4 ,  EJE \n", {{"1", 2, 3, 4, "EJE", 1}}},
    {"the code may be missing", "1,2,3,4\n", {{"1", 2, 3, 4, "", 1}}},
    {"the code may be empty", "1,2,3,4,\n", {{"1", 2, 3, 4, "", 1}}},
    {"the code may be blank", "1,2,3,4,  \n", {{"1", 2, 3, 4, "", 1}}},
    {"a code may hold blanks, / and *",
     "1,2,3,4,SW/STEP 1.5*1.5\n",
     {{"1", 2, 3, 4, "SW/STEP 1.5*1.5", 1}}},
    {"a quote inside a code is a quote",
     "1,2,3,4,WALL 18\" W\n",
     {{"1", 2, 3, 4, "WALL 18\" W", 1}}},
    {"a # inside a code is no comment", "1,2,3,4,# 5\n", {{"1", 2, 3, 4, "# 5", 1}}},
    {"a code in quotes may hold commas", "1,2,3,4,\"POZO, 60\"\n", {{"1", 2, 3, 4, "POZO, 60", 1}}},
    {"blanks around a quoted code are ignored, those inside stay",
     "1,2,3,4, \" A \" \r\n",
     {{"1", 2, 3, 4, " A ", 1}}},
    {"a doubled quote is one quote", "1,2,3,4,\"18\"\" W\"\n", {{"1", 2, 3, 4, "18\" W", 1}}},
    {"a quoted code may be empty", "1,2,3,4,\"\"\n", {{"1", 2, 3, 4, "", 1}}},
    {"a code may be of any alphabet",
     "1,2,3,4,SE\xC3\x91"
     "AL\n",
     {{"1", 2, 3, 4,
       "SE\xC3\x91"
       "AL",
       1}}},
    {"a point number is a text", "E-1 bis,2,3,4\n", {{"E-1 bis", 2, 3, 4, "", 1}}},
    {"a number keeps its noughts", "007,2,3,4\n", {{"007", 2, 3, 4, "", 1}}},
    {"a number may be used twice",
     "1,2,3,4\n1,5,6,7\n",
     {{"1", 2, 3, 4, "", 1}, {"1", 5, 6, 7, "", 2}}},
    {"fields between semicolons, with decimal commas",
     "1; 2,5 ;3;-4,25;EJE, POZO\n5;6;7;8\n",
     {{"1", 2.5, 3, -4.25, "EJE, POZO", 1}, {"5", 6, 7, 8, "", 2}}},
    {"fields between semicolons, with decimal points",
     "1;2.5;3;4;\"A;B\"\n",
     {{"1", 2.5, 3, 4, "A;B", 1}}},
    {"fields between tabs",
     "P\tX\tY\tZ\n1\t2,5\t3\t4\tSW STEP\n",
     {{"1", 2.5, 3, 4, "SW STEP", 2}}},
    {"an empty code between tabs", "1\t2\t3\t4\t\n", {{"1", 2, 3, 4, "", 1}}},
    {"fields between blanks; the code is the rest of the line",
     "  1   2.5\t3 4 SW  STEP \n5 6 7 8 \n",
     {{"1", 2.5, 3, 4, "SW  STEP", 1}, {"5", 6, 7, 8, "", 2}}},
    {"a quoted number between blanks", "\"E 1\" 2 3 4 \"A\"\n", {{"E 1", 2, 3, 4, "A", 1}}},
    {"a header between blanks", "Punto Este Norte Cota\n1 2 3 4\n", {{"1", 2, 3, 4, "", 2}}},
    {"commas with blanks are commas", "1, 2, 3, 4, A B\n", {{"1", 2, 3, 4, "A B", 1}}},
    {"a bad line before the one that tells the separator is judged by it",
     "# a;b\n1;2;3;4\n",
     {{"1", 2, 3, 4, "", 2}}},
    {"lines may end in CR",
     "P,X,Y,Z\r1,2,3,4\r\r5,6,7,8\r",
     {{"1", 2, 3, 4, "", 2}, {"5", 6, 7, 8, "", 4}}},
    {"an end-of-file mark is passed over", "1,2,3,4\r\n\x1A", {{"1", 2, 3, 4, "", 1}}},
    {"Windows-1252",
     "1,2,3,4,SE\xD1"
     "AL \x80\n",
     {{"1", 2, 3, 4, "SE\u00D1AL \u20AC", 1}}},
    {"UTF-16, low byte first",
     "\xFF\xFE"
     "1\0,\0"
     "2\0,\0"
     "3\0,\0"
     "4\0,\0\xD1\0\n\0"sv,
     {{"1", 2, 3, 4, "\u00D1", 1}}},
    {"UTF-16, high byte first, with a pair",
     "\xFE\xFF\0"
     "1\0,\0"
     "2\0,\0"
     "3\0,\0"
     "4\0,\xD8\x3C\xDF\x32"sv,
     {{"1", 2, 3, 4, "\U0001F332", 1}}},
    {"a line that reads with two separators, one of which the header has",
     "P;X;Y;Z;C\n1,10,20,30,c;5;6;7\n",
     {{"1,10,20,30,c", 5, 6, 7, "", 2}}},
    {"signs, exponents and bare points", "1,-2.5,+.5,4.e2\n", {{"1", -2.5, 0.5, 400, "", 1}}},
};

TEST(Points, WhatIsRead) {
  for (const GoodRow& row : good_rows) {
    const PointFile file = read_points(row.text, FieldOrder::x_first);
    EXPECT_EQ(file.points, row.points) << row.rule;
    EXPECT_EQ(messages("f", file.bad_lines), "") << row.rule;
  }
}

struct BadRow {
  const char* rule;
  std::string_view text;
  const char* messages;
  ExitCode code = ExitCode::bad_number;
};

const BadRow bad_rows[] = {
    {"a bad number", "1,2,3x,4\n", "f:1:5: Y \"3x\" is not a number\n"},
    {"a number has no blank inside", "1,2 0,3,4\n", "f:1:3: X \"2 0\" is not a number\n"},
    {"a number has one sign", "1,+-2,3,4\n", "f:1:3: X \"+-2\" is not a number\n"},
    {"a bare sign is no number", "1,2,3,+\n", "f:1:7: Z \"+\" is not a number\n"},
    {"a number is decimal", "1,2,0x10,4\n", "f:1:5: Y \"0x10\" is not a number\n"},
    {"an empty coordinate", "1,2,,4\n", "f:1:5: Y is empty\n"},
    {"an infinite coordinate", "1,2,3,-inf\n", "f:1:7: Z \"-inf\" is not finite\n"},
    {"a coordinate that is no number by name", "1,nan,3,4\n", "f:1:3: X \"nan\" is not finite\n"},
    {"a coordinate past every double", "1,1e999,3,4\n", "f:1:3: X \"1e999\" is out of range\n"},
    {"a missing field", "1,2,3\n", "f:1:6: 3 fields, but number, X, Y, Z are needed\n",
     ExitCode::few_columns},
    {"two columns", "1,2\n3,4\n",
     "f:1:4: 2 fields, but number, X, Y, Z are needed\n"
     "f:2:4: 2 fields, but number, X, Y, Z are needed\n",
     ExitCode::few_columns},
    {"a line of one field", "hillside\n", "f:1:9: 1 field, but number, X, Y, Z are needed\n",
     ExitCode::few_columns},
    {"too many fields", "1,2,3,4,A,B\n",
     "f:1:11: 6 fields, but only number, X, Y, Z, code are allowed\n", ExitCode::many_columns},
    {"no point number", ",2,3,4\n", "f:1:1: the point number is empty\n", ExitCode::bad_line},
    {"a quote that is not closed", "1,2,3,4,\"A\n", "f:1:9: a quoted field has no closing quote\n",
     ExitCode::bad_line},
    {"text after a quoted code", "1,2,3,4,\"A\" B\n",
     "f:1:13: text after the closing quote of \"A\"\n", ExitCode::bad_line},
    {"columns are counted in characters", "\u00D1\u00D1,2,3,x\n",
     "f:1:8: Z \"x\" is not a number\n"},
    {"a first line with one number is no header", "P,X,3,Z\n", "f:1:3: X \"X\" is not a number\n"},
    {"a first line with an infinite number is no header", "P,X,inf,Z\n",
     "f:1:3: X \"X\" is not a number\n"},
    {"a first line with an empty coordinate is no header", "P,,Y,Z\n", "f:1:3: X is empty\n"},
    {"a second header", "P,X,Y,Z\nP,X,Y,Z\n", "f:2:3: X \"X\" is not a number\n"},
    {"a header after a point", "1,2,3,4\nP,X,Y,Z\n", "f:2:3: X \"X\" is not a number\n"},
    {"a header after a bad line", "1,2\nP,X,Y,Z\n",
     "f:1:4: 2 fields, but number, X, Y, Z are needed\n"
     "f:2:3: X \"X\" is not a number\n",
     ExitCode::few_columns},
    {"lines are counted from the top of the file", "# a\r\n\r\nP,X,Y,Z\r\n1,2,3,4\r\n1,2,3,b\r\n",
     "f:5:7: Z \"b\" is not a number\n"},
    {"a control character does not reach the screen", "1,2,3,\x1B[2J\n",
     "f:1:7: Z \" [2J\" is not a number\n"},
    {"a long field is cut", "1,2,3,1234567890123456789012345678901234567890x\n",
     "f:1:7: Z \"1234567890123456789012345678901234567890...\" is not a number\n"},
    // Separators
    {"a line between semicolons among commas", "1,2,3,4\n5;6;7;8\n",
     "f:2:2: semicolons between the fields here, but commas in line 1\n", ExitCode::mixed},
    {"a line between blanks among tabs", "#\n1\t2\t3\t4\n5 6 7 8\n",
     "f:3:2: blanks between the fields here, but tabs in line 2\n", ExitCode::mixed},
    {"a line between commas among semicolons", "1;2,5;3;4\n5,6,7,8\n",
     "f:2:2: commas between the fields here, but semicolons in line 1\n", ExitCode::mixed},
    {"a line that reads with two separators", "1,10,20,30,c;5;6;7\n",
     "f:1:1: commas or semicolons may be what is between the fields: it reads as a point both "
     "ways\n",
     ExitCode::mixed},
    {"such a line, and a header that reads with both", "P,A,B,C;X;Y;Z\n1,10,20,30,c;5;6;7\n",
     "f:2:1: commas or semicolons may be what is between the fields: it reads as a point both "
     "ways\n",
     ExitCode::mixed},
    {"a bad number between semicolons", "1;2;x;4\n", "f:1:5: Y \"x\" is not a number\n"},
    {"decimal commas between commas", "1,100,25,200,50,600,75\n",
     "f:1:17: 7 fields, but only number, X, Y, Z, code are allowed: with decimal commas, part the "
     "fields by semicolons\n",
     ExitCode::many_columns},
    {"decimal commas between commas, a code", "1,-100,25,200,50,600,75,EJE\n",
     "f:1:18: 8 fields, but only number, X, Y, Z, code are allowed: with decimal commas, part the "
     "fields by semicolons\n",
     ExitCode::many_columns},
    {"nine whole numbers, more than decimal commas make", "1,100,25,200,50,600,75,8,9\n",
     "f:1:17: 9 fields, but only number, X, Y, Z, code are allowed\n", ExitCode::many_columns},
    {"seven fields that are no decimal commas", "1,100.25,200.5,600.75,EJE,A,B\n",
     "f:1:27: 7 fields, but only number, X, Y, Z, code are allowed\n", ExitCode::many_columns},
    {"two columns between blanks", "100 200\n", "f:1:8: 2 fields, but number, X, Y, Z are needed\n",
     ExitCode::few_columns},
    // Decimal signs
    {"a decimal point among decimal commas", "1;2,5;3;4\n5;6;7.5;8\n",
     "f:2:5: Y \"7.5\" has a decimal point, but line 1 has a decimal comma\n", ExitCode::mixed},
    {"a decimal comma among decimal points", "1 2 3 4\n5 6.5 7 8\n9 1,5 2 3\n",
     "f:3:3: X \"1,5\" has a decimal comma, but line 2 has a decimal point\n", ExitCode::mixed},
    {"both signs in a number", "1;1.234,5;3;4\n", "f:1:3: X \"1.234,5\" is not a number\n"},
    {"thousands between commas", "1;1,234.5;3;4\n", "f:1:3: X \"1,234.5\" is not a number\n"},
    // Line ends
    {"a line that ends in CR among those that end in LF", "1,2,3,4\n5,6,7,8\r9,8,7,6\n",
     "f:2:8: a line ends in CR here, but line 1 ends in LF\n", ExitCode::mixed},
    // Alphabets
    {"Windows-1252 among UTF-8",
     "1,2,3,4,SE\xC3\x91"
     "AL\n2,2,3,4,SE\xD1"
     "AL\n",
     "f:2:11: Windows-1252 text here, but line 1 is UTF-8 text\n", ExitCode::mixed},
    {"a byte that no alphabet has", "1,2,3,4,A\n2,2,3,4,\x81\n",
     "f:2:9: byte 81 is no character of Windows-1252, and this is not UTF-8\n",
     ExitCode::bad_characters},
    {"half of a character of UTF-16",
     "\xFF\xFE"
     "1\0,\0"
     "2"sv,
     "f:1:3: half a character of UTF-16\n", ExitCode::bad_characters},
    {"half of a pair of UTF-16",
     "\xFF\xFE"
     "1\0\x00\xD8"
     "2\0"sv,
     "f:1:2: half a character of UTF-16\n", ExitCode::bad_characters},
    // What is no point file
    {"a zero byte", "1,2,3,4\n1,2\0,3,4\n"sv,
     "f:2:4: not a text file: it holds a zero byte (UTF-16 needs its mark)\n", ExitCode::binary},
    {"a zero character of UTF-16",
     "\xFE\xFF\0"
     "1\0\0"sv,
     "f:1:2: not a text file: it holds a zero byte (UTF-16 needs its mark)\n", ExitCode::binary},
    {"a zip file", "PK\x03\x04 and more",
     "f: a zip file, as spreadsheets are too: unpack it, or save the sheet as CSV\n",
     ExitCode::zipped},
    {"an empty zip file", "PK\x05\x06",
     "f: a zip file, as spreadsheets are too: unpack it, or save the sheet as CSV\n",
     ExitCode::zipped},
    {"a gzip file", "\x1F\x8B\x08", "f: a compressed file: unpack it first\n", ExitCode::zipped},
    {"a PDF file", "%PDF-1.4\n", "f: a PDF file, not a point file\n", ExitCode::binary},
    {"an old spreadsheet", "\xD0\xCF\x11\xE0",
     "f: an office document, not a point file: save the sheet as CSV\n", ExitCode::binary},
    {"a drawing", "AC1015", "f: a CAD drawing, not a point file\n", ExitCode::binary},
};

TEST(Points, WhatIsRefused) {
  for (const BadRow& row : bad_rows) {
    const PointFile file = read_points(row.text, FieldOrder::x_first);
    EXPECT_EQ(messages("f", file.bad_lines), row.messages) << row.rule;
    ASSERT_FALSE(file.bad_lines.empty()) << row.rule;
    EXPECT_EQ(file.bad_lines.front().code, row.code) << row.rule;
  }
}

TEST(Points, NorthingFirst) {
  const PointFile file =
      read_points("P,Y,X,Z\n1,4473000,435000,600,EJE\n", FieldOrder::northing_first);
  EXPECT_EQ(file.points, (Points{{"1", 435000, 4473000, 600, "EJE", 2}}));
}

TEST(Points, NorthingFirstNamesTheFieldsInThatOrder) {
  const PointFile file = read_points("1,a,2,3\n1,2,b,3\n1\n", FieldOrder::northing_first);
  EXPECT_EQ(messages("f", file.bad_lines),
            "f:1:3: Y \"a\" is not a number\n"
            "f:2:5: X \"b\" is not a number\n"
            "f:3:2: 1 field, but number, Y, X, Z are needed\n");
}

TEST(Points, AGoodLineAfterABadOneIsRead) {
  const PointFile file = read_points("1,2\n5,6,7,8\n", FieldOrder::x_first);
  EXPECT_EQ(file.points, (Points{{"5", 6, 7, 8, "", 2}}));
}

struct CommaNumbers : std::numpunct<char> {
  char do_decimal_point() const override { return ','; }
};

TEST(Points, TheDecimalSignIsAPointWhateverTheLocale) {
  const std::locale before =
      std::locale::global(std::locale(std::locale::classic(), new CommaNumbers));
  const PointFile file = read_points("1,2.5,3,4\n", FieldOrder::x_first);
  std::locale::global(before);
  EXPECT_EQ(file.points, (Points{{"1", 2.5, 3, 4, "", 1}}));
}

struct CountRow {
  const char* rule;
  std::size_t bad;
  std::string last;
};

const CountRow count_rows[] = {
    {"twenty bad lines are all shown", 20, "f:20:4: 1 field, but number, X, Y, Z are needed\n"},
    {"one more is counted", 21, "f: and 1 more bad line\n"},
    {"many more are counted", 50, "f: and 30 more bad lines\n"},
};

TEST(Points, NotMoreThanTwentyBadLinesAreShown) {
  for (const CountRow& row : count_rows) {
    std::string text;
    for (std::size_t i = 0; i < row.bad; ++i) text += "bad\n";
    const PointFile file = read_points(text, FieldOrder::x_first);
    EXPECT_TRUE(messages("f", file.bad_lines).ends_with(row.last)) << row.rule;
  }
}

struct WrittenRow {
  const char* rule;
  SurveyPoint point;
  const char* line;
};

const WrittenRow written_rows[] = {
    {"coordinates have three decimals",
     {"1", 2, 3.5, 616.65, "EJE", 2},
     "1,2.000,3.500,616.650,EJE"},
    {"or as many as they need",
     {"1", 0.1234567, 1e-7, -0.0, "", 2},
     "1,0.1234567,0.0000001,-0.000,"},
    {"a number past all digits is written out",
     {"1", 1e22, 5e-5, 0, "", 2},
     "1,10000000000000000000000.000,0.00005,0.000,"},
    {"a comma is put in quotes", {"1", 2, 3, 4, "POZO, 60", 2}, "1,2.000,3.000,4.000,\"POZO, 60\""},
    {"a quote is doubled", {"1", 2, 3, 4, "18\" W", 2}, "1,2.000,3.000,4.000,\"18\"\" W\""},
    {"blanks at the ends are kept", {"1", 2, 3, 4, " A ", 2}, "1,2.000,3.000,4.000,\" A \""},
    {"a number that would begin a comment", {"#1", 2, 3, 4, "A", 2}, "\"#1\",2.000,3.000,4.000,A"},
    {"a return is no line end", {"1", 2, 3, 4, "A\r", 2}, "1,2.000,3.000,4.000,\"A\r\""},
    {"a code in which tabs part what could be a point",
     {"1", 2, 3, 4, "5\t6\t7\t8,", 2},
     "1,2.000,3.000,4.000,\"5\t6\t7\t8,\""},
    {"a code of another alphabet",
     {"1", 2, 3, 4,
      "SE\xC3\x91"
      "AL",
      2},
     "1,2.000,3.000,4.000,SE\xC3\x91"
     "AL"},
};

TEST(Points, WhatIsWrittenReadsBack) {
  for (const WrittenRow& row : written_rows) {
    const std::string text = point_file({row.point}, FieldOrder::x_first);
    EXPECT_EQ(text, "Number,X,Y,Z,Code\n" + std::string(row.line) + '\n') << row.rule;
    EXPECT_EQ(read_points(text, FieldOrder::x_first).points, Points{row.point}) << row.rule;
  }
}

TEST(Points, NorthingFirstIsWrittenSo) {
  const Points points{{"1", 435000, 4473000, 600, "EJE", 2}};
  const std::string text = point_file(points, FieldOrder::northing_first);
  EXPECT_EQ(text, "Number,Y,X,Z,Code\n1,4473000.000,435000.000,600.000,EJE\n");
  EXPECT_EQ(read_points(text, FieldOrder::northing_first).points, points);
}

TEST(Points, EveryDoubleReadsBackBitForBit) {
  std::mt19937_64 bits(1);
  for (int i = 0; i < 20000; ++i) {
    const double value = std::bit_cast<double>(bits());
    if (!std::isfinite(value)) continue;
    const Points points{{"1", value, 5e-324, std::numeric_limits<double>::lowest(), "", 2}};
    const Points read =
        read_points(point_file(points, FieldOrder::x_first), FieldOrder::x_first).points;
    ASSERT_EQ(read, points);
    EXPECT_EQ(std::bit_cast<std::uint64_t>(read[0].x), std::bit_cast<std::uint64_t>(value));
  }
}

}  // namespace
}  // namespace survey_report
