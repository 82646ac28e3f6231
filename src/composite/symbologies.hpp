// The linear components, each with the symbol that it makes.
#pragma once

#include "composite/component.hpp"
#include "composite/request.hpp"

namespace korvex::composite {

/// Each checks its text, encodes both components and lays the rows of the symbol one under another. Where
/// `details` is not null, it gets what the linear component says.
Fault build_databar(const Request& request, Symbol& symbol, Details* details);
Fault build_databar_stacked(const Request& request, Symbol& symbol, Details* details);
Fault build_databar_limited(const Request& request, Symbol& symbol, Details* details);
Fault build_databar_expanded(const Request& request, Symbol& symbol, Details* details);
Fault build_ean13(const Request& request, Symbol& symbol, Details* details);
Fault build_upce(const Request& request, Symbol& symbol, Details* details);
Fault build_ean8(const Request& request, Symbol& symbol, Details* details);
Fault build_gs1_128(const Request& request, Symbol& symbol, Details* details);

/// The one that the request's symbology asks for.
Fault build(const Request& request, Symbol& symbol, Details* details);

}  // namespace korvex::composite
