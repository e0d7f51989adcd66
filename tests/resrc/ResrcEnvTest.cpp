#include "KYV/ResrcEnv.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "KYV/Resrc.h"
#include "KYV/String.h"
#include "Restore.h"

namespace KYV {

TEST(ResrcEnv, TheQualifiedVariableComesFirst) {
  struct Case {
    const char *what, *name;  // the secondary name
    const char *byProgram, *byName, *byBoth, *own, *plain;
    const char* value;  // null: not found
  };
  constexpr Case CASES[] = {
      {"program", "radmap", "program", "name", "both", "own", "plain", "program"},
      {"own name", "big", "program", "name", "both", "own", "plain", "name"},
      {"both names", "+big", "program", "name", "both", "own", "plain", "both"},
      {"no name", "", "program", "name", "both", "own", "plain", "program"},
      {"unset name", nullptr, "program", "name", "both", "own", "plain", "program"},
      {"empty is set", "radmap", "", "name", "both", "own", "plain", ""},
      {"dedicated", "+big", "program", "name", nullptr, "own", "plain", "own"},
      {"plain", "radmap", nullptr, "name", "both", nullptr, "plain", "plain"},
      {"none", "radmap", nullptr, "name", "both", nullptr, nullptr, nullptr},
  };
  for (const Case& c : CASES) {
    SCOPED_TRACE(c.what);
    const EnvVar variables[] = {{"kyv_radmap_plot_domain", c.byProgram},
                                {"kyv_big_plot_domain", c.byName},
                                {"kyv_radmap_big_plot_domain", c.byBoth},
                                {"kyvpltdom", c.own},
                                {"kyvplot_domain", c.plain}};
    Resrc store;
    store.set("prog", "radmap");
    if (c.name) store.set("name", c.name);
    String value("before");
    EXPECT_EQ(c.value ? 1 : 0, ResrcEnv::get(store, "plot_domain", "kyvpltdom", value));
    EXPECT_STREQ(c.value ? c.value : "", value.get());
  }
}

TEST(ResrcEnv, TakesNamesAndValuesOfAnyLength) {
  const std::string name(5000, 'n');
  const std::string text = std::string(100000, 'v') + "\x01\xff";
  const EnvVar variable(("kyv_radmap_" + name + "_" + name).c_str(), text.c_str());
  Resrc store;
  store.set("prog", "radmap");
  store.set("name", ("+" + name).c_str());
  String value;
  EXPECT_EQ(1, ResrcEnv::get(store, name.c_str(), nullptr, value));
  EXPECT_EQ(text, value.get());
  EXPECT_EQ(0, ResrcEnv::get(store, nullptr, "kyvpltdom", value));
}

}  // namespace KYV
