#include "host/db/named_objects.h"

#include <algorithm>

#include "host/db/dictionary.h"
#include "host/db/object_access.h"

namespace cad {
namespace {

AcDbDictionary* dictionary_of(Drawing& drawing, Stub* stub) {
  return stub && !stub->erased() ? AcDbDictionary::cast(&drawing.object(*stub)) : nullptr;
}

}  // namespace

std::vector<std::wstring> keys_to(Drawing& drawing, const Stub& object) {
  constexpr std::size_t kDeepest = 32;  // owners may form a ring
  const Stub* const root = drawing.root_dictionary();
  std::vector<std::wstring> keys;
  const Stub* at = &object;
  while (at != root) {
    Stub* owner = drawing.find(at->owner);
    const AcDbDictionary* dictionary = dictionary_of(drawing, owner);
    const std::wstring* key = dictionary ? ObjectAccess::key_of(*dictionary, at->handle) : nullptr;
    if (!key || keys.size() == kDeepest) return {};
    keys.push_back(*key);
    at = owner;
  }
  std::reverse(keys.begin(), keys.end());
  return keys;
}

Stub* object_at(Drawing& drawing, std::span<const std::wstring> keys) {
  Stub* at = drawing.root_dictionary();
  for (const std::wstring& key : keys) {
    const AcDbDictionary* dictionary = dictionary_of(drawing, at);
    at = dictionary ? drawing.find(ObjectAccess::entry_of(*dictionary, key)) : nullptr;
    if (!at || at->erased()) return nullptr;
  }
  return at;
}

Stub* ensure_dictionary(Drawing& drawing, std::span<const std::wstring> keys) {
  if (!drawing.dialect().has_dictionaries()) return nullptr;
  constexpr auto kObjects = dxf::Section::kObjects;
  drawing.section_end(kObjects);  // makes the root of a drawing without objects
  Stub* at = drawing.root_dictionary();
  for (const std::wstring& key : keys) {
    AcDbDictionary* dictionary = dictionary_of(drawing, at);
    if (!dictionary) return nullptr;
    Stub* next = drawing.find(ObjectAccess::entry_of(*dictionary, key));
    if (!next || next->erased()) {
      auto* made = new AcDbDictionary;
      next = &drawing.add(*made, at->handle, kObjects, drawing.section_end(kObjects), at->handle);
      drawing.opened();
      made->close();
      ObjectAccess::file_entry(*dictionary, key, next->handle);
    }
    at = next;
  }
  return dictionary_of(drawing, at) ? at : nullptr;
}

}  // namespace cad
