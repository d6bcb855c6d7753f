#include <cstdint>
#include <iterator>
#include <string>

#include "host/app/command/command_table.h"
#include "host/app/session.h"
#include "tests/host/app/command/command_test.h"

namespace {

/// Numbers that are the same everywhere.
class Random {
 public:
  explicit Random(std::uint64_t seed) : state_(seed * 2654435769u + 1) {}
  std::size_t below(std::size_t bound) {
    state_ ^= state_ << 13;
    state_ ^= state_ >> 7;
    state_ ^= state_ << 17;
    return static_cast<std::size_t>(state_ % bound);
  }

 private:
  std::uint64_t state_;
};

// What programs type, in LISP.
constexpr const char* kInputs[] = {
    "\"\"",
    "\"\"",
    "\"\"",
    "\"0,0\"",
    "\"10,0\"",
    "\"10,5\"",
    "\"@3<45\"",
    "\"@\"",
    "\"1e300,1e300\"",
    "'(5 5)",
    "'(5 5 5)",
    "'(0.0 0.0)",
    "0",
    "1",
    "-1",
    "2.5",
    "1e-12",
    "1e200",
    "32767",
    "45",
    "\"Y\"",
    "\"N\"",
    "\"A\"",
    "\"B\"",
    "\"C\"",
    "\"D\"",
    "\"E\"",
    "\"F\"",
    "\"L\"",
    "\"M\"",
    "\"O\"",
    "\"P\"",
    "\"R\"",
    "\"S\"",
    "\"T\"",
    "\"U\"",
    "\"W\"",
    "\"X\"",
    "\"?\"",
    "\"*\"",
    "\"ALL\"",
    "\"CE\"",
    "\"LA\"",
    "\"3P\"",
    "\"MC\"",
    "\"_non\"",
    "\"_end\"",
    "\"text with blanks\"",
    "\"WELL\"",
    "\"*WELL\"",
    "\"0\"",
    "\"NEW1\"",
    "\"DASHED\"",
    "\"acad.lin\"",
    "\"a|b?\"",
    "\"'ZOOM\"",
    "(entlast)",
    "(list (entlast) '(5 5))",
    "(ssget \"X\")",
    "nil",
};

class RandomInput : public WithCommands, public testing::WithParamInterface<std::uint64_t> {
 protected:
  static constexpr std::size_t kLargest = 100'000;  // bytes: arrays can grow large

  void given_block() {
    eval("(setvar \"CMDECHO\" 0)");
    eval("(command \"CIRCLE\" \"0,0\" 1) (command \"BLOCK\" \"WELL\" \"0,0\" \"L\" \"\")");
  }
};

TEST_P(RandomInput, NeverHarmsTheDrawing) {
  Random random(GetParam());
  host.set_step_limit(2'000'000);
  given_block();
  for (const cad::CommandRow* row : cad::all_commands()) {
    std::string call = "(command \"" + std::string(row->name) + "\"";
    const std::size_t count = random.below(14);
    for (std::size_t i = 0; i < count; ++i)
      call += std::string(" ") + kInputs[random.below(std::size(kInputs))];
    SCOPED_TRACE(call + ")");
    eval("(command \"LINE\" \"0,0\" \"10,0\" \"10,10\" \"\")");
    eval(call + ")");
    eval("(command)");
    EXPECT_FALSE(drawing->session().command_line->active());
    EXPECT_TRUE(drawing->database()->open_objects().empty());
    const std::string saved = drawing->database()->save_bytes();
    const cad::Result<AcApDocument*> read = host.open_bytes(saved, "saved.dxf");
    EXPECT_TRUE(read) << read.error().message();
    if (read) host.close(*read);
    acDocManager->setCurDocument(drawing);
    if (saved.size() < kLargest) continue;
    drawing = host.new_drawing();
    given_block();
  }
  eval("(command \"UNDO\" 500) (command \"MREDO\" \"A\")");
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomInput, testing::Range<std::uint64_t>(1, 13));

}  // namespace
