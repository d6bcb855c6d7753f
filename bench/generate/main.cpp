// Writes a drawing of labelled pipes, as large as wanted, for measuring and for tests.

#include <CLI/CLI.hpp>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <map>
#include <stdexcept>
#include <string>

#include "bench/generate/dxf_output.h"
#include "bench/generate/network.h"
#include "bench/generate/pipes.h"
#include "bench/generate/skeleton.h"

namespace {

const std::map<std::string, std::string> kVersions = {
    {"R2000", "AC1015"}, {"R2004", "AC1018"}, {"R2007", "AC1021"},
    {"R2010", "AC1024"}, {"R2013", "AC1027"}, {"R2018", "AC1032"},
};

void write_drawing(bench::DxfOutput& out, std::uint64_t pipes, bool with_network) {
  const bench::Network network(pipes);
  const auto pipe_at = [&](std::uint64_t number) {
    return with_network ? network.pipe_at(number) : bench::pipe_at(number);
  };
  bench::write_up_to_blocks(out, pipes,
                            with_network
                                ? network.first_free_handle()
                                : bench::kFirstPipeHandle + pipes * bench::kHandlesPerPipe);
  out.text(0, "SECTION");
  out.text(2, "ENTITIES");
  for (std::uint64_t i = 0; i < pipes; ++i) {
    const bench::Pipe pipe = pipe_at(i);
    bench::write_line(out, pipe, bench::kModelSpace);
    if (with_network) network.write_pipe_data(out, i);
    bench::write_labels(out, pipe, bench::kModelSpace);
  }
  if (with_network)
    for (std::uint64_t i = 0; i < network.wells(); ++i)
      network.write_well(out, i, bench::kModelSpace);
  out.text(0, "ENDSEC");
  out.text(0, "SECTION");
  out.text(2, "OBJECTS");
  bench::write_root_objects(out);
  for (std::uint64_t i = 0; i < pipes; ++i) bench::write_objects(out, pipe_at(i));
  out.text(0, "ENDSEC");
  out.text(0, "EOF");
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app{
      "Writes a drawing of labelled pipes: per pipe a LINE, two TEXTs and an annotation record."};
  std::uint64_t pipes = 100000;
  std::string version = "R2013";
  bench::Format format;
  bool lf = false;
  bool with_network = false;
  std::string path;
  app.add_option("--pipes", pipes, "how many (about 1 kB each)")->capture_default_str();
  app.add_option("--version", version, "R2000 R2004 R2007 R2010 R2013 R2018")
      ->check(CLI::IsMember(kVersions))
      ->capture_default_str();
  app.add_option("--code-page", format.code_page, "$DWGCODEPAGE; texts are in it before R2007")
      ->capture_default_str();
  app.add_flag("--network", with_network,
               "join the pipes by wells; both carry PIPENOTE data (about 1.6 kB a pipe)");
  app.add_flag("--lf", lf, "line feeds only (default: CR LF)");
  app.add_option("OUT", path, "the drawing to write")->required();
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : 2;
  }
  format.acad_version = kVersions.at(version);
  format.crlf = !lf;

  std::FILE* file = std::fopen(path.c_str(), "wb");
  bool written = file != nullptr;
  try {
    if (file) {
      bench::DxfOutput out(file, format);
      write_drawing(out, pipes, with_network);
      written = out.finish();
      written = std::fclose(file) == 0 && written;
    }
  } catch (const std::runtime_error& error) {
    std::fclose(file);
    std::fprintf(stderr, "%s: %s\n", path.c_str(), error.what());
    return 1;
  }
  if (!written) {
    std::fprintf(stderr, "%s: cannot write: %s\n", path.c_str(), std::strerror(errno));
    return 1;
  }
}
