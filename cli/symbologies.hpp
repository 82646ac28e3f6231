// Every symbology that the command draws. A family is one file in families/ and one line in symbologies.cpp.
#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "korvex/result.hpp"
#include "measure.hpp"
#include "options.hpp"
#include "picture.hpp"

namespace korvex::cli {

/// What a family is asked to draw.
struct DrawRequest {
  std::string data;
  bool is_bytes = false;  ///< the data was given as bytes, not as text
  OptionValues options;   ///< of the symbology's own options
  ModuleSize module;      ///< for lengths given in millimetres
};

/// What came of it.
struct Drawing {
  std::vector<Picture> pictures;        ///< one; several when the data is split over a series of symbols
  std::vector<std::string> notes;       ///< what was chosen, for --verbose
  std::vector<std::string> warnings{};  ///< sentences on data that were drawn though they are wrong
};

/// Data, and the options that go with it, for a first picture.
struct Example {
  std::string_view data;
  std::vector<std::string_view> options{};
};

/// How large a module is drawn when nobody says it.
struct UsualModule {
  int pixels;
  double millimetres;
};

struct Symbology {
  std::string_view name;      ///< what people type
  std::string_view title;     ///< what the standard calls it
  std::string_view standard;  ///< where it is defined
  std::string_view takes;     ///< the data, in a phrase
  Example example;
  std::vector<Option> options;
  /// Throws UsageError for option values that make no sense.
  std::function<Result<Drawing>(const DrawRequest&)> draw;
  std::optional<UsualModule> usual_module{};  ///< of symbols whose size the standard fixes
};

/// All of them, family by family.
std::span<const Symbology> symbologies();

/// Throws UsageError, with the nearest name, when there is none of that name.
const Symbology& find_symbology(std::string_view name);

}  // namespace korvex::cli
