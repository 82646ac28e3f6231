// Pages of labels: a PDF with symbols in a grid, as label sheets have it.
#pragma once

#include <cairo.h>

#include <memory>
#include <string>
#include <string_view>

#include "files.hpp"
#include "job.hpp"
#include "picture.hpp"

namespace korvex::cli::batch {

/// In millimetres.
struct SheetLayout {
  double width = 0;
  double height = 0;
  int rows = 0;
  int columns = 0;
  Margins margins;
  double column_gap = 0;
  double row_gap = 0;

  [[nodiscard]] double label_width() const;
  [[nodiscard]] double label_height() const;
};

/// As typed: "A4" or "100x150mm"; "8x3", rows x columns; "10mm" or "15,5,15,5mm" (top, right, bottom, left);
/// "2mm" or "2,0mm" (between columns, between rows). Throws UsageError.
SheetLayout sheet_layout(std::string_view page, std::string_view grid, std::string_view margins,
                         std::string_view gap);

/// The pages are written as they fill up; the file appears with finish().
class Sheet {
 public:
  /// Throws Failure.
  Sheet(const std::string& path, const SheetLayout& layout);
  ~Sheet();
  Sheet(const Sheet&) = delete;
  Sheet& operator=(const Sheet&) = delete;

  /// Puts every picture on a label of its own, row by row, in its middle, with a caption below when there is
  /// one. Throws Failure, and puts none of them, when one is too large, and StorageFailure when the file
  /// cannot be written any more.
  void add(const DrawnJob& drawn, const std::string& caption);
  void finish();
  [[nodiscard]] int pages() const { return pages_; }

 private:
  void check_size(const Picture& picture, const Style& style, bool has_caption) const;
  void put(const Picture& picture, const Style& style, const std::string& caption);
  void check_written() const;
  static cairo_status_t write(void* self, const unsigned char* bytes, unsigned int count);

  SheetLayout layout_;
  Draft file_;
  std::string unwritten_;  // what went wrong while Cairo wrote
  std::unique_ptr<cairo_surface_t, decltype(&cairo_surface_destroy)> surface_;
  std::unique_ptr<cairo_t, decltype(&cairo_destroy)> context_;
  int place_ = 0;  // on the page
  int pages_ = 0;
};

}  // namespace korvex::cli::batch
