#include "rendering/text.h"

#include <gtest/gtest.h>

namespace dorvdl::ctl {
namespace {

class TextTest : public testing::Test {
 protected:
  TextTest() { UseUtf8(); }
};

TEST_F(TextTest, OrdinaryTextIsPrintableAsItIs) {
  EXPECT_EQ(Printable("Ägir \\ 日本語 e\u0301 ☃"), "Ägir \\ 日本語 e\u0301 ☃");
  EXPECT_EQ(Printable(""), "");
}

TEST_F(TextTest, AsciiControlCharactersAreEscaped) {
  EXPECT_EQ(Printable("\x1b[31m\x7f\a"), "\\x1b[31m\\x7f\\x07");
  EXPECT_EQ(Printable("a\nb\tc\r"), "a\\nb\\tc\\x0d");
  EXPECT_EQ(Printable(std::string("a\0b", 3)), "a\\x00b");
}

TEST_F(TextTest, OtherControlCharactersAreEscaped) {
  EXPECT_EQ(Printable("\u009b31m"), "\\u{9b}31m");
  EXPECT_EQ(Printable("\u2028"), "\\u{2028}");
}

TEST_F(TextTest, MarksThatTurnTheDirectionAreEscaped) {
  EXPECT_EQ(Printable("\u202egnp.exe"), "\\u{202e}gnp.exe");
  EXPECT_EQ(Printable("\u2066\u2069\u200f"), "\\u{2066}\\u{2069}\\u{200f}");
}

TEST_F(TextTest, BytesThatAreNoUtf8AreEscapedOneByOne) {
  EXPECT_EQ(Printable("\xff\xfez"), "\\xff\\xfez");
  EXPECT_EQ(Printable("z\xe6\x97"), "z\\xe6\\x97");         // cut short
  EXPECT_EQ(Printable("\xc0\x9b"), "\\xc0\\x9b");           // an ESC in disguise
  EXPECT_EQ(Printable("\xed\xa0\x80"), "\\xed\\xa0\\x80");  // a surrogate
}

TEST_F(TextTest, Utf8IsToldFromOtherBytes) {
  EXPECT_TRUE(IsUtf8("Ägir 日本語"));
  EXPECT_TRUE(IsUtf8(std::string("\0", 1)));
  EXPECT_FALSE(IsUtf8("\xc4gir"));
}

TEST_F(TextTest, WidthIsThatOfTheTerminal) {
  EXPECT_EQ(Width("Ägir"), 4);
  EXPECT_EQ(Width("日本"), 4);
  EXPECT_EQ(Width("e\u0301"), 1);
}

TEST_F(TextTest, WhatIsTooWideEndsInAnEllipsis) {
  EXPECT_EQ(FitInto("abcdef", 6), "abcdef");
  EXPECT_EQ(FitInto("abcdef", 5), "abcd…");
  EXPECT_EQ(FitInto("日本語", 5), "日本…");
  EXPECT_EQ(FitInto("日本語", 4), "日…");  // half a character is none
  EXPECT_EQ(FitInto("e\u0301e\u0301e\u0301", 2), "e\u0301…");
}

TEST_F(TextTest, WordsAreWrappedBetweenEachOther) {
  EXPECT_EQ(Wrap("one two  three\nfour", 7), "one two\nthree\nfour");
  EXPECT_EQ(Wrap("one two", 6), "one\ntwo");
  EXPECT_EQ(Wrap("Ä Ü 日本", 8), "Ä Ü 日本");
  EXPECT_EQ(Wrap("a longer-than-that b", 4), "a\nlonger-than-that\nb");
  EXPECT_EQ(Wrap(" \n", 4), "");
}

TEST_F(TextTest, LinesAreJoinedBySingleSpaces) {
  EXPECT_EQ(JoinLines(" no such server\n\tIs it running?\n"), "no such server Is it running?");
}

}  // namespace
}  // namespace dorvdl::ctl
