#pragma once

#include <string>
#include <vector>

#include "module/style/style.h"

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace cli {

/// An option, or with a name without dashes an argument, that takes a decimal number.
CLI::Option* add_number(CLI::App& command, const char* name, double& value, const char* help);

/// The shape of a pipe, millimetres.
struct PipeArguments {
  double diameter = Gx::kNoData;
  int material = 1;
  bool rectangular = false;
  double width = Gx::kNoData;
  double height = Gx::kNoData;
  double ratio = Gx::kNoData;
  bool twin = false;
};
/// --material, --rect, --width, --ratio, --twin
void add_section_options(CLI::App& command, PipeArguments& pipe);

struct CompositeArguments {
  PipeArguments pipe;
  double slope = 0.0;
  double length = Gx::kNoData;
  std::vector<std::string> items;  ///< none: those the settings show
  std::string kind;                ///< of pipes: "J", "Y", "P" or nothing
  std::vector<std::string> code;   ///< up to three parts
  bool apart = false;
  int pipes = 1;

  /// The label's texts in the drawing standard in force; an empty one when there is nothing to say.
  std::vector<CString> label(const CDimStyle& style) const;
  /// Key of the item order in the style ini file.
  CString order_key() const;
};
void add_composite_options(CLI::App& command, CompositeArguments& arguments);

}  // namespace cli
