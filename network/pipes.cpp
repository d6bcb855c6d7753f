#include "network/pipes.h"

#include <cmath>
#include <span>

#include "host/db/curve.h"

using network::Key;
using network::Kind;

namespace {

constexpr CRuntimeClass kGdClass{"CGxGd", nullptr};
constexpr CRuntimeClass kJsGdClass{"CGxJsGd", &kGdClass};
constexpr CRuntimeClass kPsGdClass{"CGxPsGd", &kGdClass};
constexpr CRuntimeClass kYsGdClass{"CGxYsGd", &kGdClass};

std::optional<CGxGd::Ends> ends_of(std::optional<double> start, std::optional<double> end) {
  if (!start || !end) return std::nullopt;
  return CGxGd::Ends{*start, *end};
}

bool leads_somewhere(const AcGeVector3d& v) {
  const double length = v.length();
  return std::isfinite(length) && length > 0.0;
}

}  // namespace

const CRuntimeClass* CGxGd::GetThisClass() { return &kGdClass; }
const CRuntimeClass* CGxJsGd::GetThisClass() { return &kJsGdClass; }
const CRuntimeClass* CGxPsGd::GetThisClass() { return &kPsGdClass; }
const CRuntimeClass* CGxYsGd::GetThisClass() { return &kYsGdClass; }

std::optional<cad::Curve> CGxGd::centre_line() const {
  std::optional<cad::Curve> curve = cad::curve_of(objectId());
  if (curve && (!curve->is_bounded() || curve->segments().empty())) curve.reset();
  return curve;
}

std::optional<double> CGxGd::length() const {
  if (const auto given = real(Key::kLength)) return given;
  const std::optional<cad::Curve> curve = centre_line();
  if (!curve) return std::nullopt;
  return curve->length();
}

std::optional<int> CGxJsGd::head_case() const {
  const int number = integer(Key::kHeadCase).value_or(1);
  if (number < 1 || number > network::kHeadCases) return std::nullopt;
  return number;
}

std::optional<double> CGxJsGd::start_head(int head_case) const {
  if (head_case < 1 || head_case > network::kHeadCases) return std::nullopt;
  return real(network::start_head(head_case));
}

std::optional<double> CGxJsGd::end_head(int head_case) const {
  if (head_case < 1 || head_case > network::kHeadCases) return std::nullopt;
  return real(network::end_head(head_case));
}

std::optional<CGxGd::Ends> CGxJsGd::flow_ends() const {
  const std::optional<int> current = head_case();
  if (!current) return std::nullopt;
  return ends_of(start_head(*current), end_head(*current));
}

std::optional<CGxGd::Ends> CGxPsGd::flow_ends() const {
  return ends_of(start_invert(), end_invert());
}

std::optional<CGxGd::Ends> CGxYsGd::flow_ends() const {
  return ends_of(start_invert(), end_invert());
}

std::unique_ptr<CGxGd> network::open_pipe(AcDbObjectId id) {
  if (id.isNull() || id.isErased()) return nullptr;
  std::optional<ObjectData> data = ObjectData::read(id);
  if (!data) return nullptr;
  return open_pipe(id, *data);
}

std::unique_ptr<CGxGd> network::open_pipe(AcDbObjectId id, ObjectData& data) {
  switch (data.kind()) {
    case Kind::kWaterPipe:
      return std::make_unique<CGxJsGd>(id, std::move(data));
    case Kind::kDrainagePipe:
      return std::make_unique<CGxPsGd>(id, std::move(data));
    case Kind::kStormPipe:
      return std::make_unique<CGxYsGd>(id, std::move(data));
    default:
      return nullptr;
  }
}

bool network::flow_ends(const CGxGd& pipe, double& start_value, double& end_value) {
  const std::optional<CGxGd::Ends> ends = pipe.flow_ends();
  if (!ends) return false;
  start_value = ends->start;
  end_value = ends->end;
  return true;
}

bool Gx::GetCurFirstDeriv(AcDbObjectId id, const AcGePoint3d& near, AcGeVector3d& derivative) {
  if (id.isNull() || id.isErased()) return false;
  const std::optional<cad::Curve> curve = cad::curve_of(id);
  if (!curve || curve->segments().empty()) return false;
  const cad::Curve::Nearest nearest = curve->nearest(near);
  const AcGeVector3d at_point = curve->first_derivative(nearest.param);
  if (leads_somewhere(at_point)) {
    derivative = at_point;
    return true;
  }
  // A piece without length, as vertices drawn twice make.
  const std::span<const cad::Segment> pieces = curve->segments();
  const auto here = static_cast<std::size_t>(&curve->segment_at(nearest.param) - pieces.data());
  for (std::size_t away = 1; away < pieces.size(); ++away) {
    if (here + away < pieces.size() && leads_somewhere(pieces[here + away].at(0.0).first)) {
      derivative = pieces[here + away].at(0.0).first;
      return true;
    }
    if (away <= here && leads_somewhere(pieces[here - away].at(1.0).first)) {
      derivative = pieces[here - away].at(1.0).first;
      return true;
    }
  }
  return false;
}
