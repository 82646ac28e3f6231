// The symbologies, each in two steps.
//
// read_... turns the data into symbol character values, or says why it cannot. construct_... adds the
// check characters that the request's rules ask for and draws all; it needs values that were read.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "linear/patterns.hpp"
#include "linear/request.hpp"

namespace korvex::linear {

// codabar.cpp
Fault read_codabar(const Request& request, Values& values);
void construct_codabar(const Request& request, Drawing& drawing);
inline constexpr std::string_view kCodabarCharacters = "0123456789ABCD.+:/$- ";  // by value
inline constexpr ValueTable kCodabarValues = [] {
  ValueTable table = value_table(kCodabarCharacters);
  // The start and stop characters have second names, and both come in lower case; * has none.
  for (const char* names : {"AATat", "BBNbn", "CC*cc", "DDEde"}) {
    const std::uint8_t value = table[static_cast<std::uint8_t>(names[0])];
    for (const char* name = names; *name != '\0'; ++name) table[static_cast<std::uint8_t>(*name)] = value;
  }
  return table;
}();

// code39.cpp
Fault read_code39(const Request& request, Values& values);
void construct_code39(const Request& request, Drawing& drawing);
inline constexpr std::string_view kCode39Characters =
    "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ-. $/+%*";  // by value

// two_of_five.cpp
Fault read_digits(const Request& request, Values& values);
Fault read_itf(const Request& request, Values& values);
void construct_itf(const Request& request, Drawing& drawing);
void construct_industrial25(const Request& request, Drawing& drawing);
void construct_code25_3bar(const Request& request, Drawing& drawing);

// msi.cpp
Fault read_msi(const Request& request, Values& values);
void construct_msi(const Request& request, Drawing& drawing);

// code11.cpp
Fault read_code11(const Request& request, Values& values);
void construct_code11(const Request& request, Drawing& drawing);
inline constexpr std::string_view kCode11Characters = "0123456789-";  // by value

// code93.cpp
Fault read_code93(const Request& request, Values& values);
void construct_code93(const Request& request, Drawing& drawing);

// code128_syntax.cpp, code128_automatic.cpp: values from the start character on
Fault read_code128_inband(const Request& request, Values& values);
Fault read_code128_segments(const Request& request, Values& values);
Fault read_code128_automatic(const Request& request, Values& values);
// code128.cpp
Fault read_sscc18(const Request& request, Values& values);
void construct_code128(const Request& request, Drawing& drawing);

// ean_upc.cpp: values are the digits of the symbol; of UPC-E the six that are drawn
Fault read_ean13(const Request& request, Values& values);
Fault read_upca(const Request& request, Values& values);
Fault read_ean8(const Request& request, Values& values);
Fault read_upce(const Request& request, Values& values);
Fault read_addon(const Request& request, Values& values);
void construct_ean13(const Request& request, Drawing& drawing);
void construct_ean8(const Request& request, Drawing& drawing);
void construct_upce(const Request& request, Drawing& drawing);
void construct_addon(const Request& request, Drawing& drawing);
/// The check digit of the UPC-A number that six UPC-E digits stand for.
int upce_check_digit(std::span<const Value> six_digits);

}  // namespace korvex::linear
