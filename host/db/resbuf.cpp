#include "host/db/resbuf.h"

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <new>
#include <utility>

#include "host/db/resbuf_owner.h"
#include "host/dxf/group_codes.h"

namespace {

/// A buffer with room for a short string behind it, so that the usual buffer is one block from a
/// free list. `own` lies behind the published part: whoever holds only a resbuf* can still hang an
/// acutNewString() into it.
struct Cell {
  resbuf buffer;
  wchar_t own[24];
};
static_assert(sizeof(Cell) <= 144);

#if defined(__SANITIZE_ADDRESS__)
constexpr bool kPooled = false;  // let the sanitizer see every block
#else
constexpr bool kPooled = true;
#endif

/// Free cells, linked through rbnext. Buffers belong to the main thread, as in the host.
struct CellPool {
  resbuf* free = nullptr;
  std::size_t count = 0;
  static constexpr std::size_t kMost = 4096;

  ~CellPool() {
    while (free) {
      resbuf* next = free->rbnext;
      std::free(free);
      free = next;
    }
  }
};
CellPool pool;

resbuf* new_cell() {
  void* memory = nullptr;
  if (kPooled && pool.free) {
    memory = pool.free;
    pool.free = pool.free->rbnext;
    --pool.count;
  } else {
    memory = std::malloc(sizeof(Cell));
    if (!memory) throw std::bad_alloc();
  }
  auto* buffer = static_cast<resbuf*>(memory);
  std::memset(buffer, 0, sizeof(resbuf));
  return buffer;
}

wchar_t* own_text(resbuf* buffer) { return reinterpret_cast<Cell*>(buffer)->own; }

void free_cell(resbuf* buffer) {
  using cad::BufferValue;
  switch (cad::buffer_value(buffer->restype)) {
    case BufferValue::kString:
      if (buffer->resval.rstring != own_text(buffer)) std::free(buffer->resval.rstring);
      break;
    case BufferValue::kName:
      if (cad::name_is_text(buffer->restype) && buffer->resval.rstring != own_text(buffer)) {
        std::free(buffer->resval.rstring);
      }
      break;
    case BufferValue::kBinary:
      std::free(buffer->resval.rbinary.buf);
      break;
    default:
      break;
  }
  if (kPooled && pool.count < CellPool::kMost) {
    buffer->rbnext = pool.free;
    pool.free = buffer;
    ++pool.count;
  } else {
    std::free(buffer);
  }
}

wchar_t* copy_text(std::wstring_view text) {
  auto* copy = static_cast<wchar_t*>(std::malloc((text.size() + 1) * sizeof(wchar_t)));
  if (!copy) throw std::bad_alloc();
  std::wmemcpy(copy, text.data(), text.size());
  copy[text.size()] = L'\0';
  return copy;
}

template <class Char>
void set_text(resbuf* buffer, std::basic_string_view<Char> text) {
  constexpr std::size_t kOwn = std::size(Cell{}.own);
  wchar_t* to = own_text(buffer);
  if (text.size() >= kOwn) {
    to = static_cast<wchar_t*>(std::malloc((text.size() + 1) * sizeof(wchar_t)));
    if (!to) throw std::bad_alloc();
  }
  *std::copy(text.begin(), text.end(), to) = L'\0';
  buffer->resval.rstring = to;
}

struct LispType {
  short type;
  cad::BufferValue value;
};

constexpr LispType kLispTypes[] = {
    {RTNONE, cad::BufferValue::kNone},   {RTREAL, cad::BufferValue::kReal},
    {RTPOINT, cad::BufferValue::kPoint}, {RTSHORT, cad::BufferValue::kInt16},
    {RTANG, cad::BufferValue::kReal},    {RTSTR, cad::BufferValue::kString},
    {RTENAME, cad::BufferValue::kName},  {RTPICKS, cad::BufferValue::kName},
    {RTORINT, cad::BufferValue::kReal},  {RT3DPOINT, cad::BufferValue::kPoint},
    {RTLONG, cad::BufferValue::kInt32},  {RTVOID, cad::BufferValue::kNone},
    {RTLB, cad::BufferValue::kNone},     {RTLE, cad::BufferValue::kNone},
    {RTDOTE, cad::BufferValue::kNone},   {RTNIL, cad::BufferValue::kNone},
    {RTDXF0, cad::BufferValue::kString}, {RTT, cad::BufferValue::kNone},
    {-4, cad::BufferValue::kString},  // an operator in a selection filter
};

constexpr cad::BufferValue value_of_group(int code) {
  using cad::BufferValue;
  if (cad::dxf::is_point_code(code)) return BufferValue::kPoint;
  switch (cad::dxf::value_type(code)) {
    case cad::dxf::ValueType::kText:
      return BufferValue::kString;
    case cad::dxf::ValueType::kHandle:
      return BufferValue::kName;
    case cad::dxf::ValueType::kReal:
      return BufferValue::kReal;
    case cad::dxf::ValueType::kInt16:
    case cad::dxf::ValueType::kBool:
      return BufferValue::kInt16;
    case cad::dxf::ValueType::kInt32:
      return BufferValue::kInt32;
    case cad::dxf::ValueType::kInt64:
      return BufferValue::kInt64;
    case cad::dxf::ValueType::kChunk:
      return BufferValue::kBinary;
  }
  return BufferValue::kNone;
}

constexpr int kLastGroup = cad::dxf::kLastGroupCode;

constexpr auto kGroupValues = [] {
  std::array<cad::BufferValue, kLastGroup + 1> table{};
  for (int code = 0; code <= kLastGroup; ++code) {
    table[static_cast<std::size_t>(code)] = value_of_group(code);
  }
  return table;
}();

/// Types that stand in a list of acutBuildList() without a value.
bool stands_alone(int type) {
  return type == RTLB || type == RTLE || type == RTDOTE || type == RTNIL || type == RTT ||
         type == RTVOID || type == -3;
}

}  // namespace

namespace cad {

BufferValue buffer_value(int type) {
  if (type >= 0 && type <= kLastGroup) return kGroupValues[static_cast<std::size_t>(type)];
  for (const LispType& row : kLispTypes) {
    if (row.type == type) return row.value;
  }
  if (type == -1 || type == -2) return BufferValue::kName;
  if (type == -4) return BufferValue::kString;  // an operator in a selection filter
  return BufferValue::kNone;
}

bool name_is_text(int type) {
  return type == 5 || type == 105 || type == 1005 || (type >= 320 && type <= 329);
}

resbuf* new_string_buffer(short type, std::wstring_view text) {
  resbuf* buffer = new_cell();
  buffer->restype = type;
  set_text(buffer, text);
  return buffer;
}

resbuf* new_ascii_buffer(short type, std::string_view text) {
  resbuf* buffer = new_cell();
  buffer->restype = type;
  set_text(buffer, text);
  return buffer;
}

resbuf* copy_buffer(const resbuf& from) {
  resbuf* copy = new_cell();
  copy->restype = from.restype;
  const BufferValue value = buffer_value(from.restype);
  if (value == BufferValue::kString ||
      (value == BufferValue::kName && name_is_text(from.restype))) {
    if (from.resval.rstring) set_text(copy, std::wstring_view(from.resval.rstring));
  } else if (value == BufferValue::kBinary) {
    const auto size = static_cast<std::size_t>(from.resval.rbinary.clen);
    copy->resval.rbinary.clen = from.resval.rbinary.clen;
    copy->resval.rbinary.buf = static_cast<char*>(std::malloc(size ? size : 1));
    if (size != 0) std::memcpy(copy->resval.rbinary.buf, from.resval.rbinary.buf, size);
  } else {
    copy->resval = from.resval;
  }
  return copy;
}

resbuf* copy_chain(const resbuf* chain) {
  ChainBuilder copy;
  for (; chain; chain = chain->rbnext) copy.add(copy_buffer(*chain));
  return copy.release();
}

}  // namespace cad

resbuf* acutNewRb(int type) {
  resbuf* buffer = new_cell();
  buffer->restype = static_cast<short>(type);
  return buffer;
}

int acutRelRb(resbuf* chain) {
  while (chain) {
    if (cad::host_buffers.contains(chain)) break;
    resbuf* next = chain->rbnext;
    free_cell(chain);
    chain = next;
  }
  return RTNORM;
}

resbuf* acutBuildList(int type, ...) {
  cad::ChainBuilder chain;
  va_list arguments;
  va_start(arguments, type);
  bool sound = true;
  for (int current = type; sound && current != 0 && current != RTNONE;
       current = va_arg(arguments, int)) {
    if (stands_alone(current)) {
      chain.add(acutNewRb(current));
      continue;
    }
    const cad::BufferValue value = cad::buffer_value(current);
    if (value == cad::BufferValue::kString || cad::name_is_text(current)) {
      const ACHAR* text = va_arg(arguments, const ACHAR*);
      const int stored = current == RTDXF0 ? 0 : current;
      chain.add(cad::new_string_buffer(static_cast<short>(stored), text ? text : L""));
      continue;
    }
    resbuf* buffer = acutNewRb(current);
    chain.add(buffer);
    switch (value) {
      case cad::BufferValue::kReal:
        buffer->resval.rreal = va_arg(arguments, double);
        break;
      case cad::BufferValue::kPoint: {
        const ads_real* point = va_arg(arguments, const ads_real*);
        for (int i = 0; i < (current == RTPOINT ? 2 : 3); ++i) buffer->resval.rpoint[i] = point[i];
        break;
      }
      case cad::BufferValue::kInt16:
        buffer->resval.rint = static_cast<short>(va_arg(arguments, int));
        break;
      case cad::BufferValue::kInt32:
        buffer->resval.rlong = va_arg(arguments, int);
        break;
      case cad::BufferValue::kInt64:
        buffer->resval.mnInt64 = va_arg(arguments, std::int64_t);
        break;
      case cad::BufferValue::kName: {
        const std::int64_t* name = va_arg(arguments, const std::int64_t*);
        buffer->resval.rlname[0] = name[0];
        buffer->resval.rlname[1] = name[1];
        break;
      }
      case cad::BufferValue::kBinary: {
        const auto* chunk = va_arg(arguments, const ads_binary*);
        resbuf source{};
        source.restype = static_cast<short>(current);
        source.resval.rbinary = *chunk;
        resbuf* copy = cad::copy_buffer(source);
        std::swap(buffer->resval.rbinary, copy->resval.rbinary);
        acutRelRb(copy);
        break;
      }
      case cad::BufferValue::kString:
      case cad::BufferValue::kNone:
        sound = false;  // an unknown type: its argument cannot be skipped
        break;
    }
  }
  va_end(arguments);
  return sound ? chain.release() : nullptr;
}

ACHAR* acutNewString(const ACHAR* text) { return copy_text(text ? text : L""); }

void acutDelString(ACHAR*& text) {
  // A short string lies inside its buffer. Programs free the string of a buffer and hang in
  // another: when `text` is a buffer's own rstring, its address tells where that buffer's room is.
  const auto own =
      reinterpret_cast<std::uintptr_t>(&text) - offsetof(resbuf, resval) + offsetof(Cell, own);
  if (reinterpret_cast<std::uintptr_t>(text) != own) std::free(text);
  text = nullptr;
}
