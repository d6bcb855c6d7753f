#include "host/dxf/dialect.h"

#include <gtest/gtest.h>

namespace cad::dxf {
namespace {

struct VersionRow {
  const char* version;
  Release release;
  const char* name;
};

constexpr VersionRow kVersions[] = {
    {"AC1006", Release::kR10, "R10"},     {"AC1009", Release::kR12, "R12"},
    {"AC1012", Release::kR13, "R13"},     {"AC1014", Release::kR14, "R14"},
    {"AC1015", Release::kR2000, "R2000"}, {"AC1018", Release::kR2004, "R2004"},
    {"AC1021", Release::kR2007, "R2007"}, {"AC1024", Release::kR2010, "R2010"},
    {"AC1027", Release::kR2013, "R2013"}, {"AC1032", Release::kR2018, "R2018"},
};

TEST(Dialect, EveryVersionTextNamesItsReleaseAndBack) {
  for (const VersionRow& row : kVersions) {
    EXPECT_EQ(release_from_version(row.version), row.release) << row.version;
    EXPECT_EQ(release_name(row.release), row.name);
    EXPECT_EQ(release_version(row.release), row.version);
  }
}

TEST(Dialect, AnUnknownVersionCountsAsTheReleaseInFrontOfIt) {
  EXPECT_EQ(release_from_version("AC1019"), Release::kR2004);
  EXPECT_EQ(release_from_version("AC1099"), Release::kR2018);
  EXPECT_EQ(release_from_version("AC2.10"), Release::kR2018);
  EXPECT_EQ(release_from_version("AC1001"), Release::kR10);
  EXPECT_EQ(release_from_version(""), Release::kR10);
}

TEST(Dialect, DictionariesCameWithR13) {
  EXPECT_FALSE((Dialect{.release = Release::kR10}).has_dictionaries());
  EXPECT_FALSE((Dialect{.release = Release::kR12}).has_dictionaries());
  EXPECT_TRUE((Dialect{.release = Release::kR13}).has_dictionaries());
  EXPECT_TRUE((Dialect{.release = Release::kR2018}).has_dictionaries());
}

TEST(Dialect, LineEndsFollowTheFile) {
  EXPECT_EQ((Dialect{.crlf = true}).eol(), "\r\n");
  EXPECT_EQ((Dialect{.crlf = false}).eol(), "\n");
}

}  // namespace
}  // namespace cad::dxf
