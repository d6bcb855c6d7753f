#include "network/label_files.h"

#include "host/app/host.h"

namespace network {

template <class Settings, class Fill>
const Settings* LabelFiles::ask(Held<Settings>& held, const wchar_t* file, Fill fill) {
  if (const std::string& folder = cad::host_settings().install_dir; folder != install_dir_) {
    forget();
    install_dir_ = folder;
  }
  if (!held.asked) {
    held.asked = true;
    const SettingsLines lines(file);
    held.there = lines.read();
    held.settings = Settings();
    fill(lines, held.settings);
  }
  return held.there ? &held.settings : nullptr;
}

const DimUtility::tdfGdcdpdbz* LabelFiles::plan() {
  return ask(plan_, kPlanLabelFile, [](const SettingsLines& lines, auto& settings) {
    fill_plan_labels(lines, read_local_style(), settings);
  });
}

const DimUtility::tdfZdm_bzsz* LabelFiles::profile() {
  return ask(profile_, kProfileLabelFile, fill_profile_labels);
}

const DimUtility::tagPcBzSz* LabelFiles::calculation() {
  return ask(calculation_, kCalculationLabelFile, fill_calculation_labels);
}

void LabelFiles::forget() { plan_.asked = profile_.asked = calculation_.asked = false; }

}  // namespace network
