#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "host/db/database.h"

namespace cad {

/// State of the layers of a drawing, by the names entities give.
class LayerStates {
 public:
  struct State {
    bool locked = false;
    bool hidden = false;  ///< off or frozen
    bool frozen = false;
  };

  explicit LayerStates(AcDbDatabase& database) : database_(database) {}

  /// A number for the layer of an entity, which does not change while this lives.
  std::uint32_t number_of(AcDbObjectId entity);
  const State& state(std::uint32_t number) const { return states_[number]; }
  const State& of(AcDbObjectId entity) { return states_[number_of(entity)]; }
  /// Reads the states anew; layers were changed.
  void refresh();

 private:
  State read(const std::wstring& name) const;

  AcDbDatabase& database_;
  std::unordered_map<std::string, std::uint32_t> numbers_;  // by the bytes of group 8
  std::vector<std::wstring> names_;
  std::vector<State> states_;
};

}  // namespace cad
