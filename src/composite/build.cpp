// The composite encoder: from a request to the rows of a symbol.
#include <algorithm>
#include <string_view>

#include "composite/symbologies.hpp"

namespace korvex::composite {

void split_text(Bytes text, Request& request) {
  const std::string_view characters(reinterpret_cast<const char*>(text.data()), text.size());
  if (!request.standard()) text = text.first(std::min(characters.find('\0'), text.size()));
  const std::size_t bar = std::min(characters.find('|'), text.size());
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
