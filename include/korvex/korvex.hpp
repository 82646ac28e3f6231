// Everything of the C++ interface.
#pragma once

#include "korvex/linear.hpp"
#include "korvex/maxicode.hpp"
#include "korvex/module_matrix.hpp"
#include "korvex/qr.hpp"
#include "korvex/result.hpp"
#include "korvex/veri.hpp"
