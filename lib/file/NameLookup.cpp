#include "NameLookup.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <system_error>

#include "KYV/FileTool.h"
#include "KYV/StrLib.h"
#include "KYV/String.h"

namespace KYV {

namespace {

constexpr std::string_view URL = "http://";
constexpr char STATION_KEY = 'i';
constexpr std::size_t STATION_LETTERS = 4;
constexpr int MAX_STEPS = 10000;  // of fitting one name

bool isAlnum(char c) { return std::isalnum(static_cast<unsigned char>(c)) != 0; }
bool isAlpha(char c) { return std::isalpha(static_cast<unsigned char>(c)) != 0; }

bool fitsForm(std::string_view form, std::string_view name) {
  return form.size() == name.size() && std::equal(form.begin(), form.end(), name.begin(), [](char a, char b) {
           return a == ANY_LETTER
                      ? isAlpha(b)
                      : std::tolower(static_cast<unsigned char>(a)) == std::tolower(static_cast<unsigned char>(b));
         });
}

}  // namespace

std::array<std::string, 2> getForms(const NamePiece& key) {
  std::array<std::string, 2> forms = {key.text, {}};
  if (key.letter == STATION_KEY && key.text.size() == STATION_LETTERS) forms[1] = key.text.substr(1);
  if (key.letter == STATION_KEY && key.text.size() == STATION_LETTERS - 1) forms[1] = ANY_LETTER + key.text;
  if (key.n > 0) {
    const auto most = static_cast<std::size_t>(key.n);
    if (forms[1].size() > most) forms[1].clear();
    forms[0].resize(std::min(forms[0].size(), most));
  }
  return forms;
}

std::string_view NamePiece::shown() const {
  const bool cut = (kind == NameCode::KEY || kind == NameCode::EXTENSION) && n > 0;
  return std::string_view(text).substr(0, cut ? static_cast<std::size_t>(n) : text.size());
}

bool NameLookup::isThere(const std::string& dir) {
  if (dir.starts_with(URL)) return true;
  const auto [at, isNew] = there.try_emplace(dir, false);
  if (isNew) at->second = FileTool::exist(dir.c_str());
  return at->second;
}

bool NameLookup::isOpen(const NamePiece& piece) const {
  return piece.kind == NameCode::ANY || (lenient && piece.kind == NameCode::KEY);
}

bool NameLookup::isOpen(std::span<const NamePiece> pieces) const {
  return std::any_of(pieces.begin(), pieces.end(), [this](const NamePiece& piece) { return isOpen(piece); });
}

// Whether a name is made of the pieces; the characters in the places of the date, whichever they are, are added to
// `dates`.
bool NameLookup::fits(std::span<const NamePiece> pieces, std::string_view name, std::string& dates, int& steps) const {
  if (++steps > MAX_STEPS) return false;
  if (pieces.empty()) return name.empty();
  const NamePiece& piece = pieces.front();
  const auto goesOn = [&](std::size_t n) { return fits(pieces.subspan(1), name.substr(n), dates, steps); };
  if (piece.kind == NameCode::DATE) {
    const std::string_view part = name.substr(0, piece.text.size());
    if (part.size() < piece.text.size() || !std::all_of(part.begin(), part.end(), isAlnum)) return false;
    const std::size_t before = dates.size();
    dates += part;
    if (goesOn(part.size())) return true;
    dates.resize(before);
    return false;
  }
  if (!isOpen(piece)) {
    const std::string_view text = piece.shown();
    return name.starts_with(text) && goesOn(text.size());
  }
  if (piece.kind == NameCode::ANY) return name.size() >= piece.text.size() && goesOn(piece.text.size());
  for (const std::string& form : getForms(piece)) {
    if (!form.empty() && fitsForm(form, name.substr(0, form.size())) && goesOn(form.size())) return true;
  }
  return false;
}

const NameLookup::Listing& NameLookup::list(const std::string& dir, const Component& component) {
  // The same for all dates.
  std::string pattern = dir;
  for (const NamePiece& piece : component) {
    pattern += '\n';
    pattern += static_cast<char>('0' + piece.kind);
    pattern += piece.kind == NameCode::DATE ? std::to_string(piece.text.size()) : piece.text;
  }
  const auto [at, isNew] = listings.try_emplace(pattern);
  if (!isNew) return at->second;

  String path;
  FileTool::addUserPath(dir.empty() ? "." : dir.c_str(), path);
  std::error_code failed;
  for (std::filesystem::directory_iterator entry(path.get(), failed), end; !failed && entry != end;
       entry.increment(failed)) {
    const std::string name = entry->path().filename().string();
    std::string dates;
    int steps = 0;
    if (fits(component, name, dates, steps)) at->second.emplace(dates, name);
  }
  return at->second;
}

bool NameLookup::walk(std::string dir, std::span<const Component> components,
                      const std::function<bool(const char*)>& accept, std::string& name) {
  for (; !components.empty() && !isOpen(components.front()); components = components.subspan(1)) {
    for (const NamePiece& piece : components.front()) dir += piece.shown();
    if (components.size() > 1) dir += '/';
  }
  if (components.empty()) {
    name = dir;
    return accept(name.c_str());
  }
  std::string dates;
  for (const NamePiece& piece : components.front()) {
    if (piece.kind == NameCode::DATE) dates += piece.text;
  }
  // The last name first: it has the highest seconds.
  const auto [first, last] = list(dir, components.front()).equal_range(dates);
  std::vector<std::string> names;
  for (auto at = first; at != last; ++at) names.push_back(at->second);
  std::sort(names.begin(), names.end(), std::greater<>());
  for (const std::string& entry : names) {
    if (components.size() == 1) {
      name = dir + entry;
      if (accept(name.c_str())) return true;
    } else if (walk(dir + entry + '/', components.subspan(1), accept, name)) {
      return true;
    }
  }
  return false;
}

bool NameLookup::find(std::span<const NamePiece> pieces, const std::function<bool(const char*)>& accept,
                      std::string& name) {
  std::vector<Component> components(1);
  for (const NamePiece& piece : pieces) {
    // Directories are taken as they are, '/' and all.
    if (piece.kind != NameCode::TEXT) {
      components.back().push_back(piece);
      continue;
    }
    NamePiece part = {piece.kind, piece.letter, piece.n, {}};
    for (const char c : piece.text) {
      if (c != '/') {
        part.text += c;
        continue;
      }
      components.back().push_back(part);
      components.emplace_back();
      part.text.clear();
    }
    if (!part.text.empty()) components.back().push_back(part);
  }
  return walk({}, components, accept, name);
}

}  // namespace KYV
