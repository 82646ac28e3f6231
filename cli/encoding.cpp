#include "encoding.hpp"

#include <iconv.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <type_traits>

#include "failure.hpp"

namespace korvex::cli {
namespace {

struct Close {
  void operator()(iconv_t converter) const { iconv_close(converter); }
};

std::optional<std::string> converted(std::string_view utf8, const char* encoding) {
  const iconv_t opened = iconv_open(encoding, "UTF-8");
  if (reinterpret_cast<std::intptr_t>(opened) == -1) {
    throw Failure(std::string("This system cannot convert text to ") + encoding + '.');
  }
  const std::unique_ptr<std::remove_pointer_t<iconv_t>, Close> converter(opened);
  std::string from(utf8);
  std::string to(2 * from.size(), '\0');  // no character is longer there than in UTF-8
  char* in = from.data();
  char* out = to.data();
  std::size_t in_left = from.size();
  std::size_t out_left = to.size();
  // A number above 0 counts characters that were replaced by similar ones.
  if (iconv(converter.get(), &in, &in_left, &out, &out_left) != 0) return std::nullopt;
  to.resize(to.size() - out_left);
  return to;
}

}  // namespace

std::optional<std::string> shift_jis_of(std::string_view utf8) {
  return converted(utf8, "CP932");
}

std::optional<std::string> latin_1_of(std::string_view utf8) {
  return converted(utf8, "ISO-8859-1");
}

}  // namespace korvex::cli
