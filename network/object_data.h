#pragma once

#include <array>
#include <bitset>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/db/object_id.h"
#include "host/db/status.h"
#include "host/dxf/dialect.h"
#include "network/strings.h"

/// What the extended data of the application PIPENOTE says about a pipe or a node: behind the
/// group 1001, pairs of a group 1000, the key, and one group that holds its value, in any order.
/// docs/pipes-and-wells.md describes it for other programs.
namespace network {

inline constexpr wchar_t kApplication[] = L"PIPENOTE";

/// What the entity stands for.
enum class Kind : std::uint8_t {
  kNone,  ///< nothing that we know
  kWaterPipe,
  kDrainagePipe,
  kStormPipe,
  kWaterNode,
  kHydrant,
  kDrainageWell,
  kStormWell,
};
inline constexpr int kKindCount = 8;
constexpr bool is_pipe(Kind kind) { return kind >= Kind::kWaterPipe && kind <= Kind::kStormPipe; }
constexpr bool is_node(Kind kind) { return kind >= Kind::kWaterNode; }
/// The word in the data: "water-pipe"; empty for kNone.
std::string_view kind_name(Kind kind);
/// kNone for any other word; letter case counts.
Kind kind_named(std::wstring_view name);

/// Keys in the order of kKeys. Cases count from 1.
enum class Key : std::uint8_t {
  kKind,
  kStartNode,
  kEndNode,
  kDiameter,
  kMaterial,
  kWidth,
  kHeight,
  kRatio,
  kParallel,
  kCode,
  kLength,
  kFlow,
  kSpeed,
  kHeadLoss,
  kStartInvert,
  kEndInvert,
  kHeadCase,
  kStartHead1,
  kEndHead1 = kStartHead1 + 6,
  kNumber = kEndHead1 + 6,
  kPrefix,
  kGround,
  kNatural,
  kBottom,
  kHead,
};
inline constexpr int kKeyCount = static_cast<int>(Key::kHead) + 1;
inline constexpr int kHeadCases = 6;
constexpr Key start_head(int head_case) {
  return static_cast<Key>(static_cast<int>(Key::kStartHead1) + head_case - 1);
}
constexpr Key end_head(int head_case) {
  return static_cast<Key>(static_cast<int>(Key::kEndHead1) + head_case - 1);
}

/// Groups of values.
inline constexpr int kTextGroup = 1000, kHandleGroup = 1005, kRealGroup = 1040,
                     kIntegerGroup = 1070;

struct KeyRow {
  std::string_view name;
  int group;  ///< of the value
};
const KeyRow& row_of(Key key);
/// Null for an unknown name; letter case counts.
const KeyRow* find_key(std::string_view name);

/// Something in the data that could not be used as it stands.
struct DataFault {
  enum class What : std::uint8_t {
    kWrongGroup,   ///< the key counts as absent
    kNoNumber,     ///< the same
    kNoHandle,     ///< the same
    kNoValue,      ///< the same
    kTwice,        ///< the first counts
    kStrayGroup,   ///< stands where a key was expected; left out
    kOpenBrace,    ///< or one too many closing
    kMisspeltKey,  ///< an unknown key that differs from a known one in letter case only
  };
  What what;
  std::string key;    ///< UTF-8; of kStrayGroup and kOpenBrace empty
  int group = 0;      ///< kWrongGroup: found; kStrayGroup: found
  std::string value;  ///< as it stands, UTF-8

  /// "diameter has a value of group 1070 instead of 1040".
  std::string message() const;
  friend bool operator==(const DataFault&, const DataFault&) = default;
};

/// The data of one entity as it stood when it was read. Lengths and elevations are metres, sizes of
/// sections millimetres. A value whose group or spelling is wrong is absent, and there is a fault.
class ObjectData {
 public:
  ObjectData() = default;
  /// Nothing when the entity has no data of the application. An entity reads as it stands, open or
  /// not, erased or not.
  static std::optional<ObjectData> read(AcDbObjectId id);
  /// The same from the tags of a record.
  static std::optional<ObjectData> read(std::string_view record, const cad::dxf::Dialect& dialect);

  // Absent, too, for keys whose values are of another type.
  bool has(Key key) const { return present_[static_cast<std::size_t>(key)]; }
  std::optional<double> real(Key key) const;
  std::optional<int> integer(Key key) const;
  CString text(Key key) const;          ///< empty when absent
  std::uint64_t handle(Key key) const;  ///< 0 when absent
  Kind kind() const { return has(Key::kKind) ? kind_ : Kind::kNone; }
  const std::vector<DataFault>& faults() const { return faults_; }

  // For those who have written the value.
  void put_number(Key key, double value);
  void put_handle(Key key, std::uint64_t value);
  void put_text(Key key, CString value);
  void remove(Key key) { present_[static_cast<std::size_t>(key)] = false; }

 private:
  class Reader;
  bool put_kind(Kind kind);  // false for kNone, whose text is to be kept

  std::bitset<kKeyCount> present_;
  Kind kind_ = Kind::kNone;  // of a known one the text is not kept
  std::array<double, kKeyCount> numbers_{};
  std::array<std::uint64_t, 2> nodes_{};  // start, end
  std::vector<std::pair<Key, CString>> texts_;
  std::vector<DataFault> faults_;
};

/// The kind that the entity's data name, without reading the rest: what ObjectData::read() would
/// find, or nothing where it would find no data.
std::optional<Kind> kind_of(AcDbObjectId id);

/// One value of an entity's data, written in the place of the one that stands there, else behind
/// the rest; every other group keeps its bytes. eKeyNotFound when the entity has no data of the
/// application; eInvalidInput for a number that is not finite and for a key that wants another
/// type; eStringTooLong beyond 255 bytes of UTF-8; otherwise why the entity cannot be opened for
/// writing: eOnLockedLayer, eWasOpenForRead, ...
Acad::ErrorStatus write_real(AcDbObjectId id, Key key, double value);
Acad::ErrorStatus write_integer(AcDbObjectId id, Key key, int value);
Acad::ErrorStatus write_text(AcDbObjectId id, Key key, std::wstring_view value);
Acad::ErrorStatus write_handle(AcDbObjectId id, Key key, std::uint64_t value);
/// Takes the pair out. eOk when there is none.
Acad::ErrorStatus remove_value(AcDbObjectId id, Key key);

}  // namespace network
