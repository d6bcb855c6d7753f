// Random histories of a drawing's labels, through the exported classes and through a model of the
// rules side by side; texts, records, answers and what can be taken back are compared after every
// step.

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <algorithm>
#include <sstream>

#include "host/base/codepage.h"
#include "host/db/undo.h"
#include "module/manager/dim_manager.h"
#include "module/manager/precision.h"
#include "module/platform/opened.h"
#include "network/gx_data.h"
#include "tests/module/model/label_model.h"
#include "tests/module/plan.h"
#include "tests/network/settings_folder.h"

namespace {

enum class Act {
  kRecordText,
  kRecordEntity,
  kRecordInformation,
  kUpdate,
  kDeleteType,
  kDeleteAll,
  kDeleteAllInfo,
  kEraseLabel,
  kBringLabelBack,
  kEraseOwner,
  kBringOwnerBack,
  kUndo,
  kRedo,
  kSaveAndOpen,
};
constexpr const char* kActs[] = {"record text", "record entity",    "record information",
                                 "update",      "delete type",      "delete all",
                                 "delete info", "erase label",      "bring label back",
                                 "erase owner", "bring owner back", "undo",
                                 "redo",        "save and open"};

constexpr const wchar_t* kOwners[] = {L"2F", L"30"};
constexpr const wchar_t* kTypes[] = {L"bzjg", L"pcgb", L"xzgj"};
// 4A is an MTEXT; on a locked layer stand 4B, a TEXT, and 31, a LINE.
constexpr const wchar_t* kLabels[] = {L"40", L"41", L"42", L"4A", L"4B", L"31"};
constexpr const wchar_t* kNames[] = {L"pipe_len",  L"pipe_len_mm", L"pipe_i", L"pipe_ii",
                                     L"well_bgdm", L"gdh",         L"GDH",    L"pipe_dia"};
constexpr const wchar_t* kValues[] = {L"",    L"0",   L"12.3456",  L"300",  L"-0.5",
                                      L"gdh", L"W 1", L"管道^J\\", L"2.50", L"1e3"};
constexpr const wchar_t* kPieces[] = {L"", L"DN", L" ", L"/", L"%%c", L"号"};

struct Step {
  Act act;
  std::wstring owner;
  std::wstring type;
  std::wstring label;
  StuDim item;  ///< name and pieces
  bool flag;
};

std::ostream& operator<<(std::ostream& out, const Step& step) {
  const auto say = [&](const std::wstring& text) { out << " '" << cad::to_utf8(text) << "'"; };
  out << kActs[static_cast<int>(step.act)];
  for (const std::wstring* text :
       {&step.owner, &step.type, &step.label, &step.item.name, &step.item.value, &step.item.prefix,
        &step.item.suffix, &step.item.separator})
    say(*text);
  return out << (step.flag ? " +\n" : " -\n");
}

template <std::size_t kCount>
rc::Gen<std::wstring> one_of(const wchar_t* const (&words)[kCount]) {
  return rc::gen::map(rc::gen::inRange<std::size_t>(0, kCount),
                      [&words](std::size_t i) { return std::wstring(words[i]); });
}

rc::Gen<Step> any_step() {
  using rc::gen::just;
  const auto act = rc::gen::weightedElement<Act>({{8, Act::kRecordText},
                                                  {2, Act::kRecordEntity},
                                                  {2, Act::kRecordInformation},
                                                  {10, Act::kUpdate},
                                                  {2, Act::kDeleteType},
                                                  {1, Act::kDeleteAll},
                                                  {1, Act::kDeleteAllInfo},
                                                  {4, Act::kEraseLabel},
                                                  {4, Act::kBringLabelBack},
                                                  {1, Act::kEraseOwner},
                                                  {2, Act::kBringOwnerBack},
                                                  {3, Act::kUndo},
                                                  {2, Act::kRedo},
                                                  {2, Act::kSaveAndOpen}});
  const auto item = rc::gen::build<StuDim>(rc::gen::set(&StuDim::name, one_of(kNames)),
                                           rc::gen::set(&StuDim::value, one_of(kValues)),
                                           rc::gen::set(&StuDim::prefix, one_of(kPieces)),
                                           rc::gen::set(&StuDim::suffix, one_of(kPieces)),
                                           rc::gen::set(&StuDim::separator, one_of(kPieces)));
  return rc::gen::construct<Step>(act, one_of(kOwners), one_of(kTypes), one_of(kLabels), item,
                                  rc::gen::arbitrary<bool>());
}

/// The drawing and the model, and the models between which undoing moves.
class Histories : public WithSettingsFolders {
 protected:
  Histories() {
    given_file("install/Is/gdcdpdbz.dat", "\"L=\" m 2 m 1\n\"i=\" \"\" 1 小数 0\n");
    given_file("install/User/zdm_bzsz.dat", "标高 ((小数位 3))\n");
    given_file("install/Is/pcbzsz.dat", "4 -1 -1 -1 -1 -1 -1 -1 -1 -1\n");
    CGxData::Instance()->Update();
  }
  ~Histories() override { CGxData::Instance()->Update(); }
};

class History {
 public:
  History() {
    for (const wchar_t* owner : kOwners) model_.owners[owner];
    for (const wchar_t* label : kLabels) {
      LabelModel::Label& known = model_.labels[label];
      known.text = plan_.text(label);
      known.shows_text = known.text != L"(no text)";
      known.locked = std::wstring_view(label) == L"4B" || std::wstring_view(label) == L"31";
    }
  }

  void take(const Step& step) {
    if (step.act == Act::kUndo) return undo();
    if (step.act == Act::kRedo) return redo();
    if (step.act == Act::kSaveAndOpen) return save_and_open();
    const LabelModel before = model_;
    const std::size_t steps = log().steps();
    log().next_step();
    act(step);
    if (log().steps() == steps) {
      RC_ASSERT(model_ == before);  // what the log does not know of changed nothing
    } else {
      done_.push_back(before);
      undone_.clear();
    }
  }

  void compare() {
    for (const auto& [handle, label] : model_.labels) {
      if (label.gone) {
        AcDbObjectId id;
        RC_ASSERT(plan_.database().getAcDbObjectId(id, false, AcDbHandle(handle.c_str())) ==
                  Acad::eUnknownHandle);
        continue;
      }
      RC_ASSERT(plan_.is_erased(handle.c_str()) == label.erased);
      RC_ASSERT(cad::to_utf8(plan_.text(handle.c_str())) == cad::to_utf8(label.text));
    }
    for (const auto& [handle, owner] : model_.owners) {
      if (!owner.gone && !owner.erased) compare(handle, owner);
    }
    RC_ASSERT(plan_.database().open_objects().empty());
  }

 private:
  cad::UndoLog& log() { return cad::undo_log(plan_.database()); }

  void act(const Step& step) {
    const LabelModel::Owner& owner = model_.owners.at(step.owner);
    const LabelModel::Label& label = model_.labels.at(step.label);
    switch (step.act) {
      case Act::kEraseLabel:
      case Act::kBringLabelBack: {
        const bool erase = step.act == Act::kEraseLabel;
        if (label.gone || label.locked || label.erased == erase) return;
        erase ? plan_.erase(step.label.c_str()) : plan_.bring_back(step.label.c_str());
        return model_.erase_label(step.label, erase);
      }
      case Act::kEraseOwner:
      case Act::kBringOwnerBack: {
        const bool erase = step.act == Act::kEraseOwner;
        if (owner.gone || owner.erased == erase) return;
        erase ? plan_.erase(step.owner.c_str()) : plan_.bring_back(step.owner.c_str());
        return model_.erase_owner(step.owner, erase);
      }
      default:
        if (owner.gone) return;
        CDimManager manager(plan_.id(step.owner.c_str()));
        return act(step, manager);
    }
  }

  void act(const Step& step, CDimManager& manager) {
    const LabelModel::Label& label = model_.labels.at(step.label);
    const bool has_handle = !label.gone && !label.erased;
    const wchar_t* const type = step.type.c_str();
    StuDim item = step.item;
    switch (step.act) {
      case Act::kRecordText: {
        if (label.gone) return;
        const int answer = manager.dimTxtRec(type, item.name.c_str(), plan_.id(step.label.c_str()),
                                             item.value.c_str(), item.suffix.c_str(),
                                             item.prefix.c_str(), item.separator.c_str());
        item.handle = step.label;
        const bool usable = manager.openStatus() == Acad::eOk && has_handle;
        RC_ASSERT(answer == (usable ? model_.record(step.owner, step.type, item) : 1));
        return;
      }
      case Act::kRecordEntity: {
        if (label.gone) return;
        const int answer = manager.dimEntRec(type, plan_.id(step.label.c_str()));
        RC_ASSERT(answer ==
                  (has_handle ? model_.record_entity(step.owner, step.type, step.label) : 1));
        return;
      }
      case Act::kRecordInformation:
        item.recordKind = dim::kNoEntityKind;
        if (step.flag) item.handle = step.label;
        RC_ASSERT(manager.dimRecEx(type, item) == model_.record(step.owner, step.type, item));
        return;
      case Act::kUpdate: {
        if (item.name == L"GDH") item.name = L"gdh";  // only names of the vocabulary are updated
        const int answer = manager.updateDim(item, step.flag);
        RC_ASSERT(answer == model_.update(step.owner, item, step.flag, rounded));
        return;
      }
      case Act::kDeleteType:
        RC_ASSERT(manager.deleteDim(type) == model_.delete_type(step.owner, step.type));
        return;
      case Act::kDeleteAll:
        RC_ASSERT(manager.deleteAllDim() == model_.delete_all(step.owner));
        return;
      default:
        RC_ASSERT(manager.deleteAllDimInfo() == model_.delete_all_info(step.owner));
    }
  }

  static std::wstring rounded(const std::wstring& name, const std::wstring& value) {
    CGxData* const data = CGxData::Instance();
    return dim::rounded_value(name, value,
                              {data->getGcGpBzSz(), data->getZdmGdBzSz(), data->getPcBzSz()});
  }

  void undo() {
    RC_ASSERT(log().steps() == done_.size());
    RC_ASSERT(log().undo(1) == (done_.empty() ? 0u : 1u));
    if (done_.empty()) return;
    undone_.push_back(std::exchange(model_, done_.back()));
    done_.pop_back();
  }

  void redo() {
    RC_ASSERT(log().redo(1) == (undone_.empty() ? 0u : 1u));
    if (undone_.empty()) return;
    done_.push_back(std::exchange(model_, undone_.back()));
    undone_.pop_back();
  }

  void save_and_open() {
    plan_.reopen();
    model_.save_and_open();
    done_.clear();
    undone_.clear();
  }

  void compare(const std::wstring& handle, const LabelModel::Owner& owner) {
    Names types;
    for (const auto& [type, items] : owner.records) types.push_back(type);
    const AcDbObjectId dictionary =
        dim::Opened<AcDbEntity>(plan_.id(handle.c_str()), AcDb::kForRead)->extensionDictionary();
    RC_ASSERT(keys_of(dictionary) == types);
    for (const auto& [type, items] : owner.records) {
      AcDbObjectId record;
      dim::Opened<AcDbDictionary>(dictionary, AcDb::kForRead)->getAt(type.c_str(), record);
      RC_ASSERT(plan_.items(record) == items);
    }
    if (dictionary.isNull()) return;  // to ask would make one
    for (const wchar_t* type : kTypes) compare_presence(handle, type);
  }

  void compare_presence(const std::wstring& owner, const wchar_t* type) {
    bool existing = false;
    bool missing = false;
    int answered_existing = 0;
    int answered_missing = 0;
    CDimManager manager(plan_.id(owner.c_str()));
    const bool recorded = model_.presence(owner, type, existing, missing);
    RC_ASSERT(manager.isDimExisted(type, answered_existing, answered_missing) ==
              (recorded ? 0 : 1));
    RC_ASSERT(answered_existing == static_cast<int>(existing));
    RC_ASSERT(answered_missing == static_cast<int>(missing));
  }

  static Names keys_of(AcDbObjectId id) {
    Names keys;
    const dim::Opened<AcDbDictionary> dictionary(id, AcDb::kForRead);
    if (!dictionary) return keys;
    const std::unique_ptr<AcDbDictionaryIterator> walk(dictionary->newIterator());
    for (; !walk->done(); walk->next()) keys.emplace_back(walk->name());
    return keys;
  }

  Plan plan_;
  LabelModel model_;
  std::vector<LabelModel> done_;
  std::vector<LabelModel> undone_;
};

TEST_F(Histories, AreTheSameInTheDrawingAndByTheRules) {
  rc::detail::TestParams parameters;
  parameters.seed = 20100401;
  parameters.maxSuccess = 1000;
  parameters.maxSize = 120;
  const auto result = rc::detail::checkTestable(
      [] {
        const auto steps = *rc::gen::container<std::vector<Step>>(any_step());
        History history;
        for (const Step& step : steps) {
          history.take(step);
          history.compare();
        }
      },
      rc::detail::TestMetadata(), parameters);
  std::ostringstream report;
  rc::detail::printResultMessage(result, report);
  EXPECT_TRUE(result.is<rc::detail::SuccessResult>()) << report.str();
}

}  // namespace
