#include "host/lisp/value.h"

#include "host/lisp/stream.h"

namespace cad::lisp {

File::File(std::wstring file_name, std::unique_ptr<Stream> opened)
    : Cell(Kind::kFile), name(std::move(file_name)), stream(std::move(opened)) {}

File::~File() = default;

std::size_t List::size() const {
  std::size_t count = 0;
  for (const Value* at = head_; at->is_cons(); at = &at->cons()->cdr) ++count;
  return count;
}

const Value& List::at_or_nil(std::int64_t n) const {
  if (n < 0) return kNil;
  const Value* at = head_;
  for (; n > 0 && at->is_cons(); --n) at = &at->cons()->cdr;
  return at->car();
}

}  // namespace cad::lisp
