// Making a label allocates the text that is returned and nothing else.
#include <cstdlib>
#include <new>

#include "tests/module/style/style_fixture.h"

namespace {

int allocations = 0;

}  // namespace

void* operator new(std::size_t size) {
  ++allocations;
  if (void* memory = std::malloc(size)) return memory;
  throw std::bad_alloc();
}
void* operator new[](std::size_t size) { return operator new(size); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }

namespace {

class Allocations : public WithStyle {
 protected:
  Allocations() {
    cad::host_settings().install_dir = network::default_install_dir();
    style.UpdateData();
    WDLGX::GetDimH(L"1");
  }
  template <class Make>
  static int made_by(const Make& make) {
    const int before_it = allocations;
    const CString label = make();
    EXPECT_FALSE(label.empty());
    return allocations - before_it;
  }
};

TEST_F(Allocations, ALabelIsOne) {
  const CString name;
  CString second, third;
  EXPECT_EQ(made_by([&] { return style.GetPipeLongStr(1234.5); }), 1);
  EXPECT_EQ(made_by([&] { return style.GetPipePdStr(0.0035); }), 1);
  EXPECT_EQ(made_by([&] { return style.GetBgStr(GROUND, 12.3456); }), 1);
  EXPECT_EQ(made_by([&] { return style.GetMsFtStr(12.3456); }), 1);
  EXPECT_EQ(made_by([&] { return style.GetDnStr(300, 3, 0, kNoValue, kNoValue, kNoValue); }), 1);
  EXPECT_EQ(made_by([&] { return style.GetDnStr(300, 1, 1, 2000, 1500, 2.5); }), 1);
  EXPECT_EQ(made_by([&] { return style.GetZhStr(1234.5, name); }), 1);
  EXPECT_EQ(made_by([&] {
              return style.GetCompositeDim(300, 0.0035, 35.2, 1, second, third, 0, kNoValue,
                                           kNoValue, kNoValue);
            }),
            1);
}

}  // namespace
