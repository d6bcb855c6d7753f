#pragma once

#include <span>
#include <string_view>

/// A reader of settings, run on bytes that stand in every settings file of the installation and the
/// project. It asserts its law by aborting.
struct SettingsReader {
  const char* name;
  void (*read)(std::string_view bytes);
};

/// The readers of the pipe library: texts, profile files, variable files, store, materials.
std::span<const SettingsReader> network_readers();
/// The readers of the label style, and the labels made by what they found.
std::span<const SettingsReader> style_readers();
