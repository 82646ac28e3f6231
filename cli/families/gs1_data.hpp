// What the command asks of symbologies that carry GS1 data.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "korvex/gs1.hpp"
#include "options.hpp"

namespace korvex::cli::families {

/// --gs1 of symbologies that carry GS1 data when it is given.
Option gs1_option(std::string_view help);
/// --gs1 of those that always do.
Option gs1_checking_option();

/// What either says; strict when it says nothing.
gs1::Checking gs1_checking(const OptionValues& values);
bool has_gs1(const OptionValues& values);

/// What is wrong with element strings that were drawn all the same.
std::vector<std::string> gs1_warnings(std::string_view text, gs1::Checking checking);

}  // namespace korvex::cli::families
