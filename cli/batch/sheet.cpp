#include "batch/sheet.hpp"

#include <cairo-pdf.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <new>
#include <optional>
#include <vector>

#include "failure.hpp"
#include "formats/cairo_page.hpp"
#include "formats/cairo_text.hpp"
#include "words.hpp"

namespace korvex::cli::batch {
namespace {

constexpr double kPointsPerMillimetre = 72 / 25.4;
constexpr double kCaptionHeight = 2;  // of its digits, in millimetres
constexpr double kCaptionGap = 1.2;   // above it, and below it for what reaches under the line
constexpr double kLongest = 5000;     // of a page, in millimetres

struct Paper {
  std::string_view name;
  double width;
  double height;
};
constexpr std::array kPapers = {Paper{"A3", 297, 420},         Paper{"A4", 210, 297},
                                Paper{"A5", 148, 210},         Paper{"A6", 105, 148},
                                Paper{"letter", 215.9, 279.4}, Paper{"legal", 215.9, 355.6}};

/// Numbers with `separator` between them; nothing where something else stands.
std::optional<std::vector<double>> numbers(std::string_view text, char separator) {
  std::vector<double> all;
  for (;;) {
    const std::size_t end = std::min(text.find(separator), text.size());
    double number = 0;
    const auto [stop, error] =
        std::from_chars(text.data(), text.data() + end, number, std::chars_format::fixed);
    if (error != std::errc() || stop != text.data() + end || !std::isfinite(number) || number < 0)
      return std::nullopt;
    all.push_back(number);
    if (end == text.size()) return all;
    text.remove_prefix(end + 1);
  }
}

std::optional<std::vector<double>> millimetres(std::string_view text, char separator) {
  if (!text.ends_with("mm")) return std::nullopt;
  text.remove_suffix(2);
  return numbers(text, separator);
}

[[noreturn]] void refuse(std::string_view option, std::string_view allowed, std::string_view text) {
  throw UsageError(std::string(option) + " is " + std::string(allowed) + ", not \"" + printable(text) +
                   "\".");
}

void read_page(std::string_view text, SheetLayout& layout) {
  const auto* const paper = std::ranges::find(kPapers, text, &Paper::name);
  if (paper != kPapers.end()) {
    layout.width = paper->width;
    layout.height = paper->height;
    return;
  }
  const auto sides = millimetres(text, 'x');
  const auto is_wrong = [](double side) { return side <= 0 || side > kLongest; };
  if (!sides || sides->size() != 2 || std::ranges::any_of(*sides, is_wrong)) {
    refuse("--page", "A3, A4, A5, A6, letter, legal, or width x height up to 5000 mm as in 100x150mm", text);
  }
  layout.width = sides->front();
  layout.height = sides->back();
}

void read_grid(std::string_view text, SheetLayout& layout) {
  constexpr double kMost = 200;
  const auto counts = numbers(text, 'x');
  const auto is_wrong = [](double count) { return count < 1 || count > kMost || count != std::floor(count); };
  if (!counts || counts->size() != 2 || std::ranges::any_of(*counts, is_wrong)) {
    refuse("--grid", "rows x columns, up to 200 of each, as in 8x3", text);
  }
  layout.rows = static_cast<int>(counts->front());
  layout.columns = static_cast<int>(counts->back());
}

void read_margins(std::string_view text, SheetLayout& layout) {
  const auto sides = millimetres(text, ',');
  if (!sides || (sides->size() != 1 && sides->size() != 4)) {
    refuse("--margins", "one length as in 10mm, or four: top, right, bottom and left, as in 15,5,15,5mm",
           text);
  }
  const auto side = [&](std::size_t index) { return (*sides)[sides->size() == 1 ? 0 : index]; };
  layout.margins = {.left = side(3), .top = side(0), .right = side(1), .bottom = side(2)};
}

void read_gap(std::string_view text, SheetLayout& layout) {
  const auto gaps = millimetres(text, ',');
  if (!gaps || gaps->size() > 2) {
    refuse("--gap", "one length as in 2mm, or two: between columns and between rows, as in 2.5,0mm", text);
  }
  layout.column_gap = gaps->front();
  layout.row_gap = gaps->back();
}

std::string size_text(double width, double height) {
  return decimal(width, 1) + " x " + decimal(height, 1) + " mm";
}

double caption_room(bool has_caption) {
  return has_caption ? kCaptionHeight + 2 * kCaptionGap : 0;
}

}  // namespace

double SheetLayout::label_width() const {
  return (width - margins.left - margins.right - (columns - 1) * column_gap) / columns;
}
double SheetLayout::label_height() const {
  return (height - margins.top - margins.bottom - (rows - 1) * row_gap) / rows;
}

SheetLayout sheet_layout(std::string_view page, std::string_view grid, std::string_view margins,
                         std::string_view gap) {
  SheetLayout layout;
  read_page(page, layout);
  read_grid(grid, layout);
  read_margins(margins, layout);
  read_gap(gap, layout);
  if (layout.label_width() <= 0 || layout.label_height() <= 0) {
    throw UsageError("Margins and gaps leave no room for labels on a page of " +
                     size_text(layout.width, layout.height) + ".");
  }
  return layout;
}

Sheet::Sheet(const std::string& path, const SheetLayout& layout)
    : layout_(layout),
      file_(path),
      surface_(cairo_pdf_surface_create_for_stream(write, this, layout.width * kPointsPerMillimetre,
                                                   layout.height * kPointsPerMillimetre),
               cairo_surface_destroy),
      context_(cairo_create(surface_.get()), cairo_destroy) {
  check(cairo_surface_status(surface_.get()));
  cairo_pdf_surface_set_metadata(surface_.get(), CAIRO_PDF_METADATA_CREATOR, "korvex");
}

// Cairo ends an unfinished file, which nobody will see.
Sheet::~Sheet() = default;

/// No exception may pass through Cairo.
cairo_status_t Sheet::write(void* self, const unsigned char* bytes, unsigned int count) try {
  static_cast<Sheet*>(self)->file_.append({reinterpret_cast<const char*>(bytes), count});
  return CAIRO_STATUS_SUCCESS;
} catch (const Failure& failure) {
  static_cast<Sheet*>(self)->unwritten_ = failure.what();
  return CAIRO_STATUS_WRITE_ERROR;
} catch (const std::bad_alloc&) {
  return CAIRO_STATUS_NO_MEMORY;
}

void Sheet::check_size(const Picture& picture, const Style& style, bool has_caption) const {
  constexpr double kRounding = 1e-6;
  const PageSize size = page_size(picture, style);
  const double width = size.width / kPointsPerMillimetre;
  const double height = size.height / kPointsPerMillimetre + caption_room(has_caption);
  if (width <= layout_.label_width() + kRounding && height <= layout_.label_height() + kRounding) return;
  throw Failure("The symbol takes " + size_text(width, height) + (has_caption ? " with its caption" : "") +
                "; a label has " + size_text(layout_.label_width(), layout_.label_height()) + ".");
}

void Sheet::put(const Picture& picture, const Style& style, const std::string& caption) {
  if (place_ == layout_.rows * layout_.columns) {
    cairo_show_page(context_.get());
    place_ = 0;
  }
  if (place_ == 0) ++pages_;
  const PageSize size = page_size(picture, style);
  const double width = layout_.label_width() * kPointsPerMillimetre;
  const double height = (layout_.label_height() - caption_room(!caption.empty())) * kPointsPerMillimetre;
  const int column = place_ % layout_.columns;
  const int row = place_ / layout_.columns;
  ++place_;
  cairo_save(context_.get());
  cairo_translate(
      context_.get(),
      (layout_.margins.left + column * (layout_.label_width() + layout_.column_gap)) * kPointsPerMillimetre,
      (layout_.margins.top + row * (layout_.label_height() + layout_.row_gap)) * kPointsPerMillimetre);
  if (!caption.empty()) {
    const Box line{0, height + kCaptionGap * kPointsPerMillimetre, width,
                   kCaptionHeight * kPointsPerMillimetre};
    cairo_set_source_rgb(context_.get(), 0, 0, 0);
    draw_line(context_.get(), caption, line);
  }
  cairo_translate(context_.get(), (width - size.width) / 2, (height - size.height) / 2);
  draw_on_page(context_.get(), picture, style);
  cairo_restore(context_.get());
}

void Sheet::check_written() const {
  if (!unwritten_.empty()) throw StorageFailure(unwritten_);
}

void Sheet::add(const DrawnJob& drawn, const std::string& caption) {
  check_written();
  const std::vector<Picture>& pictures = drawn.drawing.pictures;
  for (const Picture& picture : pictures) check_size(picture, drawn.style, !caption.empty());
  for (const Picture& picture : pictures) put(picture, drawn.style, caption);
}

void Sheet::finish() {
  if (pages_ > 0) cairo_show_page(context_.get());
  cairo_surface_finish(surface_.get());
  check_written();
  check(cairo_surface_status(surface_.get()));
  file_.close();
  file_.rename();
}

}  // namespace korvex::cli::batch
