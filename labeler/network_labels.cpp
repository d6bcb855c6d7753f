#include "labeler/network_labels.h"

#include <algorithm>
#include <utility>

#include "labeler/back_links.h"
#include "labeler/entities.h"
#include "labeler/parallel.h"
#include "labeler/work_meter.h"
#include "module/platform/records.h"
#include "module/record/record_table.h"
#include "module/registry/update_service.h"

namespace labeler {
namespace {

/// So many are read at a time, on several threads, before the user is asked and told.
constexpr std::size_t kBatch = 1 << 14;

std::vector<AcDbObjectId> all_entities() {
  std::vector<AcDbObjectId> entities;
  for_each_entity([&](AcDbObjectId id) { entities.push_back(id); });
  return entities;
}

struct Recorded {
  const LabelType* type;
  AcDbObjectId record;
};

/// The records of an entity whose types this module draws.
std::vector<Recorded> records_of(AcDbObjectId owner) {
  std::vector<Recorded> records;
  const AcDbObjectId dictionary = cad::extension_dictionary(owner);
  if (owner.isErased() || dictionary.isNull()) return records;
  CDimRecordTable table;
  CDimRecordTableIterator walk;
  CDimupateRegisiter& registry = CDimUpdateServ::getInstance().getDimRegServ();
  if (table.open(&registry, dictionary, AcDb::kForRead, 0) != Acad::eOk) return records;
  if (table.newIterator(walk) != Acad::eOk) return records;
  for (walk.start(); !walk.done(); walk.step()) {
    Recorded row{find_type(walk.getDimTypeName()), {}};
    walk.GetObjectId(row.record);
    if (row.type) records.push_back(row);
  }
  return records;
}

/// A label with something to do.
struct Stale {
  AcDbObjectId owner;
  const LabelType* type;
  Check check;
};

/// Compares labels, then brings them up to date.
class Updater {
 public:
  explicit Updater(Labeler& labeler) : labeler_(labeler) {}

  /// False when the user has broken off.
  bool compare(std::span<const AcDbObjectId> owners) {
    WorkMeter meter(L"comparing labels", owners.size());
    while (!owners.empty()) {
      const auto batch = owners.first(std::min(kBatch, owners.size()));
      owners = owners.subspan(batch.size());
      std::vector<Row> rows;
      for (const AcDbObjectId id : batch) {
        if (!meter.step()) return false;
        if (Row row(id); !row.records.empty()) rows.push_back(std::move(row));
      }
      for_each_in_parallel(rows, [](Row& row) { row.read(); });
      for (Row& row : rows) compare(std::move(row));
    }
    return true;
  }

  void find_orphans(std::span<const AcDbObjectId> entities) {
    for (const AcDbObjectId id : entities) find_orphan(id);
  }

  void update(bool overwrite_edited) {
    keep_clear_of_others(overwrite_edited);
    WorkMeter meter(L"updating labels", stale_.size());
    for (Stale& stale : stale_) {
      if (!meter.step()) return;
      if (const std::optional<Owner> owner = owner_of(stale.owner))
        labeler_.update(*owner, *stale.type, stale.check, overwrite_edited);
    }
    for (Finding& finding : lost_) finding.action = Action::kKept;
  }

  Findings findings() && {
    Findings all;
    for (Stale& stale : stale_)
      std::move(stale.check.findings.begin(), stale.check.findings.end(), std::back_inserter(all));
    std::move(lost_.begin(), lost_.end(), std::back_inserter(all));
    return all;
  }

 private:
  /// An entity with labels.
  struct Row {
    explicit Row(AcDbObjectId entity) : id(entity), records(records_of(entity)) {}
    /// What may be read on several threads at a time.
    void read() {
      owner = owner_of(id);
      if (!owner) return;
      for (const Recorded& recorded : records) labels.push_back(read_record(id, recorded.record));
    }

    AcDbObjectId id;
    std::vector<Recorded> records;
    std::optional<Owner> owner;
    std::vector<std::optional<StoredLabel>> labels;  // of the records
  };

  void compare(Row row) {
    seen_.insert(row.id);
    for (std::size_t i = 0; i < row.records.size(); ++i) {
      const LabelType* const type = row.records[i].type;
      if (!row.owner) {
        lost_.push_back({row.id,
                         type->name,
                         {},
                         {},
                         L"the owner is no pipe, node or curve",
                         Reason::kNoData,
                         Action::kNone,
                         {}});
        continue;
      }
      Check check = labeler_.check(*row.owner, *type, std::move(row.labels[i]));
      for (const StoredLine& line : check.stored.lines) seen_.insert(line.entity);
      for (const AcDbObjectId other : check.stored.others) seen_.insert(other);
      if (!check.findings.empty()) stale_.push_back({row.id, type, std::move(check)});
    }
  }

  void find_orphan(AcDbObjectId id) {
    if (seen_.contains(id)) return;
    const std::optional<BackLink> link = back_link_of(id);
    if (!link || link->owner_there) return;
    lost_.push_back({id,
                     {},
                     {},
                     {},
                     L"its owner " + link->owner + L" is gone",
                     Reason::kOwnerGone,
                     Action::kNone,
                     {}});
  }

  /// Only near the labels that are to be drawn: where they are few, a look at all the rest would be
  /// most of an update.
  void keep_clear_of_others(bool overwrite_edited) {
    std::vector<AcDbExtents> places;
    for (const Stale& stale : stale_) {
      if (!Labeler::redraws(stale.check, overwrite_edited)) continue;
      if (const std::optional<Owner> owner = owner_of(stale.owner))
        places.push_back(labeler_.reach_of(*owner, stale.check.draft));
    }
    if (!places.empty()) labeler_.keep_clear_at(places);
  }

  Labeler& labeler_;
  std::vector<Stale> stale_;
  Findings lost_;
  cad::IdSet seen_;  // owners and the entities of their labels
};

/// The pipes and nodes of the drawing; nothing when the user has broken off.
std::optional<std::vector<Owner>> network_parts() {
  const std::vector<AcDbObjectId> entities = all_entities();
  std::vector<Owner> parts;
  parts.reserve(entities.size());  // memory that is not used is none
  WorkMeter meter(L"looking for pipes and nodes", entities.size());
  for (std::span<const AcDbObjectId> rest = entities; !rest.empty();) {
    const auto batch = rest.first(std::min(kBatch, rest.size()));
    rest = rest.subspan(batch.size());
    struct Row {
      AcDbObjectId id;
      std::optional<Owner> part;
    };
    std::vector<Row> rows;
    for (const AcDbObjectId id : batch) rows.push_back({id, {}});
    for_each_in_parallel(rows, [](Row& row) { row.part = network_part(row.id); });
    for (Row& row : rows) {
      if (!meter.step()) return std::nullopt;
      if (row.part) parts.push_back(*std::move(row.part));
    }
  }
  return parts;
}

}  // namespace

LabelCounts label_network(Labeler& labeler, std::span<const LabelType* const> types,
                          const LabelOptions& options) {
  LabelCounts counts;
  const std::optional<std::vector<Owner>> parts = network_parts();
  if (!parts) return counts;
  labeler.keep_clear(*parts);
  std::ptrdiff_t labels = 0;
  for (const LabelType* type : types)
    labels += std::count_if(parts->begin(), parts->end(),
                            [&](const Owner& part) { return part.kind == type->owner; });
  WorkMeter meter(L"drawing labels", static_cast<std::size_t>(labels));
  for (const LabelType* type : types)
    for (const Owner& part : *parts) {
      if (part.kind != type->owner) continue;
      if (!meter.step()) return counts;
      labeler.label(part, *type, options, counts);
    }
  return counts;
}

Findings update_labels(Labeler& labeler, std::span<const AcDbObjectId> owners,
                       const UpdateOptions& options) {
  Updater updater(labeler);
  if (updater.compare(owners) && !options.dry_run) updater.update(options.overwrite_edited);
  return std::move(updater).findings();
}

Findings update_all_labels(Labeler& labeler, const UpdateOptions& options) {
  Updater updater(labeler);
  const std::vector<AcDbObjectId> entities = all_entities();
  if (updater.compare(entities)) {
    updater.find_orphans(entities);
    if (!options.dry_run) updater.update(options.overwrite_edited);
  }
  return std::move(updater).findings();
}

}  // namespace labeler
