// Words for sentences.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace korvex::cli {

/// "a, b and c", with `conjunction` before the last.
std::string joined(const std::vector<std::string_view>& words, std::string_view conjunction);

/// The words' one that is nearest to `word` by typing errors (a character wrong, missing, too many, or two
/// swapped); empty when none is near enough to have been meant.
std::string_view nearest(std::string_view word, const std::vector<std::string_view>& words);

/// 0 to 15; -1 when the character is no hexadecimal digit.
int hexadecimal_value(char digit);

/// A number with at most `decimals` digits after the point and no zeros at its end: "4", "0.33".
std::string decimal(double number, int decimals);

/// `bytes` as text for people: printable ASCII and whole UTF-8 characters as they are, any other byte as
/// \xhh.
std::string printable(std::string_view bytes);

/// Why a text is no JSON, from the words of the parser's exception, which have a number and a place in front.
std::string json_reason(std::string_view what);

}  // namespace korvex::cli
