#include "formats/cairo_page.hpp"

#include <new>
#include <numbers>

#include "formats/cairo_text.hpp"

namespace korvex::cli {
namespace {

constexpr double kPointsPerMillimetre = 72 / 25.4;

void set_source(cairo_t* context, const Color& color) {
  cairo_set_source_rgb(context, color.red / 255.0, color.green / 255.0, color.blue / 255.0);
}

void add_shapes(cairo_t* context, const Shapes& shapes, double reduction) {
  for (const Point& centre : shapes.hexagons) {
    for (const Point& corner : hexagon_corners(centre, 1 - reduction)) {
      cairo_line_to(context, corner.x, corner.y);
    }
    cairo_close_path(context);
    cairo_new_sub_path(context);
  }
  // The inner circle runs against the outer one, so that what is inside stays light.
  for (const auto& [centre, inner, outer] : narrower(shapes.rings, reduction)) {
    cairo_new_sub_path(context);
    cairo_arc(context, centre.x, centre.y, outer, 0, 2 * std::numbers::pi);
    cairo_new_sub_path(context);
    cairo_arc_negative(context, centre.x, centre.y, inner, 2 * std::numbers::pi, 0);
  }
}

}  // namespace

PageSize page_size(const Picture& picture, const Style& style) {
  const Box whole = bounds(picture);
  const double points = millimetres_of(style.module) * kPointsPerMillimetre;
  return {whole.width * points, whole.height * points};
}

void draw_on_page(cairo_t* context, const Picture& picture, const Style& style) {
  const Box whole = bounds(picture);
  const double points = millimetres_of(style.module) * kPointsPerMillimetre;
  cairo_save(context);
  cairo_scale(context, points, points);
  if (style.background) {
    set_source(context, *style.background);
    cairo_rectangle(context, 0, 0, whole.width, whole.height);
    cairo_fill(context);
  }
  set_source(context, style.foreground);
  for (const Box& box : dark_boxes(picture, style.reduction)) {
    cairo_rectangle(context, box.left - whole.left, box.top - whole.top, box.width, box.height);
  }
  if (picture.shapes) {
    cairo_save(context);
    cairo_translate(context, -whole.left, -whole.top);
    add_shapes(context, *picture.shapes, style.reduction.total());
    cairo_restore(context);
  }
  cairo_fill(context);
  draw_texts(context, picture, 1, false);
  cairo_restore(context);
  check(cairo_status(context));
}

cairo_status_t append_to_string(void* closure, const unsigned char* bytes, unsigned int count) try {
  static_cast<std::string*>(closure)->append(reinterpret_cast<const char*>(bytes), count);
  return CAIRO_STATUS_SUCCESS;
} catch (const std::bad_alloc&) {
  return CAIRO_STATUS_NO_MEMORY;  // no exception may pass through Cairo
}

void draw_only_page(const Surface& surface, const Picture& picture, const Style& style) {
  check(cairo_surface_status(surface.get()));
  const std::unique_ptr<cairo_t, decltype(&cairo_destroy)> context(cairo_create(surface.get()),
                                                                   cairo_destroy);
  draw_on_page(context.get(), picture, style);
  cairo_surface_finish(surface.get());
  check(cairo_surface_status(surface.get()));
}

}  // namespace korvex::cli
