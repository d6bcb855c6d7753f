#pragma once

#include <string>

#include "network/label_settings.h"
#include "network/local_style.h"
#include "network/settings_lines.h"

/// The files of label settings, below the installation's folder, and what their lines say. Fields
/// that a file leaves out keep the values they have.
namespace network {

inline constexpr wchar_t kPlanLabelFile[] = L"Is\\gdcdpdbz.dat";
inline constexpr wchar_t kProfileLabelFile[] = L"user\\zdm_bzsz.dat";
inline constexpr wchar_t kCalculationLabelFile[] = L"Is\\pcbzsz.dat";

/// The standard decides how many slots a composite label has.
void fill_plan_labels(const SettingsLines& file, LocalStyle style,
                      DimUtility::tdfGdcdpdbz& settings);
void fill_profile_labels(const SettingsLines& file, DimUtility::tdfZdm_bzsz& settings);
/// One line: the decimals of ten quantities in the order of tagPcBzSz; below 0 counts as -1.
void fill_calculation_labels(const SettingsLines& file, DimUtility::tagPcBzSz& settings);

/// What the three files of the installation say, each read at the first question for it and again
/// when the installation's folder has become another or forget() was called; an absent field has
/// its initial value. Nothing is printed and no error is set.
class LabelFiles {
 public:
  /// Null when the file is missing, cannot be read or holds nothing. The object is always the same
  /// one; what it holds changes when the file is read again.
  const DimUtility::tdfGdcdpdbz* plan();
  const DimUtility::tdfZdm_bzsz* profile();
  const DimUtility::tagPcBzSz* calculation();
  void forget();

 private:
  template <class Settings>
  struct Held {
    bool asked = false;
    bool there = false;
    Settings settings;
  };
  template <class Settings, class Fill>
  const Settings* ask(Held<Settings>& held, const wchar_t* file, Fill fill);

  std::string install_dir_;
  Held<DimUtility::tdfGdcdpdbz> plan_;
  Held<DimUtility::tdfZdm_bzsz> profile_;
  Held<DimUtility::tagPcBzSz> calculation_;
};

}  // namespace network
