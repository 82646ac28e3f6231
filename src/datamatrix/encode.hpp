// The Data Matrix encoder: from a request to the modules of its symbol.
#pragma once

#include <cstdint>
#include <span>

#include "datamatrix/plan.hpp"
#include "datamatrix/request.hpp"
#include "korvex/module_matrix.hpp"

namespace korvex::datamatrix {

struct Drawing {
  ModuleMatrix modules;
  Plan plan;
  int pad_codewords = 0;
};

/// Encodes `data`, at most kMaxDataBytes. After a fault `drawing` holds nothing of use.
Fault draw(const Options& options, std::span<const std::uint8_t> data, Drawing& drawing);

}  // namespace korvex::datamatrix
