// Drawings read from files and put into each other, as programs ask for it.

#include "host/base/file_names.h"
#include "host/base/trace.h"
#include "host/db/database.h"
#include "host/db/drawing.h"
#include "host/db/insert_drawing.h"
#include "host/dwg/converter.h"

cad::Status AcDbDatabase::read_file(const std::string& path) {
  cad::Result<cad::MappedFile> file = cad::MappedFile::open(path);
  if (!file) return file.error();
  if (!cad::dwg::is_dwg(file->bytes())) return drawing_->read(std::move(*file), path);
  cad::Result<cad::dwg::Converted> converted = cad::dwg::to_dxf(path);
  if (!converted) return converted.error();
  const cad::Status read = drawing_->read(std::move(converted->dxf), path);
  if (read) return read;
  return cad::fail(path, "is a DWG file; what its converter " + converted->converter +
                             " made of it cannot be read: " + read.error().what);
}

Acad::ErrorStatus AcDbDatabase::readDwgFile(const ACHAR* file, int, bool) {
  const auto refuse = [&](Acad::ErrorStatus status, const cad::Error& error) {
    read_error_ = error;
    if (cad::tracing()) cad::trace(cad::from_utf8(error.message()));
    return status;
  };
  read_error_ = {};
  if (!file || !*file) return refuse(Acad::eFileNotFound, cad::fail("", "no file is named"));
  const std::string path = cad::drawing_on_disk(cad::to_utf8(file));
  if (!cad::is_file(path)) return refuse(Acad::eFileNotFound, cad::fail(path, "does not exist"));
  if (facts().bytes != 0)
    return refuse(Acad::eInvalidInput, cad::fail(path, "wants an empty database to be read into"));
  if (const cad::Status status = read_file(path); !status) {
    drawing_ = std::make_unique<cad::Drawing>(*this);  // what was read of it is of no use
    return refuse(cad::dwg::is_dwg_file(path) ? Acad::eInvalidDwgVersion : Acad::eBadDxfSequence,
                  status.error());
  }
  return Acad::eOk;
}

Acad::ErrorStatus AcDbDatabase::insert(AcDbObjectId& block, const ACHAR* name, AcDbDatabase* from,
                                       bool) {
  block.setNull();
  if (!from) return Acad::eNullObjectPointer;
  Acad::ErrorStatus status = Acad::eOk;
  const auto made = cad::insert_drawing(*this, name ? name : L"", *from, status);
  if (made) {
    block = *made;
  } else if (cad::tracing()) {
    cad::trace(cad::from_utf8(made.error().message()));
  }
  return status;
}
