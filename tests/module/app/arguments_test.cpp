#include "module/app/arguments.h"

#include <gtest/gtest.h>

#include "module/platform/opened.h"
#include "tests/module/plan.h"

namespace {

class Arguments : public PlanTest {
 protected:
  resbuf* ename(const wchar_t* handle) {
    resbuf* buffer = acutNewRb(RTENAME);
    ads_name name;
    EXPECT_EQ(acdbGetAdsName(name, plan.id(handle)), Acad::eOk);
    buffer->resval.rlname[0] = name[0];
    buffer->resval.rlname[1] = name[1];
    return buffer;
  }
  static resbuf* mark(short type) { return acutNewRb(type); }
  static resbuf* text(const wchar_t* value) { return dim::new_text_buffer(RTSTR, value); }
  /// Owned by the test until the next one is made.
  const resbuf* chain(std::initializer_list<resbuf*> buffers) {
    dim::ChainBuilder built;
    for (resbuf* buffer : buffers) built.add(buffer);
    chain_.reset(built.release());
    return chain_.get();
  }
  /// The environment of pipe 2F under pcgb, followed by `more`.
  const resbuf* with_environment(std::initializer_list<resbuf*> more) {
    dim::ChainBuilder built;
    for (resbuf* buffer : {mark(RTLB), ename(L"2F"), text(L"pcgb"), mark(RTLE)}) built.add(buffer);
    for (resbuf* buffer : more) built.add(buffer);
    chain_.reset(built.release());
    return chain_.get();
  }
  int parse_environment(const resbuf* arguments) {
    item = StuDim();
    rest = nullptr;
    return dim::parseDimEnvironment(arguments, item, environment, rest);
  }
  /// The one line traced when the environment is refused.
  std::wstring fault(const resbuf* arguments) {
    const TraceLines trace;
    EXPECT_EQ(parse_environment(arguments), RTERROR);
    EXPECT_EQ(trace.lines().size(), 1u);
    return trace.lines().empty() ? L"" : trace.lines()[0];
  }
  std::wstring user_fault(const resbuf* arguments) {
    const TraceLines trace;
    EXPECT_EQ(dim::parseDimUserItem(arguments, item, environment), RTERROR);
    EXPECT_EQ(trace.lines().size(), 1u);
    return trace.lines().empty() ? L"" : trace.lines()[0];
  }
  std::wstring text_fault(const resbuf* arguments) {
    const TraceLines trace;
    EXPECT_EQ(dim::parseDimTexts(arguments, item), RTERROR);
    EXPECT_EQ(trace.lines().size(), 1u);
    return trace.lines().empty() ? L"" : trace.lines()[0];
  }

  dim::ResbufChain chain_;
  StuDim item;
  dim::DimEnvironment environment;
  const resbuf* rest = nullptr;
};

TEST_F(Arguments, AnEnvironmentGivesEntityTypeAndTheAnnotationsHandle) {
  EXPECT_EQ(parse_environment(with_environment({ename(L"4A"), text(L"next")})), RTNORM);
  EXPECT_EQ(environment.entity, plan.id(L"2F"));
  EXPECT_EQ(environment.type_name, L"pcgb");
  EXPECT_EQ(item.handle, L"4A");
  ASSERT_NE(rest, nullptr);
  EXPECT_STREQ(rest->resval.rstring, L"next");
}

TEST_F(Arguments, AnAnnotationWithoutHandleTextLeavesTheAnnotatedEntitysHandle) {
  const dim::Opened<AcDbEntity> held(plan.id(L"4A"), AcDb::kForWrite);
  EXPECT_EQ(parse_environment(with_environment({ename(L"4A")})), RTNORM);
  EXPECT_EQ(item.handle, L"2F");
}

TEST_F(Arguments, EachFaultOfTheEnvironmentHasItsLine) {
  EXPECT_EQ(fault(nullptr), L"\n标注参数不能为空!");
  EXPECT_EQ(fault(chain({ename(L"2F")})), L"\n没有指定标注环境表!");
  EXPECT_EQ(fault(chain({mark(RTLB)})), L"\n没有指定被标注实体名!");
  EXPECT_EQ(fault(chain({mark(RTLB), text(L"pcgb")})), L"\n没有指定被标注实体名!");
  EXPECT_EQ(fault(chain({mark(RTLB), mark(RTENAME)})), L"被标注实体名无效!");
  EXPECT_EQ(fault(chain({mark(RTLB), ename(L"2F")})), L"\n标注类型名错误!");
  EXPECT_EQ(fault(chain({mark(RTLB), ename(L"2F"), mark(RTNIL)})), L"\n标注类型名错误!");
  EXPECT_EQ(fault(chain({mark(RTLB), ename(L"2F"), text(L"PCGB")})), L"\n标注类型名无效!");
  EXPECT_EQ(fault(chain({mark(RTLB), ename(L"2F"), text(L"pcgb")})), L"参数格式有错误!");
  EXPECT_EQ(fault(chain({mark(RTLB), ename(L"2F"), text(L"pcgb"), text(L"more")})),
            L"参数格式有错误!");
  EXPECT_EQ(fault(with_environment({})), L"没有指定标注实体名!");
  EXPECT_EQ(fault(with_environment({text(L"4A")})), L"没有指定标注实体名!");
  EXPECT_EQ(fault(with_environment({mark(RTENAME)})), L"\n标注实体名到Id失败!");
}

TEST_F(Arguments, AnErasedAnnotatedEntityIsInvalid) {
  plan.erase(L"2F");
  EXPECT_EQ(fault(with_environment({ename(L"4A")})), L"被标注实体名无效!");
}

TEST_F(Arguments, TheFiveTextsAreStringsOrNil) {
  EXPECT_EQ(dim::parseDimTexts(chain({text(L"n"), text(L"v"), text(L"p"), mark(RTNIL), text(L"/"),
                                      text(L"ignored")}),
                               item),
            RTNORM);
  EXPECT_EQ(item, (StuDim{L"n", L"", L"v", L"p", L"", L"/", L"", L""}));
  EXPECT_EQ(dim::parseDimTexts(
                chain({mark(RTNIL), mark(RTNIL), mark(RTNIL), mark(RTNIL), mark(RTNIL)}), item),
            RTNORM);
  EXPECT_EQ(item, StuDim());
}

TEST_F(Arguments, EachMissingTextHasItsLine) {
  EXPECT_EQ(text_fault(nullptr), L"不存在扩展参数部分!");
  EXPECT_EQ(text_fault(chain({mark(RTT)})), L"标注名没有指定!");
  EXPECT_EQ(text_fault(chain({text(L"n")})), L"标注值没有指定!");
  EXPECT_EQ(text_fault(chain({text(L"n"), mark(RTNIL)})), L"标注前缀没有指定!");
  EXPECT_EQ(text_fault(chain({text(L"n"), mark(RTNIL), text(L"p")})), L"后缀没有指定!");
  EXPECT_EQ(text_fault(chain({text(L"n"), mark(RTNIL), text(L"p"), text(L"s"), mark(RTREAL)})),
            L"分隔符没有指定!");
}

TEST_F(Arguments, AUserItemIsInformationWithoutEntity) {
  item = {L"x", L"x", L"x", L"x", L"x", L"x", L"x", L"x"};
  EXPECT_EQ(
      dim::parseDimUserItem(with_environment({text(L"zh_mc"), text(L"K1")}), item, environment),
      RTNORM);
  EXPECT_EQ(item, (StuDim{L"zh_mc", L"", L"K1", L"", L"", L"", L"非实体性记录信息!", L""}));
  EXPECT_EQ(environment.entity, plan.id(L"2F"));
}

TEST_F(Arguments, AUserItemTakesNoNil) {
  EXPECT_EQ(user_fault(with_environment({})), L"标注类型名类型错误!");
  EXPECT_EQ(user_fault(with_environment({mark(RTNIL), text(L"K1")})), L"标注类型名类型错误!");
  EXPECT_EQ(user_fault(with_environment({text(L"zh_mc"), mark(RTNIL)})), L"标注信息类型错误!");
  EXPECT_EQ(user_fault(chain({ename(L"2F")})), L"\n没有指定标注环境表!");
}

}  // namespace
