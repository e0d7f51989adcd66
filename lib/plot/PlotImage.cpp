// Pictures: those that are drawn, logos among them, and those that are taken of the plot.
#include <algorithm>
#include <cctype>
#include <cstdio>
#include <string>
#include <vector>

#include "KYV/DateTool.h"
#include "KYV/FileTool.h"
#include "KYV/GifFile.h"
#include "KYV/Image.h"
#include "KYV/ImageFile.h"
#include "KYV/Kyv.h"
#include "KYV/Plot.h"
#include "KYV/Strings.h"

namespace KYV {

namespace {

constexpr int STEM = 40;         // characters of a title that name a picture
constexpr int EXTENSION = 4;     // ".gif"
constexpr int FRAME_DELAY = 50;  // hundredths of a second, as on the screen

// Where a picture lies beside its place: the part of the rectangle (0 left or bottom, 2 right or top) and the
// alignment.
struct Place {
  const char* name;
  int column, row;
};
constexpr Place PLACES[] = {{"ul", 0, 2}, {"uc", 1, 2}, {"ur", 2, 2}, {"cl", 0, 1}, {"cc", 1, 1},
                            {"cr", 2, 1}, {"ll", 0, 0}, {"lc", 1, 0}, {"lr", 2, 0}};

const Place& findPlace(const char* name) {
  const Place* row = std::find_if(std::begin(PLACES), std::end(PLACES),
                                  [name](const Place& p) { return StrLib::equal(p.name, name); });
  return row == std::end(PLACES) ? PLACES[std::size(PLACES) - 1] : *row;
}

// The format of a picture by the end of its name; null for any other name.
const char* typeOf(const char* name) {
  if (StrLib::iequal(name, "gif", -3)) return "GIF";
  return StrLib::iequal(name, "png", -3) ? "PNG" : nullptr;
}

bool isGif(const char* type) { return StrLib::equal(type, "GIF"); }

// The path of a picture file beneath the resource `image_path`.
std::string outPath(const char* name) {
  String path;
  FileTool::addOutPath(Kyv::resrc.get("image_path", ""), name, path);
  return path.get();
}

void sayCreated(const char* type, const char* path) { Kyv::outMessage(4, "Created %s file: %s\n", type, path); }

}  // namespace

// Drawing.

int Plot::drawImage(const Image& image) {
  const Rect window = graph.getWindow();
  return graph.drawImage(image, window.xmin, window.ymax);
}

int Plot::drawImage(const Image& image, int arg) {
  const Rect window = graph.getWindow();
  return graph.drawImage(image, arg, window.xmin, window.ymax);
}

int Plot::readImage(const char* file, Image& image) {
  String path;
  FileTool::addPath(Kyv::resrc.get("image_path", ""), file, path);
  ImageFile reader;
  return reader.read(path.get(), image) > 0 ? 1 : 0;
}

int Plot::drawImage(const char* file, float x, float y) {
  Image image;
  return readImage(file, image) ? graph.drawImage(image, x, y) : 0;
}

int Plot::drawImage(const char* file, float x, float y, const char* position) {
  const Place& place = findPlace(position);
  graph.setImageAlign(place.column + 1, place.row + 1);
  const int drawn = drawImage(file, x, y);
  graph.setImageAlign(1, 3);
  return drawn;
}

void Plot::drawLogos() {
  const Strings entries(logo.get(), ',');
  for (int i = 0; i < entries.getNum(); ++i) {
    if (entries.contains(i, ".gif") || entries.contains(i, ".png")) drawLogo(entries.getString(i));
  }
}

// "[im:|if:]file..." of the map or of the page.
void Plot::drawLogo(const char* entry) {
  const bool page = StrLib::equal(entry, "if:", 3);
  if (page || StrLib::equal(entry, "im:", 3)) entry += 3;
  const int colon = StrLib::index(entry, ':');
  const String file(entry, colon < 0 ? StrLib::length(entry) : colon);
  graph.message("Logo: %s", file.get());
  Kyv::outMessage(8, "Logo: %s\n", file.get());
  if (!placeImage(entry, page)) Kyv::report(Kyv::MISC, "Logo not found: %s\n", file.get());
}

int Plot::placeImage(const char* entry, bool page) {
  const int colon = StrLib::index(entry, ':');
  const String file(entry, colon < 0 ? StrLib::length(entry) : colon);
  char position[10] = "";
  float dx = 0.0f, dy = 0.0f;
  if (colon >= 0 && std::sscanf(entry + colon, ":%9[^:]:%f:%f", position, &dx, &dy) < 1) {
    std::sscanf(entry + colon, "::%f:%f", &dx, &dy);
  }
  const int oldTran = graph.getTran();
  graph.activateTran(page ? PAGE : MAP);
  const Rect w = graph.getWindow();
  const Place& place = findPlace(position);
  const float x = w.xmin + w.width() * 0.5f * static_cast<float>(place.column) + dx;
  const float y = w.ymin + w.height() * 0.5f * static_cast<float>(place.row) + dy;
  Image image;
  const int drawn = readImage(file.get(), image) ? graph.placeImage(image, x, y, place.column + 1, place.row + 1) : 0;
  graph.activateTran(oldTran);
  return drawn;
}

// Pictures of the plot.

// Keeps what the labels tell, for the pictures of this frame.
void Plot::noteFrame() {
  FrameText text;
  char line[100] = "";
  for (const Label& label : labels) {
    formatLabel(label.text, line, sizeof line);
    Date date;
    if (DateTool::decode(line, date) && date.isSet()) {
      if (!text.datim.valid()) text.datim.copy(line);
    } else if (!text.info.valid()) {
      text.info.copy(line);
    }
  }
  if (own_title) text.info.copy(title);
  if (!text.datim.valid()) DateTool::createLabel(label_date, tz, text.datim);
  if (frame_texts.empty()) frame_texts.emplace_back();
  frame_texts.back() = text;
}

void Plot::dropFrameText(int frame) {
  if (frame >= 0 && frame < static_cast<int>(frame_texts.size())) frame_texts.erase(frame_texts.begin() + frame);
}

// The map as it runs on over the whole of a picture of the page; false where there is none that a picture could carry.
bool Plot::pictureDomain(int width, int height, Domain& domain) const {
  domain = getDomain();
  const Panel& map = rec().panel;
  const Rect page = graph.getMaxViewport();
  if (full) return domain.scaleSize(width, height);
  if (num_panel != 1 || width < 2 || height < 2 || map.view.width() <= 0.0f || map.view.height() <= 0.0f) return false;
  const float sx = map.window.width() / map.view.width();
  const float sy = map.window.height() / map.view.height();
  const Point center(map.window.xmin + (page.xmin + page.width() / 2.0f - map.view.xmin) * sx,
                     map.window.ymin + (page.ymin + page.height() / 2.0f - map.view.ymin) * sy);
  EarthPoint e;
  if (!domain.tran(center, e) || Const::isMissing(e.lat)) return false;
  DomainVal val = domain.get();
  val.clat = e.lat;
  val.clon = e.lon;
  val.nx = width;
  val.ny = height;
  val.dx = page.width() * sx / static_cast<float>(width - 1);
  val.dy = page.height() * sy / static_cast<float>(height - 1);
  domain.set(val);
  return domain.isSet();
}

int Plot::getImage(Image& image) {
  if (!graph.getImage(image) || !image.validData()) return 0;
  float r = 0.0f, g = 0.0f, b = 0.0f;
  if (*trans_color && getColorRGB(color_map.getInd(trans_color), r, g, b)) {
    Image one;
    one.set(1, 1, 24);
    one.allocColors(1);
    one.setColor(0, r, g, b);
    const std::uint32_t packed = one.getColorVal(0);
    if (image.getColorType() == Image::DIRECT) image.setTransColor(static_cast<int>(packed));
    for (int i = 0; i < image.getNumColor(); ++i) {
      if (image.getColorVal(i) == packed) image.setTransColor(i);
    }
  }
  Domain domain;
  if (pictureDomain(image.getWidth(), image.getHeight(), domain)) image.setDomain(domain);
  const auto frame = static_cast<std::size_t>(std::max(graph.getNumFrames() > 0 ? graph.getFrame() : 0, 0));
  if (frame < frame_texts.size()) {
    image.setInfo(frame_texts[frame].info.get());
    image.setDatim(frame_texts[frame].datim.get());
    Date date;
    if (DateTool::decode(image.getDatim(), date)) image.setDate(date);
  }
  return 1;
}

int Plot::saveImage(const char* name) {
  const char* type = typeOf(name);
  return type ? saveImage(name, type) : 0;
}

int Plot::saveImage(const char* name, const char* type) {
  Image image;
  if (!StrLib::valid(name) || !getImage(image)) return 0;
  const std::string path = outPath(name);
  ImageFile file;
  if (!file.write(path.c_str(), isGif(type) ? ImageFile::GIF : ImageFile::PNG, image)) return 0;
  sayCreated(type, path.c_str());
  return 1;
}

int Plot::saveOutput() {
  const char* output = Kyv::resrc.get("output", "");
  // "gif:name" or a name that ends in "gif"; "gifts.png" only begins alike, and "gif/a.png" lies in a folder.
  const auto isWord = [output](const char* word) {
    return StrLib::iequal(output, word, 3) && !std::isalnum(static_cast<unsigned char>(output[3])) && output[3] != '/';
  };
  const bool gif = isWord("gif"), png = isWord("png");
  const char* type = gif ? "GIF" : png ? "PNG" : typeOf(output);
  if (!type) return 0;
  String name(output);
  if (gif || png)
    name.copy(StrLib::length(output) > EXTENSION ? output + EXTENSION : isGif(type) ? "output.gif" : "output.png");
  if (graph.getNumFrames() < 2) return saveImage(name.get(), type);
  if (isGif(type)) return saveAnimation(name.get());
  const int dot = StrLib::lastIndex(name.get(), '.');
  const int slash = StrLib::lastIndex(name.get(), '/');
  if (dot > slash + 1) name.trunc(dot);
  return saveAll(name.get(), type);
}

// Every frame as a file of its own, "stem-00.png" and so on.
int Plot::saveAll(const char* stem, const char* type) {
  const int shown = graph.getFrame();
  int saved = 1;
  for (int i = 0; i < graph.getNumFrames(); ++i) {
    char number[20];
    StrLib::printf(number, "-%2.2d.%s", i, isGif(type) ? "gif" : "png");
    graph.displayFrame(i);
    if (!saveImage((stem + std::string(number)).c_str(), type)) saved = 0;
  }
  graph.displayFrame(shown);
  return saved;
}

int Plot::saveAnimation(const char* name) {
  const std::string path = outPath(name);
  const int shown = graph.getFrame();
  GifFile animation;
  if (!animation.open(path.c_str(), GifFile::WRITE)) return 0;
  animation.setDelay(FRAME_DELAY);
  int saved = 1;
  for (int i = 0; i < graph.getNumFrames(); ++i) {
    graph.displayFrame(i);
    Image image;
    if (!getImage(image) || !animation.addFrame(image)) saved = 0;
  }
  graph.displayFrame(shown);
  if (!saved) animation.discard();
  if (!animation.close() || !saved) {
    Kyv::outWarning("Plot: unable to write all frames of %s\n", path.c_str());
    return 0;
  }
  sayCreated("GIF", path.c_str());
  return 1;
}

// The pictures that a key asks for: the frame shown or, while they run, all.
void Plot::saveByKey(const char* type) {
  String stem(*title ? title : "output", STEM);
  stem.replace(' ', '_');
  const char* extension = isGif(type) ? "gif" : "png";
  char ending[20];
  if (graph.getNumFrames() > 1 && graph.isLooping()) {
    saveAll(stem.get(), type);
    return;
  }
  if (graph.getNumFrames() > 1) {
    StrLib::printf(ending, "-%2.2d.%s", graph.getFrame(), extension);
  } else {
    StrLib::printf(ending, ".%s", extension);
  }
  stem.append(ending);
  saveImage(stem.get(), type);
}

}  // namespace KYV
