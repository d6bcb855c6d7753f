#pragma once

namespace dim {

/// (jgbzUpInfo well): how the well/pipe label recorded on a well was placed, for the program that
/// redraws it:
///     (("zh_mc" "K1+020") ("ang_yx" 0.5) ("dist_jgbz" 12.0) ("ang_wz" 0.0) ("czfx_jgbz" nil)
///      ("xfdh" "3"))
/// The blank value when the well has no such record. RTERROR, mostly with a printed line, when
/// the well carries no records at all, an item is missing, or all of the label's entities are gone
/// (no line: the label is to be drawn afresh). The well is only read.
int jgbzUpInfo();

}  // namespace dim
