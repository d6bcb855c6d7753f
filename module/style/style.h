#pragma once

#include <map>
#include <vector>

#include "module/platform/objects.h"
#include "module/style/label_settings.h"

namespace dim {
struct DiameterForms;
}

/// How annotations are to look: reads the settings files and makes label texts of measured values.
/// One for the process.
///     CDimStyle& style = CDimStyle::Instance();  // its settings are read when the module is
///     loaded style.GetPipeLongStr(35.2);                // L=35.2m, as the settings have it
/// Lengths, depths, elevations and stakes are metres, slopes ratios (0.005 is five per mille),
/// diameters and sections of pipes millimetres. -999999999.0 stands for a value that nobody
/// measured: its label is empty, except that of a slope. Numbers are rounded exactly, ties away
/// from zero; six decimals are printed where a settings file asks for a negative number of them,
/// 512 where it asks for more. Whole numbers are made of doubles by dropping the fraction.
///
/// Readers answer 1 for success and 0 for failure. What is wrong with a file stands in the pipe
/// library's error object then, CGxData::Instance()->GetErr().
class CDimStyle {
 public:
  /// The built-in settings, nothing read yet.
  CDimStyle();
  CDimStyle(const CDimStyle&) = default;
  CDimStyle& operator=(const CDimStyle&) = default;
  static CDimStyle& Instance() { return s_instance; }

  /// Reads all settings, again if they were read before. What a missing or faulty file does not say
  /// stays as it was; the fault is shown on the command line. Always 1.
  int UpdateData();

  // Where settings are kept (settings_places.cpp).

  /// The style ini file, below the installation directory.
  static const wchar_t* const kBzParamSetFileName;
  /// A value of the style ini file, cut to 259 characters; the default when key or file is missing.
  CString GetProfileStringW(const wchar_t* section, const wchar_t* key,
                            const wchar_t* defaultValue) const;
  /// Writes a value of the style ini file. Non-zero on success.
  int WriteProfileStringW(const wchar_t* section, const wchar_t* key, const wchar_t* value) const;
  /// The value of the first record of that very name in a system-variable file; false, and `value`
  /// as it was, when there is none or the file cannot be read.
  bool GetVal(const wchar_t* path, const wchar_t* name, CString& value) const;
  /// GetVal() on the installation's system-variable file.
  bool GetPrjVal(const wchar_t* name, CString& value) const;
  /// The current project's directory without backslashes at its end. 0 when there is no project.
  static int KT_getCurPrjpath(CString& path);
  /// Searches the project's system-variable file. `value` has room for 128 characters at least and
  /// receives the value of every record passed on the way: without success it holds the last one.
  static int KT_getSysVar(const wchar_t* name, wchar_t* value);

  // Single settings (style.cpp).

  LocalStyle GetLocalStyle() const;
  double SwBzTxtLineSpace() const;  ///< spacing of lines of label text
  double SwBzTxtTxtSpace() const;   ///< spacing between label texts
  /// Layers for the labels of well numbers, well structures and pipes.
  CString SwBzJdBhLayer(const CString& pipeType, const CString& pipeCode) const;
  CString SwBzJgBzLayer(const CString& pipeType, const CString& pipeCode) const;
  CString SwBzGxLayer(const CString& pipeType, const CString& pipeCode) const;
  double CnjHeight() const { return m_cnjHeight; }    ///< drop-well height
  CString GetGxBzPath() const { return m_gxBzPath; }  ///< pipe-label ini file
  int GetIsRefStake() const;                          ///< 1 or 0
  /// Whether composite labels stand on separate lines, and what separates them otherwise.
  void GetFlag(bool& flag, CString& text) const;
  bool IsVerticalDimMode() const { return m_pipeLabels.verticalMode == 1; }

  // Readers of files.

  static int ReadGdcdpdbz(tdfGdcdpdbz& settings, LocalStyle style);  ///< Is\gdcdpdbz.dat
  static int ReadZdm_bzsz(tdfZdm_bzsz& settings);                    ///< user\zdm_bzsz.dat
  static int ReadGdbzfsk(std::vector<tdfDnDimTypeItem>& styles);     ///< Is\gdbzfsk.dat
  /// Is\bgbzfsk.dat. Says nothing about faults; without the file the list stays as it was.
  static int ReadElevDimSet(std::vector<StuElevDimSet>& settings);
  /// The items of a composite label that are to be shown, from the style ini file. 0 when none is.
  static int ReadDnDimSet(std::vector<CString>& items, const CString& key);
  /// The project's stake style, from its system variable "PLN_STK_SET".
  int ReadZhSytle(tdfPln_Stk_Set& settings) const;
  /// The number of the stake label layout, from the installation's "PLN_STK_SET".
  void ReadZhModeIndex(int& mode) const;
  /// The layout itself, from the installation's "PLN_STKDIM_M<mode>". 0 when there is none, or the
  /// mode is not 0 to 6: `mode.mode` alone is set then.
  int ReadZhMode(stuStakeDimMode& mode) const;

  // Labels of single values (length_and_slope.cpp, elevation.cpp, well_number.cpp).

  /// The text without the zeros at its end, and without the point if nothing follows it; a text
  /// without a point stays. The first character always stays. The point may stand anywhere: "L.100"
  /// becomes "L.1".
  static CString RemoveZero(const CString& text);
  CString GetPipeLongStr(double length) const;
  /// The sign is dropped; a slope that nobody measured is printed like any other.
  CString GetPipePdStr(double slope) const;
  /// Name of the elevation symbol of that kind, empty when there is none.
  CString GetBgFhName(ElevType type) const;
  CString GetBgStr(ElevType type, double elevation) const;
  CString GetBgStr(double elevation) const;  ///< in the profile
  /// Millimetres when the unit of drop wells is "mm"; `cut` drops the decimals then.
  CString GetWellDepth(double depth, int cut) const;
  CString GetMsFtStr(double depthOrCover) const;
  /// Prefix, separator, number; empty without a number. Hydrants have a prefix of their own. The
  /// well may be null: it is no hydrant then.
  CString GetJdStr(const CGxJd* well, const CString& prefix, const CString& number) const;
  CString GetJdStr(CKtGxWellType1* well, const CString& prefix, const CString& number) const;
  CString GetJdStr(const AcDbObjectId& well) const;

  // Diameter labels (diameter.cpp).

  /// Label of a pipe. A rectangular section is labelled by width and height, and by the slope
  /// `ratio` of its sides if that is above 0. A valid `width` without the flag: a section whose
  /// height is given as diameter.
  CString GetDnStr(double diameter, int material, int rectangular, double width, double height,
                   double ratio) const;
  /// The same for twin sections.
  CString GetDRectPipeDnStr(double diameter, int material, int rectangular, double width,
                            double height, double ratio) const;
  /// Label of a circular pipe in the diameter label style of that position. What follows the
  /// diameter is not read.
  CString GetDnStrhelper(const CString& material, int style, double diameter, int = 0, double = 0.0,
                         double = 0.0, double = 0.0) const;

  // Stakes (stake.cpp).

  /// `text` is what a label begins with, see tdfPln_Stk_Set::nameTail.
  CString GetZhStr(double stake, const CString& text) const;

  // Composite labels (composite.cpp, composite_ly.cpp, item_order.cpp).

  /// The main text of a pipe's composite label. Texts for further lines come back in `second` and
  /// `third`; a slot with an unknown word leaves there what was passed in.
  CString GetCompositeDim(double diameter, double slope, double length, int material,
                          CString& second, CString& third, int rectangular, double width,
                          double height, double ratio) const;
  /// Appends the texts of the composite label to `texts`, of those items only that `items` names
  /// (管径, 管长, 坡度). `apart` keeps them apart whatever the settings say. True when `texts` is
  /// not empty afterwards.
  bool GetCompositeDimEx(double diameter, double slope, double length, int material,
                         const CStringArray& items, CStringArray& texts, int rectangular,
                         double width, double height, double ratio, bool apart) const;
  /// The same for so many parallel pipes: 2xDN300.
  bool GetCompositeDimExt(double diameter, double slope, double length, int material,
                          const CStringArray& items, CStringArray& texts, int rectangular,
                          double width, double height, double ratio, bool apart, int pipes) const;
  /// Both for twin sections.
  bool GetDRectCompositeDimEx(double diameter, double slope, double length, int material,
                              const CStringArray& items, CStringArray& texts, int rectangular,
                              double width, double height, double ratio, bool apart) const;
  bool GetDRectCompositeDimExt(double diameter, double slope, double length, int material,
                               const CStringArray& items, CStringArray& texts, int rectangular,
                               double width, double height, double ratio, bool apart,
                               int pipes) const;
  /// The composite label of drawing standard LY: five slots, with the pipe's code and its nominal
  /// size among the items (管代号, 公称直径).
  bool GetCompositeDim_LY(double diameter, double slope, double length, int material,
                          const CString& code1, const CString& code2, const CString& code3,
                          bool twin, const CStringArray& items, CStringArray& texts,
                          int rectangular, double width, double height, double ratio, bool apart,
                          int pipes) const;
  /// The items a composite label shows, in the order of its slots, 水流方向 (flow direction) last.
  /// `prefix` is a kind of pipes, J, Y, P or nothing. 0 when there is no list for it.
  int GetDnOrderDims(CStringArray& items, const CString& prefix) const;
  /// Appends the pieces of a template such as {管代号}-{管径}: names of fields and the texts
  /// between them. The template is trimmed. Its first character is dropped unless it is "{", and a
  /// template that ends with a field has an empty last piece.
  static void AnalyseSettingStr(CString& text, std::vector<CString>& pieces);

 private:
  CString layer(const wchar_t* key, const wchar_t* by_default, const CString& pipe_type,
                const CString& pipe_code) const;
  dim::DiameterForms diameter_forms() const;

  tdfGdcdpdbz m_pipeLabels;
  std::map<CString, std::vector<CString>> m_itemOrders;
  CString m_cnjUnit;
  double m_cnjHeight = 0.0;
  std::vector<tdfDnDimTypeItem> m_diameterStyles;
  tdfZdm_bzsz m_profileLabels;
  tdfPln_Stk_Set m_stakeStyle;
  int m_userI4 = 3;  // decimals of stakes
  CString m_gxBzPath;
  CString m_rectangleFormat;
  mutable double m_lineSpace;  // read when first asked for, as the next two
  mutable double m_textSpace;
  mutable LocalStyle m_localStyle;
  std::vector<StuElevDimSet> m_elevations;

  static CDimStyle s_instance;
};
