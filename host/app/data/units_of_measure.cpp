#include "host/app/data/units_of_measure.h"

#include <charconv>
#include <cmath>
#include <numbers>
#include <string>

#include "host/base/fold.h"

namespace cad {
namespace {

/// A base unit, or one that is defined by an exact number of them.
struct Row {
  const char* names;  ///< by blanks; the first is the usual one. A plural s is understood
  double factor;
  char kind;  ///< L length, A area, V volume, M mass, T time, K temperature, R angle
  double offset = 0;
  bool prefixed = false;  ///< takes kilo, milli, ...
};

constexpr double kFoot = 0.3048;                         // international foot, by definition
constexpr double kInch = 0.0254;                         // likewise
constexpr double kPound = 453.59237;                     // grams, by definition
constexpr double kGallon = 231 * kInch * kInch * kInch;  // United States gallon, by definition
constexpr double kPi = std::numbers::pi;

// The factors are the definitions of the units: of the international yard and pound agreement, of
// the SI and of the units accepted beside it.
constexpr Row kRows[] = {
    {"meter metre m", 1, 'L', 0, true},
    {"inch in inches \"", kInch, 'L'},
    {"foot ft feet '", kFoot, 'L'},
    {"yard yd", 3 * kFoot, 'L'},
    {"mile mi", 5280 * kFoot, 'L'},
    {"nautical_mile nmi", 1852, 'L'},
    {"survey_foot", 1200.0 / 3937.0, 'L'},
    {"rod pole perch", 16.5 * kFoot, 'L'},
    {"chain", 66 * kFoot, 'L'},
    {"link", 0.66 * kFoot, 'L'},
    {"furlong", 660 * kFoot, 'L'},
    {"fathom", 6 * kFoot, 'L'},
    {"hand", 4 * kInch, 'L'},
    {"mil", kInch / 1000, 'L'},
    {"point", kInch / 72, 'L'},
    {"micron", 1e-6, 'L'},
    {"angstrom", 1e-10, 'L'},
    {"astronomical_unit au", 149597870700, 'L'},
    {"light_year", 9460730472580800, 'L'},
    {"parsec", 149597870700 * 648000 / kPi, 'L'},
    {"chi", 1.0 / 3, 'L'},
    {"li", 500, 'L'},
    {"are", 100, 'A', 0, true},
    {"hectare ha", 10000, 'A'},
    {"acre", 43560 * kFoot* kFoot, 'A'},
    {"mu", 10000.0 / 15, 'A'},
    {"liter litre l", 0.001, 'V', 0, true},
    {"gallon gal", kGallon, 'V'},
    {"quart qt", kGallon / 4, 'V'},
    {"pint pt", kGallon / 8, 'V'},
    {"cup", kGallon / 16, 'V'},
    {"fluid_ounce floz", kGallon / 128, 'V'},
    {"barrel bbl", 42 * kGallon, 'V'},
    {"board_foot", kFoot* kFoot* kInch, 'V'},
    {"gram g", 1, 'M', 0, true},
    {"ton_metric tonne t", 1e6, 'M'},
    {"pound lb lbs", kPound, 'M'},
    {"ounce oz", kPound / 16, 'M'},
    {"grain", kPound / 7000, 'M'},
    {"stone", 14 * kPound, 'M'},
    {"ton", 2000 * kPound, 'M'},
    {"long_ton", 2240 * kPound, 'M'},
    {"jin", 500, 'M'},
    {"second sec s", 1, 'T', 0, true},
    {"minute min", 60, 'T'},
    {"hour hr h", 3600, 'T'},
    {"day", 86400, 'T'},
    {"week wk", 604800, 'T'},
    {"fortnight", 1209600, 'T'},
    {"year yr", 365.25 * 86400, 'T'},
    {"kelvin k", 1, 'K'},
    {"celsius centigrade c", 1, 'K', 273.15},
    {"fahrenheit f", 5.0 / 9, 'K', 273.15 - 32 * 5.0 / 9},
    {"rankine", 5.0 / 9, 'K'},
    {"radian rad", 1, 'R', 0, true},
    {"degree deg", kPi / 180, 'R'},
    {"grad gon", kPi / 200, 'R'},
    {"circle revolution rev turn", 2 * kPi, 'R'},
};

struct Prefix {
  std::string_view name;
  std::string_view symbol;
  double factor;
};
constexpr Prefix kPrefixes[] = {
    {"tera", "T", 1e12},  {"giga", "G", 1e9},   {"mega", "M", 1e6},  {"kilo", "k", 1e3},
    {"hecto", "h", 1e2},  {"deka", "da", 10},   {"deci", "d", 1e-1}, {"centi", "c", 1e-2},
    {"milli", "m", 1e-3}, {"micro", "u", 1e-6}, {"nano", "n", 1e-9}, {"pico", "p", 1e-12},
};

UnitOfMeasure unit_of(const Row& row, double factor) {
  UnitOfMeasure unit;
  unit.factor = row.factor * factor;
  unit.offset = row.offset;
  switch (row.kind) {
    case 'L':
      unit.length = 1;
      break;
    case 'A':
      unit.length = 2;
      break;
    case 'V':
      unit.length = 3;
      break;
    case 'M':
      unit.mass = 1;
      break;
    case 'T':
      unit.time = 1;
      break;
    case 'K':
      unit.temperature = 1;
      break;
    default:
      unit.angle = 1;
  }
  return unit;
}

/// Whether a name of the row is `text`, a plural s at either understood.
bool is_named(const Row& row, std::string_view text) {
  std::string_view names = row.names;
  while (!names.empty()) {
    const std::size_t blank = std::min(names.find(' '), names.size());
    const std::string_view name = names.substr(0, blank);
    names.remove_prefix(std::min(blank + 1, names.size()));
    const bool is_symbol = name.size() <= 2;
    if (equal_no_case(name, text)) return true;
    const bool plural = !is_symbol && text.size() == name.size() + 1 && (text.back() | 32) == 's';
    if (plural && equal_no_case(name, text.substr(0, name.size()))) return true;
  }
  return false;
}

std::optional<UnitOfMeasure> plain_unit(std::string_view text) {
  for (const Row& row : kRows)
    if (is_named(row, text)) return unit_of(row, 1);
  for (const Prefix& prefix : kPrefixes) {
    const bool by_name = text.size() > prefix.name.size() &&
                         equal_no_case(text.substr(0, prefix.name.size()), prefix.name);
    const bool by_symbol = text.starts_with(prefix.symbol) && text.size() > prefix.symbol.size();
    if (!by_name && !by_symbol) continue;
    for (const Row& row : kRows) {
      if (!row.prefixed) continue;
      const std::string_view rest =
          text.substr(by_name ? prefix.name.size() : prefix.symbol.size());
      const bool is_symbol = rest.size() <= 3;
      if ((by_name || (by_symbol && is_symbol)) && is_named(row, rest))
        return unit_of(row, prefix.factor);
    }
  }
  return std::nullopt;
}

void raise_to(UnitOfMeasure& unit, int power) {
  unit.factor = std::pow(unit.factor, power);
  if (power != 1) unit.offset = 0;
  for (int* exponent : {&unit.length, &unit.mass, &unit.time, &unit.temperature, &unit.angle})
    *exponent *= power;
}

void multiply(UnitOfMeasure& by, const UnitOfMeasure& unit) {
  by.factor *= unit.factor;
  by.offset = unit.offset;
  by.length += unit.length;
  by.mass += unit.mass;
  by.time += unit.time;
  by.temperature += unit.temperature;
  by.angle += unit.angle;
}

/// "sq ", "square ", "cubic ", "cu " in front of a unit; they leave the text.
int leading_power(std::string_view& text) {
  constexpr std::pair<std::string_view, int> kWords[] = {
      {"square ", 2}, {"sq ", 2}, {"square_", 2}, {"sq_", 2},
      {"cubic ", 3},  {"cu ", 3}, {"cubic_", 3},  {"cu_", 3},
  };
  for (const auto& [word, power] : kWords) {
    if (text.size() <= word.size() || !equal_no_case(text.substr(0, word.size()), word)) continue;
    text.remove_prefix(word.size());
    return power;
  }
  return 1;
}

/// One factor: a unit with a power behind it ("m^2", "m2") or a word in front.
std::optional<UnitOfMeasure> unit_with_power(std::string_view text) {
  int power = leading_power(text);
  if (const std::size_t digits = text.find_first_of("^0123456789");
      digits != std::string_view::npos) {
    std::string_view number = text.substr(digits);
    if (number.front() == '^') number.remove_prefix(1);
    int exponent = 0;
    const char* const end = number.data() + number.size();
    const auto read = std::from_chars(number.data(), end, exponent);
    constexpr int kMost = 9;
    if (read.ec != std::errc() || read.ptr != end || exponent < 1 || exponent > kMost)
      return std::nullopt;
    power *= exponent;
    text = text.substr(0, digits);
  }
  std::optional<UnitOfMeasure> unit = plain_unit(text);
  if (unit) raise_to(*unit, power);
  return unit;
}

std::string_view trimmed(std::string_view text) {
  while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  return text;
}

}  // namespace

bool UnitOfMeasure::same_kind(const UnitOfMeasure& other) const {
  return length == other.length && mass == other.mass && time == other.time &&
         temperature == other.temperature && angle == other.angle;
}

std::optional<UnitOfMeasure> unit_of_measure(std::string_view text) {
  text = trimmed(text);
  std::optional<UnitOfMeasure> product;
  bool divides = false;
  while (true) {
    const std::size_t end = std::min(text.find_first_of("*/"), text.size());
    std::optional<UnitOfMeasure> unit = unit_with_power(trimmed(text.substr(0, end)));
    if (!unit) return std::nullopt;
    if (divides) raise_to(*unit, -1);
    if (product) {
      multiply(*product, *unit);
      product->offset = 0;
    } else {
      product = unit;
    }
    if (end == text.size()) return product;
    divides = text[end] == '/';
    text.remove_prefix(end + 1);
  }
}

}  // namespace cad
