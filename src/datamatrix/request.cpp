#include "datamatrix/request.hpp"

#include <algorithm>

namespace korvex::datamatrix {
namespace {

constexpr std::uint8_t kGroupSeparator = 0x1D;

Fault read_escapes(std::span<const std::uint8_t> data, bool gs1, Message& message) {
  for (std::size_t at = 0; at < data.size(); ++at) {
    if (data[at] != kEsc) {
      message.append(gs1 && data[at] == kGroupSeparator ? kFnc1 : data[at]);
      continue;
    }
    const bool escape = at + 1 < data.size() && (data[at + 1] == kEsc || data[at + 1] == '1');
    if (!escape) return {Reason::bad_escape, static_cast<int>(at) + 1};
    message.append(data[++at] == '1' ? kFnc1 : kEsc);
  }
  return {};
}

}  // namespace

Fault read_message(const Options& options, std::span<const std::uint8_t> data, Message& message) {
  message.size = 0;
  if (options.gs1) message.append(kFnc1);
  if (options.fnc1_escape) return read_escapes(data, options.gs1, message);

  Character* const begin = &message.storage[static_cast<std::size_t>(message.size)];
  std::ranges::copy(data, begin);
  if (options.gs1) std::replace(begin, begin + data.size(), Character{kGroupSeparator}, kFnc1);
  message.size += static_cast<int>(data.size());
  return {};
}

std::span<const SymbolSize> sizes_for(const Options& options) {
  const int rows = options.rows;
  const int columns = options.columns;
  if (rows == 0 && columns == 0) return options.shape == Shape::square ? kSquareSizes : kRectangleSizes;
  const std::span<const SymbolSize> all = kSizes;
  // Automatic width; the two of a height stand side by side.
  const auto fits = [=](const SymbolSize& size) {
    return size.rows == rows && (size.columns == columns || (columns == 0 && size.columns != rows));
  };
  const auto first = std::ranges::find_if(all, fits);
  const auto last = std::find_if_not(first, all.end(), fits);
  return {first, last};
}

}  // namespace korvex::datamatrix
