// make_seeds FOLDER DATA: writes small inputs for every fuzz program into folders of their names, so that fuzzing
// begins with files of every kind: products of every packet and packing, pictures, maps, text files, storm tables,
// options.
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "KYV/Image.h"
#include "KYV/ImageFile.h"
#include "NidsBuilder.h"

namespace {

namespace fs = std::filesystem;
using Bytes = std::vector<unsigned char>;

constexpr std::size_t MOST = 4000;  // bytes of a seed: short ones are changed faster

void put(const fs::path& path, const std::string& text) {
  fs::create_directories(path.parent_path());
  std::ofstream(path, std::ios::binary) << text.substr(0, MOST);
}

std::string get(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

NidsBuilder begin(int code) {
  NidsBuilder b;
  return b.header(code, 1).location(35.333f, -97.278f).thresholds({0x8002, 5, 10, 15, 20, 25}).volumeTime(19844, 66600);
}

// A product of every packet.
std::vector<NidsBuilder> makeProducts() {
  std::vector<NidsBuilder> products;
  const auto add = [&products](NidsBuilder& b) { products.push_back(b); };
  NidsBuilder radial = begin(19), digital = begin(94), raster = begin(37), pairs = begin(37), precip = begin(81);
  NidsBuilder storms = begin(58), hail = begin(59), wind = begin(48), contour = begin(41), generic = begin(176);
  radial.radials(115);
  digital.digital(100);
  for (int i = 0; i < 8; ++i) {
    radial.radial(static_cast<float>(i), 1.0f, std::vector<NidsBuilder::Run>{{15, 3}, {15, 5}});
    digital.digitalRadial(static_cast<float>(i), 1.0f, Bytes(100, 90));
  }
  raster.raster();
  pairs.raster(0xBA07, 1);
  precip.precip(131);
  for (int i = 0; i < 8; ++i) {
    raster.gridRow({{15, 1}, {3, 4}});
    pairs.gridRow({{40, 1}, {3, 4}});
    precip.gridRow({{100, 3}, {31, 255}});
  }
  storms.text(8, 1, 10, 10, "A0").packet(15, {0, 10, 0, 10, 'A', '0'}).packet(3, {0, 10, 0, 20, 0, 8});
  storms.packet(23, {0, 2, 0, 5, 0, 1, 0, 2, '!', 0}).packet(12, {0, 5, 0, 5}).packet(20, {0, 9, 0, 9, 0, 3, 0, 7});
  storms.page().text(8, 1, 0, 1, " STM ID  AZ/RAN TVS  MDA  POSH/POH/MX SIZE VIL DBZM  HT  TOP  FCST MVMT ");
  storms.text(8, 1, 0, 11, "   A0   228/ 28 TVS     9   90/100/ 2.50    62  66 12.3  48.6   241/ 31  ");
  hail.packet(19, {0, 10, 0, 10, 0, 90, 0, 60, 0, 2}).packet(25, {0, 9, 0, 9, 0, 30}).tabular(Bytes(40, 'x'));
  wind.vectors(10, 1, {{0, 0, 100, 100}}).barbs({{1, 10, 10, 90, 50}}).arrows({{1, 10, 10, 90, 50}});
  contour.linked(6, 1, {{0, 0}, {10, 10}, {20, 0}}).vectors(7, 1, {{0, 0, 9, 9}});
  generic.generic({{1, 2, 3, 4}, {5, 6, 7, 8}});
  for (NidsBuilder* b : {&radial, &digital, &raster, &pairs, &precip, &storms, &hail, &wind, &contour, &generic})
    add(*b);
  // And the packings of one.
  NidsBuilder bzip2 = radial, zlib = radial, gzip = radial, framed = radial;
  add(bzip2.body(NidsBuilder::Body::Bzip2));
  add(zlib.body(NidsBuilder::Body::Zlib));
  add(gzip.wrap(NidsBuilder::Wrap::Gzip));
  add(framed.heading(NidsBuilder::Heading::Frame));
  return products;
}

void makeImages(const fs::path& folder) {
  fs::create_directories(folder);
  for (const int depth : {8, 24}) {
    KYV::Image image;
    image.set(9, 7, depth);
    image.allocData();
    image.allocColors(4);
    for (int i = 0; i < 4; ++i) image.setColor(i, 0.25f * static_cast<float>(i), 0.5f, 1.0f);
    for (int i = 0; i < 63; ++i) image.setPixel(i % 9, i / 9, static_cast<unsigned>(i % 4));
    const std::string stem = (folder / std::to_string(depth)).string();
    for (const int type : {KYV::ImageFile::PNG, KYV::ImageFile::GIF}) {
      // A GIF has no more than 256 colours.
      if (type == KYV::ImageFile::GIF && depth > 8) continue;
      KYV::ImageFile file;
      if (!file.write((stem + (type == KYV::ImageFile::GIF ? ".gif" : ".png")).c_str(), type, image)) std::exit(1);
    }
  }
}

constexpr const char* OPTIONS[] = {
    "ps:90:-97,35,-97,100,100,0.1,0.1",
    "KOKC,0.3",
    "id:rad.cty:KTLX,33,19,0.32,0.32",
    "lc:90:-98:33:45,38,-98,25,17,2",
    "35.3,-97.3,25,17,0.2",
    "fi:kyv.reg:conus",
    "ll,35,-97,20,20,1,1",
    "20240501_1830",
    "2024-05-01T18:30:00",
    "la#20-1",
    "1d6:30",
    "la-0:03",
    "-CDT:-5",
    "America/Chicago",
    "-100:off,5:blue:la=x,10:#ff0000",
    "0-15",
    "red:wi=2:st=dsh:fi=xx",
    "dist=50:100,site,ramp=20:100,clutter=5,bar=lo=ll,lalo=5:5,va=cid,comp,track",
    "900x600+10-20",
    "all,-text_ul,+grid",
    "ul:%D_%V_%F_%y%m%d",
    "%D/nids/%i/%t/%t_%Y%m%d_%h%n:i=KTLX,min=60,size=120",
    "+[5,30,40,-100,-90]:us_states:red:wi=2",
    "2:30-1,:15",
    "%D/%4?_%6?_%3t%i_%Y%m%d%h%n",
};

// Files of the data folder whose reader text_fuzz chooses by the digit.
constexpr struct {
  const char* file;
  char reader;
} TEXTS[] = {{"kyv.clr", '0'},  {"nws_ref.fil", '1'}, {"rad.cty", '3'},   {"kyv.reg", '4'},
             {"name.cnv", '5'}, {"radmap.var", '6'},  {"roman.fnt", '7'}, {"wx.smb", '8'}};

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  const fs::path out = argv[1], data = argv[2];
  int n = 0;
  for (NidsBuilder& product : makeProducts()) {
    const Bytes bytes = product.bytes();
    const std::string text(bytes.begin(), bytes.end());
    for (const char* program : {"nids_fuzz", "picture_fuzz"}) put(out / program / std::to_string(n), text);
    ++n;
  }
  makeImages(out / "image_fuzz");
  for (const auto& t : TEXTS) put(out / "text_fuzz" / t.file, t.reader + get(data / t.file));
  put(out / "text_fuzz" / "resources",
      "2#ifdef x\n*.title: Map\n#else\nradmap*color_label: red\n#endif\n+tag\na.b: c\\\nd\n");
  for (const char* option : OPTIONS) put(out / "option_fuzz" / std::to_string(n++), option);
  put(out / "storm_fuzz" / "table",
      " STM ID  AZ/RAN TVS  MDA  POSH/POH/MX SIZE VIL DBZM  HT  TOP  FCST MVMT \n"
      "   A0   228/ 28 TVS     9   90/100/ 2.50    62  66 12.3  48.6   241/ 31  \n");
  put(out / "map_fuzz" / "list", "-bg:blue +us_states:red:wi=2 [5<10]:lalo:5:5 im:x.gif grid:5\n# end\n");
  put(out / "map_fuzz" / "text", "3 45 30 -90 -100\n 35 -97\n 36 -98\n 37 -97\n2 45 30 -90 -100\n 1 2\n 3 4\n");
  put(out / "map_fuzz" / "kml",
      "<kml><Placemark><name>A</name><LineString><coordinates>-97,35,0 -98,36,0</coordinates></LineString>"
      "</Placemark></kml>");
  for (const auto& entry : fs::directory_iterator(data / "maps")) {
    put(out / "map_fuzz" / entry.path().filename(), get(entry.path()));
  }
  return 0;
}
