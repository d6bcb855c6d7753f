#include <gmock/gmock.h>

#include "host/db/drawing.h"
#include "tests/host/db/plan.h"

namespace {

using testing::Contains;
using testing::IsEmpty;
using testing::Not;

using Handles = std::vector<std::uint64_t>;

class Notes : public cad::DrawingListener {
 public:
  void object_changed(const cad::Stub& stub) override { handles.push_back(stub.handle); }
  /// What was told since the last time.
  Handles take() { return std::exchange(handles, {}); }

  Handles handles;
};

class DrawingListeners : public DrawingTest {
 protected:
  DrawingListeners() {
    given_plan();
    drawing().add_listener(notes);
  }
  cad::Drawing& drawing() { return database().drawing(); }

  Notes notes;
};

TEST_F(DrawingListeners, AreToldOfEveryKindOfChange) {
  AcDbEntity* line = opened<AcDbEntity>(0x2F, AcDb::kForWrite);
  EXPECT_EQ(line->setColorIndex(3), Acad::eOk);
  line->close();
  EXPECT_THAT(notes.take(), Contains(0x2Fu));
  erase(0x2F);
  EXPECT_THAT(notes.take(), Contains(0x2Fu));
  cad::undo_log(database()).undo(1);
  EXPECT_THAT(notes.take(), Contains(0x2Fu)) << "taking back is a change";
  const AcDbObjectId made = append(new AcDbLine(AcGePoint3d(0, 0, 0), AcGePoint3d(1, 0, 0)));
  EXPECT_THAT(notes.take(), Contains(made.handle().value()));
}

TEST_F(DrawingListeners, AreNotToldOfReading) {
  opened(0x2F)->close();
  EXPECT_THAT(notes.take(), IsEmpty());
}

TEST_F(DrawingListeners, ThereMayBeSeveral) {
  Notes others;
  drawing().add_listener(others);
  erase(0x2F);
  EXPECT_EQ(others.handles, notes.handles);
  drawing().remove_listener(others);
  others.take();
  erase(0x32);
  EXPECT_THAT(others.take(), IsEmpty());
  EXPECT_THAT(notes.take(), Not(IsEmpty()));
}

class Companion : public Notes {
 public:
  explicit Companion(cad::Drawing& of) : drawing(of) { ++alive; }
  ~Companion() override { --alive; }
  cad::Drawing& drawing;
  static inline int alive = 0;
};
class OtherCompanion : public Companion {
  using Companion::Companion;
};

TEST_F(DrawingListeners, ACompanionIsMadeOnceAndGoesWithTheDrawing) {
  Companion& first = drawing().companion<Companion>();
  EXPECT_EQ(&first.drawing, &drawing());
  EXPECT_EQ(&drawing().companion<Companion>(), &first);
  EXPECT_NE(static_cast<Companion*>(&drawing().companion<OtherCompanion>()), &first);
  EXPECT_EQ(Companion::alive, 2);
  erase(0x2F);
  EXPECT_THAT(first.handles, Contains(0x2Fu)) << "it listens";
  close_drawing();
  EXPECT_EQ(Companion::alive, 0);
}

}  // namespace
