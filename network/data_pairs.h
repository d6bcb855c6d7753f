#pragma once

#include <cstddef>
#include <string_view>

#include "host/db/extended_data.h"
#include "host/dxf/tag_reader.h"
#include "network/object_data.h"

namespace network {

/// What stands between two places where a key belongs.
struct DataPair {
  enum class What {
    kPair,
    kNoValue,  ///< a key at the end, in front of a closing brace or of another key
    kStray,    ///< a group that is no key; it is the value
    kBrace,    ///< of braces round pairs, one too many closing or one that is not closed
  };
  What what = What::kPair;
  std::string_view name;        ///< of the key, as stored
  const KeyRow* key = nullptr;  ///< null for an unknown one
  cad::dxf::Tag value;      ///< its first tag: a point has up to three, a list in braces any number
  std::size_t begin = 0;    ///< offset of the key in the record
  std::size_t key_end = 0;  ///< offset behind it
  std::size_t end = 0;      ///< offset behind the value
};

/// Walks the pairs of a record's PIPENOTE data. Braces (group 1002) where a key belongs only stand
/// round pairs; where a value belongs they hold a list, which is the value. A key whose value must
/// not be a text and that is followed by the name of another key has lost its value.
class DataPairs {
 public:
  DataPairs(std::string_view record, const cad::dxf::Dialect& dialect);

  bool next(DataPair& pair);
  /// After the walk: whether there is data of the application, and behind which offset it ends.
  bool found() const { return tags_.found(); }
  std::size_t end() const { return tags_.end(); }

 private:
  bool advance() { return more_ = tags_.next(tag_); }
  void take_value(DataPair& pair);

  cad::ExtendedTags tags_;
  cad::dxf::Tag tag_;
  bool more_ = false;
  int depth_ = 0;
};

}  // namespace network
