// The composite encoder: from a request to the rows of a symbol.
#include <algorithm>

#include "composite/symbologies.hpp"

namespace korvex::composite {

void split_text(Bytes text, Request& request) {
  text = text.first(static_cast<std::size_t>(std::ranges::find(text, 0) - text.begin()));
  const auto bar = static_cast<std::size_t>(std::ranges::find(text, '|') - text.begin());
  request.linear = text.first(bar);
  request.component.reset();
  if (bar < text.size()) request.component = text.subspan(bar + 1);
}

Fault build(const Request& request, Symbol& symbol, Details* details) {
  switch (request.symbology) {
    case Symbology::databar:
    case Symbology::databar_truncated:
      return build_databar(request, symbol, details);
    case Symbology::databar_stacked:
    case Symbology::databar_stacked_omni:
      return build_databar_stacked(request, symbol, details);
    case Symbology::databar_limited:
      return build_databar_limited(request, symbol, details);
    case Symbology::databar_expanded:
      return build_databar_expanded(request, symbol, details);
    case Symbology::ean13:
    case Symbology::upca:
      return build_ean13(request, symbol, details);
    case Symbology::upce:
      return build_upce(request, symbol, details);
    case Symbology::ean8:
      return build_ean8(request, symbol, details);
    case Symbology::gs1_128:
    case Symbology::gs1_128_cc_c:
      return build_gs1_128(request, symbol, details);
  }
  return {};
}

}  // namespace korvex::composite
