#include <cairo-pdf.h>

#include "formats/cairo_page.hpp"
#include "formats/formats.hpp"

namespace korvex::cli::formats {

std::string pdf(const Picture& picture, const Style& style) {
  std::string file;
  const PageSize size = page_size(picture, style);
  const Surface surface(cairo_pdf_surface_create_for_stream(append_to_string, &file, size.width, size.height),
                        cairo_surface_destroy);
  cairo_pdf_surface_set_metadata(surface.get(), CAIRO_PDF_METADATA_TITLE, picture.title.c_str());
  cairo_pdf_surface_set_metadata(surface.get(), CAIRO_PDF_METADATA_SUBJECT, picture.description.c_str());
  cairo_pdf_surface_set_metadata(surface.get(), CAIRO_PDF_METADATA_CREATOR, "korvex");
  draw_only_page(surface, picture, style);
  return file;
}

}  // namespace korvex::cli::formats
