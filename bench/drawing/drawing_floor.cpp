// Opens a drawing, changes one record and saves it, beside the floor: counting the lines of the
// mapped file. Floor and work alternate in one process, so both see the same machine.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <numeric>
#include <string>
#include <vector>

#include "bench/floor/line_floor.h"
#include "host/base/file.h"
#include "host/db/database.h"
#include "host/db/open.h"
#include "host/db/record.h"
#include "host/db/xrecord.h"

namespace {

constexpr std::size_t kFewestRuns = 5;
constexpr std::size_t kMostRuns = 200;
constexpr double kSecondsToSpend = 2.0;  // on each of the two measurements

[[noreturn]] void give_up(const std::string& message) {
  std::fprintf(stderr, "%s\n", message.c_str());
  std::exit(1);
}

double seconds_of(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

bool more_runs(const std::vector<double>& runs) {
  const double spent = std::accumulate(runs.begin(), runs.end(), 0.0);
  return runs.size() < kFewestRuns || (runs.size() < kMostRuns && spent < kSecondsToSpend);
}

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

AcDbObjectId first_record(const AcDbDatabase& database) {
  AcDbObjectId found;
  database.for_each_object([&](AcDbObjectId id) {
    if (found.isNull() && cad::record_kind(id) == "XRECORD") found = id;
  });
  return found;
}

/// Writes an xrecord's values back with its last text changed.
void change_record(AcDbObjectId id) {
  AcDbXrecord* record = nullptr;
  if (acdbOpenObject(record, id, AcDb::kForWrite) != Acad::eOk) give_up("no record to change");
  resbuf* chain = nullptr;
  record->rbChain(&chain);
  cad::ChainBuilder changed;
  changed.add(chain);
  changed.add(cad::new_string_buffer(1, L"changed"));
  record->setFromRbChain(*changed.head());
  record->close();
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: drawing_floor DRAWING OUT\n");
    return 2;
  }
  const std::string path = argv[1];
  const std::string out = argv[2];
  std::vector<double> floors, opens, changes;
  std::size_t lines = 0;
  const auto read = [&](AcDbDatabase& database) {
    if (const cad::Status status = database.read_file(path); !status) {
      give_up(status.error().message());
    }
  };
  while (more_runs(floors)) {
    floors.push_back(seconds_of([&] {
      cad::Result<cad::MappedFile> file = cad::MappedFile::open(path);
      if (!file) give_up(file.error().message());
      lines = bench::count_lines(file->bytes());
    }));
    const auto database = std::make_unique<AcDbDatabase>(false);
    opens.push_back(seconds_of([&] { read(*database); }));
  }
  AcDbHandle record;
  while (more_runs(changes)) {
    const auto database = std::make_unique<AcDbDatabase>(false);
    if (record.isNull()) {
      AcDbDatabase finder(false);
      read(finder);
      record = first_record(finder).handle();
    }
    changes.push_back(seconds_of([&] {
      read(*database);
      AcDbObjectId id;
      database->getAcDbObjectId(id, false, record);
      change_record(id);
      if (const cad::Status status = database->save_file(out); !status) {
        give_up(status.error().message());
      }
    }));
  }
  const double floor = median(floors);
  const double open = median(opens);
  const double change = median(changes);
  std::printf(
      "%zu lines: floor %.4f s, open %.4f s (%.2f x), open, change and save %.4f s (%.2f x)\n",
      lines, floor, open, open / floor, change, change / floor);
}
