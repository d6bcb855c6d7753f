#pragma once

#include <string>
#include <string_view>

#include "tests/host/dxf/written.h"

/// Writes drawings for pictures: one tag per line, see tests/host/dxf/written.h. Layers:
///   0 (7), RED (1), GREEN (3, dashed), OFF (5, off), FROZEN (5), SCREEN (5, not plotted),
///   WIDE (2, 0.50 mm), ORANGE (true colour FF8800)
/// Linetype DASHED: 4 drawn, 2 not. Text style Standard. No block records: model space is what is
/// in ENTITIES.
class DrawingNote {
 public:
  /// Its own groups behind layer and whatever else all entities have; no handle.
  DrawingNote& entity(std::string_view kind, std::string_view own, std::string_view layer = "0",
                      std::string_view common = {}) {
    entities_ += record(kind, own, layer, common);
    return *this;
  }
  DrawingNote& block(std::string_view name, std::string_view entities,
                     std::string_view base = "10 0\n20 0\n30 0\n") {
    blocks_ += "0 BLOCK\n8 0\n2 ";
    blocks_ += name;
    blocks_ += "\n70 0\n";
    blocks_ += base;
    blocks_ += entities;
    blocks_ += "0 ENDBLK\n8 0\n";
    return *this;
  }
  DrawingNote& header(std::string_view tags) {
    header_ += tags;
    return *this;
  }
  DrawingNote& style(std::string_view tags) {
    styles_ += "0 STYLE\n";
    styles_ += tags;
    return *this;
  }

  static std::string record(std::string_view kind, std::string_view own,
                            std::string_view layer = "0", std::string_view common = {}) {
    std::string text = "0 ";
    text.append(kind).append("\n8 ").append(layer).append("\n").append(common).append(own);
    return text;
  }

  std::string bytes() const {
    std::string note = "0 SECTION\n2 HEADER\n9 $ACADVER\n1 AC1009\n" + header_ + "0 ENDSEC\n";
    note += "0 SECTION\n2 TABLES\n0 TABLE\n2 LTYPE\n70 1\n";
    note += "0 LTYPE\n2 DASHED\n70 0\n3 __ __\n72 65\n73 2\n40 6.0\n49 4.0\n49 -2.0\n0 ENDTAB\n";
    note += "0 TABLE\n2 LAYER\n70 8\n";
    note += layer("0", 7) + layer("RED", 1) + layer("GREEN", 3, "DASHED") + layer("OFF", -5);
    note += layer("FROZEN", 5, "CONTINUOUS", 1);
    note += layer("SCREEN", 5) + "290 0\n";
    note += layer("WIDE", 2) + "370 50\n";
    note += layer("ORANGE", 30) + "420 16746496\n";
    note += "0 ENDTAB\n0 TABLE\n2 STYLE\n70 1\n0 STYLE\n2 Standard\n70 0\n40 0.0\n41 1.0\n50 0.0\n";
    note += "71 0\n42 2.5\n3 txt\n4 \n" + styles_ + "0 ENDTAB\n0 ENDSEC\n";
    note += "0 SECTION\n2 BLOCKS\n" + blocks_ + "0 ENDSEC\n";
    note += "0 SECTION\n2 ENTITIES\n" + entities_ + "0 ENDSEC\n0 EOF\n";
    return written::ascii(note);
  }

 private:
  static std::string layer(std::string_view name, int color,
                           std::string_view linetype = "CONTINUOUS", int flags = 0) {
    std::string text = "0 LAYER\n2 ";
    text.append(name).append("\n70 ").append(std::to_string(flags)).append("\n62 ");
    return text.append(std::to_string(color)).append("\n6 ").append(linetype).append("\n");
  }

  std::string header_, styles_, blocks_, entities_;
};

inline std::string point_tags(int code, double x, double y, double z = 0.0) {
  return std::to_string(code) + ' ' + std::to_string(x) + '\n' + std::to_string(code + 10) + ' ' +
         std::to_string(y) + '\n' + std::to_string(code + 20) + ' ' + std::to_string(z) + '\n';
}

inline std::string line_tags(double x0, double y0, double x1, double y1) {
  return point_tags(10, x0, y0) + point_tags(11, x1, y1);
}
