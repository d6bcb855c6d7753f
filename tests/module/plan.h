#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/base/trace.h"
#include "module/platform/objects.h"
#include "module/platform/resbuf.h"
#include "module/record/dim_item.h"

/// A small drawing to annotate: pipes are the LINEs 2F and 30 and the LINE 31 on a locked layer,
/// labels the TEXTs 40 to 49, MTEXT 4A, TEXT 4B on the locked layer, and the attribute 33 of the
/// block reference 32. It is the working drawing while it lives; at its end everything opened must
/// have been closed.
class Plan {
 public:
  Plan();
  ~Plan();
  Plan(const Plan&) = delete;
  static std::string bytes();

  AcDbDatabase& database() { return *database_; }
  AcDbObjectId id(const wchar_t* handle);
  void erase(const wchar_t* handle);
  void bring_back(const wchar_t* handle);
  bool is_erased(const wchar_t* handle) { return id(handle).isErased(); }
  /// What a TEXT or MTEXT shows.
  std::wstring text(const wchar_t* handle);
  /// Saves the drawing and opens what was saved; everything must be closed.
  void reopen();

  /// The entity's extension dictionary, made when it has none.
  AcDbObjectId extension_dictionary(const wchar_t* owner);
  /// The entry of that key in it; null when there is none.
  AcDbObjectId entry(const wchar_t* owner, const wchar_t* key);
  std::vector<std::wstring> keys(const wchar_t* owner);
  /// Files a chain as an xrecord under the key; the id of the xrecord.
  AcDbObjectId store_chain(const wchar_t* owner, const wchar_t* key, const resbuf* chain);
  AcDbObjectId store_items(const wchar_t* owner, const wchar_t* key,
                           const std::vector<StuDim>& items);
  /// Types and texts of the buffers of an xrecord.
  std::vector<std::pair<short, std::wstring>> buffers(AcDbObjectId xrecord);
  /// The whole items of an xrecord.
  std::vector<StuDim> items(AcDbObjectId xrecord);

 private:
  std::unique_ptr<AcDbDatabase> database_;
};

class PlanTest : public ::testing::Test {
 protected:
  Plan plan;
};

using Names = std::vector<std::wstring>;
using Items = std::vector<StuDim>;
using Texts = std::vector<std::wstring>;
Names names_of(const Items& items);

/// An item whose fields not given are empty.
inline StuDim item_of(std::wstring name, std::wstring value = L"", std::wstring handle = L"") {
  StuDim item;
  item.name = std::move(name);
  item.value = std::move(value);
  item.handle = std::move(handle);
  return item;
}

/// A chain of text buffers of group 1.
dim::ResbufChain text_chain(const std::vector<std::wstring>& texts);

/// Collects the lines of the trace while it lives.
class TraceLines {
 public:
  TraceLines() {
    cad::set_trace_sink([this](std::wstring_view line) { lines_.emplace_back(line); });
  }
  ~TraceLines() { cad::set_trace_sink({}); }
  TraceLines(const TraceLines&) = delete;
  const Texts& lines() const { return lines_; }

 private:
  Texts lines_;
};

/// Collects what is printed on the command line while it lives, as UTF-8.
class Printed {
 public:
  Printed();
  ~Printed();
  Printed(const Printed&) = delete;
  const std::string& text() const { return text_; }
  std::string take() { return std::exchange(text_, {}); }

 private:
  std::string text_;
};

/// Slot of a virtual function in its class's table, from 0.
template <class Function>
std::size_t virtual_slot(Function function) {
  static_assert(sizeof(function) == 2 * sizeof(std::size_t));
  std::size_t words[2];
  std::memcpy(words, &function, sizeof words);
  return (words[0] - 1) / sizeof(void*);
}
