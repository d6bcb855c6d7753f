// Header variables as values.

#include "host/base/numbers.h"
#include "host/db/database.h"
#include "host/db/drawing.h"
#include "host/db/group_tags.h"
#include "host/db/header_variables.h"

namespace {

using cad::GroupView;

/// A flat point given in space, and the other way round, takes the variable's form.
GroupView fitted(GroupView group, int values) {
  if (group.type == GroupView::Type::kPoint)
    group.dimensions = static_cast<std::uint8_t>(values == 2 ? 2 : 3);
  return group;
}

}  // namespace

std::wstring AcDbDatabase::header_value(std::string_view name) const {
  const auto variable = drawing_->header_variable(name);
  if (!variable) return {};
  const cad::dxf::Tag& tag = *variable;
  const cad::dxf::Dialect& dialect = drawing_->dialect();
  switch (cad::dxf::value_type(tag.code)) {
    case cad::dxf::ValueType::kText:
    case cad::dxf::ValueType::kHandle:
    case cad::dxf::ValueType::kChunk:
      return cad::dxf::text_value(tag, dialect);
    case cad::dxf::ValueType::kReal: {
      std::string text;
      cad::append_real(text, cad::dxf::real_value(tag, dialect));
      return cad::from_utf8(text);
    }
    default:
      return std::to_wstring(cad::dxf::int_value(tag, dialect));
  }
}

AcGePoint3d AcDbDatabase::header_point(std::string_view name) const {
  cad::TagSpanReader reader(drawing_->header_tags(name), drawing_->dialect());
  cad::TagSpan span;
  if (!reader.next(span)) return {};
  return {span.numbers[0], span.numbers[1], span.numbers[2]};
}

cad::Status AcDbDatabase::set_header_variable(std::string_view name,
                                              const cad::GroupValue::Value& value) {
  const cad::HeaderVariable* row = cad::find_header_variable(name);
  const std::optional<cad::dxf::Tag> there = drawing_->header_variable(name);
  const cad::dxf::Dialect& dialect = drawing_->dialect();
  if (!row || !drawing_->has_header_variable(name))
    return cad::fail(std::string(name), "the drawing's release has no such variable");
  const cad::GroupValue given{there ? there->code : row->code, value};
  const GroupView group = fitted(cad::view_of(given), row->values);
  const bool is_point = group.type == GroupView::Type::kPoint;
  std::string fault = cad::group_fault(group);
  if (fault.empty() && is_point != (row->values > 1))
    fault = is_point ? "wants one value" : "wants a point";
  if (!fault.empty()) return cad::fail(std::string(name), fault);

  std::string tags;
  cad::dxf::TagWriter writer(tags, dialect);
  cad::write_group(group, "", row->values == 2, writer);
  cad::TagSpan span;
  const bool as_in_file =
      cad::TagSpanReader(drawing_->file_header_tags(name), dialect).next(span) &&
      cad::same_value(span, group, "", dialect);
  if (drawing_->header_tags(name) == tags) return {};
  drawing_->set_header_tags(std::string(name),
                            as_in_file ? std::nullopt : std::optional(std::move(tags)));
  return {};
}
