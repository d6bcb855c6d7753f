// Texts. A mirrored text is drawn backward or, readable, put exactly into the place of the mirrored
// one: what was its left end is then its right end, so left justification becomes right. That needs
// no font, which keeping the justification would.

#include <cmath>
#include <numbers>
#include <utility>

#include "host/db/text_box.h"
#include "host/db/transform_rules.h"

namespace cad {
namespace {

constexpr double kDegree = std::numbers::pi / 180.0;

bool is_readable(double degrees) { return degrees <= 90.0 + 1e-9 || degrees > 270.0 + 1e-9; }

/// How a readable text lies in the place of a mirrored one.
struct Readable {
  double angle;     ///< of the new text
  bool left_right;  ///< its ends changed places, else its top and bottom
};

/// `angle` is that of the mirrored reading direction.
Readable readable_in_place(double before, double angle) {
  const bool kept = is_readable(normal_degrees(before)) == is_readable(angle);
  return kept ? Readable{angle, false} : Readable{normal_degrees(angle + 180.0), true};
}

AcGeVector3d direction(double degrees) {
  return {std::cos(degrees * kDegree), std::sin(degrees * kDegree), 0};
}

// Justification of a TEXT.
constexpr std::int64_t kLeft = 0, kRight = 2, kAligned = 3, kMiddle = 4, kFit = 5;
constexpr std::int64_t kBase = 0, kBottom = 1, kTop = 3;
constexpr std::int64_t kBackward = 2;  // generation flag

/// A TEXT, ATTRIB or ATTDEF in terms of its own coordinates.
class TextMapper {
 public:
  TextMapper(TagSheet& sheet, const ObjectMap& map)
      : sheet_(sheet),
        map_(map),
        angle_(sheet.real({}, 50, 0.0)),
        across_(sheet.integer({}, 72, kLeft)),
        start_(point(10)),
        anchor_(point(11)) {
    // An attribute has its vertical justification in group 74; 73 is something else there.
    const bool attribute = sheet.marker("AcDbAttribute") != TagSheet::kNone ||
                           sheet.marker("AcDbAttributeDefinition") != TagSheet::kNone;
    up_code_ = attribute && sheet.has_parts() ? 74 : 73;
    up_ = sheet.integer({}, up_code_, kBase);
  }

  void run(MirroredText text) {
    double angle = map_.angle(angle_);
    if (map_.mirrored() && text == MirroredText::kMirrored) {
      angle = normal_degrees(angle + 180.0);
      const std::int64_t flags = sheet_.integer({}, 71, 0);
      sheet_.put_integer(71, flags ^ kBackward, 0, {7, 51, 41, 50, 1});
    } else if (map_.mirrored()) {
      const Readable now = readable_in_place(angle_, angle);
      angle = now.angle;
      now.left_right ? exchange_ends() : exchange_top();
    }
    set_point(10, start_);
    if (by_anchor() || sheet_.find({}, 11) != TagSheet::kNone) set_point(11, anchor_);
    sheet_.put_real(50, angle, 0.0, {1, 40});
    const std::size_t size = sheet_.find({}, 40);
    if (size != TagSheet::kNone) sheet_.set_real(size, height() * map_.scale());
    const std::size_t thickness = sheet_.find({}, 39);
    if (thickness != TagSheet::kNone) {
      sheet_.set_real(thickness, map_.along_normal(sheet_.real(thickness)));
    }
  }

 private:
  double height() const { return sheet_.real({}, 40, 0.0); }
  bool by_anchor() const { return across_ != kLeft || up_ != kBase; }

  AcGePoint3d point(int code) const {
    const std::size_t i = sheet_.find({}, code);
    return i == TagSheet::kNone ? AcGePoint3d() : sheet_.point(i);
  }
  void set_point(int code, const AcGePoint3d& old) {
    const AcGePoint3d now = map_.own_point(old);
    const std::size_t i = sheet_.find({}, code);
    if (i != TagSheet::kNone) return sheet_.set_point(i, now);
    sheet_.put_real(code, now.x, NAN, {72, 71, 7, 51, 41, 50, 1});
    sheet_.put_real(code + 10, now.y, NAN, {72, 71, 7, 51, 41, 50, 1});
    sheet_.put_real(code + 20, now.z, NAN, {72, 71, 7, 51, 41, 50, 1});
  }

  /// The text's left end becomes its right end.
  void exchange_ends() {
    if (across_ == kAligned || across_ == kFit) return std::swap(start_, anchor_);
    const AcGeVector3d whole = direction(angle_) * width();
    if (!by_anchor()) anchor_ = start_;
    start_ += whole;
    if (across_ == kLeft || across_ == kRight) {
      across_ = across_ == kLeft ? kRight : kLeft;
      sheet_.put_integer(72, across_, kLeft, {71, 7, 51, 41, 50, 1});
      if (!by_anchor()) start_ = anchor_;
    }
  }

  /// Its top becomes its foot: the base line goes to the other side.
  void exchange_top() {
    const AcGeVector3d reading = direction(angle_);
    const AcGeVector3d whole = AcGeVector3d(-reading.y, reading.x, 0) * height();
    start_ += whole;
    if (up_ == kBase) {
      if (across_ != kMiddle) anchor_ += whole;
    } else if (up_ == kBottom || up_ == kTop) {
      up_ = up_ == kBottom ? kTop : kBottom;
      sheet_.put_integer(up_code_, up_, kBase, {});
    }
  }

  /// From its points where they tell, else as estimated: it only places the
  /// point that readers of a justified text compute for themselves.
  double width() const {
    const double between = (anchor_ - start_).dotProduct(direction(angle_));
    if (by_anchor() && across_ == kRight) return between;
    if (by_anchor() && (across_ == 1 || across_ == kMiddle)) return 2.0 * between;
    const std::size_t text = sheet_.find({}, 1);
    if (text == TagSheet::kNone) return 0.0;
    return line_box(sheet_.text_value(text), height(), sheet_.real({}, 41, 1.0)).right;
  }

  TagSheet& sheet_;
  const ObjectMap& map_;
  double angle_;
  std::int64_t across_;
  std::int64_t up_ = kBase;
  int up_code_ = 73;
  AcGePoint3d start_;   // where its first letter begins
  AcGePoint3d anchor_;  // what its justification is about
};

/// The text of several lines within an attribute: places and directions are those of the world.
void map_embedded(TagSheet& sheet, const ObjectMap& map, bool column_text) {
  for (std::size_t i = 0; i < sheet.size(); ++i) {
    if (sheet.zone(i) != TagSheet::Zone::kEmbedded) continue;
    const int code = sheet.code(i);
    // The columns of a MTEXT hold the direction in front of the place.
    const int place = column_text ? 11 : 10;
    if (code == place) {
      sheet.set_point(i, map.point(sheet.point(i)));
    } else if (code == 10 || code == 11) {
      sheet.set_point(i, AcGePoint3d::kOrigin + map.vector(sheet.point(i).asVector()).normal());
    } else if (code >= 40 && code <= (column_text ? 46 : 43)) {
      sheet.set_real(i, sheet.real(i) * map.scale());
    } else if (code == 210) {
      sheet.set_point(i, AcGePoint3d::kOrigin + map.normal());
    }
  }
}

}  // namespace

Acad::ErrorStatus map_text(TagSheet& sheet, const ObjectMap& map, MirroredText text) {
  TextMapper(sheet, map).run(text);
  map_embedded(sheet, map, false);
  return Acad::eOk;
}

Acad::ErrorStatus map_mtext(TagSheet& sheet, const ObjectMap& map, MirroredText text) {
  const std::size_t place = sheet.find({}, 10);
  const std::size_t along = sheet.find({}, 11);
  const std::size_t turn = sheet.find({}, 50);
  if (place == TagSheet::kNone) return Acad::eInvalidInput;
  sheet.set_point(place, map.point(sheet.point(place)));

  // Of direction and angle the later one counts.
  const bool by_angle = along == TagSheet::kNone || (turn != TagSheet::kNone && turn > along);
  const AcGeVector3d reading =
      along == TagSheet::kNone ? AcGeVector3d::kXAxis : sheet.point(along).asVector();
  const double before = by_angle ? sheet.real({}, 50, 0.0)
                                 : normal_degrees(std::atan2(reading.y, reading.x) / kDegree);
  double turned = map.angle(before);
  bool reversed = false;
  if (map.mirrored() && text == MirroredText::kReadable) {
    const Readable now = readable_in_place(before, turned);
    turned = now.angle;
    reversed = now.left_right;
    constexpr std::int64_t kColumns = 3;
    const std::int64_t at = sheet.integer({}, 71, 1);
    if (at >= 1 && at <= 9) {
      const std::int64_t column = (at - 1) % kColumns, row = (at - 1) / kColumns;
      const std::int64_t other =
          reversed ? row * kColumns + (2 - column) + 1 : (2 - row) * kColumns + column + 1;
      sheet.put_integer(71, other, 1, {41, 40});
    }
  }
  if (map.mirrored() && text == MirroredText::kMirrored) {
    // Seen from behind.
    const std::size_t normal = sheet.find({}, 210);
    const AcGeVector3d behind = -map.normal();
    if (normal != TagSheet::kNone) {
      sheet.set_point(normal, AcGePoint3d::kOrigin + behind);
    } else {
      for (int axis : {0, 1, 2}) {
        sheet.put_real(210 + 10 * axis, behind[static_cast<unsigned>(axis)], NAN, {7, 1});
      }
    }
    if (along == TagSheet::kNone) return Acad::eNotApplicable;
  }
  if (along != TagSheet::kNone && !map.only_moves()) {
    const AcGeVector3d image = map.vector(reading) * (reversed ? -1.0 : 1.0);
    sheet.set_point(along, AcGePoint3d::kOrigin + image / map.scale());
  }
  if (by_angle || turn != TagSheet::kNone) sheet.put_real(50, turned, 0.0, {7, 1});

  bool columns = false;  // behind their head, 50 is a column's height
  for (std::size_t i = 0; i < sheet.size(); ++i) {
    if (sheet.zone(i) != TagSheet::Zone::kOwn) continue;
    const int code = sheet.code(i);
    if (code == 75 || code == 76) columns = true;
    const bool length = (code >= 40 && code <= 43) || code == 46 || code == 48 || code == 49;
    if (length || (columns && code == 50 && i != turn)) {
      sheet.set_real(i, sheet.real(i) * map.scale());
    }
  }
  map_embedded(sheet, map, true);
  return Acad::eOk;
}

}  // namespace cad
