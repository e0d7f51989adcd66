#include "KYV/KyvResrc.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

#include "KYV/ResrcDBList.h"

namespace KYV {

TEST(KyvResrc, EntriesStandAtTheirNumbers) {
  struct Case {
    int number;
    const char *name, *env, *cmdln, *help;
  };
  constexpr Case CASES[] = {
      {KyvResrc::background, "background", "kyvback", "bg", "-bg color    Background color"},
      {KyvResrc::con_path, "con_path", "kyvcpath", "cp", "-cp path     Converted data path"},
      {KyvResrc::filename, "filename", "kyvfilenm", nullptr, "filenames... Filenames"},
      {KyvResrc::help, "help", "kyvhelp", "h", "-h           Print help"},
      {KyvResrc::identifier, "identifier", "kyvident", "id", "-id ident    Specify the station ID"},
      {KyvResrc::object_param, "object_param", "kyvobject", "oa",
       "-oa smooth[,radinf,pass,conv,min] Specifies objective analysis params"},
      {KyvResrc::plot_domain, "plot_domain", "kyvpltdom", "pd", "-pd domain   Plot domain"},
      {KyvResrc::type, "type", "kyvtype", "ty", "-ty type     Data type"},
      {KyvResrc::vect_mag, "vect_mag", "kyvmag", "vm", "-vm mag      The magnitude to scale vectors to"},
  };
  for (const Case& c : CASES) {
    SCOPED_TRACE(c.name);
    ResrcDBItem item;
    ASSERT_EQ(1, KyvResrc::get(c.number, item));
    EXPECT_STREQ(c.name, item.name);
    EXPECT_STREQ(c.env, item.env);
    EXPECT_STREQ(c.cmdln, item.cmdln);
    EXPECT_STREQ(c.help, item.help);
    ResrcDBItem byName;
    ASSERT_EQ(1, KyvResrc::get(c.name, byName));
    EXPECT_EQ(item.env, byName.env);
  }
  ResrcDBItem item;
  for (int number : {-1, 73, 88, 1000}) EXPECT_EQ(0, KyvResrc::get(number, item)) << number;
  for (const char* name : {"Type", "typ", "BASE", ""}) EXPECT_EQ(0, KyvResrc::get(name, item)) << name;
  EXPECT_EQ(0, KyvResrc::get(nullptr, item));
}

// A name, variable or abbreviation that two options shared could never reach the second.
TEST(KyvResrc, NamesVariablesAndAbbreviationsAreUnique) {
  std::set<std::string> names, variables, abbreviations;
  ResrcDBItem item;
  for (int i = 0; KyvResrc::get(i, item); i++) {
    EXPECT_TRUE(names.insert(item.name).second) << item.name;
    EXPECT_TRUE(variables.insert(item.env).second) << item.env;
    if (!item.cmdln) continue;
    EXPECT_TRUE(abbreviations.insert(item.cmdln).second) << item.cmdln;
    EXPECT_EQ(0u, std::string(item.help).find("-" + std::string(item.cmdln) + " ")) << item.help;
  }
  EXPECT_EQ(73u, names.size());
}

TEST(KyvResrc, GroupsAddTheirMembersInOrder) {
  ResrcDBList list;
  const int numbers[] = {KyvResrc::CITY, KyvResrc::IDENT, KyvResrc::DOMAIN, KyvResrc::DEVICE, -1, 89};
  for (int number : numbers) EXPECT_EQ(1, KyvResrc::add(list, number));
  constexpr const char* NAMES[] = {"city_file",  "stat_prior", "identifier", "plot_domain", "grid_domain",
                                   "stat_prior", "device",     "geometry",   "title",       "icon",
                                   "background", "inverse",    "logo"};
  int i = 0;
  for (const ResrcDBItem* item = list.first(); item; item = list.next()) {
    ASSERT_LT(i, static_cast<int>(std::size(NAMES)));
    EXPECT_STREQ(NAMES[i++], item->name);
  }
  EXPECT_EQ(static_cast<int>(std::size(NAMES)), i);
  EXPECT_EQ(nullptr, list.next()) << "stays at the end";
  EXPECT_STREQ("city_file", list.get(-3)->name);
  EXPECT_STREQ("stat_prior", list.get(1)->name);
  EXPECT_EQ(nullptr, list.get(i));
}

TEST(ResrcDBList, PrintsItemsAndCopiesThem) {
  ResrcDBList list;
  ResrcDBItem item;
  EXPECT_EQ(0, list.first(item));
  list.add("one", "ONE", "o", "help");
  list.add("two", "TWO", nullptr, nullptr);
  testing::internal::CaptureStdout();
  list.print();
  EXPECT_EQ("one ONE o help\ntwo TWO  \n", testing::internal::GetCapturedStdout());
  ASSERT_EQ(1, list.first(item));
  ASSERT_EQ(1, list.next(item));
  EXPECT_STREQ("two", item.name);
  EXPECT_EQ(0, list.next(item));
}

}  // namespace KYV
