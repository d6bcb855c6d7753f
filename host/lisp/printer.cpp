#include "host/lisp/printer.h"

#include <charconv>
#include <cmath>
#include <iterator>
#include <string_view>
#include <vector>

#include "host/base/decimal_text.h"
#include "host/lisp/builtin.h"
#include "host/lisp/names.h"

namespace cad::lisp {
namespace {

void append_ascii(std::wstring& out, std::string_view text) {
  out.append(text.begin(), text.end());
}

void append_number(std::wstring& out, std::uint64_t n, int base, std::size_t width = 0) {
  char digits[24];
  const auto end = std::to_chars(digits, digits + sizeof digits, n, base).ptr;
  const auto count = static_cast<std::size_t>(end - digits);
  if (count < width) out.append(width - count, L'0');
  out.append(digits, end);
}

void append_integer(std::wstring& out, std::int32_t n) {
  char digits[16];
  out.append(digits, std::to_chars(digits, digits + sizeof digits, n).ptr);
}

void append_quoted(std::wstring& out, std::wstring_view text) {
  out += L'"';
  for (const wchar_t c : text) {
    switch (c) {
      case L'"':
        out += L"\\\"";
        break;
      case L'\\':
        out += L"\\\\";
        break;
      case L'\n':
        out += L"\\n";
        break;
      case L'\r':
        out += L"\\r";
        break;
      case L'\t':
        out += L"\\t";
        break;
      case 27:
        out += L"\\e";
        break;
      default:
        if (c >= L' ' && c != 127) {
          out += c;
        } else {
          out += L'\\';
          append_number(out, static_cast<std::uint64_t>(c), 8, 3);
        }
    }
  }
  out += L'"';
}

// #<SUBR @0000000000000001 CAR>. The number tells two functions apart, and unlike an address it is
// the same in every run.
void append_function(std::wstring& out, std::wstring_view type, std::uint32_t number,
                     std::wstring_view name) {
  out.append(L"#<").append(type).append(L" @");
  append_number(out, number, 16, 16);
  out.append(L" ").append(name).append(L">");
}

// Everything but lists.
void append_atom(std::wstring& out, const Value& value, Quoting quoting) {
  switch (value.kind()) {
    case Kind::kNil:
      out += L"nil";
      break;
    case Kind::kBlank:
      break;
    case Kind::kInteger:
      append_integer(out, value.integer());
      break;
    case Kind::kReal:
      append_real_text(out, value.real());
      break;
    case Kind::kSymbol:
      out += value.symbol()->name;
      break;
    case Kind::kCons:
      break;
    case Kind::kString:
      if (quoting == Quoting::kPrin1) {
        append_quoted(out, value.text());
      } else {
        out += value.text();
      }
      break;
    case Kind::kEname:
      out += L"<Entity name: ";
      append_number(out, value.ename(), 16);
      out += L'>';
      break;
    case Kind::kPickset:
      out += L"<Selection set: ";
      append_number(out, value.pickset()->number, 16);
      out += L'>';
      break;
    case Kind::kFile:
      out.append(L"#<file \"").append(value.file()->name).append(L"\">");
      break;
    case Kind::kSubr:
      append_function(out, L"SUBR", value.subr()->number, symbol_name(value.subr()->row->name));
      break;
    case Kind::kSpecialForm:
      append_function(out, L"SUBR", value.special()->number,
                      symbol_name(value.special()->row->name));
      break;
    case Kind::kUsubr: {
      const Symbol* name = value.usubr()->name;
      append_function(out, L"USUBR", value.usubr()->number, name ? name->name : L"-lambda-");
      break;
    }
    case Kind::kExternal:
      append_function(out, L"EXRXSUBR", value.external()->number, value.external()->name->name);
      break;
    case Kind::kCatchError:
      out += L"#<%catch-all-apply-error%>";
      break;
  }
}

// Stops, within an atom, behind `most` characters; false then.
bool append_text(std::wstring& out, const Value& value, Quoting quoting, std::size_t most) {
  if (!value.is_cons()) {
    append_atom(out, value, quoting);
    return out.size() <= most;
  }
  // What follows the printed part of each list still open.
  std::vector<const Value*> open;
  out += L'(';
  const Value* at = &value;  // a cons whose first element is printed next
  while (out.size() <= most) {
    const Value& item = at->cons()->car;
    if (item.is_cons()) {
      open.push_back(&at->cons()->cdr);
      out += L'(';
      at = &item;
      continue;
    }
    append_atom(out, item, quoting);
    const Value* rest = &at->cons()->cdr;
    while (!rest->is_cons()) {
      if (!rest->is_nil()) {
        out += L" . ";
        append_atom(out, *rest, quoting);
      }
      out += L')';
      if (open.empty()) return out.size() <= most;
      rest = open.back();
      open.pop_back();
    }
    out += L' ';
    at = rest;
  }
  return false;
}

constexpr std::size_t kLongestStart = 1000;

}  // namespace

std::wstring to_text(const Value& value, Quoting quoting, std::size_t most) {
  std::wstring out;
  if (!append_text(out, value, quoting, most)) raise(L"insufficient string space");
  return out;
}

std::wstring quoted_start(const Value& value) {
  std::wstring out;
  if (append_text(out, value, Quoting::kPrin1, kLongestStart)) return out;
  out.resize(kLongestStart);
  return out + L"...";
}

namespace {

constexpr int kDigits = 6;

/// Whether the value may lie halfway between two numbers of six digits: the host goes away from
/// zero there, to_chars to the even digit.
bool may_be_a_tie(double value) {
  char text[40];
  const char* const end =
      std::to_chars(text, std::end(text), std::fabs(value), std::chars_format::scientific).ptr;
  const std::string_view digits(text, static_cast<std::size_t>(end - text));
  return digits.find("5e") == std::size_t{kDigits} + 1;  // 1.234565e+02
}

/// Digits of printf's "%g", with a decimal and three digits of an exponent at least.
void append_digits(std::wstring& out, std::string_view digits) {
  const std::size_t e = digits.find('e');
  const std::string_view mantissa = digits.substr(0, e);
  append_ascii(out, mantissa);
  if (mantissa.find('.') == mantissa.npos) out += L".0";
  if (e == digits.npos) return;
  append_ascii(out, digits.substr(e, 2));  // "e+"
  const std::string_view exponent = digits.substr(e + 2);
  if (exponent.size() < 3) out.append(3 - exponent.size(), L'0');
  append_ascii(out, exponent);
}

}  // namespace

void append_real_text(std::wstring& out, double value) {
  if (!std::isfinite(value)) {  // the spelling of the C runtime of the host
    out += std::signbit(value) && !std::isnan(value) ? L"-" : L"";
    out += std::isnan(value) ? L"1.#QNAN" : L"1.#INF";
    return;
  }
  // The exact expansion is only asked for where it matters: it takes twenty times as long.
  if (may_be_a_tie(value)) return append_digits(out, DecimalText::general(value, kDigits).view());
  char text[40];
  const char* const end =
      std::to_chars(text, std::end(text), value, std::chars_format::general, kDigits).ptr;
  append_digits(out, {text, static_cast<std::size_t>(end - text)});
}

}  // namespace cad::lisp
