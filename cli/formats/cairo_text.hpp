// Text through Cairo.
#pragma once

#include <cairo.h>

#include <string>

#include "picture.hpp"

namespace korvex::cli {

/// Draws the picture's texts in the context's source. A module has `unit` user units, and (0, 0) is the top
/// left corner of the whole picture. With `on_pixels`, where a user unit is a pixel, baselines are whole
/// numbers. No character leaves its text's box sideways. Throws Failure.
void draw_texts(cairo_t* context, const Picture& picture, double unit, bool on_pixels);

/// A line in the middle of a box, as high as the box where its width allows that, in the context's source.
/// Throws Failure.
void draw_line(cairo_t* context, const std::string& characters, const Box& box);

/// Throws Failure with a sentence when something went wrong in Cairo.
void check(cairo_status_t status);

}  // namespace korvex::cli
