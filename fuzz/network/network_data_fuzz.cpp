// Any tags as the extended data of an entity: reading comes to an end, a value that is written is
// read again, and no other value changes by it.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "host/db/database.h"
#include "network/object_data.h"
#include "network/pipe_ends.h"
#include "network/survey.h"

namespace {

using network::Key;
using network::ObjectData;

constexpr std::string_view kFront =
    "0\nSECTION\n2\nENTITIES\n0\nCIRCLE\n5\nB1\n8\n0\n10\n0.0\n20\n0.0\n40\n1.0\n1001\nPIPENOTE\n"
    "1000\nkind\n1000\nhydrant\n0\nLINE\n5\nA1\n8\n0\n10\n0.0\n20\n0.0\n11\n9.0\n21\n0.0\n"
    "1001\nPIPENOTE\n";
constexpr std::string_view kBack = "\n0\nENDSEC\n0\nEOF\n";

void demand(bool holds, const char* law) {
  if (holds) return;
  std::fprintf(stderr, "broken: %s\n", law);
  std::abort();
}

bool same_value(const ObjectData& a, const ObjectData& b, Key key) {
  return a.has(key) == b.has(key) && a.real(key) == b.real(key) && a.text(key) == b.text(key) &&
         a.handle(key) == b.handle(key);
}

Acad::ErrorStatus write(AcDbObjectId id, Key key) {
  switch (network::row_of(key).group) {
    case network::kRealGroup:
      return network::write_real(id, key, -12.5);
    case network::kIntegerGroup:
      return network::write_integer(id, key, 3);
    case network::kHandleGroup:
      return network::write_handle(id, key, 0xB1);
    default:
      return network::write_text(id, key, L"diameter");
  }
}

bool holds_what_was_written(const ObjectData& data, Key key) {
  switch (network::row_of(key).group) {
    case network::kRealGroup:
      return data.real(key) == -12.5;
    case network::kIntegerGroup:
      return data.integer(key) == 3;
    case network::kHandleGroup:
      return data.handle(key) == 0xB1;
    default:
      return data.text(key) == L"diameter";
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  std::string dxf(kFront);
  dxf.append(reinterpret_cast<const char*>(bytes), size);
  dxf += kBack;
  AcDbDatabase drawing(false);
  AcDbObjectId id;
  if (!drawing.read_bytes(dxf, "data.dxf") ||
      drawing.getAcDbObjectId(id, false, AcDbHandle(0xA1)) != Acad::eOk) {
    return 0;
  }
  network::survey(drawing);
  std::optional<ObjectData> before = ObjectData::read(id);
  if (!before) return 0;
  demand(network::kind_of(id) == before->kind(), "the kind alone is that of the data");
  for (const network::DataFault& fault : before->faults())
    demand(!fault.message().empty(), "a fault has words");
  for (int i = 0; i < network::kKeyCount; ++i) {
    const Key key = static_cast<Key>(i);
    const Acad::ErrorStatus status = write(id, key);
    if (status == Acad::eOnLockedLayer) return 0;
    demand(status == Acad::eOk, "a value can be written");
    const std::optional<ObjectData> after = ObjectData::read(id);
    demand(after && holds_what_was_written(*after, key), "what is written is read");
    for (int j = 0; j < network::kKeyCount; ++j)
      if (j != i) demand(same_value(*before, *after, static_cast<Key>(j)), "the others stay");
    before = after;
  }
  AcDbDatabase again(false);
  demand(static_cast<bool>(again.read_bytes(drawing.save_bytes(), "again.dxf")), "it can be saved");
  for (int i = 0; i < network::kKeyCount; ++i) {
    const Key key = static_cast<Key>(i);
    demand(network::remove_value(id, key) == Acad::eOk, "a value can be removed");
    demand(!ObjectData::read(id)->has(key), "a value that was removed is absent");
  }
  return 0;
}
