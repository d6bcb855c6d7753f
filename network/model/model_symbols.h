#pragma once

#include "host/base/result.h"

class AcDbDatabase;

/// The symbols of a network's elements: blocks drawn in paper millimetres about their middle,
/// links' symbols along the X axis, in the layer and colour of the reference.
namespace network {

inline constexpr wchar_t kNodeBlock[] = L"PN_NODE";
inline constexpr wchar_t kReservoirBlock[] = L"PN_RESERVOIR";
inline constexpr wchar_t kTankBlock[] = L"PN_TANK";
inline constexpr wchar_t kOutfallBlock[] = L"PN_OUTFALL";
inline constexpr wchar_t kPumpBlock[] = L"PN_PUMP";
inline constexpr wchar_t kValveBlock[] = L"PN_VALVE";
inline constexpr wchar_t kWeirBlock[] = L"PN_WEIR";

/// Adds those that the drawing lacks.
cad::Status make_symbols(AcDbDatabase& database);

}  // namespace network
