#include "module/draw/draw.h"
#include "module/platform/opened.h"
#include "module/platform/trace.h"

namespace {

constexpr int kShareForReading = 3;  // _SH_DENYNO

/// The file's name without folder and extension.
CString base_name(const CString& file) {
  const std::size_t slash = file.find_last_of(L"/\\:");
  const CString name = slash == CString::npos ? file : file.substr(slash + 1);
  return name.substr(0, name.rfind(L'.'));
}

AcDbObjectId find_block(AcDbDatabase& drawing, const CString& name) {
  AcDbObjectId id;
  AcDbBlockTable* table = nullptr;
  if (drawing.getSymbolTable(table, AcDb::kForRead) != Acad::eOk) return id;
  table->getAt(name.c_str(), id);
  table->close();
  return id;
}

/// A block of the file's contents, made in the drawing; null when that fails.
AcDbObjectId load_block(AcDbDatabase& drawing, const CString& file, const CString& name) {
  AcDbDatabase source(false);
  const Acad::ErrorStatus read = source.readDwgFile(file.c_str(), kShareForReading, false);
  if (read != Acad::eOk) {
    dim::trace_format(L"readDrwFile failed: %s, status %d", file.c_str(), read);
    return {};
  }
  AcDbObjectId id;
  AcDbBlockTable* table = nullptr;
  if (drawing.getSymbolTable(table, AcDb::kForWrite) != Acad::eOk) return id;  // held by another
  table->close();
  const Acad::ErrorStatus inserted = drawing.insert(id, name.c_str(), &source, true);
  if (inserted != Acad::eOk) {
    dim::trace_format(L" insert error !: %s, status %d", file.c_str(), inserted);
    return {};
  }
  return id;
}

}  // namespace

AcDbBlockReference* CDimDraw::GetBlkEnt(CString blockFile, CString blockName, AcGePoint3d position,
                                        double rotation, double scale) const {
  return GetBlkEnt(std::move(blockFile), std::move(blockName), position, rotation,
                   AcGeScale3d(scale));
}

AcDbBlockReference* CDimDraw::GetBlkEnt(CString blockFile, CString blockName, AcGePoint3d position,
                                        double rotation, AcGeScale3d scale) const {
  if (blockName.empty()) blockName = base_name(blockFile);
  AcDbDatabase* const drawing = acdbHostApplicationServices()->workingDatabase();
  if (blockFile.empty() || blockName.empty() || !drawing) return nullptr;
  AcDbObjectId block = find_block(*drawing, blockName);
  if (block.isNull()) block = load_block(*drawing, blockFile, blockName);
  if (block.isNull()) return nullptr;
  auto reference = std::make_unique<AcDbBlockReference>();
  if (reference->setBlockTableRecord(block) == Acad::eOk &&
      reference->setPosition(position) == Acad::eOk &&
      reference->setScaleFactors(scale) == Acad::eOk &&
      reference->setRotation(rotation) == Acad::eOk)
    return reference.release();
  dim::trace_format(L"the block %s was not inserted: its place, size or direction is none",
                    blockName.c_str());
  return nullptr;
}

AcDbObjectId CDimDraw::InsertBlkEnt(CString blockFile, CString blockName, AcGePoint3d position,
                                    double rotation, double scale) {
  return InsertBlkEnt(std::move(blockFile), std::move(blockName), position, rotation,
                      AcGeScale3d(scale));
}

AcDbObjectId CDimDraw::InsertBlkEnt(CString blockFile, CString blockName, AcGePoint3d position,
                                    double rotation, AcGeScale3d scale) {
  AcDbBlockReference* const reference =
      GetBlkEnt(std::move(blockFile), std::move(blockName), position, rotation, scale);
  return reference ? DrawEntity(reference, false) : AcDbObjectId();
}
