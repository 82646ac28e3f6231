#include "qr/entry.hpp"

#include <array>
#include <new>
#include <optional>
#include <span>

#include "frame/raster.hpp"
#include "korvex/qr.hpp"
#include "qr/encode.hpp"
#include "qr/secret.hpp"
#include "qr/tables.hpp"

namespace korvex::qr {
namespace {

constexpr bool in_range(int value, int lowest, int highest) {
  return value >= lowest && value <= highest;
}

/// The checks of the record's numbers. The first one that fails decides, so their order is behaviour.
std::int16_t check_numbers(const QR_Params& params) {
  if (!in_range(params.ecc_level, 1, 4)) return KORVEX_BAD_PARAMETER;
  if (!in_range(params.rmqr_rows, 1, 6)) return KORVEX_BAD_PARAMETER;  // of every type, by old custom
  if (params.data_length < 1) return KORVEX_BAD_PARAMETER;
  if (!in_range(params.module_size, 1, 99)) return KORVEX_BAD_PARAMETER;
  if (!in_range(params.symbol_type, 1, 5)) return KORVEX_BAD_PARAMETER;
  if (!in_range(params.version, 0, 40)) return KORVEX_BAD_PARAMETER;
  const auto type = static_cast<SymbolType>(params.symbol_type - 1);
  if (params.version > version_count(type)) return KORVEX_BAD_PARAMETER;
  if (params.append_flag != 0) {
    if (!in_range(params.append_count, 1, 16)) return KORVEX_BAD_PARAMETER;
    if (!in_range(params.append_index, 1, params.append_count)) return KORVEX_BAD_PARAMETER;
    if (!in_range(params.append_parity, 0, 255)) return KORVEX_BAD_PARAMETER;
    if (type == SymbolType::gs1 || type == SymbolType::rmqr) return KORVEX_BAD_PARAMETER;
  }
  if (type == SymbolType::gs1 && params.fixed_mode_flag != 0) return KORVEX_GS1_FIXED_MODE;
  return KORVEX_OK;
}

Options read_options(const QR_Params& params) {
  Options options;
  options.dialect = Dialect::korvex32;
  options.type = static_cast<SymbolType>(params.symbol_type - 1);
  options.level = static_cast<Level>(params.ecc_level - 1);
  options.version = params.version;
  options.rmqr_rows = kRmqrRows[static_cast<std::size_t>(params.rmqr_rows - 1)];
  if (params.fixed_mode_flag != 0) {
    switch (params.fixed_mode) {
      case 1:
        options.mode = Mode::numeric;
        break;
      case 3:
        options.mode = Mode::kanji;
        break;
      case 4:
        options.mode = Mode::byte;
        break;
      default:
        options.mode = Mode::alphanumeric;
    }
  }
  if (params.append_flag != 0 && options.type != SymbolType::micro) {  // Micro QR is drawn without it
    options.append = StructuredAppend{params.append_index, params.append_count,
                                      static_cast<std::uint8_t>(params.append_parity)};
  }
  return options;
}

/// Translates GS1 data where it stands: "@1" becomes the separator GS, "@" before any other byte drops out,
/// so "@@" is "@". A last "@" with nothing after it stays. Returns the new length.
std::size_t translate_gs1(std::span<std::uint8_t> data) {
  constexpr std::uint8_t kSeparator = 0x1D;
  std::size_t length = 0;
  for (std::size_t at = 0; at < data.size(); ++at) {
    std::uint8_t byte = data[at];
    if (byte == '@' && at + 1 < data.size()) {
      byte = data[++at];
      if (byte == '1') byte = kSeparator;
    }
    data[length++] = byte;
  }
  return length;
}

std::optional<int> hexadecimal_digit(char digit) {
  if (in_range(digit, '0', '9')) return digit - '0';
  if (in_range(digit, 'A', 'F')) return digit - 'A' + 10;
  if (in_range(digit, 'a', 'f')) return digit - 'a' + 10;
  return std::nullopt;
}

bool read_key(const char (&digits)[16], std::array<std::uint8_t, 8>& key) {
  for (std::size_t i = 0; i < key.size(); ++i) {
    const auto high = hexadecimal_digit(digits[2 * i]);
    const auto low = hexadecimal_digit(digits[2 * i + 1]);
    if (!high || !low) return false;
    key[i] = static_cast<std::uint8_t>(*high * 16 + *low);
  }
  return true;
}

bool read_private_data(const QR_Params& params, Options& options) {
  PrivateData& data = options.private_data.emplace();
  if (options.type == SymbolType::micro || options.type == SymbolType::rmqr) return false;
  if (!read_key(params.private_key, data.key)) return false;
  if (params.private_data == nullptr || params.private_length < 1) return false;
  data.data = {params.private_data, static_cast<std::size_t>(params.private_length)};
  return true;
}

std::int16_t paint(Korvex_Device_Context device, const Symbol& symbol, const QR_Params& params,
                   Symbol_Size& size) {
  const int module = params.module_size;
  const std::int16_t result = raster::paint(device, symbol.modules, {module, module});
  if (result != KORVEX_OK) return result;
  size.width = static_cast<std::int16_t>(symbol.modules.columns() * module);
  size.height = static_cast<std::int16_t>(symbol.modules.rows() * module);
  return KORVEX_OK;
}

}  // namespace

// A null pointer fails where it would first be needed, so every code that is due before still comes.
std::int16_t entry(Korvex_Device_Context device, QR_Params* params, Symbol_Size* size) {
  if (params == nullptr) return KORVEX_BAD_PARAMETER;
  if (const std::int16_t code = check_numbers(*params); code != KORVEX_OK) return code;
  if (params->data == nullptr) return KORVEX_BAD_PARAMETER;

  std::span<std::uint8_t> data(params->data, static_cast<std::size_t>(params->data_length));
  if (params->symbol_type == 4) data = data.first(translate_gs1(data));
  OptionsWithKey with_key(read_options(*params));
  Options& options = with_key.options;
  if (params->private_flag != 0 && !read_private_data(*params, options)) return KORVEX_BAD_PARAMETER;

  Analysis analysis = Analysis::done;
  const Result<Symbol> symbol = encode(options, data, analysis);
  if (!symbol && analysis != Analysis::done) return KORVEX_BAD_PARAMETER;
  if (!symbol) {
    const auto code = static_cast<std::int16_t>(symbol.error().code);
    if (code == KORVEX_NO_SYMBOL) params->version_used = 0;
    return code;
  }
  if (size == nullptr) return KORVEX_BAD_PARAMETER;
  const std::int16_t painted = paint(device, *symbol, *params, *size);
  params->version_used = painted == KORVEX_OK ? static_cast<std::uint16_t>(symbol->version) : 0;
  return painted;
}

}  // namespace korvex::qr
