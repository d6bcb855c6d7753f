#pragma once

#include <string>

#include "host/db/object_id.h"

class AcDbEntity;

/// Helpers that programs for this host share: handle texts, entity names, the current space.
/// Handle texts are upper-case hexadecimal without prefix.
class ArxDbgUtils {
 public:
  /// eOk and the id, or the status of acdbGetObjectId().
  static Acad::ErrorStatus enameToObjId(const ads_name name, AcDbObjectId& id);
  static Acad::ErrorStatus objIdToEname(AcDbObjectId id, ads_name& name);
  /// Resolves a handle text in `database`. Any failure is eInvalidInput and leaves `id` null;
  /// nothing is printed. The handle of an erased object resolves.
  static Acad::ErrorStatus handleStrToObjId(AcDbDatabase* database, const ACHAR* text,
                                            AcDbObjectId& id);
  /// The object's handle text. Opens it for read: an object that is erased, or open for write,
  /// gives the empty text; so does one whose handle, in a damaged file, is another object's.
  static void objIdToHandleStr(AcDbObjectId id, std::wstring& text);
  /// Appends a new entity to the working database's current space and leaves it open.
  static Acad::ErrorStatus addToCurrentSpace(AcDbEntity* entity);
};
