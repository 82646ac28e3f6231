// GS1 General Specifications, section 3: the application identifiers and the formats of their data.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace korvex::gs1 {

/// What the data of an element string is beyond characters and lengths.
enum class Content : std::uint8_t {
  any,
  check_digit,         ///< the first component ends with a check digit
  asset,               ///< likewise, behind a 0
  piece,               ///< likewise; then the number of the piece and how many there are
  company_prefix,      ///< begins with a GS1 Company Prefix
  model,               ///< likewise, and ends with two check characters
  iban,                ///< ISO 13616
  date,                ///< YYMMDD
  dates,               ///< one, or two for a range
  date_or_month,       ///< day 00 stands for the month
  date_time,           ///< YYMMDD, then hours, minutes and seconds as far as there are digits
  date_time_or_month,  ///< likewise, day 00 stands for the month
  birth_time,          ///< YYYYMMDD, then hours and minutes as far as there are digits
  country,             ///< ISO 3166-1 in three digits
  country_or_999,
  countries,        ///< one after another
  country_letters,  ///< ISO 3166-1 in two letters
  currency,         ///< ISO 4217 in three digits, then an amount
  percent,          ///< % begins a character in two hexadecimal digits
  coordinates,      ///< latitude and longitude, ten digits each
  zero_or_one,
  media_type,
  sex,            ///< ISO/IEC 5218
  sequence,       ///< position / total
  roll,           ///< width, length, core diameter, winding direction, splices
  serial_number,  ///< without zeros in front
};

/// A row of the table: an identifier, or those that differ in their last digit n.
struct IdentifierRow {
  std::string_view identifier;
  int most_n;              ///< n is 0 to this
  std::string_view title;  ///< as printed beside the data; may be empty
  std::string_view format;
  Content content;
};

namespace table {
using enum Content;

// In a format N are digits, X, Y and Z characters of the sets 82, 39 and 64, - a hyphen; ..20 is 1 to 20 of
// them; what stands in brackets may be left out.
// clang-format off
inline constexpr auto kRows = std::to_array<IdentifierRow>({
    // identifier, most n, title,              format,         content
    {"00",   0, "SSCC",                      "N18",         check_digit},
    {"01",   0, "GTIN",                      "N14",         check_digit},
    {"02",   0, "CONTENT",                   "N14",         check_digit},
    {"03",   0, "MTO GTIN",                  "N14",         check_digit},
    {"10",   0, "BATCH/LOT",                 "X..20",       any},
    {"11",   0, "PROD DATE",                 "N6",          date_or_month},
    {"12",   0, "DUE DATE",                  "N6",          date_or_month},
    {"13",   0, "PACK DATE",                 "N6",          date_or_month},
    {"15",   0, "BEST BEFORE or BEST BY",    "N6",          date_or_month},
    {"16",   0, "SELL BY",                   "N6",          date_or_month},
    {"17",   0, "USE BY OR EXPIRY",          "N6",          date_or_month},
    {"20",   0, "VARIANT",                   "N2",          any},
    {"21",   0, "SERIAL",                    "X..20",       any},
    {"22",   0, "CPV",                       "X..20",       any},
    {"235",  0, "TPX",                       "X..28",       any},
    {"240",  0, "ADDITIONAL ID",             "X..30",       any},
    {"241",  0, "CUST. PART No.",            "X..30",       any},
    {"242",  0, "MTO VARIANT",               "N..6",        any},
    {"243",  0, "PCN",                       "X..20",       any},
    {"250",  0, "SECONDARY SERIAL",          "X..30",       any},
    {"251",  0, "REF. TO SOURCE",            "X..30",       any},
    {"253",  0, "GDTI",                      "N13[+X..17]", check_digit},
    {"254",  0, "GLN EXTENSION COMPONENT",   "X..20",       any},
    {"255",  0, "GCN",                       "N13[+N..12]", check_digit},
    {"30",   0, "VAR. COUNT",                "N..8",        any},
    {"310n", 5, "NET WEIGHT (kg)",           "N6",          any},
    {"311n", 5, "LENGTH (m)",                "N6",          any},
    {"312n", 5, "WIDTH (m)",                 "N6",          any},
    {"313n", 5, "HEIGHT (m)",                "N6",          any},
    {"314n", 5, "AREA (m2)",                 "N6",          any},
    {"315n", 5, "NET VOLUME (l)",            "N6",          any},
    {"316n", 5, "NET VOLUME (m3)",           "N6",          any},
    {"320n", 5, "NET WEIGHT (lb)",           "N6",          any},
    {"321n", 5, "LENGTH (in)",               "N6",          any},
    {"322n", 5, "LENGTH (ft)",               "N6",          any},
    {"323n", 5, "LENGTH (yd)",               "N6",          any},
    {"324n", 5, "WIDTH (in)",                "N6",          any},
    {"325n", 5, "WIDTH (ft)",                "N6",          any},
    {"326n", 5, "WIDTH (yd)",                "N6",          any},
    {"327n", 5, "HEIGHT (in)",               "N6",          any},
    {"328n", 5, "HEIGHT (ft)",               "N6",          any},
    {"329n", 5, "HEIGHT (yd)",               "N6",          any},
    {"330n", 5, "GROSS WEIGHT (kg)",         "N6",          any},
    {"331n", 5, "LENGTH (m), log",           "N6",          any},
    {"332n", 5, "WIDTH (m), log",            "N6",          any},
    {"333n", 5, "HEIGHT (m), log",           "N6",          any},
    {"334n", 5, "AREA (m2), log",            "N6",          any},
    {"335n", 5, "VOLUME (l), log",           "N6",          any},
    {"336n", 5, "VOLUME (m3), log",          "N6",          any},
    {"337n", 5, "KG PER m2",                 "N6",          any},
    {"340n", 5, "GROSS WEIGHT (lb)",         "N6",          any},
    {"341n", 5, "LENGTH (in), log",          "N6",          any},
    {"342n", 5, "LENGTH (ft), log",          "N6",          any},
    {"343n", 5, "LENGTH (yd), log",          "N6",          any},
    {"344n", 5, "WIDTH (in), log",           "N6",          any},
    {"345n", 5, "WIDTH (ft), log",           "N6",          any},
    {"346n", 5, "WIDTH (yd), log",           "N6",          any},
    {"347n", 5, "HEIGHT (in), log",          "N6",          any},
    {"348n", 5, "HEIGHT (ft), log",          "N6",          any},
    {"349n", 5, "HEIGHT (yd), log",          "N6",          any},
    {"350n", 5, "AREA (in2)",                "N6",          any},
    {"351n", 5, "AREA (ft2)",                "N6",          any},
    {"352n", 5, "AREA (yd2)",                "N6",          any},
    {"353n", 5, "AREA (in2), log",           "N6",          any},
    {"354n", 5, "AREA (ft2), log",           "N6",          any},
    {"355n", 5, "AREA (yd2), log",           "N6",          any},
    {"356n", 5, "NET WEIGHT (t oz)",         "N6",          any},
    {"357n", 5, "NET VOLUME (oz)",           "N6",          any},
    {"360n", 5, "NET VOLUME (qt)",           "N6",          any},
    {"361n", 5, "NET VOLUME (gal.)",         "N6",          any},
    {"362n", 5, "VOLUME (qt), log",          "N6",          any},
    {"363n", 5, "VOLUME (gal.), log",        "N6",          any},
    {"364n", 5, "NET VOLUME (in3)",          "N6",          any},
    {"365n", 5, "NET VOLUME (ft3)",          "N6",          any},
    {"366n", 5, "NET VOLUME (yd3)",          "N6",          any},
    {"367n", 5, "VOLUME (in3), log",         "N6",          any},
    {"368n", 5, "VOLUME (ft3), log",         "N6",          any},
    {"369n", 5, "VOLUME (yd3), log",         "N6",          any},
    {"37",   0, "COUNT",                     "N..8",        any},
    {"390n", 9, "AMOUNT",                    "N..15",       any},
    {"391n", 9, "AMOUNT",                    "N3+N..15",    currency},
    {"392n", 9, "PRICE",                     "N..15",       any},
    {"393n", 9, "PRICE",                     "N3+N..15",    currency},
    {"394n", 3, "PRCNT OFF",                 "N4",          any},
    {"395n", 5, "PRICE/UoM",                 "N6",          any},
    {"400",  0, "ORDER NUMBER",              "X..30",       any},
    {"401",  0, "GINC",                      "X..30",       company_prefix},
    {"402",  0, "GSIN",                      "N17",         check_digit},
    {"403",  0, "ROUTE",                     "X..30",       any},
    {"410",  0, "SHIP TO LOC",               "N13",         check_digit},
    {"411",  0, "BILL TO",                   "N13",         check_digit},
    {"412",  0, "PURCHASE FROM",             "N13",         check_digit},
    {"413",  0, "SHIP FOR LOC",              "N13",         check_digit},
    {"414",  0, "LOC No.",                   "N13",         check_digit},
    {"415",  0, "PAY TO",                    "N13",         check_digit},
    {"416",  0, "PROD/SERV LOC",             "N13",         check_digit},
    {"417",  0, "PARTY",                     "N13",         check_digit},
    {"420",  0, "SHIP TO POST",              "X..20",       any},
    {"421",  0, "SHIP TO POST",              "N3+X..9",     country},
    {"422",  0, "ORIGIN",                    "N3",          country},
    {"423",  0, "COUNTRY - INITIAL PROCESS", "N3[+N..12]",  countries},
    {"424",  0, "COUNTRY - PROCESS",         "N3",          country},
    {"425",  0, "COUNTRY - DISASSEMBLY",     "N3[+N..12]",  countries},
    {"426",  0, "COUNTRY - FULL PROCESS",    "N3",          country},
    {"427",  0, "ORIGIN SUBDIVISION",        "X..3",        any},
    {"4300", 0, "SHIP TO COMP",              "X..35",       percent},
    {"4301", 0, "SHIP TO NAME",              "X..35",       percent},
    {"4302", 0, "SHIP TO ADD1",              "X..70",       percent},
    {"4303", 0, "SHIP TO ADD2",              "X..70",       percent},
    {"4304", 0, "SHIP TO SUB",               "X..70",       percent},
    {"4305", 0, "SHIP TO LOC",               "X..70",       percent},
    {"4306", 0, "SHIP TO REG",               "X..70",       percent},
    {"4307", 0, "SHIP TO COUNTRY",           "X2",          country_letters},
    {"4308", 0, "SHIP TO PHONE",             "X..30",       any},
    {"4309", 0, "SHIP TO GEO",               "N20",         coordinates},
    {"4310", 0, "RTN TO COMP",               "X..35",       percent},
    {"4311", 0, "RTN TO NAME",               "X..35",       percent},
    {"4312", 0, "RTN TO ADD1",               "X..70",       percent},
    {"4313", 0, "RTN TO ADD2",               "X..70",       percent},
    {"4314", 0, "RTN TO SUB",                "X..70",       percent},
    {"4315", 0, "RTN TO LOC",                "X..70",       percent},
    {"4316", 0, "RTN TO REG",                "X..70",       percent},
    {"4317", 0, "RTN TO COUNTRY",            "X2",          country_letters},
    {"4318", 0, "RTN TO POST",               "X..20",       any},
    {"4319", 0, "RTN TO PHONE",              "X..30",       any},
    {"4320", 0, "SRV DESCRIPTION",           "X..35",       percent},
    {"4321", 0, "DANGEROUS GOODS",           "N1",          zero_or_one},
    {"4322", 0, "AUTH LEAVE",                "N1",          zero_or_one},
    {"4323", 0, "SIG REQUIRED",              "N1",          zero_or_one},
    {"4324", 0, "NBEF DEL DT",               "N10",         date_time_or_month},
    {"4325", 0, "NAFT DEL DT",               "N10",         date_time_or_month},
    {"4326", 0, "REL DATE",                  "N6",          date},
    {"4330", 0, "MAX TEMP F",                "N6[-]",       any},
    {"4331", 0, "MAX TEMP C",                "N6[-]",       any},
    {"4332", 0, "MIN TEMP F",                "N6[-]",       any},
    {"4333", 0, "MIN TEMP C",                "N6[-]",       any},
    {"7001", 0, "NSN",                       "N13",         any},
    {"7002", 0, "MEAT CUT",                  "X..30",       any},
    {"7003", 0, "EXPIRY TIME",               "N10",         date_time},
    {"7004", 0, "ACTIVE POTENCY",            "N..4",        any},
    {"7005", 0, "CATCH AREA",                "X..12",       any},
    {"7006", 0, "FIRST FREEZE DATE",         "N6",          date},
    {"7007", 0, "HARVEST DATE",              "N6[+N6]",     dates},
    {"7008", 0, "AQUATIC SPECIES",           "X..3",        any},
    {"7009", 0, "FISHING GEAR TYPE",         "X..10",       any},
    {"7010", 0, "PROD METHOD",               "X..2",        any},
    {"7011", 0, "TEST BY DATE",              "N6[+N4]",     date_time},
    {"7020", 0, "REFURB LOT",                "X..20",       any},
    {"7021", 0, "FUNC STAT",                 "X..20",       any},
    {"7022", 0, "REV STAT",                  "X..20",       any},
    {"7023", 0, "GIAI - ASSEMBLY",           "X..30",       company_prefix},
    {"7030", 0, "PROCESSOR # 0",             "N3+X..27",    country_or_999},
    {"7031", 0, "PROCESSOR # 1",             "N3+X..27",    country_or_999},
    {"7032", 0, "PROCESSOR # 2",             "N3+X..27",    country_or_999},
    {"7033", 0, "PROCESSOR # 3",             "N3+X..27",    country_or_999},
    {"7034", 0, "PROCESSOR # 4",             "N3+X..27",    country_or_999},
    {"7035", 0, "PROCESSOR # 5",             "N3+X..27",    country_or_999},
    {"7036", 0, "PROCESSOR # 6",             "N3+X..27",    country_or_999},
    {"7037", 0, "PROCESSOR # 7",             "N3+X..27",    country_or_999},
    {"7038", 0, "PROCESSOR # 8",             "N3+X..27",    country_or_999},
    {"7039", 0, "PROCESSOR # 9",             "N3+X..27",    country_or_999},
    {"7040", 0, "UIC+EXT",                   "N1+X3",       any},
    {"7041", 0, "UFRGT UNIT TYPE",           "X..4",        any},
    {"710",  0, "NHRN PZN",                  "X..20",       any},
    {"711",  0, "NHRN CIP",                  "X..20",       any},
    {"712",  0, "NHRN CN",                   "X..20",       any},
    {"713",  0, "NHRN DRN",                  "X..20",       any},
    {"714",  0, "NHRN AIM",                  "X..20",       any},
    {"715",  0, "NHRN NDC",                  "X..20",       any},
    {"716",  0, "NHRN AIC",                  "X..20",       any},
    {"717",  0, "NHRN SRN",                  "X..20",       any},
    {"7230", 0, "CERT # 0",                  "X2+X..28",    any},
    {"7231", 0, "CERT # 1",                  "X2+X..28",    any},
    {"7232", 0, "CERT # 2",                  "X2+X..28",    any},
    {"7233", 0, "CERT # 3",                  "X2+X..28",    any},
    {"7234", 0, "CERT # 4",                  "X2+X..28",    any},
    {"7235", 0, "CERT # 5",                  "X2+X..28",    any},
    {"7236", 0, "CERT # 6",                  "X2+X..28",    any},
    {"7237", 0, "CERT # 7",                  "X2+X..28",    any},
    {"7238", 0, "CERT # 8",                  "X2+X..28",    any},
    {"7239", 0, "CERT # 9",                  "X2+X..28",    any},
    {"7240", 0, "PROTOCOL",                  "X..20",       any},
    {"7241", 0, "AIDC MEDIA TYPE",           "N2",          media_type},
    {"7242", 0, "VCN",                       "X..25",       any},
    {"7250", 0, "DOB",                       "N8",          birth_time},
    {"7251", 0, "DOB TIME",                  "N12",         birth_time},
    {"7252", 0, "BIO SEX",                   "N1",          sex},
    {"7253", 0, "FAMILY NAME",               "X..40",       percent},
    {"7254", 0, "GIVEN NAME",                "X..40",       percent},
    {"7255", 0, "SUFFIX",                    "X..10",       percent},
    {"7256", 0, "FULL NAME",                 "X..90",       percent},
    {"7257", 0, "PERSON ADDR",               "X..70",       percent},
    {"7258", 0, "BIRTH SEQUENCE",            "N1+X1+N1",    sequence},
    {"7259", 0, "BABY",                      "X..40",       percent},
    {"8001", 0, "DIMENSIONS",                "N14",         roll},
    {"8002", 0, "CMT No.",                   "X..20",       any},
    {"8003", 0, "GRAI",                      "N14[+X..16]", asset},
    {"8004", 0, "GIAI",                      "X..30",       company_prefix},
    {"8005", 0, "PRICE PER UNIT",            "N6",          any},
    {"8006", 0, "ITIP",                      "N14+N2+N2",   piece},
    {"8007", 0, "IBAN",                      "X..34",       iban},
    {"8008", 0, "PROD TIME",                 "N8[+N..4]",   date_time},
    {"8009", 0, "OPTSEN",                    "X..50",       any},
    {"8010", 0, "CPID",                      "Y..30",       company_prefix},
    {"8011", 0, "CPID SERIAL",               "N..12",       serial_number},
    {"8012", 0, "VERSION",                   "X..20",       any},
    {"8013", 0, "GMN",                       "X..25",       model},
    {"8014", 0, "MUDI",                      "X..25",       model},
    {"8017", 0, "GSRN - PROVIDER",           "N18",         check_digit},
    {"8018", 0, "GSRN - RECIPIENT",          "N18",         check_digit},
    {"8019", 0, "SRIN",                      "N..10",       any},
    {"8020", 0, "REF No.",                   "X..25",       any},
    {"8026", 0, "ITIP CONTENT",              "N14+N2+N2",   piece},
    {"8030", 0, "DIGSIG",                    "Z..90",       any},
    {"8040", 0, "",                          "N15",         any},
    {"8041", 0, "",                          "N15",         any},
    {"8042", 0, "",                          "N32",         any},
    {"8043", 0, "",                          "N18[+N..2]",  any},
    {"8110", 0, "",                          "X..70",       any},
    {"8111", 0, "POINTS",                    "N4",          any},
    {"8112", 0, "",                          "X..70",       any},
    {"8200", 0, "PRODUCT URL",               "X..70",       any},
    {"90",   0, "INTERNAL",                  "X..30",       any},
    {"91",   0, "INTERNAL",                  "X..90",       any},
    {"92",   0, "INTERNAL",                  "X..90",       any},
    {"93",   0, "INTERNAL",                  "X..90",       any},
    {"94",   0, "INTERNAL",                  "X..90",       any},
    {"95",   0, "INTERNAL",                  "X..90",       any},
    {"96",   0, "INTERNAL",                  "X..90",       any},
    {"97",   0, "INTERNAL",                  "X..90",       any},
    {"98",   0, "INTERNAL",                  "X..90",       any},
    {"99",   0, "INTERNAL",                  "X..90",       any},
});
// clang-format on
}  // namespace table

inline constexpr auto& kIdentifiers = table::kRows;

constexpr int number_of(std::string_view digits) {
  int number = 0;
  for (const char digit : digits) number = number * 10 + (digit == 'n' ? 0 : digit - '0');
  return number;
}

static_assert(std::ranges::is_sorted(kIdentifiers, {}, &IdentifierRow::identifier));
static_assert([] {
  int count = 0;
  for (const IdentifierRow& row : kIdentifiers) count += row.most_n + 1;
  return count;
}() == 541);

/// Identifiers by their first two digits (GS1 General Specifications, section 7.8).
struct Prefix {
  std::uint8_t digits = 0;      ///< of the identifier; 0: none begins so
  std::uint8_t predefined = 0;  ///< characters of identifier and data where no separator is needed; else 0
  std::uint16_t first = 0;      ///< place of the identifiers in kPlaces
};

struct Places {
  std::array<Prefix, 100> prefixes{};
  std::array<std::uint8_t, 2000> rows{};  ///< from 1; 0: no such identifier
};

inline constexpr Places kPlaces = [] {
  Places places;
  constexpr auto kPredefined = std::to_array<std::array<std::uint8_t, 3>>({
      // first and last two digits, characters
      {0, 0, 20},
      {1, 3, 16},
      {4, 4, 18},
      {11, 19, 8},
      {20, 20, 4},
      {31, 36, 10},
      {41, 41, 16},
  });
  for (const auto& [first, last, characters] : kPredefined) {
    for (std::size_t two = first; two <= last; ++two) places.prefixes[two].predefined = characters;
  }
  std::size_t free = 0;
  for (std::size_t i = 0; i < kIdentifiers.size(); ++i) {
    const IdentifierRow& row = kIdentifiers[i];
    Prefix& prefix = places.prefixes[static_cast<std::size_t>(number_of(row.identifier.substr(0, 2)))];
    if (prefix.digits == 0) {
      prefix.digits = static_cast<std::uint8_t>(row.identifier.size());
      prefix.first = static_cast<std::uint16_t>(free);
      free += prefix.digits == 2 ? 1 : prefix.digits == 3 ? 10 : 100;
    }
    const auto place = static_cast<std::size_t>(prefix.first + number_of(row.identifier.substr(2)));
    for (std::size_t n = 0; n <= static_cast<std::size_t>(row.most_n); ++n) {
      places.rows[place + n] = static_cast<std::uint8_t>(i + 1);
    }
  }
  return places;
}();

static_assert(kIdentifiers.size() < 256);
static_assert(std::ranges::all_of(kIdentifiers, [](const IdentifierRow& row) {
  const std::string_view two = row.identifier.substr(0, 2);
  return kPlaces.prefixes[static_cast<std::size_t>(number_of(two))].digits == row.identifier.size();
}));

constexpr bool is_digit(char c) {
  return c >= '0' && c <= '9';
}

/// What the first two digits of a text say of its identifier; nullptr when it does not begin with two digits.
constexpr const Prefix* find_prefix(std::string_view text) {
  if (text.size() < 2 || !is_digit(text[0]) || !is_digit(text[1])) return nullptr;
  return &kPlaces.prefixes[static_cast<std::size_t>((text[0] - '0') * 10 + text[1] - '0')];
}

/// The row of an identifier; nullptr when there is none that is spelled so.
constexpr const IdentifierRow* find_identifier(std::string_view identifier) {
  const Prefix* const prefix = find_prefix(identifier);
  if (prefix == nullptr || prefix->digits == 0 || prefix->digits != identifier.size()) return nullptr;
  if (!std::ranges::all_of(identifier, is_digit)) return nullptr;
  const int row = kPlaces.rows[static_cast<std::size_t>(prefix->first + number_of(identifier.substr(2)))];
  return row == 0 ? nullptr : &kIdentifiers[static_cast<std::size_t>(row - 1)];
}

}  // namespace korvex::gs1
