// ISO 3166-1 (249 countries) and ISO 4217 (list one, and codes given up since 2020, which labels outlive).
#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace korvex::iso {

inline constexpr std::string_view kCountryNumbers =
    "004 008 010 012 016 020 024 028 031 032 036 040 044 048 050 051 052 056 060 064 068 070 072 074 "
    "076 084 086 090 092 096 100 104 108 112 116 120 124 132 136 140 144 148 152 156 158 162 166 170 "
    "174 175 178 180 184 188 191 192 196 203 204 208 212 214 218 222 226 231 232 233 234 238 239 242 "
    "246 248 250 254 258 260 262 266 268 270 275 276 288 292 296 300 304 308 312 316 320 324 328 332 "
    "334 336 340 344 348 352 356 360 364 368 372 376 380 384 388 392 398 400 404 408 410 414 417 418 "
    "422 426 428 430 434 438 440 442 446 450 454 458 462 466 470 474 478 480 484 492 496 498 499 500 "
    "504 508 512 516 520 524 528 531 533 534 535 540 548 554 558 562 566 570 574 578 580 581 583 584 "
    "585 586 591 598 600 604 608 612 616 620 624 626 630 634 638 642 643 646 652 654 659 660 662 663 "
    "666 670 674 678 682 686 688 690 694 702 703 704 705 706 710 716 724 728 729 732 740 744 748 752 "
    "756 760 762 764 768 772 776 780 784 788 792 795 796 798 800 804 807 818 826 831 832 833 834 840 "
    "850 854 858 860 862 876 882 887 894";

inline constexpr std::string_view kCountryLetters =
    "AD AE AF AG AI AL AM AO AQ AR AS AT AU AW AX AZ BA BB BD BE BF BG BH BI BJ BL BM BN BO BQ BR BS "
    "BT BV BW BY BZ CA CC CD CF CG CH CI CK CL CM CN CO CR CU CV CW CX CY CZ DE DJ DK DM DO DZ EC EE "
    "EG EH ER ES ET FI FJ FK FM FO FR GA GB GD GE GF GG GH GI GL GM GN GP GQ GR GS GT GU GW GY HK HM "
    "HN HR HT HU ID IE IL IM IN IO IQ IR IS IT JE JM JO JP KE KG KH KI KM KN KP KR KW KY KZ LA LB LC "
    "LI LK LR LS LT LU LV LY MA MC MD ME MF MG MH MK ML MM MN MO MP MQ MR MS MT MU MV MW MX MY MZ NA "
    "NC NE NF NG NI NL NO NP NR NU NZ OM PA PE PF PG PH PK PL PM PN PR PS PT PW PY QA RE RO RS RU RW "
    "SA SB SC SD SE SG SH SI SJ SK SL SM SN SO SR SS ST SV SX SY SZ TC TD TF TG TH TJ TK TL TM TN TO "
    "TR TT TV TW TZ UA UG UM US UY UZ VA VC VE VG VI VN VU WF WS YE YT ZA ZM ZW";

inline constexpr std::string_view kCurrencyNumbers =
    "008 012 032 036 044 048 050 051 052 060 064 068 072 084 090 096 104 108 116 124 132 136 144 152 "
    "156 170 174 188 191 192 203 208 214 222 230 232 238 242 262 270 292 320 324 328 332 340 344 348 "
    "352 356 360 364 368 376 388 392 396 398 400 404 408 410 414 417 418 422 426 430 434 446 454 458 "
    "462 480 484 496 498 504 512 516 524 532 533 548 554 558 566 578 586 590 598 600 604 608 634 643 "
    "646 654 682 690 694 702 704 706 710 728 748 752 756 760 764 776 780 784 788 800 807 818 826 834 "
    "840 858 860 882 886 901 924 925 926 927 928 929 930 931 932 933 934 936 938 940 941 943 944 946 "
    "947 948 949 950 951 952 953 955 956 957 958 959 960 961 962 963 964 965 967 968 969 970 971 972 "
    "973 975 976 977 978 979 980 981 984 985 986 990 994 997 999";

/// Whether `code` is one of `codes`, which are in order, as long as it and a space apart.
constexpr bool is_listed(std::string_view codes, std::string_view code) {
  const std::size_t step = code.size() + 1;
  std::size_t first = 0;
  std::size_t last = (codes.size() + 1) / step;
  while (first < last) {
    const std::size_t middle = (first + last) / 2;
    if (codes.substr(middle * step, code.size()) < code) {
      first = middle + 1;
    } else {
      last = middle;
    }
  }
  return codes.substr(std::min(first * step, codes.size()), code.size()) == code;
}

constexpr bool is_list(std::string_view codes, std::size_t size, std::size_t count) {
  std::string_view before;
  for (std::size_t at = 0; at < codes.size(); at += size + 1) {
    if (codes.substr(at, size) <= before) return false;
    if (at > 0 && codes[at - 1] != ' ') return false;
    before = codes.substr(at, size);
  }
  return codes.size() == count * (size + 1) - 1;
}
static_assert(is_list(kCountryNumbers, 3, 249) && is_list(kCountryLetters, 2, 249));
static_assert(is_list(kCurrencyNumbers, 3, 183));

}  // namespace korvex::iso
