#include "KYV/ImageFile.h"

#include <gtest/gtest.h>

#include "KYV/Image.h"
#include "Scratch.h"

using KYV::Image;
using KYV::ImageFile;

namespace {

class ImageFileTest : public Scratch {};

TEST_F(ImageFileTest, FirstBytesTellTheFormatThenTheName) {
  struct Case {
    const char* name;
    std::string bytes;
    int type;
  };
  const Case CASES[] = {{"x.PNG", "GIF89a...", ImageFile::GIF}, {"x", std::string("\x89PNG\r\n\x1a\n"), ImageFile::PNG},
                        {"x.gif", "KYVIMG 1", ImageFile::IMG},  {"x", std::string("MM\0*", 4), ImageFile::TIFF},
                        {"x", "II*....", ImageFile::TIFF},      {"x.gif", "nothing", ImageFile::UNKNOWN},
                        {"x.gif", "", ImageFile::UNKNOWN}};
  for (const Case& c : CASES) {
    writeFile(c.name, c.bytes);
    EXPECT_EQ(c.type, ImageFile::checkType(c.name)) << c.name;
  }
  EXPECT_EQ(ImageFile::UNKNOWN, ImageFile::checkType("missing"));
  EXPECT_EQ(ImageFile::PNG, ImageFile::checkFilename("map.PNG"));
  EXPECT_EQ(ImageFile::IMGZ, ImageFile::checkFilename("a.imgz"));
  EXPECT_EQ(ImageFile::GINI, ImageFile::checkFilename("a.gini"));
  EXPECT_EQ(ImageFile::UNKNOWN, ImageFile::checkFilename("ng"));
  EXPECT_EQ(ImageFile::GINI, ImageFile::getType("ginip"));
  EXPECT_EQ(ImageFile::UNKNOWN, ImageFile::getType(nullptr));
}

TEST_F(ImageFileTest, PicturesAreWrittenByTheirNameOrType) {
  Image image;
  image.set(3, 2, 8);
  image.allocData();
  ImageFile file;
  EXPECT_EQ(1, file.write("a.gif", image));
  EXPECT_EQ(ImageFile::GIF, ImageFile::checkType("a.gif"));
  EXPECT_EQ(1, file.write("b.gif", ImageFile::PNG, image));
  EXPECT_EQ(ImageFile::PNG, ImageFile::checkType("b.gif"));
  Image back;
  EXPECT_EQ(1, file.read("b.gif", back));
  EXPECT_EQ(3, back.getWidth());
  for (const char* name : {"c.tiff", "c.img", "c"}) EXPECT_EQ(0, file.write(name, image)) << name;
  writeFile("d.png", "II*....");
  EXPECT_EQ(0, file.read("d.png", back));
  EXPECT_EQ(0, file.write(image)) << "no file is open";
}

}  // namespace
