#include "host/font/mtext_reader.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

#include "host/base/fold.h"
#include "host/base/numbers.h"
#include "host/font/escapes.h"
#include "host/font/line_layout.h"

namespace cad::font {
namespace {

constexpr double kMost = 1e30;
constexpr wchar_t kFirmBlank = L'\u00A0';
constexpr double kLineDistance = 5.0 / 3.0;

/// Numbers as codes hold them: decimal, and such that their products stay finite; 0 for anything
/// else.
double number(std::wstring_view text) {
  const double value = wtof(text);
  return std::isfinite(value) ? std::clamp(value, -kMost, kMost) : 0.0;
}

/// The part up to the mark, which is dropped.
std::wstring_view take(std::wstring_view& text, wchar_t mark) {
  const std::size_t end = std::min(text.find(mark), text.size());
  const std::wstring_view part = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  return part;
}

MTextParagraph::Align align_of(wchar_t letter) {
  using Align = MTextParagraph::Align;
  switch (fold_ascii(letter)) {
    case L'l':
      return Align::kLeft;
    case L'c':
      return Align::kCenter;
    case L'r':
      return Align::kRight;
    case L'j':
      return Align::kJustified;
    case L'd':
      return Align::kDistributed;
    default:
      return Align::kDefault;
  }
}

}  // namespace

/// How a code is read.
struct MTextReader::Code {
  enum class Value : std::uint8_t { kNone, kNumber, kToSemicolon };
  wchar_t letter;
  Value value;
  void (MTextReader::*apply)(wchar_t code, std::wstring_view value);
};

const MTextReader::Code MTextReader::kCodes[] = {
    {L'L', Code::Value::kNone, &MTextReader::set_line},
    {L'l', Code::Value::kNone, &MTextReader::set_line},
    {L'O', Code::Value::kNone, &MTextReader::set_line},
    {L'o', Code::Value::kNone, &MTextReader::set_line},
    {L'K', Code::Value::kNone, &MTextReader::set_line},
    {L'k', Code::Value::kNone, &MTextReader::set_line},
    {L'H', Code::Value::kNumber, &MTextReader::set_size},
    {L'W', Code::Value::kNumber, &MTextReader::set_size},
    {L'Q', Code::Value::kNumber, &MTextReader::set_size},
    {L'T', Code::Value::kNumber, &MTextReader::set_size},
    {L'A', Code::Value::kNumber, &MTextReader::set_level},
    {L'C', Code::Value::kNumber, &MTextReader::set_colour},
    {L'c', Code::Value::kNumber, &MTextReader::set_colour},
    {L'f', Code::Value::kToSemicolon, &MTextReader::set_font},
    {L'F', Code::Value::kToSemicolon, &MTextReader::set_font},
    {L'p', Code::Value::kToSemicolon, &MTextReader::set_paragraph},
};

MTextReader::MTextReader(std::wstring_view contents, const MTextFormat& start, bool keep_percent)
    : text_(contents),
      base_height_(start.height),
      keep_percent_(keep_percent),
      levels_{{start, 0}} {}

bool MTextReader::next(MTextPiece& piece) {
  while (at_ < text_.size()) {
    const std::size_t begin = at_;
    if (!read_piece(piece)) continue;
    piece.source = text_.substr(begin, at_ - begin);
    return true;
  }
  return false;
}

/// One step: false when it was a code that shows nothing.
bool MTextReader::read_piece(MTextPiece& piece) {
  const wchar_t c = text_[at_];
  switch (c) {
    case L'{':
      open_group(), ++at_;
      return false;
    case L'}':
      close_group(), ++at_;
      return false;
    case L'\r':
      ++at_;
      return false;
    case L'\n':
      piece.kind = MTextPiece::Kind::kParagraphEnd, ++at_;
      return true;
    case L'\t':
      piece.kind = MTextPiece::Kind::kTab, ++at_;
      return true;
    case L'\\':
      return read_backslash(piece);
    case L'%':
      if (!keep_percent_ && percent_code(text_, at_).length > 0) return read_percent(piece);
      break;
    case L'^': {  // a control character as files spell it
      const wchar_t code = at_ + 1 < text_.size() ? text_[at_ + 1] : L'\0';
      if (code == L'I' || code == L'J') {
        piece.kind = code == L'I' ? MTextPiece::Kind::kTab : MTextPiece::Kind::kParagraphEnd;
        at_ += 2;
        return true;
      }
      if (code == L'M') {
        at_ += 2;
        return false;
      }
      break;
    }
    default:
      break;
  }
  return show(c, 1, piece);
}

bool MTextReader::show(wchar_t character, std::size_t length, MTextPiece& piece) {
  piece.kind = MTextPiece::Kind::kCharacter;
  piece.character = character;
  at_ += length;
  return true;
}

bool MTextReader::read_percent(MTextPiece& piece) {
  const Escape escape = percent_code(text_, at_);
  if (escape.toggle == 0) return show(escape.character, escape.length, piece);
  at_ += escape.length;
  MTextFormat& format = changed_format();
  bool& line = escape.toggle == L'u'   ? format.under
               : escape.toggle == L'o' ? format.over
                                       : format.through;
  line = !line;
  return false;
}

bool MTextReader::read_backslash(MTextPiece& piece) {
  if (at_ + 1 == text_.size()) return show(L'\\', 1, piece);
  if (const Escape escape = character_code(text_, at_); escape.length > 0)
    return show(escape.character, escape.length, piece);
  const wchar_t code = text_[at_ + 1];
  switch (code) {
    case L'\\':
    case L'{':
    case L'}':
      return show(code, 2, piece);
    case L'~':
      return show(kFirmBlank, 2, piece);
    case L'P':
    case L'X':  // the end of a dimension's first part
    case L'N':
      piece.kind = code == L'N' ? MTextPiece::Kind::kColumnEnd : MTextPiece::Kind::kParagraphEnd;
      at_ += 2;
      return true;
    case L'S':
      at_ += 2;
      read_fraction(piece);
      return true;
    default:
      break;
  }
  at_ += 2;
  const auto* const row = std::find_if(std::begin(kCodes), std::end(kCodes),
                                       [&](const Code& each) { return each.letter == code; });
  if (row == std::end(kCodes)) {
    ++unknown_[code];
    return false;
  }
  const std::wstring_view value = row->value == Code::Value::kNone     ? std::wstring_view()
                                  : row->value == Code::Value::kNumber ? number_value()
                                                                       : value_to_semicolon();
  (this->*row->apply)(code, value);
  return false;
}

void MTextReader::open_group() {
  constexpr std::size_t kDeepest = 256;
  if (levels_.size() > kDeepest)
    ++too_deep_;
  else
    levels_.push_back(levels_.back());
}

void MTextReader::close_group() {
  if (too_deep_ > 0)
    --too_deep_;
  else if (levels_.size() > 1)
    levels_.pop_back();
}

MTextFormat& MTextReader::changed_format() {
  levels_.back().version = ++versions_;
  return levels_.back().format;
}

std::wstring_view MTextReader::value_to_semicolon() {
  std::wstring_view rest = text_.substr(at_);
  const std::wstring_view value = take(rest, L';');
  at_ = text_.size() - rest.size();
  return value;
}

/// A number with an "x" behind it or without. The semicolon may be missing: only what belongs to
/// the number is taken then.
std::wstring_view MTextReader::number_value() {
  std::size_t end = at_;
  const auto skip = [&](std::wstring_view set) {
    while (end < text_.size() && set.find(text_[end]) != set.npos) ++end;
  };
  constexpr std::wstring_view kDigits = L"0123456789.";
  if (end < text_.size() && (text_[end] == L'+' || text_[end] == L'-')) ++end;
  skip(kDigits);
  if (end > at_ && end + 1 < text_.size() && fold_ascii(text_[end]) == L'e' &&
      (kDigits.substr(0, 10).find(text_[end + 1]) != kDigits.npos || text_[end + 1] == L'-' ||
       text_[end + 1] == L'+')) {
    end += 2;
    skip(kDigits.substr(0, 10));
  }
  if (end < text_.size() && fold_ascii(text_[end]) == L'x') ++end;
  const std::wstring_view value = text_.substr(at_, end - at_);
  at_ = end < text_.size() && text_[end] == L';' ? end + 1 : end;
  return value;
}

void MTextReader::set_line(wchar_t code, std::wstring_view) {
  MTextFormat& format = changed_format();
  const wchar_t letter = fold_ascii(code);
  bool& line = letter == L'l' ? format.under : letter == L'o' ? format.over : format.through;
  line = code != letter;  // the capital letter switches on
}

void MTextReader::set_size(wchar_t code, std::wstring_view value) {
  const double given = number(value);
  if (code == L'Q') {
    constexpr double kDegree = std::numbers::pi / 180.0;
    changed_format().oblique = std::clamp(given * kDegree, -kSteepest, kSteepest);
    return;
  }
  if (!(given > 0.0)) return;
  MTextFormat& format = changed_format();
  double& size = code == L'H'   ? format.height
                 : code == L'W' ? format.width_factor
                                : format.tracking;
  constexpr double kLeast = 1.0 / kMost;
  size = std::clamp(fold_ascii(value.back()) == L'x' ? size * given : given, kLeast, kMost);
}

void MTextReader::set_level(wchar_t, std::wstring_view value) {
  const double level = number(value);
  changed_format().level = level == 1.0   ? MTextFormat::Level::kMiddle
                           : level == 2.0 ? MTextFormat::Level::kTop
                                          : MTextFormat::Level::kBottom;
}

void MTextReader::set_colour(wchar_t code, std::wstring_view value) {
  const int given = wtoi(value);
  Colour& colour = changed_format().colour;
  constexpr int kLastIndex = 256, kAll = 0xFFFFFF;
  if (code == L'C') {
    colour = given >= 0 && given <= kLastIndex
                 ? Colour{Colour::Kind::kIndex, static_cast<std::uint32_t>(given)}
                 : Colour{};
    return;
  }
  // Stored with blue in front.
  const auto bgr = static_cast<std::uint32_t>(given & kAll);
  colour = {Colour::Kind::kTrue, (bgr & 0xFF) << 16 | (bgr & 0xFF00) | bgr >> 16};
}

/// "SimSun|b0|i0|c134|p2", "txt,gbcbig"
void MTextReader::set_font(wchar_t code, std::wstring_view value) {
  MTextFormat& format = changed_format();
  const std::wstring_view name = take(value, L'|');
  format.font = name.empty() ? nullptr : std::make_shared<const std::wstring>(name);
  format.font_is_file = code == L'F' || name.find(L'.') != name.npos;
  format.bold = format.italic = false;
  while (!value.empty()) {
    const std::wstring_view trait = take(value, L'|');
    if (trait.size() < 2) continue;
    const wchar_t letter = fold_ascii(trait[0]);
    if (letter == L'b') format.bold = trait[1] == L'1';
    if (letter == L'i') format.italic = trait[1] == L'1';
  }
}

/// "xqc", "i-2,l2,t2,c8,r12": lengths in text heights; a tab list goes on until the next letter of
/// another property. An asterisk puts the usual value back.
void MTextReader::set_paragraph(wchar_t, std::wstring_view value) {
  bool in_tabs = false;
  while (!value.empty()) {
    std::wstring_view item = take(value, L',');
    if (!item.empty() && item[0] == L'x') item.remove_prefix(1);
    if (item.empty()) continue;
    const wchar_t letter = fold_ascii(item[0]);
    const bool is_tab = letter == L't';
    const std::wstring_view rest = item.substr(1);
    const double length = number(rest) * base_height_;
    if (is_tab) paragraph_.tabs.clear();
    const auto add_tab = [&](std::wstring_view text) {
      if (text.empty() || text[0] == L'*') return;
      MTextParagraph::Align align = align_of(text[0]);
      if (align == MTextParagraph::Align::kDefault)
        align = MTextParagraph::Align::kLeft;
      else
        text.remove_prefix(1);
      paragraph_.tabs.push_back({number(text) * base_height_, align});
    };
    const bool list_goes_on = in_tabs &&
                              (letter == L'c' || letter == L'r' || letter == L'd' ||
                               letter == L'.' || (letter >= L'0' && letter <= L'9')) &&
                              !rest.starts_with(L'*');
    if (is_tab || list_goes_on) {
      in_tabs = true;
      add_tab(is_tab ? rest : item);
      continue;
    }
    in_tabs = false;
    if (letter == L'i') paragraph_.first = length;
    if (letter == L'l') paragraph_.left = length;
    if (letter == L'r') paragraph_.right = length;
    if (letter == L'q') paragraph_.align = rest.empty() ? align_of(0) : align_of(rest[0]);
    if (letter == L's' && !rest.empty()) {
      const double spacing = std::max(0.0, number(rest.substr(1)));
      const bool by_length = rest[0] == L'e';
      const double unit = kLineDistance * base_height_;
      paragraph_.exact_spacing = by_length;
      paragraph_.line_spacing = !by_length ? spacing : unit > 0.0 ? spacing / unit : 0.0;
    }
  }
  std::stable_sort(paragraph_.tabs.begin(), paragraph_.tabs.end(),
                   [](const auto& a, const auto& b) { return a.position < b.position; });
}

/// Behind "\S": "1/2;", "1#2;", "1^ 2;". A backslash keeps a divider from being one.
void MTextReader::read_fraction(MTextPiece& piece) {
  piece.kind = MTextPiece::Kind::kFraction;
  piece.divider = 0;
  piece.upper.clear();
  piece.lower.clear();
  std::wstring* part = &piece.upper;
  while (at_ < text_.size()) {
    if (const Escape escape = character_code(text_, at_); escape.length > 0) {
      part->push_back(escape.character);
      at_ += escape.length;
      continue;
    }
    wchar_t c = text_[at_++];
    if (c == L';') break;
    if (c == L'\\' && at_ < text_.size()) {
      part->push_back(text_[at_++]);
    } else if (piece.divider == 0 && (c == L'/' || c == L'#' || c == L'^')) {
      piece.divider = c;
      part = &piece.lower;
      if (c == L'^' && at_ < text_.size() && text_[at_] == L' ')
        ++at_;  // a caret as files spell it
    } else if (c >= L' ') {
      part->push_back(c);
    }
  }
}

}  // namespace cad::font
