#pragma once

#include <string>
#include <string_view>

/// Lists written as text, the form of the settings files and of stored points.
namespace KT {

/// Element `index`, from 0, of a list of blank-separated elements; empty when there is none.
///     Nth(L"( 1.5, 2.0, 0.0 )", 1, true)          -> 2.0
///     Nth(L"标高 ((小数位 3))", 1, true)           -> ((小数位 3))
///     Nth(L"(\"L = \" m 2)", 0, true)              -> L =   (the blank behind it included)
/// Parentheses round the whole text are the list's own. An element is a word, a text in double
/// quotes or a list in parentheses; a list comes back with its parentheses. With `unquote` a quoted
/// element comes back without its quotes, so "" is an element that reads as the empty text. A comma
/// behind a number belongs to the notation, not to the number. Unbalanced quotes and parentheses
/// reach to the end of the text.
std::wstring Nth(std::wstring_view text, int index, bool unquote);

}  // namespace KT

namespace network {

/// Reads the elements of such a list one after the other, each once: KT::Nth() starts anew for
/// every element.
///     for (CString item = list.next(); !item.empty(); item = list.next()) ...
class ListReader {
 public:
  /// `text` must outlive the reader.
  ListReader(std::wstring_view text, bool unquote);
  /// The next element; empty at the end.
  std::wstring next();
  /// Leaves out the next element; false at the end.
  bool skip();

 private:
  std::wstring_view take();

  std::wstring_view rest_;
  bool unquote_;
};

}  // namespace network
