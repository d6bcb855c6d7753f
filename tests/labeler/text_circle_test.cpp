// What is found of a text without measuring it.

#include <cmath>

#include "labeler/back_links.h"
#include "tests/labeler/labelling.h"

namespace {

class TextCircles : public Labelling {
 protected:
  /// A text at (100, 50), in that alignment.
  std::string given_text(const std::string& shown, int across, int up, double width_factor) {
    return made("(0 . \"TEXT\") (1 . \"" + shown +
                "\") (10 100.0 50.0 0.0) (11 100.0 50.0 0.0) (40 . 2.5) (50 . 0.7) (41 . " +
                std::to_string(width_factor) + ") (72 . " + std::to_string(across) + ") (73 . " +
                std::to_string(up) + ")");
  }
};

TEST_F(TextCircles, NoTextLeavesItsCircle) {
  for (const char* shown :
       {"1", "WWWWWWWWWWWW", "DN300-L=40.0m-i=2.5‰", "管径管径管径", "%%c300"}) {
    for (const double width_factor : {0.5, 1.0, 3.0}) {
      for (int across = 0; across <= 2; ++across) {
        for (int up = 0; up <= 3; ++up) {
          const AcDbObjectId text = id(given_text(shown, across, up, width_factor));
          const std::optional<labeler::Box> box = labeler::text_box(text);
          const std::optional<labeler::TextCircle> circle = labeler::text_circle(text);
          ASSERT_TRUE(box && circle);
          const double farthest =
              std::hypot(box->centre.x - circle->middle.x, box->centre.y - circle->middle.y) +
              std::hypot(box->half_width, box->half_height);
          EXPECT_LE(farthest, circle->radius) << shown << ' ' << across << ' ' << up;
        }
      }
    }
  }
}

TEST_F(TextCircles, OtherEntitiesAndWhatIsErasedHaveNone) {
  EXPECT_FALSE(labeler::text_circle(AcDbObjectId()));
  EXPECT_FALSE(labeler::text_circle(id(given_pipe(0, 0, 40, 0))));
  const std::string text = given_text("1", 0, 0, 1.0);
  EXPECT_TRUE(labeler::text_circle(id(text)));
  erase(text);
  EXPECT_FALSE(labeler::text_circle(id(text)));
}

}  // namespace
