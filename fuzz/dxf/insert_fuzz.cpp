// Any drawing, inserted as a block into a new drawing and into one of R12:
//   - it stays as it is itself;
//   - when it is refused, the receiver is unchanged;
//   - otherwise the receiver is saved as bytes that read again, with the block in them, and taking
//     the insertion back leaves the bytes there were.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "host/db/block_frame.h"
#include "host/db/database.h"
#include "host/db/drawing.h"
#include "host/db/undo.h"

namespace {

constexpr wchar_t kName[] = L"FUZZED";
constexpr char kOldDrawing[] =
    "  0\nSECTION\n  2\nTABLES\n  0\nTABLE\n  2\nLAYER\n 70\n0\n  0\nENDTAB\n  0\nENDSEC\n"
    "  0\nSECTION\n  2\nENTITIES\n  0\nENDSEC\n  0\nEOF\n";

void require(bool holds, const char* law) {
  if (holds) return;
  std::fprintf(stderr, "broken: %s\n", law);
  std::abort();
}

void insert_into(AcDbDatabase& receiver, AcDbDatabase& source) {
  const std::string before = receiver.save_bytes();
  AcDbObjectId block;
  const Acad::ErrorStatus status = receiver.insert(block, kName, &source);
  require((status == Acad::eOk) == !block.isNull(), "a block or a reason");
  require(receiver.open_objects().empty(), "nothing stays open");
  const std::string after = receiver.save_bytes();
  if (status != Acad::eOk) {
    require(after == before && !receiver.is_modified(), "a refused drawing changes nothing");
    return;
  }
  AcDbDatabase again(false);
  require(bool(again.read_bytes(after, "again")), "what was saved reads again");
  require(cad::block_record_or_begin(again.drawing(), kName) != nullptr, "the block is saved");
  require(cad::undo_log(receiver).undo(1) == 1, "an insertion is one step");
  require(receiver.save_bytes() == before, "taking it back leaves the bytes there were");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  AcDbDatabase source(false);
  if (!source.read_bytes(bytes, "fuzzed")) return 0;
  AcDbDatabase receiver(true);
  insert_into(receiver, source);
  AcDbDatabase old(false);
  require(bool(old.read_bytes(kOldDrawing, "old")), "the old drawing reads");
  insert_into(old, source);
  require(source.save_bytes() == bytes, "the source stays as it is");
  return 0;
}
