#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

namespace cad {

/// What the references of copied objects become: what in the one drawing stands for what in the
/// other.
class CloneReferences {
 public:
  /// `from` is the handle of an object that was copied, or that the other drawing has already.
  void stand_for(std::uint64_t from, std::uint64_t to) {
    if (from != 0) handles_.insert_or_assign(from, to);
  }
  bool has(std::uint64_t from) const { return handles_.contains(from); }
  /// 0 when nothing stands for it.
  std::uint64_t handle(std::uint64_t from) const {
    const auto found = handles_.find(from);
    return found == handles_.end() ? 0 : found->second;
  }

  /// The block with that (folded) name of the one drawing, by its name in the other.
  struct Block {
    std::wstring name;
    std::uint64_t record = 0;  ///< 0 in a drawing without block records
  };
  std::unordered_map<std::wstring, Block> blocks;
  /// Names, folded, of records that neither drawing has: groups that give them are left out. By
  /// table, a blank between.
  std::unordered_set<std::wstring> missing;
  /// Places of classes (CLASSES) by their places in the source.
  std::unordered_map<std::size_t, std::size_t> classes;
  /// The plot style of layer 0, which new layers take where they have none.
  std::uint64_t plot_style = 0;

 private:
  std::unordered_map<std::uint64_t, std::uint64_t> handles_;
};

/// The key of a name in CloneReferences::missing.
std::wstring missing_key(std::string_view table, std::wstring_view name);

/// Whether handles of a group follow what they name: 320 to 329 stay as they are by definition, as
/// do the object's own.
bool is_translated(int code);

}  // namespace cad
