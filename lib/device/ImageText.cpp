#include "ImageText.h"

#include <algorithm>

#include "KYV/Date.h"
#include "KYV/DateTool.h"
#include "KYV/Domain.h"
#include "KYV/DomainTool.h"
#include "KYV/Image.h"
#include "KYV/String.h"

namespace KYV {

namespace {

// Longer than any domain that is written, short enough to be shown in a warning.
constexpr std::size_t MAX_TEXT = 1000;

struct Line {
  std::string_view key;
  int (*take)(Image&, std::string_view);
};
constexpr Line LINES[] = {{"ti=", ImageText::setTitle},
                          {"dt=", ImageText::setLabel},
                          {"pd=", ImageText::setDomain},
                          {"proj=", ImageText::setDomain}};

// Up to its first terminator, without the blanks and control characters at its end; other control characters are
// blanks, so that a title stays one line and a warning says what it seems to say.
std::string clean(std::string_view text) {
  std::string copy(text.substr(0, std::min({text.size(), text.find('\0'), MAX_TEXT})));
  const auto control = [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7F'; };
  std::ranges::replace_if(copy, control, ' ');
  copy.erase(copy.find_last_not_of(' ') + 1);
  return copy;
}

}  // namespace

int ImageText::decode(Image& image, std::string_view text) {
  int taken = 0;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find_first_of("\r\n"), text.size());
    taken += decodeLine(image, text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return taken;
}

int ImageText::decodeLine(Image& image, std::string_view line) {
  for (const Line& known : LINES) {
    if (line.starts_with(known.key)) return known.take(image, line.substr(known.key.size()));
  }
  return 0;
}

int ImageText::setTitle(Image& image, std::string_view text) { return image.setInfo(clean(text).c_str()); }

int ImageText::setLabel(Image& image, std::string_view text) {
  const std::string label = clean(text);
  image.setDatim(label.c_str());
  Date date;
  DateTool::decode(label.c_str(), date);
  return image.setDate(date);
}

int ImageText::setDomain(Image& image, std::string_view text) {
  const std::string map = clean(text);
  // A region or a station may be looked up in a file of any path; a picture shall not choose it.
  if (map.empty() || map.find_first_of("/|~\\") != std::string::npos) return 0;
  Domain domain;
  if (!DomainTool::decode(domain, map.c_str()) || !domain.isSet()) return 0;
  return image.setDomain(domain);
}

std::vector<std::string> ImageText::encode(const Image& image) {
  std::vector<std::string> lines = {"ti=" + clean(image.getInfo()), "dt=" + clean(image.getDatim())};
  if (image.getDomain().isSet()) {
    String map;
    image.getDomain().toString(map);
    lines.push_back("pd=" + clean(map.get()));
  }
  return lines;
}

}  // namespace KYV
