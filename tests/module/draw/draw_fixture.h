#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <string>

#include "host/app/console.h"
#include "host/app/host.h"
#include "module/draw/draw.h"
#include "module/platform/opened.h"
#include "module/platform/pipe_library.h"
#include "tests/network/settings_folder.h"

inline constexpr double kPi = std::numbers::pi;

MATCHER_P3(Is, x, y, z, "") {
  return std::fabs(arg.x - x) < 1e-9 && std::fabs(arg.y - y) < 1e-9 && std::fabs(arg.z - z) < 1e-9;
}

/// A new drawing that is the current one, and settings: texts 3.5 mm high, 0.7 wide.
class WithDraw : public WithSettingsFolders {
 protected:
  WithDraw() {
    cad::set_console([this](std::string_view text) { printed += text; });
    given_settings("[Drawing]\nTextHigh=3.5\nTextWidthFactor=0.7\n");
    document = host.new_drawing();
  }
  ~WithDraw() override {
    if (document) {
      EXPECT_TRUE(database().open_objects().empty());
    }
    cad::set_console({});
  }

  void given_settings(const std::string& lines) const {
    given_file("install/sys/QrmvPz.ini", lines);
  }
  AcDbDatabase& database() const { return *document->database(); }

  /// A layer of that name, made when it is not there.
  AcDbObjectId given_layer(const wchar_t* name, bool off, bool locked, bool frozen) const {
    const AcDbObjectId id = Gx::GetLayer(name);
    const dim::Opened<AcDbLayerTableRecord> layer(id, AcDb::kForWrite);
    layer->setIsOff(off);
    layer->setIsLocked(locked);
    layer->setIsFrozen(frozen);
    return id;
  }
  /// Of off, locked and frozen those that hold, by their first letters.
  static std::string state(AcDbObjectId id) {
    const dim::Opened<AcDbLayerTableRecord> layer(id, AcDb::kForRead);
    return std::string(layer->isOff() ? "o" : "") + (layer->isLocked() ? "l" : "") +
           (layer->isFrozen() ? "f" : "");
  }
  void make_current(const wchar_t* layer) const {
    ASSERT_TRUE(database().set_header_variable("$CLAYER", std::wstring(layer)));
  }
  std::size_t entities() const {
    std::size_t count = 0;
    for (AcDbObjectId id = database().first_entity(); !id.isNull(); id = database().next_entity(id))
      ++count;
    return count;
  }
  template <class T>
  static dim::Opened<T> reading(AcDbObjectId id) {
    dim::Opened<T> object(id, AcDb::kForRead);
    EXPECT_TRUE(object) << object.status();
    return object;
  }
  static std::wstring taken(ACHAR* text) {
    std::wstring copy = text;
    acutDelString(text);
    return copy;
  }

  cad::Host host;
  AcApDocument* document = nullptr;
  std::string printed;
};
