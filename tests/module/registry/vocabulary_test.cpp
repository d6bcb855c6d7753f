// The words as programs and stored drawings have them, written out once more: a slip of the pen in
// the tables must not go unnoticed.

#include "module/registry/vocabulary.h"

#include <gtest/gtest.h>

#include <span>

#include "module/registry/registry.h"

namespace {

using Word = dim::VocabularyRow;

constexpr Word kTypes[] = {
    {L"xdbg_st", L"标线端标高"},
    {L"xdbg_ed", L"标线端标高"},
    {L"bjbh", L"标井编号"},
    {L"xzgj", L"标井编号"},
    {L"ljbz", L"标井管径累加标注方式"},
    {L"xdgj_uper", L"标线端管径"},
    {L"xdgj_lower", L"标线端管径"},
    {L"xdbg", L"标线端标高"},
    {L"xdgj", L"标线端管径"},
    {L"gxzgj", L"标线中管径"},
    {L"bzjg", L"标注井管"},
    {L"gfjbz", L"自动标名称"},
    {L"jgfjbz", L"交互标名称"},
    {L"zbhbz", L"自动标编号"},
    {L"bhbz", L"交互标编号"},
    {L"pcgb", L"管段标注"},
    {L"pcjdb", L"节点标注"},
    {L"pcysl", L"井余水量"},
    {L"pcjzll", L"平差集中流量标注"},
    {L"wxzgj", L"标线中管径"},
    {L"yxzgj", L"标线中管径"},
    {L"yljgbz", L"雨水口管长"},
    {L"byskdm", L"雨水口地面标高"},
    {L"zddh", L"自动标管代号"},
    {L"jhdh", L"交互标管代号"},
    {L"zxzgj", L"线中管径标注"},
    {L"bzzjg", L"标注井管"},
};

constexpr Word kItems[] = {
    {L"gdh", L"管代号"},
    {L"pipe_flow", L"管道流量"},
    {L"pipe_speed", L"管道流速"},
    {L"pipe_len", L"管道长度(米)"},
    {L"pipe_len_mm", L"管道长度(毫米)"},
    {L"pipe_len_pc", L"平差专用管道长度(米)"},
    {L"pipe_head", L"管道水头损失"},
    {L"pipe_headi", L"管道千米水头损失"},
    {L"pipe_dia", L"公称直径"},
    {L"pipe_odia", L"管道外径"},
    {L"pipe_idia", L"管道内径"},
    {L"pipe_thick", L"管道壁厚"},
    {L"pipe_width", L"管道宽度"},
    {L"pipe_i", L"管道坡度小数"},
    {L"pipe_ii", L"管道坡度%"},
    {L"pipe_iii", L"管道坡度%%"},
    {L"pipe_bgnd", L"管道内底标高"},
    {L"pipe_bgzr", L"管中标高"},
    {L"pipe_bgwd", L"管外底标高"},
    {L"pipe_gg", L"管道规格"},
    {L"well_bgdm", L"井地面标高"},
    {L"well_bgdm_pc", L"井地面标高平差专用"},
    {L"well_bgzr", L"井自然标高"},
    {L"well_bgjd", L"井底标高"},
    {L"well_depth", L"井深"},
    {L"well_gg", L"井规格"},
    {L"well_bh", L"节点一级编号"},
    {L"well_lljz", L"节点集中流量"},
    {L"well_ll", L"节点流量"},
    {L"well_ll_pc", L"节点流量平差节点标注中出现"},
    {L"well_bgzyst", L"节点自由水头标高"},
    {L"well_gdzy", L"节点自由水头高度"},
    {L"well_loss", L"水源到该节点的水头损失"},
    {L"well_loss1", L"水源到该节点的水头损失1"},
    {L"well_loss2", L"水源到该节点的水头损失2"},
    {L"zh_mc", L"桩号名称"},
    {L"ang_yx", L"角度"},
    {L"dist_jgbz", L"标注偏移距离"},
    {L"ang_wz", L"文字角度"},
    {L"czfx_jgbz", L"参考桩号类型"},
    {L"xfdh", L"井管标注对应的程序号"},
    {L"jt", L"箭头"},
    {L"coord_cl", L"测量坐标标注"},
    {L"coord_sg", L"施工坐标标注"},
};

void expect_same(std::span<const Word> words, std::span<const Word> rows) {
  ASSERT_EQ(words.size(), rows.size());
  for (std::size_t i = 0; i < words.size(); ++i) {
    EXPECT_STREQ(words[i].name, rows[i].name);
    EXPECT_STREQ(words[i].description, rows[i].description) << words[i].name;
  }
}

TEST(Vocabulary, HasTheTypesInTheirOrder) { expect_same(kTypes, dim::kDimTypeNames); }

TEST(Vocabulary, HasTheItemsInTheirOrder) { expect_same(kItems, dim::kDimNames); }

TEST(Vocabulary, IsKnownToAFreshRegistry) {
  const CDimupateRegisiter registry;
  for (const Word& type : kTypes) EXPECT_EQ(registry.isRegisted(type.name), 1) << type.name;
  for (const Word& item : kItems) EXPECT_EQ(registry.isDimName(item.name), 1) << item.name;
}

}  // namespace
