#include "KYV/StormTable.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "KYV/Number.h"
#include "KYV/StrLib.h"

namespace KYV {

namespace {

constexpr std::size_t MAX_COLUMNS = 20;

// Takes the text with its words as wide apart as they may be; false, with nothing taken, when it begins otherwise.
bool takeLabel(std::string_view& line, std::string_view label) {
  std::string_view rest = trimFront(line);
  for (const char c : label) {
    if (c == ' ') {
      const std::string_view next = trimFront(rest);
      if (next.size() == rest.size()) return false;
      rest = next;
    } else if (rest.empty() || rest.front() != c) {
      return false;
    } else {
      rest.remove_prefix(1);
    }
  }
  line = rest;
  return true;
}

std::string_view takeWord(std::string_view& rest) {
  rest = trimFront(rest);
  const std::string_view word = rest.substr(0, rest.find_first_of(BLANKS));
  rest.remove_prefix(word.size());
  return word;
}

// A number, passing over a sign that tells it is a bound.
bool takeBound(std::string_view& rest, float& value) {
  rest = trimFront(rest);
  if (rest.starts_with('<') || rest.starts_with('>')) rest.remove_prefix(1);
  return takeNumber(rest, value);
}

// Two numbers and what stands between them; a word such as "NEW" stands for a pair that is not known.
template <class Take>
void eachPair(std::string_view rest, char between, Take take) {
  for (std::size_t column = 0; column < MAX_COLUMNS && !trimFront(rest).empty(); ++column) {
    float a = Const::MISS, b = Const::MISS;
    if (!takeBound(rest, a)) {
      takeWord(rest);
      continue;
    }
    rest = trimFront(rest);
    if (between != ' ' && rest.starts_with(between)) rest.remove_prefix(1);
    if (!takeBound(rest, b)) takeWord(rest);
    take(column, a, b);
  }
}

// The whole percents of a probability, 0 for none.
int toPercent(float value) { return value >= 0.0f && value <= 100.0f ? static_cast<int>(std::lround(value)) : 0; }

void copyName(StormAttr& storm, std::string_view word) { storm.id[word.copy(storm.id, sizeof storm.id - 1)] = '\0'; }

// Two words a column, the first telling of the storm that the second names.
template <class Take>
void eachNamed(std::string_view rest, Take take) {
  for (std::size_t column = 0; column < MAX_COLUMNS && !trimFront(rest).empty(); ++column) {
    const std::string_view first = takeWord(rest);
    take(column, first, takeWord(rest));
  }
}

}  // namespace

struct StormTable::Row {
  std::string_view label;
  void (StormTable::*take)(std::string_view rest);
};

void StormTable::add(const char* line) {
  static constexpr Row ROWS[] = {
      {"STORM ID", &StormTable::takeNames},       {"AZ/RAN", &StormTable::takePlaces},
      {"FCST MVT", &StormTable::takeMovements},   {"DBZM HGT", &StormTable::takeReflectivities},
      {"POSH/POH", &StormTable::takeHail},        {"MAX HAIL SIZE", &StormTable::takeSizes},
      {"TYPE STID", &StormTable::takeSignatures}, {"CIR STMID", &StormTable::takeCirculations},
      {"SR LLRV", &StormTable::takeStrengths},    {"AZ RAN", &StormTable::takePlaces},
  };
  std::string_view rest = line ? line : "";
  for (const Row& row : ROWS) {
    if (takeLabel(rest, row.label)) return (this->*row.take)(rest);
  }
}

std::vector<StormAttr> StormTable::getStorms() const {
  std::vector<StormAttr> known;
  std::copy_if(storms.begin(), storms.end(), std::back_inserter(known),
               [](const StormAttr& s) { return !Const::isMissing(s.ang) && !Const::isMissing(s.rad); });
  return known;
}

StormAttr& StormTable::at(std::size_t column) {
  if (column >= storms.size()) storms.resize(column + 1);
  return storms[column];
}

void StormTable::takeNames(std::string_view rest) {
  for (std::size_t column = 0; column < MAX_COLUMNS && !trimFront(rest).empty(); ++column) {
    copyName(at(column), takeWord(rest));
  }
}

void StormTable::takePlaces(std::string_view rest) {
  eachPair(rest, '/', [this](std::size_t column, float a, float b) { at(column).ang = a, at(column).rad = b; });
}

void StormTable::takeMovements(std::string_view rest) {
  eachPair(rest, '/', [this](std::size_t column, float a, float b) { at(column).dir = a, at(column).spd = b; });
}

void StormTable::takeReflectivities(std::string_view rest) {
  eachPair(rest, ' ', [this](std::size_t column, float a, float b) {
    at(column).dbzm = a;
    at(column).dbzht = Const::isMissing(b) ? 0.0f : b;
    at(column).kft = true;
  });
}

void StormTable::takeHail(std::string_view rest) {
  eachPair(rest, '/', [this](std::size_t column, float a, float b) {
    at(column).shail = toPercent(a);
    at(column).hail = toPercent(b);
  });
}

void StormTable::takeSizes(std::string_view rest) {
  for (std::size_t column = 0; column < MAX_COLUMNS && !trimFront(rest).empty(); ++column) {
    float size = 0.0f;
    if (takeBound(rest, size)) {
      at(column).hsize = size;
    } else {
      takeWord(rest);
    }
  }
}

void StormTable::takeSignatures(std::string_view rest) {
  eachNamed(rest, [this](std::size_t column, std::string_view, std::string_view name) {
    copyName(at(column), name);
    at(column).tvs = 1;
  });
}

void StormTable::takeCirculations(std::string_view rest) {
  eachNamed(rest, [this](std::size_t column, std::string_view, std::string_view name) {
    copyName(at(column), name);
    at(column).meso = 1;
  });
}

// The strength rank, behind which an "L" marks a shallow circulation near the ground, and the velocity difference.
void StormTable::takeStrengths(std::string_view rest) {
  eachNamed(rest, [this](std::size_t column, std::string_view rank, std::string_view) {
    int value = 0;
    if (takeNumber(rank, value) && value > 0 && value < 100) at(column).meso = value;
  });
}

}  // namespace KYV
