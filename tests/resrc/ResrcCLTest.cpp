#include "KYV/ResrcCL.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "KYV/String.h"

namespace KYV {

namespace {

// What a command line reads as: "name=value" for keyed arguments, "0:value" for positional ones.
std::vector<std::string> read(ResrcCL& line) {
  std::vector<std::string> all;
  String name, value;
  for (int found = line.getKeyed(name, value); found >= 0; found = line.getKeyed(name, value)) {
    if (found) {
      all.push_back(std::string(name.get()) + "=" + value.get());
    } else {
      const int position = line.getPosition(value);
      all.push_back(std::to_string(position) + ":" + value.get());
    }
  }
  return all;
}

using Texts = std::vector<std::string>;

}  // namespace

TEST(ResrcCL, ReadsKeyedAndPositionalArguments) {
  struct Case {
    const char* what;
    std::vector<const char*> args;
    Texts read;
  };
  const Case cases[] = {
      {"nothing", {}, {}},
      {"key and value", {"-pd", "us"}, {"pd=us"}},
      {"two dashes", {"--pd", "us"}, {"pd=us"}},
      {"equals sign", {"-pd=us", "--ti=a=b", "-x="}, {"pd=us", "ti=a=b", "x="}},
      {"negative numbers are values", {"-pd", "-5", "-.5"}, {"pd=-5", "0:-.5"}},
      {"a key is no value", {"-pd", "-ti"}, {"pd=", "ti="}},
      {"nor with two dashes", {"-pd", "--ti", "x"}, {"pd=", "ti=x"}},
      {"key at the end", {"file", "-h"}, {"0:file", "h="}},
      {"a double dash ends the options", {"-a", "--", "-b", "--", "-c=d"}, {"a=", "=", "0:-b", "1:--", "2:-c=d"}},
      {"flags take an answer alone",
       {"-strict", "a", "-strict", "no", "--strict=off"},
       {"strict=", "0:a", "strict=no", "strict=off"}},
      {"positions are counted", {"a", "-k", "v", "b", "-", ""}, {"0:a", "k=v", "1:b", "2:-", "3:"}},
      {"an empty value", {"-k", "", "a"}, {"k=", "0:a"}},
      {"three dashes, bytes beyond ASCII", {"---x", "-\xe9"}, {"0:---x", "1:-\xe9"}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    std::vector<const char*> argv = {"radmap"};
    argv.insert(argv.end(), c.args.begin(), c.args.end());
    ResrcCL line(Strings(static_cast<int>(argv.size()), argv.data()),
                 [](const char* name) { return std::string("strict") == name; });
    EXPECT_EQ(c.read, read(line));
    String value;
    EXPECT_EQ(-1, line.getPosition(value));
    line.rewind();
    EXPECT_EQ(c.read, read(line));
  }
  ResrcCL none((Strings()));
  EXPECT_EQ(Texts(), read(none));
}

TEST(ResrcCL, ComparesWithAbbreviationThenPrefix) {
  struct Case {
    const char *given, *longName, *abbrev;
    int result;
  };
  constexpr Case CASES[] = {
      {"pd", "plot_domain", "pd", 2}, {"plot_dom", "plot_domain", "pd", 1},     {"plot_domain", "plot_domain", "pd", 1},
      {"p", "plot_domain", "pd", 1},  {"plot_domains", "plot_domain", "pd", 0}, {"PD", "plot_domain", "pd", 0},
      {"", "plot_domain", "", 0},     {nullptr, "plot_domain", "pd", 0},        {"file", "filename", nullptr, 1},
      {"pd", nullptr, nullptr, 0},
  };
  for (const Case& c : CASES) {
    EXPECT_EQ(c.result, ResrcCL::compare(c.given, c.longName, c.abbrev)) << (c.given ? c.given : "null");
  }
}

}  // namespace KYV
