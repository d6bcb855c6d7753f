#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/lisp/member_set.h"

/// What AutoLISP programs compute with. A Value is eight bytes: a real, an integer, nil, the blank
/// or a symbol in place, or a counted reference to a cell (list, string, entity name, ...).
///
/// No function of the language changes a list, so no list contains itself and counting references
/// frees everything, at once and in any order. A cell belongs to the interpreter that made it:
/// values must be gone before their interpreter is, and stay on its thread.
namespace cad::lisp {

class Heap;
class Value;
struct Builtin;
struct SpecialForm;
class Stream;

enum class Kind : std::uint8_t {
  kNil,      // also the empty list
  kBlank,    // what (princ) returns: a symbol without a name, true, printed as nothing
  kInteger,  // 32 bits
  kReal,
  kSymbol,
  kCons,
  // Only cells from here on.
  kString,
  kEname,        // a name of a drawing object
  kPickset,      // a selection set
  kFile,         // an open file
  kSubr,         // a built-in function
  kSpecialForm,  // a built-in function that sees its arguments unevaluated
  kUsubr,        // a function defined in LISP
  kExternal,     // a function defined by a loaded module
  kCatchError,   // what vl-catch-all-apply returns for an error
};

/// A name with its one value, function or data. Interned: one object per name and interpreter,
/// alive as long as the interpreter.
struct Symbol;

/// Head of everything that is counted. The kind stands in the top byte of the word, the count in
/// its low 48 bits; while cells are being freed the same bits link them.
struct Cell {
  explicit Cell(Kind kind) : word((static_cast<std::uint64_t>(kind) << 56) | 1) {}
  Kind kind() const { return static_cast<Kind>(word >> 56); }

  static constexpr std::uint64_t kCountMask = (std::uint64_t{1} << 48) - 1;
  static constexpr std::uint64_t kLarge = std::uint64_t{1} << 48;  // not from a chunk, see Heap

  std::uint64_t word;
};

/// Frees the cell and whatever it alone kept alive, without recursion.
void destroy_cell(Cell* cell) noexcept;

struct Cons;
struct String;
struct Ename;
struct Pickset;
struct File;
struct Subr;
struct SpecialCell;
struct Usubr;
struct External;
struct CatchError;

class Value {
 public:
  constexpr Value() noexcept : bits_(kNilBits) {}
  Value(const Value& other) noexcept : bits_(other.bits_) { retain(); }
  Value(Value&& other) noexcept : bits_(std::exchange(other.bits_, kNilBits)) {}
  Value& operator=(const Value& other) noexcept {
    Value copy(other);
    std::swap(bits_, copy.bits_);
    return *this;
  }
  Value& operator=(Value&& other) noexcept {
    Value taken(std::move(other));
    std::swap(bits_, taken.bits_);
    return *this;
  }
  ~Value() { release(); }

  static Value integer(std::int32_t i) noexcept {
    return Value(kIntegerTag | static_cast<std::uint32_t>(i));
  }
  static Value real(double r) noexcept {
    return Value(r == r ? std::bit_cast<std::uint64_t>(r) : kNotANumber);
  }
  static Value symbol(Symbol* s) noexcept { return Value(kSymbolTag | address(s)); }
  static Value blank() noexcept { return Value(kBlankBits); }
  /// Takes over the reference a new cell is born with.
  static Value adopt(Cons* cons) noexcept { return Value(kConsTag | address(cons)); }
  static Value adopt(Cell* cell) noexcept { return Value(kCellTag | address(cell)); }
  /// A further reference to a cell that is in use.
  static Value share(Cell* cell) noexcept;

  Kind kind() const noexcept;

  bool is_nil() const noexcept { return bits_ == kNilBits; }
  /// Everything but nil is true: 0, "" and the blank are.
  explicit operator bool() const noexcept { return bits_ != kNilBits; }
  bool is_blank() const noexcept { return bits_ == kBlankBits; }
  bool is_integer() const noexcept { return tag() == kIntegerTag; }
  bool is_real() const noexcept { return bits_ < kFirstTag; }
  bool is_number() const noexcept { return is_real() || is_integer(); }
  /// A named symbol; nil and the blank are not.
  bool is_symbol() const noexcept { return tag() == kSymbolTag; }
  bool is_cons() const noexcept { return bits_ >= kConsTag; }
  bool is_list() const noexcept { return is_cons() || is_nil(); }
  bool is(Kind cell_kind) const noexcept { return is_cell() && cell()->kind() == cell_kind; }
  bool is_string() const noexcept { return is(Kind::kString); }
  bool is_ename() const noexcept { return is(Kind::kEname); }

  // Each wants the kind it is named for.
  std::int32_t integer() const noexcept { return static_cast<std::int32_t>(bits_); }
  double real() const noexcept { return std::bit_cast<double>(bits_); }
  /// Of an integer or a real.
  double number() const noexcept { return is_real() ? real() : integer(); }
  Symbol* symbol() const noexcept { return static_cast<Symbol*>(pointer()); }
  Cons* cons() const noexcept { return static_cast<Cons*>(pointer()); }
  Cell* cell() const noexcept { return static_cast<Cell*>(pointer()); }
  /// Valid as long as some Value refers to the string.
  std::wstring_view text() const noexcept;
  std::uint64_t ename() const noexcept;
  Pickset* pickset() const noexcept;
  File* file() const noexcept;
  Subr* subr() const noexcept;
  SpecialCell* special() const noexcept;
  Usubr* usubr() const noexcept;
  External* external() const noexcept;

  /// First element and rest; both nil for anything that is not a cons.
  const Value& car() const noexcept;
  const Value& cdr() const noexcept;

  /// The very same thing: the bits of both are equal.
  bool same(const Value& other) const noexcept { return bits_ == other.bits_; }
  std::uint64_t bits() const noexcept { return bits_; }

 private:
  friend class Heap;

  // Reals are stored as they are. The patterns from kFirstTag up are not-a-numbers no arithmetic
  // produces, and carry the rest in their low 48 bits. The two counted kinds come last.
  static constexpr std::uint64_t kFirstTag = 0xFFF9'0000'0000'0000;
  static constexpr std::uint64_t kIntegerTag = 0xFFFA'0000'0000'0000;
  static constexpr std::uint64_t kSymbolTag = 0xFFFB'0000'0000'0000;
  static constexpr std::uint64_t kCellTag = 0xFFFC'0000'0000'0000;
  static constexpr std::uint64_t kConsTag = 0xFFFD'0000'0000'0000;
  static constexpr std::uint64_t kTagMask = 0xFFFF'0000'0000'0000;
  static constexpr std::uint64_t kNilBits = kFirstTag;
  static constexpr std::uint64_t kBlankBits = kFirstTag | 1;
  static constexpr std::uint64_t kNotANumber = 0x7FF8'0000'0000'0000;

  explicit constexpr Value(std::uint64_t bits) noexcept : bits_(bits) {}
  static std::uint64_t address(const void* p) noexcept {
    return reinterpret_cast<std::uintptr_t>(p);
  }
  std::uint64_t tag() const noexcept { return bits_ & kTagMask; }
  bool is_cell() const noexcept { return tag() == kCellTag; }
  bool is_counted() const noexcept { return bits_ >= kCellTag; }
  void* pointer() const noexcept {
    return reinterpret_cast<void*>(static_cast<std::uintptr_t>(bits_ & ~kTagMask));
  }
  void retain() const noexcept {
    if (is_counted()) ++cell()->word;
  }
  void release() noexcept {
    if (is_counted() && (--cell()->word & Cell::kCountMask) == 0) destroy_cell(cell());
  }

  std::uint64_t bits_;
};
static_assert(sizeof(Value) == 8);

struct Symbol {
  Value value;        // nil when unset
  std::wstring name;  // as interned: A-Z upper case
};

struct Cons : Cell {
  Cons(Value first, Value rest) : Cell(Kind::kCons), car(std::move(first)), cdr(std::move(rest)) {}
  Value car;
  Value cdr;
};

/// The characters follow the head in memory.
struct String : Cell {
  explicit String(std::size_t size) : Cell(Kind::kString), length(size) {}
  wchar_t* data() { return reinterpret_cast<wchar_t*>(this + 1); }
  std::size_t length;
};

struct Ename : Cell {
  explicit Ename(std::uint64_t id) : Cell(Kind::kEname), payload(id) {}
  std::uint64_t payload;  // means something to the application layer only
};

/// A selection set. Unlike lists it changes: all references see the same members.
struct Pickset : Cell {
  explicit Pickset(std::uint32_t n) : Cell(Kind::kPickset), number(n) {}
  ~Pickset();
  /// False when it is one already; no member is 0. Raises "insufficient node space" at the heap's
  /// limit, with the set as it was.
  bool add(std::uint64_t ename);
  bool remove(std::uint64_t ename);
  /// Members that are all different.
  void assign(std::vector<std::uint64_t> members);

  std::uint32_t number;          // shown when printed
  MemberSet enames;              // what they name is known to the application layer only
  std::shared_ptr<void> origin;  // how they were selected; for the application layer
};

struct File : Cell {
  File(std::wstring file_name, std::unique_ptr<Stream> opened);
  ~File();
  std::wstring name;
  std::unique_ptr<Stream> stream;  // null once closed
};

struct Subr : Cell {
  Subr(const Builtin& builtin, std::uint32_t n) : Cell(Kind::kSubr), row(&builtin), number(n) {}
  const Builtin* row;
  std::uint32_t number;
};

struct SpecialCell : Cell {
  SpecialCell(const SpecialForm& form, std::uint32_t n)
      : Cell(Kind::kSpecialForm), row(&form), number(n) {}
  const SpecialForm* row;
  std::uint32_t number;
};

/// The parameter symbols and behind them the local ones follow the head in memory.
struct Usubr : Cell {
  Usubr(Value source_list, Symbol* function_name, std::uint32_t n, std::uint32_t params,
        std::uint32_t symbols)
      : Cell(Kind::kUsubr),
        source(std::move(source_list)),
        name(function_name),
        number(n),
        parameter_count(params),
        symbol_count(symbols) {}
  Symbol** symbols() { return reinterpret_cast<Symbol**>(this + 1); }
  const Value& body() const { return source.cdr(); }

  Value source;  // ((parameters / locals) form...)
  Symbol* name;  // null for a lambda
  std::uint32_t number;
  std::uint32_t parameter_count;
  std::uint32_t symbol_count;
  bool traced = false;  // calls are shown, see (trace)
};

/// A function some module defined under this code.
struct External : Cell {
  External(Symbol* function_name, int function_code, std::uint64_t module, std::uint32_t n)
      : Cell(Kind::kExternal), name(function_name), code(function_code), number(n), owner(module) {}
  Symbol* name;
  int code;
  std::uint32_t number;
  std::uint64_t owner;  // means something to the application layer only
};

struct CatchError : Cell {
  explicit CatchError(Value text) : Cell(Kind::kCatchError), message(std::move(text)) {}
  Value message;  // a string
};

/// The elements of a list, without a copy; the list must stay alive. A dotted end is passed over.
///     for (const Value& item : List(value)) ...
class List {
 public:
  explicit List(const Value& list) : head_(&list) {}

  class iterator {
   public:
    explicit iterator(const Value* at) : at_(at) {}
    const Value& operator*() const { return at_->cons()->car; }
    const Value* operator->() const { return &at_->cons()->car; }
    iterator& operator++() {
      at_ = &at_->cons()->cdr;
      return *this;
    }
    bool operator==(std::default_sentinel_t) const { return !at_->is_cons(); }

   private:
    const Value* at_;
  };
  iterator begin() const { return iterator(head_); }
  std::default_sentinel_t end() const { return {}; }

  bool empty() const { return !head_->is_cons(); }
  std::size_t size() const;
  /// Element n from 0; nil past either end.
  const Value& at_or_nil(std::int64_t n) const;

 private:
  const Value* head_;
};

inline Value Value::share(Cell* cell) noexcept {
  ++cell->word;
  return cell->kind() == Kind::kCons ? adopt(static_cast<Cons*>(cell)) : adopt(cell);
}

inline std::wstring_view Value::text() const noexcept {
  auto* s = static_cast<String*>(cell());
  return {s->data(), s->length};
}
inline std::uint64_t Value::ename() const noexcept { return static_cast<Ename*>(cell())->payload; }
inline Pickset* Value::pickset() const noexcept { return static_cast<Pickset*>(cell()); }
inline File* Value::file() const noexcept { return static_cast<File*>(cell()); }
inline Subr* Value::subr() const noexcept { return static_cast<Subr*>(cell()); }
inline SpecialCell* Value::special() const noexcept { return static_cast<SpecialCell*>(cell()); }
inline Usubr* Value::usubr() const noexcept { return static_cast<Usubr*>(cell()); }
inline External* Value::external() const noexcept { return static_cast<External*>(cell()); }

inline constinit const Value kNil;

inline const Value& Value::car() const noexcept { return is_cons() ? cons()->car : kNil; }
inline const Value& Value::cdr() const noexcept { return is_cons() ? cons()->cdr : kNil; }

inline Kind Value::kind() const noexcept {
  if (is_cell()) [[likely]]
    return cell()->kind();
  switch (tag()) {
    case kFirstTag:
      return is_nil() ? Kind::kNil : Kind::kBlank;
    case kIntegerTag:
      return Kind::kInteger;
    case kSymbolTag:
      return Kind::kSymbol;
    default:
      return is_cons() ? Kind::kCons : Kind::kReal;
  }
}

}  // namespace cad::lisp
