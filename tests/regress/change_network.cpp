// Changes a value of every kind on each pipe and node of a drawing, for an independent reader to
// look at:  change_network IN.dxf OUT.dxf

#include <cstdio>

#include "host/db/database.h"
#include "network/pipes.h"
#include "network/wells.h"

using network::Key;

namespace {

int failures = 0;

void demand(Acad::ErrorStatus status) {
  if (status != Acad::eOk) ++failures;
}

void change(AcDbObjectId id) {
  if (const auto pipe = network::open_pipe(id)) {
    demand(pipe->set_real(Key::kDiameter, 456.5));
    demand(pipe->set_integer(Key::kMaterial, 7));
    demand(pipe->set_text(Key::kCode, L"新^管\\1"));
    demand(pipe->set_node(Key::kEndNode, id));
    demand(pipe->remove(Key::kStartInvert));
  } else if (const auto node = network::open_node(id)) {
    demand(node->set_real(Key::kGround, 12.25));
    demand(node->set_text(Key::kNumber, L"井 9"));
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  AcDbDatabase drawing(false);
  if (const cad::Status read = drawing.read_file(argv[1]); !read) {
    std::fprintf(stderr, "%s\n", read.error().message().c_str());
    return 1;
  }
  for (AcDbObjectId id = drawing.first_entity(); !id.isNull(); id = drawing.next_entity(id))
    change(id);
  if (const cad::Status saved = drawing.save_file(argv[2]); !saved) {
    std::fprintf(stderr, "%s\n", saved.error().message().c_str());
    return 1;
  }
  return failures == 0 ? 0 : 1;
}
