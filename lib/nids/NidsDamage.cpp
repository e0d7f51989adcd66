// Whether a product is whole, and the words for one that is not.
#include "KYV/NidsDamage.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <string>

#include "KYV/NidsFile.h"
#include "NidsLimits.h"
#include "NidsSource.h"

namespace KYV {

namespace {

constexpr std::array<unsigned char, 4> FRAME_END = {'\r', '\r', '\n', 0x03};

// What a product may have to draw, by NidsFile::Share: ten times what real ones have and more, and no more than a
// second or 256 MB of drawing instructions. An image is read whatever its size, which has limits of its own.
constexpr struct {
  const char* what;
  std::int64_t most;
} SHARES[] = {
    {"cells of images", MAX_RADIALS* MAX_BINS},
    {"texts", 5000},
    {"characters", 100000},
    {"points of lines", 100000},
    {"wind barbs", 20000},
    {"symbols", 10000},
};

std::string ofImage(const NidsDamage& d) {
  return std::to_string(d.got) + " of " + std::to_string(d.wanted) + (d.rows ? " rows" : " radials");
}

}  // namespace

String NidsDamage::toText() const {
  char number[60];
  std::string text;
  const std::string at = "byte " + std::to_string(end) + (promised > 0 ? " of " + std::to_string(promised) : "");
  switch (kind) {
    case CUT:
      text = "ends at " + at;
      break;
    case BROKEN:
      text = "is damaged at " + at;
      break;
    case FRAME:
      return String("lacks the end of its frame");
    case EXCESS:
      return String(("has more than " + std::to_string(most) + " " + share + ", which no product has").c_str());
    case ANGLE:
      StrLib::printf(number, "stops at a radial of %.1f degrees", static_cast<double>(angle));
      text = number;
      break;
  }
  if (kind != ANGLE) text += std::string(", in the ") + block;
  if (empty) {
    text += ", before any of its data";
  } else if (wanted > 0) {
    text += ", after " + ofImage(*this);
  }
  return String(text.c_str());
}

String NidsDamage::toLabel() const {
  char number[60];
  if (empty) return String("NO DATA: body damaged");
  if (kind == ANGLE) {
    StrLib::printf(number, "INCOMPLETE: stopped at angle %.1f", static_cast<double>(angle));
    return String(number);
  }
  if (kind == EXCESS) return String(("INCOMPLETE: " + std::to_string(most) + " " + share).c_str());
  if (wanted > 0 && got < wanted) return String(("INCOMPLETE " + ofImage(*this)).c_str());
  if (kind == FRAME) return String("INCOMPLETE: end of frame missing");
  const std::string text = std::string("INCOMPLETE: ") + (kind == BROKEN ? "damaged" : "ends") + " in the " + block;
  return String(text.c_str());
}

bool NidsFile::getDamage(NidsDamage& d) {
  d = NidsDamage();
  if (!opened || data_type == ENCRYPTED) return false;
  // What nobody asked for is read as well: damage may be there.
  constexpr int PIECE = 65536;
  while (deliver(nullptr, PIECE) == PIECE) continue;
  const std::int64_t here = file->tell();
  const std::int64_t size = here + file->getRest();
  const bool segments = seg_type != 0;
  const bool lengthKnown = !segments && mess_len >= DESCRIPTION_END;

  const bool unended = stream_open || unpacking || file->isCut();
  const bool isShort = lengthKnown ? message_start + mess_len > size : segments && total < mess_len;
  d.got = image_got;
  d.wanted = image_wanted;
  d.rows = image_rows;
  d.empty = off_symb != 0 && packets == 0;
  d.end = damaged ? here - raw.getAvail() : size;
  d.promised = lengthKnown ? message_start + mess_len : 0;
  d.block = total < DESCRIPTION_END                     ? "header"
            : off_tab > 0 && total >= off_tab * 2LL     ? "tabular block"
            : off_graph > 0 && total >= off_graph * 2LL ? "graphic block"
                                                        : "symbology block";
  if (excess != NUM_SHARE || clamped) {
    const auto& share = SHARES[clamped ? CELLS : excess];
    d.kind = NidsDamage::EXCESS;
    d.share = share.what;
    d.most = share.most;
  } else if (damaged) {
    d.kind = NidsDamage::BROKEN;
  } else if (isShort || unended || image_got < image_wanted) {
    d.kind = NidsDamage::CUT;
    if (!isShort && !unended && !Const::isMissing(bad_angle)) d.kind = NidsDamage::ANGLE;
  } else if (framed && !endsFrame(size)) {
    d.kind = NidsDamage::FRAME;
  } else {
    return false;
  }
  d.angle = bad_angle;
  return true;
}

bool NidsFile::endsFrame(std::int64_t size) {
  std::array<unsigned char, FRAME_END.size()> last{};
  const auto length = static_cast<std::int64_t>(last.size());
  return file->seek(size - length) && file->read(last.data(), static_cast<int>(last.size())) == length &&
         last == FRAME_END;
}

// Whether the product may still draw so much; when it may not, its packets have come to their end.
bool NidsFile::spend(Share share, std::int64_t n) {
  static_assert(std::size(SHARES) == NUM_SHARE);
  const bool first = share == CELLS && spent[share] == 0;
  spent[share] += n;
  if (excess == NUM_SHARE && (first || spent[share] <= SHARES[share].most)) return true;
  if (excess == NUM_SHARE) excess = share;
  return false;
}

// What is left of a share.
std::int64_t NidsFile::getShare(Share share) const {
  return std::max<std::int64_t>(SHARES[share].most - spent[share], 0);
}

// Notes how much of an image was read: of several the first that is not whole counts.
void NidsFile::noteImage(int got, int wanted, bool rows) {
  if (image_got < image_wanted) return;
  image_got = got;
  image_wanted = wanted;
  image_rows = rows;
}

}  // namespace KYV
