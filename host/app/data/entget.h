#pragma once

#include <string_view>

#include "host/db/database.h"
#include "host/db/record_groups.h"
#include "host/lisp/interpreter.h"

/// Objects of a drawing as LISP sees them.
namespace cad {

AcDbObjectId id_of_name(std::uint64_t payload);
/// Nil for the null id.
lisp::Value name_of(lisp::Interpreter& interp, AcDbObjectId id);

/// (code . value), a point as (code x y z).
lisp::Value group_pair(lisp::Interpreter& interp, const RecordGroups& record, const Group& group);

/// The list of an object's groups, -1 with its name first; nil for an erased object. With a list of
/// application names their extended data comes last, as (-3 ("APP" (1000 . "x") ...)).
lisp::Value entget(lisp::Interpreter& interp, AcDbObjectId id, const lisp::Value& applications);

/// The last entity that is no part of another.
AcDbObjectId last_main_entity(AcDbDatabase& database);

/// Wildcards as wcmatch knows them, letter case ignored.
bool matches_no_case(std::wstring_view text, std::wstring_view pattern);

}  // namespace cad
