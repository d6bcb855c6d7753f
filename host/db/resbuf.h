#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

/// Result buffers: the host's linked list of typed values, used for LISP arguments and results,
/// entity data and the contents of xrecords.

using ACHAR = wchar_t;
using ads_real = double;
using ads_point = ads_real[3];
/// Entity or selection-set name. Element 0 holds the object's id, element 1 is zero.
using ads_name = std::int64_t[2];

struct ads_binary {
  short clen;  ///< bytes, at most 127 in extended data
  char* buf;
};

union ads_u_val {
  ads_real rreal;
  ads_real rpoint[3];
  short rint;
  std::int32_t rlong;
  std::int64_t mnInt64;
  ACHAR* rstring;
  std::int64_t rlname[2];
  ads_binary rbinary;
};

struct resbuf {
  resbuf* rbnext;
  short restype;
  ads_u_val resval;
};

// Types of buffers in LISP arguments and results.
inline constexpr short RTNONE = 5000;
inline constexpr short RTREAL = 5001;
inline constexpr short RTPOINT = 5002;
inline constexpr short RTSHORT = 5003;
inline constexpr short RTANG = 5004;
inline constexpr short RTSTR = 5005;
inline constexpr short RTENAME = 5006;
inline constexpr short RTPICKS = 5007;
inline constexpr short RTORINT = 5008;
inline constexpr short RT3DPOINT = 5009;
inline constexpr short RTLONG = 5010;
inline constexpr short RTVOID = 5014;
inline constexpr short RTLB = 5016;
inline constexpr short RTLE = 5017;
inline constexpr short RTDOTE = 5018;
inline constexpr short RTNIL = 5019;
inline constexpr short RTDXF0 = 5020;
inline constexpr short RTT = 5021;
inline constexpr short RTRESBUF = 5023;
inline constexpr short RTMODELESS = 5027;

// Results of the acut and aced calls.
inline constexpr int RTNORM = 5100;
inline constexpr int RTERROR = -5001;
inline constexpr int RTCAN = -5002;
inline constexpr int RTREJ = -5003;
inline constexpr int RTFAIL = -5004;
inline constexpr int RTKWORD = -5005;

// Results of a served LISP function.
inline constexpr int RSRSLT = 1;
inline constexpr int RSERR = 3;

/// A single zeroed buffer of the given type. The caller frees it with acutRelRb().
resbuf* acutNewRb(int type);

/// Frees a chain from `chain` to its end, strings and binary chunks included. Null is allowed.
/// Returns RTNORM.
int acutRelRb(resbuf* chain);

/// Builds a chain from pairs (type, value); values are copied. RTLB, RTLE, RTDOTE, RTNIL, RTT,
/// RTVOID and -3 stand alone. Ends at 0 or RTNONE; group 0 is written as RTDXF0.
/// Strings are `const ACHAR*`, reals `double`, points `const ads_real*`, enames and picks
/// `const std::int64_t*`, integers `int` (64-bit groups 160-169 `std::int64_t`).
/// Null when the first argument ends the list or a type is unknown. The caller frees the chain.
resbuf* acutBuildList(int type, ...);

/// A copy of `text` to hang into a buffer's rstring, freed by acutRelRb() with the buffer.
ACHAR* acutNewString(const ACHAR* text);
/// Frees a string of acutNewString(), or the one a buffer holds when it is given as that buffer's
/// rstring itself (not as a copy of the pointer), and makes it null. Null is allowed.
void acutDelString(ACHAR*& text);

namespace cad {

/// Frees a chain; for std::unique_ptr.
struct RelRb {
  void operator()(resbuf* chain) const { acutRelRb(chain); }
};
using ResbufChain = std::unique_ptr<resbuf, RelRb>;

/// A buffer holding a copy of `text`, made with one allocation.
resbuf* new_string_buffer(short type, std::wstring_view text);
/// A copy of one buffer, its string or chunk included, linked to nothing.
resbuf* copy_buffer(const resbuf& buffer);
/// A copy of a whole chain. Null gives null.
resbuf* copy_chain(const resbuf* chain);

/// Appends buffers to a chain in constant time.
///     ChainBuilder chain; chain.add(new_string_buffer(1, L"pcgb")); return chain.release();
class ChainBuilder {
 public:
  ChainBuilder() = default;
  ChainBuilder(const ChainBuilder&) = delete;
  ChainBuilder& operator=(const ChainBuilder&) = delete;
  ~ChainBuilder() { acutRelRb(head_); }
  /// Takes ownership of `chain`, which may hold several buffers or be null.
  void add(resbuf* chain) {
    if (!chain) return;
    (head_ ? tail_->rbnext : head_) = chain;
    tail_ = chain;
    while (tail_->rbnext) tail_ = tail_->rbnext;
  }
  resbuf* head() const { return head_; }
  resbuf* release() {
    resbuf* chain = head_;
    head_ = tail_ = nullptr;
    return chain;
  }

 private:
  resbuf* head_ = nullptr;
  resbuf* tail_ = nullptr;
};

/// The kind of value a group code or an RT type carries in a buffer.
enum class BufferValue { kNone, kReal, kPoint, kInt16, kInt32, kInt64, kString, kName, kBinary };
BufferValue buffer_value(int type);
/// Whether a kName buffer of that group holds the handle as text (5, 105, 320-329, 1005) instead of
/// an entity name.
bool name_is_text(int type);

}  // namespace cad
