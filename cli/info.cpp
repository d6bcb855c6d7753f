#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <iterator>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>

#include "cli/add_commands.h"
#include "cli/files.h"
#include "cli/records_survey.h"
#include "cli/tool.h"
#include "host/base/codepage.h"
#include "host/base/numbers.h"
#include "host/db/dictionary.h"
#include "host/db/open.h"
#include "host/db/xrecord.h"
#include "host/dwg/converter.h"
#include "module/registry/vocabulary.h"

namespace cli {
namespace {

constexpr char kFooter[] = R"(Example:
  pipenote info plan.dxf
  pipenote info --json plan.dxf | jq .kinds.LINE)";

struct InfoOptions {
  std::string drawing;
  bool json = false;
};

struct RecordCount {
  std::uint64_t entities = 0;
  std::uint64_t records = 0;
};

/// Whether entries of this name are annotation records.
bool is_annotation_type(const wchar_t* name) {
  return std::any_of(
      std::begin(dim::kDimTypeNames), std::end(dim::kDimTypeNames),
      [&](const dim::VocabularyRow& row) { return std::wstring_view(row.name) == name; });
}

std::uint64_t records_in(AcDbObjectId dictionary_id) {
  AcDbDictionary* dictionary = nullptr;
  if (acdbOpenObject(dictionary, dictionary_id, AcDb::kForRead) != Acad::eOk) return 0;
  std::uint64_t count = 0;
  const std::unique_ptr<AcDbDictionaryIterator> walk(dictionary->newIterator());
  for (; !walk->done(); walk->next())
    if (is_annotation_type(walk->name()) &&
        walk->objectId().objectClass()->isDerivedFrom(AcDbXrecord::desc()))
      ++count;
  dictionary->close();
  return count;
}

RecordCount count_records(AcDbDatabase& database) {
  RecordCount count;
  if (!database.has_dictionaries()) return count;
  for_each_record_owner(database, [&](const RecordOwner& owner) {
    const std::uint64_t records = records_in(owner.dictionary);
    count.records += records;
    count.entities += records ? 1 : 0;
  });
  return count;
}

std::string handle_digits(std::uint64_t handle) { return cad::to_utf8(cad::handle_text(handle)); }

void print_json(const InfoOptions& options, const cad::DrawingFacts& facts,
                const RecordCount& count) {
  nlohmann::ordered_json out;
  if (cad::dwg::is_dwg_file(options.drawing)) out["file"] = "dwg";
  out["version"] = facts.version;
  out["release"] = facts.version_name;
  out["encoding"] = facts.binary ? "binary" : "ascii";
  if (!facts.binary) out["line_ends"] = facts.crlf ? "crlf" : "lf";
  out["code_page"] = facts.code_page;
  out["bytes"] = facts.bytes;
  out["objects"] = facts.objects;
  out["handles"] = {{"next", handle_digits(facts.handle_seed)},
                    {"without", facts.without_handle},
                    {"duplicate", facts.duplicate_handles}};
  out["kinds"] = nlohmann::ordered_json::object();
  for (const cad::DrawingFacts::Kind& kind : facts.kinds) out["kinds"][kind.name] = kind.count;
  out["records"] = {{"entities", count.entities}, {"records", count.records}};
  // Names in a damaged or old drawing need not be UTF-8.
  std::puts(out.dump(2, ' ', false, nlohmann::json::error_handler_t::replace).c_str());
}

void print_text(const InfoOptions& options, const cad::DrawingFacts& facts,
                const RecordCount& count) {
  std::printf("%s\n", options.drawing.c_str());
  std::printf("  release     %s (%s)\n", facts.version_name.c_str(), facts.version.c_str());
  if (cad::dwg::is_dwg_file(options.drawing))
    std::printf("  file        DWG; what follows is of the DXF that a converter made of it\n");
  std::printf("  encoding    %s\n", facts.binary ? "binary"
                                    : facts.crlf ? "ASCII, CR LF line ends"
                                                 : "ASCII, LF line ends");
  std::printf("  code page   %s\n", facts.code_page.empty() ? "none" : facts.code_page.c_str());
  std::printf("  size        %llu bytes, %llu objects\n",
              static_cast<unsigned long long>(facts.bytes),
              static_cast<unsigned long long>(facts.objects));
  std::printf("  handles     next %s, %llu objects without, %llu duplicates\n",
              handle_digits(facts.handle_seed).c_str(),
              static_cast<unsigned long long>(facts.without_handle),
              static_cast<unsigned long long>(facts.duplicate_handles));
  std::printf("  records     %llu on %llu entities\n",
              static_cast<unsigned long long>(count.records),
              static_cast<unsigned long long>(count.entities));
  std::printf("  kinds\n");
  for (const cad::DrawingFacts::Kind& kind : facts.kinds)
    std::printf("    %8llu  %s\n", static_cast<unsigned long long>(kind.count), kind.name.c_str());
}

ExitStatus info(const InfoOptions& options) {
  cad::Host host;
  const cad::Result<AcApDocument*> drawing = host.open_drawing(options.drawing);
  if (!drawing) {
    complain(drawing.error().message());
    return kNotRead;
  }
  AcDbDatabase& database = *(*drawing)->database();
  const RecordCount count = count_records(database);
  if (options.json)
    print_json(options, database.facts(), count);
  else
    print_text(options, database.facts(), count);
  return kSuccess;
}

}  // namespace

void add_info_command(CLI::App& program, int& status) {
  const auto options = std::make_shared<InfoOptions>();
  CLI::App* const command = program.add_subcommand("info", "tell what a drawing holds");
  command->footer(kFooter);
  add_drawing(*command, options->drawing);
  command->add_flag("--json", options->json, "print JSON");
  command->callback([=, &status] { status = info(*options); });
}

}  // namespace cli
