// A picture on a page of Cairo's vector surfaces.
#pragma once

#include <cairo.h>

#include <memory>
#include <string>

#include "picture.hpp"
#include "style.hpp"

namespace korvex::cli {

/// Points of 1/72 inch.
struct PageSize {
  double width = 0;
  double height = 0;
};
/// Of the whole picture.
PageSize page_size(const Picture& picture, const Style& style);

/// Draws the picture with its top left corner at the context's origin, where a user unit is a point.
/// Everything dark is one path. Throws Failure.
void draw_on_page(cairo_t* context, const Picture& picture, const Style& style);

/// Appends what a surface writes to `closure`, a std::string.
cairo_status_t append_to_string(void* closure, const unsigned char* bytes, unsigned int count);

using Surface = std::unique_ptr<cairo_surface_t, decltype(&cairo_surface_destroy)>;
/// Draws the only page of `surface` and finishes it. Throws Failure.
void draw_only_page(const Surface& surface, const Picture& picture, const Style& style);

}  // namespace korvex::cli
