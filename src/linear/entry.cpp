#include "linear/entry.hpp"
namespace korvex::linear {
std::int16_t entry(std::uint16_t, std::uint16_t, std::uint16_t, const Bar_Ratio*, const Bit_Data*, Bit_Result*) { return KORVEX_BAD_DATA; }
}
