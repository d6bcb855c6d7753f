#pragma once

#include <string>
#include <utility>

/// How a text is to be drawn: font, size and shape. Texts of file names and typefaces are as the
/// drawing's style has them; empty where it has none.
class AcGiTextStyle {
 public:
  const wchar_t* fileName() const { return file_name_.c_str(); }
  const wchar_t* bigFontFileName() const { return big_font_.c_str(); }
  const wchar_t* typeface() const { return typeface_.c_str(); }
  bool isBold() const { return bold_; }
  bool isItalic() const { return italic_; }
  double textSize() const { return size_; }  ///< height of capital letters
  double xScale() const { return x_scale_; }
  double obliquingAngle() const { return oblique_; }  ///< radians
  bool isBackward() const { return backward_; }
  bool isUpsideDown() const { return upside_down_; }
  bool isVertical() const { return vertical_; }

  void setFileName(const wchar_t* name) { file_name_ = name ? name : L""; }
  void setBigFontFileName(const wchar_t* name) { big_font_ = name ? name : L""; }
  void setFont(const wchar_t* typeface, bool bold, bool italic) {
    typeface_ = typeface ? typeface : L"";
    bold_ = bold, italic_ = italic;
  }
  void setTextSize(double size) { size_ = size; }
  void setXScale(double scale) { x_scale_ = scale; }
  void setObliquingAngle(double angle) { oblique_ = angle; }
  void setBackward(bool on) { backward_ = on; }
  void setUpsideDown(bool on) { upside_down_ = on; }
  void setVertical(bool on) { vertical_ = on; }

 private:
  std::wstring file_name_;
  std::wstring big_font_;
  std::wstring typeface_;
  double size_ = 1.0;
  double x_scale_ = 1.0;
  double oblique_ = 0.0;
  bool bold_ = false;
  bool italic_ = false;
  bool backward_ = false;
  bool upside_down_ = false;
  bool vertical_ = false;
};
