// What is asked for: every word that the program does not understand is named, and ends a strict run.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "NidsBuilder.h"
#include "Program.h"

namespace {

constexpr int BADPARAM = 11;

class OptionRun : public testing::Test {
 protected:
  OptionRun() {
    NidsBuilder b;
    b.header(19, 1).location(35.333f, -97.278f).thresholds({0x8002, 5, 10, 15}).volumeTime(15846, 73003);
    b.radials(115).radial(0.0f, 1.0f, std::vector<NidsBuilder::Run>{{20, 3}});
    program.write("p.nids", b.bytes());
  }
  void write(const std::string& name, const std::string& text) {
    program.write(name, std::vector<unsigned char>(text.begin(), text.end()));
  }
  bool exists(const char* name) const { return std::filesystem::exists(program.path(name)); }

  Program program;
};

TEST_F(OptionRun, WordsThatNobodyUnderstandsAreNamed) {
  const struct {
    const char* arguments;
    const char* said;
    bool drawn = true;  // without `strict`
  } CASES[] = {
      {"-strct", "-strct: no such option; did you mean -strict?"},
      {"--geometri=9x9", "-geometri: no such option; did you mean -geometry?"},
      {"-zzz 5", "-zzz: no such option; it is ignored"},
      {"-mx 2y", "-mx 2y: not minutes"},
      {"-df kyv.res", "kyv.res:2: titel: no such resource; did you mean title?"},
      {"-df gone.res", "-df gone.res: no resource file can be read there"},
      {"-df color.res", "color.res:1: color_label redd: no such colour; did you mean red?"},
      {"-pa dits=50", "-pa dits=50: no such parameter; did you mean dist?"},
      {"-pa dist=abc", "-pa dist=abc: numbers are needed"},
      {"-pa nf=x", "-pa nf=x: a number is needed"},
      {"-pa bar=xx=3", "-pa bar=xx=3: no such parameter"},
      {"-pa tz=CDT", "-pa tz=CDT: no such time zone"},
      {"-dr tex_ul", "-dr tex_ul: no such part of a picture; did you mean text_ul?"},
      {"-la xx:hello", "-la xx:hello: no such place"},
      {"-col redd", "-col redd: no such colour; did you mean red? Nothing is drawn in it"},
      {"-cod red:wx=1", "-cod wx=1: no attribute"},
      {"-com red:wi=abc", "-com wi=abc: no attribute"},
      {"-bg foo", "-bg foo: no such colour; the device's own background is used"},
      {"-cof 5:redd,20:blue", "-cof redd: no such colour; did you mean red?"},
      {"-cof redd,gren", "scale"},
      {"-cof 10:off", "scale"},
      {"-cof gone.fil", "fill scale"},
      {"-ct gone.clr", "colour table"},
      {"-fl my.fnl", "-fl: fonts are chosen in kyv.fnl"},
      {"-mf gone.map", "gone.map"},
      {"-lo gone.png", "gone.png"},
      {"-nc gone.cnv", "gone.cnv"},
      {"-va hsiz", "no variable hsiz; did you mean hsize?"},
      {"-tz CDT", "-tz CDT: no such time zone; UTC is used"},
      {"-tz America/Chicgo", "did you mean America/Chicago?"},
      {"-ge 900*600", "-ge 900*600: no size"},
      {"-cu yesterday", "-cu yesterday: no time"},
      {"-ho noon", "-ho noon: no hour"},
      {"-nh some", "-nh some: no window of time"},
      {"-pd nowhere", "-pd nowhere: no such domain; that of the product is used"},
      {"-pd oklahom", "-pd oklahom: no such domain; did you mean oklahoma?"},
      {"-if ncdc", "-if ncdc: no such convention; it is taken as a file name; there are nids, decoder"},
      {"-id KTLXX", "-id KTLXX: has more than 4 characters"},
      {"-iv maybe", "-iv maybe: not yes or no"},
      {"-ic p.nids", "-ic p.nids: the file's name is taken as the value of the option", true},
      {"-me loud", "-me loud: no such message class"},
      {"-de pdf,x.ps", "-de pdf: no such device; postscript is used"},
      {"-de postscript,x.ps,colr", "Postscript: colr: no such option; did you mean color?"},
      {"-de hpgl,x.hp,rot=up", "Hpgl: rot=up: this value is of no use"},
      {"-de meta,sz=axb", "MetaFile: sz=axb: this value is of no use"},
      {"-ou a.jpg", "a.jpg", false},
  };
  write("kyv.res", "# a comment\n*.titel: Map\nother.thing: 5\n*.title: Map\n");
  write("color.res", "*.color_label: redd\n");
  for (const auto& c : CASES) {
    SCOPED_TRACE(c.arguments);
    const std::string arguments = std::string("-ou a.png ") + c.arguments + " -- p.nids";
    const Program::Result loose = program.run(arguments);
    EXPECT_NE(std::string::npos, loose.output.find(c.said)) << loose.output;
    EXPECT_EQ(0, loose.status);
    EXPECT_EQ(c.drawn, exists("a.png"));
    std::filesystem::remove(program.path("a.png"));
    const Program::Result strict = program.run("-strict " + arguments);
    EXPECT_NE(std::string::npos, strict.output.find(c.said)) << strict.output;
    EXPECT_EQ(BADPARAM, strict.status);
    EXPECT_FALSE(exists("a.png"));
  }
}

TEST_F(OptionRun, WordsThatAreUnderstoodAreNot) {
  write("-x.nids", program.read("p.nids"));
  for (const char* arguments :
       {"-cur_time=1700000000 --ti x -pd=conus p.nids", "-pd KTLX,0.05 p.nids", "-pd ktlx p.nids", "-pd KOKC p.nids",
        "-pa dist,table,site,ramp=20:100,clutter,bar=lo=ll,lalo=5,co=red,shadow=2,nf=1,refresh,va=cid,comp p.nids",
        "-col red:wi=2:st=dsh -cof 5:blue:la=x,10:#ff0000 -bg black -dr all,-text_ul -la ul:X,%D p.nids",
        "-ge 900x600+10+20 -tz +CDT:-5 -if nids -cu la -ho 18 -nh 2:30 -me warn,+out1 -iv yes -ic no p.nids",
        "-tz America/Chicago -- -x.nids"}) {
    const Program::Result r = program.run(std::string("-strict -ou a.png ") + arguments);
    EXPECT_EQ(std::string::npos, r.output.find("no such")) << r.output;
    EXPECT_TRUE(r.status == 0 || std::string(arguments).find("-cu") != std::string::npos) << r.status << r.output;
  }
}

}  // namespace
