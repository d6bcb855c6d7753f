#include "labeler/network_labels.h"

#include <algorithm>
#include <functional>
#include <unordered_set>
#include <utility>

#include "labeler/back_links.h"
#include "module/platform/opened.h"
#include "module/record/record_table.h"
#include "module/registry/update_service.h"

namespace labeler {
namespace {

using Visit = std::function<void(AcDbObjectId)>;

void for_each_entity(const Visit& visit) {
  const AcDbDatabase* const drawing = acdbHostApplicationServices()->workingDatabase();
  if (!drawing) return;
  for (AcDbObjectId id = drawing->first_entity(); !id.isNull(); id = drawing->next_entity(id))
    visit(id);
}

struct Recorded {
  const LabelType* type;
  AcDbObjectId record;
};

/// The records of an entity whose types this module draws.
std::vector<Recorded> records_of(AcDbObjectId owner) {
  std::vector<Recorded> records;
  AcDbObjectId dictionary;
  if (dim::Opened<AcDbEntity> entity{owner, AcDb::kForRead})
    dictionary = entity->extensionDictionary();
  if (dictionary.isNull()) return records;
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

struct IdHash {
  std::size_t operator()(AcDbObjectId id) const { return std::hash<std::int64_t>()(id.asOldId()); }
};
using IdSet = std::unordered_set<AcDbObjectId, IdHash>;

/// Compares labels, then brings them up to date.
class Updater {
 public:
  explicit Updater(Labeler& labeler) : labeler_(labeler) {}

  void compare(AcDbObjectId id) {
    const std::vector<Recorded> records = records_of(id);
    if (records.empty()) return;
    seen_.insert(id);
    const std::optional<Owner> owner = owner_of(id);
    for (const auto& [type, record] : records) {
      if (!owner) {
        lost_.push_back({id,
                         type->name,
                         {},
                         {},
                         L"the owner is no pipe, node or curve",
                         Reason::kNoData,
                         Action::kNone,
                         {}});
        continue;
      }
      Check check = labeler_.check(*owner, *type, read_record(record));
      for (const StoredLine& line : check.stored.lines) seen_.insert(line.entity);
      seen_.insert(check.stored.others.begin(), check.stored.others.end());
      if (!check.findings.empty()) stale_.push_back({id, type, std::move(check)});
    }
  }

  void find_orphans(AcDbObjectId id) {
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

  void update(bool overwrite_edited) {
    const bool any_redrawn = std::any_of(stale_.begin(), stale_.end(), [](const Stale& stale) {
      return stale.check.moved || stale.check.state == Check::State::kStaleForm;
    });
    if (any_redrawn) labeler_.keep_clear();
    for (Stale& stale : stale_)
      if (const std::optional<Owner> owner = owner_of(stale.owner))
        labeler_.update(*owner, *stale.type, stale.check, overwrite_edited);
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
  Labeler& labeler_;
  std::vector<Stale> stale_;
  Findings lost_;
  IdSet seen_;  // owners and the entities of their labels
};

}  // namespace

LabelCounts label_network(Labeler& labeler, std::span<const LabelType* const> types,
                          const LabelOptions& options) {
  std::vector<Owner> parts;
  for_each_entity([&](AcDbObjectId id) {
    if (std::optional<Owner> part = network_part(id)) parts.push_back(*std::move(part));
  });
  labeler.keep_clear(parts);
  LabelCounts counts;
  for (const LabelType* type : types)
    for (const Owner& part : parts)
      if (part.kind == type->owner) labeler.label(part, *type, options, counts);
  return counts;
}

Findings update_labels(Labeler& labeler, std::span<const AcDbObjectId> owners,
                       const UpdateOptions& options) {
  Updater updater(labeler);
  for (const AcDbObjectId id : owners) updater.compare(id);
  if (!options.dry_run) updater.update(options.overwrite_edited);
  return std::move(updater).findings();
}

Findings update_all_labels(Labeler& labeler, const UpdateOptions& options) {
  Updater updater(labeler);
  for_each_entity([&](AcDbObjectId id) { updater.compare(id); });
  for_each_entity([&](AcDbObjectId id) { updater.find_orphans(id); });
  if (!options.dry_run) updater.update(options.overwrite_edited);
  return std::move(updater).findings();
}

}  // namespace labeler
