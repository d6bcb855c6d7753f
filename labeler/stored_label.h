#pragma once

#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "labeler/layout.h"
#include "module/record/item_texts.h"

/// Labels as they were recorded and drawn.
namespace labeler {

/// How a label was placed when it was drawn, kept in its record as the draw value "bz_dw":
/// "( x, y, angle, variant, text x, text y, reference )". By it "the pipe has moved" is told from
/// "its data have changed", and both from "somebody has moved the text".
struct DrawnPlace {
  double x = 0.0, y = 0.0;  ///< of the anchor
  double angle = 0.0;       ///< in which the label is read
  int variant = 0;
  double text_x = 0.0, text_y = 0.0;  ///< where the first text was put; of stakes their middle
  double reference = 0.0;             ///< the reference direction
};
inline constexpr wchar_t kPlaceNote[] = L"bz_dw";
/// Lengths that differ by less, in drawing units, are the same; six decimals are stored.
inline constexpr double kSamePlace = 1e-4;
inline constexpr double kSameAngle = 1e-4;

CString place_text(const DrawnPlace& place);
std::optional<DrawnPlace> place_of_text(std::wstring_view text);
/// Whether two directions are the same.
bool same_angle(double a, double b);

/// A text entity as it stands.
struct ShownText {
  bool there = false;  ///< a text that is not erased and may_be_label_of() its owner
  CString text;
};
/// The point by which a text is placed; the origin for what is no text or not there.
AcGePoint3d place_shown(AcDbObjectId text);

struct StoredLine {
  CString handle;
  AcDbObjectId entity;  ///< null unless shown.there
  TextLine line;
  ShownText shown;
};

struct StoredLabel {
  std::vector<StuDim> notes;         ///< information items
  std::vector<StoredLine> lines;     ///< the text entities, in the order of their first items
  std::vector<AcDbObjectId> others;  ///< other annotation entities: arrow, leader, ticks
  AcDbObjectId arrow;
  int others_missing = 0;
  std::optional<DrawnPlace> place;

  bool anything_there() const;
};

/// The label that a record of the owner holds; nothing when it holds no items.
std::optional<StoredLabel> read_record(AcDbObjectId owner, AcDbObjectId record);
/// The label of a type; nothing when the owner has no such record, or one without items.
std::optional<StoredLabel> read_label(AcDbObjectId owner, const wchar_t* type);
/// All items of the record, in their order.
std::vector<StuDim> read_items(AcDbObjectId owner, const wchar_t* type);

/// Erases the entities of a label, and no others that its record names.
void erase_entities(const StoredLabel& label);

/// Files the items as the record of the type, in place of one that is there; what it held is
/// forgotten, entities stay. The status of the first step that fails.
Acad::ErrorStatus file_label(AcDbObjectId owner, const wchar_t* type, const dim::ItemTexts& items);

/// Writes items into the record that is there, each in the place of the one of its name, then the
/// texts of their entities. All of the record's entities must be open to writing: see
/// can_be_written().
Acad::ErrorStatus rewrite_label(AcDbObjectId owner, const wchar_t* type,
                                const std::vector<StuDim>& items);

/// eOk when labels of the owner can be recorded, else why not: eNotInitializedYet in a drawing that
/// holds no records, or why it cannot be written.
Acad::ErrorStatus can_be_recorded(AcDbObjectId owner);
/// eOk when the entity could be opened for writing, else why not: eOnLockedLayer, ...
Acad::ErrorStatus can_be_written(AcDbObjectId entity);
/// The same of all entities of a label that are there.
Acad::ErrorStatus can_be_written(const StoredLabel& label);

}  // namespace labeler
