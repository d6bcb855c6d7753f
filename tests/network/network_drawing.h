#pragma once

#include <string>
#include <string_view>

#include "host/db/database.h"
#include "tests/host/app/host_test.h"
#include "tests/host/app/small_drawing.h"

/// Drawings of pipes and nodes in the form of dxf(): lines of code and value.
namespace network_drawing {

/// Extended data from pairs, "1000 kind\n1000 water-pipe\n...".
inline std::string with_data(std::string_view pairs) {
  return pairs.empty() ? std::string() : "1001 PIPENOTE\n" + std::string(pairs);
}

inline std::string kind(const std::string& word) { return "1000 kind\n1000 " + word + "\n"; }
inline std::string real(const std::string& key, const std::string& value) {
  return "1000 " + key + "\n1040 " + value + "\n";
}
inline std::string whole(const std::string& key, const std::string& value) {
  return "1000 " + key + "\n1070 " + value + "\n";
}
inline std::string text(const std::string& key, const std::string& value) {
  return "1000 " + key + "\n1000 " + value + "\n";
}
inline std::string node(const std::string& key, const std::string& handle) {
  return "1000 " + key + "\n1005 " + handle + "\n";
}

/// "10 1.0\n20 2.0\n30 0.0\n" for code 10.
inline std::string point(int code, double x, double y, double z = 0.0) {
  return std::to_string(code) + " " + std::to_string(x) + "\n" + std::to_string(code + 10) + " " +
         std::to_string(y) + "\n" + std::to_string(code + 20) + " " + std::to_string(z) + "\n";
}

/// Any entity: its kind, handle, own groups and data.
inline std::string entity(const std::string& type, const std::string& handle,
                          const std::string& groups, const std::string& pairs = {}) {
  return "0 " + type + "\n5 " + handle + "\n8 0\n" + groups + with_data(pairs);
}
inline std::string line(const std::string& handle, double x1, double y1, double x2, double y2,
                        const std::string& pairs) {
  return entity("LINE", handle, point(10, x1, y1) + point(11, x2, y2), pairs);
}
inline std::string well(const std::string& handle, double x, double y, const std::string& pairs) {
  return entity("INSERT", handle, "2 WELL\n" + point(10, x, y), pairs);
}

inline std::string drawing(const std::string& entities, const std::string& version = "AC1009") {
  return dxf("0 SECTION\n2 HEADER\n9 $ACADVER\n1 " + version +
             "\n0 ENDSEC\n0 SECTION\n2 ENTITIES\n" + entities + "0 ENDSEC\n0 EOF\n");
}

}  // namespace network_drawing

/// A host with one drawing of a network.
class WithNetwork : public WithHost {
 protected:
  void given_network(const std::string& entities) {
    database = given_drawing(network_drawing::drawing(entities))->database();
  }
  AcDbObjectId id(std::uint64_t handle) const {
    AcDbObjectId id;
    if (database->getAcDbObjectId(id, false, AcDbHandle(handle)) != Acad::eOk) id.setNull();
    return id;
  }

  AcDbDatabase* database = nullptr;
};
