// A module of one's own: it labels a pipe with the fall between its ends, "h=0.11m", records the
// label under a type of its own, and redraws it when it is asked to.
//
//   pipenote run sewer.dxf --load build/falls/falls.arx.so -e "(labelfall (handent \"30\"))" -o
//   out.dxf pipenote run out.dxf --load build/falls/falls.arx.so -e "(updatedim \"fall\" (handent
//   \"30\"))"

#include <cmath>
#include <memory>
#include <optional>

#include "module/draw/draw.h"
#include "module/manager/dim_manager.h"
#include "module/platform/application.h"
#include "module/platform/drawing.h"
#include "module/platform/lisp.h"
#include "module/platform/opened.h"
#include "module/platform/pipe_library.h"
#include "module/registry/update_service.h"

namespace {

constexpr int kApiVersion = 18;
constexpr wchar_t kType[] = L"fall", kItem[] = L"fall", kText[] = L"fall_text";
constexpr short kLabelFall = 1;

/// Metres, two decimals. Nothing when the data lack one of the two elevations.
std::optional<CString> fall_of(const CGxGd& pipe) {
  double start = 0.0, end = 0.0;
  if (!network::flow_ends(pipe, start, end)) return std::nullopt;
  return Gx::Format(L"%.2f", std::abs(start - end));
}

/// The text in pieces, so that other programs can change the value alone. The text itself is kept
/// under a key, for the handler to find it.
bool record(AcDbObjectId pipe, AcDbObjectId text, const CString& value) {
  CDimManager manager(pipe);
  return manager.openStatus() == Acad::eOk &&
         manager.dimTxtRec(kType, kItem, text, value.c_str(), L"m", L"h=", L"") == Acad::eOk &&
         manager.dimDrawRec(kType, kText, text) == Acad::eOk;
}

/// Redraws what is there: place, height and colour stay as the user has made them.
class FallLabels final : public CDimFacade {
 public:
  int update(DimUpdateRequest& request) override {
    bool done = true;
    for (const AcDbObjectId id : request.entityIds) done = redraw(id) && done;
    return done;
  }

 private:
  static bool redraw(AcDbObjectId id) {
    const std::unique_ptr<CGxGd> pipe = network::open_pipe(id);
    const std::optional<CString> fall = pipe ? fall_of(*pipe) : std::nullopt;
    AcDbObjectId label;
    if (!fall || CDimManager(id).getDimDrawRec(kType, kText, label) != Acad::eOk) return false;
    {
      dim::Opened<AcDbText> text(label, AcDb::kForWrite);
      if (!text || text->setTextString((L"h=" + *fall + L"m").c_str()) != Acad::eOk) return false;
    }
    return record(id, label, *fall);
  }
};

/// (labelfall pipe): T, or nil for what is no pipe or has no fall.
int label_fall() {
  const resbuf* const argument = acedGetArgs();
  AcDbObjectId id;
  if (!argument || argument->restype != RTENAME ||
      ArxDbgUtils::enameToObjId(argument->resval.rlname, id) != Acad::eOk) {
    acutPrintf(L"\nusage: (labelfall pipe)");
    return RSERR;
  }
  const std::unique_ptr<CGxGd> pipe = network::open_pipe(id);
  const std::optional<CString> fall = pipe ? fall_of(*pipe) : std::nullopt;
  const std::optional<cad::Curve> line = pipe ? pipe->centre_line() : std::nullopt;
  bool done = false;
  if (fall && line) {
    const double middle = line->param_at_distance(line->length() / 2.0);
    const AcGeVector3d along = line->first_derivative(middle);
    const double angle = Gx::CalcDimAng(std::atan2(along.y, along.x));
    CDimDraw draw(WDLGX::GetCTBL(), L"PIPE-FALL");
    const AcDbObjectId text =
        draw.DrawMTText(L"h=" + *fall + L"m", line->point_at(middle), angle, 0, -1);
    done = !text.isNull() && record(id, text, *fall);
  }
  return (done ? acedRetT() : acedRetNil()) == RTNORM ? RSRSLT : RSERR;
}

/// The recording module comes first: its settings are read when it starts.
bool start_up(void* packet) {
  if (!acrxLoadModule(L"pipenote.arx", true)) return false;
  if (auto* const linker = AcRxDynamicLinker::cast(acrxSysRegistry()->at(L"DynamicLinker"))) {
    linker->unlockApplication(packet);
    linker->registerAppMDIAware(packet);
  }
  auto* const handler = new FallLabels;  // the registry's from here on
  if (CDimUpdateServ::getInstance().getDimRegServ().regist(kType, handler)) return true;
  delete handler;
  return false;
}

}  // namespace

extern "C" {

AcRx::AppRetCode acrxEntryPoint(AcRx::AppMsgCode message, void* packet) {
  switch (message) {
    case AcRx::kInitAppMsg:
      return start_up(packet) ? AcRx::kRetOK : AcRx::kRetError;
    case AcRx::kLoadDwgMsg:
      acedDefun(L"labelfall", kLabelFall);
      break;
    case AcRx::kUnloadDwgMsg:
      acedUndef(L"labelfall", kLabelFall);
      break;
    case AcRx::kInvkSubrMsg:
      dim::set_invoke_result(label_fall());
      break;
    case AcRx::kUnloadAppMsg:
      CDimUpdateServ::getInstance().getDimRegServ().logout(kType);
      acrxUnloadModule(L"pipenote.arx");
      break;
    default:
      break;
  }
  return AcRx::kRetOK;
}

int acrxGetApiVersion() { return kApiVersion; }

}  // extern "C"
