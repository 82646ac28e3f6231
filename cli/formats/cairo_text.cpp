#include "formats/cairo_text.hpp"

#include <algorithm>
#include <cmath>
#include <memory>
#include <string>

#include "failure.hpp"

namespace korvex::cli {
namespace {

// The face that the system has for fixed-width text: its digits are equally wide and told apart with ease.
constexpr const char* kFace = "monospace";
constexpr double kProbeSize = 1000;

/// Of a font size of 1.
struct Digit {
  double height = 0;
  double advance = 0;  ///< to the next digit
};

/// Without hinting, which would move digits by fractions of a pixel that no layout here knows of.
void choose_font(cairo_t* context) {
  cairo_select_font_face(context, kFace, CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);
  const std::unique_ptr<cairo_font_options_t, decltype(&cairo_font_options_destroy)> options(
      cairo_font_options_create(), cairo_font_options_destroy);
  cairo_font_options_set_hint_style(options.get(), CAIRO_HINT_STYLE_NONE);
  cairo_font_options_set_hint_metrics(options.get(), CAIRO_HINT_METRICS_OFF);
  cairo_font_options_set_antialias(options.get(), CAIRO_ANTIALIAS_GRAY);
  cairo_set_font_options(context, options.get());
}

double advance_of(cairo_t* context, const std::string& characters) {
  cairo_text_extents_t extents;
  cairo_text_extents(context, characters.c_str(), &extents);
  return extents.x_advance;
}

/// Where no font is installed Cairo draws one of its own, so there always is one.
Digit measure_digit(cairo_t* context) {
  cairo_text_extents_t extents;
  cairo_set_font_size(context, kProbeSize);
  cairo_text_extents(context, "1", &extents);  // flat at both ends, where 0 reaches further
  return {extents.height / kProbeSize, advance_of(context, "0") / kProbeSize};
}

void show_centred(cairo_t* context, const std::string& characters, double middle, double baseline) {
  cairo_move_to(context, middle - advance_of(context, characters) / 2, baseline);
  cairo_show_text(context, characters.c_str());
}

void draw_in_cells(cairo_t* context, const std::string& characters, const Digit& digit, const Box& box) {
  const double cell = box.width / static_cast<double>(characters.size());
  cairo_set_font_size(context, std::min(box.height / digit.height, cell / digit.advance));
  for (std::size_t index = 0; index < characters.size(); ++index) {
    show_centred(context, characters.substr(index, 1), box.left + cell * (static_cast<double>(index) + 0.5),
                 box.bottom());
  }
}

void draw_centred(cairo_t* context, const std::string& characters, const Digit& digit, const Box& box) {
  cairo_set_font_size(context, box.height / digit.height);
  const double advance = advance_of(context, characters);
  const double fitting = advance > box.width ? box.width / advance : 1;
  cairo_set_font_size(context, fitting * box.height / digit.height);
  show_centred(context, characters, box.left + box.width / 2, box.bottom());
}

}  // namespace

void check(cairo_status_t status) {
  if (status != CAIRO_STATUS_SUCCESS) {
    throw Failure(std::string("Drawing failed: ") + cairo_status_to_string(status) + ".");
  }
}

void draw_line(cairo_t* context, const std::string& characters, const Box& box) {
  choose_font(context);
  draw_centred(context, characters, measure_digit(context), box);
  check(cairo_status(context));
}

void draw_texts(cairo_t* context, const Picture& picture, double unit, bool on_pixels) {
  if (picture.texts.empty()) return;
  const Box whole = bounds(picture);
  choose_font(context);
  const Digit digit = measure_digit(context);
  for (const Text& text : picture.texts) {
    Box box{(text.box.left - whole.left) * unit, (text.box.top - whole.top) * unit, text.box.width * unit,
            text.box.height * unit};
    if (on_pixels) box.top = std::round(box.bottom()) - box.height;
    (text.in_cells ? draw_in_cells : draw_centred)(context, text.characters, digit, box);
  }
  check(cairo_status(context));
}

}  // namespace korvex::cli
