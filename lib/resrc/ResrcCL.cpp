#include "KYV/ResrcCL.h"

#include <cstring>
#include <string_view>

#include "KYV/OwnResrc.h"
#include "KYV/StrLib.h"
#include "KYV/String.h"

namespace KYV {

namespace {

bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

// How many dashes a keyed argument begins with: 1 or 2, and 0 for file names and negative numbers.
std::size_t countDashes(std::string_view text) {
  if (text.size() >= 2 && text[0] == '-' && isLetter(text[1])) return 1;
  if (text.size() >= 3 && text[0] == '-' && text[1] == '-' && isLetter(text[2])) return 2;
  return 0;
}

}  // namespace

int ResrcCL::rewind() {
  cur = 1;
  position = 0;
  ended = false;
  return 1;
}

int ResrcCL::getKeyed(String& name, String& value) {
  name.clear();
  value.clear();
  if (cur >= args.getNum()) return -1;
  const std::string_view text = StrLib::valid(args.getString(cur), "");
  if (ended) return 0;
  if (text == "--") {
    ended = true;
    ++cur;
    return 1;
  }
  const std::size_t dashes = countDashes(text);
  if (dashes == 0) return 0;
  ++cur;
  const std::size_t equals = text.find('=');
  if (equals != std::string_view::npos) {
    name.copy(text.data() + dashes, static_cast<int>(equals - dashes));
    value.copy(text.data() + equals + 1);
    return 1;
  }
  name.copy(text.data() + dashes);
  const char* next = StrLib::valid(args.getString(cur), "");
  const bool flag = is_flag && is_flag(name.get());
  if (cur < args.getNum() && std::string_view(next) != "--" && countDashes(next) == 0 &&
      (!flag || (*next && OwnResrc::isValue(OwnResrc::Kind::Flag, next)))) {
    value.copy(next);
    ++cur;
  }
  return 1;
}

int ResrcCL::getPosition(String& value) {
  value.clear();
  if (cur >= args.getNum()) return -1;
  value.copy(args.getString(cur++));
  return position++;
}

int ResrcCL::compare(const char* given, const char* longName, const char* abbrev) {
  if (!StrLib::valid(given)) return 0;
  if (StrLib::equal(given, abbrev)) return 2;
  return std::string_view(StrLib::valid(longName, "")).starts_with(given) ? 1 : 0;
}

}  // namespace KYV
