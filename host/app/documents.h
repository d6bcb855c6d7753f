#pragma once

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "host/base/file.h"
#include "host/db/database.h"

namespace cad {
class DocumentSession;
class Host;
}  // namespace cad

/// An open drawing with its LISP environment.
class AcApDocument : public AcRxObject {
  PN_RX_MEMBERS(AcApDocument)
 public:
  ~AcApDocument() override;
  AcDbDatabase* database() const { return database_.get(); }
  /// The path it was opened from; empty for a new drawing.
  const ACHAR* fileName() const { return file_name_.c_str(); }
  /// Name without folder, "Drawing1" for a new drawing.
  const ACHAR* docTitle() const { return title_.c_str(); }

  cad::DocumentSession& session() const { return *session_; }  ///< for the host's own use

 private:
  friend class cad::Host;
  AcApDocument();
  std::wstring file_name_;
  std::wstring title_;
  std::unique_ptr<AcDbDatabase> database_;
  std::unique_ptr<cad::DocumentSession> session_;  // after database_: goes first
};

/// Told of documents coming and going. The manager does not own reactors.
class AcApDocManagerReactor : public AcRxObject {
  PN_RX_MEMBERS(AcApDocManagerReactor)
 public:
  virtual void documentCreateStarted(AcApDocument*) {}
  virtual void documentCreated(AcApDocument*) {}
  virtual void documentToBeDestroyed(AcApDocument*) {}  ///< the pointer is still valid
  virtual void documentDestroyed(const ACHAR* /*file_name*/) {}
  virtual void documentCreateCanceled(AcApDocument*) {}
  virtual void documentBecameCurrent(AcApDocument*) {}
  virtual void documentToBeActivated(AcApDocument*) {}
  virtual void documentActivated(AcApDocument*) {}
  virtual void documentToBeDeactivated(AcApDocument*) {}
};

/// The open documents, of which one is current: its drawing is the working database and its LISP
/// environment the one that acedDefun() and acedGetSym() mean. Lives as long as the process.
class AcApDocManager : public AcRxObject {
  PN_RX_MEMBERS(AcApDocManager)
 public:
  /// Null when no drawing is open.
  AcApDocument* curDocument() const { return current_; }
  AcApDocument* mdiActiveDocument() const { return current_; }
  AcApDocument* document(const AcDbDatabase* database) const;
  int documentCount() const { return static_cast<int>(documents_.size()); }
  /// Makes the document current; modules loaded since it was current last get kLoadDwgMsg for it.
  Acad::ErrorStatus setCurDocument(AcApDocument* document);
  Acad::ErrorStatus activateDocument(AcApDocument* document) { return setCurDocument(document); }

  /// Adding one twice, or removing one that is not there, changes nothing. A reactor may remove
  /// itself while it is being told.
  void addReactor(AcApDocManagerReactor* reactor);
  void removeReactor(AcApDocManagerReactor* reactor);

  const std::vector<AcApDocument*>& documents() const { return documents_; }  ///< in opening order

 private:
  friend class cad::Host;
  /// Calls each reactor that is there when the round begins and still there at its turn.
  template <class Call>
  void tell_all(Call&& call) {
    const std::vector<AcApDocManagerReactor*> round = reactors_;
    for (AcApDocManagerReactor* reactor : round)
      if (std::find(reactors_.begin(), reactors_.end(), reactor) != reactors_.end()) call(*reactor);
  }
  void tell(void (AcApDocManagerReactor::*what)(AcApDocument*), AcApDocument* document);
  void tell_destroyed(const ACHAR* file_name);

  std::vector<AcApDocument*> documents_;
  std::vector<AcApDocManagerReactor*> reactors_;
  AcApDocument* current_ = nullptr;
};

AcApDocManager* acDocManagerPtr();

/// `acDocManager->curDocument()`
inline constexpr struct {
  AcApDocManager* operator->() const { return acDocManagerPtr(); }
  operator AcApDocManager*() const { return acDocManagerPtr(); }
} acDocManager;
