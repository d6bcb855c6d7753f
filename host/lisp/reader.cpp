#include "host/lisp/reader.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include "host/base/fold.h"
#include "host/base/numbers.h"

namespace cad::lisp {
namespace {

bool is_blank(wchar_t c) {
  // 26 ends old text files; a byte order mark may stand where files were joined.
  return c == L' ' || (c >= L'\t' && c <= L'\r') || c == 26 || c == 0xFEFF;
}

bool ends_token(wchar_t c) {
  return is_blank(c) || c == L'(' || c == L')' || c == L'\'' || c == L'"' || c == L';';
}

bool is_digit(wchar_t c) { return c >= L'0' && c <= L'9'; }

int hex_digit(wchar_t c) {
  if (is_digit(c)) return c - L'0';
  if (c >= L'a' && c <= L'f') return c - L'a' + 10;
  if (c >= L'A' && c <= L'F') return c - L'A' + 10;
  return -1;
}

std::size_t skip_digits(std::wstring_view text, std::size_t at) {
  while (at < text.size() && is_digit(text[at])) ++at;
  return at;
}

std::optional<std::int32_t> parse_integer(std::wstring_view token) {
  char digits[16];
  if (token.front() == L'+') token.remove_prefix(1);
  if (token.size() > sizeof digits) return std::nullopt;
  const auto end = std::transform(token.begin(), token.end(), digits,
                                  [](wchar_t c) { return static_cast<char>(c); });
  std::int32_t value = 0;
  if (std::from_chars(digits, end, value).ec != std::errc()) return std::nullopt;
  // The host reads the smallest integer as a real.
  if (value == INT32_MIN) return std::nullopt;
  return value;
}

}  // namespace

std::optional<Value> parse_number(std::wstring_view token) {
  std::size_t at = !token.empty() && (token[0] == L'+' || token[0] == L'-') ? 1 : 0;
  const std::size_t whole = at;
  at = skip_digits(token, at);
  std::size_t digits = at - whole;
  if (digits > 0 && at == token.size()) {
    if (const auto integer = parse_integer(token)) return Value::integer(*integer);
    return Value::real(wtof(token));
  }
  if (at < token.size() && token[at] == L'.') {
    const std::size_t decimals = at + 1;
    at = skip_digits(token, decimals);
    digits += at - decimals;
  }
  if (digits == 0) return std::nullopt;
  if (at < token.size() && (token[at] == L'e' || token[at] == L'E')) {
    ++at;
    if (at < token.size() && (token[at] == L'+' || token[at] == L'-')) ++at;
    const std::size_t exponent = at;
    at = skip_digits(token, at);
    if (at == exponent) return std::nullopt;
  }
  if (at != token.size()) return std::nullopt;
  return Value::real(wtof(token));
}

// A list being read, or a quote waiting for what it quotes.
struct Reader::Level {
  enum class State { kItems, kAfterDot, kClosed };

  explicit Level(bool is_quote) : quote(is_quote) {}

  bool quote;
  State state = State::kItems;
  Value head;
  Cons* last = nullptr;

  void add(Heap& heap, Value item) {
    switch (state) {
      case State::kItems: {
        Value cell = heap.cons(std::move(item), Value());
        Cons* added = cell.cons();
        (last != nullptr ? last->cdr : head) = std::move(cell);
        last = added;
        break;
      }
      case State::kAfterDot:
        last->cdr = std::move(item);
        state = State::kClosed;
        break;
      case State::kClosed:
        raise(L"extra cdrs in dotted pair on input");
    }
  }
};

std::optional<Value> Reader::next() {
  skip_blanks();
  form_line_ = line_;
  if (at_end()) return std::nullopt;

  Heap& heap = interp_.heap();
  std::vector<Level> levels;
  for (;;) {
    skip_blanks();
    if (at_end()) raise(L"malformed list on input");
    Value item;
    switch (text_[at_]) {
      case L'(':
        ++at_;
        levels.emplace_back(false);
        continue;
      case L'\'':
        ++at_;
        levels.emplace_back(true);
        continue;
      case L')':
        ++at_;
        if (levels.empty()) raise(L"extra right paren on input");
        if (levels.back().quote) raise(L"malformed list on input");
        if (levels.back().state == Level::State::kAfterDot) raise(L"misplaced dot on input");
        item = std::move(levels.back().head);
        levels.pop_back();
        break;
      case L'"':
        item = read_string();
        break;
      default: {
        const std::wstring_view token = take_token();
        if (token == L".") {
          if (levels.empty() || levels.back().last == nullptr ||
              levels.back().state != Level::State::kItems) {
            raise(L"misplaced dot on input");
          }
          levels.back().state = Level::State::kAfterDot;
          continue;
        }
        item = read_atom(token);
      }
    }
    while (!levels.empty() && levels.back().quote) {
      item = interp_.list({Value::symbol(&interp_.intern(L"QUOTE")), std::move(item)});
      levels.pop_back();
    }
    if (levels.empty()) return item;
    levels.back().add(heap, std::move(item));
  }
}

void Reader::skip_blanks() {
  while (!at_end()) {
    const wchar_t c = text_[at_];
    if (c == L';') {
      skip_comment();
    } else if (is_blank(c)) {
      line_ += c == L'\n';
      ++at_;
    } else {
      return;
    }
  }
}

// ;| up to |; (over lines), any other up to the end of the line.
void Reader::skip_comment() {
  if (!text_.substr(at_).starts_with(L";|")) {
    at_ = std::min(text_.find(L'\n', at_), text_.size());
    return;
  }
  const std::size_t mark = text_.find(L"|;", at_ + 2);
  const std::size_t end = mark == text_.npos ? text_.size() : mark + 2;
  line_ += static_cast<std::uint32_t>(std::count(text_.begin() + static_cast<std::ptrdiff_t>(at_),
                                                 text_.begin() + static_cast<std::ptrdiff_t>(end),
                                                 L'\n'));
  at_ = end;
}

std::wstring_view Reader::take_token() {
  const std::size_t start = at_;
  while (!at_end() && !ends_token(text_[at_])) ++at_;
  return text_.substr(start, at_ - start);
}

Value Reader::read_atom(std::wstring_view token) {
  if (auto number = parse_number(token)) return *std::move(number);
  if (token.size() == 3 && equal_no_case(token, L"nil")) return Value();
  return Value::symbol(&interp_.intern(token));
}

Value Reader::read_string() {
  ++at_;
  std::wstring out;
  while (!at_end()) {
    const wchar_t c = text_[at_++];
    if (c == L'"') return interp_.string(out);
    line_ += c == L'\n';
    out += c == L'\\' && !at_end() ? read_escape() : c;
  }
  raise(L"malformed string on input");
}

// Stands behind the backslash. An unknown letter stands for itself.
wchar_t Reader::read_escape() {
  const wchar_t c = text_[at_++];
  switch (c) {
    case L'e':
      return 27;
    case L'n':
      return L'\n';
    case L'r':
      return L'\r';
    case L't':
      return L'\t';
    case L'\n':
      ++line_;
      return c;
    default:
      break;
  }
  if (c == L'U' && text_.size() - at_ >= 5 && text_[at_] == L'+') {
    int code = 0;
    for (std::size_t i = 1; i <= 4; ++i) {
      const int digit = hex_digit(text_[at_ + i]);
      if (digit < 0) return c;
      code = code * 16 + digit;
    }
    at_ += 5;
    return static_cast<wchar_t>(code);
  }
  if (c < L'0' || c > L'7') return c;
  int code = c - L'0';
  for (int i = 1; i < 3 && !at_end() && text_[at_] >= L'0' && text_[at_] <= L'7'; ++i) {
    code = code * 8 + (text_[at_++] - L'0');
  }
  return static_cast<wchar_t>(code);
}

Unfinished unfinished(std::wstring_view source) {
  Unfinished state;
  for (std::size_t at = 0; at < source.size(); ++at) {
    switch (source[at]) {
      case L'(':
        ++state.lists;
        break;
      case L')':
        --state.lists;
        break;
      case L'"':
        for (++at; at < source.size() && source[at] != L'"'; ++at) at += source[at] == L'\\';
        state.text = at >= source.size();
        break;
      case L';':
        if (source.substr(at).starts_with(L";|")) {
          at = source.find(L"|;", at + 2);
          state.text = at == source.npos;
          if (!state.text) ++at;
        } else {
          at = source.find(L'\n', at);
        }
        if (at == source.npos) return state;
        break;
      default:
        break;
    }
  }
  return state;
}

}  // namespace cad::lisp
