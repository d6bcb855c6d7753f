#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "module/record/dim_item.h"

/// What recording, updating and deleting labels is to do, over plain strings: no drawing, no
/// handles to open, no chains. Written from the rules, not from the code it is compared with.
class LabelModel {
 public:
  using Items = std::vector<StuDim>;

  struct Label {
    std::wstring text;
    bool shows_text = true;  ///< a TEXT or MTEXT; other entities show nothing
    bool locked = false;     ///< on a locked layer
    bool erased = false;
    bool gone = false;  ///< its handle resolves no more
    friend bool operator==(const Label&, const Label&) = default;
  };
  struct Owner {
    std::map<std::wstring, Items> records;  ///< by type name, all of them in small letters
    bool erased = false;
    bool gone = false;
    friend bool operator==(const Owner&, const Owner&) = default;
  };
  using Rounding = std::function<std::wstring(const std::wstring& name, const std::wstring& value)>;

  std::map<std::wstring, Label> labels;  ///< by handle
  std::map<std::wstring, Owner> owners;
  friend bool operator==(const LabelModel& a, const LabelModel& b) {
    return a.labels == b.labels && a.owners == b.owners;
  }

  // Each answers as the manager's operation does: 0 for success.
  int record(const std::wstring& owner, const std::wstring& type, const StuDim& item);
  int record_entity(const std::wstring& owner, const std::wstring& type, const std::wstring& label);
  int update(const std::wstring& owner, StuDim item, bool replace_all, const Rounding& rounding);
  int delete_type(const std::wstring& owner, const std::wstring& type);
  int delete_all(const std::wstring& owner);
  int delete_all_info(const std::wstring& owner);

  void erase_label(const std::wstring& label, bool erased) { labels.at(label).erased = erased; }
  void erase_owner(const std::wstring& owner, bool erased) { owners.at(owner).erased = erased; }
  void save_and_open();

  /// Whether entities of the type are there, and whether some are not. False without the record.
  bool presence(const std::wstring& owner, const std::wstring& type, bool& existing,
                bool& missing) const;

 private:
  Owner* usable(const std::wstring& owner);
  const Label* found(const std::wstring& handle) const;
  bool can_write(const std::wstring& handle) const;
  bool is_stale(const StuDim& item) const;
  void clean(Items& items) const;
  void store(Items& items, const StuDim& item) const;
  void redraw(Items& items);
  void erase_labels(const Items& items);
};
