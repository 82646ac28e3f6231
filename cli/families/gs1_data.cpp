#include "families/gs1_data.hpp"

namespace korvex::cli::families {
namespace {

constexpr std::string_view kStrict = "strict";
constexpr std::string_view kLenient = "lenient";

}  // namespace

Option gs1_option(std::string_view help) {
  return {"--gs1", "", help, {kStrict, kLenient}, "", kStrict};
}

Option gs1_checking_option() {
  return {"--gs1",
          "",
          "refuse element strings that break the rules of GS1, or draw them with a warning",
          {kStrict, kLenient},
          kStrict,
          kStrict};
}

gs1::Checking gs1_checking(const OptionValues& values) {
  return values.text(gs1_option({})) == kLenient ? gs1::Checking::lenient : gs1::Checking::strict;
}

bool has_gs1(const OptionValues& values) {
  return values.flag(gs1_option({}));
}

std::vector<std::string> gs1_warnings(std::string_view text, gs1::Checking checking) {
  if (checking == gs1::Checking::strict) return {};  // there would be no drawing
  return gs1::parse(text, checking).value().warnings;
}

}  // namespace korvex::cli::families
