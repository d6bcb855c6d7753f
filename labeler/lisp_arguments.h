#pragma once

#include <vector>

#include "module/platform/lisp.h"
#include "module/platform/objects.h"

namespace labeler {

/// Reads the arguments of a LISP call one after the other. Each answers false, and stands still, at
/// an argument of another type; what is optional may be nil or left out, and is then as it was.
class Arguments {
 public:
  explicit Arguments(const resbuf* first) : at_(first) {}

  /// An entity name, a list of them or a selection set.
  bool entities(std::vector<AcDbObjectId>& ids);
  /// The same, or nil or nothing: all.
  bool entities_or_nil(std::vector<AcDbObjectId>& ids, bool& all);
  /// A text, a list of texts, or nil or nothing: none.
  bool texts_or_nil(std::vector<CString>& texts);
  bool text(CString& text);
  bool optional_text(CString& text);
  bool real(double& number);  ///< or an integer
  bool optional_real(double& number);
  /// Whether there is something that is not nil.
  bool flag();

 private:
  bool is(short type) const { return at_ && at_->restype == type; }
  bool at_nil();
  bool add_selection(std::vector<AcDbObjectId>& ids);
  template <class Take>
  bool one_or_list(Take take);

  const resbuf* at_;
};

}  // namespace labeler
