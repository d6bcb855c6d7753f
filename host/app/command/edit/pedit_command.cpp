#include <algorithm>

#include "host/app/command/edit/edit_commands.h"
#include "host/app/command/edit/editing.h"
#include "host/app/command/edit/joining.h"
#include "host/db/record.h"

namespace cad {
namespace {

bool is_polyline(AcDbObjectId object) {
  const std::string_view kind = record_kind(object);
  return kind == "LWPOLYLINE" || kind == "POLYLINE";
}

/// A line or arc drawn anew as a polyline, with its extended data. Null when that cannot be.
AcDbObjectId into_polyline(CommandLine& line, AcDbObjectId object, EditLog& log) {
  const std::optional<PolylineShape> shape = joinable_shape(object);
  if (!shape) {
    line.print(L"Object selected cannot be turned into a polyline.");
    return {};
  }
  const AcDbObjectId made = draw_polyline_like(line, object, *shape, Data::kTake);
  if (made.isNull()) return {};
  log.made(made);
  if (erase(object)) log.erased(object);
  return made;
}

/// The polylines being edited, and how they change.
class Editor {
 public:
  explicit Editor(CommandLine& line) : line_(line) { log_.begin_step(); }

  std::vector<AcDbObjectId>& objects() { return objects_; }
  EditLog& log() { return log_; }
  bool any_closed() const {
    return std::any_of(objects_.begin(), objects_.end(), [](AcDbObjectId object) {
      const std::optional<PolylineShape> shape = polyline_shape(object);
      return shape && shape->closed;
    });
  }

  template <class Change>
  void change_all(const Change& change) {
    log_.begin_step();
    for (AcDbObjectId& object : objects_) {
      std::optional<PolylineShape> shape = polyline_shape(object);
      if (!shape) {
        line_.print(L"A curve-fit or splined polyline, or a mesh, cannot be edited.");
        continue;
      }
      change(*shape);
      if (!set(object, *shape)) return;
    }
  }

  /// To one polyline what goes on at its ends; among several, each other's.
  void join(std::vector<AcDbObjectId> others, double fuzz) {
    log_.begin_step();
    std::size_t added = 0;
    for (std::size_t i = 0; i < objects_.size(); ++i) {
      std::optional<PolylineShape> shape = polyline_shape(objects_[i]);
      if (!shape || !shape->flat || shape->closed) continue;
      std::erase(others, objects_[i]);
      const std::vector<AcDbObjectId> joined = join_to(*shape, others, fuzz);
      if (joined.empty()) continue;
      added += joined.size();
      for (const AcDbObjectId object : joined) {
        std::erase(others, object);
        const auto known = std::find(objects_.begin(), objects_.end(), object);
        if (known != objects_.end()) objects_.erase(known);
        if (erase(object)) log_.erased(object);
      }
      if (!set(objects_[i], *shape)) return;
    }
    line_.remark(counted(added, L"segment added to polyline", L"segments added to polyline"));
  }

  void undo() {
    if (!log_.undo()) line_.print(L"Command has been completely undone.");
    std::erase_if(objects_, [](AcDbObjectId object) { return object.isErased(); });
  }

 private:
  bool set(AcDbObjectId& object, const PolylineShape& shape) {
    log_.changing(object);
    const AcDbObjectId now = set_polyline_shape(line_, object, shape);
    if (now.isNull()) return false;
    if (now != object) {
      log_.made(now);
      log_.erased(object);
      object = now;
    }
    return true;
  }

  CommandLine& line_;
  std::vector<AcDbObjectId> objects_;
  EditLog log_;
};

Flow<> ask_width(CommandLine& line, Editor& editor) {
  const Answer width = co_await line.distance(
      {.text = L"Specify new width for all segments: ", .bits = kNoEnter | kNoNegative});
  editor.change_all([&](PolylineShape& shape) {
    for (auto& vertex : shape.vertices) vertex.start_width = vertex.end_width = width.number;
  });
}

Flow<> ask_linetype(CommandLine& line, Editor& editor) {
  const Answer mode =
      co_await line.keyword({.text = L"Enter polyline linetype generation option [ON/OFF] <Off>: ",
                             .keywords = L"ON OFF"});
  if (mode.none()) co_return;
  editor.change_all([&](PolylineShape& shape) { shape.continuous_linetype = mode.is(L"ON"); });
}

Flow<> ask_join(CommandLine& line, Editor& editor, bool multiple) {
  if (multiple) {
    const Answer fuzz =
        co_await line.distance({.text = L"Enter fuzz distance or [Jointype] <0.0>: ",
                                .keywords = L"Jointype",
                                .bits = kNoNegative});
    if (fuzz.is(L"Jointype")) {
      line.refuse(
          L"ends within the fuzz distance are joined as they are; Jointype is not offered.");
      co_return;
    }
    editor.join(editor.objects(), fuzz.number);
    co_return;
  }
  const std::vector<AcDbObjectId> others = co_await select_changeable(line);
  editor.join(others, 0.0);
}

Flow<> edit(CommandLine& line, Editor& editor, bool multiple) {
  for (;;) {
    const bool closed = editor.any_closed();
    const std::wstring first = multiple ? L"Close/Open" : closed ? L"Open" : L"Close";
    const std::wstring text = L"Enter an option [" + first +
                              L"/Join/Width/Edit vertex/Fit/Spline/Decurve/Ltype gen/Reverse/"
                              L"Undo]: ";
    const Answer option = co_await line.keyword(
        {.text = text,
         .keywords = L"Close Open Join Width Edit Fit Spline Decurve Ltype Reverse Undo eXit",
         .bits = kMayEnd});
    if (option.none() || option.is(L"eXit")) co_return;
    if (option.is(L"Close") || option.is(L"Open")) {
      editor.change_all([&](PolylineShape& shape) { shape.closed = option.is(L"Close"); });
    } else if (option.is(L"Join")) {
      co_await ask_join(line, editor, multiple);
    } else if (option.is(L"Width")) {
      co_await ask_width(line, editor);
    } else if (option.is(L"Decurve")) {
      editor.change_all([](PolylineShape& shape) {
        for (auto& vertex : shape.vertices) vertex.bulge = 0.0;
      });
    } else if (option.is(L"Ltype")) {
      co_await ask_linetype(line, editor);
    } else if (option.is(L"Reverse")) {
      editor.change_all([](PolylineShape& shape) { shape.reverse(); });
    } else if (option.is(L"Undo")) {
      editor.undo();
      if (editor.objects().empty()) co_return;
    } else {
      line.refuse(option.text + L" is not offered.");
    }
    if (line.passing_over()) co_return;
  }
}

/// What was selected as polylines; lines and arcs are turned into such when that is wanted.
void take_all(CommandLine& line, Editor& editor, const std::vector<AcDbObjectId>& objects,
              bool converts) {
  for (const AcDbObjectId object : objects) {
    AcDbObjectId polyline = object;
    if (!is_polyline(object)) {
      polyline = converts ? into_polyline(line, object, editor.log()) : AcDbObjectId();
    }
    if (!polyline.isNull()) editor.objects().push_back(polyline);
  }
}

Flow<> pedit_command(CommandLine& line) {
  Editor editor(line);
  const bool accepts = line.integer_variable(L"PEDITACCEPT") != 0;
  const Answer picked =
      co_await line.entity({.text = L"Select polyline or [Multiple]: ", .keywords = L"Multiple"});
  const bool multiple = picked.is(L"Multiple");
  if (!multiple && !picked.is_entity()) co_return;
  std::vector<AcDbObjectId> objects{picked.entity};
  if (multiple) {
    const Answer which = co_await line.selection();
    objects = which.selection;
  }
  objects = changeable(line, objects);
  if (objects.empty()) co_return;
  bool converts = true;
  const bool all = std::all_of(objects.begin(), objects.end(), is_polyline);
  if (!all && !accepts) {
    if (!multiple) line.print(L"Object selected is not a polyline");
    const Answer yes = co_await line.keyword(
        {.text = multiple ? L"Convert Lines, Arcs and Splines to polylines [Yes/No]? <Y> "
                          : L"Do you want to turn it into one? <Y> ",
         .keywords = L"Yes No"});
    converts = !yes.is(L"No");
  }
  take_all(line, editor, objects, converts);
  if (!editor.objects().empty()) co_await edit(line, editor, multiple);
}

constexpr CommandRow kRows[] = {
    {"PEDIT", "PE", pedit_command,
     "polyline (or line or arc, Yes) or Multiple and objects, [Close/Open/Join/Width/Decurve/Ltype "
     "gen/Reverse/Undo/eXit] and its value ..., Enter",
     "edits polylines", CommandRow::kEndsWithEnter},
};

}  // namespace

std::span<const CommandRow> pedit_commands() { return kRows; }

}  // namespace cad
