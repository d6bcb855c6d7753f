#pragma once

/// How large labels are drawn, from the settings store (section [Drawing] of QrmvPz.ini).
namespace KT {

/// Height of label texts in millimetres on paper; negative when the settings name none above 0.
/// Reads the files anew.
double GetTextHigh();

}  // namespace KT

namespace Gx {

/// Width factor of label texts; 1 when the settings name none above 0. It is as GetTextHigh() found
/// it, or as at the first question since the folders of the settings changed: labels ask for it one
/// by one.
double GetTextWidthFactor();

}  // namespace Gx
