#include <algorithm>
#include <climits>

#include "core/element_string.hpp"
#include "qr/checks.hpp"
#include "qr/encodation.hpp"
#include "qr/error_correction.hpp"
#include "qr/masking.hpp"

namespace korvex::qr {
namespace {

Error no_version_holds(const Options& options, int smallest) {
  const std::string level = {"LMQH"[static_cast<int>(options.level)]};
  if (options.version == 0) {
    return {Code::no_symbol, "No version holds the data at level " + level +
                                 "; give less data, a lower level or a symbol type that has the level."};
  }
  const std::string name = version_name(options.type, options.version);
  if (smallest == 0) return {Code::no_symbol, "No version holds the data at level " + level + "."};
  return {Code::no_symbol, "Version " + name + " does not hold the data at level " + level +
                               "; the smallest that does is " + version_name(options.type, smallest) + "."};
}

/// Splits `data` into the segments of `stream`.
std::optional<Error> analyse(const Options& options, std::span<const std::uint8_t> data, Stream& stream) {
  stream.data = data;
  switch (analyse(options, data, stream.segments)) {
    case Analysis::too_many_characters:
      return Error{Code::bad_parameter, "The data has more than " + std::to_string(kMostCharacters) +
                                            " characters, the most that the encoder takes."};
    case Analysis::too_many_segments:
      return Error{Code::bad_parameter, "The data needs more than " + std::to_string(kMostSegments) +
                                            " segments, the most that the encoder takes."};
    case Analysis::done:
      break;
  }
  stream.size = stream_size(options, stream.segments.all(), data);
  return std::nullopt;
}

/// The version to draw. One that is asked for must be at least the smallest that holds everything.
Result<int> choose_version(const Options& options, const Stream& public_stream,
                           const Stream* private_stream) {
  const StreamSize* const private_size = private_stream == nullptr ? nullptr : &private_stream->size;
  // A requested rMQR version decides the height, whatever rows were given for the segmentation.
  const bool height_by_version = options.type == SymbolType::rmqr && options.version != 0;
  const VersionRange range = height_by_version ? rmqr_versions(row_count(options.type, options.version))
                                               : automatic_versions(options);
  const int smallest = smallest_version(options, range, public_stream.size, private_size);
  if (smallest == 0 || (options.version != 0 && options.version < smallest)) {
    return no_version_holds(options, smallest);
  }
  // A larger version can have longer count indicators.
  if (options.version > smallest && !holds(options, options.version, public_stream.size, private_size)) {
    return no_version_holds(options, smallest);
  }
  return options.version == 0 ? smallest : options.version;
}

Result<Symbol> encode_checked(const Options& options, std::span<const std::uint8_t> data) {
  Stream public_stream;
  Stream private_stream;
  const Stream* const private_or_none = options.private_data ? &private_stream : nullptr;
  if (auto error = analyse(options, data, public_stream)) return *std::move(error);
  if (options.private_data) {
    if (auto error = analyse(options, options.private_data->data, private_stream)) return *std::move(error);
  }
  const Result<int> version = choose_version(options, public_stream, private_or_none);
  if (!version) return version.error();

  CodewordBuffer data_codewords;
  CodewordBuffer sequence;
  write_data_codewords(options, *version, public_stream, private_or_none, data_codewords);
  write_sequence(options.type, *version, options.level, options.dialect, data_codewords, sequence);

  Canvas canvas;
  draw_function_patterns(options.type, *version, canvas);
  place_codewords(sequence, canvas);
  MaskedSymbol masked = best_masked(canvas, options.level);

  const auto segments = public_stream.segments.all();
  return Symbol{.modules = std::move(masked.modules),
                .type = options.type,
                .level = options.level,
                .version = *version,
                .mask = masked.mask,
                .segments = {segments.begin(), segments.end()}};
}

/// The rMQR symbol of the fewest modules that holds the data.
Result<Symbol> smallest_rmqr(Options options, std::span<const std::uint8_t> data) {
  int fewest_modules = INT_MAX;
  std::optional<Result<Symbol>> best;
  for (const int rows : kRmqrRows) {
    options.rmqr_rows = rows;
    Result<Symbol> symbol = encode_checked(options, data);
    const int modules = symbol ? symbol->modules.rows() * symbol->modules.columns() : INT_MAX;
    if (best && modules >= fewest_modules) continue;
    fewest_modules = modules;
    best = std::move(symbol);
  }
  return *std::move(best);
}

}  // namespace

Result<Symbol> encode(const Options& options, std::span<const std::uint8_t> data) {
  if (auto fault = find_fault(options, data)) return *std::move(fault);
  if (options.type == SymbolType::gs1 && options.dialect == Dialect::standard) {
    const Result<std::string> plain = plain_element_string(data, options.gs1_checking);
    if (!plain) return plain.error();
    return encode_checked(options, {reinterpret_cast<const std::uint8_t*>(plain->data()), plain->size()});
  }
  if (options.type != SymbolType::rmqr) return encode_checked(options, data);
  if (options.rmqr_rows != 0) return encode_checked(options, data);
  if (options.version == 0) return smallest_rmqr(options, data);
  Options with_rows = options;
  with_rows.rmqr_rows = row_count(options.type, options.version);
  return encode_checked(with_rows, data);
}

Result<Symbol> encode(const Options& options, std::string_view data) {
  return encode(options, std::span(reinterpret_cast<const std::uint8_t*>(data.data()), data.size()));
}

}  // namespace korvex::qr
