#include "qr/encode.hpp"

#include <climits>
#include <memory>

#include "core/element_string.hpp"
#include "qr/checks.hpp"
#include "qr/encodation.hpp"
#include "qr/error_correction.hpp"
#include "qr/faults.hpp"
#include "qr/masking.hpp"

namespace korvex::qr {
namespace {

/// Splits `data` into the segments of `stream`.
Analysis analyse(const Options& options, std::span<const std::uint8_t> data, Stream& stream) {
  stream.data = data;
  const Analysis analysis = analyse(options, data, stream.segments);
  if (analysis == Analysis::done) stream.size = stream_size(options, stream.segments.all(), data);
  return analysis;
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
    return too_long(options, public_stream.data, smallest);
  }
  // A larger version can have longer count indicators.
  if (options.version > smallest && !holds(options, options.version, public_stream.size, private_size)) {
    return too_long(options, public_stream.data, smallest);
  }
  return options.version == 0 ? smallest : options.version;
}

/// What is worked on between data and symbol, too large for a stack. Nothing of it is cleared.
struct Work {
  Stream public_stream;
  Stream private_stream;
  CodewordBuffer data_codewords;
  CodewordBuffer sequence;
  Canvas canvas;
};

Result<Symbol> encode_checked(const Options& options, std::span<const std::uint8_t> data,
                              Analysis& analysis) {
  const auto work = std::make_unique_for_overwrite<Work>();
  auto& [public_stream, private_stream, data_codewords, sequence, canvas] = *work;
  const Stream* const private_or_none = options.private_data ? &private_stream : nullptr;
  analysis = analyse(options, data, public_stream);
  if (analysis == Analysis::done && options.private_data) {
    analysis = analyse(options, options.private_data->data, private_stream);
  }
  if (analysis == Analysis::too_many_characters) return too_long(options, data, 0);
  if (analysis == Analysis::too_many_segments) return too_many_segments(options);
  const Result<int> version = choose_version(options, public_stream, private_or_none);
  if (!version) return version.error();

  write_data_codewords(options, *version, public_stream, private_or_none, data_codewords);
  write_sequence(options.type, *version, options.level, data_codewords, sequence);

  draw_function_patterns(options.type, *version, canvas);
  place_codewords(sequence, canvas);
  MaskedSymbol masked = best_masked(canvas, options.level, options.dialect);

  const auto segments = public_stream.segments.all();
  return Symbol{.modules = std::move(masked.modules),
                .type = options.type,
                .level = options.level,
                .version = *version,
                .mask = masked.mask,
                .segments = {segments.begin(), segments.end()}};
}

/// The rMQR symbol of the fewest modules that holds the data.
Result<Symbol> smallest_rmqr(Options options, std::span<const std::uint8_t> data, Analysis& analysis) {
  int fewest_modules = INT_MAX;
  std::optional<Result<Symbol>> best;
  for (const int rows : kRmqrRows) {
    options.rmqr_rows = rows;
    Result<Symbol> symbol = encode_checked(options, data, analysis);
    const int modules = symbol ? symbol->modules.rows() * symbol->modules.columns() : INT_MAX;
    // When none holds the data the last one, the highest, says how much it does.
    if (best && *best && modules >= fewest_modules) continue;
    fewest_modules = modules;
    best = std::move(symbol);
  }
  return *std::move(best);
}

}  // namespace

Result<Symbol> encode(const Options& options, std::span<const std::uint8_t> data, Analysis& analysis) {
  if (auto fault = find_fault(options, data)) return *std::move(fault);
  if (options.type == SymbolType::gs1 && options.dialect == Dialect::standard) {
    const Result<std::string> plain = plain_element_string(data, options.gs1_checking);
    if (!plain) return plain.error();
    const std::span bytes(reinterpret_cast<const std::uint8_t*>(plain->data()), plain->size());
    return encode_checked(options, bytes, analysis);
  }
  if (options.type != SymbolType::rmqr) return encode_checked(options, data, analysis);
  if (options.rmqr_rows != 0) return encode_checked(options, data, analysis);
  if (options.version == 0) return smallest_rmqr(options, data, analysis);
  Options with_rows = options;
  with_rows.rmqr_rows = row_count(options.type, options.version);
  return encode_checked(with_rows, data, analysis);
}

Result<Symbol> encode(const Options& options, std::span<const std::uint8_t> data) {
  Analysis analysis = Analysis::done;
  return encode(options, data, analysis);
}

Result<Symbol> encode(const Options& options, std::string_view data) {
  return encode(options, std::span(reinterpret_cast<const std::uint8_t*>(data.data()), data.size()));
}

}  // namespace korvex::qr
