#include "KYV/VarList.h"

#include <algorithm>
#include <cstdio>
#include <string>

#include "DataLines.h"
#include "KYV/Const.h"
#include "KYV/DataPath.h"
#include "KYV/Kyv.h"
#include "KYV/NearWord.h"
#include "KYV/Strings.h"

namespace KYV {

namespace {

constexpr std::size_t MAX_LINE = 250;
constexpr int WORDS = 5;  // before the title
constexpr int MAX_LAYER = 99;
constexpr const char* EMPTY = "-";
constexpr std::string_view SEPARATORS = ",/: \t\r\n()[]{}\"'";

bool isEqual(std::string_view text, const char* name) { return StrLib::iequal(std::string(text).c_str(), name); }

// An item of a user's text, "hsize[un=mm]".
struct Item {
  std::string_view name;
  std::string_view attributes;
};

// Takes the next item off the text. A bracket opens attributes only right behind a name, so that others, closed or not,
// are separators as any.
bool nextItem(std::string_view& rest, Item& item) {
  const std::size_t first = rest.find_first_not_of(SEPARATORS);
  if (first == std::string_view::npos) return false;
  rest.remove_prefix(first);
  item.name = rest.substr(0, rest.find_first_of(SEPARATORS));
  item.attributes = {};
  rest.remove_prefix(item.name.size());
  if (rest.starts_with('[')) {
    rest.remove_prefix(1);
    item.attributes = rest.substr(0, rest.find(']'));
    rest.remove_prefix(item.attributes.size());
  }
  return true;
}

}  // namespace

// "name layer units format map title".
bool VarList::Var::decode(const char* line) {
  const Strings words(line);
  if (words.getNum() < WORDS || words.getLength(0) > MAX_NAME) return false;
  const auto text = [&words](int i) { return words.equal(i, EMPTY) ? "" : words.getString(i); };
  StrLib::copy(name, words.getString(0));
  layer = words.getInt(1);
  units.copy(text(2));
  format.copy(text(3));
  map = words.getInt(4) == 1;
  String title;
  for (int i = WORDS; i < words.getNum(); ++i) {
    if (title.valid()) title.append(' ');
    title.append(words.getString(i));
  }
  spec.setTitle(title.valid() ? title.get() : name);
  return layer >= 0 && layer <= MAX_LAYER && (map || words.getInt(4) == 0);
}

void VarList::Var::addAttributes(std::string_view list) {
  const Strings attributes(std::string(list).c_str(), ',');
  for (int i = 0; i < attributes.getNum(); ++i) {
    if (!attributes.valid(i)) continue;
    if (attributes.iequal(i, "un=", 3)) {
      units.copy(attributes.getString(i, 3));
      continue;
    }
    if (format.valid()) format.append(',');
    format.append(attributes.getString(i));
  }
}

int VarList::setFile(const char* file) {
  const bool again = filename.valid() && filename.equal(file);
  filename.copy(file);
  if (!again) told.clear();
  known.clear();
  chosen.clear();
  String path;
  File in;
  readable = DataPath::find(file, path) && in.openData(path.get());
  if (!readable) {
    if (!again) {
      Kyv::report(Kyv::BADPARAM,
                  "VarList: unable to read the variable file %s; name the directory of the data files with -fp\n",
                  filename.get());
    }
    return 0;
  }
  char line[MAX_LINE + 1];
  for (int number = 1; nextLine(in, line); ++number) {
    if (!*line || *line == '#') continue;
    if (known.size() >= MAX_VAR) {
      if (!again) Kyv::outWarning("VarList: %s: only the first %d variables are used\n", filename.get(), MAX_VAR);
      break;
    }
    Var var;
    if (var.decode(line)) {
      known.push_back(var);
    } else if (!again) {
      Kyv::outWarning("VarList: %s: line %d is left out, it is not: name layer units format map title\n",
                      filename.get(), number);
    }
  }
  return 1;
}

int VarList::process(const char* variable) {
  chosen.clear();
  String unknown;
  std::string meant;
  std::string_view rest = variable ? variable : "";
  Item item;
  while (chosen.size() < MAX_CHOSEN && nextItem(rest, item)) {
    const auto found =
        std::find_if(known.begin(), known.end(), [&item](const Var& v) { return isEqual(item.name, v.name); });
    if (found != known.end()) {
      chosen.push_back(*found);
      chosen.back().addAttributes(item.attributes);
      continue;
    }
    NearWord near(item.name);
    for (const Var& v : known) near.offer(v.name);
    if (meant.empty()) meant = near.question();
    if (unknown.valid()) unknown.append(", ");
    unknown.append(std::string(item.name).c_str());
  }
  if (!unknown.valid()) return 1;
  // Without a file that has been said already.
  if (readable && !told.equal(variable)) {
    Kyv::report(Kyv::BADPARAM, "VarList: no variable %.200s%s; the names that may be given stand in %s\n",
                unknown.get(), meant.c_str(), filename.get());
  }
  told.copy(variable);
  return 0;
}

const VarList::Var* VarList::get(int i) const {
  return i >= 0 && i < getNum() ? &chosen[static_cast<std::size_t>(i)] : nullptr;
}

int VarList::getLayer(int i) const {
  const Var* var = get(i);
  return var ? var->layer : Const::MISS;
}

const char* VarList::getName(int i) const {
  const Var* var = get(i);
  return var ? var->name : "";
}

const char* VarList::getUnits(int i) const {
  const Var* var = get(i);
  return var ? var->units.get() : "";
}

const char* VarList::getFormat(int i) const {
  const Var* var = get(i);
  return var ? var->format.get() : "";
}

bool VarList::isMap(int i) const {
  const Var* var = get(i);
  return var && var->map;
}

bool VarList::isMap() const {
  return std::any_of(chosen.begin(), chosen.end(), [](const Var& v) { return v.map; });
}

const VarSpec& VarList::getVarSpec(int i) const {
  static const VarSpec none;
  const Var* var = get(i);
  return var ? var->spec : none;
}

int VarList::print() const {
  std::printf("VarList: %s\n", filename.get());
  for (const Var& v : chosen) {
    std::printf("  %s layer: %d units: %s format: %s map: %d title: %s\n", v.name, v.layer, v.units.get(),
                v.format.get(), v.map, v.spec.getTitle());
  }
  return 1;
}

}  // namespace KYV
