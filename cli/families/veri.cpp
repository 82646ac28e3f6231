// VERI: a square matrix of modules with a solid border.
#include <string>

#include "families/families.hpp"
#include "korvex/veri.hpp"

namespace korvex::cli::families {
namespace {

constexpr double kQuietZone = 4;  // modules; light enough for the border to stand out

const Option kSize{"--size", "N", "modules a side, 3 to 92 (the smallest that holds the data)"};
const Option kCorrection{
    "--correction",
    "",
    "check bytes in every block of eight bytes: as many wrong symbols a block are corrected",
    {"0", "2", "4"},
    "4"};

veri::Correction correction_of(std::string_view check_bytes) {
  return check_bytes == "4"   ? veri::Correction::four
         : check_bytes == "2" ? veri::Correction::two
                              : veri::Correction::none;
}

Result<Drawing> draw(const DrawRequest& request) {
  veri::Options options;
  options.size = request.options.number(kSize, veri::kMinSize, veri::kMaxSize).value_or(0);
  options.correction = correction_of(*request.options.text(kCorrection));
  const Result<veri::Symbol> symbol = veri::encode(options, request.data);
  if (!symbol) return symbol.error();

  const int side = symbol->modules.rows();
  Picture picture;
  picture.modules = symbol->modules;
  picture.row_heights.assign(static_cast<std::size_t>(side), 1);
  picture.quiet_zone = {kQuietZone, kQuietZone, kQuietZone, kQuietZone};
  std::string note = std::to_string(side) + " x " + std::to_string(side) + " modules, " +
                     std::to_string(static_cast<int>(symbol->correction)) + " check bytes a block, " +
                     std::to_string(request.data.size()) + " of " + std::to_string(symbol->capacity_bytes) +
                     " bytes used";
  return Drawing{{std::move(picture)}, {std::move(note)}};
}

}  // namespace

std::vector<Symbology> veri() {
  return {{"veri",
           "VERI",
           "square matrix with a solid border",
           "up to 1010 bytes of any kind",
           {"KORVEX VERI 0123456789"},
           {kSize, kCorrection},
           draw}};
}

}  // namespace korvex::cli::families
