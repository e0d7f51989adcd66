#include "KYV/KyvResrc.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>

#include "KYV/ResrcDBList.h"
#include "KYV/StrLib.h"

namespace KYV {

namespace {

struct Entry {
  const char* name;
  const char* env;
  const char* cmdln;
  const char* help;
};

// In the order of KyvResrc::Resources.
// clang-format off
constexpr Entry ENTRIES[] = {
    {"background",   "kyvback",     "bg",    "-bg color    Background color"},
    {"calibration",  "kyvcalib",    "ca",    "-ca cal      Calibration data"},
    {"city_file",    "kyvcity",     "cf",    "-cf file     City database file"},
    {"color_clabel", "kyvclrclab",  "cocl",  "-cocl color  Contour label color"},
    {"color_cont",   "kyvclrcont",  "coco",  "-coco color  Contour line color"},
    {"color_data",   "kyvclrdat",   "cod",   "-cod color   Data color and attribs"},
    {"color_fgrid",  "kyvclrfgrid", "cofg",  "-cofg color  Grid color for fill plots"},
    {"color_fill",   "kyvclrfill",  "cof",   "-cof clr...  Fill colors and attribs"},
    {"color_flabel", "kyvclrflab",  "cofl",  "-cofl color  Contour label color for fill plots"},
    {"color_fmap",   "kyvclrfmap",  "cofm",  "-cofm color  Map color for fill plots"},
    {"color_front",  "kyvclrfrt",   "cofr",  "-cofr clr... Colors for fronts"},
    {"color_grid",   "kyvclrgrid",  "cog",   "-cog color   Grid color"},
    {"color_label",  "kyvclrlab",   "col",   "-col color   Label color"},
    {"color_latlon", "kyvclrll",    "coll",  "-coll color  Lat-lon line color"},
    {"color_map",    "kyvclrmap",   "com",   "-com color   Map color and attribs"},
    {"color_parcel", "kyvclrpar",   "copa",  "-copa clr... Parcel sounding color"},
    {"color_table",  "kyvclrtbl",   "ct",    "-ct files... Color table file"},
    {"color_watch",  "kyvclrwat",   "cowa",  "-cowa clr... Colors for watch boxes"},
    {"con_base",     "kyvconbase",  "cb",    "-cb base     Contour base value"},
    {"con_path",     "kyvcpath",    "cp",    "-cp path     Converted data path"},
    {"con_interval", "kyvconint",   "ci",    "-ci intrvl   Contour interval"},
    {"current",      "kyvcurrent",  "cu",    "-cu [hour]   Currency of input data"},
    {"data_path",    "kyvdpath",    "dp",    "-dp path     Data path"},
    {"device",       "kyvdevice",   "de",    "-de device   Device type and params"},
    {"draw",         "kyvdraw",     "dr",    "-dr types... Draw these types"},
    {"file_path",    "kyvfpath",    "fp",    "-fp path     File path"},
    {"filename",     "kyvfilenm",   nullptr, "filenames... Filenames"},
    {"font_list",    "kyvfont",     "fl",    "-fl list     List of usable fonts"},
    {"format",       "kyvformat",   "fm",    "-fm format   Formats"},
    {"geometry",     "kyvgeom",     "ge",    "-ge geometry Window geometry"},
    {"grid_domain",  "kyvgrddom",   "gd",    "-gd domain   Grid domain"},
    {"grid_path",    "kyvgpath",    "gp",    "-gp path     Grid path"},
    {"grid_num",     "kyvgrdnum",   "gn",    "-gn num      Gridnumber"},
    {"grid_type",    "kyvgrdtype",  "gt",    "-gt type     Gridtype"},
    {"help",         "kyvhelp",     "h",     "-h           Print help"},
    {"hour",         "kyvhour",     "ho",    "-ho [hour]   Use specific hour"},
    {"icon",         "kyvicon",     "ic",    "-ic          Specify window icon mode"},
    {"identifier",   "kyvident",    "id",    "-id ident    Specify the station ID"},
    {"image_path",   "kyvipath",    "ip",    "-ip path     Image path"},
    {"in_file",      "kyvinfile",   "if",    "-if files    Input file type"},
    {"input",        "kyvin",       "in",    "-in type     Input type"},
    {"inverse",      "kyvinv",      "iv",    "-iv          Inverse colors"},
    {"label",        "kyvlabel",    "la",    "-la label... Plot these labels"},
    {"level",        "kyvlevel",    "le",    "-le level    Vertical level"},
    {"log_file",     "kyvlog",      "lf",    "-lf file     Log file name"},
    {"logo",         "kyvlogo",     "lo",    "-lo logo     Logo overlay"},
    {"map_file",     "kyvmap",      "mf",    "-mf files    Map files"},
    {"message",      "kyvmess",     "me",    "-me level    Message level"},
    {"model",        "kyvmodel",    "mo",    "-mo type     Model type"},
    {"model_path",   "kyvmpath",    "mp",    "-mp path     Model path"},
    {"name_conv",    "kyvname",     "nc",    "-nc file     Name convention file"},
    {"num_hour",     "kyvnumhour",  "nh",    "-nh [hour]   Number of hours to use"},
    {"object_param", "kyvobject",   "oa",    "-oa smooth[,radinf,pass,conv,min] Specifies objective analysis params"},
    {"out_file",     "kyvoutfile",  "of",    "-of files    Output file type"},
    {"output",       "kyvout",      "ou",    "-ou type     Output type"},
    {"parameter",    "kyvparam",    "pa",    "-pa param... Program parameters"},
    {"plot_domain",  "kyvpltdom",   "pd",    "-pd domain   Plot domain"},
    {"plot_range",   "kyvrange",    "ra",    "-ra range    Plot ranges"},
    {"plot_scale",   "kyvscale",    "sc",    "-sc scale    Plot scale factor"},
    {"plot_type",    "kyvplot",     "pl",    "-pl type     Plot type"},
    {"product",      "kyvproduct",  "ph",    "-ph prod     Product header"},
    {"prod_file",    "kyvprodfile", "pf",    "-pf file     Product file used for ingest"},
    {"raw_path",     "kyvrpath",    "rp",    "-rp path     Raw path"},
    {"sat_path",     "kyvspath",    "sp",    "-sp path     Satellite path"},
    {"stat_prior",   "kyvprior",    "pr",    "-pr prior    Station priority"},
    {"text_path",    "kyvtpath",    "tp",    "-tp path     Text path"},
    {"time",         "kyvtime",     "ft",    "-ft time     Forecast time"},
    {"timezone",     "kyvtz",       "tz",    "-tz zone     Time zone"},
    {"title",        "kyvtitle",    "ti",    "-ti title    Window title"},
    {"type",         "kyvtype",     "ty",    "-ty type     Data type"},
    {"variable",     "kyvvar",      "va",    "-va var...   Type of data to plot"},
    {"var_file",     "kyvvarfile",  "vf",    "-vf file     Name of variable file to search"},
    {"vect_mag",     "kyvmag",      "vm",    "-vm mag      The magnitude to scale vectors to"},
};
// clang-format on
static_assert(std::size(ENTRIES) == KyvResrc::BASE, "ENTRIES: one row for each single resource");

// A group and the resources that it stands for, in the order of the help listing.
struct Group {
  static constexpr std::size_t MAX_MEMBERS = 9;

  template <std::size_t N>
  constexpr Group(KyvResrc::Resources group, const KyvResrc::Resources (&list)[N]) : id(group), num(N) {
    static_assert(N <= MAX_MEMBERS);
    std::copy(std::begin(list), std::end(list), members.begin());
  }

  KyvResrc::Resources id;
  std::size_t num;
  std::array<KyvResrc::Resources, MAX_MEMBERS> members{};
};

constexpr Group GROUPS[] = {
    {KyvResrc::BASE, {KyvResrc::help, KyvResrc::message}},
    {KyvResrc::PATH,
     {KyvResrc::file_path, KyvResrc::data_path, KyvResrc::con_path, KyvResrc::grid_path, KyvResrc::raw_path,
      KyvResrc::image_path, KyvResrc::text_path, KyvResrc::model_path, KyvResrc::sat_path}},
    {KyvResrc::FILE, {KyvResrc::name_conv, KyvResrc::in_file, KyvResrc::out_file}},
    {KyvResrc::CURRENT, {KyvResrc::current, KyvResrc::hour, KyvResrc::num_hour, KyvResrc::timezone}},
    {KyvResrc::CITY, {KyvResrc::city_file, KyvResrc::stat_prior}},
    {KyvResrc::IO, {KyvResrc::input, KyvResrc::output}},
    {KyvResrc::GRID, {KyvResrc::grid_num, KyvResrc::grid_type}},
    {KyvResrc::DOMAIN, {KyvResrc::plot_domain, KyvResrc::grid_domain, KyvResrc::stat_prior}},
    {KyvResrc::DATABASE, {KyvResrc::city_file, KyvResrc::map_file}},
    {KyvResrc::PLOT,
     {KyvResrc::plot_type, KyvResrc::plot_scale, KyvResrc::format, KyvResrc::parameter, KyvResrc::draw,
      KyvResrc::label}},
    {KyvResrc::COLOR,
     {KyvResrc::font_list, KyvResrc::color_table, KyvResrc::color_data, KyvResrc::color_fill, KyvResrc::color_map,
      KyvResrc::color_grid, KyvResrc::color_latlon, KyvResrc::color_label}},
    {KyvResrc::COLOR_CONT,
     {KyvResrc::color_cont, KyvResrc::color_clabel, KyvResrc::color_flabel, KyvResrc::color_fmap,
      KyvResrc::color_fgrid}},
    {KyvResrc::IDENT, {KyvResrc::identifier}},
    {KyvResrc::OBJECT, {KyvResrc::object_param}},
    {KyvResrc::CONT, {KyvResrc::con_interval, KyvResrc::con_base, KyvResrc::vect_mag}},
    {KyvResrc::DEVICE,
     {KyvResrc::device, KyvResrc::geometry, KyvResrc::title, KyvResrc::icon, KyvResrc::background, KyvResrc::inverse,
      KyvResrc::logo}},
};

void setItem(const Entry& entry, ResrcDBItem& item) { item.set(entry.name, entry.env, entry.cmdln, entry.help); }

}  // namespace

int KyvResrc::get(int n, ResrcDBItem& item) {
  if (n < 0 || n >= static_cast<int>(std::size(ENTRIES))) return 0;
  setItem(ENTRIES[n], item);
  return 1;
}

int KyvResrc::get(const char* name, ResrcDBItem& item) {
  const auto found = std::find_if(std::begin(ENTRIES), std::end(ENTRIES),
                                  [&](const Entry& entry) { return StrLib::equal(entry.name, name); });
  if (found == std::end(ENTRIES)) return 0;
  setItem(*found, item);
  return 1;
}

int KyvResrc::add(ResrcDBList& list, int n) {
  ResrcDBItem item;
  if (get(n, item)) return list.add(item);
  for (const Group& group : GROUPS) {
    if (group.id != n) continue;
    for (std::size_t i = 0; i < group.num; i++) add(list, group.members[i]);
  }
  return 1;
}

}  // namespace KYV
