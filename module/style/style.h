#pragma once

/// How annotations are to look. One for the process.
class CDimStyle {
 public:
  static CDimStyle& Instance() { return s_instance; }

  /// Loads the settings; run once when the module is loaded, again when settings changed. Nothing
  /// in the module reads a setting so far, so there is nothing to load. Always 1.
  int UpdateData() { return 1; }

 private:
  CDimStyle() = default;
  static CDimStyle s_instance;
};
