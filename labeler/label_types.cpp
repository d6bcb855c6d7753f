#include "labeler/label_types.h"

#include <algorithm>

#include "labeler/pipe_drafts.h"
#include "module/platform/joints.h"
#include "module/platform/text.h"
#include "module/style/style.h"

namespace labeler {
namespace {

// Codes of pipes are those of single pipes, so the layer names have none: labels of all pipes of a
// kind share a layer.
CString pipe_layer(const Owner& owner) {
  const network::Kind kind = owner.pipe ? owner.pipe->kind() : network::Kind::kNone;
  return CDimStyle::Instance().SwBzGxLayer(system_letter(kind), L"");
}
CString number_layer(const Owner& owner) {
  return CDimStyle::Instance().SwBzJdBhLayer(system_letter(owner.node->kind()), L"");
}
CString well_layer(const Owner& owner) {
  return CDimStyle::Instance().SwBzJgBzLayer(system_letter(owner.node->kind()), L"");
}

template <Drafted (*kDraft)(const Owner&)>
Drafted plain(const Owner& owner, DraftContext&) {
  return kDraft(owner);
}

Drafted well_and_pipes(const Owner& owner, DraftContext& context) {
  return draft_well_and_pipes(owner, network::joints_of(owner.id), context.leader);
}

Drafted stakes(const Owner& owner, DraftContext& context) {
  return draft_stakes(owner, context.stakes);
}

constexpr LabelType kLabelTypes[] = {
    {L"xzgj", OwnerKind::kPipe, pipe_layer, plain<draft_composite>},
    {L"xdgj", OwnerKind::kPipe, pipe_layer, plain<draft_end_diameter>},
    {L"xdbg_st", OwnerKind::kPipe, pipe_layer, plain<draft_start_invert>},
    {L"xdbg_ed", OwnerKind::kPipe, pipe_layer, plain<draft_end_invert>},
    {L"pcgb", OwnerKind::kPipe, pipe_layer, plain<draft_calculation>},
    {L"bjbh", OwnerKind::kNode, number_layer, plain<draft_number>},
    {kWellPipeType, OwnerKind::kNode, well_layer, well_and_pipes},
    {L"pcjdb", OwnerKind::kNode, well_layer, plain<draft_node_calculation>},
    {kStakeType, OwnerKind::kRoute, pipe_layer, stakes},
};

}  // namespace

std::span<const LabelType> label_types() { return kLabelTypes; }

const LabelType* find_type(std::wstring_view name) {
  const auto found =
      std::find_if(std::begin(kLabelTypes), std::end(kLabelTypes),
                   [&](const LabelType& type) { return dim::equal_no_case(type.name, name); });
  return found == std::end(kLabelTypes) ? nullptr : found;
}

}  // namespace labeler
