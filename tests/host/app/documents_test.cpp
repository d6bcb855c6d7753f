#include "host/app/documents.h"

#include <algorithm>
#include <string>
#include <vector>

#include "host/base/codepage.h"
#include "tests/host/app/host_test.h"

namespace {

using Events = std::vector<std::string>;

class Listener : public AcApDocManagerReactor {
 public:
  explicit Listener(Events& log) : events(log) {}
  void documentCreated(AcApDocument* document) override { note("created", document); }
  void documentToBeDestroyed(AcApDocument* document) override {
    note("to be destroyed", document);
    EXPECT_NE(document->database(), nullptr);
    if (leaves) acDocManager->removeReactor(this);
  }
  void documentDestroyed(const ACHAR* file_name) override {
    events.push_back("destroyed " + cad::to_utf8(file_name));
  }
  void documentCreateCanceled(AcApDocument*) override { events.push_back("canceled"); }
  void documentBecameCurrent(AcApDocument* document) override { note("current", document); }

  void note(const std::string& what, AcApDocument* document) {
    events.push_back(what + " " + cad::to_utf8(document->docTitle()));
  }
  Events& events;
  bool leaves = false;
};

class Documents : public WithHost {
 protected:
  void SetUp() override { acDocManagerPtr()->addReactor(&listener); }
  void TearDown() override { acDocManagerPtr()->removeReactor(&listener); }
  Events events;
  Listener listener{events};
};

TEST_F(Documents, ReactorsHearOfComingAndGoing) {
  AcApDocument* document = host.new_drawing();
  host.close(document);
  EXPECT_EQ(events, (Events{"created Drawing1", "current Drawing1", "to be destroyed Drawing1",
                            "destroyed "}));
}

TEST_F(Documents, AddingOrRemovingTwiceIsHarmless) {
  acDocManager->addReactor(&listener);
  host.new_drawing();
  EXPECT_EQ(events.size(), 2U);
  acDocManager->removeReactor(&listener);
  acDocManager->removeReactor(&listener);
  host.close(acDocManager->curDocument());
  EXPECT_EQ(events.size(), 2U);
}

/// A host of its own, which ends with drawings open.
Events events_at_the_end_of_a_host(bool with_process) {
  Events events;
  Listener listener(events);
  {
    cad::Host host;
    if (with_process) host.end_with_process();
    host.new_drawing();
    host.new_drawing();
    acDocManagerPtr()->addReactor(&listener);
  }
  EXPECT_EQ(acDocManager->documentCount(), 0);
  EXPECT_EQ(acdbHostApplicationServices()->workingDatabase(), nullptr);
  acDocManagerPtr()->removeReactor(&listener);
  return events;
}

TEST(DocumentsAtTheEnd, AreClosedAsEverWhenTheirMemoryIsLeftToTheSystem) {
  const Events events = events_at_the_end_of_a_host(true);
  EXPECT_EQ(events, events_at_the_end_of_a_host(false));
  EXPECT_EQ(std::count(events.begin(), events.end(), "to be destroyed Drawing1"), 1);
}

TEST_F(Documents, AReactorMayLeaveWhileItIsTold) {
  listener.leaves = true;
  host.close(host.new_drawing());
  EXPECT_EQ(events.back(), "to be destroyed Drawing1");
}

TEST_F(Documents, TheCurrentDocumentHasTheWorkingDatabase) {
  EXPECT_EQ(acDocManager->curDocument(), nullptr);
  AcApDocument* first = host.new_drawing();
  AcApDocument* second = host.new_drawing();
  EXPECT_EQ(acDocManager->mdiActiveDocument(), second);
  EXPECT_EQ(acdbHostApplicationServices()->workingDatabase(), second->database());
  EXPECT_EQ(acDocManager->setCurDocument(first), Acad::eOk);
  EXPECT_EQ(acdbHostApplicationServices()->workingDatabase(), first->database());
  EXPECT_EQ(acDocManager->document(second->database()), second);
  host.close(first);
  EXPECT_EQ(acDocManager->curDocument(), second);
  host.close(second);
  EXPECT_EQ(acdbHostApplicationServices()->workingDatabase(), nullptr);
}

TEST_F(Documents, AStrangerCannotBecomeCurrent) {
  AcApDocument* document = host.new_drawing();
  EXPECT_EQ(acDocManager->setCurDocument(nullptr), Acad::eNoDocument);
  EXPECT_EQ(acDocManager->curDocument(), document);
}

TEST_F(Documents, ADrawingThatCannotBeReadLeavesEverythingAsItWas) {
  AcApDocument* document = host.new_drawing();
  events.clear();
  EXPECT_FALSE(host.open_bytes("  0\nSECTION\n  2\nnonsense", "bad.dxf"));
  EXPECT_EQ(events, Events{"canceled"});
  EXPECT_EQ(acDocManager->curDocument(), document);
  EXPECT_EQ(acDocManager->documentCount(), 1);
}

TEST_F(Documents, LispEnvironmentsAreSeparate) {
  AcApDocument* first = host.new_drawing();
  AcApDocument* second = host.new_drawing();
  eval(first, "(setq x 1)");
  EXPECT_EQ(eval(second, "x"), "nil");
  EXPECT_EQ(eval(first, "x"), "1");
}

}  // namespace
