// The entry of the program.
#include <cstdlib>
#include <new>

#include "KYV/Domain.h"
#include "KYV/DomainTool.h"
#include "KYV/Figure.h"
#include "KYV/File.h"
#include "KYV/FileTool.h"
#include "KYV/Kyv.h"
#include "KYV/KyvResrc.h"
#include "KYV/OwnResrc.h"
#include "KYV/Prog.h"
#include "KYV/RadMap.h"
#include "KYV/ResrcDB.h"
#include "KYV/ResrcDBList.h"
#include "KYV/Strings.h"
#include "OptionCheck.h"
#include "Version.h"

using namespace KYV;

namespace {

// The options that the program accepts, in the order of the help listing.
constexpr int KEYED[] = {KyvResrc::BASE,     KyvResrc::PATH,     KyvResrc::FILE,       KyvResrc::IO,
                         KyvResrc::CURRENT,  KyvResrc::DOMAIN,   KyvResrc::identifier, KyvResrc::type,
                         KyvResrc::variable, KyvResrc::DATABASE, KyvResrc::PLOT,       KyvResrc::COLOR,
                         KyvResrc::DEVICE};

// Whether a plot or a picture goes to standard output, where nothing else may stand then.
bool isPlotOnOutput() {
  const Strings device(Kyv::getResrc("device"), ',');
  const char* output = Kyv::getResrc("output", "");
  const int colon = StrLib::index(output, ':');
  return FileTool::isStdio(device.getString(1)) || FileTool::isStdio(output + colon + 1);
}

// Draws the layer on a device; whether a picture of it is still due, which that device could not give.
bool show(RadMap& radar, const Domain& domain, const char* params) {
  Figure figure;
  if (!figure.open(params)) return Kyv::note(Kyv::NOGRAPH), false;
  figure.startPlot(domain);
  figure.addDrawing(radar);
  figure.endPlot();
  if (!figure.hasDrawn() && figure.getPlot().discard()) {
    Kyv::report(Kyv::NODATA, "%s: nothing could be drawn, so nothing is written\n", Kyv::getProgramName());
    return false;
  }
  if (!figure.manage()) Kyv::note(Kyv::NOWRITE);
  return figure.getPlot().isPictureDue();
}

// The run's status; what a script may ask for is another matter.
Kyv::Error run(int argc, char** argv) {
  ResrcDBList keyed, positional, own;
  for (const int group : KEYED) KyvResrc::add(keyed, group);
  KyvResrc::add(positional, KyvResrc::filename);
  OwnResrc::add(own);
  const Strings args(argc, argv);
  ResrcDB::create(args, keyed, positional, own);
  if (Kyv::getResrcBool("version")) return printVersion(), Kyv::NOERR;
  if (Kyv::getResrcBool("products")) return printProducts(), Kyv::NOERR;
  if (Prog::printHelp(keyed, positional, "This program displays NIDS radar data")) {
    ResrcDB::printOwn(own);
    return Kyv::NOERR;
  }
  if (isPlotOnOutput()) File::keepOutput();
  Prog::printProg("NIDS RADAR PLOTTER");
  const bool strict = Kyv::getResrcBool("strict") != 0;
  checkOptions(strict);
  if (strict && Kyv::getStatus() == Kyv::BADPARAM) return Kyv::BADPARAM;

  RadMap radar;
  radar.setMap(true);
  radar.setFilename();
  Domain domain;
  if (!DomainTool::set(domain)) {
    explainDomain();
    radar.getDomain(domain);
  }

  // A file of drawing instructions first, then the picture of the same plot that was asked for as well.
  if (show(radar, domain, nullptr)) show(radar, domain, "de=display");
  return Kyv::getStatus();
}

}  // namespace

int main(int argc, char** argv) {
  try {
    const Kyv::Error status = run(argc, argv);
    return Kyv::getResrcBool("strict") ? status : Kyv::NOERR;
  } catch (const std::bad_alloc&) {
    Kyv::outError("%s: there is not enough memory\n", Kyv::getProgramName());
    return Kyv::NOMEMORY;
  }
}
