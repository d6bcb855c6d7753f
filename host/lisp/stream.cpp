#include "host/lisp/stream.h"

#include <algorithm>

#include "host/base/codepage.h"
#include "host/base/file.h"

namespace cad::lisp {

std::wstring decode_file(std::string_view bytes) {
  constexpr std::string_view kMark = "\xEF\xBB\xBF";
  if (bytes.starts_with(kMark)) return from_utf8(bytes.substr(kMark.size()));
  std::wstring text = from_utf8(bytes);
  const bool is_utf8 =
      std::none_of(text.begin(), text.end(), [](wchar_t c) { return c >= 0xDC80 && c <= 0xDCFF; });
  return is_utf8 ? text : decode(bytes, CodePage::k936);
}

std::wstring with_plain_line_ends(std::wstring text) {
  std::size_t to = std::min(text.find(L'\r'), text.size());
  for (std::size_t from = to; from < text.size(); ++from) {
    if (text[from] == L'\r') {
      if (from + 1 < text.size() && text[from + 1] == L'\n') continue;
      text[from] = L'\n';
    }
    text[to++] = text[from];
  }
  text.resize(to);
  return text;
}

std::unique_ptr<Stream> Stream::open(const std::string& path, StreamMode mode) {
  std::unique_ptr<Stream> stream(new Stream(mode));
  if (mode == StreamMode::kRead) {
    const Result<MappedFile> file = MappedFile::open(path);
    if (!file) return nullptr;
    stream->text_ = decode_file(file->bytes());
    return stream;
  }
  stream->out_.open(
      path, std::ios::binary | (mode == StreamMode::kAppend ? std::ios::app : std::ios::trunc));
  if (!stream->out_) return nullptr;
  return stream;
}

std::optional<wchar_t> Stream::read_char() {
  if (at_ >= text_.size()) return std::nullopt;
  wchar_t c = text_[at_++];
  if (c == L'\r') {
    if (at_ < text_.size() && text_[at_] == L'\n') ++at_;
    c = L'\n';
  }
  return c;
}

std::optional<std::wstring> Stream::read_line() {
  if (at_ >= text_.size()) return std::nullopt;
  const std::size_t end = std::min(text_.find_first_of(L"\r\n", at_), text_.size());
  std::wstring line = text_.substr(at_, end - at_);
  at_ = end;
  read_char();
  return line;
}

void Stream::write(std::wstring_view text) { out_ << to_utf8(text); }

bool Stream::close() {
  if (mode_ == StreamMode::kRead) return true;
  out_.close();
  return !out_.fail();
}

}  // namespace cad::lisp
