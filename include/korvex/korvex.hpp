// Everything of the C++ interface.
#pragma once

#include "korvex/datamatrix.hpp"
#include "korvex/linear.hpp"
#include "korvex/module_matrix.hpp"
#include "korvex/result.hpp"
