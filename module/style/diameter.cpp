// Labels of diameters and sections.
#include <algorithm>
#include <array>
#include <charconv>
#include <string_view>

#include "module/style/label_pieces.h"
#include "module/style/style.h"

namespace {

using dim::LabelText;

/// A material's number as text, "%d".
class MaterialCode {
 public:
  explicit MaterialCode(int number) {
    std::array<char, 12> digits;
    const char* const end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    *std::copy(static_cast<const char*>(digits.data()), end, text_.begin()) = 0;
  }
  const wchar_t* c_str() const { return text_.data(); }

 private:
  std::array<wchar_t, 13> text_;
};

/// A circular pipe in the material tables, which are asked only for what a label shows.
struct Circle {
  const wchar_t* material;
  int nominal;
};

double known(double size) { return size == -1.0 ? Gx::kNoData : size; }
double inner_of(const Circle& c) { return known(WDLGX::GetGCNL2(c.material, c.nominal)); }
double wall_of(const Circle& c) { return known(WDLGX::GetGCHBH(c.material, c.nominal)); }
double outer_of(const Circle& c) {
  const double inner = inner_of(c), wall = wall_of(c);
  return Gx::IsValidData(inner) && Gx::IsValidData(wall) ? inner + 2 * wall : Gx::kNoData;
}

struct Kind {
  std::wstring_view word;
  double (*size)(const Circle&);  ///< null: the nominal diameter
};
constexpr Kind kKinds[] = {
    {L"STD", nullptr},
    {L"OUT", outer_of},
    {L"IN", inner_of},
    {L"WALL", wall_of},
};

const Kind* find_kind(std::wstring_view word) {
  for (const Kind& kind : kKinds)
    if (kind.word == word) return &kind;
  return nullptr;
}

/// The number that a kind shows; the nominal diameter when that one is unknown.
void append_size(LabelText& label, const Kind* kind, const Circle& circle) {
  const double size = kind && kind->size ? kind->size(circle) : Gx::kNoData;
  if (Gx::IsValidData(size)) {
    LabelText number;
    number.fixed(size, 6).drop_zeros();
    label.text(number.view());
  } else {
    label.whole(circle.nominal);
  }
}

void append_circle(LabelText& label, const wchar_t* material, int style, double diameter,
                   const std::vector<tdfDnDimTypeItem>& styles) {
  static const tdfDnDimTypeItem kNoStyle;
  const bool known = style >= 0 && static_cast<std::size_t>(style) < styles.size();
  const tdfDnDimTypeItem& form = known ? styles[static_cast<std::size_t>(style)] : kNoStyle;
  const Circle circle{material, dim::whole_part(diameter)};
  label.text(form.prefix);
  append_size(label, find_kind(form.firstKind), circle);
  // Kept: the suffix belongs to the second number.
  // Test: DiameterStyle.WithoutASecondNumberThereIsNoSuffix
  const Kind* const second = find_kind(form.secondKind);
  if (!second) return;
  label.text(form.separator);
  append_size(label, second, circle);
  label.text(form.suffix);
}

void append_section(LabelText& label, double width, double height) {
  label.whole(dim::whole_part(width)).text(L"x").whole(dim::whole_part(height));
}

void append_rectangle(LabelText& label, const dim::Section& s, const dim::DiameterForms& forms) {
  if (!Gx::IsValidData(s.width) || !Gx::IsValidData(s.height)) return;
  const bool sloped = Gx::IsValidData(s.ratio) && s.ratio > 0.0;
  // Kept: a twin section with a ratio does not say that it is twin.
  // Test: TwinSection.WithARatioIsLabelledLikeASingleOne
  if (s.twin && !sloped) label.text(L"2x");
  label.text(forms.rectangle).text(L"=");
  append_section(label, s.width, s.height);
  if (sloped) label.text(L"(1:").fixed(s.ratio, 1).text(L")");
}

}  // namespace

void dim::append_diameter(LabelText& label, double diameter, int material, const Section& s,
                          const DiameterForms& forms) {
  if (s.rectangular) {
    append_rectangle(label, s, forms);
  } else if (Gx::IsInValidData(diameter)) {
    return;
  } else if (Gx::IsValidData(s.width)) {
    if (forms.local_style == BJ) {
      label.text(s.twin ? L"□2x" : L"□");
    } else {
      label.text(s.twin ? L"2x" : L"").text(forms.rectangle).text(L"=");
    }
    append_section(label, s.width, diameter);
  } else if (forms.profile.diameterNotation != 1) {
    const MaterialCode code(material);
    const int style = WDLGX::GetDimH(code.c_str());
    append_circle(label, code.c_str(), style == -1 ? 0 : style, diameter, forms.styles);
  } else {
    label.text(forms.profile.diameterPrefix).fixed(diameter, 0).text(forms.profile.diameterSuffix);
  }
}

dim::DiameterForms CDimStyle::diameter_forms() const {
  return {m_rectangleFormat, GetLocalStyle(), m_profileLabels, m_diameterStyles};
}

CString CDimStyle::GetDnStr(double diameter, int material, int rectangular, double width,
                            double height, double ratio) const {
  LabelText label;
  dim::append_diameter(label, diameter, material, {rectangular != 0, width, height, ratio, false},
                       diameter_forms());
  return label.str();
}

CString CDimStyle::GetDRectPipeDnStr(double diameter, int material, int rectangular, double width,
                                     double height, double ratio) const {
  LabelText label;
  dim::append_diameter(label, diameter, material, {rectangular != 0, width, height, ratio, true},
                       diameter_forms());
  return label.str();
}

CString CDimStyle::GetDnStrhelper(const CString& material, int style, double diameter, int, double,
                                  double, double) const {
  LabelText label;
  append_circle(label, material.c_str(), style, diameter, m_diameterStyles);
  return label.str();
}
