#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace cad {

/// The keywords of a prompt, as initget takes them: "Close Undo", "LType,LT", with the names
/// returned behind "_" when the ones before are translated ("Fermer Annuler _Close Undo").
///
/// The capital letters of a keyword are the least a user must type; all of its letters, or a start
/// that has the capitals, will do. A keyword without capitals, or in capitals throughout, is typed
/// in full, unless an abbreviation follows it behind a comma.
class Keywords {
 public:
  Keywords() = default;
  explicit Keywords(std::wstring_view list);

  bool empty() const { return words_.empty(); }
  /// The keyword the text means, spelled in full; "_" in front asks for the untranslated one.
  std::optional<std::wstring> match(std::wstring_view typed) const;

 private:
  struct Word {
    std::wstring local;
    std::wstring abbreviation;  // empty: the capitals of `local`
    std::wstring global;
  };
  std::vector<Word> words_;
};

}  // namespace cad
