#include "host/db/default_drawing.h"

#include <cstdint>
#include <string_view>
#include <utility>

#include "host/db/content.h"
#include "host/dxf/tag_writer.h"

namespace cad {
namespace {

/// Handles of the objects that others refer to.
enum : std::uint64_t {
  kBlockTable = 1,
  kLayerTable = 2,
  kStyleTable = 3,
  kLinetypeTable = 5,
  kViewTable = 6,
  kUcsTable = 7,
  kViewportTable = 8,
  kRegAppTable = 9,
  kDimStyleTable = 0xA,
  kRoot = 0xC,
  kGroups = 0xD,
  kFirstFree = 0x10,
};

class DrawingText {
 public:
  DrawingText() : write_(text_, memory_dialect()) {}

  std::string make() {
    header();
    section("CLASSES");
    end_section();
    tables();
    blocks();
    section("ENTITIES");
    end_section();
    objects();
    write_.raw(0, "EOF");
    return std::move(text_);
  }

 private:
  void section(std::string_view name) {
    write_.raw(0, "SECTION");
    write_.raw(2, name);
  }
  void end_section() { write_.raw(0, "ENDSEC"); }

  void header() {
    constexpr std::uint64_t kSeed = 0x100;
    section("HEADER");
    variable("$ACADVER", 1, "AC1027");
    variable("$DWGCODEPAGE", 3, "ANSI_936");
    write_.raw(9, "$INSBASE");
    write_.point(10, 0, 0, 0);
    variable("$TEXTSTYLE", 7, "Standard");
    variable("$CLAYER", 8, "0");
    variable("$CELTYPE", 6, "ByLayer");
    write_.raw(9, "$CECOLOR");
    write_.integer(62, 256);
    write_.raw(9, "$LTSCALE");
    write_.real(40, 1.0);
    write_.raw(9, "$TEXTSIZE");
    write_.real(40, 2.5);
    write_.raw(9, "$TILEMODE");
    write_.integer(70, 1);
    write_.raw(9, "$HANDSEED");
    write_.handle(5, kSeed);
    end_section();
  }
  void variable(std::string_view name, int code, std::string_view value) {
    write_.raw(9, name);
    write_.raw(code, value);
  }

  void table(std::string_view name, std::uint64_t handle, int count) {
    write_.raw(0, "TABLE");
    write_.raw(2, name);
    write_.handle(5, handle);
    write_.handle(330, 0);
    write_.raw(100, "AcDbSymbolTable");
    write_.integer(70, count);
  }
  std::uint64_t row(std::string_view kind, std::uint64_t table, std::string_view part,
                    std::string_view name, int handle_code = 5) {
    const std::uint64_t handle = next_++;
    write_.raw(0, kind);
    write_.handle(handle_code, handle);
    write_.handle(330, table);
    write_.raw(100, "AcDbSymbolTableRecord");
    write_.raw(100, part);
    write_.raw(2, name);
    return handle;
  }
  void linetype(std::string_view name, std::string_view description) {
    row("LTYPE", kLinetypeTable, "AcDbLinetypeTableRecord", name);
    write_.integer(70, 0);
    write_.raw(3, description);
    write_.integer(72, 65);
    write_.integer(73, 0);
    write_.real(40, 0.0);
  }
  void end_table() { write_.raw(0, "ENDTAB"); }

  void tables() {
    section("TABLES");
    table("VPORT", kViewportTable, 0);
    end_table();
    table("LTYPE", kLinetypeTable, 3);
    linetype("ByBlock", "");
    linetype("ByLayer", "");
    linetype("Continuous", "Solid line");
    end_table();
    table("LAYER", kLayerTable, 1);
    row("LAYER", kLayerTable, "AcDbLayerTableRecord", "0");
    write_.integer(70, 0);
    write_.integer(62, 7);
    write_.raw(6, "Continuous");
    end_table();
    table("STYLE", kStyleTable, 1);
    row("STYLE", kStyleTable, "AcDbTextStyleTableRecord", "Standard");
    write_.integer(70, 0);
    write_.real(40, 0.0);
    write_.real(41, 1.0);
    write_.real(50, 0.0);
    write_.integer(71, 0);
    write_.real(42, 2.5);
    write_.raw(3, "txt");
    write_.raw(4, "");
    end_table();
    table("VIEW", kViewTable, 0);
    end_table();
    table("UCS", kUcsTable, 0);
    end_table();
    table("APPID", kRegAppTable, 1);
    row("APPID", kRegAppTable, "AcDbRegAppTableRecord", "ACAD");
    write_.integer(70, 0);
    end_table();
    table("DIMSTYLE", kDimStyleTable, 1);
    row("DIMSTYLE", kDimStyleTable, "AcDbDimStyleTableRecord", "Standard", 105);
    write_.integer(70, 0);
    end_table();
    table("BLOCK_RECORD", kBlockTable, 2);
    model_ = row("BLOCK_RECORD", kBlockTable, "AcDbBlockTableRecord", "*Model_Space");
    paper_ = row("BLOCK_RECORD", kBlockTable, "AcDbBlockTableRecord", "*Paper_Space");
    end_table();
    end_section();
  }

  void block(std::string_view name, std::uint64_t record, bool paper) {
    const auto frame = [&](std::string_view kind, std::string_view part) {
      write_.raw(0, kind);
      write_.handle(5, next_++);
      write_.handle(330, record);
      write_.raw(100, "AcDbEntity");
      if (paper) write_.integer(67, 1);
      write_.raw(8, "0");
      write_.raw(100, part);
    };
    frame("BLOCK", "AcDbBlockBegin");
    write_.raw(2, name);
    write_.integer(70, 0);
    write_.point(10, 0, 0, 0);
    write_.raw(3, name);
    write_.raw(1, "");
    frame("ENDBLK", "AcDbBlockEnd");
  }

  void blocks() {
    section("BLOCKS");
    block("*Model_Space", model_, false);
    block("*Paper_Space", paper_, true);
    end_section();
  }

  void dictionary(std::uint64_t handle, std::uint64_t owner) {
    write_.raw(0, "DICTIONARY");
    write_.handle(5, handle);
    write_.handle(330, owner);
    write_.raw(100, "AcDbDictionary");
    write_.integer(281, 1);
  }

  void objects() {
    section("OBJECTS");
    dictionary(kRoot, 0);
    write_.raw(3, "ACAD_GROUP");
    write_.handle(350, kGroups);
    dictionary(kGroups, kRoot);
    end_section();
  }

  std::string text_;
  dxf::TagWriter write_;
  std::uint64_t next_ = kFirstFree;
  std::uint64_t model_ = 0;
  std::uint64_t paper_ = 0;
};

}  // namespace

std::string default_drawing() { return DrawingText().make(); }

}  // namespace cad
