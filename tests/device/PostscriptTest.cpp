#include "KYV/Postscript.h"

#include <cmath>
#include <functional>
#include <regex>

#include "KYV/Image.h"
#include "KYV/Points.h"
#include "Scratch.h"

using KYV::Image;
using KYV::Points;
using KYV::Postscript;

namespace {

class PostscriptFile : public Scratch {
 protected:
  // What the drawing writes between prologue and trailer.
  std::string drawn(const char* options, const std::function<void(Postscript&)>& draw) {
    Postscript ps;
    ps.setParam(options);
    EXPECT_EQ(1, ps.open());
    draw(ps);
    EXPECT_EQ(1, ps.close());
    const std::string text = readFile("x.ps");
    const std::string begin = "%%KYV Plot: KYV Plot\n", end = "%%End of plot\n";
    const std::size_t from = text.find(begin), to = text.find(end);
    if (from == text.npos || to == text.npos) return "no plot in " + text;
    return text.substr(from + begin.size(), to - from - begin.size());
  }
};

Points somePoints(int n) {
  Points points;
  for (int i = 0; i < n; ++i) points.add(static_cast<float>(i), 0.25f);
  return points;
}

long count(const std::string& text, const char* pattern) {
  const std::regex re(pattern);
  return std::distance(std::sregex_iterator(text.begin(), text.end(), re), {});
}

TEST_F(PostscriptFile, PrologueAndTrailerFollowTheOptions) {
  struct Case {
    const char* options;
    const char* magic;
    const char* box;     // of EPS
    const char* orient;  // between "/cp" and the colour
    const char* color;   // and what follows the line settings
    const char* scale;
  };
  const char* const plain = "%!PS-Adobe-1.0\n";
  const char* const epsf = "%!PS-Adobe-3.0 EPSF-3.0\n";
  const char* const grey = "0 setgray\n";
  const char* const rgb = "0 0 0 setrgbcolor\n";
  const Case cases[] = {
      {"x.ps", plain, "", "90 rotate\n.25 inch -8.25 inch translate\n", grey, ""},
      {"x.ps,land", plain, "", "90 rotate\n.25 inch -8.25 inch translate\n", grey, ""},
      {"x.ps,PORT,Color", plain, "", ".25 inch .25 inch translate\n", rgb, ""},
      {"x.ps,color,gray,scale=0.8", plain, "", "90 rotate\n.25 inch -8.25 inch translate\n", grey, "0.80 0.80 scale\n"},
      {"x.ps,eps", epsf, "%%BoundingBox: 0 0 576 756\n", "90 rotate\n0. inch -8.5 inch translate\n", grey, ""},
      {"x.ps,eps,port,color", epsf, "%%BoundingBox: 0 0 756 576\n", "", rgb, ""},
      {"x.ps,eps,noeps,what,,", plain, "", "90 rotate\n.25 inch -8.25 inch translate\n", grey, ""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.options);
    {
      Postscript ps;
      ps.setParam(c.options);
      ps.setTitle("Base reflectivity\nshowpage");
      ASSERT_EQ(1, ps.open());
    }
    const bool eps = *c.box;
    const std::string text =
        std::regex_replace(readFile("x.ps"), std::regex("CreationDate: [^\n]+\n"), "CreationDate:\n");
    EXPECT_EQ(
        std::string(c.magic) + c.box +
            "%%Title: KYV Graphics Display: Base reflectivity showpage\n"
            "%%Creator: KYV Postscript Processor-5.5\n%%CreationDate:\n%%EndComments\n%%Postscript initialization\n" +
            (eps ? "" : "30 dict begin\n/saveobj save def\n") +
            "/inch {72 mul} def\n/dot {.33 mul} def\n/mv {moveto} def\n/ln {lineto} def\n/lw {setlinewidth} def\n"
            "/np {newpath} def\n/cp {closepath} def\n" +
            c.orient + c.color + "2 setlinejoin\n1 dot lw\n[] 0 setdash\n" + c.scale +
            "%%Begin plot\n%%KYV Plot: Base reflectivity showpage\n%%End of plot\n" +
            (eps ? "showpage\n" : "saveobj restore\nshowpage\nend\n") + "%%EOF\n",
        text);
  }
}

TEST_F(PostscriptFile, SizesAreTakenAndUselessNumbersChangeNothing) {
  struct Case {
    const char* options;
    float width, height;  // points
  };
  for (const Case& c :
       {Case{",letter", 756.0f, 576.0f}, Case{",legal", 972.0f, 576.0f}, Case{",11x17,port", 1188.0f, 756.0f},
        Case{",A4", 806.4f, 561.6f}, Case{",a3", 1108.8f, 806.4f}, Case{",ansid", 2412.0f, 1548.0f},
        Case{",sz=8:10", 576.0f, 720.0f}, Case{",legal,sz:1.5:2", 108.0f, 144.0f}, Case{",sz=8:10,a4", 806.4f, 561.6f},
        Case{",sz=0:0", 756.0f, 576.0f}, Case{",sz=8", 756.0f, 576.0f}, Case{",sz=8:ten", 756.0f, 576.0f},
        Case{",sz=-8:10", 756.0f, 576.0f}, Case{",sz=1e30:1e30", 756.0f, 576.0f}, Case{",sz=nan:nan", 756.0f, 576.0f},
        Case{",sz", 756.0f, 576.0f}, Case{"letter", 756.0f, 576.0f}}) {
    SCOPED_TRACE(c.options);
    Postscript ps;
    EXPECT_EQ(1, ps.setParam(c.options));
    EXPECT_FLOAT_EQ(c.width, ps.getWidth());
    EXPECT_FLOAT_EQ(c.height, ps.getHeight());
  }
  for (const char* token :
       {"scale=0", "scale=nan", "scale=-1", "scale=1e30", "scale=x", "scale", "lwidth=-1", "lwidth=", "lwidth=inf"}) {
    SCOPED_TRACE(token);
    const std::string options = std::string("x.ps,") + token;
    const std::string text = drawn(options.c_str(), [](Postscript& ps) { ps.drawLine(1, 1.0f, 2.0f, 3.0f, 4.0f); });
    EXPECT_TRUE(contains(text, "\n1.0 dot lw\n")) << text;
    EXPECT_FALSE(contains(readFile("x.ps"), " scale\n"));
  }
  Postscript ps;
  EXPECT_EQ(1, ps.setParam(nullptr));
  ps.setParam("x.ps,color");
  EXPECT_TRUE(ps.getInverse());
}

TEST_F(PostscriptFile, PensAreWrittenBeforeEveryLine) {
  const auto line = [](int cls, int style, float width) {
    return [=](Postscript& ps) {
      ps.setColor(cls, 0xFF7F00);
      ps.setLineStyle(cls, style);
      ps.setLineWidth(cls, width);
      ps.drawLine(cls, 1.0f, 2.0f, -3.5f, 4.125f);
    };
  };
  struct Case {
    const char* options;
    int cls;
    int style;
    float width;
    const char* pen;
  };
  for (const Case& c : {Case{"x.ps", 1, 1, 1.0f, "0.52 setgray\n1.0 dot lw\n[] 0 setdash\n"},
                        Case{"x.ps,color", 1, 2, 2.0f, "1.00 0.50 0.00 setrgbcolor\n2.0 dot lw\n[6] 0 setdash\n"},
                        Case{"x.ps,lwidth=1.5", 1, 3, 3.0f, "0.52 setgray\n4.5 dot lw\n[3 6] 0 setdash\n"},
                        Case{"x.ps", 1, 4, 0.0f, "0.52 setgray\n1.0 dot lw\n[6 6 3 6] 0 setdash\n"},
                        Case{"x.ps", 1, 5, -9999.0f, "0.52 setgray\n1.0 dot lw\n[2] 0 setdash\n"},
                        Case{"x.ps", 1, 7, 1.0f, "0.52 setgray\n1.0 dot lw\n"},
                        Case{"x.ps", 1, -1, INFINITY, "0.52 setgray\n1.0 dot lw\n"},
                        Case{"x.ps", 2, 5, 2.0f, "0.52 setgray\n[] 0 setdash\n2.0 dot lw\n"},
                        Case{"x.ps,color", 4, 2, 0.5f, "1.00 0.50 0.00 setrgbcolor\n[] 0 setdash\n0.5 dot lw\n"},
                        Case{"x.ps", 3, 2, 2.0f, ""}, Case{"x.ps", 9, 2, 2.0f, ""}}) {
    SCOPED_TRACE(c.pen);
    EXPECT_EQ(std::string("%%PL:2\n") + c.pen + "np\n1.00 2.00 mv\n-3.50 4.12 ln\nstroke\n",
              drawn(c.options, line(c.cls, c.style, c.width)));
  }
}

TEST_F(PostscriptFile, PathsHoldAllTheirPoints) {
  const std::string text = drawn("x.ps,color", [](Postscript& ps) {
    ps.drawLine(1, somePoints(161));
    EXPECT_EQ(0, ps.drawLine(1, Points()));
    EXPECT_EQ(0, ps.drawFill(3, Points()));
    Points wild = somePoints(4);
    wild.add(std::nanf(""), 0.0f);
    EXPECT_EQ(0, ps.drawFill(3, wild));
    EXPECT_EQ(0, ps.drawLine(1, 0.0f, INFINITY, 1.0f, 1.0f));
  });
  EXPECT_TRUE(text.starts_with("%%PL:161\n"));
  EXPECT_EQ(1, count(text, " mv\n"));
  EXPECT_EQ(160, count(text, " ln\n"));
  EXPECT_EQ(1, count(text, "stroke\n"));
  EXPECT_TRUE(text.ends_with("160.00 0.25 ln\nstroke\n"));
}

TEST_F(PostscriptFile, FillsChangeTheirColourWithTheValue) {
  const std::string cell = "np\n0.00 0.25 mv\n1.00 0.25 ln\n2.00 0.25 ln\ncp\nfill\n";
  EXPECT_EQ("%%FA:3\n0.00 0.00 1.00 setrgbcolor\n" + cell + "%%FA:3\n0.00 0.00 1.00 setrgbcolor\n" + cell +
                "%%FA:3\n0.20 0.40 0.60 setrgbcolor\n" + cell + "%%FA:3\n" + cell,
            drawn("x.ps,color", [](Postscript& ps) {
              const Points points = somePoints(3);
              ps.setColor(3, 0x0000FF);
              ps.drawFill(3, points);
              ps.drawFill(3, points);
              ps.setColor(3, 0x336699);
              ps.setFillStyle(3, 9);  // every fill is solid
              ps.drawFill(3, points);
              ps.drawFill(1, points);
            }));
}

TEST_F(PostscriptFile, TheClipIsATenthWiderOnEverySide) {
  const std::string path = "initclip\nnp\n9.90 19.90 mv\n9.90 40.10 ln\n30.10 40.10 ln\n30.10 19.90 ln\ncp\nclip\n";
  EXPECT_EQ(path + path, drawn("x.ps", [](Postscript& ps) {
              ps.setClip(10.0f, 20.0f, 30.0f, 40.0f);
              KYV::Rect r;
              r.setu(30.0f, 40.0f, 10.0f, 20.0f);
              ps.setClip(r);
              EXPECT_FLOAT_EQ(9.9f, ps.getClip().xmin);
              EXPECT_FLOAT_EQ(40.1f, ps.getClip().ymax);
              EXPECT_EQ(0, ps.setClip(0.0f, 0.0f, std::nanf(""), 1.0f));
            }));
}

TEST_F(PostscriptFile, MessagesStayInTheirLine) {
  EXPECT_EQ("%% Frame 1\n%% a showpage  b\n%% \n", drawn("x.ps", [](Postscript& ps) {
              ps.message("Frame 1");
              ps.message("a\nshowpage\r\nb");
              ps.message(nullptr);
            }));
}

TEST_F(PostscriptFile, ImagesFillTheClipWithSamples) {
  Image image;
  image.set(2, 2, 8);
  image.allocData();
  image.allocColors(3);
  image.setColor(1, 1.0f, 0.5f, 0.0f);
  image.setColor(2, 0.2f, 0.4f, 0.6f);
  image.setPixel(0, 0, 1);
  image.setPixel(1, 1, 2);
  const auto draw = [&](float x, float y) {
    return [&image, x, y](Postscript& ps) {
      ps.setClip(10.0f, 20.0f, 13.0f, 23.0f);
      EXPECT_EQ(1, ps.drawImage(image, 7, x, y));
    };
  };
  const std::string head =
      "gsave\n9 19 translate\n3 3 scale\n/picstr 3 string def\n3 3 8 [ 3 0 0 -3 0 3 ]\n"
      "{ currentfile picstr readhexstring pop }\n";
  const auto body = [&](const std::string& text) { return text.substr(text.find("gsave")); };
  EXPECT_EQ(head + "false 3 colorimage\nFF7F00000000FFFFFF\n000000336699FFFFFF\nFFFFFFFFFFFFFFFFFF\ngrestore\n",
            body(drawn("x.ps,color", draw(0.0f, 0.0f))));
  // (0.9 + 127.5/255) / 2.7 of 255 is 132; (0.18 + 0.4 + 0.48) / 2.7 of 255 is 100.
  EXPECT_EQ(head + "image\nFFFFFF\nFF8400\nFF0064\ngrestore\n", body(drawn("x.ps", draw(-1.9f, -1.0f))));
  EXPECT_EQ(head + "image\n64FFFF\nFFFFFF\nFFFFFF\ngrestore\n", body(drawn("x.ps", draw(1.0f, 1.0f))));
  for (const float far : {1e30f, -1e30f, INFINITY}) {
    EXPECT_EQ(head + "image\nFFFFFF\nFFFFFF\nFFFFFF\ngrestore\n", body(drawn("x.ps", draw(far, 0.0f))));
  }
}

TEST_F(PostscriptFile, LongImageLinesAreBroken) {
  Image image;
  image.set(300, 300, 24);
  image.allocData();
  const std::string text = drawn("x.ps", [&](Postscript& ps) {
    ps.setClip(0.0f, 0.0f, 200.0f, 1.0f);
    ps.drawImage(image, 0.0f, 0.0f);
  });
  const std::string full(160, '0'), rest(80, '0');
  EXPECT_TRUE(contains(text, "\nimage\n" + full + "\n" + full + "\n" + rest + "\ngrestore\n")) << text;
}

TEST_F(PostscriptFile, ImagesOfNoUseDrawNothing) {
  Image none, empty, image;
  empty.set(5, 5, 8);
  image.set(5, 5, 8);
  image.allocData();
  const std::string text = drawn("x.ps", [&](Postscript& ps) {
    EXPECT_EQ(0, ps.drawImage(none, 0.0f, 0.0f));
    EXPECT_EQ(0, ps.drawImage(empty, 0.0f, 0.0f));
    EXPECT_EQ(0, ps.drawImage(image, std::nanf(""), 0.0f));
    ps.setClip(5.0f, 5.0f, 5.0f, 5.0f);
    EXPECT_EQ(0, ps.drawImage(image, 0.0f, 0.0f));
    ps.setClip(-3e38f, -3e38f, 3e38f, 3e38f);
    EXPECT_EQ(0, ps.drawImage(image, 0.0f, 0.0f));
    ps.setClip(3e9f, 0.0f, 3e9f, 9.0f);
    EXPECT_EQ(0, ps.drawImage(image, 0.0f, 0.0f));
  });
  EXPECT_FALSE(contains(text, "gsave"));
}

}  // namespace
