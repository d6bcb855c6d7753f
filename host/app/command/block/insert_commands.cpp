#include <cmath>
#include <numbers>
#include <optional>
#include <vector>

#include "host/app/command/block/block_file.h"
#include "host/app/command/block/block_lookup.h"
#include "host/app/command/command_table.h"
#include "host/app/command/draw/draw.h"
#include "host/app/command/settings/records.h"
#include "host/base/fold.h"
#include "host/db/explode.h"
#include "host/db/open.h"
#include "host/db/record.h"
#include "host/db/record_groups.h"

namespace cad {
namespace {

enum AttributeFlag { kConstant = 2, kVerify = 4, kPreset = 8 };

/// How a block is placed; the point in the user's coordinates.
struct Placement {
  AcDbObjectId block;
  std::wstring name;
  bool exploded = false;
  AcGePoint3d point;
  std::optional<double> scale[3];
  std::optional<double> rotation;
  int rows = 1;
  int columns = 1;
  double row_distance = 0.0;
  double column_distance = 0.0;

  double x() const { return scale[0].value_or(1.0); }
  double y() const { return scale[1].value_or(x()); }
  double z() const { return scale[2].value_or(x()); }
};

/// A scale factor that is typed where a point would do as well.
std::optional<double> typed_factor(const CommandLine& line, const Answer& answer) {
  if (!answer.is_text()) return std::nullopt;
  return lisp::parse_length(answer.text, input_units(line.session()).lengths);
}

Flow<> ask_preset(CommandLine& line, Placement& placement, const Answer& option) {
  if (option.is(L"Rotate")) {
    const Answer angle = co_await line.orientation({.text = L"Specify rotation angle <0>: "});
    placement.rotation = angle.number;
    co_return;
  }
  const bool all = option.is(L"Scale");
  const Answer factor = co_await line.real(
      {.text = all ? L"Specify scale factor for XYZ axes <1>: " : L"Specify scale factor <1>: ",
       .bits = kNoZero});
  const double value = factor.none() ? 1.0 : factor.number;
  if (all || option.is(L"X")) placement.scale[0] = value;
  if (all || option.is(L"Y")) placement.scale[1] = value;
  if (all || option.is(L"Z")) placement.scale[2] = value;
}

/// The insertion point, with scales and rotation given beforehand. False when it was refused.
Flow<bool> ask_point(CommandLine& line, Placement& placement) {
  for (;;) {
    const Answer at =
        co_await line.point({.text = L"Specify insertion point or [Scale/X/Y/Z/Rotate]: ",
                             .keywords = L"Basepoint Scale X Y Z Rotate PScale PX PY PZ PRotate",
                             .bits = kNoEnter});
    if (at.is_point()) {
      placement.point = WorkPlane(line).user(at.point);
      co_return true;
    }
    if (at.is(L"Basepoint") || at.text.starts_with(L"P")) {
      line.refuse(at.text + L" is not offered");
      co_return false;
    }
    co_await ask_preset(line, placement, at);
  }
}

Flow<bool> ask_scales(CommandLine& line, Placement& placement) {
  const WorkPlane plane(line);
  const AcGePoint3d from = plane.world(placement.point);
  Answer x = co_await line.point(
      {.text = L"Enter X scale factor, specify opposite corner, or [Corner/XYZ] <1>: ",
       .keywords = L"Corner XYZ",
       .bits = kAnyText,
       .from = &from});
  const bool by_axis = x.is(L"XYZ");
  if (x.is(L"Corner"))
    x = co_await line.corner(
        {.text = L"Specify opposite corner: ", .bits = kNoEnter, .from = &from});
  if (by_axis)
    x = co_await line.point(
        {.text = L"Specify X scale factor or [Corner] <1>: ", .bits = kAnyText, .from = &from});
  if (x.is_point()) {
    const AcGeVector3d size = plane.user(x.point) - placement.point;
    placement.scale[0] = size.x;
    placement.scale[1] = size.y;
    co_return size.x != 0.0 && size.y != 0.0;
  }
  const auto typed = typed_factor(line, x);
  if (x.is_text() && (!typed || *typed == 0.0)) co_return false;
  if (!placement.scale[0]) placement.scale[0] = typed.value_or(1.0);
  const Answer y =
      co_await line.real({.text = L"Enter Y scale factor <use X scale factor>: ", .bits = kNoZero});
  if (y.is_number()) placement.scale[1] = y.number;
  if (!by_axis) co_return true;
  const Answer z = co_await line.real(
      {.text = L"Specify Z scale factor <use X scale factor>: ", .bits = kNoZero});
  if (z.is_number()) placement.scale[2] = z.number;
  co_return true;
}

Flow<bool> ask_placement(CommandLine& line, Placement& placement) {
  const bool placed = co_await ask_point(line, placement);
  if (!placed) co_return false;
  const AcGePoint3d from = WorkPlane(line).world(placement.point);
  const bool has_scale = placement.scale[0] || placement.scale[1];
  if (placement.exploded && !has_scale) {
    const Answer factor =
        co_await line.real({.text = L"Specify scale for XYZ axes <1>: ", .bits = kNoZero});
    placement.scale[0] = factor.none() ? 1.0 : factor.number;
  } else if (!has_scale) {
    const bool scaled = co_await ask_scales(line, placement);
    if (!scaled) {
      line.refuse(L"a scale factor is a number other than 0");
      co_return false;
    }
  }
  if (!placement.rotation) {
    const Answer angle =
        co_await line.orientation({.text = L"Specify rotation angle <0>: ", .from = &from});
    placement.rotation = angle.none() ? input_units(line.session()).angle_base : angle.number;
  }
  co_return true;
}

// --- Attributes

/// An attribute the block asks for, and its value.
struct Attribute {
  AcDbObjectId definition;
  int flags = 0;
  std::wstring value;
};

std::vector<Attribute> attributes_of(CommandLine& line, AcDbObjectId block) {
  std::vector<Attribute> attributes;
  for (const AcDbObjectId id : block_contents(line.database(), block)) {
    if (record_kind(id) != "ATTDEF") continue;
    const Attribute attribute{id, group_integer(id, 70), group_text(id, 1)};
    if ((attribute.flags & kConstant) == 0) attributes.push_back(attribute);
  }
  return attributes;
}

Flow<> ask_value(CommandLine& line, Attribute& attribute) {
  std::wstring text = group_text(attribute.definition, 3);
  if (text.empty()) text = group_text(attribute.definition, 2);
  text += attribute.value.empty() ? std::wstring(L": ") : L" <" + attribute.value + L">: ";
  const Answer answer = co_await line.text({.text = text});
  if (answer.is_text()) attribute.value = answer.text;
}

Flow<> ask_values(CommandLine& line, std::vector<Attribute>& attributes) {
  if (line.integer_variable(L"ATTREQ", 1) == 0) co_return;
  for (std::size_t i = 0; i < attributes.size(); ++i)
    if ((attributes[i].flags & kPreset) == 0) co_await ask_value(line, attributes[i]);
  for (std::size_t i = 0; i < attributes.size(); ++i)
    if ((attributes[i].flags & (kPreset | kVerify)) == kVerify)
      co_await ask_value(line, attributes[i]);
}

/// From the block's own coordinates to those in which the reference is stored.
AcGeMatrix3d block_map(const CommandLine& line, const Placement& placement) {
  const WorkPlane plane(line);
  AcDbDatabase& database = line.database();
  const AcGePoint3d base = group_point(block_head(database, placement.block), 10);
  return AcGeMatrix3d::translation(plane.stored(placement.point).asVector()) *
         AcGeMatrix3d::rotation(plane.stored_angle(*placement.rotation), AcGeVector3d::kZAxis) *
         AcGeMatrix3d::scaling(AcGeScale3d(placement.x(), placement.y(), placement.z())) *
         AcGeMatrix3d::translation(-base.asVector());
}

GroupList attribute_groups(const CommandLine& line, const Placement& placement,
                           const Attribute& attribute) {
  const AcDbObjectId from = attribute.definition;
  const AcGeMatrix3d map = block_map(line, placement);
  const double angle = group_real(from, 50);
  const AcGeVector3d along = map * AcGeVector3d(std::cos(angle), std::sin(angle), 0.0);
  const AcGeVector3d up = map * AcGeVector3d(-std::sin(angle), std::cos(angle), 0.0);
  GroupList groups(L"ATTRIB");
  groups.text(8, group_text(from, 8, L"0"));
  if (has_group(from, 62)) groups.integer(62, group_integer(from, 62, 256));
  if (has_group(from, 6)) groups.text(6, group_text(from, 6));
  groups.point(10, map * group_point(from, 10))
      .real(40, group_real(from, 40, 1.0) * up.length())
      .text(1, attribute.value)
      .real(50, std::atan2(along.y, along.x))
      .real(41, group_real(from, 41, 1.0) * along.length() / up.length())
      .real(51, group_real(from, 51))
      .text(7, group_text(from, 7, L"Standard"))
      .integer(71, group_integer(from, 71))
      .text(2, group_text(from, 2))
      .integer(70, attribute.flags);
  const int horizontal = group_integer(from, 72), vertical = group_integer(from, 74);
  if (horizontal != 0 || vertical != 0)
    groups.integer(72, horizontal).integer(74, vertical).point(11, map * group_point(from, 11));
  const WorkPlane plane(line);
  if (!plane.is_world()) groups.point(210, AcGePoint3d::kOrigin + plane.normal());
  return groups;
}

// --- Drawing it

AcDbObjectId draw_reference(CommandLine& line, const Placement& placement,
                            const std::vector<Attribute>& attributes) {
  const WorkPlane plane(line);
  GroupList groups(L"INSERT");
  if (!attributes.empty()) groups.integer(66, 1);
  groups.text(2, placement.name)
      .point(10, plane.stored(placement.point))
      .real(41, placement.x())
      .real(42, placement.y())
      .real(43, placement.z())
      .real(50, plane.stored_angle(*placement.rotation));
  if (placement.rows > 1 || placement.columns > 1)
    groups.integer(70, placement.columns)
        .integer(71, placement.rows)
        .real(44, placement.column_distance)
        .real(45, placement.row_distance);
  if (!plane.is_world()) groups.point(210, AcGePoint3d::kOrigin + plane.normal());
  std::vector<GroupList> parts;
  for (const Attribute& attribute : attributes)
    parts.push_back(attribute_groups(line, placement, attribute));
  return draw(line, groups, parts);
}

/// Puts the contents in the place of the reference.
void explode(CommandLine& line, AcDbObjectId reference) {
  if (reference.isNull()) return;
  if (!line.check(explode_entity(reference))) return;
  std::vector<AcDbObjectId> drawn{reference};
  erase_last(drawn);
}

/// A block of a drawing file, or the one of its name when that is to stay. Null when refused.
Flow<> take_block(CommandLine& line, Placement& placement, const BlockSource& source) {
  const AcDbObjectId known = find_block(line.database(), source.name);
  if (!source.file) {
    line.refuse(source.wants_file
                    ? L"there is no drawing file for the block \"" + source.name + L"\""
                    : L"the drawing has no block \"" + source.name +
                          L"\", and there is no drawing file of that name");
    co_return;
  }
  if (!known.isNull() && !line.spares_warning(2)) {
    const std::wstring text =
        L"Block \"" + source.name + L"\" already exists. Redefine it? [Yes/No] <N>: ";
    const Answer redefine = co_await line.keyword({.text = text, .keywords = L"Yes No"});
    if (!redefine.is(L"Yes")) {
      placement.block = known;
      co_return;
    }
  }
  const Result<AcDbObjectId> made = block_from_file(line.database(), source.name, *source.file);
  if (line.check(made)) placement.block = *made;
}

/// A block by what is typed for its name. Null when refused.
Flow<> ask_block(CommandLine& line, Placement& placement) {
  for (;;) {
    const std::wstring usual = line.text_variable(L"INSNAME");
    const std::wstring text =
        L"Enter block name or [?]" + (usual.empty() ? L": " : L" <" + usual + L">: ");
    const Answer name = co_await line.text({.text = text, .keywords = L"?"});
    if (name.is(L"?")) {
      for (const std::wstring& known : block_names(line.database())) line.print(known);
      continue;
    }
    std::wstring wanted = name.none() ? usual : name.text;
    placement.exploded = wanted.starts_with(L"*");
    if (placement.exploded) wanted.erase(0, 1);
    placement.block = find_block(line.database(), wanted);
    if (placement.block.isNull() && !wanted.empty()) {
      const BlockSource source = block_source(wanted);
      co_await take_block(line, placement, source);
    } else if (placement.block.isNull()) {
      line.refuse(L"a block needs a name");
    }
    if (!placement.block.isNull()) placement.name = group_text(placement.block, 2);
    co_return;
  }
}

Flow<> ask_array(CommandLine& line, Placement& placement) {
  const Answer rows = co_await line.integer(
      {.text = L"Enter number of rows (---) <1>: ", .bits = kNoZero | kNoNegative});
  const Answer columns = co_await line.integer(
      {.text = L"Enter number of columns (|||) <1>: ", .bits = kNoZero | kNoNegative});
  placement.rows = rows.none() ? 1 : rows.integer();
  placement.columns = columns.none() ? 1 : columns.integer();
  if (placement.rows > 1) {
    const Answer distance =
        co_await line.distance({.text = L"Enter distance between rows: ", .bits = kNoEnter});
    placement.row_distance = distance.number;
  }
  if (placement.columns > 1) {
    const Answer distance =
        co_await line.distance({.text = L"Specify distance between columns: ", .bits = kNoEnter});
    placement.column_distance = distance.number;
  }
}

Flow<> insert(CommandLine& line, bool as_array) {
  Placement placement;
  co_await ask_block(line, placement);
  if (line.passing_over()) co_return;
  if (as_array && placement.exploded) {
    line.refuse(L"an array of a block is not exploded");
    co_return;
  }
  const bool placed = co_await ask_placement(line, placement);
  if (!placed) co_return;
  if (as_array) co_await ask_array(line, placement);
  std::vector<Attribute> attributes;
  if (!placement.exploded) {
    attributes = attributes_of(line, placement.block);
    co_await ask_values(line, attributes);
  }
  // The block may have gone meanwhile.
  placement.block = find_block(line.database(), placement.name);
  if (placement.block.isNull()) {
    line.refuse(L"the block is no longer there");
    co_return;
  }
  const AcDbObjectId made = draw_reference(line, placement, attributes);
  if (placement.exploded) explode(line, made);
  line.put_variable(L"INSNAME", placement.name);
}

Flow<> insert_command(CommandLine& line) { co_await insert(line, false); }
Flow<> minsert_command(CommandLine& line) { co_await insert(line, true); }

constexpr CommandRow kRows[] = {
    {"INSERT", "I DDINSERT", insert_command,
     "block name, *name, file or name=file, [redefine], insertion point [Scale/X/Y/Z/Rotate], "
     "X scale [Corner/XYZ], Y scale, rotation, values of the attributes",
     "inserts a block of the drawing, or a drawing file as one"},
    {"MINSERT", "", minsert_command,
     "as INSERT, with rows, columns and their distances before the values",
     "inserts an array of a block"},
};

}  // namespace

std::span<const CommandRow> insert_commands() { return kRows; }

}  // namespace cad
