// The modules as libraries that come and go: this program is not linked with them.

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <string>

#include "host/app/host.h"

namespace {

bool is_in_memory(const char* library) {
  void* const held = ::dlopen(library, RTLD_NOW | RTLD_NOLOAD);
  if (held) ::dlclose(held);
  return held != nullptr;
}

std::string eval(cad::Host& host, AcApDocument* document, const std::string& program) {
  const auto value = host.eval_string(document, program);
  return value ? cad::Host::printed(*value) : "error";
}

constexpr char kServes[] = "(type dimRec)";

TEST(Unloading, TakesTheLibraryAndItsStaticObjectsAlong) {
  cad::Host host;
  AcApDocument* const first = host.new_drawing();
  AcApDocument* const second = host.new_drawing();
  ASSERT_TRUE(host.load_module(PN_MODULE));
  EXPECT_TRUE(is_in_memory(PN_MODULE));
  EXPECT_EQ(eval(host, first, kServes), "EXRXSUBR");
  EXPECT_EQ(eval(host, second, kServes), "EXRXSUBR");
  ASSERT_TRUE(host.unload_module("pipenote.arx"));
  EXPECT_FALSE(is_in_memory(PN_MODULE));
  EXPECT_EQ(eval(host, first, kServes), "nil");
  host.close(first);  // nobody listens any more who is not there
  EXPECT_EQ(eval(host, second, kServes), "nil");
}

TEST(Unloading, CanBeFollowedByLoadingAgain) {
  cad::Host host;
  AcApDocument* const document = host.new_drawing();
  for (int round = 0; round < 3; ++round) {
    ASSERT_TRUE(host.load_module(PN_MODULE));
    EXPECT_EQ(eval(host, document,
                   "(setq line (entmakex '((0 . \"LINE\") (10 0.0 0.0 0.0) (11 1.0 0.0 0.0))))"
                   "(dimUserRec (list line \"pcgb\") \"gdh\" \"1\")"),
              "");
    ASSERT_TRUE(host.unload_module("pipenote.arx"));
    EXPECT_FALSE(is_in_memory(PN_MODULE));
  }
}

TEST(Unloading, OfAModuleThatUsesThisOneTakesBothAlong) {
  cad::Host host;
  cad::host_settings().module_folders = {PN_MODULE_FOLDER};
  AcApDocument* const document = host.new_drawing();
  ASSERT_TRUE(host.load_module(PN_LABELER));
  EXPECT_EQ(eval(host, document, kServes), "EXRXSUBR");
  ASSERT_TRUE(host.unload_module("labeler.arx"));
  EXPECT_FALSE(is_in_memory(PN_LABELER));
  EXPECT_FALSE(is_in_memory(PN_MODULE));
  EXPECT_EQ(eval(host, document, kServes), "nil");
}

}  // namespace
