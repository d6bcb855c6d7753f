#include <string>
#include <vector>

#include "host/app/aced.h"
#include "tests/host/app/host_test.h"
#include "tests/host/app/scripted_module.h"

namespace {

using Messages = std::vector<std::string>;

AcRxDynamicLinker& linker() {
  return *AcRxDynamicLinker::cast(acrxSysRegistry()->at(L"DynamicLinker"));
}

class Modules : public WithHost {
 protected:
  ScriptedModule module;
};

TEST_F(Modules, TheServiceIsInTheSystemRegistry) {
  ASSERT_NE(acrxSysRegistry()->at(L"DynamicLinker"), nullptr);
  EXPECT_TRUE(acrxSysRegistry()->at(L"DynamicLinker")->isKindOf(AcRxDynamicLinker::desc()));
  EXPECT_NE(acrxClassDictionary()->at(L"AcApDocManagerReactor"), nullptr);
}

TEST_F(Modules, WithoutADrawingOnlyTheStartIsTold) {
  ASSERT_TRUE(host.load_module("scripted.arx"));
  EXPECT_EQ(module.messages, Messages{"init"});
}

TEST_F(Modules, ADrawingIsToldWhenItBecomesCurrent) {
  AcApDocument* first = host.new_drawing();
  host.new_drawing();
  ASSERT_TRUE(host.load_module("scripted.arx"));
  EXPECT_EQ(module.messages, (Messages{"init", "load Drawing2"}));
  acDocManager->setCurDocument(first);
  acDocManager->setCurDocument(first);
  EXPECT_EQ(module.messages, (Messages{"init", "load Drawing2", "load Drawing1"}));
}

TEST_F(Modules, ClosingADrawingTellsItWhileItIsCurrent) {
  ASSERT_TRUE(host.load_module("scripted.arx"));
  AcApDocument* first = host.new_drawing();
  host.new_drawing();
  module.messages.clear();
  host.close(first);
  EXPECT_EQ(module.messages, Messages{"unload Drawing1"});
  EXPECT_STREQ(acDocManager->curDocument()->docTitle(), L"Drawing2");
}

TEST_F(Modules, UnloadingTellsEveryDrawingThatWasToldAndThenTheModule) {
  ASSERT_TRUE(host.load_module("scripted.arx"));
  host.new_drawing();
  host.new_drawing();
  module.messages.clear();
  ASSERT_TRUE(host.unload_module("SCRIPTED"));
  EXPECT_EQ(module.messages, (Messages{"unload Drawing1", "unload Drawing2", "unload module"}));
  EXPECT_STREQ(acDocManager->curDocument()->docTitle(), L"Drawing2");
  EXPECT_TRUE(host.loaded_modules().empty());
}

TEST_F(Modules, FunctionsGoWithTheirModule) {
  module.given_function(L"greet", [] { return acedRetStr(L"hello"), RSRSLT; });
  host.new_drawing();
  ASSERT_TRUE(host.load_module("scripted.arx"));
  EXPECT_EQ(eval("(setq kept greet) (greet)"), "\"hello\"");
  ASSERT_TRUE(host.unload_module("scripted.arx"));
  EXPECT_EQ(eval("(greet)"), "error: no function definition: GREET");
  EXPECT_EQ(eval("(kept)"), "error: no function definition: KEPT");
}

TEST_F(Modules, FunctionsBelongToOneDrawing) {
  module.given_function(L"greet", [] { return acedRetStr(L"hello"), RSRSLT; });
  AcApDocument* first = host.new_drawing();
  ASSERT_TRUE(host.load_module("scripted.arx"));
  EXPECT_EQ(eval(first, "(setq greet nil)"), "nil");
  AcApDocument* second = host.new_drawing();
  EXPECT_EQ(eval(second, "(greet)"), "\"hello\"");
  EXPECT_EQ(eval(first, "greet"), "nil");
}

TEST_F(Modules, LoadsAreCounted) {
  ASSERT_TRUE(host.load_module("scripted.arx"));
  ASSERT_TRUE(host.load_module("Scripted"));
  EXPECT_EQ(module.messages, Messages{"init"});
  ASSERT_TRUE(host.unload_module("scripted"));
  EXPECT_EQ(host.loaded_modules(), std::vector<std::string>{"scripted.arx"});
  ASSERT_TRUE(host.unload_module("scripted"));
  EXPECT_TRUE(host.loaded_modules().empty());
}

TEST_F(Modules, ALockedModuleStays) {
  module.unlocks = false;
  ASSERT_TRUE(host.load_module("scripted.arx"));
  EXPECT_TRUE(linker().isApplicationLocked(L"scripted.arx"));
  EXPECT_FALSE(host.unload_module("scripted.arx"));
  EXPECT_TRUE(linker().unlockApplication(module.packet));
  EXPECT_FALSE(linker().isApplicationLocked(L"scripted"));
  EXPECT_TRUE(linker().lockApplication(module.packet));
  EXPECT_FALSE(linker().unloadModule(L"scripted.arx"));
}

TEST_F(Modules, OnlyThePacketOfTheStartIsTaken) {
  ASSERT_TRUE(host.load_module("scripted.arx"));
  int stranger = 0;
  EXPECT_FALSE(linker().unlockApplication(&stranger));
  EXPECT_FALSE(linker().lockApplication(nullptr));
  EXPECT_FALSE(linker().registerAppMDIAware(&stranger));
  EXPECT_FALSE(linker().isApplicationLocked(L"nobody"));
}

TEST_F(Modules, AModuleThatRefusesToStartIsNotLoaded) {
  module.answer_to_init = AcRx::kRetError;
  const cad::Status loaded = host.load_module("scripted.arx");
  ASSERT_FALSE(loaded);
  EXPECT_EQ(loaded.error().message(), "scripted.arx: the module refused to start");
  EXPECT_TRUE(host.loaded_modules().empty());
}

TEST_F(Modules, AModuleForOneDrawingGoesAtOnceWhenSeveralAreOpen) {
  module.serves_many = false;
  host.new_drawing();
  host.new_drawing();
  EXPECT_FALSE(host.load_module("scripted.arx"));
  EXPECT_EQ(module.messages, (Messages{"init", "unload module"}));
}

TEST_F(Modules, AModuleForOneDrawingKeepsASecondFromOpening) {
  module.serves_many = false;
  host.new_drawing();
  ASSERT_TRUE(host.load_module("scripted.arx"));
  EXPECT_FALSE(host.open_drawing(PN_FIXTURES "/dxf/r2007_empty_acad2013.dxf"));
}

TEST_F(Modules, WhatIsNotThereOrNoModuleIsSaid) {
  EXPECT_EQ(host.load_module("nowhere.arx").error().message(),
            "nowhere.arx: the module is not found");
  EXPECT_EQ(host.unload_module("nowhere.arx").error().message(),
            "nowhere.arx: the module is not loaded");
  const cad::Status no_library = host.load_module(PN_FIXTURES "/dxf/r12_sample.dxf");
  ASSERT_FALSE(no_library);
  EXPECT_NE(no_library.error().what.find("cannot be loaded"), std::string::npos);
  EXPECT_EQ(host.load_module(PN_NO_MODULE).error().what, "is no module of this host");
}

TEST_F(Modules, ASharedLibraryIsLoadedAndServes) {
  AcApDocument* document = host.new_drawing();
  ASSERT_TRUE(host.load_module(PN_TEST_MODULE));
  EXPECT_EQ(eval(document, "(twice 21)"), "42");
  EXPECT_EQ(eval(document, "(arx)"), "(\"twice.arx\")");
  EXPECT_TRUE(host.unload_module("twice"));
  EXPECT_EQ(eval(document, "(twice 21)"), "error: no function definition: TWICE");
}

TEST_F(Modules, LispLoadsAndUnloads) {
  host.new_drawing();
  EXPECT_EQ(eval("(arxload \"scripted.arx\")"), "\"scripted.arx\"");
  EXPECT_EQ(eval("(arx)"), "(\"scripted.arx\")");
  EXPECT_EQ(eval("(arxunload \"scripted.arx\")"), "\"scripted.arx\"");
  EXPECT_EQ(eval("(arxload \"nowhere\" 'sorry)"), "SORRY");
  EXPECT_EQ(eval("(arxload \"nowhere\")"), "error: ARXLOAD failed");
  EXPECT_EQ(eval("(arxunload \"nowhere\")"), "error: ARXUNLOAD failed");
}

TEST_F(Modules, SavingIsTold) {
  ASSERT_TRUE(host.load_module("scripted.arx"));
  AcApDocument* document = host.new_drawing();
  module.messages.clear();
  EXPECT_FALSE(host.save(document, "/nowhere/plan.dxf"));
  EXPECT_EQ(module.messages, Messages{"save"});
}

TEST(ModulesAtTheEnd, DrawingsAreClosedBeforeModulesGo) {
  ScriptedModule module;
  module.unlocks = false;
  {
    cad::Host host;
    host.new_drawing();
    ASSERT_TRUE(host.load_module("scripted.arx"));
    module.messages.clear();
  }
  EXPECT_EQ(module.messages, (Messages{"quit", "unload Drawing1", "unload module"}));
}

}  // namespace
