#pragma once

#include <functional>
#include <map>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "labeler/check.h"
#include "module/draw/draw.h"

namespace labeler {

/// How labels are drawn for the first time.
struct LabelOptions {
  double reference = 0.0;  ///< direction along which labels are read, radians
  StakePlan stakes;        ///< of routes
};

/// What has become of labels that were asked for.
struct LabelCounts {
  int drawn = 0;    ///< for the first time
  int updated = 0;  ///< were there and are up to date now
  int crowded = 0;  ///< of those drawn: they lie upon a pipe, a node or another text
  int skipped = 0;  ///< not drawn or not updated, with a message
};

/// Draws, compares and redraws labels of the working drawing. Lives for one call of a LISP function
/// or handler, during which nobody else changes the drawing. Every entity and record is closed
/// between its operations.
///
/// Messages are lines like "pipe 2F3 (xzgj): has no length; no label"; each is told once.
class Labeler {
 public:
  using Tell = std::function<void(const CString& line)>;
  explicit Labeler(Tell tell);
  ~Labeler();
  Labeler(const Labeler&) = delete;
  Labeler& operator=(const Labeler&) = delete;

  /// From now on labels drawn keep clear of these, all pipes and nodes of the drawing, and of its
  /// texts. One walk through it.
  void keep_clear(std::span<const Owner> parts);
  /// The same for labels that are drawn at these places alone: what is far from them is left out.
  void keep_clear_at(std::span<const AcDbExtents> places);
  /// Around all places about its owner where the label may be drawn.
  AcDbExtents reach_of(const Owner& owner, const Draft& draft) const;
  /// Of the label that label() would draw or bring up to date; the owner's place when that is none.
  AcDbExtents reach_of(const Owner& owner, const LabelType& type, const LabelOptions& options);

  /// Draws the label, or brings one that is there up to date; a label that was erased entity by
  /// entity is drawn again.
  void label(const Owner& owner, const LabelType& type, const LabelOptions& options,
             LabelCounts& counts);

  /// Compares the label with the owner's data.
  Check check(const Owner& owner, const LabelType& type);
  /// The same with the label as it was read.
  Check check(const Owner& owner, const LabelType& type, std::optional<StoredLabel> stored);
  /// Brings it up to date as the check found it; its findings receive what was done. Labels that
  /// somebody has edited are kept unless `overwrite_edited`. False when something failed.
  bool update(const Owner& owner, const LabelType& type, Check& check, bool overwrite_edited);
  /// Whether that draws the label anew, unless something stands in the way.
  static bool redraws(const Check& check, bool overwrite_edited);

 private:
  struct Drawn {
    bool done = false;
    bool crowded = false;
  };
  ReadingAngle reading(double reference);
  double width_of(const CString& text) const;
  LeaderPlacement turned(const LeaderPlacement& leader, int variant, double reference) const;
  /// A place for a label, which goes into the draft where it has a leader.
  struct Choice {
    Place place;
    Shape shape;
    bool crowded = false;
  };
  Choice choose(const Owner& owner, Draft& draft, std::span<const double> widths,
                std::optional<int> fixed, double reference);
  Drawn draw(const Owner& owner, const LabelType& type, Draft draft, std::optional<int> variant,
             double reference);
  bool redraw(const Owner& owner, const LabelType& type, Check& check);
  bool rewrite(const Owner& owner, const LabelType& type, const Check& check);
  bool follow(const Owner& owner, const LabelType& type, Check& check);
  bool move_as_before(const Owner& owner, const LabelType& type, const Check& check,
                      const AcGePoint3d& shown);
  bool turn_arrow(const Check& check);
  bool mark(AcDbObjectId entity, AcDbObjectId owner);
  void tell(const Owner& owner, const LabelType& type, const CString& what);
  void set_layer(const Owner& owner, const LabelType& type);

  Tell tell_;
  CDimDraw draw_;
  Sizes sizes_;
  std::optional<Occupancy> taken_;
  std::map<std::pair<const LabelType*, network::Kind>, CString> layers_;  // names are read of files
  CString layer_;                                                         // the one draw_ is set to
  bool links_registered_ = false;
  struct Read {
    double reference, along;
    double angle;  // in which a text along it is read
  };
  std::optional<Read> last_read_;
  /// Memory that draw() takes for every label.
  struct Room {
    std::vector<CString> texts;
    std::vector<double> widths;
    std::vector<Box> boxes;
    std::vector<CString> handles;
    dim::ItemTexts items;
  };
  Room room_;
};

/// Why an entity could not be written, for people.
CString status_text(Acad::ErrorStatus status);

}  // namespace labeler
