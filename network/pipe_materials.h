#pragma once

/// The sizes in which pipes are made, by material code (the material's number as text) and nominal
/// diameter in millimetres. They are read from using\PipeMaterials.dat of the installation, at the
/// first question and again when the installation's folder changes.
namespace WDLGX {

/// Number of the material's diameter label style, from 0; -1 for a material without one.
int GetDimH(const wchar_t* material);

/// Inner diameter in millimetres; -1.0 when unknown.
double GetGCNL2(const wchar_t* material, int nominal);

/// Wall thickness in millimetres; -1.0 when unknown.
double GetGCHBH(const wchar_t* material, int nominal);

}  // namespace WDLGX

namespace network {

/// Reads the table again at the next question.
void forget_pipe_materials();

}  // namespace network
