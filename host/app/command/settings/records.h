#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/db/database.h"
#include "host/geometry/point3d.h"

/// Table records and other objects, one group at a time.
namespace cad {

/// The live record of a symbol table ("LAYER", "STYLE", "LTYPE", "UCS" ...) by its name, letter
/// case ignored; null when there is none.
AcDbObjectId find_record(AcDbDatabase& database, std::string_view table, std::wstring_view name);
/// All live records in file order.
std::vector<AcDbObjectId> all_records(AcDbDatabase& database, std::string_view table);
/// Those whose name fits one of the wildcard patterns, which commas separate.
std::vector<AcDbObjectId> matching_records(AcDbDatabase& database, std::string_view table,
                                           std::wstring_view patterns);

/// The first group of that code, or what stands for none.
std::wstring group_text(AcDbObjectId object, int code, std::wstring_view absent = {});
double group_real(AcDbObjectId object, int code, double absent = 0.0);
int group_integer(AcDbObjectId object, int code, int absent = 0);
AcGePoint3d group_point(AcDbObjectId object, int code, const AcGePoint3d& absent = {});
bool has_group(AcDbObjectId object, int code);

/// "a, b,c" as its parts; blanks round them are dropped, empty parts left out.
std::vector<std::wstring> comma_parts(std::wstring_view text);

/// A colour as users write it: 1 to 255, "red" ..., "ByLayer" (256), "ByBlock" (0).
std::optional<int> color_number(std::wstring_view text);
/// "1 (red)", "BYLAYER".
std::wstring color_text(int color);
/// What CECOLOR holds for it: "BYLAYER", "BYBLOCK", "1".
std::wstring color_setting(int color);

/// A lineweight as users write it, in hundredths of millimetres: "0.25", "ByLayer" (-1), "ByBlock"
/// (-2), "Default" (-3); the nearest one that exists.
std::optional<int> lineweight_number(std::wstring_view text);

}  // namespace cad
