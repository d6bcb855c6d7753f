#include "bench/generate/skeleton.h"

#include <charconv>
#include <cstdio>
#include <map>
#include <string>
#include <string_view>

#include "bench/generate/pipes.h"
#include "bench/generate/skeleton_text.h"

namespace bench {
namespace {

using Values = std::map<std::string_view, std::string>;

bool is_integer_code(int code) {
  return (code >= 60 && code <= 99) || (code >= 170 && code <= 179) ||
         (code >= 270 && code <= 289) || (code >= 370 && code <= 379);
}

void write_line(DxfOutput& out, std::string_view line, const Values& values) {
  if (line.front() == '@') {
    const auto blank = line.find(' ');
    if (out.format().acad_version < line.substr(1, blank - 1)) return;
    line.remove_prefix(blank + 1);
  }
  int code = 0;
  const char* end = line.data() + line.size();
  const char* after = std::from_chars(line.data(), end, code).ptr;
  std::string value(after == end ? end : after + 1, end);
  // The application groups "{ACAD_..." open a brace of the format itself.
  if (value.starts_with('{') && value.ends_with('}')) {
    value = values.at(std::string_view(value).substr(1, value.size() - 2));
  }
  if (is_integer_code(code)) {
    out.integer(code, std::stoll(value));
  } else {
    out.text(code, value);
  }
}

void write_template(DxfOutput& out, std::string_view lines, const Values& values = {}) {
  while (!lines.empty()) {
    const auto end = lines.find('\n');
    write_line(out, lines.substr(0, end), values);
    lines.remove_prefix(end + 1);
  }
}

std::string hex(std::uint64_t value) {
  char space[17];
  std::snprintf(space, sizeof space, "%llX", static_cast<unsigned long long>(value));
  return space;
}

std::string real(double value) {
  char space[64];
  std::snprintf(space, sizeof space, "%.1f", value);
  return space;
}

}  // namespace

void write_up_to_blocks(DxfOutput& out, std::uint64_t pipes, std::uint64_t first_free_handle) {
  const Corner corner = corner_of(pipes);
  write_template(out, kHeader,
                 {{"version", out.format().acad_version},
                  {"code page", out.format().code_page},
                  {"right", real(corner.x)},
                  {"top", real(corner.y)},
                  {"handle seed", hex(first_free_handle)}});
  write_template(out, kTables, {{"label layer", kLabelLayer}, {"pipe layer", kPipeLayer}});
  write_template(out, kBlocks);
}

void write_root_objects(DxfOutput& out) {
  write_template(out, kRootObjects);
  write_template(out, kLayout,
                 {{"layout", "1E"},
                  {"plot flags", "688"},
                  {"layout name", "Layout1"},
                  {"tab order", "1"},
                  {"block record", "1B"}});
  write_template(out, kLayout,
                 {{"layout", "22"},
                  {"plot flags", "1712"},
                  {"layout name", "Model"},
                  {"tab order", "0"},
                  {"block record", hex(kModelSpace)}});
}

}  // namespace bench
