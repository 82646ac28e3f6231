#include "qr/faults.hpp"

#include <algorithm>

#include "qr/checks.hpp"
#include "qr/segmentation.hpp"

namespace korvex::qr {
namespace {

using std::to_string;

/// Characters of `data`, a Kanji one counting one.
int character_count(const Options& options, std::span<const std::uint8_t> data) {
  if (options.mode && *options.mode != Mode::kanji) return static_cast<int>(data.size());
  int count = 0;
  for (std::size_t at = 0; at < data.size(); ++count) {
    at += static_cast<std::size_t>(character_bytes(data.subspan(at)));
  }
  return count;
}

/// The most characters that fit `bits` of payload in one mode.
int most_characters(Mode mode, int bits) {
  switch (mode) {
    case Mode::numeric:
      return bits / 10 * 3 + (bits % 10 >= 7 ? 2 : bits % 10 >= 4 ? 1 : 0);
    case Mode::alphanumeric:
      return bits / 11 * 2 + (bits % 11 >= 6 ? 1 : 0);
    case Mode::byte:
      return bits / 8;
    default:
      return bits / 13;
  }
}

/// "5596 digits, 3391 capitals and digits, 2331 bytes or 1435 Kanji": what a version holds in one segment.
std::string what_fits(const Options& options, int version) {
  constexpr std::array kNames = {"digits", "capitals and digits", "bytes", "Kanji"};
  std::string list;
  std::string last;
  for (const Mode mode : {Mode::numeric, Mode::alphanumeric, Mode::byte, Mode::kanji}) {
    if (!has_mode(options.type, version, mode) || (options.mode && mode != *options.mode)) continue;
    const auto index = static_cast<std::size_t>(mode);
    StreamSize header;
    header.segments[index] = 1;
    const int room = data_bits(options.type, version, options.level) - stream_bits(options, version, header);
    if (!last.empty()) list += (list.empty() ? "" : ", ") + last;
    last = to_string(std::clamp(most_characters(mode, room), 0, kMostCharacters)) + " " + kNames[index];
  }
  return list.empty() ? last : list + " or " + last;
}

bool has_append(SymbolType type) {
  return type == SymbolType::model1 || type == SymbolType::model2;
}

}  // namespace

Error too_long(const Options& options, std::span<const std::uint8_t> data, int smallest) {
  const int version = options.version != 0 ? options.version : automatic_versions(options).last;
  const std::string type = type_name(options.type);
  const std::string level = std::string(" level ") + "LMQH"[static_cast<std::size_t>(options.level)];
  const std::string symbol =
      options.version == 0 ? type : "version " + version_name(options.type, version) + " of " + type;
  if (data_bits(options.type, version, options.level) == 0) {
    return {Code::no_symbol, "There is no" + level + " in " + symbol + "; give another level" +
                                 (options.version == 0 ? "." : " or version.")};
  }
  const int count = character_count(options, data);
  const std::string characters = to_string(count) + (count == 1 ? " character" : " characters");
  std::string sentence = "The data of " + characters;
  if (options.append) {
    sentence += " for symbol " + to_string(options.append->index) + " of " + to_string(options.append->count);
  }
  if (options.private_data) {
    sentence += " and the private data of " + to_string(options.private_data->data.size()) +
                " bytes together do not fit " + symbol + " at" + level;
  } else {
    sentence += " does not fit " + symbol + " at" + level;
    const std::string fits = what_fits(options, version);
    if (!fits.empty()) sentence += ", which holds at most " + fits;
  }
  if (smallest != 0) {
    sentence += "; the smallest version that holds it is " + version_name(options.type, smallest);
  } else if (has_append(options.type) && !options.append) {
    sentence += "; structured append splits it over up to 16 symbols";
  }
  return {Code::no_symbol, sentence + "."};
}

Error too_many_segments(const Options& options) {
  return {Code::no_symbol, "The data needs more than " + to_string(kMostSegments) +
                               " segments, the most that the encoder takes" +
                               (has_append(options.type) && !options.append
                                    ? "; structured append splits it over up to 16 symbols."
                                    : ".")};
}

}  // namespace korvex::qr
