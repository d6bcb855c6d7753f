#pragma once

#include <string>
#include <string_view>

/// What drawings of tests have in common, as notes of one tag per line (see written.h), so that a
/// test's drawing shows what is its own. Handles are texts; the symbol tables have the handles that
/// CAD programs give them: BLOCK_RECORD 1, LAYER 2.
namespace noted {

using Note = std::string_view;

/// Joins notes and single words.
template <class... Parts>
std::string join(const Parts&... parts) {
  std::string all;
  (all.append(Note(parts)), ...);
  return all;
}

inline std::string section(Note name, Note content) {
  return join("0 SECTION\n2 ", name, "\n", content, "0 ENDSEC\n");
}

/// `count` is what the file says, which readers need not believe.
inline std::string table(Note name, Note handle, int count, Note records) {
  return join("0 TABLE\n2 ", name, "\n5 ", handle, "\n330 0\n100 AcDbSymbolTable\n70 ",
              std::to_string(count), "\n", records, "0 ENDTAB\n");
}

inline std::string layer(Note handle, Note name, int flags = 0, int color = 7, Note more = {}) {
  return join("0 LAYER\n5 ", handle, "\n330 2\n100 AcDbSymbolTableRecord\n",
              "100 AcDbLayerTableRecord\n2 ", name, "\n70 ", std::to_string(flags), "\n62 ",
              std::to_string(color), "\n6 Continuous\n", more);
}

/// A registered application; `table` is the handle of the table it stands in.
inline std::string application(Note handle, Note table, Note name) {
  return join("0 APPID\n5 ", handle, "\n330 ", table,
              "\n100 AcDbSymbolTableRecord\n100 AcDbRegAppTableRecord\n2 ", name, "\n70 0\n");
}

inline std::string block_record(Note handle, Note name, Note more = {}) {
  return join("0 BLOCK_RECORD\n5 ", handle,
              "\n330 1\n100 AcDbSymbolTableRecord\n100 AcDbBlockTableRecord\n2 ", name, "\n", more);
}

inline constexpr Note kAtOrigin = "10 0.0\n20 0.0\n30 0.0\n";

/// A block with its BLOCK and ENDBLK.
struct Block {
  Note name;
  Note record;      ///< handle of its block record; handles that are empty are left out
  Note begin = {};  ///< of BLOCK
  Note end = {};    ///< of ENDBLK
  int flags = 0;
  Note base = kAtOrigin;
  Note more = {};  ///< further tags of BLOCK
  Note entities = {};
  bool in_paper = false;
};
inline std::string block(const Block& block) {
  const auto head = [&](Note kind, Note handle) {
    return join("0 ", kind, "\n", handle.empty() ? "" : join("5 ", handle, "\n"),
                block.record.empty() ? "" : join("330 ", block.record, "\n"), "100 AcDbEntity\n",
                block.in_paper ? "67 1\n" : "", "8 0\n");
  };
  return join(head("BLOCK", block.begin), "100 AcDbBlockBegin\n2 ", block.name, "\n70 ",
              std::to_string(block.flags), "\n", block.base, block.more, block.entities,
              head("ENDBLK", block.end), "100 AcDbBlockEnd\n");
}

/// An entity of one class part: entity("LINE", "2F", "1F", "0", "AcDbLine", "10 1.0\n...").
inline std::string entity(Note kind, Note handle, Note owner, Note layer, Note part, Note tags) {
  return join("0 ", kind, "\n5 ", handle, "\n330 ", owner, "\n100 AcDbEntity\n8 ", layer, "\n100 ",
              part, "\n", tags);
}

}  // namespace noted
