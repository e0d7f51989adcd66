#ifndef KYV_NAMELOOKUP_H
#define KYV_NAMELOOKUP_H

#include <array>
#include <functional>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "NameTemplate.h"

namespace KYV {

/// What a piece of a template has become for one date.
struct NamePiece {
  NameCode::Kind kind;
  char letter;
  int n;
  std::string text;

  /// The text as far as the number of an extension or a key lets it through.
  std::string_view shown() const;
};

/// In a form of a key: any letter.
inline constexpr char ANY_LETTER = '?';

/// The forms of a key: its value and, for a station, the one with three letters instead of four or the reverse; empty
/// where there is none. Letters count in either case.
std::array<std::string, 2> getForms(const NamePiece& key);

/// The directories that one search meets, each looked at once: whether they exist and, for names that are known in
/// part only, which of their files fit.
class NameLookup {
 public:
  /// @param anySpelling  keys fit in either case, the station also with three or four letters
  explicit NameLookup(bool anySpelling) : lenient(anySpelling) {}

  /// URLs are not asked for directories, they always are there.
  bool isThere(const std::string& dir);
  /// Whether only the directory can tell the name.
  bool isOpen(std::span<const NamePiece> pieces) const;
  /// The first file made of the pieces that passes the test.
  /// @param accept  gets the name of a file that may be missing
  bool find(std::span<const NamePiece> pieces, const std::function<bool(const char*)>& accept, std::string& name);

 private:
  using Component = std::vector<NamePiece>;                 // what stands between two '/'
  using Listing = std::multimap<std::string, std::string>;  // names by their date characters

  bool isOpen(const NamePiece& piece) const;
  bool fits(std::span<const NamePiece> pieces, std::string_view name, std::string& dates, int& steps) const;
  const Listing& list(const std::string& dir, const Component& component);
  bool walk(std::string dir, std::span<const Component> components, const std::function<bool(const char*)>& accept,
            std::string& name);

  bool lenient;
  std::map<std::string, bool> there;
  std::map<std::string, Listing> listings;  // by directory and pattern
};

}  // namespace KYV
#endif
