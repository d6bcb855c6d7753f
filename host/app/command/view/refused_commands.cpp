#include "host/app/command/command_table.h"

/// Commands programs know that are not offered here: each says why. And those that save, which
/// the one who runs the program does.
namespace cad {
namespace {

constexpr const wchar_t* kSaves =
    L"the drawing is written when the program is over, where -o or --in-place says";

Flow<> qsave_command(CommandLine& line) {
  line.print(L"QSAVE: " + std::wstring(kSaves) + L".");
  co_return;
}

Flow<> saveas_command(CommandLine& line) {
  line.refuse(kSaves);
  co_return;
}

Flow<> dimension_command(CommandLine& line) {
  line.refuse(L"dimensions are not drawn here");
  co_return;
}

Flow<> hatch_command(CommandLine& line) {
  line.refuse(L"hatches are not drawn here");
  co_return;
}

Flow<> plot_command(CommandLine& line) {
  line.refuse(L"there is nothing to plot with");
  co_return;
}

Flow<> interface_command(CommandLine& line) {
  line.refuse(L"there are no menus, dialogs and windows");
  co_return;
}

Flow<> layout_command(CommandLine& line) {
  line.refuse(L"layouts and viewports are not changed here");
  co_return;
}

Flow<> file_command(CommandLine& line) {
  line.refuse(L"other drawings and files are not opened, attached or written by commands");
  co_return;
}

Flow<> solid_modelling_command(CommandLine& line) {
  line.refuse(L"solids, regions and surfaces are not modelled here");
  co_return;
}

Flow<> program_command(CommandLine& line) {
  line.refuse(L"programs are loaded with (load \"file\") and modules with (arxload \"file\")");
  co_return;
}

constexpr const char* kHelp = "not offered: says so";
constexpr unsigned kFlags = CommandRow::kNoStep;

constexpr CommandRow kRows[] = {
    {"QSAVE", "", qsave_command, "", "says when the drawing is written", kFlags},
    {"SAVEAS", "SAVE WBLOCK EXPORT DXFOUT W", saveas_command, "", kHelp, kFlags},
    {"DIM",
     "DIM1 DIMLINEAR DLI DIMALIGNED DAL DIMANGULAR DAN DIMRADIUS DRA DIMDIAMETER DDI "
     "DIMORDINATE DOR DIMBASELINE DBA DIMCONTINUE DCO DIMCENTER DIMEDIT DIMTEDIT "
     "DIMSTYLE QLEADER LE LEADER MLEADER TOLERANCE QDIM",
     dimension_command, "", kHelp, kFlags},
    {"HATCH", "H BHATCH BH GRADIENT HATCHEDIT HE", hatch_command, "", kHelp, kFlags},
    {"PLOT", "PRINT PUBLISH PAGESETUP PREVIEW", plot_command, "", kHelp, kFlags},
    {"MENU",
     "MENULOAD MENUUNLOAD CUI CUILOAD TOOLBAR RIBBON HELP PROPERTIES PROPERTIESCLOSE "
     "OPTIONS PREFERENCES DDEDIT ED DDMODIFY SCRIPT SLIDE MSLIDE",
     interface_command, "", kHelp, kFlags},
    {"LAYOUT", "LO MVIEW MV VPORTS MVSETUP VPLAYER", layout_command, "", kHelp, kFlags},
    {"OPEN",
     "NEW CLOSE XREF XATTACH XBIND IMAGEATTACH IMAGE DXFIN IMPORT QUIT END EXIT RECOVER "
     "AUDIT ATTEXT",
     file_command, "", kHelp, kFlags},
    {"REGION",
     "EXTRUDE REVOLVE UNION SUBTRACT INTERSECT SLICE SECTION BOX SPHERE CYLINDER CONE "
     "WEDGE TORUS 3DMESH PFACE EDGESURF RULESURF TABSURF REVSURF BOUNDARY BPOLY",
     solid_modelling_command, "", kHelp, kFlags},
    {"APPLOAD", "VLISP VLIDE ARX NETLOAD SHELL SH START", program_command, "", kHelp, kFlags},
};

}  // namespace

std::span<const CommandRow> refused_commands() { return kRows; }

}  // namespace cad
