// The layout of a label beside Pango's layout of the same text, and the boxes of the texts of a
// drawing. Work and peer alternate in one process; each figure is the best of its runs.

#include <pango/pangoft2.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "host/base/codepage.h"
#include "host/db/database.h"
#include "host/db/record.h"
#include "host/db/text_box.h"
#include "host/font/line_layout.h"
#include "host/font/mtext_layout.h"

namespace {

constexpr int kRuns = 15;

double seconds_of(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// Labels of pipes, no two alike.
std::vector<std::wstring> labels(std::size_t count) {
  std::vector<std::wstring> made;
  for (std::size_t i = 0; i < count; ++i)
    made.push_back(L"DN" + std::to_wstring(100 + i % 900) + (i % 2 ? L"-36." : L"管-i.") +
                   std::to_wstring(i % 10));
  return made;
}

double g_sink = 0.0;  // what was computed, so that it must be

void lay_out(const std::vector<std::wstring>& texts) {
  const cad::font::FontStyle style{.file = L"simplex.shx", .big_file = L"gbcbig.shx"};
  for (const std::wstring& text : texts)
    g_sink += cad::font::layout_line(text, cad::font::face_for(style), {2.5, 0.8}).advance;
}

void lay_out_paragraphs(const std::vector<std::wstring>& texts) {
  const cad::font::FontStyle style{.file = L"simplex.shx", .big_file = L"gbcbig.shx"};
  for (const std::wstring& text : texts)
    g_sink += cad::font::layout_mtext(text, style, {.height = 2.5}).frame.width();
}

/// As one would with Pango: one layout object, a new text each time.
class PangoPeer {
 public:
  PangoPeer() : map_(pango_ft2_font_map_new()), context_(pango_font_map_create_context(map_)) {
    layout_ = pango_layout_new(context_);
    PangoFontDescription* const font = pango_font_description_from_string("Liberation Sans 20");
    pango_layout_set_font_description(layout_, font);
    pango_font_description_free(font);
  }
  ~PangoPeer() {
    g_object_unref(layout_);
    g_object_unref(context_);
    g_object_unref(map_);
  }
  PangoPeer(const PangoPeer&) = delete;
  PangoPeer& operator=(const PangoPeer&) = delete;

  void lay_out(const std::vector<std::string>& texts) {
    for (const std::string& text : texts) {
      pango_layout_set_text(layout_, text.data(), static_cast<int>(text.size()));
      PangoRectangle ink, logical;
      pango_layout_get_extents(layout_, &ink, &logical);
      g_sink += logical.width;
    }
  }

 private:
  PangoFontMap* map_;
  PangoContext* context_;
  PangoLayout* layout_;
};

std::string drawing_of(const std::vector<std::wstring>& texts) {
  std::string bytes =
      "  0\nSECTION\n  2\nHEADER\n  9\n$ACADVER\n  1\nAC1027\n  0\nENDSEC\n  0\nSECTION\n  2\n"
      "TABLES\n  0\nTABLE\n  2\nSTYLE\n  5\n3\n 70\n1\n  0\nSTYLE\n  5\n14\n100\n"
      "AcDbSymbolTableRecord\n100\nAcDbTextStyleTableRecord\n  2\nBZ\n 70\n0\n 40\n0.0\n 41\n0.8\n"
      " 50\n0.0\n 71\n0\n 42\n2.5\n  3\nsimplex.shx\n  4\ngbcbig.shx\n  0\nENDTAB\n  0\nENDSEC\n"
      "  0\nSECTION\n  2\nENTITIES\n";
  std::size_t handle = 0x100;
  for (const std::wstring& text : texts) {
    char head[256];
    std::snprintf(head, sizeof head,
                  "  0\nTEXT\n  5\n%zX\n100\nAcDbEntity\n  8\n0\n100\nAcDbText\n 10\n%zu.0\n 20\n"
                  "5.0\n 30\n0.0\n 40\n2.5\n  1\n",
                  handle, handle);
    ++handle;
    bytes += head;
    bytes += cad::to_utf8(text);
    bytes += "\n 41\n0.8\n  7\nBZ\n 72\n1\n 11\n50.0\n 21\n6.0\n 31\n0.0\n100\nAcDbText\n 73\n2\n";
  }
  return bytes + "  0\nENDSEC\n  0\nEOF\n";
}

void measure_boxes(const std::vector<AcDbObjectId>& texts) {
  for (const AcDbObjectId id : texts)
    if (const auto corners = cad::text_corners(id)) g_sink += (*corners)[2].x;
}

}  // namespace

int main() {
  const std::vector<std::wstring> wide = labels(10'000);
  std::vector<std::string> bytes;
  for (const std::wstring& text : wide) bytes.push_back(cad::to_utf8(text));

  AcDbDatabase database(false);
  if (!database.read_bytes(drawing_of(labels(100'000)), "bench.dxf")) return 1;
  std::vector<AcDbObjectId> texts;
  database.for_each_object([&](AcDbObjectId id) {
    if (cad::record_kind(id) == "TEXT") texts.push_back(id);
  });

  PangoPeer peer;
  constexpr double kNever = std::numeric_limits<double>::infinity();
  double line = kNever, paragraph = kNever, pango = kNever, boxes = kNever;
  for (int i = 0; i < kRuns; ++i) {
    line = std::min(line, seconds_of([&] { lay_out(wide); }));
    pango = std::min(pango, seconds_of([&] { peer.lay_out(bytes); }));
    paragraph = std::min(paragraph, seconds_of([&] { lay_out_paragraphs(wide); }));
    boxes = std::min(boxes, seconds_of([&] { measure_boxes(texts); }));
  }
  const double each = 1e6 / static_cast<double>(wide.size());
  std::printf("a label laid out            %8.3f us\n", line * each);
  std::printf("the same as MTEXT           %8.3f us\n", paragraph * each);
  std::printf("the same by Pango           %8.3f us, %.1f times as long as a label\n", pango * each,
              pango / line);
  std::printf("box of a TEXT of %zu     %8.3f us\n", texts.size(),
              boxes * 1e6 / static_cast<double>(texts.size()));
  return g_sink > 0.0 ? 0 : 1;
}
