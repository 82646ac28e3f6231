#include "call/request.hpp"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <nlohmann/json.hpp>
#include <set>

#include "words.hpp"

namespace korvex::cli::call {
namespace {

using nlohmann::json;

constexpr int kDeepest = 100;  // nesting of a line; writing an id back goes one call deeper a level
constexpr std::size_t kKeyCharacters = sizeof(QR_Params::private_key);
constexpr int kMostBytes = std::numeric_limits<std::int16_t>::max();

/// The names of a table's rows, as a sentence lists them.
template <class Row>
std::string names_of(std::span<const Row> rows) {
  std::vector<std::string_view> names;
  for (const Row& row : rows) names.push_back(row.name);
  return joined(names, "and");
}

json parse(std::string_view line) {
  std::vector<std::set<std::string>> keys;  // of the objects that are open
  const auto watch = [&](int depth, json::parse_event_t event, const json& value) {
    if (depth > kDeepest) throw BadLine("values are nested more than " + std::to_string(kDeepest) + " deep");
    if (event == json::parse_event_t::object_start) keys.emplace_back();
    if (event == json::parse_event_t::object_end) keys.pop_back();
    // One of the two would be lost.
    if (event == json::parse_event_t::key && !keys.back().insert(value.get<std::string>()).second) {
      throw BadLine("the key " + json_string(value.get<std::string>()) + " is there twice");
    }
    return true;
  };
  try {
    return json::parse(line.begin(), line.end(), watch);
  } catch (const json::parse_error& error) {
    throw BadLine("not JSON at byte " + std::to_string(error.byte) + ": " + json_reason(error.what()));
  } catch (const json::out_of_range&) {
    throw BadLine("it has a number that is too large for anybody");
  }
}

/// A whole number within the 16 bits of its field.
std::uint16_t read_number(const std::string& name, const json& value, bool is_signed) {
  const std::int64_t least = is_signed ? std::numeric_limits<std::int16_t>::min() : 0;
  const std::int64_t most = is_signed ? kMostBytes : std::numeric_limits<std::uint16_t>::max();
  const bool fits = value.is_number_unsigned()
                        ? value.get<std::uint64_t>() <= static_cast<std::uint64_t>(most)
                    : value.is_number_integer() ? value.get<std::int64_t>() >= least
                                                : false;
  if (!fits) {
    throw BadLine(name + " is a whole number from " + std::to_string(least) + " to " + std::to_string(most) +
                  ", not " + value.dump());
  }
  return static_cast<std::uint16_t>(value.get<std::int64_t>());
}

std::string from_hexadecimal(const std::string& name, const std::string& digits) {
  if (digits.size() % 2 != 0) throw BadLine(name + ".hex has an odd number of digits");
  std::string bytes;
  for (std::size_t at = 0; at < digits.size(); at += 2) {
    const int high = hexadecimal_value(digits[at]);
    const int low = hexadecimal_value(digits[at + 1]);
    if (high < 0 || low < 0) {
      throw BadLine(name + ".hex has " + json_string(digits.substr(at, 2)) + " at position " +
                    std::to_string(at + 1) + "; only the digits 0-9 and a-f make a byte");
    }
    bytes.push_back(static_cast<char>(high * 16 + low));
  }
  return bytes;
}

std::string read_bytes(const std::string& name, const json& value) {
  if (value.is_string()) return value.get<std::string>();
  if (value.is_object() && value.size() == 1 && value.begin().key() == "hex" && value.begin()->is_string()) {
    return from_hexadecimal(name, value.begin()->get<std::string>());
  }
  throw BadLine(name + " is a string or {\"hex\": \"00ff41\"}");
}

/// Writes values into a record at the places of its fields.
class RecordWriter {
 public:
  RecordWriter(Request& request, const json& params)
      : request_(request), params_(params), record_(reinterpret_cast<std::byte*>(&request.record)) {}

  void write(const Field& field) {
    const auto found = params_.find(field.name);
    const json* const value = found == params_.end() ? nullptr : &*found;
    const std::string name(field.name);
    switch (field.kind) {
      case Kind::number:
      case Kind::natural:
        put(field, value == nullptr ? field.preset : read_number(name, *value, field.kind == Kind::number));
        break;
      case Kind::numbers:
        if (value != nullptr) put(field, read_numbers(name, *value));
        break;
      case Kind::bytes:
      case Kind::text:
        put_bytes(field, value == nullptr ? "" : read_bytes(name, *value));
        break;
      case Kind::byte_count:
        put(field, value == nullptr ? all_bytes(field) : given_count(field, *value));
        break;
      case Kind::key:
        if (value != nullptr) put(field, read_key(name, *value));
        break;
    }
  }

 private:
  template <class Value>
  void put(const Field& field, const Value& value) {
    std::memcpy(record_ + field.offset, &value, sizeof value);
  }

  static std::array<std::uint16_t, 5> read_numbers(const std::string& name, const json& value) {
    std::array<std::uint16_t, 5> words{};
    if (!value.is_array() || value.size() != words.size()) throw BadLine(name + " is a list of five numbers");
    for (std::size_t index = 0; index < words.size(); ++index) {
      words[index] = read_number(name + "[" + std::to_string(index) + "]", value[index], true);
    }
    return words;
  }

  static std::array<char, kKeyCharacters> read_key(const std::string& name, const json& value) {
    std::array<char, kKeyCharacters> characters{};
    const std::string* const text = value.get_ptr<const std::string*>();
    if (text == nullptr || text->size() != characters.size()) {
      throw BadLine(name + " is a string of " + std::to_string(characters.size()) + " characters");
    }
    std::ranges::copy(*text, characters.begin());
    return characters;
  }

  void put_bytes(const Field& field, const std::string& bytes) {
    const std::size_t size = bytes.size() + (field.kind == Kind::text ? 1 : 0);  // the NUL of a text
    Block block{field.name, std::unique_ptr<std::uint8_t[]>(new std::uint8_t[size]), bytes.size()};
    std::memcpy(block.bytes.get(), bytes.c_str(), size);
    put(field, block.bytes.get());
    request_.blocks.push_back(std::move(block));
  }

  std::int16_t all_bytes(const Field& field) {
    const std::size_t size = request_.bytes(field.counted).size();
    if (size > kMostBytes) {
      throw BadLine(std::string(field.counted) + " has " + std::to_string(size) + " bytes, and " +
                    std::string(field.name) + " counts no more than " + std::to_string(kMostBytes));
    }
    return static_cast<std::int16_t>(size);
  }

  /// As given, as long as the call cannot read past the bytes that are there.
  std::int16_t given_count(const Field& field, const json& value) {
    const auto count = static_cast<std::int16_t>(read_number(std::string(field.name), value, true));
    const std::size_t size = request_.bytes(field.counted).size();
    if (count > 0 && static_cast<std::size_t>(count) > size) {
      throw BadLine(std::string(field.name) + " is " + std::to_string(count) + ", but " +
                    std::string(field.counted) + " has " + std::to_string(size) + " bytes");
    }
    return count;
  }

  Request& request_;
  const json& params_;
  std::byte* record_;
};

const Export& read_export(const json& value) {
  const Export* const target = value.is_string() ? find_export(value.get_ref<const std::string&>()) : nullptr;
  if (target == nullptr) {
    throw BadLine("there is no export " + value.dump() + "; there are " + names_of(export_table()));
  }
  return *target;
}

bool read_trace(const json& value) {
  if (!value.is_boolean()) throw BadLine("trace is true or false, not " + value.dump());
  return value.get<bool>();
}

}  // namespace

std::string json_string(std::string_view text) {
  return json(text).dump(-1, ' ', false, json::error_handler_t::replace);
}

std::span<const std::uint8_t> Request::bytes(std::string_view field) const {
  const auto block = std::ranges::find(blocks, field, &Block::field);
  if (block == blocks.end()) return {};
  return {block->bytes.get(), block->size};
}

void read_request(std::string_view line, Request& request) {
  json object = parse(line);
  if (!object.is_object()) throw BadLine("a request is a JSON object");
  if (const auto id = object.find("id"); id != object.end()) request.id = id->dump();

  for (const auto& [key, value] : object.items()) {
    if (key != "id" && key != "export" && key != "params" && key != "trace") {
      throw BadLine("unknown key " + json_string(key) + "; a request has export, params, id and trace");
    }
  }
  if (!object.contains("export")) throw BadLine("export is missing");
  request.target = &read_export(object["export"]);
  if (!object.contains("params") || !object["params"].is_object()) {
    throw BadLine("params must be there, an object with fields of " + std::string(request.target->name));
  }
  if (object.contains("trace")) request.trace = read_trace(object["trace"]);

  const json& params = object["params"];
  for (const auto& [key, value] : params.items()) {
    if (find_field(*request.target, key) == nullptr) {
      throw BadLine("unknown key " + json_string(key) + " in params; " + std::string(request.target->name) +
                    " takes " + names_of(request.target->fields));
    }
  }
  RecordWriter writer(request, params);
  for (const Field& field : request.target->fields) writer.write(field);
}

}  // namespace korvex::cli::call
