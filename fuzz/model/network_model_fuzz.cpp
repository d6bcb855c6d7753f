// Any bytes as the input file of a calculation program: what can be read is drawn, and the drawing
// can be saved.

#include <cstdint>
#include <cstdlib>
#include <string>

#include "host/db/database.h"
#include "network/model/model_drawing.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  auto model =
      network::read_network_model(std::string(reinterpret_cast<const char*>(data), size), "model");
  if (!model) return 0;
  AcDbDatabase database;
  if (!network::draw_model(*model, database, {})) std::abort();
  AcDbDatabase again(false);
  if (!again.read_bytes(database.save_bytes(), "model.dxf")) std::abort();
  return 0;
}
