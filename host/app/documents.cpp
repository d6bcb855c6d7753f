#include "host/app/documents.h"

#include <algorithm>

#include "host/app/modules.h"
#include "host/app/session.h"

PN_RX_DEFINE(AcApDocument, AcRxObject, L"")
PN_RX_DEFINE(AcApDocManagerReactor, AcRxObject, L"")
PN_RX_DEFINE(AcApDocManager, AcRxObject, L"")

namespace {

/// Modules look these up in the class dictionary by name, before they use the classes.
[[maybe_unused]] AcRxClass* const filed[] = {AcApDocument::desc(), AcApDocManagerReactor::desc(),
                                             AcApDocManager::desc()};

}  // namespace

AcApDocument::AcApDocument() = default;
AcApDocument::~AcApDocument() = default;

AcApDocManager* acDocManagerPtr() {
  static AcApDocManager* const manager = new AcApDocManager;  // outlives the modules' reactors
  return manager;
}

AcApDocument* AcApDocManager::document(const AcDbDatabase* database) const {
  for (AcApDocument* document : documents_)
    if (document->database() == database) return document;
  return nullptr;
}

void AcApDocManager::tell(void (AcApDocManagerReactor::*what)(AcApDocument*),
                          AcApDocument* document) {
  tell_all([&](AcApDocManagerReactor& reactor) { (reactor.*what)(document); });
}

void AcApDocManager::tell_destroyed(const ACHAR* file_name) {
  tell_all([&](AcApDocManagerReactor& reactor) { reactor.documentDestroyed(file_name); });
}

Acad::ErrorStatus AcApDocManager::setCurDocument(AcApDocument* document) {
  if (std::find(documents_.begin(), documents_.end(), document) == documents_.end())
    return Acad::eNoDocument;
  if (current_ != document) {
    if (current_) tell(&AcApDocManagerReactor::documentToBeDeactivated, current_);
    tell(&AcApDocManagerReactor::documentToBeActivated, document);
    current_ = document;
    acdbHostApplicationServices()->setWorkingDatabase(document->database());
    tell(&AcApDocManagerReactor::documentBecameCurrent, document);
    tell(&AcApDocManagerReactor::documentActivated, document);
  }
  cad::Modules::instance().load_drawing(*document);
  return Acad::eOk;
}

void AcApDocManager::addReactor(AcApDocManagerReactor* reactor) {
  if (reactor && std::find(reactors_.begin(), reactors_.end(), reactor) == reactors_.end())
    reactors_.push_back(reactor);
}

void AcApDocManager::removeReactor(AcApDocManagerReactor* reactor) {
  std::erase(reactors_, reactor);
}
