// Everything of the C++ interface.
#pragma once

#include "korvex/composite.hpp"
#include "korvex/datamatrix.hpp"
#include "korvex/gs1.hpp"
#include "korvex/linear.hpp"
#include "korvex/maxicode.hpp"
#include "korvex/module_matrix.hpp"
#include "korvex/pdf417.hpp"
#include "korvex/qr.hpp"
#include "korvex/result.hpp"
#include "korvex/veri.hpp"
