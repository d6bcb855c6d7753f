#include "cli/label_arguments.h"

#include <CLI/CLI.hpp>
#include <optional>

#include "host/base/codepage.h"
#include "host/base/numbers.h"
#include "module/style/label_text.h"

namespace cli {
namespace {

double number_of(const std::string& name, const std::string& text) {
  const std::optional<double> number = cad::parse_real(text);
  if (!number) throw CLI::ValidationError(name, "\"" + text + "\" is not a number");
  return *number;
}

}  // namespace

CLI::Option* add_number(CLI::App& command, const char* name, double& value, const char* help) {
  CLI::Option* const option = command.add_option_function<std::string>(
      name, [name, &value](const std::string& text) { value = number_of(name, text); }, help);
  return option->type_name(name[0] == '-' ? "NUMBER" : "");
}

void add_section_options(CLI::App& command, PipeArguments& pipe) {
  command.add_option("--material", pipe.material, "code of the pipe's material (default 1)")
      ->type_name("CODE");
  CLI::Option* const rectangle = command.add_option_function<std::string>(
      "--rect",
      [&pipe](const std::string& text) {
        const std::size_t x = text.find_first_of("xX");
        if (x == text.npos)
          throw CLI::ValidationError("--rect", "\"" + text + "\" is not WIDTHxHEIGHT");
        pipe.rectangular = true;
        pipe.width = number_of("--rect", text.substr(0, x));
        pipe.height = number_of("--rect", text.substr(x + 1));
      },
      "rectangular section, width and height in millimetres");
  rectangle->type_name("WxH");
  add_number(command, "--width", pipe.width,
             "width of a section whose height is the diameter, millimetres")
      ->excludes(rectangle);
  add_number(command, "--ratio", pipe.ratio, "slope 1:RATIO of the sides of a section")
      ->needs(rectangle);
  command.add_flag("--twin", pipe.twin, "two sections side by side");
}

void add_composite_options(CLI::App& command, CompositeArguments& arguments) {
  add_number(command, "--diameter", arguments.pipe.diameter, "nominal diameter, millimetres");
  add_number(command, "--length", arguments.length, "length, metres");
  add_number(command, "--slope", arguments.slope, "slope as a ratio (default 0)");
  add_section_options(command, arguments.pipe);
  command
      .add_option(
          "--items", arguments.items,
          "what the label shows: 管径 diameter, 管长 length, 坡度 slope, in standard LY also "
          "管代号 code, 公称直径 nominal diameter (default: what the settings show)")
      ->type_name("ITEM,ITEM...")
      ->delimiter(',')
      ->allow_extra_args(false);
  command
      .add_option("--kind", arguments.kind,
                  "kind of pipes whose items the settings show: J, Y or P (default: of all)")
      ->type_name("KIND");
  command
      .add_option("--code", arguments.code, "parts of the pipe's code, up to three; standard LY")
      ->type_name("PART,PART...")
      ->delimiter(',')
      ->allow_extra_args(false);
  command.add_flag("--apart", arguments.apart, "keep the texts apart whatever the settings say");
  command.add_option("--pipes", arguments.pipes, "number of parallel pipes (default 1)")
      ->type_name("N");
}

CString CompositeArguments::order_key() const {
  CString prefix = cad::from_utf8(kind);
  dim::make_upper_case(prefix);
  return (prefix.empty() ? L"" : prefix + L"_") + L"SwBzGd";
}

std::vector<CString> CompositeArguments::label(const CDimStyle& style) const {
  CStringArray shown;
  for (const std::string& item : items) shown.push_back(cad::from_utf8(item));
  if (shown.empty()) style.GetDnOrderDims(shown, cad::from_utf8(kind));
  const auto part = [&](std::size_t i) {
    return i < code.size() ? cad::from_utf8(code[i]) : CString();
  };
  CStringArray texts;
  if (style.GetLocalStyle() == LY) {
    style.GetCompositeDim_LY(pipe.diameter, slope, length, pipe.material, part(0), part(1), part(2),
                             pipe.twin, shown, texts, pipe.rectangular, pipe.width, pipe.height,
                             pipe.ratio, apart, pipes);
  } else {
    const auto make =
        pipe.twin ? &CDimStyle::GetDRectCompositeDimExt : &CDimStyle::GetCompositeDimExt;
    (style.*make)(pipe.diameter, slope, length, pipe.material, shown, texts, pipe.rectangular,
                  pipe.width, pipe.height, pipe.ratio, apart, pipes);
  }
  if (texts.empty()) texts.emplace_back();
  return texts;
}

}  // namespace cli
