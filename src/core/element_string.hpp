// Element strings in all the forms in which people write them (GS1 General Specifications).
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "korvex/gs1.hpp"
#include "korvex/result.hpp"

namespace korvex {

/// A text that somebody gave, and what to call it in a sentence.
struct Gs1Text {
  std::string_view text;
  std::string_view name = "data";
};

/// How it is read, and what the plain form is like.
struct Gs1Reading {
  gs1::Checking checking = gs1::Checking::strict;
  char separator = gs1::kSeparator;        ///< in the plain form
  bool separator_is_no_data = false;       ///< data that have the separator as a character are refused
  gs1::ElementString* findings = nullptr;  ///< its elements and warnings are appended to when it is there
};

/// Appends the plain form of `text`, read as gs1::parse() says, to `plain`. Returns what is wrong with it.
std::optional<Error> append_plain(const Gs1Text& text, const Gs1Reading& reading, std::string& plain);

/// Bytes of an encoder's caller in the plain form, with gs1::kSeparator for FNC1.
Result<std::string> plain_element_string(std::span<const std::uint8_t> data, gs1::Checking checking);

}  // namespace korvex
