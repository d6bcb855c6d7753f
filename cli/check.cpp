#include <algorithm>
#include <cstdio>
#include <map>
#include <memory>
#include <string>

#include "cli/commands.h"
#include "cli/records_survey.h"
#include "cli/tool.h"
#include "host/base/codepage.h"
#include "host/base/fold.h"
#include "host/base/numbers.h"
#include "host/db/record.h"
#include "host/dxf/text.h"
#include "module/platform/opened.h"
#include "module/record/item_chain.h"
#include "module/record/item_layout.h"
#include "module/registry/update_service.h"
#include "module/registry/vocabulary.h"

namespace cli {
namespace {

constexpr int kSomethingWrong = 1;
constexpr const char* kFieldNames[] = {"name",   "handle",    "prefix", "value",
                                       "suffix", "separator", "kind",   "extra text"};
static_assert(std::size(kFieldNames) == std::size(dim::kItemLayout));
constexpr std::size_t kItemSize = std::size(kFieldNames);

const CDimupateRegisiter& registry() { return CDimUpdateServ::getInstance().getDimRegServ(); }

dim::ResbufChain chain_of(const AcDbXrecord& record) {
  resbuf* chain = nullptr;
  record.rbChain(&chain);
  return dim::ResbufChain(chain);
}

std::size_t length_of(const resbuf* chain) {
  std::size_t length = 0;
  for (; chain; chain = chain->rbnext) ++length;
  return length;
}

bool holds_text(const resbuf& buffer) {
  return cad::buffer_value(buffer.restype) == cad::BufferValue::kString;
}

/// The longest line of a drawing that its CAD program reads.
std::size_t longest_line(const cad::dxf::Dialect& dialect) {
  return dialect.release < cad::dxf::Release::kR2000 ? 255 : 2049;
}

/// Whether data of an unknown type can hardly be anything but a record: whole items of group 1
/// texts, each with a name and, if anything, a handle where handles belong.
bool looks_like_record(const AcDbXrecord& record) {
  const dim::ResbufChain chain = chain_of(record);
  const std::size_t length = length_of(chain.get());
  if (length == 0 || length % kItemSize != 0) return false;
  std::size_t position = 0;
  for (const resbuf* at = chain.get(); at; at = at->rbnext, ++position) {
    if (at->restype != dim::kItemGroup) return false;
    const std::wstring_view text = dim::buffer_text(*at);
    if (position % kItemSize == CDimRecordIterator::posName && text.empty()) return false;
    if (position % kItemSize == CDimRecordIterator::posHandle && !text.empty() &&
        !cad::parse_handle(text)) {
      return false;
    }
  }
  return true;
}

/// The registered type that differs from the key in letter case only, or null.
const wchar_t* misspelt_type(std::wstring_view key) {
  for (const dim::VocabularyRow& row : dim::kDimTypeNames) {
    if (cad::equal_no_case(row.name, key)) return row.name;
  }
  return nullptr;
}

/// "the value of item 2"
std::string value_name(std::size_t position) {
  return std::string("the ") + kFieldNames[position % kItemSize] + " of item " +
         std::to_string(position / kItemSize + 1);
}

class Checker {
 public:
  void check(const RecordOwner& owner) {
    const dim::Opened<AcDbDictionary> dictionary(owner.dictionary, AcDb::kForRead);
    if (!dictionary) return;
    const std::unique_ptr<AcDbDictionaryIterator> walk(dictionary->newIterator());
    for (; !walk->done(); walk->next()) check_entry(owner, walk->name(), walk->objectId());
  }

  /// The closing line; the exit status.
  int finish() const {
    if (unsound_ == 0) {
      std::printf("%zu %s sound\n", sound_, sound_ == 1 ? "record is" : "records are");
      return kSuccess;
    }
    std::printf("%zu of %zu records %s not sound\n", unsound_, sound_ + unsound_,
                unsound_ == 1 ? "is" : "are");
    return kSomethingWrong;
  }

 private:
  void check_entry(const RecordOwner& owner, const std::wstring& key, AcDbObjectId id) {
    const bool registered = registry().isRegisted(key.c_str());
    const wchar_t* meant = misspelt_type(key);
    place_ = handle_of(owner.entity) + " " + cad::to_utf8(key) + " " + handle_of(id);
    problems_ = 0;
    const dim::Opened<AcDbXrecord> record(id, AcDb::kForRead);
    if (!record) {
      if (!registered) return;
      report("filed as a record, but is a " + kind_of(id));
    } else if (registered) {
      check_record(*record);
    } else if (meant) {
      report("the type is spelled " + in_quotes(meant) + ", letter case counts");
    } else if (looks_like_record(*record)) {
      report("looks like a record, but its type is not registered");
    } else {
      return;
    }
    ++(problems_ == 0 ? sound_ : unsound_);
  }

  void check_record(const AcDbXrecord& record) {
    const dim::ResbufChain chain = chain_of(record);
    const std::size_t length = length_of(chain.get());
    if (const std::size_t rest = length % kItemSize; rest != 0) {
      report(std::to_string(length) + " values are no multiple of " + std::to_string(kItemSize) +
             ", the last " + std::to_string(rest) + " belong to no item");
    }
    check_values(chain.get());
    check_lines(chain.get(), *cad::record_tags(record.objectId()).dialect);
    check_items(chain.get());
  }

  void check_values(const resbuf* chain) {
    std::size_t position = 0;
    for (const resbuf* at = chain; at; at = at->rbnext, ++position) {
      if (at->restype == dim::kItemGroup) continue;
      report(value_name(position) + " has group " + std::to_string(at->restype) +
             (holds_text(*at) ? " instead of 1" : ", which holds no text"));
    }
  }

  /// We read lines of any length, CAD programs refuse the drawing.
  void check_lines(const resbuf* chain, const cad::dxf::Dialect& dialect) {
    constexpr std::size_t kMostBytes = 14;  // of a character: two escapes
    const std::size_t longest = longest_line(dialect);
    std::size_t position = 0;
    for (const resbuf* at = chain; at; at = at->rbnext, ++position) {
      if (!holds_text(*at) || dim::buffer_text(*at).size() * kMostBytes <= longest) continue;
      std::string line;
      cad::dxf::append_encoded(dim::buffer_text(*at), dialect, line);
      if (line.size() <= longest) continue;
      report(value_name(position) + " has " + std::to_string(line.size()) +
             " bytes, CAD programs read " + std::to_string(longest));
    }
  }

  void check_items(resbuf* chain) {
    std::map<std::wstring, int> times;  // by folded name
    StuDim item;
    for (resbuf* at = chain; dim::read_item(at, item); at = dim::link_to(at, kItemSize)) {
      if (++times[cad::folded(item.name)] == 2) {
        report("more than one item is named " + in_quotes(item.name));
      }
      if (annotation_state(item) == AnnotationState::kMissing) {
        report("item " + in_quotes(item.name) + ": no entity has the handle " +
               in_quotes(item.handle));
      }
    }
  }

  void report(const std::string& problem) {
    std::printf("%s: %s\n", place_.c_str(), problem.c_str());
    ++problems_;
  }

  std::string place_;  // owner, type and handle of the record being checked
  std::size_t problems_ = 0;
  std::size_t sound_ = 0;
  std::size_t unsound_ = 0;
};

}  // namespace

int check_command(const CheckOptions& options) {
  cad::Host host;
  if (!load_modules(host, options.modules)) return kWrongUsage;
  const cad::Result<AcApDocument*> drawing = host.open_drawing(options.drawing);
  if (!drawing) {
    complain(drawing.error().message());
    return kNotRead;
  }
  Checker checker;
  for_each_record_owner(*(*drawing)->database(),
                        [&](const RecordOwner& owner) { checker.check(owner); });
  return checker.finish();
}

}  // namespace cli
