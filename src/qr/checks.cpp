#include "qr/checks.hpp"

#include <algorithm>

#include "core/shown.hpp"
#include "qr/encodation.hpp"

namespace korvex::qr {
namespace {

using std::to_string;

Error bad_parameter(std::string message) {
  return {Code::bad_parameter, std::move(message)};
}

}  // namespace

const char* type_name(SymbolType type) {
  switch (type) {
    case SymbolType::model1:
      return "QR Code Model 1";
    case SymbolType::model2:
      return "QR Code";
    case SymbolType::micro:
      return "Micro QR";
    case SymbolType::gs1:
      return "GS1 QR Code";
    default:
      return "rMQR";
  }
}

namespace {

const char* what_mode_packs(Mode mode) {
  switch (mode) {
    case Mode::numeric:
      return "numeric mode packs the digits 0-9.";
    case Mode::alphanumeric:
      return "alphanumeric mode packs 0-9, A-Z, the space and $ % * + - . / :.";
    default:
      return "Kanji mode packs Shift JIS characters of two bytes (0x8140-0x9FFC, 0xE040-0xEBBF).";
  }
}

std::optional<Error> find_unlisted(const Options& options) {
  const auto unlisted = [](const char* what) {
    return bad_parameter(std::string("The ") + what + " is not one of the list.");
  };
  if (options.type > SymbolType::rmqr) return unlisted("symbol type");
  if (options.level > Level::high) return unlisted("error correction level");
  if (options.mode && *options.mode > Mode::kanji) return unlisted("mode");
  if (options.dialect > Dialect::korvex32) return unlisted("dialect");
  return std::nullopt;
}

std::optional<Error> find_append_fault(const Options& options) {
  const StructuredAppend& append = *options.append;
  if (append.count < 1 || append.count > 16) {
    return bad_parameter("A structured-append series cannot have " + to_string(append.count) +
                         " symbols; it has 1 to 16.");
  }
  if (append.index < 1 || append.index > append.count) {
    return bad_parameter("Position " + to_string(append.index) + " is not in a series of " +
                         to_string(append.count) + "; positions run from 1 to " + to_string(append.count) +
                         ".");
  }
  if (options.type != SymbolType::model1 && options.type != SymbolType::model2) {
    return bad_parameter(std::string(type_name(options.type)) +
                         " has no structured append; Model 1 and Model 2 have it.");
  }
  return std::nullopt;
}

std::optional<Error> find_private_fault(const Options& options) {
  if (options.type == SymbolType::micro || options.type == SymbolType::rmqr) {
    return bad_parameter(std::string(type_name(options.type)) +
                         " cannot carry private data; Model 1, Model 2 and GS1 QR Code can.");
  }
  if (options.private_data->data.empty())
    return Error{Code::bad_data, "The private data is empty; it needs a byte or more."};
  return std::nullopt;
}

}  // namespace

std::optional<Error> find_fault(const Options& options, std::span<const std::uint8_t> data) {
  if (auto fault = find_unlisted(options)) return fault;
  if (data.empty()) return Error{Code::bad_data, "There is no data; a symbol needs a byte or more."};
  const int versions = version_count(options.type);
  if (options.version < 0 || options.version > versions) {
    return bad_parameter("Version " + to_string(options.version) + " is not one of " +
                         type_name(options.type) + "; there are 1 to " + to_string(versions) +
                         ", or 0 to choose.");
  }
  if (options.rmqr_rows != 0 && std::ranges::count(kRmqrRows, options.rmqr_rows) == 0) {
    return bad_parameter("rMQR has no symbol of " + to_string(options.rmqr_rows) +
                         " rows; there are 7, 9, 11, 13, 15, 17, or 0 to choose.");
  }
  if (options.append) {
    if (auto fault = find_append_fault(options)) return fault;
  }
  if (options.type == SymbolType::gs1 && options.mode) {
    return Error{Code::gs1_fixed_mode,
                 "GS1 QR Code chooses its modes itself; a fixed mode cannot be asked for."};
  }
  if (options.private_data) {
    if (auto fault = find_private_fault(options)) return fault;
  }
  if (options.mode && options.dialect == Dialect::standard) {
    for (const auto stream : {data, options.private_data ? options.private_data->data : data}) {
      if (const int at = first_unfit_byte(*options.mode, stream); at >= 0) {
        return Error{Code::bad_data, "The byte " + shown(stream[static_cast<std::size_t>(at)]) +
                                         " at position " + to_string(at + 1) +
                                         " does not suit the fixed mode; " + what_mode_packs(*options.mode)};
      }
    }
  }
  return std::nullopt;
}

}  // namespace korvex::qr
