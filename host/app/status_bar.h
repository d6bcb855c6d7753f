#pragma once

#include "host/db/resbuf.h"

/// What a module shows its user while it works, and whether the user wants it to stop. The meter of
/// the status bar goes to whoever listens to cad::set_progress_sink().
///     acedSetStatusBarProgressMeter(L"drawing labels", 0, 100);
///     ... acedSetStatusBarProgressMeterPos(percent) now and then ...
///     acedRestoreStatusBar();

/// Shows a meter at its lowest position, in place of one there may be. Returns 0; -1, and changes
/// nothing, for a null label and for positions of which the lower is not below the upper.
int acedSetStatusBarProgressMeter(const ACHAR* label, int lowest, int highest);
/// Moves the meter to a position, or, when it is negative, on by so many. Beyond the ends it stops
/// there. Returns 0; -1 without a meter.
int acedSetStatusBarProgressMeterPos(int position);
/// Takes the meter away.
void acedRestoreStatusBar();

/// 1 when the user has broken off the LISP program that runs; a module that works long asks now and
/// then, and ends. Else 0.
int acedUsrBrk();
