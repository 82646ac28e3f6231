// From the text of a 2D component to its codewords.
#include "composite/component.hpp"

#include <algorithm>
#include <array>
#include <string_view>

#include "composite/component_sizes.hpp"
#include "composite/error_correction.hpp"

namespace korvex::composite {
namespace {

constexpr std::uint16_t kCompositeFlag = 920;   // the codewords of a CC-B and of a CC-C begin with it
constexpr std::uint16_t kByteLatch = 901;       // any number of bytes
constexpr std::uint16_t kByteLatchSixes = 924;  // a multiple of six
constexpr int kBase928Bits = 69;                // as many as seven codewords hold

/// Appends codewords to a component.
class CodewordWriter {
 public:
  explicit CodewordWriter(Component2d& component) : component_(component) {}

  void put(unsigned codeword) { *place(1) = static_cast<std::uint16_t>(codeword); }
  /// Appends `count` digits of `value` in base `base`, the most significant first.
  void put_digits(std::uint64_t value, unsigned base, int count) {
    std::uint16_t* const digits = place(count);
    for (int i = count - 1; i >= 0; --i) {
      digits[i] = static_cast<std::uint16_t>(value % base);
      value /= base;
    }
  }

 private:
  std::uint16_t* place(int count) {
    std::uint16_t* const first = component_.codewords.data() + component_.codeword_count;
    component_.codeword_count += count;
    return first;
  }
  Component2d& component_;
};

/// `count` bits from bit `first` on. Requires 0 <= count <= 57.
std::uint64_t bits_at(std::span<const std::uint8_t> bytes, int first, int count) {
  if (count == 0) return 0;
  std::uint64_t value = 0;
  const int last = first + count - 1;
  for (int byte = first / 8; byte <= last / 8; ++byte)
    value = value << 8 | bytes[static_cast<std::size_t>(byte)];
  return value >> (7 - last % 8) & ((std::uint64_t{1} << count) - 1);
}

/// CC-A: groups of 69 bits, the last one shorter, as numbers of base 928.
void put_base_928(std::span<const std::uint8_t> bytes, int bit_count, CodewordWriter& codewords) {
  for (int first = 0; first < bit_count; first += kBase928Bits) {
    // A group is longer than 64 bits: it is divided in two parts, as on paper.
    const int group_bits = std::min(kBase928Bits, bit_count - first);
    const int low_bits = std::min(group_bits, 32);
    std::uint64_t high = bits_at(bytes, first, group_bits - low_bits);
    std::uint64_t low = bits_at(bytes, first + group_bits - low_bits, low_bits);
    const int digit_count = group_bits / 10 + 1;
    std::array<std::uint16_t, kBase928Bits / 10 + 1> digits;
    for (int i = digit_count - 1; i >= 0; --i) {
      const std::uint64_t carried = high % 928 << 32 | low;
      high /= 928;
      low = carried / 928;
      digits[static_cast<std::size_t>(i)] = static_cast<std::uint16_t>(carried % 928);
    }
    for (int i = 0; i < digit_count; ++i) codewords.put(digits[static_cast<std::size_t>(i)]);
  }
}

/// CC-B and CC-C: six bytes in five codewords, those left over one by one (ISO/IEC 15438, byte compaction).
void put_byte_compaction(std::span<const std::uint8_t> bytes, CodewordWriter& codewords) {
  codewords.put(bytes.size() % 6 == 0 ? kByteLatchSixes : kByteLatch);
  for (; bytes.size() >= 6; bytes = bytes.subspan(6)) {
    codewords.put_digits(bits_at(bytes, 0, 48), 900, 5);
  }
  for (const std::uint8_t byte : bytes) codewords.put(byte);
}

std::string_view name_of(Method method) {
  switch (method) {
    case Method::general:
      return "general";
    case Method::date:
      return "date";
    case Method::batch:
      return "batch";
    case Method::ai_90:
      return "AI 90";
  }
  return {};
}

/// Encodes the text, method field first, to the bits of the size that it needs.
Fault compact(const Request& request, ElementText& text, Compaction& compaction, Details* details) {
  Method method = Method::general;
  if (const Fault fault = put_method_field(request.dialect, text, compaction, method)) return fault;
  if (!compaction.finish()) return {Reason::component_too_long};
  if (details != nullptr) {
    details->component_method = name_of(method);
    details->component_bits = compaction.data_bits();
  }
  return {};
}

Fault check_text(Bytes text) {
  if (const int position = find_bad_character(text)) {
    return {Reason::bad_component_character, position, text[static_cast<std::size_t>(position - 1)]};
  }
  return {};
}

void append_check_codewords(Component2d& component, Details* details) {
  const std::span all(component.codewords);
  const auto data_count = static_cast<std::size_t>(component.codeword_count);
  const auto check_count = static_cast<std::size_t>(component.check_codewords);
  put_check_codewords(all.first(data_count), all.subspan(data_count, check_count));
  component.codeword_count += component.check_codewords;
  if (details != nullptr) {
    details->codewords.assign(component.all().begin(), component.all().end());
    details->check_codewords = component.check_codewords;
  }
}

}  // namespace

Fault encode_cc_a_or_b(const Request& request, int columns, Component2d& component, Details* details) {
  if (!request.component) return {};
  if (const Fault fault = check_text(*request.component)) return fault;
  ElementText text(*request.component);
  CcAOrBSizing sizing(columns);
  Compaction compaction(text, sizing, kMostBits);
  if (const Fault fault = compact(request, text, compaction, details)) return fault;

  const ComponentSize& size = sizing.size();
  component.kind = size.kind;
  component.columns = columns;
  component.rows = size.rows;
  component.check_codewords = size.check_codewords;
  component.first_address = size.first_address - 1;
  component.address_offset = size.address_offset;
  CodewordWriter codewords(component);
  if (size.kind == Component::cc_a) {
    put_base_928(compaction.bytes(), size.capacity_bits, codewords);
  } else {
    codewords.put(kCompositeFlag);
    put_byte_compaction(compaction.bytes(), codewords);
  }
  append_check_codewords(component, details);
  return {};
}

Fault encode_cc_c(const Request& request, int columns, Component2d& component, Details* details) {
  if (const Fault fault = check_text(*request.component)) return fault;
  ElementText text(*request.component);
  CcCSizing sizing(columns, request.dialect);
  Compaction compaction(text, sizing, kMostCcCBits);
  if (const Fault fault = compact(request, text, compaction, details)) return fault;

  component.kind = Component::cc_c;
  component.columns = sizing.columns();
  component.rows = sizing.rows();
  component.check_codewords = sizing.check_codewords();
  CodewordWriter codewords(component);
  const int length = component.columns * component.rows - component.check_codewords;
  codewords.put(static_cast<unsigned>(length));  // the symbol length descriptor
  codewords.put(kCompositeFlag);
  put_byte_compaction(compaction.bytes(), codewords);
  append_check_codewords(component, details);
  return {};
}

}  // namespace korvex::composite
