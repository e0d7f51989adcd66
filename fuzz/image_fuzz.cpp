// image_fuzz: damages GIF and PNG files, which are read as a picture and as a frame of an animation. The changes reach
// the pixels of a PNG as well: its checksums are made right again for every second input. See Damage.h for its use.
#include <zlib.h>

#include <tuple>

#include "Damage.h"
#include "KYV/GifFile.h"
#include "KYV/Image.h"
#include "KYV/ImageFile.h"
#include "KYV/Kyv.h"

namespace {

using Bytes = Damage::Bytes;

constexpr std::size_t FRONT = 1000;  // bytes where headers and colours stand

// Reads the file in every way and looks at what came out.
void decodeImage(const char* name) {
  KYV::Image image;
  KYV::ImageFile file;
  if (file.read(name, image)) {
    KYV::RGB rgb;
    image.getRGB(image.getWidth() - 1, image.getHeight() - 1, rgb);
    image.isPixelTrans(0, 0);
  }
  KYV::GifFile animation;
  if (animation.open("/dev/null", KYV::GifFile::WRITE)) std::ignore = animation.write(name);
}

// Gives every chunk of a PNG file the checksum of what it holds now.
void repair(Bytes& png) {
  constexpr unsigned char SIGNATURE[] = {0x89, 'P', 'N', 'G'};
  constexpr std::size_t HEAD = 8, FRAME = 12;  // signature; length, name and checksum of a chunk
  if (png.size() < HEAD || !std::equal(std::begin(SIGNATURE), std::end(SIGNATURE), png.begin())) return;
  for (std::size_t at = HEAD; png.size() - at >= FRAME;) {
    std::size_t length = 0;
    for (std::size_t i = 0; i < 4; i++) length = length << 8 | png[at + i];
    if (length > png.size() - at - FRAME) return;
    const uLong sum = crc32(0, &png[at + 4], static_cast<uInt>(length + 4));
    at += length + FRAME;
    for (std::size_t i = 1; i <= 4; i++) png[at - i] = static_cast<unsigned char>(sum >> (8 * (i - 1)));
  }
}

Damage makeDamage() {
  KYV::Kyv::setMessageLevel(0);
  Damage damage("image_fuzz", {decodeImage}, FRONT);
  damage.repair = repair;
  return damage;
}

}  // namespace

RADMAP_FUZZ(makeDamage)
