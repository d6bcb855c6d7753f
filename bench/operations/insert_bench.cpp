// Inserting drawings as blocks:
//     insert_bench DRAWING
// DRAWING, written by generate_drawing, is first the receiver of a block of ten entities, whose
// cost must not depend on it: the floor is the same insertion into an empty drawing. Then it is
// inserted itself, with the time of reading it as the floor. Best of several runs each.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>

#include "host/db/database.h"
#include "host/db/make_object.h"

namespace {

using Clock = std::chrono::steady_clock;

void require(const cad::Status& status) {
  if (status) return;
  std::fprintf(stderr, "%s\n", status.error().message().c_str());
  std::exit(1);
}

double seconds_since(Clock::time_point begin) {
  return std::chrono::duration<double>(Clock::now() - begin).count();
}

double best_of(int runs, const std::function<double()>& run) {
  double best = run();
  for (int i = 1; i < runs; ++i) best = std::min(best, run());
  return best;
}

double insertion(AcDbDatabase& receiver, AcDbDatabase& source, const std::wstring& name) {
  const auto begin = Clock::now();
  AcDbObjectId block;
  if (receiver.insert(block, name.c_str(), &source) != Acad::eOk) {
    std::fprintf(stderr, "the insertion was refused\n");
    std::exit(1);
  }
  return seconds_since(begin);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: insert_bench DRAWING\n");
    return 2;
  }
  const std::string path = argv[1];
  AcDbDatabase symbol(true);
  for (int i = 0; i < 10; ++i) {
    cad::GroupList circle(L"CIRCLE");
    circle.point(10, AcGePoint3d(i, 0, 0)).real(40, 1.0).text(8, L"SYMBOL");
    const auto made = cad::make_entity(symbol, {}, circle);
    if (!made) return 1;
  }

  AcDbDatabase big(false);
  require(big.read_file(path));
  AcDbDatabase empty(true);
  constexpr int kRuns = 200;
  int number = 0;
  const auto into = [&](AcDbDatabase& receiver) {
    return best_of(
        kRuns, [&] { return insertion(receiver, symbol, L"SYMBOL" + std::to_wstring(number++)); });
  };
  const double floor = into(empty), small = into(big);
  std::printf("10 entities into an empty drawing   %8.1f us\n", floor * 1e6);
  std::printf("10 entities into the drawing        %8.1f us  ratio %.2f\n", small * 1e6,
              small / floor);

  const double reading = best_of(5, [&] {
    AcDbDatabase source(false);
    const auto begin = Clock::now();
    require(source.read_file(path));
    return seconds_since(begin);
  });
  const double whole = best_of(5, [&] {
    AcDbDatabase receiver(true);
    return insertion(receiver, big, L"PLAN");
  });
  std::printf("reading the drawing                 %8.1f ms\n", reading * 1e3);
  std::printf("the drawing as a block              %8.1f ms  ratio %.2f, %.0f objects/s\n",
              whole * 1e3, whole / reading, static_cast<double>(big.facts().objects) / whole);
  return 0;
}
