#include "KYV/PlotAttr.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace KYV {
namespace {

// What is set, written field by field.
std::string describe(const PlotAttr& a) {
  std::string text;
  const auto add = [&text](const char* key, double value) {
    if (Const::isMissing(value)) return;
    char part[40];
    std::snprintf(part, sizeof part, "%s%g ", key, value);
    text += part;
  };
  add("wi", static_cast<double>(a.width));
  add("he", static_cast<double>(a.height));
  add("we", static_cast<double>(a.weight));
  add("ex", static_cast<double>(a.expansion));
  add("st", a.style);
  add("sh", a.shadow);
  add("fi", a.fill);
  add("ci", a.color);
  for (const char* field : {a.name, a.font, a.label}) {
    text += field;
    text += '|';
  }
  return text;
}

TEST(PlotAttr, TextsAreTakenApart) {
  struct Case {
    const char* text;
    const char* fields;
  };
  constexpr Case CASES[] = {
      {"red:wi=2:st=dsh", "wi2 st2 red||"},
      {"co=red,wi=2,st=dsh", "wi2 st2 red||"},
      {"red", "red||"},
      {"wi=2", "wi2 |||"},
      {"CO=red,WI=2.5,SH=3,HI=0.02", "wi2.5 he0.02 sh3 red||"},
      {"red:sc=4:we=1:te=1.5", "he4 we1 ex1.5 red||"},
      {"red:fi=4%:fo=roman:la=heavy rain", "fi14 red|roman|heavy rain|"},
      {"blue:fp=//", "fi7 blue||"},
      {"red:w3:s4:f2:h0.5:e2", "wi3 he0.5 ex2 st4 fi2 red||"},
      {"red:fi=3:fM", "red||"},
      {"red:tf=gothic", "red|gothic|"},
      {"red:t", "red||"},
      {"w3:w4", "wi4 w3||"},
      {"off:la=_", "off||_|"},
      {"red:qq=1:=:wi=:wi=x", "red||"},
      {"red:wi=nan:h=inf:sh=99999999999", "red||"},
      {"abcdefghijklmnopqrstuvwxyz", "abcdefghijklmnopqrs||"},
      {"", "||"},
      {":", "||"},
  };
  for (const Case& c : CASES) {
    SCOPED_TRACE(c.text);
    std::string expected = c.fields;
    if (std::count(expected.begin(), expected.end(), '|') == 2) expected += '|';
    EXPECT_EQ(expected, describe(PlotAttr(c.text)));
  }
  EXPECT_EQ("|||", describe(PlotAttr(nullptr)));
}

TEST(PlotAttr, TextWinsOverDefaults) {
  PlotAttr attr;
  attr.color = 5;
  attr.set("wi=3:la=x", "red:wi=1:hi=2");
  EXPECT_EQ("wi3 he2 red||x|", describe(attr));
  attr.color = 7;
  attr.parse("blue");
  EXPECT_EQ("wi3 he2 blue||x|", describe(attr)) << "an index belongs to its name";
}

TEST(PlotAttr, UpdateTakesWhatIsSet) {
  PlotAttr attr("red:wi=1:la=own:sh=2");
  attr.color = 3;
  PlotAttr other("blue:hi=4:la=other:sh=9:fo=roman");
  attr.update(other);
  EXPECT_EQ("wi1 he4 sh2 blue|roman|own|", describe(attr));
  other.init();
  other.color = 8;
  attr.update(other);
  EXPECT_EQ("wi1 he4 sh2 ci8 blue|roman|own|", describe(attr));
}

TEST(PlotAttr, ColorsThatDrawNothingAreNotValid) {
  for (const char* name : {"off", "OFF", "none", "back", ""}) EXPECT_FALSE(PlotAttr(name).validColor()) << name;
  PlotAttr attr("red");
  EXPECT_TRUE(attr.validColor());
  attr.color = -1;
  EXPECT_FALSE(attr.validColor()) << "looked up in vain";
}

TEST(PlotAttr, StylesHaveNames) {
  struct Case {
    int (*parse)(const char*);
    const char* text;
    int value;
  };
  constexpr Case CASES[] = {
      {PlotAttr::parseLineStyle, "sol", 1},      {PlotAttr::parseLineStyle, "lsdsh", 3},
      {PlotAttr::parseLineStyle, "dot", 5},      {PlotAttr::parseLineStyle, "7", 7},
      {PlotAttr::parseLineStyle, "wavy", -9999}, {PlotAttr::parseFillStyle, "SOL", 0},
      {PlotAttr::parseFillStyle, "\\\\", 6},     {PlotAttr::parseFillStyle, "xx", 9},
      {PlotAttr::parseFillStyle, "0%", 10},      {PlotAttr::parseFillStyle, "9%", 19},
      {PlotAttr::parseFillStyle, "9", 9},        {PlotAttr::parseMarker, "Circle", 4},
      {PlotAttr::parseMarker, "#", 6},           {PlotAttr::parseMarker, "v", 9},
      {PlotAttr::parseMarker, "light", 10},      {PlotAttr::parseMarker, "what", 2},
      {PlotAttr::parseMarker, nullptr, 2},
  };
  for (const Case& c : CASES) EXPECT_EQ(c.value, c.parse(c.text)) << (c.text ? c.text : "null");
}

}  // namespace
}  // namespace KYV
