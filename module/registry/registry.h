#pragma once

#include <functional>
#include <map>
#include <string_view>

#include "module/platform/foundation.h"
#include "module/registry/dim_facade.h"

/// Which annotation types and item names exist, and who redraws which type. Names are compared
/// exactly, letter case included. One for the process: CDimUpdateServ::getDimRegServ(). Answers are
/// 1 for yes and success, 0 for no and refusal; a null name is never known.
class CDimupateRegisiter {
 public:
  /// Holds the built-in vocabulary and no handlers.
  CDimupateRegisiter();
  /// A copy shares the handlers of its source: only one of the two may logout() them.
  CDimupateRegisiter(const CDimupateRegisiter&) = default;
  CDimupateRegisiter& operator=(const CDimupateRegisiter&) = default;
  /// Leaves handlers that are still registered alone: their modules log them out before.
  virtual ~CDimupateRegisiter() = default;

  /// Puts back what is missing of the built-in vocabulary. `path` is not used. Always 1.
  int Initialize(const wchar_t* path);
  int refresh();

  /// Whether records may be filed under the type: it is built in, or has a handler.
  int isRegisted(const wchar_t* dimTypeName) const;
  /// Whether the item name is known; of "anything@name" the part behind the first "@" counts.
  int isDimName(const wchar_t* dimName) const;

  /// Registers a handler, which the registry owns from then on. 0, and the handler stays the
  /// caller's, when it is null or the name has a handler already. Built-in types may get one.
  int regist(const CString& dimTypeName, CDimFacade* handler);
  /// The handler of the type, or null. Valid until its logout().
  CDimFacade* getAt(const CString& dimTypeName) const;
  CDimFacade* handler_of(std::wstring_view type) const;  ///< the same, without making a string
  /// Takes the handler out and frees its memory. A name without handler is fine.
  void logout(const CString& dimTypeName);

 private:
  template <class T>
  using Table = std::map<CString, T, std::less<>>;
  CString reserved_name_;
  Table<CString> type_names_;
  Table<CString> dim_names_;
  Table<CDimFacade*> handlers_;
};
