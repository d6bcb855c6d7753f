#include <cstdio>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <vector>

#include "cli/commands.h"
#include "cli/records_survey.h"
#include "cli/tool.h"
#include "host/base/codepage.h"
#include "host/base/fold.h"
#include "host/base/numbers.h"
#include "host/db/record.h"
#include "module/record/record.h"
#include "module/record/record_cursor.h"
#include "module/record/record_table.h"
#include "module/registry/update_service.h"

namespace cli {
namespace {

constexpr int kNoSuchOwner = 1;

/// One record of an entity, as listed.
struct ListedRecord {
  std::string owner;
  std::string owner_kind;
  std::wstring type;
  std::vector<StuDim> items;
  bool whole = true;  ///< false when the record ends within an item
};

class Listing {
 public:
  virtual ~Listing() = default;
  virtual void add(const ListedRecord& record) = 0;
  virtual void end() {}
};

/// A line per record, so that a large drawing is neither held in memory nor hard to search.
class JsonListing : public Listing {
 public:
  void add(const ListedRecord& record) override {
    nlohmann::ordered_json out = {{"owner", record.owner},
                                  {"ownerKind", record.owner_kind},
                                  {"type", cad::to_utf8(record.type)},
                                  {"items", nlohmann::ordered_json::array()}};
    for (const StuDim& item : record.items) {
      out["items"].push_back({{"name", cad::to_utf8(item.name)},
                              {"handle", cad::to_utf8(item.handle)},
                              {"value", cad::to_utf8(item.value)},
                              {"prefix", cad::to_utf8(item.prefix)},
                              {"suffix", cad::to_utf8(item.suffix)},
                              {"separator", cad::to_utf8(item.separator)},
                              {"recordKind", cad::to_utf8(item.recordKind)},
                              {"extra", cad::to_utf8(item.extra)},
                              {"state", name_of(annotation_state(item))}});
    }
    const std::string line = out.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
    std::printf("%s  %s", empty_ ? "[\n" : ",\n", line.c_str());
    empty_ = false;
  }
  void end() override { std::puts(empty_ ? "[]" : "\n]"); }

 private:
  bool empty_ = true;
};

class TextListing : public Listing {
 public:
  void add(const ListedRecord& record) override {
    if (record.owner != last_owner_) {
      std::printf("%s %s\n", record.owner.c_str(), record.owner_kind.c_str());
      last_owner_ = record.owner;
    }
    std::printf("  %s\n", cad::to_utf8(record.type).c_str());
    for (const StuDim& item : record.items) print_item(item);
    if (!record.whole) std::puts("    and a part of an item: see pipenote check");
  }

 private:
  static void print_item(const StuDim& item) {
    const AnnotationState state = annotation_state(item);
    std::string line = "    " + in_quotes(item.name);
    const std::wstring text = item.prefix + item.value + item.suffix;
    if (!text.empty()) line += " = " + in_quotes(text);
    if (state == AnnotationState::kNone) {
      line += ", no entity";
    } else {
      line += " in " + cad::to_utf8(item.handle) + ", " + name_of(state);
    }
    std::puts(line.c_str());
  }
  std::string last_owner_;
};

/// Lists the records of one entity; what is no record is told on stderr.
void list_records(const RecordOwner& owner, const std::wstring& type, Listing& listing) {
  CDimRecordTable table;
  CDimRecordTableIterator walk;
  CDimupateRegisiter& registry = CDimUpdateServ::getInstance().getDimRegServ();
  if (table.open(&registry, owner.dictionary, AcDb::kForRead, 0) != Acad::eOk) return;
  if (table.newIterator(walk) != Acad::eOk) return;
  for (walk.start(); !walk.done(); walk.step()) {
    if (!type.empty() && type != walk.getDimTypeName()) continue;
    ListedRecord listed{handle_of(owner.entity), kind_of(owner.entity), walk.getDimTypeName(), {}};
    AcDbObjectId id;
    walk.GetObjectId(id);
    CDimRecord record;
    CDimRecordIterator cursor;
    if (record.open(id, AcDb::kForRead, false) != Acad::eOk ||
        record.newIterator(cursor) != Acad::eOk) {
      complain(listed.owner + " " + cad::to_utf8(listed.type) +
               " is no record: see pipenote check");
      continue;
    }
    for (cursor.start(); !cursor.done(); cursor.step()) {
      StuDim item;
      if (cursor.getDim(item) == Acad::eOk) {
        listed.items.push_back(std::move(item));
      } else {
        listed.whole = false;
      }
    }
    listing.add(listed);
  }
}

/// The entity of the --owner option; nothing, and `status` why, when there is none.
std::optional<RecordOwner> wanted_owner(AcDbDatabase& database, const std::string& text,
                                        int& status) {
  const auto handle = cad::parse_handle(std::string_view(text));
  if (!handle) {
    complain("\"" + text + "\" is no handle");
    status = kWrongUsage;
    return std::nullopt;
  }
  AcDbObjectId id;
  if (database.getAcDbObjectId(id, false, AcDbHandle(*handle)) != Acad::eOk ||
      !cad::is_entity(id)) {
    complain("no entity has the handle " + text);
    status = kNoSuchOwner;
    return std::nullopt;
  }
  return record_owner(id);
}

}  // namespace

int records_command(const RecordsOptions& options) {
  cad::Host host;
  if (!load_modules(host, options.modules)) return kWrongUsage;
  const std::wstring type = cad::from_utf8(options.type);
  if (!type.empty() && !CDimUpdateServ::getInstance().getDimRegServ().isRegisted(type.c_str())) {
    complain("\"" + options.type + "\" is no annotation type");
    return kWrongUsage;
  }
  const cad::Result<AcApDocument*> drawing = host.open_drawing(options.drawing);
  if (!drawing) {
    complain(drawing.error().message());
    return kNotRead;
  }
  AcDbDatabase& database = *(*drawing)->database();
  std::unique_ptr<Listing> listing;
  if (options.json) {
    listing = std::make_unique<JsonListing>();
  } else {
    listing = std::make_unique<TextListing>();
  }
  if (options.owner.empty()) {
    for_each_record_owner(database,
                          [&](const RecordOwner& owner) { list_records(owner, type, *listing); });
  } else {
    int status = kSuccess;
    const std::optional<RecordOwner> owner = wanted_owner(database, options.owner, status);
    if (!owner) return status;
    if (!owner->dictionary.isNull()) list_records(*owner, type, *listing);
  }
  listing->end();
  return kSuccess;
}

}  // namespace cli
