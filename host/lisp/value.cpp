#include "host/lisp/value.h"

#include "host/lisp/heap.h"
#include "host/lisp/stream.h"

namespace cad::lisp {

File::File(std::wstring file_name, std::unique_ptr<Stream> opened)
    : Cell(Kind::kFile), name(std::move(file_name)), stream(std::move(opened)) {}

File::~File() = default;

// What a member costs, with its place in the index of members.
static constexpr std::size_t kMemberBytes = 40;

Pickset::~Pickset() { Heap::of(this).discharge(enames.size() * kMemberBytes); }

bool Pickset::add(std::uint64_t ename) {
  if (ename == 0 || enames.contains(ename)) return false;
  Heap::of(this).charge(kMemberBytes);
  return enames.add(ename);
}

bool Pickset::remove(std::uint64_t ename) {
  if (!enames.remove(ename)) return false;
  Heap::of(this).discharge(kMemberBytes);
  return true;
}

void Pickset::assign(std::vector<std::uint64_t> members) {
  Heap::of(this).charge(members.size() * kMemberBytes);
  Heap::of(this).discharge(enames.size() * kMemberBytes);
  enames.assign(std::move(members));
}

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
