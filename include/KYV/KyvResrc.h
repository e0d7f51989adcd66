#ifndef KYV_KYVRESRC_H
#define KYV_KYVRESRC_H

#include "KYV/ResrcDBItem.h"

namespace KYV {

class ResrcDBList;

/// The standard resource table: the options that all programs of the library share.
class KyvResrc {
 public:
  /// Entries 0 to 72 are single resources, 73 to 88 groups of them.
  enum Resources {
    background,
    calibration,
    city_file,
    color_clabel,
    color_cont,
    color_data,
    color_fgrid,
    color_fill,
    color_flabel,
    color_fmap,
    color_front,
    color_grid,
    color_label,
    color_latlon,
    color_map,
    color_parcel,
    color_table,
    color_watch,
    con_base,
    con_path,
    con_interval,
    current,
    data_path,
    device,
    draw,
    file_path,
    filename,
    font_list,
    format,
    geometry,
    grid_domain,
    grid_path,
    grid_num,
    grid_type,
    help,
    hour,
    icon,
    identifier,
    image_path,
    in_file,
    input,
    inverse,
    label,
    level,
    log_file,
    logo,
    map_file,
    message,
    model,
    model_path,
    name_conv,
    num_hour,
    object_param,
    out_file,
    output,
    parameter,
    plot_domain,
    plot_range,
    plot_scale,
    plot_type,
    product,
    prod_file,
    raw_path,
    sat_path,
    stat_prior,
    text_path,
    time,
    timezone,
    title,
    type,
    variable,
    var_file,
    vect_mag,
    BASE,
    PATH,
    FILE,
    CURRENT,
    CITY,
    IO,
    GRID,
    DOMAIN,
    DATABASE,
    PLOT,
    COLOR,
    COLOR_CONT,
    IDENT,
    OBJECT,
    CONT,
    DEVICE
  };

  /// A single entry by number or by its long name; 0 when there is none.
  static int get(int n, ResrcDBItem& item);
  static int get(const char* name, ResrcDBItem& item);
  /// Appends an entry, or the members of a group in their order; other numbers add nothing. 1.
  static int add(ResrcDBList& list, int n);
};

}  // namespace KYV
#endif
