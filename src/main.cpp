#include "KYV/Domain.h"
#include "KYV/DomainTool.h"
#include "KYV/Figure.h"
#include "KYV/Kyv.h"
#include "KYV/KyvResrc.h"
#include "KYV/Prog.h"
#include "KYV/RadMap.h"
#include "KYV/ResrcDB.h"
#include "KYV/ResrcDBList.h"
#include "KYV/Strings.h"

using namespace KYV;

namespace {

// The options that the program accepts, in the order of the help listing.
constexpr int KEYED[] = {KyvResrc::BASE,     KyvResrc::PATH,     KyvResrc::FILE,       KyvResrc::IO,
                         KyvResrc::CURRENT,  KyvResrc::DOMAIN,   KyvResrc::identifier, KyvResrc::type,
                         KyvResrc::variable, KyvResrc::DATABASE, KyvResrc::PLOT,       KyvResrc::COLOR,
                         KyvResrc::DEVICE};

// Draws the layer on a device; whether a picture of it is still due, which that device could not give.
bool show(RadMap& radar, const Domain& domain, const char* params) {
  Figure figure;
  if (!figure.open(params)) return false;
  figure.startPlot(domain);
  figure.addDrawing(radar);
  figure.endPlot();
  figure.manage();
  return figure.getPlot().isPictureDue();
}

}  // namespace

int main(int argc, char** argv) {
  ResrcDBList keyed;
  for (const int group : KEYED) KyvResrc::add(keyed, group);
  ResrcDBList positional;
  KyvResrc::add(positional, KyvResrc::filename);
  const Strings args(argc, argv);
  ResrcDB::create(args, keyed, positional);
  if (Prog::printHelp(keyed, positional, "This program displays NIDS radar data")) Kyv::exit(Kyv::NOERR);
  Prog::printProg("NIDS RADAR PLOTTER");

  RadMap radar;
  radar.setMap(true);
  radar.setFilename();
  Domain domain;
  if (!DomainTool::set(domain)) radar.getDomain(domain);

  // A file of drawing instructions first, then the picture of the same plot that was asked for as well.
  if (show(radar, domain, nullptr)) show(radar, domain, "de=display");
  return Kyv::NOERR;
}
