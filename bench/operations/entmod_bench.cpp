// Changing every text of a large drawing from LISP, as programs do it:
//     (foreach e texts (setq d (entget e)) (entmod (subst (cons 1 s) (assoc 1 d) d)))
//     entmod_bench DRAWING [ROUNDS]
// DRAWING is written by generate_drawing. Time is processor time of this thread, so that other
// programs on the machine do not count. The floor is what nobody can save: reading the tags of each
// text once and copying its record with the new value.

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string>
#include <vector>

#include "host/app/console.h"
#include "host/app/host.h"
#include "host/db/database.h"
#include "host/db/record.h"
#include "host/dxf/tag_reader.h"

namespace {

double processor_seconds() {
  std::timespec time{};
  ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

[[noreturn]] void give_up(const cad::Error& error) {
  std::fprintf(stderr, "%s\n", error.message().c_str());
  std::exit(1);
}

/// The best time of several rounds of a LISP loop over all texts.
double lisp_seconds(cad::Host& host, AcApDocument* document, int rounds, const std::string& body) {
  double best = 1e9;
  for (int round = 0; round < rounds; ++round) {
    const std::string program =
        "(setq s \"round " + std::to_string(round) + "\") (foreach e texts " + body + ")";
    const double start = processor_seconds();
    if (const auto done = host.eval_string(document, program); !done) give_up(done.error());
    best = std::min(best, processor_seconds() - start);
  }
  return best;
}

double floor_seconds(const std::vector<AcDbObjectId>& texts, int rounds) {
  constexpr std::string_view kValue = "round 1";
  double best = 1e9;
  std::size_t bytes = 0;
  for (int round = 0; round < rounds; ++round) {
    const double start = processor_seconds();
    for (const AcDbObjectId id : texts) {
      const cad::RecordTags record = cad::record_tags(id);
      cad::dxf::TagReader tags(record.bytes, *record.dialect);
      cad::dxf::Tag tag;
      while (tags.next(tag)) {
        if (tag.code != 1) continue;
        const auto at = static_cast<std::size_t>(tag.value.data() - record.bytes.data());
        std::string changed(record.bytes.substr(0, at));
        changed.append(kValue).append(record.bytes.substr(at + tag.value.size()));
        bytes += changed.size();
      }
    }
    best = std::min(best, processor_seconds() - start);
  }
  if (bytes == 0) std::fprintf(stderr, "the drawing has no texts\n");
  return best;
}

void print(const char* what, double seconds, std::size_t count, double floor) {
  std::printf("%-28s %10.0f entities/s  %6.0f ns each  %5.1f x floor\n", what,
              static_cast<double>(count) / seconds, seconds / static_cast<double>(count) * 1e9,
              seconds / floor);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2 && argc != 3) {
    std::fprintf(stderr, "usage: entmod_bench DRAWING [ROUNDS]\n");
    return 2;
  }
  const int rounds = argc == 3 ? std::atoi(argv[2]) : 5;
  cad::Host host;
  cad::set_console([](std::string_view) {});
  cad::Result<AcApDocument*> opened = host.open_drawing(argv[1]);
  if (!opened) give_up(opened.error());
  AcDbDatabase& database = *(*opened)->database();
  std::vector<AcDbObjectId> texts;
  for (AcDbObjectId id = database.first_entity(); !id.isNull(); id = database.next_entity(id))
    if (cad::record_kind(id) == "TEXT") texts.push_back(id);
  const auto listed = host.eval_string(
      *opened,
      "(setq texts nil e (entnext))"
      "(while e (if (= (cdr (assoc 0 (entget e))) \"TEXT\") (setq texts (cons e texts)))"
      "  (setq e (entnext e)))");
  if (!listed) give_up(listed.error());

  const double floor = floor_seconds(texts, rounds);
  print("floor: read tags, copy", floor, texts.size(), floor);
  print("entget", lisp_seconds(host, *opened, rounds, "(setq d (entget e))"), texts.size(), floor);
  print("entget subst",
        lisp_seconds(host, *opened, rounds, "(setq d (entget e)) (subst (cons 1 s) (assoc 1 d) d)"),
        texts.size(), floor);
  print("entget subst entmod",
        lisp_seconds(host, *opened, rounds,
                     "(setq d (entget e)) (entmod (subst (cons 1 s) (assoc 1 d) d))"),
        texts.size(), floor);
  return 0;
}
