#include "network/drawn_object.h"

#include "host/db/record.h"

namespace network {

Acad::ErrorStatus DrawnObject::set_real(Key key, double value) {
  const Acad::ErrorStatus status = write_real(id_, key, value);
  if (status == Acad::eOk) data_.put_number(key, value);
  return status;
}

Acad::ErrorStatus DrawnObject::set_integer(Key key, int value) {
  const Acad::ErrorStatus status = write_integer(id_, key, value);
  if (status == Acad::eOk) data_.put_number(key, value);
  return status;
}

Acad::ErrorStatus DrawnObject::set_text(Key key, const CString& value) {
  const Acad::ErrorStatus status = write_text(id_, key, value);
  if (status == Acad::eOk) data_.put_text(key, value);
  return status;
}

Acad::ErrorStatus DrawnObject::set_node(Key key, AcDbObjectId node) {
  if (node.isNull()) return remove(key);
  if (node.database() != id_.database()) return Acad::eWrongDatabase;
  const Acad::ErrorStatus status = write_handle(id_, key, node.handle());
  if (status == Acad::eOk) data_.put_handle(key, node.handle());
  return status;
}

Acad::ErrorStatus DrawnObject::remove(Key key) {
  const Acad::ErrorStatus status = remove_value(id_, key);
  if (status == Acad::eOk) data_.remove(key);
  return status;
}

AcDbObjectId DrawnObject::node(Key key) const {
  const std::uint64_t handle = data_.handle(key);
  return id_.isNull() || handle == 0 ? AcDbObjectId() : cad::referenced(id_, handle);
}

}  // namespace network
