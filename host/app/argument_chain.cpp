#include "host/app/argument_chain.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <string_view>
#include <utility>

#include "host/app/select/selection_sets.h"
#include "host/db/resbuf_owner.h"

namespace cad {
namespace {

using lisp::Kind;
using lisp::Value;

constexpr std::size_t kBufferBlock = 128;
constexpr std::size_t kTextBlock = 4096;

/// The chains in use, for acutRelRb(): one per call under way.
std::vector<const ArgumentChain*>& live_chains() {
  // Outlives the static objects of modules, which may free buffers to the last.
  static auto* const chains = new std::vector<const ArgumentChain*>;
  return *chains;
}

bool is_argument(const resbuf* buffer) {
  return std::any_of(live_chains().begin(), live_chains().end(),
                     [&](const ArgumentChain* chain) { return chain->owns(buffer); });
}

bool is_true_symbol(const Value& value) {
  return value.is_symbol() && value.symbol()->name == L"T";
}

/// Widens the bounds of the host's buffers by a block of them.
void enclose(const resbuf* first, std::size_t count) {
  host_buffers.owns = is_argument;
  host_buffers.begin = std::min(host_buffers.begin, reinterpret_cast<std::uintptr_t>(first));
  host_buffers.end = std::max(host_buffers.end, reinterpret_cast<std::uintptr_t>(first + count));
}

}  // namespace

ArgumentChain::ArgumentChain() { live_chains().push_back(this); }

ArgumentChain::~ArgumentChain() { std::erase(live_chains(), this); }

template <class T>
T* ArgumentChain::Blocks<T>::take(std::size_t count, std::size_t block_size) {
  while (current < blocks.size() && blocks[current].size - used < count) {
    ++current;
    used = 0;
  }
  if (current == blocks.size()) {
    // Doubling keeps the number of blocks, which owns() walks, small.
    const std::size_t size = std::max(count, blocks.empty() ? block_size : 2 * blocks.back().size);
    blocks.push_back({std::make_unique<T[]>(size), size});
    used = 0;
  }
  T* const items = blocks[current].items.get() + used;
  used += count;
  return items;
}

void ArgumentChain::clear() {
  buffers_.clear();
  texts_.clear();
  open_.clear();
  head_ = tail_ = nullptr;
}

bool ArgumentChain::owns(const resbuf* buffer) const {
  const std::less<const resbuf*> before;
  return std::any_of(buffers_.blocks.begin(), buffers_.blocks.end(), [&](const auto& block) {
    return !before(buffer, block.items.get()) && before(buffer, block.items.get() + block.size);
  });
}

resbuf* ArgumentChain::add(short type) {
  const std::size_t blocks = buffers_.blocks.size();
  resbuf* const buffer = buffers_.take(1, kBufferBlock);
  if (buffers_.blocks.size() != blocks) enclose(buffer, buffers_.blocks.back().size);
  *buffer = resbuf{};
  buffer->restype = type;
  (head_ ? tail_->rbnext : head_) = buffer;
  tail_ = buffer;
  return buffer;
}

void ArgumentChain::add_text(std::wstring_view text) {
  ACHAR* const copy = texts_.take(text.size() + 1, kTextBlock);
  *std::copy(text.begin(), text.end(), copy) = L'\0';
  add(RTSTR)->resval.rstring = copy;
}

bool ArgumentChain::append_point(const Value& list) {
  double coordinates[3];
  std::size_t count = 0;
  const Value* rest = &list;
  for (; rest->is_cons(); rest = &rest->cdr()) {
    if (count == 3 || !rest->car().is_real()) return false;
    coordinates[count++] = rest->car().real();
  }
  if (count < 2 || !rest->is_nil()) return false;
  std::copy_n(coordinates, count, add(count == 2 ? RTPOINT : RT3DPOINT)->resval.rpoint);
  return true;
}

bool ArgumentChain::append_atom(const Value& value, SelectionSets& sets) {
  switch (value.kind()) {
    case Kind::kNil:
      add(RTNIL);
      return true;
    case Kind::kInteger: {
      const std::int32_t number = value.integer();
      if (number >= std::numeric_limits<short>::min() &&
          number <= std::numeric_limits<short>::max())
        add(RTSHORT)->resval.rint = static_cast<short>(number);
      else
        add(RTLONG)->resval.rlong = number;
      return true;
    }
    case Kind::kReal:
      add(RTREAL)->resval.rreal = value.real();
      return true;
    case Kind::kString:
      add_text(value.text());
      return true;
    case Kind::kEname:
      add(RTENAME)->resval.rlname[0] = static_cast<std::int64_t>(value.ename());
      return true;
    case Kind::kPickset:
      add(RTPICKS)->resval.rlname[0] = sets.lend(value);
      return true;
    case Kind::kSymbol:
      if (!is_true_symbol(value)) return false;
      add(RTT);
      return true;
    default:
      return false;
  }
}

// Lists may be nested deeper than the stack allows: the rests still to be written are kept aside.
const Value* ArgumentChain::append(const Value& value, SelectionSets& sets) {
  if (!value.is_cons()) return append_atom(value, sets) ? nullptr : &value;
  if (append_point(value)) return nullptr;
  open_.clear();
  add(RTLB);
  const Value* rest = &value;
  for (;;) {
    if (rest->is_cons()) {
      const Value& item = rest->car();
      rest = &rest->cdr();
      if (!item.is_cons()) {
        if (!append_atom(item, sets)) return &item;
      } else if (!append_point(item)) {
        add(RTLB);
        open_.push_back(rest);
        rest = &item;
      }
      continue;
    }
    if (!rest->is_nil()) {
      add(RTDOTE);
      if (!append_atom(*rest, sets)) return rest;
    }
    add(RTLE);
    if (open_.empty()) return nullptr;
    rest = open_.back();
    open_.pop_back();
  }
}

}  // namespace cad
