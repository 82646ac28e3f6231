#include <cairo-ps.h>

#include "formats/cairo_page.hpp"
#include "formats/formats.hpp"

namespace korvex::cli::formats {

std::string eps(const Picture& picture, const Style& style) {
  std::string file;
  const PageSize size = page_size(picture, style);
  const Surface surface(cairo_ps_surface_create_for_stream(append_to_string, &file, size.width, size.height),
                        cairo_surface_destroy);
  cairo_ps_surface_set_eps(surface.get(), 1);
  cairo_ps_surface_dsc_comment(surface.get(), ("%%Title: " + picture.title).c_str());
  draw_only_page(surface, picture, style);
  return file;
}

}  // namespace korvex::cli::formats
