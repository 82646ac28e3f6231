#include "qr/tables.hpp"

#include <algorithm>
#include <cassert>

namespace korvex::qr {
namespace {

// Codewords and error correction blocks of one version; data codewords and blocks for levels L, M, Q, H. 0:
// the version does not have the level.
struct VersionRow {
  int total;
  std::array<int, 4> data;
  std::array<int, 4> blocks;
};

// clang-format off

// QR Code Model 2. ISO/IEC 18004:2015, Tables 7 and 9.
constexpr std::array<VersionRow, 40> kModel2 = {{
    //       total   data L     M     Q     H  blocks L   M   Q   H
    /*  1 */ {  26, {  19,   16,   13,    9}, { 1,  1,  1,  1}},
    /*  2 */ {  44, {  34,   28,   22,   16}, { 1,  1,  1,  1}},
    /*  3 */ {  70, {  55,   44,   34,   26}, { 1,  1,  2,  2}},
    /*  4 */ { 100, {  80,   64,   48,   36}, { 1,  2,  2,  4}},
    /*  5 */ { 134, { 108,   86,   62,   46}, { 1,  2,  4,  4}},
    /*  6 */ { 172, { 136,  108,   76,   60}, { 2,  4,  4,  4}},
    /*  7 */ { 196, { 156,  124,   88,   66}, { 2,  4,  6,  5}},
    /*  8 */ { 242, { 194,  154,  110,   86}, { 2,  4,  6,  6}},
    /*  9 */ { 292, { 232,  182,  132,  100}, { 2,  5,  8,  8}},
    /* 10 */ { 346, { 274,  216,  154,  122}, { 4,  5,  8,  8}},
    /* 11 */ { 404, { 324,  254,  180,  140}, { 4,  5,  8, 11}},
    /* 12 */ { 466, { 370,  290,  206,  158}, { 4,  8, 10, 11}},
    /* 13 */ { 532, { 428,  334,  244,  180}, { 4,  9, 12, 16}},
    /* 14 */ { 581, { 461,  365,  261,  197}, { 4,  9, 16, 16}},
    /* 15 */ { 655, { 523,  415,  295,  223}, { 6, 10, 12, 18}},
    /* 16 */ { 733, { 589,  453,  325,  253}, { 6, 10, 17, 16}},
    /* 17 */ { 815, { 647,  507,  367,  283}, { 6, 11, 16, 19}},
    /* 18 */ { 901, { 721,  563,  397,  313}, { 6, 13, 18, 21}},
    /* 19 */ { 991, { 795,  627,  445,  341}, { 7, 14, 21, 25}},
    /* 20 */ {1085, { 861,  669,  485,  385}, { 8, 16, 20, 25}},
    /* 21 */ {1156, { 932,  714,  512,  406}, { 8, 17, 23, 25}},
    /* 22 */ {1258, {1006,  782,  568,  442}, { 9, 17, 23, 34}},
    /* 23 */ {1364, {1094,  860,  614,  464}, { 9, 18, 25, 30}},
    /* 24 */ {1474, {1174,  914,  664,  514}, {10, 20, 27, 32}},
    /* 25 */ {1588, {1276, 1000,  718,  538}, {12, 21, 29, 35}},
    /* 26 */ {1706, {1370, 1062,  754,  596}, {12, 23, 34, 37}},
    /* 27 */ {1828, {1468, 1128,  808,  628}, {12, 25, 34, 40}},
    /* 28 */ {1921, {1531, 1193,  871,  661}, {13, 26, 35, 42}},
    /* 29 */ {2051, {1631, 1267,  911,  701}, {14, 28, 38, 45}},
    /* 30 */ {2185, {1735, 1373,  985,  745}, {15, 29, 40, 48}},
    /* 31 */ {2323, {1843, 1455, 1033,  793}, {16, 31, 43, 51}},
    /* 32 */ {2465, {1955, 1541, 1115,  845}, {17, 33, 45, 54}},
    /* 33 */ {2611, {2071, 1631, 1171,  901}, {18, 35, 48, 57}},
    /* 34 */ {2761, {2191, 1725, 1231,  961}, {19, 37, 51, 60}},
    /* 35 */ {2876, {2306, 1812, 1286,  986}, {19, 38, 53, 63}},
    /* 36 */ {3034, {2434, 1914, 1354, 1054}, {20, 40, 56, 66}},
    /* 37 */ {3196, {2566, 1992, 1426, 1096}, {21, 43, 59, 70}},
    /* 38 */ {3362, {2702, 2102, 1502, 1142}, {22, 45, 62, 74}},
    /* 39 */ {3532, {2812, 2216, 1582, 1222}, {24, 47, 65, 77}},
    /* 40 */ {3706, {2956, 2334, 1666, 1276}, {25, 49, 68, 81}},
}};

// QR Code Model 1. AIM ITS 97/001 up to version 14, continued in its manner to version 40. The blocks of a symbol
// are equally long.
constexpr std::array<VersionRow, 40> kModel1 = {{
    //       total   data L     M     Q     H  blocks L   M   Q   H
    /*  1 */ {  26, {  19,   16,   13,    9}, { 1,  1,  1,  1}},
    /*  2 */ {  46, {  36,   30,   24,   16}, { 1,  1,  1,  1}},
    /*  3 */ {  72, {  57,   44,   36,   24}, { 1,  1,  1,  1}},
    /*  4 */ { 100, {  80,   60,   50,   34}, { 1,  1,  1,  1}},
    /*  5 */ { 134, { 108,   82,   68,   46}, { 1,  1,  1,  2}},
    /*  6 */ { 170, { 136,  106,   86,   58}, { 1,  2,  2,  2}},
    /*  7 */ { 212, { 170,  132,  108,   72}, { 1,  2,  2,  3}},
    /*  8 */ { 256, { 208,  160,  128,   87}, { 2,  2,  2,  3}},
    /*  9 */ { 306, { 246,  186,  156,  102}, { 2,  2,  3,  3}},
    /* 10 */ { 358, { 290,  222,  183,  124}, { 2,  2,  3,  4}},
    /* 11 */ { 416, { 336,  256,  208,  145}, { 2,  4,  4,  5}},
    /* 12 */ { 476, { 384,  292,  244,  165}, { 2,  4,  4,  5}},
    /* 13 */ { 542, { 432,  332,  276,  192}, { 3,  4,  4,  6}},
    /* 14 */ { 610, { 489,  368,  310,  210}, { 3,  4,  5,  6}},
    /* 15 */ { 684, { 552,  412,  348,  231}, { 3,  4,  6,  7}},
    /* 16 */ { 760, { 609,  460,  384,  264}, { 3,  5,  6,  8}},
    /* 17 */ { 842, { 672,  510,  420,  297}, { 4,  5,  7,  9}},
    /* 18 */ { 926, { 740,  564,  472,  320}, { 4,  6,  8, 10}},
    /* 19 */ {1016, { 816,  618,  510,  352}, { 4,  6, 10, 11}},
    /* 20 */ {1108, { 885,  672,  550,  384}, { 5,  7, 11, 12}},
    /* 21 */ {1206, { 965,  728,  600,  408}, { 5,  7, 12, 12}},
    /* 22 */ {1306, {1050,  792,  650,  442}, { 6,  8, 13, 13}},
    /* 23 */ {1412, {1134,  864,  702,  480}, { 6,  9, 13, 15}},
    /* 24 */ {1520, {1218,  920,  765,  525}, { 6, 10, 15, 15}},
    /* 25 */ {1634, {1309,  990,  832,  544}, { 7, 10, 16, 16}},
    /* 26 */ {1750, {1400, 1089,  882,  594}, { 7, 11, 18, 18}},
    /* 27 */ {1872, {1504, 1122,  936,  648}, { 8, 11, 18, 18}},
    /* 28 */ {1996, {1608, 1224, 1007,  693}, { 8, 12, 19, 21}},
    /* 29 */ {2126, {1710, 1287, 1080,  735}, { 9, 13, 20, 21}},
    /* 30 */ {2258, {1800, 1358, 1150,  782}, { 9, 14, 23, 23}},
    /* 31 */ {2396, {1930, 1442, 1196,  828}, {10, 14, 23, 23}},
    /* 32 */ {2536, {2030, 1568, 1288,  864}, {10, 16, 23, 32}},
    /* 33 */ {2682, {2148, 1674, 1375,  910}, {12, 18, 25, 26}},
    /* 34 */ {2830, {2268, 1746, 1428,  980}, {14, 18, 28, 28}},
    /* 35 */ {2984, {2400, 1843, 1488,  992}, {12, 19, 31, 31}},
    /* 36 */ {3140, {2509, 1940, 1600, 1088}, {13, 20, 32, 32}},
    /* 37 */ {3302, {2652, 2037, 1650, 1122}, {13, 21, 33, 33}},
    /* 38 */ {3466, {2786, 2121, 1749, 1155}, {14, 21, 33, 35}},
    /* 39 */ {3636, {2910, 2254, 1836, 1260}, {15, 23, 36, 36}},
    /* 40 */ {3808, {3072, 2300, 1900, 1292}, {16, 25, 38, 38}},
}};

// Micro QR. ISO/IEC 18004:2015, Tables 7 and 9.
constexpr std::array<VersionRow, 4> kMicro = {{
    //       total   data L     M     Q     H  blocks L   M   Q   H
    /* M1 */ {   5, {   3,    0,    0,    0}, { 1,  0,  0,  0}},
    /* M2 */ {  10, {   5,    4,    0,    0}, { 1,  1,  0,  0}},
    /* M3 */ {  17, {  11,    9,    0,    0}, { 1,  1,  0,  0}},
    /* M4 */ {  24, {  16,   14,   10,    0}, { 1,  1,  1,  0}},
}};

struct RmqrRow {
  int rows;     // modules
  int columns;  // modules
  VersionRow codewords;
  PerMode count_bits;
};

// Rectangular Micro QR. ISO/IEC 23941:2022.
constexpr std::array<RmqrRow, 32> kRmqr = {{
    //    rows  cols  total data  M       H   blocks M     H   count bits N A B K
    /*  1 */ { 7,  43, { 13, {0,   6, 0,  3}, {0, 1, 0, 1}}, {4, 3, 3, 2}},
    /*  2 */ { 7,  59, { 21, {0,  12, 0,  7}, {0, 1, 0, 1}}, {5, 5, 4, 3}},
    /*  3 */ { 7,  77, { 32, {0,  20, 0, 10}, {0, 1, 0, 1}}, {6, 5, 5, 4}},
    /*  4 */ { 7,  99, { 44, {0,  28, 0, 14}, {0, 1, 0, 1}}, {7, 6, 5, 5}},
    /*  5 */ { 7, 139, { 68, {0,  44, 0, 24}, {0, 1, 0, 2}}, {7, 6, 6, 5}},
    /*  6 */ { 9,  43, { 21, {0,  12, 0,  7}, {0, 1, 0, 1}}, {5, 5, 4, 3}},
    /*  7 */ { 9,  59, { 33, {0,  21, 0, 11}, {0, 1, 0, 1}}, {6, 5, 5, 4}},
    /*  8 */ { 9,  77, { 49, {0,  31, 0, 17}, {0, 1, 0, 2}}, {7, 6, 5, 5}},
    /*  9 */ { 9,  99, { 66, {0,  42, 0, 22}, {0, 1, 0, 2}}, {7, 6, 6, 5}},
    /* 10 */ { 9, 139, { 99, {0,  63, 0, 33}, {0, 2, 0, 3}}, {8, 7, 6, 6}},
    /* 11 */ {11,  27, { 15, {0,   7, 0,  5}, {0, 1, 0, 1}}, {4, 4, 3, 2}},
    /* 12 */ {11,  43, { 31, {0,  19, 0, 11}, {0, 1, 0, 1}}, {6, 5, 5, 4}},
    /* 13 */ {11,  59, { 47, {0,  31, 0, 15}, {0, 1, 0, 2}}, {7, 6, 5, 5}},
    /* 14 */ {11,  77, { 67, {0,  43, 0, 23}, {0, 1, 0, 2}}, {7, 6, 6, 5}},
    /* 15 */ {11,  99, { 89, {0,  57, 0, 29}, {0, 2, 0, 2}}, {8, 7, 6, 6}},
    /* 16 */ {11, 139, {132, {0,  84, 0, 42}, {0, 2, 0, 3}}, {8, 7, 7, 6}},
    /* 17 */ {13,  27, { 21, {0,  12, 0,  7}, {0, 1, 0, 1}}, {5, 5, 4, 3}},
    /* 18 */ {13,  43, { 41, {0,  27, 0, 13}, {0, 1, 0, 1}}, {6, 6, 5, 5}},
    /* 19 */ {13,  59, { 60, {0,  38, 0, 20}, {0, 1, 0, 2}}, {7, 6, 6, 5}},
    /* 20 */ {13,  77, { 85, {0,  53, 0, 29}, {0, 2, 0, 2}}, {7, 7, 6, 6}},
    /* 21 */ {13,  99, {113, {0,  73, 0, 35}, {0, 2, 0, 3}}, {8, 7, 7, 6}},
    /* 22 */ {13, 139, {166, {0, 106, 0, 54}, {0, 3, 0, 4}}, {8, 8, 7, 7}},
    /* 23 */ {15,  43, { 51, {0,  33, 0, 15}, {0, 1, 0, 2}}, {7, 6, 6, 5}},
    /* 24 */ {15,  59, { 74, {0,  48, 0, 26}, {0, 1, 0, 2}}, {7, 7, 6, 5}},
    /* 25 */ {15,  77, {103, {0,  67, 0, 31}, {0, 2, 0, 3}}, {8, 7, 7, 6}},
    /* 26 */ {15,  99, {136, {0,  88, 0, 48}, {0, 2, 0, 4}}, {8, 7, 7, 6}},
    /* 27 */ {15, 139, {199, {0, 127, 0, 69}, {0, 3, 0, 5}}, {9, 8, 7, 7}},
    /* 28 */ {17,  43, { 61, {0,  39, 0, 21}, {0, 1, 0, 2}}, {7, 6, 6, 5}},
    /* 29 */ {17,  59, { 88, {0,  56, 0, 28}, {0, 2, 0, 2}}, {8, 7, 6, 6}},
    /* 30 */ {17,  77, {122, {0,  78, 0, 38}, {0, 2, 0, 3}}, {8, 7, 7, 6}},
    /* 31 */ {17,  99, {160, {0, 100, 0, 56}, {0, 3, 0, 4}}, {8, 8, 7, 6}},
    /* 32 */ {17, 139, {232, {0, 152, 0, 76}, {0, 4, 0, 6}}, {9, 8, 8, 7}},
}};

// Character count indicators in bits: numeric, alphanumeric, byte, Kanji. ISO/IEC 18004:2015, Table 3.
constexpr std::array<PerMode, 3> kCountBits = {{
    /* versions 1-9   */ {10,  9,  8,  8},
    /* versions 10-26 */ {12, 11, 16, 10},
    /* versions 27-40 */ {14, 13, 16, 12},
}};
// M1 packs digits alone, M2 digits and alphanumeric characters: their other numbers only serve the estimates of
// segmentation.
constexpr std::array<PerMode, 4> kMicroCountBits = {{
    /* M1 */ {3, 2, 2, 1},
    /* M2 */ {4, 3, 3, 2},
    /* M3 */ {5, 4, 4, 3},
    /* M4 */ {6, 5, 5, 4},
}};

// clang-format on

constexpr bool whole_check_codewords(const VersionRow& row, bool equal_blocks) {
  for (std::size_t level = 0; level < 4; ++level) {
    if (row.data[level] == 0 && row.blocks[level] == 0) continue;
    if ((row.total - row.data[level]) % row.blocks[level] != 0 && !equal_blocks) return false;
    if (row.data[level] % row.blocks[level] != 0 && equal_blocks) return false;
  }
  return true;
}

// Modules of a Model 2 symbol that are no function pattern, format or version information.
constexpr int model2_data_modules(int version) {
  const int side = 4 * version + 17;
  const int alignment = version == 1 ? 0 : version / 7 + 2;  // centre coordinates a side
  int modules = side * side - 3 * 64 - 2 * (side - 16) - 31;
  if (alignment > 0) modules -= 25 * (alignment * alignment - 3) - 10 * (alignment - 2);
  if (version >= 7) modules -= 2 * 18;
  return modules;
}

constexpr bool tables_hold() {
  for (std::size_t i = 0; i < 40; ++i) {
    if (!whole_check_codewords(kModel2[i], false) || !whole_check_codewords(kModel1[i], true)) return false;
    if (kModel2[i].total != model2_data_modules(static_cast<int>(i) + 1) / 8) return false;
  }
  for (std::size_t i = 0; i < 32; ++i) {
    if (!whole_check_codewords(kRmqr[i].codewords, false)) return false;
    if (i > 0 && (kRmqr[i].rows < kRmqr[i - 1].rows ||
                  (kRmqr[i].rows == kRmqr[i - 1].rows && kRmqr[i].columns <= kRmqr[i - 1].columns)))
      return false;
  }
  return true;
}
static_assert(tables_hold());
static_assert(kModel1.back().total == kMostCodewords);

const RmqrRow& rmqr_row(int version) {
  return kRmqr[static_cast<std::size_t>(version - 1)];
}

const VersionRow& version_row(SymbolType type, int version) {
  assert(version >= 1 && version <= version_count(type));
  const auto index = static_cast<std::size_t>(version - 1);
  switch (type) {
    case SymbolType::model1:
      return kModel1[index];
    case SymbolType::micro:
      return kMicro[index];
    case SymbolType::rmqr:
      return kRmqr[index].codewords;
    default:
      return kModel2[index];
  }
}

}  // namespace

int version_count(SymbolType type) {
  if (type == SymbolType::micro) return static_cast<int>(kMicro.size());
  return type == SymbolType::rmqr ? static_cast<int>(kRmqr.size()) : static_cast<int>(kModel2.size());
}

int last_automatic_version(SymbolType type) {
  return type == SymbolType::model1 ? 14 : version_count(type);
}

Capacity capacity(SymbolType type, int version, Level level) {
  const VersionRow& row = version_row(type, version);
  const auto index = static_cast<std::size_t>(level);
  return {row.total, row.data[index], row.blocks[index]};
}

bool has_short_last_codeword(SymbolType type, int version) {
  return type == SymbolType::micro && version % 2 == 1;
}

int data_bits(SymbolType type, int version, Level level) {
  const int codewords = capacity(type, version, level).data_codewords;
  return codewords * 8 - (codewords > 0 && has_short_last_codeword(type, version) ? 4 : 0);
}

int row_count(SymbolType type, int version) {
  if (type == SymbolType::rmqr) return rmqr_row(version).rows;
  return type == SymbolType::micro ? 2 * version + 9 : 4 * version + 17;
}

int column_count(SymbolType type, int version) {
  return type == SymbolType::rmqr ? rmqr_row(version).columns : row_count(type, version);
}

int mode_indicator_bits(SymbolType type, int version) {
  if (type == SymbolType::micro) return version - 1;
  return type == SymbolType::rmqr ? 3 : 4;
}

const PerMode& count_bits(SymbolType type, int version) {
  if (type == SymbolType::rmqr) return rmqr_row(version).count_bits;
  if (type == SymbolType::micro) return kMicroCountBits[static_cast<std::size_t>(version - 1)];
  return kCountBits[version <= 9 ? 0 : version <= 26 ? 1 : 2];
}

bool has_mode(SymbolType type, int version, Mode mode) {
  return type != SymbolType::micro || version >= 3 || static_cast<int>(mode) < version;
}

VersionRange rmqr_versions(int rows) {
  const auto first = std::ranges::lower_bound(kRmqr, rows, {}, &RmqrRow::rows);
  const auto end = std::ranges::upper_bound(kRmqr, rows, {}, &RmqrRow::rows);
  return {static_cast<int>(first - kRmqr.begin()) + 1, static_cast<int>(end - kRmqr.begin())};
}

std::string version_name(SymbolType type, int version) {
  if (type > SymbolType::rmqr || version < 1 || version > version_count(type)) return {};
  std::string name;
  if (type == SymbolType::rmqr) {
    const RmqrRow& row = rmqr_row(version);
    return name.append("R").append(std::to_string(row.rows)).append("x").append(std::to_string(row.columns));
  }
  if (type == SymbolType::micro) name = "M";
  return name.append(std::to_string(version));
}

}  // namespace korvex::qr
