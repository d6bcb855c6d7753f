// Labelling a whole network and keeping it right, on an open drawing.
//     label_bench [--pipes N] [--rounds N]
// The network is a street grid of drainage pipes between numbered wells. Times are processor time,
// the best of several rounds on drawings made anew. The floor is what nobody can save: drawing as
// many texts with CDimDraw, without choosing a place and without recording.
//
//     label     labelnetwork of an unlabelled drawing: composite labels and well numbers
//     stale     labelstale of the labelled drawing, nothing is stale
//     update    labelupdate after another diameter for every hundredth pipe and a move for another

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string>
#include <vector>

#include "host/app/console.h"
#include "host/app/host.h"
#include "labeler/network_labels.h"
#include "module/platform/opened.h"
#include "module/platform/resbuf.h"

namespace {

[[noreturn]] void give_up(const std::string& message) {
  std::fprintf(stderr, "%s\n", message.c_str());
  std::exit(1);
}

double processor_seconds() {
  std::timespec time{};
  ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

void text_pair(std::string& out, const char* key, const std::string& value) {
  out += std::string("1000\n") + key + "\n1000\n" + value + "\n";
}
void real_pair(std::string& out, const char* key, double value) {
  out += std::string("1000\n") + key + "\n1040\n" + std::to_string(value) + "\n";
}

void begin(std::string& out, const char* kind, int handle) {
  char text[64];
  std::snprintf(text, sizeof text, "0\n%s\n5\n%X\n330\n1F\n100\nAcDbEntity\n8\n0\n", kind, handle);
  out += text;
}
void point(std::string& out, int code, double x, double y) {
  for (const double value : {x, y, 0.0}) {
    out += std::to_string(code) + "\n" + std::to_string(value) + "\n";
    code += 10;
  }
}

/// The entities of a grid of streets 50 m apart: a pipe to the right and one up from each well.
std::string grid(int pipes) {
  constexpr double kStreet = 50.0;
  constexpr int kFirstHandle = 0x1000;
  const int side = static_cast<int>(std::ceil(std::sqrt(pipes / 2.0)));
  std::string out;
  int handle = kFirstHandle, made = 0;
  for (int row = 0; row <= side; ++row) {
    for (int column = 0; column <= side; ++column) {
      const double x = column * kStreet, y = row * kStreet;
      begin(out, "CIRCLE", handle++);
      out += "100\nAcDbCircle\n";
      point(out, 10, x, y);
      out += "40\n0.5\n1001\nPIPENOTE\n";
      text_pair(out, "kind", "drainage-well");
      text_pair(out, "number", std::to_string(row) + "-" + std::to_string(column));
      for (const bool up : {false, true}) {
        if (made == pipes || (up ? row : column) == side) continue;
        ++made;
        begin(out, "LINE", handle++);
        out += "100\nAcDbLine\n";
        point(out, 10, x, y);
        point(out, 11, up ? x : x + kStreet, up ? y + kStreet : y);
        out += "1001\nPIPENOTE\n";
        text_pair(out, "kind", "drainage-pipe");
        real_pair(out, "diameter", 300 + 100 * (made % 4));
        real_pair(out, "start_invert", 20.0 - 0.003 * made / side);
        real_pair(out, "end_invert", 19.8 - 0.003 * made / side);
      }
    }
  }
  return out;
}

/// The bytes of a new drawing with these entities in it.
std::string drawing_of(cad::Host& host, const std::string& entities) {
  AcApDocument* const empty = host.new_drawing();
  if (!host.eval_string(empty, "(regapp \"PIPENOTE\")")) give_up("PIPENOTE cannot be registered");
  std::string bytes = empty->database()->save_bytes();
  host.close(empty);
  const bool crlf = bytes.find("\r\n") != std::string::npos;
  if (crlf) std::erase(bytes, '\r');
  const std::size_t section = bytes.find("\nENTITIES\n");
  if (section == std::string::npos) give_up("a new drawing has no entities section");
  bytes.insert(section + std::string("\nENTITIES\n").size(), entities);
  const std::size_t seed = bytes.find("$HANDSEED\n");
  const std::size_t value = bytes.find('\n', bytes.find('\n', seed) + 1) + 1;
  bytes.replace(value, bytes.find('\n', value) - value, "FFFFFF");
  return bytes;
}

struct Times {
  double floor = 1e9, label = 1e9, stale = 1e9, update = 1e9;
  std::size_t texts = 0, found = 0;
  labeler::LabelCounts counts;
};

template <class Work>
void measure(double& best, Work work) {
  const double start = processor_seconds();
  work();
  best = std::min(best, processor_seconds() - start);
}

void change_some(const AcDbDatabase& drawing) {
  int count = 0;
  for (AcDbObjectId id = drawing.first_entity(); !id.isNull(); id = drawing.next_entity(id)) {
    const auto pipe = network::open_pipe(id);
    if (!pipe) continue;
    ++count;
    if (count % 200 == 0) network::write_real(id, network::Key::kDiameter, 1200.0);
    if (count % 200 != 100) continue;
    dim::Opened<AcDbEntity> entity(id, AcDb::kForWrite);
    entity->transformBy(AcGeMatrix3d::translation(AcGeVector3d(1.0, 1.0, 0.0)));
  }
}

void run_round(cad::Host& host, const std::string& bytes, Times& times) {
  const auto told = [](const CString&) {};
  const cad::Result<AcApDocument*> opened = host.open_bytes(bytes, "grid.dxf");
  if (!opened) give_up(opened.error().message());
  const labeler::LabelType* const types[] = {labeler::find_type(L"xzgj"),
                                             labeler::find_type(L"bjbh")};
  measure(times.label, [&] {
    labeler::Labeler labeler(told);
    times.counts = labeler::label_network(labeler, types, {});
  });
  times.texts = static_cast<std::size_t>(times.counts.drawn);
  measure(times.stale, [&] {
    labeler::Labeler labeler(told);
    if (!labeler::update_all_labels(labeler, {.dry_run = true, .overwrite_edited = false}).empty())
      give_up("labels just drawn are stale");
  });
  change_some(*(*opened)->database());
  measure(times.update, [&] {
    labeler::Labeler labeler(told);
    times.found = labeler::update_all_labels(labeler, {}).size();
  });
  host.close(*opened);
  const cad::Result<AcApDocument*> plain = host.open_bytes(bytes, "plain.dxf");
  measure(times.floor, [&] {
    CDimDraw draw(500, L"LABELS");
    for (std::size_t i = 0; i < times.texts; ++i)
      draw.DrawMBText(L"DN300-L=50m-i=4‰", {static_cast<double>(i), 0, 0}, 0.0, 0.0, -1.0);
  });
  host.close(*plain);
}

void print(const char* what, double seconds, const Times& times) {
  std::printf("%-8s %7.3f s  %6.2f us a label  %5.2f x floor\n", what, seconds,
              seconds / static_cast<double>(times.texts) * 1e6, seconds / times.floor);
}

}  // namespace

int main(int argc, char** argv) {
  int pipes = 100000, rounds = 3;
  for (int i = 1; i + 1 < argc; i += 2) {
    if (std::string(argv[i]) == "--pipes")
      pipes = std::atoi(argv[i + 1]);
    else if (std::string(argv[i]) == "--rounds")
      rounds = std::atoi(argv[i + 1]);
  }
  if (argc % 2 == 0 || pipes < 1 || rounds < 1) {
    std::fprintf(stderr, "usage: label_bench [--pipes N] [--rounds N]\n");
    return 2;
  }
  cad::host_settings().install_dir = PN_INSTALLATION "/";
  cad::host_settings().module_folders = {PN_MODULES};
  cad::set_console([](std::string_view) {});
  cad::Host host;
  for (const char* module : {"pipenote.arx", "labeler.arx"})
    if (const cad::Status loaded = host.load_module(module); !loaded)
      give_up(loaded.error().message());
  const std::string bytes = drawing_of(host, grid(pipes));
  Times times;
  for (int round = 0; round < rounds; ++round) run_round(host, bytes, times);
  std::printf("%d pipes, %zu labels, %d crowded, %d skipped; %zu findings in the update\n", pipes,
              times.texts, times.counts.crowded, times.counts.skipped, times.found);
  print("floor", times.floor, times);
  print("label", times.label, times);
  print("stale", times.stale, times);
  print("update", times.update, times);
  return 0;
}
