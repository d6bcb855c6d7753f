#include "host/lisp/printer.h"

#include <charconv>
#include <cmath>
#include <vector>

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

void append_real_text(std::wstring& out, double value) {
  if (!std::isfinite(value)) {  // the spelling of the C runtime of the host
    out += std::signbit(value) && !std::isnan(value) ? L"-" : L"";
    out += std::isnan(value) ? L"1.#QNAN" : L"1.#INF";
    return;
  }
  char text[40];
  const char* end =
      std::to_chars(text, text + sizeof text, value, std::chars_format::general, 6).ptr;
  const std::string_view digits(text, static_cast<std::size_t>(end - text));
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

}  // namespace cad::lisp
