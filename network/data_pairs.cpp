#include "network/data_pairs.h"

namespace network {
namespace {

using cad::dxf::Tag;

constexpr int kBraceGroup = 1002;

bool opens(const Tag& tag) { return tag.code == kBraceGroup && tag.value == "{"; }
bool closes(const Tag& tag) { return tag.code == kBraceGroup && tag.value == "}"; }

/// The y and z of a point, group 1010 to 1013, are tags of their own.
bool begins_point(int code) { return code >= 1010 && code <= 1013; }
bool belongs_to_point(int code, int first) { return code == first + 10 || code == first + 20; }

}  // namespace

DataPairs::DataPairs(std::string_view record, const cad::dxf::Dialect& dialect)
    : tags_(record, dialect, kApplication) {
  advance();
}

bool DataPairs::next(DataPair& pair) {
  pair = {};
  while (more_ && (opens(tag_) || (closes(tag_) && depth_ > 0))) {
    depth_ += opens(tag_) ? 1 : -1;
    advance();
  }
  if (!more_) {
    if (depth_ == 0) return false;
    depth_ = 0;
    pair.what = DataPair::What::kBrace;
    return true;
  }
  pair.begin = tag_.begin;
  pair.value = tag_;
  if (closes(tag_)) {
    pair.what = DataPair::What::kBrace;
    advance();
    return true;
  }
  if (tag_.code != kTextGroup) {
    pair.what = DataPair::What::kStray;
    take_value(pair);
    return true;
  }
  pair.name = tag_.value;
  pair.key = find_key(pair.name);
  pair.key_end = pair.end = tag_.end;
  const bool wants_text = !pair.key || pair.key->group == kTextGroup;
  if (!advance() || closes(tag_) ||
      (!wants_text && tag_.code == kTextGroup && find_key(tag_.value))) {
    pair.what = DataPair::What::kNoValue;
    return true;
  }
  take_value(pair);
  return true;
}

void DataPairs::take_value(DataPair& pair) {
  pair.value = tag_;
  int depth = 0;
  do {
    depth += opens(tag_) ? 1 : closes(tag_) ? -1 : 0;
    pair.end = tag_.end;
    advance();
  } while (more_ && (depth > 0 || (begins_point(pair.value.code) &&
                                   belongs_to_point(tag_.code, pair.value.code))));
  if (depth > 0) depth_ += depth;  // told at the end
}

}  // namespace network
