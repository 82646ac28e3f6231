// From the codewords of a 2D component to its rows of modules.
#include "composite/component.hpp"
#include "pdf417/patterns.hpp"

namespace korvex::composite {
namespace {

using pdf417::kSymbolCharacterModules;

// ISO/IEC 15438: 8 1 1 1 1 1 1 3 and 7 1 1 3 1 1 1 2 1.
constexpr std::uint64_t kStartPattern = 0b11111111010101000;
constexpr std::uint64_t kStopPattern = 0b111111101000101001;
constexpr int kStopModules = kSymbolCharacterModules + 1;
constexpr int kCcCQuietModules = 2;
constexpr int kRowIndicators = 2;

/// Appends the parts of a row.
class RowPen {
 public:
  RowPen(Row& row, std::size_t cluster) : row_(row), characters_(pdf417::kSymbolCharacters[cluster]) {}

  void codeword(int value) {
    row_.put(characters_[static_cast<std::size_t>(value)].modules, kSymbolCharacterModules);
  }
  void side_address(int number) { address(pdf417::kSideRowAddresses, number); }
  void centre_address(int number) { address(pdf417::kCentreRowAddresses, number); }

 private:
  template <class Addresses>
  void address(const Addresses& addresses, int number) {
    const auto place = static_cast<std::size_t>(number) % pdf417::kRowAddresses;
    row_.put(addresses[place].modules, pdf417::kRowAddressModules);
  }

  Row& row_;
  const std::array<pdf417::Pattern, pdf417::kCodewords>& characters_;
};

/// Three columns: a CC-A has no left row address pattern.
bool has_left_address(const Component2d& component) {
  return component.columns != 3 || component.kind != Component::cc_a;
}

void put_cc_a_or_b_row(const Component2d& component, int index, std::span<const std::uint16_t> codewords,
                       Row& row) {
  const int address = (component.first_address + index) % static_cast<int>(pdf417::kRowAddresses);
  const int offset = component.address_offset;
  RowPen pen(row, static_cast<std::size_t>(address % 3));
  row.put_light(1);
  if (has_left_address(component)) pen.side_address(address);
  std::size_t column = 0;
  if (component.columns > 2) {
    for (; static_cast<int>(column) < component.columns - 2; ++column) pen.codeword(codewords[column]);
    pen.centre_address(address + offset);
  }
  pen.codeword(codewords[column]);
  pen.codeword(codewords[column + 1]);
  pen.side_address(address + (component.columns > 2 ? 2 * offset : offset));
  row.put(0b10, 2);
}

void put_cc_c_row(const Component2d& component, int index, std::span<const std::uint16_t> codewords,
                  Row& row) {
  const int cluster = index % 3;
  const int base = index / 3 * 30;
  int level = 2;  // 2 to 5 for 8 to 64 check codewords
  while (component.check_codewords > 2 << level) ++level;
  // ISO/IEC 15438: what the indicators of a row say, beside its number, goes round with the clusters.
  const int row_triples = (component.rows - 1) / 3;
  const int level_and_rows = level * 3 + (component.rows - 1) % 3;
  const int columns = component.columns - 1;
  const int left[] = {row_triples, level_and_rows, columns};
  const int right[] = {columns, row_triples, level_and_rows};

  RowPen pen(row, static_cast<std::size_t>(cluster));
  row.put_light(kCcCQuietModules);
  row.put(kStartPattern, kSymbolCharacterModules);
  pen.codeword(base + left[cluster]);
  for (const std::uint16_t codeword : codewords) pen.codeword(codeword);
  pen.codeword(base + right[cluster]);
  row.put(kStopPattern, kStopModules);
  row.put_light(kCcCQuietModules);
}

}  // namespace

int component_width(const Component2d& component) {
  const int codeword_modules = component.columns * kSymbolCharacterModules;
  if (component.kind == Component::cc_c) {
    return 2 * kCcCQuietModules + codeword_modules + (1 + kRowIndicators) * kSymbolCharacterModules +
           kStopModules;
  }
  const int addresses = 1 + (has_left_address(component) ? 1 : 0) + (component.columns > 2 ? 1 : 0);
  return 1 + codeword_modules + addresses * pdf417::kRowAddressModules + 2;
}

int component_row_height(const Component2d& component) {
  return component.kind == Component::cc_c ? 3 : 2;
}

void put_component_row(const Component2d& component, int index, Row& row) {
  const auto columns = static_cast<std::size_t>(component.columns);
  const std::span codewords = component.all().subspan(static_cast<std::size_t>(index) * columns, columns);
  if (component.kind == Component::cc_c) {
    put_cc_c_row(component, index, codewords, row);
  } else {
    put_cc_a_or_b_row(component, index, codewords, row);
  }
  row.finish();
}

}  // namespace korvex::composite
