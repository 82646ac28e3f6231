#include "pdf417/layout.hpp"

#include <array>
#include <cstddef>

#include "pdf417/encodation.hpp"
#include "pdf417/error_correction.hpp"
#include "pdf417/sizing.hpp"
#include "pdf417/tables.hpp"

namespace korvex::pdf417 {
namespace {

constexpr unsigned kPad = 900;

/// The korvex32 dialect pads MicroPDF417 by a latch to text compaction and then by pairs of its sub-modes'
/// latches, which decode to nothing and look less alike, row by row, than one codeword over and over.
void pad_micro_by_latches(int count, int columns, CodewordBuffer& codewords) {
  constexpr std::array<unsigned, 8> kCycle = {838, 779, 867, 865, 898, 868, 839, kPad};
  constexpr int kThreeCycles = 3 * static_cast<int>(kCycle.size());
  // Where the columns divide the cycle, one pad more behind every third moves it on to other columns.
  const int period = kThreeCycles + (columns % 2 == 0 ? 1 : 0);
  for (int i = 0; i < count; ++i) {
    const int place = (i - 1) % period;
    const bool in_cycle = i > 0 && place < kThreeCycles;
    codewords.push(in_cycle ? kCycle[static_cast<std::size_t>(place) % kCycle.size()] : kPad);
  }
}

void pad(Dialect dialect, Layout& layout) {
  const bool micro = layout.kind == Kind::micro;
  if (micro && dialect == Dialect::korvex32) {
    pad_micro_by_latches(layout.pad_codewords, layout.columns, layout.codewords);
  } else {
    layout.codewords.push_repeatedly(layout.pad_codewords, kPad);
  }
  if (!micro) layout.codewords.set_first(layout.codewords.count());  // it counts itself and the pads
}

}  // namespace

Laid lay_out(const Request& request, Layout& layout, RunLog* log) {
  const Capacity room = capacity(request);
  if (!room.holds_data()) return {Outcome::no_room_for_data, 0};

  CodewordBuffer& codewords = layout.codewords;
  if (request.kind != Kind::micro) codewords.push(0);  // the length descriptor, once it is known
  const int taken = encode_data(request, room.data() - codewords.count(), codewords, log);
  if (taken < static_cast<int>(request.data.size())) return {Outcome::too_long, taken};

  const Shape shape = choose_shape(request, codewords.count() + room.check);
  layout.kind = request.kind;
  layout.columns = shape.columns;
  layout.rows = shape.rows;
  layout.ecc_level = request.ecc_level;
  layout.micro = request.micro;
  layout.pad_codewords = shape.rows * shape.columns - room.check - codewords.count();
  layout.check_codewords = room.check;
  pad(request.dialect, layout);
  append_check_codewords(room.check, codewords);
  return {Outcome::fits, taken};
}

}  // namespace korvex::pdf417
