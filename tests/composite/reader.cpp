// From the modules of a 2D component to its codewords and bits.
#include "composite/reader.hpp"

#include <cstdint>
#include <map>
#include <stdexcept>

#include "pdf417/patterns.hpp"

namespace korvex::composite::test {
namespace {

void demand(bool right, const std::string& what) {
  if (!right) throw std::runtime_error(what);
}

/// Widths of the runs of a row from its first to its last dark module.
std::vector<int> runs_of(const ModuleMatrix& modules, int row) {
  int first = 0;
  while (!modules.dark(row, first)) ++first;
  std::vector<int> runs;
  bool dark = false;
  for (int column = first; column < modules.columns(); ++column) {
    if (modules.dark(row, column) != dark) {
      dark = !dark;
      runs.push_back(0);
    }
    ++runs.back();
  }
  if (!dark) runs.pop_back();
  return runs;
}

/// Takes patterns off a row one by one.
class RowReader {
 public:
  explicit RowReader(std::vector<int> runs) : runs_(std::move(runs)) {}

  [[nodiscard]] std::size_t left() const { return runs_.size() - place_; }
  std::uint32_t widths(int elements) {
    demand(left() >= static_cast<std::size_t>(elements), "the row ends inside a pattern");
    std::uint32_t packed = 0;
    for (; elements > 0; --elements) packed = packed << 4 | static_cast<std::uint32_t>(runs_[place_++]);
    return packed;
  }
  /// A codeword; its cluster, computed from its bars (ISO/IEC 15438), must be `cluster`.
  int codeword(int cluster) {
    const auto bar = [this](std::size_t i) { return runs_.at(place_ + 2 * i); };
    demand((bar(0) - bar(1) + bar(2) - bar(3) + 9) % 9 == 3 * cluster,
           "a symbol character of another cluster");
    static const auto numbers = [] {
      std::map<std::uint32_t, int> all;
      for (const auto& characters : pdf417::kSymbolCharacters) {
        for (std::size_t i = 0; i < characters.size(); ++i) all[characters[i].widths] = static_cast<int>(i);
      }
      return all;
    }();
    const auto found = numbers.find(widths(8));
    demand(found != numbers.end(), "no symbol character");
    return found->second;
  }
  template <class Patterns>
  int address(const Patterns& patterns) {
    const std::uint32_t packed = widths(6);
    for (std::size_t i = 0; i < patterns.size(); ++i) {
      if (patterns[i].widths == packed) return static_cast<int>(i);
    }
    throw std::runtime_error("no row address pattern");
  }

 private:
  std::vector<int> runs_;
  std::size_t place_ = 0;
};

/// Check codewords by rows, of CC-A and of CC-B (ISO/IEC 24723, ISO/IEC 24728).
int check_codewords_of(int columns, int rows, Component& kind) {
  static const std::map<int, int> cc_a[] = {{{5, 4}, {6, 4}, {7, 5}, {8, 5}, {9, 6}, {10, 6}, {12, 7}},
                                            {{4, 4}, {5, 5}, {6, 6}, {7, 7}, {8, 7}},
                                            {{3, 4}, {4, 5}, {5, 6}, {6, 7}, {7, 8}}};
  static const std::map<int, int> cc_b[] = {
      {{17, 10}, {20, 11}, {23, 13}, {26, 15}},
      {{15, 21}, {20, 26}, {26, 32}, {32, 38}, {38, 44}, {44, 50}},
      {{10, 16}, {12, 18}, {15, 21}, {20, 26}, {26, 32}, {32, 38}, {38, 44}, {44, 50}}};
  const auto index = static_cast<std::size_t>(columns - 2);
  kind = cc_a[index].contains(rows) ? Component::cc_a : Component::cc_b;
  const auto& table = kind == Component::cc_a ? cc_a[index] : cc_b[index];
  demand(table.contains(rows), "no size has " + std::to_string(rows) + " rows");
  return table.at(rows);
}

/// Rows as those of MicroPDF417: the addresses go up by one, and the three of a row by one and the same
/// offset.
void read_cc_a_or_b(const Symbol& symbol, Reading& reading) {
  const std::size_t count = runs_of(symbol.modules, 0).size();
  const bool left = count != 37;  // three columns of a CC-A have none
  reading.columns = count == 29 ? 2 : count == 51 ? 4 : 3;
  demand(count == 29 || count == 37 || count == 43 || count == 51, "a row of an unknown number of elements");
  reading.check_codewords = check_codewords_of(reading.columns, reading.rows, reading.kind);
  demand(left || reading.kind == Component::cc_a, "a CC-B without left row address patterns");

  int last = -1;
  int last_offset = -1;
  for (int i = 0; i < reading.rows; ++i) {
    RowReader row(runs_of(symbol.modules, i));
    demand(row.left() == count, "rows of different numbers of elements");
    // The first pattern's number gives the cluster; without it that of the centre does, which is 32 ahead.
    int address = left ? row.address(pdf417::kSideRowAddresses) : -1;
    if (!left) {
      RowReader ahead = row;
      ahead.widths(8);
      address = (ahead.address(pdf417::kCentreRowAddresses) + 52 - 32) % 52;
    }
    const int cluster = address % 3;
    int centre = -1;
    for (int column = 0; column < reading.columns; ++column) {
      if (reading.columns > 2 && column == reading.columns - 2)
        centre = row.address(pdf417::kCentreRowAddresses);
      reading.codewords.push_back(row.codeword(cluster));
    }
    const int right = row.address(pdf417::kSideRowAddresses);
    demand(row.widths(1) == 1 && row.left() == 0, "the last bar is not one module wide");

    const int offset = ((centre < 0 ? right : centre) - address + 52) % 52;
    demand(centre < 0 || (centre + offset) % 52 == right, "row address patterns at different distances");
    demand(last < 0 || (address == (last + 1) % 52 && offset == last_offset),
           "row address patterns out of order");
    demand((offset == 32) == (reading.kind == Component::cc_a), "row address patterns of the other kind");
    if (last < 0) reading.first_address = address + 1;
    last = address;
    last_offset = offset;
  }
}

/// Rows as those of PDF417.
void read_cc_c(const Symbol& symbol, Reading& reading) {
  reading.kind = Component::cc_c;
  const std::size_t count = runs_of(symbol.modules, 0).size();
  reading.columns = (static_cast<int>(count) - 8 - 9) / 8 - 2;
  int indicated[3] = {-1, -1, -1};  // (rows - 1) / 3, level and the rest of the rows, columns - 1
  for (int i = 0; i < reading.rows; ++i) {
    RowReader row(runs_of(symbol.modules, i));
    demand(row.left() == count && count % 8 == 1, "rows of different numbers of elements");
    demand(row.widths(8) == 0x81111113, "no start pattern");
    const int left = row.codeword(i % 3);
    for (int column = 0; column < reading.columns; ++column) reading.codewords.push_back(row.codeword(i % 3));
    const int right = row.codeword(i % 3);
    demand(row.widths(8) == 0x71131112 && row.widths(1) == 1, "no stop pattern");
    demand(left / 30 == i / 3 && right / 30 == i / 3, "row indicators of another row");
    for (const auto& [which, value] : {std::pair{i % 3, left % 30}, std::pair{(i + 2) % 3, right % 30}}) {
      demand(indicated[which] < 0 || indicated[which] == value, "row indicators that contradict each other");
      indicated[which] = value;
    }
  }
  reading.check_codewords = 2 << (indicated[1] / 3);
  demand(3 * indicated[0] + indicated[1] % 3 + 1 == reading.rows, "row indicators of another number of rows");
  demand(indicated[2] + 1 == reading.columns, "row indicators of another number of columns");
  demand(reading.codewords[0] == static_cast<int>(reading.codewords.size()) - reading.check_codewords,
         "a wrong symbol length descriptor");
}

void demand_zero_syndromes(const Reading& reading) {
  int root = 1;
  for (int i = 0; i < reading.check_codewords; ++i) {
    root = root * 3 % 929;
    int value = 0;
    for (const int codeword : reading.codewords) value = (value * root + codeword) % 929;
    demand(value == 0, "syndrome " + std::to_string(i + 1) + " is not zero");
  }
}

/// Appends the number whose digits in base `base` are the codewords at `first`, as `bits` bits.
void append_number(const std::vector<int>& codewords, std::size_t first, std::size_t count, int base,
                   int bits, std::string& text) {
  std::string number(static_cast<std::size_t>(bits), '0');
  for (std::size_t i = first; i < first + count; ++i) {
    int carry = codewords[i];  // number = number * base + codeword, in binary on paper
    for (std::size_t bit = number.size(); bit-- > 0; carry /= 2) {
      carry += number[bit] == '1' ? base : 0;
      number[bit] = carry % 2 == 1 ? '1' : '0';
    }
    demand(carry == 0, "codewords that stand for a number too large");
  }
  text += number;
}

std::string bits_of(const Reading& reading) {
  const std::vector<int> data(reading.codewords.begin(), reading.codewords.end() - reading.check_codewords);
  std::string bits;
  if (reading.kind == Component::cc_a) {
    for (std::size_t first = 0; first < data.size(); first += 7) {
      const std::size_t count = std::min<std::size_t>(7, data.size() - first);
      append_number(data, first, count, 928, 10 * static_cast<int>(count) - 1, bits);
    }
    return bits;
  }
  std::size_t first = reading.kind == Component::cc_c ? 1 : 0;
  demand(data[first] == 920, "codeword 920 is not there");
  demand(data[first + 1] == 901 || data[first + 1] == 924, "no latch to byte compaction");
  const bool sixes = data[first + 1] == 924;
  first += 2;
  for (; data.size() - first > (sixes ? 0 : 5); first += 5) append_number(data, first, 5, 900, 48, bits);
  for (; first < data.size(); ++first) append_number(data, first, 1, 900, 8, bits);
  return bits;
}

}  // namespace

Reading read_component(const Symbol& symbol) {
  Reading reading;
  reading.rows = symbol.component_rows;
  // The start pattern of PDF417 is wider than any first element of the others.
  if (runs_of(symbol.modules, 0)[0] == 8) {
    read_cc_c(symbol, reading);
  } else {
    read_cc_a_or_b(symbol, reading);
  }
  demand_zero_syndromes(reading);
  reading.bits = bits_of(reading);
  reading.text = read_element_string(reading.bits);
  return reading;
}

}  // namespace korvex::composite::test
