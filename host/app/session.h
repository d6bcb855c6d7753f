#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "host/app/documents.h"
#include "host/app/prompt/initget.h"
#include "host/app/select/selection_sets.h"
#include "host/app/variables/system_variables.h"
#include "host/base/result.h"
#include "host/geometry/matrix3d.h"
#include "host/lisp/interpreter.h"

namespace cad {

class CommandLine;
class EntityIndex;
class EntmakeSequence;

/// What an open document has beside its drawing: LISP environment, session variables, selections.
class DocumentSession {
  AcApDocument& document_;
  std::unique_ptr<lisp::Interpreter> interpreter_;  // before the values that it made
  std::unique_ptr<EntityIndex> entity_index_;

 public:
  explicit DocumentSession(AcApDocument& document);
  ~DocumentSession();

  /// The session whose interpreter runs the builtin being called.
  static DocumentSession& of(const lisp::Call& call) { return call.owner<DocumentSession>(); }
  /// Of the current document; null when there is none.
  static DocumentSession* current();

  AcApDocument& document() const { return document_; }
  AcDbDatabase& database() const { return *document_.database(); }
  lisp::Interpreter& interpreter() { return *interpreter_; }

  /// Turns every handle into an entity of the drawing; the error names the first that is none.
  Status answer_selection(const std::vector<std::string>& handles);
  /// The entities the user selects: the answer given beforehand, once; none without an answer.
  std::vector<AcDbObjectId> take_selection();
  /// Where the entities of the current space are; made when first asked for.
  EntityIndex& entity_index();

  SystemVariables variables;
  Initget initget;                        // for the next prompt
  std::vector<AcGeMatrix3d> former_ucs;   // what UCS Previous goes back to, the latest last
  std::vector<AcDbObjectId> erased_last;  // what OOPS brings back
  SelectionSets selection_sets;
  std::vector<AcDbObjectId> selection_answer;  // to the next selection by the user
  std::vector<AcDbObjectId> previous_selection;
  std::vector<AcDbObjectId> implied_selection;  // selected before a command, by sssetfirst
  std::vector<std::uint64_t> modules;  // numbers of those that got kLoadDwgMsg, in that order
  std::optional<FileLock> lock;        // of a drawing opened for writing
  std::string path;                    // UTF-8; empty for a new drawing
  std::set<std::wstring> alerts_told;
  /// Where tblnext stands, by table name, and dictnext, by dictionary.
  std::map<std::wstring, std::size_t> table_walks;
  std::map<AcDbObjectId, std::optional<std::wstring>> dictionary_walks;
  std::unique_ptr<EntmakeSequence> entmake;   // made by successive calls of entmake
  std::unique_ptr<CommandLine> command_line;  // last: its commands use all of the above
};

}  // namespace cad
