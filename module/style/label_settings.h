#pragma once

#include "module/platform/foundation.h"
#include "module/platform/pipe_library.h"

/// What the settings files say about labels. Labels in plan and in the profile are described by
/// DimUtility::tdfGdcdpdbz and DimUtility::tdfZdm_bzsz of the pipe library, the drawing standard by
/// its LocalStyle.

using DimUtility::tdfGdcdpdbz;
using DimUtility::tdfZdm_bzsz;

/// Kinds of elevations; the file's keywords are the names.
enum ElevType : int {
  kUnknownElevation = -1,  ///< any other word
  USUAL = 0,               ///< also well depths
  PIPETOP = 1,
  PIPEBOTTOM = 2,
  PIPECENTER = 3,
  GROUND = 4,
};

/// How one kind of elevation is labelled.
struct StuElevDimSet {
  ElevType type = kUnknownElevation;
  int decimals = 3;
  CString symbolName;  ///< name of the elevation-symbol block

  friend bool operator==(const StuElevDimSet&, const StuElevDimSet&) = default;
};

/// A form of diameter labels: prefix, a first number, separator, a second number, suffix. Kinds of
/// numbers are "STD" nominal, "OUT" outer, "IN" inner diameter and "WALL" wall thickness.
struct tdfDnDimTypeItem {
  CString prefix;
  CString firstKind;
  CString separator;
  CString secondKind;  ///< any other word: there is no second number
  CString suffix;      ///< written behind a second number only

  friend bool operator==(const tdfDnDimTypeItem&, const tdfDnDimTypeItem&) = default;
};

/// How stakes (chainages) such as K1+234.5 are written. Flags count when they are exactly 1, except
/// keepZeros, which counts unless it is 0.
struct tdfPln_Stk_Set {
  double unitFactor = 0.001;  ///< no setting of its own; not used
  int stakeUnit = 1000;       ///< metres in a whole unit: 1000 kilometres, 100 hectometres
  int stakeStep = 50;         ///< kept for other modules
  int wholeOnlyPrefix = 0;    ///< the unit part stands only where a stake falls on a whole unit
  int padUnit = 0;            ///< "0" in front of a short unit number
  int padMetre = 1;           ///< "0" in front of a short metre number
  int keepZeros = 0;          ///< keep the zeros at the end of the fraction
  int omitZeroFraction = 1;   ///< leave a fraction of zero out
  int letterFlag = 1;         ///< write the letter
  CString letter = L"K";
  int nameTail = 0;  ///< begin with the caller's text from its sixth character on

  friend bool operator==(const tdfPln_Stk_Set&, const tdfPln_Stk_Set&) = default;
};

/// Layout of stake labels, for the modules that draw them.
struct stuStakeDimMode {
  int mode = 0;  ///< 0 to 6
  int code = 0;
  double value1 = 0.0;
  double value2 = 0.0;
  double value3 = 0.0;
  double value4 = 0.0;
  double value5 = 0.0;
  double value6 = 0.0;

  friend bool operator==(const stuStakeDimMode&, const stuStakeDimMode&) = default;
};
