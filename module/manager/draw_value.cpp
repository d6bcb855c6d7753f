#include "module/manager/draw_value.h"

#include "module/platform/pipe_library.h"
#include "module/platform/text.h"

namespace dim {
namespace {

CString triple_text(double x, double y, double z) {
  return format_text(L"( %f, %f, %f )", x, y, z);
}

}  // namespace

CString value_text(const AcGePoint3d& point) { return triple_text(point.x, point.y, point.z); }

CString value_text(const AcGeVector3d& vector) { return triple_text(vector.x, vector.y, vector.z); }

CString value_text(double number) { return format_text(L"%f", number); }

CString value_text(long number) { return format_text(L"%ld", number); }

CString value_text(AcDbObjectId object) { return handle_text(object); }

AcGePoint3d point_of(const CString& text) {
  const auto coordinate = [&text](int i) { return _wtof(KT::Nth(text, i, true).c_str()); };
  return AcGePoint3d(coordinate(0), coordinate(1), coordinate(2));
}

double real_of(const CString& text) { return _wtof(text.c_str()); }

long long_of(const CString& text) { return _wtol(text.c_str()); }

AcDbObjectId object_of(const CString& text) { return object_of_handle(text.c_str()); }

}  // namespace dim
