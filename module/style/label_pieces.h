#pragma once

#include <vector>

#include "module/style/label_settings.h"
#include "module/style/label_text.h"

namespace dim {

/// Pieces of labels. Each appends nothing when there is no value to be shown.

/// Metres.
void append_length(LabelText& label, double length, const tdfGdcdpdbz& settings);
/// A ratio; its sign is dropped.
void append_slope(LabelText& label, double slope, const tdfGdcdpdbz& settings);

/// The shape of a pipe, millimetres.
struct Section {
  bool rectangular;
  double width;
  double height;
  double ratio;  ///< slope of the sides 1:ratio
  bool twin;
};

/// How diameters are labelled.
struct DiameterForms {
  const CString& rectangle;
  LocalStyle local_style;
  const tdfZdm_bzsz& profile;
  const std::vector<tdfDnDimTypeItem>& styles;
};

void append_diameter(LabelText& label, double diameter, int material, const Section& section,
                     const DiameterForms& forms);

}  // namespace dim
