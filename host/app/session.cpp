#include "host/app/session.h"

#include <algorithm>
#include <utility>

#include "host/app/builtin_tables.h"
#include "host/app/command/command_line.h"
#include "host/app/console.h"
#include "host/app/data/entmake_sequence.h"
#include "host/app/host.h"
#include "host/app/modules.h"
#include "host/app/prompt/user_input.h"
#include "host/app/select/entity_index.h"
#include "host/app/system/blackboard.h"
#include "host/app/system/unsupported.h"
#include "host/base/codepage.h"
#include "host/base/numbers.h"
#include "host/db/entity.h"

namespace cad {

DocumentSession::DocumentSession(AcApDocument& document)
    : document_(document), variables(document) {
  lisp::Services services;
  services.owner = this;
  services.output = print_console;
  services.call_external = [this](lisp::Interpreter&, const lisp::External& function,
                                  std::span<const lisp::Value> arguments) {
    return Modules::instance().invoke(*this, function, arguments);
  };
  services.system_variable = [this](lisp::Interpreter& interp, std::wstring_view name) {
    return variables.get(interp, name);
  };
  services.find_file = [](std::wstring_view name) { return find_support_file(to_utf8(name)); };
  services.read_line = []() -> std::optional<std::wstring> {
    return user_input().read_line ? user_input().read_line() : std::nullopt;
  };
  services.missing_function = reason_of_missing;
  services.step_limit_hint = L"; raise it with --step-limit";
  interpreter_ = std::make_unique<lisp::Interpreter>(std::move(services));
  for (const auto& table :
       {entity_functions(), selection_functions(), curve_functions(), coordinate_functions(),
        dictionary_functions(), make_functions(), ldata_functions(), property_functions(),
        unit_functions(), symbol_table_functions(), host_functions(), blackboard_functions(),
        display_functions(), environment_functions(), loading_functions(), menu_functions(),
        unsupported_functions(), prompt_functions(), command_functions()})
    interpreter_->define(table);
  set_propagated(*interpreter_, database());
  entmake = std::make_unique<EntmakeSequence>();
  command_line = std::make_unique<CommandLine>(*this);
}

DocumentSession::~DocumentSession() = default;

EntityIndex& DocumentSession::entity_index() {
  if (!entity_index_) entity_index_ = std::make_unique<EntityIndex>(database());
  return *entity_index_;
}

DocumentSession* DocumentSession::current() {
  AcApDocument* const document = acDocManager->curDocument();
  return document ? &document->session() : nullptr;
}

Status DocumentSession::answer_selection(const std::vector<std::string>& handles) {
  std::vector<AcDbObjectId> entities;
  for (const std::string& text : handles) {
    const std::optional<std::uint64_t> handle = parse_handle(text);
    if (!handle) return fail(text, "is no handle: hexadecimal digits are expected");
    AcDbObjectId id;
    if (database().getAcDbObjectId(id, false, AcDbHandle(*handle)) != Acad::eOk || id.isErased())
      return fail(text, "the drawing has no object of this handle");
    if (!id.objectClass()->isDerivedFrom(AcDbEntity::desc()))
      return fail(text, "the object of this handle is no entity");
    if (std::find(entities.begin(), entities.end(), id) == entities.end()) entities.push_back(id);
  }
  selection_answer = std::move(entities);
  return {};
}

std::vector<AcDbObjectId> DocumentSession::take_selection() {
  std::vector<AcDbObjectId> selected = std::exchange(selection_answer, {});
  std::erase_if(selected, [](AcDbObjectId id) { return id.isErased(); });
  return selected;
}

}  // namespace cad
