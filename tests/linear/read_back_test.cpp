// Symbols that common readers do not know are read from their bars, as their descriptions say.
#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include "linear/support.hpp"

namespace korvex::linear::test {
namespace {

/// Widths of bar, space, bar ... from the first bar to the last.
std::vector<int> runs(const std::string& bars) {
  std::vector<int> widths;
  for (std::size_t at = 0; at < bars.size();) {
    const std::size_t end = std::min(bars.find(bars[at] == '1' ? '0' : '1', at), bars.size());
    widths.push_back(static_cast<int>(end - at));
    at = end;
  }
  return widths;
}

/// Elements 'n' and 'w' of runs, which have two widths and no others.
std::string elements(const std::vector<int>& widths) {
  const auto [narrow, wide] = std::minmax_element(widths.begin(), widths.end());
  std::string text;
  for (const int width : widths) {
    EXPECT_TRUE(width == *narrow || width == *wide) << width << " modules";
    text += width == *wide ? 'w' : 'n';
  }
  return text;
}

/// Cuts off start and stop and the rest into characters of `count` elements, with a narrow gap around each.
std::vector<std::string> characters(const std::string& all, const std::string& start, const std::string& stop,
                                    std::size_t count) {
  EXPECT_EQ(all.substr(0, start.size() + 1), start + 'n');
  EXPECT_EQ(all.substr(all.size() - stop.size()), stop);
  std::vector<std::string> found;
  for (std::size_t at = start.size() + 1; at + stop.size() < all.size(); at += count + 1) {
    found.push_back(all.substr(at, count));
    EXPECT_EQ(all[at + count], 'n') << "gap";
  }
  return found;
}

/// The sum of the weights of the wide elements.
int wide_sum(const std::string& five, const std::array<int, 5>& weights) {
  int sum = 0;
  for (std::size_t i = 0; i < 5; ++i) sum += five[i] == 'w' ? weights[i] : 0;
  return sum;
}

char digit_of_sum(int sum) {
  return static_cast<char>('0' + (sum == 11 ? 0 : sum));
}

std::string read_industrial25(const std::string& bars) {
  std::string bars_only;
  const std::vector<int> widths = runs(bars);
  const std::string all = elements(widths);
  for (std::size_t i = 0; i < all.size(); ++i) {
    if (i % 2 == 0)
      bars_only += all[i];
    else
      EXPECT_EQ(all[i], 'n');  // every space is narrow
  }
  EXPECT_EQ(bars_only.substr(0, 3), "wwn");
  EXPECT_EQ(bars_only.substr(bars_only.size() - 3), "wnw");
  std::string data;
  for (std::size_t at = 3; at + 3 < bars_only.size(); at += 5) {
    data += digit_of_sum(wide_sum(bars_only.substr(at, 5), {1, 2, 4, 7, 0}));
  }
  return data;
}

std::string read_three_bar(const std::string& bars) {
  std::string data;
  for (const std::string& five : characters(elements(runs(bars)), "wnw", "nww", 5)) {
    data += digit_of_sum(wide_sum(five, {7, 4, 2, 1, 0}));
  }
  return data;
}

/// Each bit is three modules, a bar of one or two of them.
std::string read_msi(const std::string& bars) {
  const std::vector<int> widths = runs(bars);
  EXPECT_EQ((std::vector<int>{widths[0], widths[1]}), (std::vector<int>{2, 1}));
  EXPECT_EQ((std::vector<int>(widths.end() - 3, widths.end())), (std::vector<int>{1, 2, 1}));
  std::string data;
  for (std::size_t at = 2; at + 3 < widths.size(); at += 8) {
    int digit = 0;
    for (std::size_t bit = at; bit < at + 8; bit += 2) {
      EXPECT_EQ(widths[bit] + widths[bit + 1], 3);
      digit = 2 * digit + widths[bit] - 1;
    }
    data += static_cast<char>('0' + digit);
  }
  return data;
}

std::string read_code11(const std::string& bars) {
  const std::vector<std::string> patterns = {"nnnnw", "wnnnw", "nwnnw", "wwnnn", "nnwnw", "wnwnn",
                                             "nwwnn", "nnnww", "wnnwn", "wnnnn", "nnwnn"};
  std::string data;
  for (const std::string& five : characters(elements(runs(bars)), "nnwwn", "nnwwn", 5)) {
    const auto found = std::find(patterns.begin(), patterns.end(), five);
    data += found == patterns.end() ? '?' : "0123456789-"[found - patterns.begin()];
  }
  return data;
}

TEST(ReadBack, BarsOfRandomDataGiveTheDataAgain) {
  struct Case {
    const char* name;
    Symbology symbology;
    std::string (*read)(const std::string& bars);
    std::string alphabet;
    CheckCharacters check = CheckCharacters::none;
  };
  const std::string digits = "0123456789";
  const std::vector<Case> cases = {
      {"Industrial 2 of 5", Symbology::industrial25, read_industrial25, digits},
      {"three bars", Symbology::code25_3bar, read_three_bar, digits},
      {"three bars, checked", Symbology::code25_3bar, read_three_bar, digits, CheckCharacters::mod10},
      {"MSI", Symbology::msi, read_msi, digits},
      {"MSI, checked", Symbology::msi, read_msi, digits, CheckCharacters::mod10_mod10},
      {"Code 11", Symbology::code11, read_code11, digits + "-"},
      {"Code 11, checked", Symbology::code11, read_code11, digits + "-", CheckCharacters::two},
  };
  std::mt19937 random(25);
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    for (const std::size_t length : {1, 2, 3, 10, 47, 200}) {
      for (const Ratio ratio : {Ratio::two_to_one, Ratio::three_to_one, Ratio::five_to_two}) {
        std::string data;
        while (data.size() < length) data += c.alphabet[random() % c.alphabet.size()];
        const auto symbol = encode({.symbology = c.symbology, .ratio = ratio, .check = c.check}, data);
        ASSERT_TRUE(symbol) << symbol.error().message;
        EXPECT_EQ(c.read(as_text(symbol->bars)), symbol->text);
        EXPECT_TRUE(symbol->text.starts_with(data));
      }
    }
  }
}

}  // namespace
}  // namespace korvex::linear::test
