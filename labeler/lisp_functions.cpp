#include "labeler/lisp_functions.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <utility>
#include <vector>

#include "labeler/handlers.h"
#include "labeler/lisp_arguments.h"
#include "labeler/messages.h"
#include "labeler/network_labels.h"
#include "module/platform/application.h"
#include "module/platform/lisp.h"
#include "module/platform/resbuf.h"

namespace labeler {
namespace {

constexpr const wchar_t* kUsage[] = {
    L"",
    L"(labelpipe pipes [types [angle]])",
    L"(labelwell wells [types [angle]])",
    L"(labelnetwork [types [angle]])",
    L"(labelroute curve interval [first [name [angle]]])",
    L"(dimhandler type function-name)",
    L"(labelstale [owners])",
    L"(labelupdate [owners [overwrite-edited [dry-run]]])",
};

int wrong_arguments() {
  acutPrintf(L"\nusage: %s", kUsage[acedGetFunCode()]);
  return RTERROR;
}

Labeler::Tell telling(Messages& messages) {
  return [&messages](const CString& line) { messages.tell(line); };
}

void add_pair(dim::ChainBuilder& chain, const wchar_t* word, int number) {
  chain.add(acutNewRb(RTLB));
  chain.add(dim::new_text_buffer(RTSTR, word));
  // A list holds no long integers.
  const bool fits = number <= std::numeric_limits<short>::max();
  resbuf* const value = acutNewRb(fits ? RTSHORT : RTREAL);
  if (fits)
    value->resval.rint = static_cast<short>(number);
  else
    value->resval.rreal = number;
  chain.add(value);
  chain.add(acutNewRb(RTLE));
}

/// What was broken off has no answer: it is an error of the calling program.
int answer_counts(const LabelCounts& counts, Messages& messages) {
  if (acedUsrBrk()) return RTERROR;
  if (counts.crowded)
    messages.tell(Gx::Format(L"%d of %d labels %s upon a pipe, a node or another text",
                             counts.crowded, counts.drawn, counts.crowded == 1 ? L"lies" : L"lie"));
  dim::ChainBuilder chain;
  chain.add(acutNewRb(RTLB));
  add_pair(chain, L"drawn", counts.drawn);
  add_pair(chain, L"updated", counts.updated);
  add_pair(chain, L"crowded", counts.crowded);
  add_pair(chain, L"skipped", counts.skipped);
  chain.add(acutNewRb(RTLE));
  return acedRetList(chain.head());
}

/// ((owner-handle type item was now reason action trouble) ...), nil when there is nothing.
int answer_findings(const Findings& findings) {
  if (acedUsrBrk()) return RTERROR;
  if (findings.empty()) return acedRetNil();
  dim::ChainBuilder chain;
  chain.add(acutNewRb(RTLB));
  for (const Finding& finding : findings) {
    chain.add(acutNewRb(RTLB));
    const CString owner = handle_of(finding.owner);
    for (const CString* text : {&owner, &finding.type, &finding.item, &finding.was, &finding.now})
      chain.add(dim::new_text_buffer(RTSTR, *text));
    chain.add(dim::new_text_buffer(RTSTR, reason_text(finding.reason)));
    chain.add(dim::new_text_buffer(RTSTR, action_text(finding.action)));
    chain.add(dim::new_text_buffer(RTSTR, finding.trouble));
    chain.add(acutNewRb(RTLE));
  }
  chain.add(acutNewRb(RTLE));
  // One list of a single row would come back as that row: the brackets above are the list's own.
  return acedRetList(chain.head());
}

/// Types named by the caller, else the usual one; false when one is unknown or not of that kind.
bool take_types(Arguments& arguments, std::initializer_list<OwnerKind> kinds,
                std::initializer_list<const wchar_t*> usual, std::vector<const LabelType*>& types) {
  std::vector<CString> names;
  if (!arguments.texts_or_nil(names)) return false;
  if (names.empty()) names.assign(usual.begin(), usual.end());
  for (const CString& name : names) {
    const LabelType* const type = find_type(name);
    if (!type || std::find(kinds.begin(), kinds.end(), type->owner) == kinds.end()) {
      acutPrintf(L"\n\"%s\" is no type of label that can be drawn here", name.c_str());
      return false;
    }
    types.push_back(type);
  }
  return true;
}

int label_owners(OwnerKind kind, const wchar_t* usual, const wchar_t* what) {
  Arguments arguments(acedGetArgs());
  std::vector<AcDbObjectId> owners;
  std::vector<const LabelType*> types;
  LabelOptions options;
  if (!arguments.entities(owners) || !take_types(arguments, {kind}, {usual}, types) ||
      !arguments.optional_real(options.reference))
    return wrong_arguments();
  Messages messages;
  Labeler labeler(telling(messages));
  std::vector<std::optional<Owner>> parts;  // of the owners; nothing of what cannot be labelled
  std::vector<AcDbExtents> places;
  for (const AcDbObjectId id : owners) {
    std::optional<Owner>& part = parts.emplace_back(network_part(id));
    if (part && part->kind != kind) part.reset();
    if (!part) continue;
    for (const LabelType* type : types) places.push_back(labeler.reach_of(*part, *type, options));
  }
  labeler.keep_clear_at(places);
  LabelCounts counts;
  for (std::size_t i = 0; i < owners.size(); ++i) {
    if (!parts[i]) {
      messages.tell(handle_of(owners[i]) + L" is no " + what + L"; no label");
      ++counts.skipped;
      continue;
    }
    for (const LabelType* type : types) labeler.label(*parts[i], *type, options, counts);
  }
  return answer_counts(counts, messages);
}

int labelpipe() { return label_owners(OwnerKind::kPipe, L"xzgj", L"pipe"); }
int labelwell() { return label_owners(OwnerKind::kNode, L"bjbh", L"node"); }

int labelnetwork() {
  Arguments arguments(acedGetArgs());
  std::vector<const LabelType*> types;
  LabelOptions options;
  if (!take_types(arguments, {OwnerKind::kPipe, OwnerKind::kNode}, {L"xzgj", L"bjbh"}, types) ||
      !arguments.optional_real(options.reference))
    return wrong_arguments();
  Messages messages;
  Labeler labeler(telling(messages));
  return answer_counts(label_network(labeler, types, options), messages);
}

int labelroute() {
  Arguments arguments(acedGetArgs());
  std::vector<AcDbObjectId> curves;
  LabelOptions options;
  if (!arguments.entities(curves) || curves.size() != 1 ||
      !arguments.real(options.stakes.interval) || !arguments.optional_real(options.stakes.first) ||
      !arguments.optional_text(options.stakes.name) || !arguments.optional_real(options.reference))
    return wrong_arguments();
  Messages messages;
  Labeler labeler(telling(messages));
  LabelCounts counts;
  const std::optional<Owner> owner = owner_of(curves.front());
  if (owner && owner->curve) {
    labeler.label(*owner, *find_type(kStakeType), options, counts);
  } else {
    messages.tell(handle_of(curves.front()) + L" is no curve; no stakes");
    ++counts.skipped;
  }
  return answer_counts(counts, messages);
}

int dimhandler() {
  Arguments arguments(acedGetArgs());
  CString type, function;
  if (!arguments.text(type) || type.empty() || !arguments.optional_text(function))
    return wrong_arguments();
  if (!set_lisp_handler(type, function)) {
    acutPrintf(L"\nanother module redraws \"%s\"; its handler stays", type.c_str());
    return RTERROR;
  }
  return acedRetT();
}

Findings run_update(const std::vector<AcDbObjectId>& owners, bool all,
                    const UpdateOptions& options) {
  Messages messages;
  Labeler labeler(telling(messages));
  return all ? update_all_labels(labeler, options) : update_labels(labeler, owners, options);
}

int labelstale() {
  Arguments arguments(acedGetArgs());
  std::vector<AcDbObjectId> owners;
  bool all = false;
  if (!arguments.entities_or_nil(owners, all)) return wrong_arguments();
  return answer_findings(run_update(owners, all, {.dry_run = true, .overwrite_edited = false}));
}

int labelupdate() {
  Arguments arguments(acedGetArgs());
  std::vector<AcDbObjectId> owners;
  bool all = false;
  UpdateOptions options;
  if (!arguments.entities_or_nil(owners, all)) return wrong_arguments();
  options.overwrite_edited = arguments.flag();
  options.dry_run = arguments.flag();
  return answer_findings(run_update(owners, all, options));
}

struct Function {
  const wchar_t* name;
  int (*serve)();
};
// The row is the code of the function, and the place of its usage in kUsage.
constexpr Function kFunctions[] = {
    {L"", nullptr},
    {L"labelpipe", labelpipe},
    {L"labelwell", labelwell},
    {L"labelnetwork", labelnetwork},
    {L"labelroute", labelroute},
    {L"dimhandler", dimhandler},
    {L"labelstale", labelstale},
    {L"labelupdate", labelupdate},
};
static_assert(std::size(kFunctions) == std::size(kUsage));
constexpr short kFirstCode = 1;
constexpr short kEndCode = static_cast<short>(std::size(kFunctions));

}  // namespace

void load_functions() {
  for (short code = kFirstCode; code < kEndCode; ++code) acedDefun(kFunctions[code].name, code);
}

void unload_functions() {
  for (short code = kFirstCode; code < kEndCode; ++code) acedUndef(kFunctions[code].name, code);
}

int invoke_function() {
  const int code = acedGetFunCode();
  if (code < kFirstCode || code >= kEndCode) return RSERR;
  return kFunctions[code].serve() == RTNORM ? RSRSLT : RSERR;
}

}  // namespace labeler
